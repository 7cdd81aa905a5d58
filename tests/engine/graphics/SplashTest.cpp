#include <string>

#include "HudFixture.h"
#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/Splash.h"
#include "graphics/SplashQuorvelle.h"
#include "graphics/Sprite.h"
#include "input/InputManager.h"
#include "world/WorldManager.h"

using qv::Vector;
using qvtest::Probe;

namespace {

qv::Object *findObject(const std::string &type) {
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++)
    if (all[i]->getType() == type) return all[i];
  return nullptr;
}

bool splashLeft() {
  return findObject("Splash") || findObject("SplashQuorvelle");
}

// A probe that hears every step before the splash objects do (it is made
// first); its id tells how many objects were made after it.
Probe *stepProbe(std::function<void(int)> at_step) {
  auto *probe = new Probe;
  probe->registerInterest("qv-step");
  probe->on_event = [at_step](const qv::Event *p_e) {
    if (auto *p_step = dynamic_cast<const qv::EventStep *>(p_e)) at_step(p_step->getStepCount());
    return 0;
  };
  return probe;
}

int objectsMadeSince(const Probe *probe) {
  auto *p_o = new qv::Object;
  qv::WorldManager::getInstance().markForDelete(p_o);
  return p_o->getId() - probe->getId() - 1;
}

class SplashTest : public qvtest::HudEngineFixture {
 protected:
  // Short frames keep the 90 steps quick; the slide then takes 2 steps.
  std::string config() const override { return "frame_time:4,\n" + HudEngineFixture::config(); }
};

class SplashBeforeStartTest : public qvtest::LogFixture {};

}  // namespace

TEST_F(SplashBeforeStartTest, RefusesAndCreatesNothing) {
  EXPECT_EQ(qv::splash(), -1);
  EXPECT_TRUE(
      log->contains("splash(): Error! Cannot run splash screen until game manger is started."));
  EXPECT_EQ(qv::WorldManager::getInstance().getAllObjects(true).getCount(), 0);
}

TEST_F(SplashTest, WithoutAKeyItRunsNinetyStepsAndLeavesNothing) {
  // 8 rows of 47 columns. The emblem rests 24 columns right of the banner's centre,
  // over its last six columns; the stopped lettering keeps them blank.
  ASSERT_EQ(qv::splashBanner(1).size(), 8u);
  for (const std::string &row : qv::splashBanner(1)) EXPECT_EQ(row.substr(41), "      ");
  int last = -1;
  Vector stop_position, target;
  Probe *probe = stepProbe([&](int step) {
    last = step;
    auto *banner = findObject("Splash");
    auto *emblem = dynamic_cast<qv::SplashQuorvelle *>(findObject("SplashQuorvelle"));
    ASSERT_EQ(banner && emblem, step >= 15) << "step " << step;
    if (step == 0) {
      // Beyond the right edge, mid-height, to slide 11 left of the middle in 2 steps.
      EXPECT_EQ(banner->getPosition(), Vector(80 + 23.5f, 12));
      EXPECT_EQ(banner->getVelocity(), Vector(-(23.5f + 40 + 11) / 2, 0));
      EXPECT_EQ(banner->getBox(), qv::Box(Vector(-23.5f, -4), 47, 8));
      EXPECT_EQ(banner->getAnimation().getSlowdownCount(), -1);  // the frame changes by hand
      const qv::Sprite *p_sprite = banner->getAnimation().getSprite();
      EXPECT_EQ(p_sprite->getColor(), qv::GREEN);
      EXPECT_EQ(p_sprite->getFrame(1).getString().substr(47, 47), qv::splashBanner(1)[1]);
    }
    if (step < 15) return;
    const qv::Sprite *p_sprite = emblem->getAnimation().getSprite();
    if (step == 15) {
      EXPECT_EQ(banner->getVelocity(), Vector(0, 0));
      EXPECT_EQ(banner->getAnimation().getIndex(), 1);
      stop_position = banner->getPosition();
      target = emblem->getTarget();
      // Made six rows below the view a step ago, to rise to its row in 30 steps.
      EXPECT_EQ(emblem->getVelocity(), Vector(0, -(30 - target.getY()) / 30));
      EXPECT_EQ(emblem->getPosition(), Vector(target.getX(), 30) + emblem->getVelocity());
      EXPECT_EQ(p_sprite->getColor(), qv::BLUE);
    } else if (step == 46) {  // stopped on its row, not a step later
      EXPECT_EQ(emblem->getVelocity(), Vector(0, 0));
      EXPECT_FLOAT_EQ(emblem->getPosition().getX(), target.getX());
      EXPECT_NEAR(emblem->getPosition().getY(), target.getY(), 0.001);
    } else if (step == 59) {
      EXPECT_EQ(p_sprite->getWidth(), 11);
    } else if (step == 60) {
      EXPECT_EQ(p_sprite->getHeight(), 6);
      EXPECT_EQ(p_sprite->getColor(), qv::GREEN);
      EXPECT_FLOAT_EQ(emblem->getPosition().getX(), target.getX() - 1);
      EXPECT_EQ(emblem->getBox(), qv::Box(Vector(-4.5f, -3), 9, 6));
    }
  });
  EXPECT_EQ(qv::splash(), 0);
  EXPECT_EQ(last, 89);  // steps 0 to 89: ninety of them
  EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), 90);
  EXPECT_EQ(target, stop_position + Vector(24, 1));
  EXPECT_FALSE(splashLeft());
  EXPECT_EQ(objectsMadeSince(probe), 2);  // banner and emblem, nothing else
}

// A key ends the sequence in the step it arrives: during the slide the
// emblem is never made; while it rises both objects go. The banner hears the
// key first and sets game over, so neither counts it as handled.
TEST_F(SplashTest, AKeyEndsTheSequenceInThatStep) {
  for (int key_step : {3, 30}) {
    int last = -1, answered = -1;
    Probe *probe = stepProbe([&](int step) {
      last = step;
      if (step == key_step)
        answered =
            qv::InputManager::getInstance().deliverKeyboard(qv::Keyboard::SPACE, qv::KEY_PRESSED);
    });
    EXPECT_EQ(qv::splash(), 0);
    EXPECT_EQ(answered, 0);
    EXPECT_EQ(last, key_step);
    EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), key_step + 1);
    EXPECT_FALSE(splashLeft());
    EXPECT_EQ(objectsMadeSince(probe), key_step < 15 ? 1 : 2) << "emblem made?";
    qv::WorldManager::getInstance().markForDelete(probe);
    qv::WorldManager::getInstance().update();
  }
}

// Game over from outside the splash objects (the window closed during the
// frame) ends the loop before they can remove themselves: splash() must not
// leave them to carry on in the next loop.
TEST_F(SplashTest, ACutShortSequenceDoesNotResumeInTheNextLoop) {
  Probe *probe = stepProbe([](int) {});
  probe->on_draw = [](Probe *) {
    if (qv::GameManager::getInstance().getStepCount() == 20)
      qv::GameManager::getInstance().setGameOver(true);
  };
  EXPECT_EQ(qv::splash(), 0);
  qv::Object *banner = findObject("Splash");
  qv::Object *emblem = findObject("SplashQuorvelle");
  ASSERT_TRUE(banner && emblem);
  EXPECT_FALSE(banner->isActive() || emblem->isActive());
  qv::WorldManager::getInstance().update();
  EXPECT_FALSE(splashLeft());
}
