#include <algorithm>
#include <cmath>

#include "HudFixture.h"
#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/Splash.h"
#include "graphics/SplashQuorvelle.h"
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

// The 80 x 24 screen with each picture drawn as a frame centred on its position.
using Placed = std::pair<std::vector<std::string>, Vector>;
std::string screenWith(const std::vector<Placed> &pictures) {
  std::vector<std::string> rows(24, std::string(80, ' '));
  for (const auto &[picture, at] : pictures) {
    const int left = int(std::floor(at.getX() - (float(picture[0].size()) - 1) / 2));
    const int top = int(std::floor(at.getY() - (float(picture.size()) - 1) / 2));
    for (int r = 0; r < int(picture.size()); r++)
      for (int c = 0; c < int(picture[r].size()); c++)
        if (top + r < 24 && left + c < 80) rows[top + r][left + c] = picture[r][c];
  }
  std::string text;
  for (const std::string &row : rows) text += row + '\n';
  return text;
}

class SplashTest : public qvtest::HudEngineFixture {
 protected:
  // Short frames keep the 90 steps quick; the slide then takes 2 steps.
  std::string config() const override { return "frame_time:4,\n" + HudEngineFixture::config(); }
};

// Frames of 30 ms: the slide is timed for 15 steps, and the banner, stopped
// in the step its counter runs out, has made 14 of them.
class SplashWindowTest : public qvtest::HudWindowFixture {
 protected:
  std::string config() const override { return "frame_time:30,\n" + HudWindowFixture::config(); }
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

// At a step's start the frame the previous step drew is still in the text
// view: the banner at rest in its boxed lettering (green), then the emblem
// risen beside it (blue, in either of its two pictures), then shrunk (green).
TEST_F(SplashWindowTest, BannerThenEmblemThenSmallEmblemOnScreen) {
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  const Placed banner{qv::splashBanner(1), Vector(33.9667f, 12)};
  std::vector<std::pair<std::string, Vector>> seen;  // the screen, and where the emblem was
  stepProbe(61, [&](int step) {
    if (step != 15 && step != 56 && step != 61) return;
    const qv::Object *emblem = findObject("SplashQuorvelle");
    seen.emplace_back(display.screenText(), step > 15 ? emblem->getPosition() : Vector());
    // The banner's last six columns are blank, so each side has one colour.
    for (int y = 0; y < 24; y++)
      for (int x = 0; x < 80; x++)
        if (display.screenChar(x, y) != ' ') {
          EXPECT_EQ(display.screenColor(x, y), x < 52 || step == 61 ? qv::GREEN : qv::BLUE)
              << x << "," << y << " at step " << step;
        }
  });
  ASSERT_EQ(qv::splash(), 0);
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0].first, screenWith({banner}));
  EXPECT_NEAR(seen[1].second.getX(), 57.9667f, 0.001);
  EXPECT_NEAR(seen[1].second.getY(), 13, 0.001);
  EXPECT_TRUE(seen[1].first == screenWith({banner, {qv::splashEmblem(0), seen[1].second}}) ||
              seen[1].first == screenWith({banner, {qv::splashEmblem(1), seen[1].second}}))
      << seen[1].first;
  EXPECT_EQ(seen[2].second, seen[1].second - Vector(1, 0));
  EXPECT_EQ(seen[2].first, screenWith({banner, {qv::splashSmallEmblem(), seen[2].second}}));
}
