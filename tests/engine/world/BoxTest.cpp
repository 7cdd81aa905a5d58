#include <gtest/gtest.h>

#include <sstream>

#include "EngineFixture.h"
#include "world/Box.h"

class BoxLogTest : public qvtest::LogFixture {};

TEST(BoxTest, EqualityAndText) {
  qv::Box box;
  box.setCorner(qv::Vector(-0.5f, -0.5f));
  box.setHorizontal(0.99f);
  box.setVertical(0.99f);
  EXPECT_EQ(box, qv::Box(qv::Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  EXPECT_TRUE(box != qv::Box(qv::Vector(-0.5f, -0.5f), 0.99f, 1));
  EXPECT_EQ(box.toString(), "(-0.5,-0.5) h: 0.99 v: 0.99");
}

TEST(BoxTest, SerializesCornerThenExtentsIn16Bytes) {
  std::stringstream ss;
  qv::Box box(qv::Vector(1, -2), 0.5f, 80);
  EXPECT_EQ(box.serialize(&ss), 0);
  EXPECT_EQ(ss.str(), std::string("\x00\x00\x80\x3f"
                                  "\x00\x00\x00\xc0"
                                  "\x00\x00\x00\x3f"
                                  "\x00\x00\xa0\x42",
                                  16));
  qv::Box back;
  EXPECT_EQ(back.deserialize(&ss), 0);
  EXPECT_EQ(back, box);
}

TEST_F(BoxLogTest, ShortRecordFailsOnceAndLeavesTheBox) {
  std::stringstream ss;
  qv::Box(qv::Vector(1, 2), 3, 4).serialize(&ss);
  std::stringstream cut(ss.str().substr(0, 12));
  qv::Box box(qv::Vector(9, 9), 9, 9);
  EXPECT_EQ(box.deserialize(&cut), -1);
  EXPECT_EQ(box, qv::Box(qv::Vector(9, 9), 9, 9));
  EXPECT_EQ(log->messages(), std::vector<std::string>{"Box::deserialize(): Error! Stream eof."});
}
