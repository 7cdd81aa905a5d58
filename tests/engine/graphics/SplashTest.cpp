#include <algorithm>
#include <numeric>

#include "EngineFixture.h"
#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/Splash.h"
#include "graphics/SplashQuorvelle.h"
#include "graphics/Sprite.h"
#include "input/InputManager.h"

using qv::Vector;
using qvtest::Probe;

namespace {

qv::Object *findObject(const std::string &type) {
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++)
    if (all[i]->getType() == type) return all[i];
  return nullptr;
}

// A probe that hears every step before the splash objects do (it is made
// first) and presses Space at key_step.
Probe *stepProbe(int key_step, std::function<void(int)> at_step) {
  auto *probe = new Probe;
  probe->registerInterest("qv-step");
  probe->on_event = [=](const qv::Event *p_e) {
    const int step = static_cast<const qv::EventStep *>(p_e)->getStepCount();
    at_step(step);
    if (step != key_step) return 0;
    EXPECT_EQ(qv::InputManager::getInstance().deliverKeyboard(qv::Keyboard::SPACE, qv::KEY_PRESSED),
              0);
    return 0;
  };
  return probe;
}

class SplashTest : public qvtest::EngineFixture {
 protected:
  // Short frames keep the 90 steps quick; the slide then takes 2 steps.
  std::string config() const override { return "frame_time:4,\n" + EngineFixture::config(); }
};

}  // namespace

TEST(SplashBeforeStartTest, RefusesAndCreatesNothing) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  EXPECT_EQ(qv::splash(), -1);
  EXPECT_TRUE(
      log.contains("splash(): Error! Cannot run splash screen until game manger is started."));
  EXPECT_EQ(qv::WorldManager::getInstance().getAllObjects(true).getCount(), 0);
}

// Untouched (no key by step 99) the sequence runs steps 0 to 89; a key ends
// it in the step it arrives: during the slide the emblem is never made, while
// it rises both objects go. The banner hears the key first and sets game
// over, so neither counts it as handled. Game over from outside the splash
// objects (the window closed during frame 20) ends the loop before they can
// remove themselves: splash() must not leave them to carry on in the next loop.
TEST_F(SplashTest, NinetyStepsOrUntilAKeyAndNothingIsLeft) {
  for (int key_step : {3, 30, 99, -20}) {
    int last = -1;
    Probe *probe = stepProbe(key_step, [&](int step) {
      last = step;
      auto *emblem = dynamic_cast<qv::SplashQuorvelle *>(findObject("SplashQuorvelle"));
      ASSERT_EQ(emblem != nullptr, step >= 15) << "step " << step;
      if (step == 15) {
        // Made six rows below the view a step ago, to rise to its row in 30 steps.
        const Vector target = emblem->getTarget();
        EXPECT_EQ(target, findObject("Splash")->getPosition() + Vector(24, 1));
        EXPECT_EQ(emblem->getVelocity(), Vector(0, -(30 - target.getY()) / 30));
        EXPECT_EQ(emblem->getPosition(), Vector(target.getX(), 30) + emblem->getVelocity());
      }
      // Risen, blue, in its two pictures; later shrunk, green, a column left.
      if (step == 56 || step == 61) {
        const qv::Sprite *s = emblem->getAnimation().getSprite();
        const bool small = step == 61;
        EXPECT_EQ(emblem->getPosition().toString(),
                  (emblem->getTarget() - Vector(small ? 1 : 0, 0)).toString());
        EXPECT_EQ(s->getColor(), small ? qv::GREEN : qv::BLUE);
        const auto &rows = small ? qv::splashSmallEmblem() : qv::splashEmblem(1);
        EXPECT_EQ(s->getFrame(small ? 0 : 1).getString(),
                  std::accumulate(rows.begin(), rows.end(), std::string()));
      }
    });
    probe->on_draw = [key_step](Probe *) {
      qv::GameManager &game = qv::GameManager::getInstance();
      if (game.getStepCount() == -key_step) game.setGameOver(true);
    };
    EXPECT_EQ(qv::splash(), 0);
    const int end = key_step < 0 ? -key_step : std::min(key_step, 89);
    EXPECT_EQ(last, end);
    EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), end + 1);
    // The next id tells how many objects were made after the probe.
    auto *p_o = new qv::Object;
    EXPECT_EQ(p_o->getId() - probe->getId() - 1, key_step == 3 ? 1 : 2) << "emblem made?";
    qv::WorldManager::getInstance().markForDelete(p_o);
    qv::WorldManager::getInstance().markForDelete(probe);
    qv::WorldManager::getInstance().update();
    EXPECT_FALSE(findObject("Splash") || findObject("SplashQuorvelle")) << key_step;
  }
}
