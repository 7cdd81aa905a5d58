#include <string>

#include "DisplayFixture.h"
#include "graphics/Animation.h"
#include "graphics/Frame.h"
#include "graphics/Sprite.h"

using qv::Frame;
using qv::Vector;

namespace {

class FrameTest : public qvtest::DisplayFixture {
 protected:
  qv::DisplayManager &display() { return qv::DisplayManager::getInstance(); }
  // Columns 8..12 of rows 3..6 of the screen text.
  std::string around() {
    std::string out;
    for (int y = 3; y <= 6; y++) {
      for (int x = 8; x <= 12; x++) out += display().screenChar(x, y);
      out += '\n';
    }
    display().swapBuffers();
    return out;
  }
};

}  // namespace

TEST_F(FrameTest, CentredAndMirrored) {
  ASSERT_EQ(started, 0);
  const Frame frame(3, 2, "abcdef");
  // A 3 x 2 frame at (10, 5) covers x 9..11 on rows 4.5 and 5.5.
  EXPECT_EQ(frame.draw(Vector(10, 5), qv::GREEN, 0, qv::NONE), 0);
  EXPECT_EQ(display().screenColor(9, 4), qv::GREEN);
  EXPECT_EQ(around(), "     \n abc \n def \n     \n");
  frame.draw(Vector(10, 5), qv::GREEN, 0, qv::HORIZONTAL);
  EXPECT_EQ(around(), "     \n cba \n fed \n     \n");
  frame.draw(Vector(10, 5), qv::GREEN, 0, qv::VERTICAL);
  EXPECT_EQ(around(), "     \n def \n abc \n     \n");
  frame.draw(Vector(10, 5), qv::GREEN, 0, qv::BOTH);
  EXPECT_EQ(around(), "     \n fed \n cba \n     \n");
  frame.draw(Vector(10, 5), qv::GREEN, 0, 7);  // unknown: as stored
  EXPECT_EQ(around(), "     \n abc \n def \n     \n");

  // Even sizes sit on half cells: x 9.5 and 10.5 fall in cells 9 and 10.
  Frame(2, 1, "xy").draw(Vector(10, 4), qv::RED, 0, qv::NONE);
  EXPECT_EQ(around(), "     \n xy  \n     \n     \n");
  // A string shorter than its size draws what it has; empty frames nothing.
  EXPECT_EQ(Frame(3, 2, "abcd").draw(Vector(10, 5), qv::RED, 0, qv::BOTH), 0);
  EXPECT_EQ(Frame().draw(Vector(10, 5), qv::RED, 0, qv::NONE), 0);
  EXPECT_EQ(Frame(3, 0, "abc").draw(Vector(10, 5), qv::RED, 0, qv::NONE), 0);
  EXPECT_EQ(around(), "     \n   d \n cba \n     \n");
}

TEST_F(FrameTest, TransparencyLeavesCellsUntouched) {
  ASSERT_EQ(started, 0);
  display().drawString(Vector(9, 4), "xyz", qv::LEFT_JUSTIFIED, qv::BLUE);
  EXPECT_EQ(Frame(3, 1, "#a#").draw(Vector(10, 4), qv::RED, '#', qv::HORIZONTAL), 0);
  EXPECT_EQ(display().screenColor(9, 4), qv::BLUE);
  EXPECT_EQ(display().screenColor(10, 4), qv::RED);
  // Without a transparent character every cell is drawn, blanks included.
  Frame(3, 1, "# #").draw(Vector(10, 5), qv::RED, 0, qv::NONE);
  EXPECT_EQ(around(), "     \n xaz \n # # \n     \n");
}

class FrameHeadlessTest : public qvtest::DisplayFixture {
  std::string settings() const override { return "headless:true,"; }
};

TEST_F(FrameHeadlessTest, DrawingFailsButAnimationStillSteps) {
  ASSERT_EQ(started, 0);
  EXPECT_EQ(Frame(3, 1, "abc").draw(Vector(5, 5), qv::RED, 0, qv::NONE), -1);
  EXPECT_EQ(Frame(3, 1, "###").draw(Vector(5, 5), qv::RED, '#', qv::NONE), 0);  // nothing to draw
  qv::Sprite sprite(2);
  sprite.addFrame(Frame(1, 1, "a"));
  sprite.addFrame(Frame(1, 1, "b"));
  qv::Animation animation;
  animation.setSprite(&sprite);
  EXPECT_EQ(animation.draw(Vector(5, 5)), -1);
  EXPECT_EQ(animation.getIndex(), 1);
  EXPECT_EQ(sprite.draw(5, Vector(5, 5), 0, qv::NONE), 0);  // out of range: nothing
}
