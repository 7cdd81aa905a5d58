#include <signal.h>

#include <filesystem>
#include <string>
#include <vector>

#include "EventStep.h"
#include "GameManager.h"
#include "HudFixture.h"
#include "InputManager.h"
#include "LogManager.h"
#include "Splash.h"
#include "SplashQuorvelle.h"
#include "Sprite.h"
#include "WorldFixture.h"
#include "WorldManager.h"

using qv::Vector;
using qvtest::Probe;

namespace {

qv::Object *findObject(const std::string &type) {
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++)
    if (all[i]->getType() == type) return all[i];
  return nullptr;
}

int stepOf(const qv::Event *p_e) {
  const auto *p_step = dynamic_cast<const qv::EventStep *>(p_e);
  return p_step ? p_step->getStepCount() : -1;
}

// A probe that hears every step before the splash objects do (it is made first).
Probe *stepProbe(std::function<void(int)> at_step) {
  auto *probe = new Probe;
  probe->registerInterest("qv-step");
  probe->on_event = [at_step](const qv::Event *p_e) {
    if (stepOf(p_e) >= 0) at_step(stepOf(p_e));
    return 0;
  };
  return probe;
}

int nextObjectId() {
  auto *p_o = new qv::Object;
  const int id = p_o->getId();
  qv::WorldManager::getInstance().markForDelete(p_o);
  return id;
}

bool pressKey() {
  return qv::InputManager::getInstance().deliverKeyboard(qv::Keyboard::SPACE, qv::KEY_PRESSED);
}

class SplashTest : public qvtest::HudEngineFixture {
 protected:
  // Short frames keep the 90 steps quick; the slide then takes 2 steps.
  std::string config() const override { return "frame_time:4,\n" + HudEngineFixture::config(); }
};

class SplashBeforeStartTest : public qvtest::LogFixture {};

}  // namespace

TEST_F(SplashBeforeStartTest, RefusesAndCreatesNothing) {
  qv::LogManager::getInstance().setLogLevel(10);
  EXPECT_EQ(qv::splash(), -1);
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "splash(): Started.",
                "splash(): Error! Cannot run splash screen until game manger is started."}));
  EXPECT_EQ(qv::WorldManager::getInstance().getAllObjects(true).getCount(), 0);
}

TEST_F(SplashTest, PicturesHaveTheirSizesAndLeaveRoomForTheEmblem) {
  for (int lettering : {0, 1}) {
    ASSERT_EQ(qv::splashBanner(lettering).size(), 8u);
    for (const std::string &row : qv::splashBanner(lettering)) EXPECT_EQ(row.size(), 47u);
  }
  EXPECT_NE(qv::splashBanner(0), qv::splashBanner(1));
  for (int variant : {0, 1}) {
    ASSERT_EQ(qv::splashEmblem(variant).size(), 7u);
    for (const std::string &row : qv::splashEmblem(variant)) EXPECT_EQ(row.size(), 11u);
  }
  EXPECT_NE(qv::splashEmblem(0), qv::splashEmblem(1));
  ASSERT_EQ(qv::splashSmallEmblem().size(), 6u);
  for (const std::string &row : qv::splashSmallEmblem()) EXPECT_EQ(row.size(), 9u);

  // The emblem rests 24 columns right of the banner's centre, over its last
  // six columns; the stopped lettering keeps them blank so nothing is hidden.
  for (const std::string &row : qv::splashBanner(1)) EXPECT_EQ(row.substr(41), "      ");
}

TEST_F(SplashTest, BannerStartsBeyondTheRightEdgeAndSlidesLeft) {
  auto *banner = new qv::Splash;
  EXPECT_EQ(banner->getType(), "Splash");
  EXPECT_EQ(banner->getSolidness(), qv::SPECTRAL);
  EXPECT_EQ(banner->getPosition(), Vector(80 + 23.5f, 12));
  EXPECT_EQ(banner->getVelocity(), Vector(-(23.5f + 40 + 11) / 2, 0));
  EXPECT_EQ(banner->getBox(), qv::Box(Vector(-23.5f, -4), 47, 8));
  ASSERT_EQ(banner->getEventCount(), 2);
  EXPECT_EQ(banner->getEvent(0), "qv-step");
  EXPECT_EQ(banner->getEvent(1), "qv-keyboard");

  const qv::Animation animation = banner->getAnimation();
  EXPECT_EQ(animation.getSlowdownCount(), -1);
  const qv::Sprite *p_sprite = animation.getSprite();
  ASSERT_NE(p_sprite, nullptr);
  EXPECT_EQ(p_sprite->getLabel(), "splash");
  EXPECT_EQ(p_sprite->getFrameCount(), 2);
  EXPECT_EQ(p_sprite->getColor(), qv::GREEN);
  EXPECT_EQ(p_sprite->getTransparency(), 0);
  EXPECT_EQ(p_sprite->getFrame(1).getString().substr(47, 47), qv::splashBanner(1)[1]);

  auto *emblem = new qv::SplashQuorvelle(Vector(50, 13));
  EXPECT_EQ(emblem->getPosition(), Vector(50, 30));  // six rows below the view
  EXPECT_EQ(emblem->getVelocity(), Vector(0, -17.0f / 30));
  const qv::Sprite *p_emblem = emblem->getAnimation().getSprite();
  ASSERT_NE(p_emblem, nullptr);
  EXPECT_EQ(p_emblem->getLabel(), "splash-quorvelle");
  EXPECT_EQ(p_emblem->getColor(), qv::BLUE);
  EXPECT_EQ(p_emblem->getSlowdown(), 2);
}

