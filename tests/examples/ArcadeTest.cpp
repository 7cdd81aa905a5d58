// The arcade example played as a player would, its keys handed to the input
// manager frame by frame: P on the title screen, then Space held while the
// ship sweeps up and down, then hands off until a saucer reaches the ship.

#include <gtest/gtest.h>
#include <unistd.h>

#include <set>
#include <string>

#include "EngineFixture.h"
#include "GameStart.h"
#include "Points.h"
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
const int MAX_STEPS = 5000;

std::set<int> enemyIds() {
  std::set<int> ids;
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects();
  for (int i = 0; i < all.getCount(); i++)
    if (all[i]->getType() == "Saucer" || all[i]->getType() == "Drone") ids.insert(all[i]->getId());
  return ids;
}

const qv::Object *findObject(const std::string &type) {
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++)
    if (all[i]->getType() == type) return all[i];
  return nullptr;
}

// Presses and holds keys as the input manager reports them: KEY_PRESSED and
// KEY_HELD in a key's first frame, KEY_HELD after, KEY_RELEASED at the end.
// Ends the run when the game-over screen shows (it would clear the player too).
class Player : public qv::Object {
 public:
  Player() {
    setSolidness(qv::SPECTRAL);
    registerInterest(qv::STEP_EVENT);
  }

  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() != qv::STEP_EVENT) return 0;
    const int step = static_cast<const qv::EventStep *>(p_e)->getStepCount();
    if (findObject("GameOver") || step == MAX_STEPS) {
      game_over_step = step;
      qv::GameManager::getInstance().setGameOver();
      return 1;
    }
    if (step == 0) press(Key::P, false);
    if (step == 1) enemies_at_start = enemyIds();
    if (step >= 1 && step < FIRING_STEPS) {
      hold(Key::SPACE, true);
      const bool up = (step / SWEEP_STEPS) % 2 == 0;
      hold(Key::W, up);
      hold(Key::S, !up);
    }
    if (step == FIRING_STEPS) {
      hold(Key::SPACE, false);
      hold(Key::W, false);
      hold(Key::S, false);
      const qv::ViewObject *p_points = dynamic_cast<const qv::ViewObject *>(findObject("Points"));
      points = p_points ? p_points->getValue() : -1;
      enemies_left = enemyIds();
    }
    return 1;
  }

  std::set<int> enemies_at_start, enemies_left;
  int points = -1;
  int game_over_step = -1;

 private:
  void press(Key key, bool hold_too) {
    qv::InputManager::getInstance().deliverKeyboard(key, qv::KEY_PRESSED);
    if (hold_too) qv::InputManager::getInstance().deliverKeyboard(key, qv::KEY_HELD);
  }
  void hold(Key key, bool down) {
    const bool was_down = m_down.count(key) != 0;
    if (down && !was_down) {
      press(key, true);
      m_down.insert(key);
    } else if (down) {
      qv::InputManager::getInstance().deliverKeyboard(key, qv::KEY_HELD);
    } else if (was_down) {
      qv::InputManager::getInstance().deliverKeyboard(key, qv::KEY_RELEASED);
      m_down.erase(key);
    }
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

  EXPECT_EQ(p_player->enemies_at_start.size(), 14u);
  std::set<int> destroyed;
  for (int id : p_player->enemies_at_start)
    if (!p_player->enemies_left.count(id)) destroyed.insert(id);
  EXPECT_GE(destroyed.size(), 3u);
  EXPECT_GE(p_player->points, 30);
  // Every enemy destroyed was replaced.
  EXPECT_EQ(p_player->enemies_left.size(), 14u);
  EXPECT_GT(p_player->game_over_step, FIRING_STEPS);
  EXPECT_LT(p_player->game_over_step, MAX_STEPS);
  EXPECT_EQ(findObject("Ship"), nullptr);
  // Every sprite and sound label resolved.
  EXPECT_EQ(log->text().find("Warning!"), std::string::npos) << log->text();
  EXPECT_EQ(log->text().find("Error"), std::string::npos) << log->text();
}

}  // namespace
