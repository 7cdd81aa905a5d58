// The arcade example played as a player would, its keys handed to the input
// manager frame by frame: P on the title screen, then Space held while the
// ship sweeps up and down, then hands off until a saucer reaches the ship.

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>
#include <set>
#include <string>

#include "EngineFixture.h"
#include "GameStart.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/ViewObject.h"
#include "input/InputManager.h"
#include "platform/platform.h"
#include "resources.h"
#include "world/WorldManager.h"

namespace {

using qv::Keyboard::Key;

const int FIRING_STEPS = 600;  // then hands off
const int SWEEP_STEPS = 40;    // W held this long, then S as long, and so on

// How many objects of each type the world holds, and the values shown.
std::string census() {
  std::map<std::string, int> counts;
  std::string values;
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++) {
    counts[all[i]->getType()]++;
    if (const auto *p_view = dynamic_cast<const qv::ViewObject *>(all[i]))
      values += " " + p_view->getViewString() + "=" + std::to_string(p_view->getValue());
  }
  std::string text;
  for (const auto &count : counts) text += count.first + ":" + std::to_string(count.second) + " ";
  return text + "|" + values;
}

// Holds keys as the input manager reports them: KEY_PRESSED and KEY_HELD in
// a key's first frame, KEY_HELD after, KEY_RELEASED when it goes up.
class Player : public qv::Object {
 public:
  Player() {
    setType("Player");
    setSolidness(qv::SPECTRAL);
    registerInterest(qv::STEP_EVENT);
  }
  int eventHandler(const qv::Event *p_e) override {
    const int step = static_cast<const qv::EventStep *>(p_e)->getStepCount();
    const std::string picture = std::to_string(step) + ": " + census();
    if (step == 1 || step == FIRING_STEPS) pictures.push_back(picture);
    // The game-over screen would clear the player too.
    if (picture.find("GameOver") != std::string::npos || step == 5000) {
      pictures.push_back(picture);
      qv::GameManager::getInstance().setGameOver();
    }
    const bool firing = step >= 1 && step < FIRING_STEPS, up = (step / SWEEP_STEPS) % 2 == 0;
    hold(Key::P, step == 0);
    hold(Key::SPACE, firing);
    hold(Key::W, firing && up);
    hold(Key::S, firing && !up);
    return 1;
  }
  std::vector<std::string> pictures;

 private:
  void hold(Key key, bool down) {
    qv::InputManager &input = qv::InputManager::getInstance();
    if (down && !m_down.count(key)) input.deliverKeyboard(key, qv::KEY_PRESSED);
    if (down) input.deliverKeyboard(key, qv::KEY_HELD);
    if (!down && m_down.count(key)) input.deliverKeyboard(key, qv::KEY_RELEASED);
    if (down)
      m_down.insert(key);
    else
      m_down.erase(key);
  }
  std::set<Key> m_down;
};

class ArcadeTest : public qvtest::EngineFixture {
 protected:
  std::string config() const override { return "frame_time:0,\n" + EngineFixture::config(); }
};

TEST_F(ArcadeTest, ShotSaucersScoreAndASaucerThatGetsThroughEndsTheGame) {
  const std::string here = qv::platform::currentDirectory(4096);
  ASSERT_EQ(chdir(QV_RUN_DIR), 0);
  loadResources();
  ASSERT_EQ(chdir(here.c_str()), 0);
  new GameStart;
  Player *p_player = new Player;
  qv::GameManager::getInstance().run();
  // Saucers shot are replaced, and the game ends when one reaches the ship.
  EXPECT_EQ(p_player->pictures,
            (std::vector<std::string>{"1: Drone:2 GameStart:1 Player:1 Points:1 Saucer:12 Ship:1 "
                                      "ViewObject:1 | Points=0 Nukes=1",
                                      "600: Bullet:5 Drone:2 Explosion:5 GameStart:1 Player:1 "
                                      "Points:1 Saucer:12 Ship:1 ViewObject:1 | Points=845 Nukes=1",
                                      "802: Drone:2 Explosion:1 GameOver:1 GameStart:1 Player:1 "
                                      "Points:1 Saucer:12 ViewObject:1 | Points=895 Nukes=1"}));
  // Every sprite and sound label resolved.
  EXPECT_EQ(log->text().find("Warning!"), std::string::npos) << log->text();
  EXPECT_EQ(log->text().find("Error"), std::string::npos) << log->text();
}

}  // namespace