TEST_F(SplashTest, WithoutAKeyItRunsNinetyStepsAndLeavesNothing) {
  qv::LogManager::getInstance().setLogLevel(10);
  std::vector<int> steps;
  Vector stop_position, target, rest;
  int emblem_at_15 = 0, small_at_60 = 0, big_at_59 = 0;
  Probe *probe = stepProbe([&](int step) {
    steps.push_back(step);
    auto *banner = findObject("Splash");
    auto *emblem = dynamic_cast<qv::SplashQuorvelle *>(findObject("SplashQuorvelle"));
    if (step == 14) {
      EXPECT_EQ(emblem, nullptr);
    }
    if (step == 15 && banner && emblem) {
      emblem_at_15 = 1;
      EXPECT_EQ(banner->getVelocity(), Vector(0, 0));
      EXPECT_EQ(banner->getAnimation().getIndex(), 1);
      stop_position = banner->getPosition();
      target = emblem->getTarget();
    }
    if (step == 46 && emblem) {
      EXPECT_EQ(emblem->getVelocity(), Vector(0, 0));
      rest = emblem->getPosition();
    }
    if (step == 59 && emblem) big_at_59 = emblem->getAnimation().getSprite()->getWidth() == 11;
    if (step == 60 && emblem) {
      const qv::Sprite *p_small = emblem->getAnimation().getSprite();
      small_at_60 = p_small->getWidth() == 9 && p_small->getHeight() == 6 &&
                    p_small->getColor() == qv::GREEN && p_small->getFrameCount() == 1;
      EXPECT_FLOAT_EQ(emblem->getPosition().getX(), target.getX() - 1);
      EXPECT_EQ(emblem->getBox(), qv::Box(Vector(-4.5f, -3), 9, 6));
    }
    if (step == 89) {
      EXPECT_TRUE(banner && emblem);
    }
  });
  const int probe_id = probe->getId();

  EXPECT_EQ(qv::splash(), 0);
  ASSERT_FALSE(steps.empty());
  EXPECT_EQ(steps.back(), 89);  // steps 0 to 89: ninety of them
  EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), 90);
  EXPECT_TRUE(emblem_at_15);
  EXPECT_EQ(target, stop_position + Vector(24, 1));
  EXPECT_FLOAT_EQ(rest.getX(), target.getX());
  EXPECT_NEAR(rest.getY(), target.getY(), 0.001);  // stopped on its row, not a step later
  EXPECT_TRUE(big_at_59);
  EXPECT_TRUE(small_at_60);
  EXPECT_EQ(findObject("Splash"), nullptr);
  EXPECT_EQ(findObject("SplashQuorvelle"), nullptr);
  EXPECT_EQ(nextObjectId(), probe_id + 3);  // banner and emblem, nothing else
  EXPECT_TRUE(log->contains("splash(): Started."));
  EXPECT_TRUE(log->contains("splash(): Finished."));
}

// A key ends the sequence in the step it arrives: during the slide the
// emblem is never made; while it rises both objects go. The banner hears the
// key first and sets game over, so neither counts it as handled.
TEST_F(SplashTest, AKeyEndsTheSequenceInThatStep) {
  for (int key_step : {3, 30}) {
    std::vector<int> steps;
    int answered = -1;
    Probe *probe = stepProbe([&](int step) {
      steps.push_back(step);
      if (step == key_step) answered = pressKey();
    });
    const int probe_id = probe->getId();
    EXPECT_EQ(qv::splash(), 0);
    EXPECT_EQ(answered, 0);
    EXPECT_EQ(steps.back(), key_step);
    EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), key_step + 1);
    EXPECT_EQ(findObject("Splash"), nullptr);
    EXPECT_EQ(findObject("SplashQuorvelle"), nullptr);
    EXPECT_EQ(nextObjectId(), probe_id + (key_step < 15 ? 2 : 3)) << "emblem made?";
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
  EXPECT_FALSE(banner->isActive());
  EXPECT_FALSE(emblem->isActive());
  qv::WorldManager::getInstance().update();
  EXPECT_EQ(findObject("Splash"), nullptr);
  EXPECT_EQ(findObject("SplashQuorvelle"), nullptr);
}
