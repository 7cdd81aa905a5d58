#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>

#include "EngineFixture.h"
#include "world/Vector.h"

class VectorLogTest : public qvtest::LogFixture {};

TEST(VectorTest, ArithmeticAndNormalization) {
  qv::Vector v;
  v.normalize();
  EXPECT_EQ(v, qv::Vector(0, 0));
  qv::Vector w(3, 4);
  EXPECT_FLOAT_EQ(w.getMagnitude(), 5.0f);
  w.normalize();
  EXPECT_FLOAT_EQ(w.getX(), 0.6f);
  EXPECT_FLOAT_EQ(w.getY(), 0.8f);
  w.setXY(1, -2);
  w.scale(-2);
  EXPECT_EQ(w, qv::Vector(-2, 4));
  EXPECT_EQ(w + qv::Vector(1, 1), qv::Vector(-1, 5));
  EXPECT_EQ(w - qv::Vector(1, 1), qv::Vector(-3, 3));
  w += qv::Vector(0.5f, 0.5f);
  EXPECT_EQ(w, qv::Vector(-1.5f, 4.5f));
  EXPECT_TRUE(w != qv::Vector(-1.5f, 4.25f));
}

TEST(VectorTest, TextUsesSixSignificantDigits) {
  EXPECT_EQ(qv::Vector(1, 1).toString(), "(1,1)");
  EXPECT_EQ(qv::Vector(0.5f, -2).toString(), "(0.5,-2)");
  EXPECT_EQ(qv::Vector(3, 4.5f).toString(), "(3,4.5)");
  EXPECT_EQ(qv::Vector(1.0f / 3.0f, 0).toString(), "(0.333333,0)");
}

TEST(VectorTest, SerializesAsTwoLittleEndianSingles) {
  std::stringstream ss;
  EXPECT_EQ(qv::Vector(1.0f, -2.0f).serialize(&ss), 0);
  EXPECT_EQ(ss.str(), std::string("\x00\x00\x80\x3f\x00\x00\x00\xc0", 8));
  qv::Vector back;
  EXPECT_EQ(back.deserialize(&ss), 0);
  EXPECT_EQ(back, qv::Vector(1.0f, -2.0f));
}

TEST(VectorTest, RoundTripIsBitExact) {
  qv::Vector v(1.0f / 3.0f, -0.0f);
  std::stringstream ss;
  ASSERT_EQ(v.serialize(&ss), 0);
  qv::Vector back(1, 1);
  ASSERT_EQ(back.deserialize(&ss), 0);
  EXPECT_EQ(back, v);
  EXPECT_TRUE(std::signbit(back.getY()));
}

TEST(VectorTest, HugeComponentsNormalizeWithoutOverflow) {
  qv::Vector v(1e20f, 0);
  v.normalize();
  EXPECT_EQ(v, qv::Vector(1, 0));
  qv::Vector w(-2e38f, 2e38f);
  EXPECT_TRUE(std::isfinite(w.getMagnitude()));
  w.normalize();
  EXPECT_FLOAT_EQ(w.getX(), -std::sqrt(0.5f));
}

// No coordinate is no number or beyond a million cells: such a value ends
// the record as a short one would, and the vector keeps what it had.
TEST_F(VectorLogTest, ValuesNoObjectCanHaveAreRefused) {
  const float cases[] = {std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(), -2e6f};
  const char *const lines[] = {"nan", "inf", "-2e+06"};
  for (int i = 0; i < 3; i++) {
    std::stringstream ss;
    qv::writeFloat(ss, 1);
    qv::writeFloat(ss, cases[i]);
    qv::Vector v(5, 6);
    EXPECT_EQ(v.deserialize(&ss), -1);
    EXPECT_EQ(v, qv::Vector(5, 6));
    EXPECT_TRUE(log->contains(std::string("readFloat(): Error! Value ") + lines[i] +
                              " out of range [-1e+06, 1e+06]; the record is refused."))
        << log->text();
  }
  EXPECT_TRUE(log->contains("Vector::deserialize(): Error! Stream fail."));
}

TEST_F(VectorLogTest, ShortRecordFailsAndLeavesTheVector) {
  std::stringstream ss(std::string("\x00\x00\x80\x3f\x00\x00", 6));
  qv::Vector v(5, 6);
  EXPECT_EQ(v.deserialize(&ss), -1);
  EXPECT_EQ(v, qv::Vector(5, 6));
  EXPECT_EQ(log->messages(), std::vector<std::string>{"Vector::deserialize(): Error! Stream eof."});
}
