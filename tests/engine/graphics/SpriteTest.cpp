#include <string>
#include <utility>
#include <vector>

#include "DisplayFixture.h"
#include "graphics/Animation.h"
#include "graphics/Frame.h"
#include "graphics/Sprite.h"

using qv::Animation;
using qv::Frame;
using qv::Sprite;
using qv::Vector;

namespace {

class FrameTest : public qvtest::DisplayFixture {
 protected:
  qv::DisplayManager &display() { return qv::DisplayManager::getInstance(); }
  // Columns 8..12 of rows 3..6 of the screen text; then a fresh frame.
  std::string around() {
    std::string out;
    for (int y = 3; y <= 6; y++) out += display().screenText().substr(y * 25 + 8, 5) + '\n';
    display().swapBuffers();
    return out;
  }
};

}  // namespace

TEST(SpriteTest, CapacityFrameLookupBoxAndDescription) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  Sprite sprite(2), broken(-1);
  EXPECT_EQ(sprite.addFrame(Frame(2, 1, "ab")) + sprite.addFrame(Frame(2, 1, "cd")), 0);
  EXPECT_EQ(sprite.addFrame(Frame(2, 1, "ef")) + broken.addFrame(Frame(1, 1, "a")), -2);
  EXPECT_EQ(sprite.getFrameCount(), 2);
  EXPECT_EQ(sprite.getFrame(1).getString(), "cd");
  EXPECT_TRUE(sprite.getFrame(2).isEmpty() && sprite.getFrame(-1).isEmpty());
  EXPECT_TRUE(log.contains("Sprite::Sprite(): Error! Unable to allocate -1 frames."));

  // Without a display a frame fails at its first cell; the animation still steps.
  EXPECT_EQ(Frame(3, 1, "abc").draw(Vector(5, 5), qv::RED, 0, qv::NONE), -1);
  EXPECT_EQ(log.count("DisplayManager not started!"), 1);
  EXPECT_EQ(Frame(3, 1, "###").draw(Vector(5, 5), qv::RED, '#', qv::NONE), 0);  // nothing to draw
  Animation animation;
  EXPECT_EQ(animation.getBox(), qv::Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  EXPECT_EQ(animation.draw(Vector()), 0);  // no sprite: nothing, no step
  animation.setSprite(&sprite);
  EXPECT_EQ(animation.draw(Vector(5, 5)), -1);
  EXPECT_EQ(animation.getIndex(), 1);
  EXPECT_EQ(sprite.draw(5, Vector(5, 5), 0, qv::NONE), 0);  // out of range: nothing
  sprite.setWidth(5);
  sprite.setHeight(3);
  sprite.setLabel("ship");
  animation.setSprite(&sprite);
  EXPECT_EQ(animation.getBox(), qv::Box(Vector(-2.5f, -1.5f), 5, 3));
  animation.setIndex(2);
  animation.setSlowdownCount(1);
  animation.setTransform(qv::HORIZONTAL);
  EXPECT_EQ(animation.toString(),
            "sprite ship, frame_idx 2, slowdown_count 1, transform HORIZONTAL");
  // A new sprite, even none, starts over; none keeps the name of the last.
  animation.setTransform(9);
  animation.setSprite(nullptr);
  EXPECT_EQ(animation.toString(), "sprite ship, frame_idx 0, slowdown_count 0, transform UNKNOWN");
}

TEST_F(FrameTest, CentredMirroredTransparentAndAnimated) {
  ASSERT_EQ(started, 0);
  // A 3 x 2 frame at (10, 5) covers x 9..11 on rows 4.5 and 5.5; an unknown
  // transform draws it as stored.
  for (const auto &[transform, picture] :
       std::vector<std::pair<int, std::string>>{{qv::NONE, "     \n abc \n def \n     \n"},
                                                {qv::HORIZONTAL, "     \n cba \n fed \n     \n"},
                                                {qv::VERTICAL, "     \n def \n abc \n     \n"},
                                                {qv::BOTH, "     \n fed \n cba \n     \n"},
                                                {7, "     \n abc \n def \n     \n"}}) {
    EXPECT_EQ(Frame(3, 2, "abcdef").draw(Vector(10, 5), qv::GREEN, 0, transform), 0);
    EXPECT_EQ(display().screenColor(9, 4), qv::GREEN);
    EXPECT_EQ(around(), picture) << "transform " << transform;
  }
  // Even sizes sit on half cells: x 9.5 and 10.5 fall in cells 9 and 10. A
  // string shorter than its size draws what it has; empty frames nothing.
  Frame(2, 1, "xy").draw(Vector(10, 3), qv::RED, 0, qv::NONE);
  EXPECT_EQ(Frame(3, 2, "abcd").draw(Vector(10, 5), qv::RED, 0, qv::BOTH), 0);
  EXPECT_EQ(Frame().draw(Vector(10, 5), qv::RED, 0, qv::NONE), 0);
  EXPECT_EQ(Frame(3, 0, "abc").draw(Vector(10, 5), qv::RED, 0, qv::NONE), 0);
  EXPECT_EQ(around(), " xy  \n   d \n cba \n     \n");

  // The transparent character leaves its cells untouched; without one every
  // cell is drawn, blanks included.
  display().drawString(Vector(9, 4), "xyz", qv::LEFT_JUSTIFIED, qv::BLUE);
  EXPECT_EQ(Frame(3, 1, "#a#").draw(Vector(10, 4), qv::RED, '#', qv::HORIZONTAL), 0);
  EXPECT_EQ(display().screenColor(9, 4), qv::BLUE);
  EXPECT_EQ(display().screenColor(10, 4), qv::RED);
  Frame(3, 1, "# #").draw(Vector(10, 5), qv::RED, 0, qv::NONE);
  EXPECT_EQ(around(), "     \n xaz \n # # \n     \n");

  // Each frame shows for the sprite's slowdown in game frames, the current
  // one drawn before the step; slowdown count -1 freezes it.
  Sprite sprite(3);
  for (const char *frame : {"a", "b", "c"}) sprite.addFrame(Frame(1, 1, frame));
  sprite.setSlowdown(2);
  sprite.setColor(qv::MAGENTA);
  sprite.setTransparency('c');
  Animation animation;
  animation.setIndex(2);
  animation.setSprite(&sprite);
  std::string seen;
  for (int i = 0; i < 13; i++) {
    if (i == 8) animation.setSlowdownCount(-1);
    EXPECT_EQ(animation.draw(Vector(10, 4)), 0);
    if (i == 0) {
      EXPECT_EQ(display().screenColor(10, 4), qv::MAGENTA);
    }
    seen += around()[8];
  }
  EXPECT_EQ(seen, "aabb  aabbbbb");  // 'c' is the sprite's transparent character
}
