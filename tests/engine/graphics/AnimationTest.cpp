#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DisplayFixture.h"
#include "LogCapture.h"
#include "graphics/Animation.h"
#include "graphics/Frame.h"
#include "graphics/Sprite.h"

using qv::Animation;
using qv::Frame;
using qv::Sprite;
using qv::Vector;

namespace {

// A sprite whose frame i is the single character 'a' + i.
void fill(Sprite &sprite, int frames, int slowdown) {
  for (int i = 0; i < frames; i++)
    ASSERT_EQ(sprite.addFrame(Frame(1, 1, std::string(1, char('a' + i)))), 0);
  sprite.setWidth(1);
  sprite.setHeight(1);
  sprite.setSlowdown(slowdown);
}

class AnimationDrawTest : public qvtest::DisplayFixture {};

}  // namespace

TEST(Sprite, CapacityAndFrameLookup) {
  Sprite sprite(2);
  EXPECT_EQ(sprite.getLabel(), "[Undefined]");
  EXPECT_EQ(sprite.getColor(), qv::WHITE);
  EXPECT_EQ(sprite.getSlowdown(), 1);
  EXPECT_EQ(sprite.addFrame(Frame(2, 1, "ab")), 0);
  EXPECT_EQ(sprite.addFrame(Frame(2, 1, "cd")), 0);
  EXPECT_EQ(sprite.addFrame(Frame(2, 1, "ef")), -1);
  EXPECT_EQ(sprite.getFrameCount(), 2);
  EXPECT_EQ(sprite.getFrame(1).getString(), "cd");
  EXPECT_TRUE(sprite.getFrame(2).isEmpty());
  EXPECT_TRUE(sprite.getFrame(-1).isEmpty());

  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  Sprite broken(-1);
  EXPECT_EQ(broken.getMaxFrameCount(), 0);
  EXPECT_EQ(broken.addFrame(Frame(1, 1, "a")), -1);
  EXPECT_TRUE(log.contains("Sprite::Sprite(): Error! Unable to allocate -1 frames."));
}

TEST(Animation, SlowdownSequenceAndFreezing) {
  Sprite sprite(3);
  fill(sprite, 3, 2);
  sprite.setLabel("ship");
  Animation animation;
  EXPECT_EQ(animation.draw(Vector()), 0);  // no sprite: nothing, no step
  animation.setIndex(2);
  animation.setSprite(&sprite);
  EXPECT_EQ(animation.getName(), "ship");
  std::vector<int> shown;
  qvtest::LogCapture log;  // the display is not started: drawing logs
  ASSERT_TRUE(log.start());
  for (int i = 0; i < 8; i++) {
    shown.push_back(animation.getIndex());
    animation.draw(Vector(1, 1));
  }
  EXPECT_EQ(shown, (std::vector<int>{0, 0, 1, 1, 2, 2, 0, 0}));

  animation.setSlowdownCount(-1);
  for (int i = 0; i < 5; i++) animation.draw(Vector(1, 1));
  EXPECT_EQ(animation.getIndex(), 1);
  EXPECT_EQ(animation.getSlowdownCount(), -1);

  // A one-frame sprite stays on frame 0; setting no sprite keeps the name.
  Sprite still(1);
  fill(still, 1, 1);
  animation.setSprite(&still);
  animation.draw(Vector(1, 1));
  animation.draw(Vector(1, 1));
  EXPECT_EQ(animation.getIndex(), 0);
  animation.setSprite(nullptr);
  EXPECT_EQ(animation.getName(), "[Undefined]");
  EXPECT_EQ(animation.getSprite(), nullptr);
}

TEST(Animation, BoxAndDescription) {
  Animation animation;
  EXPECT_EQ(animation.getBox(), qv::Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  Sprite sprite(1);
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
  animation.setSlowdownCount(-1);
  animation.setTransform(9);
  EXPECT_EQ(animation.toString(), "sprite ship, frame_idx 2, slowdown_count -1, transform UNKNOWN");
}

TEST_F(AnimationDrawTest, DrawsTheCurrentFrameThenSteps) {
  ASSERT_EQ(started, 0);
  Sprite sprite(3);
  fill(sprite, 3, 1);
  sprite.setColor(qv::MAGENTA);
  sprite.setTransparency('c');
  Animation animation;
  animation.setSprite(&sprite);
  std::string seen;
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(animation.draw(Vector(4, 2)), 0);
    seen += qv::DisplayManager::getInstance().screenChar(4, 2);
    qv::DisplayManager::getInstance().swapBuffers();
  }
  EXPECT_EQ(seen, "ab a");  // 'c' is the sprite's transparent character
  EXPECT_EQ(animation.getIndex(), 1);
}
