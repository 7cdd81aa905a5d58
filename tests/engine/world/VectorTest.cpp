#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "EngineFixture.h"
#include "world/Box.h"
#include "world/Vector.h"

class VectorLogTest : public qvtest::LogFixture {};

using qv::Vector;

TEST(VectorTest, ArithmeticNormalizationAndText) {
  Vector v;
  v.normalize();
  EXPECT_EQ(v, Vector(0, 0));
  Vector w(3, 4);
  EXPECT_FLOAT_EQ(w.getMagnitude(), 5.0f);
  w.normalize();
  EXPECT_FLOAT_EQ(w.getX(), 0.6f);
  EXPECT_FLOAT_EQ(w.getY(), 0.8f);
  w.setXY(1, -2);
  w.scale(-2);
  EXPECT_EQ(w, Vector(-2, 4));
  EXPECT_EQ(w + Vector(1, 1), Vector(-1, 5));
  EXPECT_EQ(w - Vector(1, 1), Vector(-3, 3));
  w += Vector(0.5f, 0.5f);
  EXPECT_EQ(w, Vector(-1.5f, 4.5f));
  EXPECT_TRUE(w != Vector(-1.5f, 4.25f));
  // Six significant digits, no trailing zeros.
  EXPECT_EQ(Vector(1, 1).toString() + Vector(0.5f, -2).toString() + Vector(3, 4.5f).toString() +
                Vector(1.0f / 3.0f, 0).toString(),
            "(1,1)(0.5,-2)(3,4.5)(0.333333,0)");
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

TEST(BoxTest, EqualityAndText) {
  const qv::Box box(Vector(-0.5f, -0.5f), 0.99f, 0.99f);
  EXPECT_TRUE(box == qv::Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  EXPECT_TRUE(box != qv::Box(Vector(-0.5f, -0.5f), 0.99f, 1));
  EXPECT_TRUE(box != qv::Box(Vector(-0.5f, -0.5f), 1, 0.99f));
  EXPECT_EQ(box.toString(), "(-0.5,-0.5) h: 0.99 v: 0.99");
}
