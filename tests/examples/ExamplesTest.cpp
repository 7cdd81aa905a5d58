// The examples play. The first game of docs/getting-started.md is exactly the
// program the build compiles, and it starts, runs and ends cleanly. The arcade
// game is played as a player would, its keys handed to the input manager frame
// by frame: P on the title screen, then Space held while the ship sweeps up
// and down, then hands off until a saucer reaches the ship.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <map>
#include <string>
#include <vector>

#include "ChildProcess.h"
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

using qvtest::readFile;

using qv::Keyboard::Key;

// The step, then how many objects of each type the world holds, a view
// object's value with its type.
std::string census(int step) {
  std::map<std::string, int> counts;
  const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++) {
    const auto *p_view = dynamic_cast<const qv::ViewObject *>(all[i]);
    counts[all[i]->getType() + (p_view ? "=" + std::to_string(p_view->getValue()) : "")]++;
  }
  std::string text = std::to_string(step) + ":";
  for (const auto &count : counts) text += " " + count.first + " x" + std::to_string(count.second);
  return text;
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
    const std::string picture = census(step);
    // The game-over screen would clear the player too.
    const bool over = picture.find("GameOver") != std::string::npos;
    if (step == 1 || step == 600 || over) pictures += picture + "\n";
    if (over || step == 5000) qv::GameManager::getInstance().setGameOver();
    // Hands off after 600 steps; before, W and S in turns of 40.
    const bool firing = step >= 1 && step < 600, up = (step / 40) % 2 == 0;
    hold(Key::P, step == 0);
    hold(Key::SPACE, firing);
    hold(Key::W, firing && up);
    hold(Key::S, firing && !up);
    return 1;
  }
  std::string pictures;

 private:
  void hold(Key key, bool down) {
    qv::InputManager &input = qv::InputManager::getInstance();
    if (down && !m_down[key]) input.deliverKeyboard(key, qv::KEY_PRESSED);
    if (down) input.deliverKeyboard(key, qv::KEY_HELD);
    if (!down && m_down[key]) input.deliverKeyboard(key, qv::KEY_RELEASED);
    m_down[key] = down;
  }
  std::map<Key, bool> m_down;
};

TEST(GettingStartedTest, TheGuidesFirstGameIsTheBuiltOneAndRunsCleanly) {
  const std::string guide = readFile(QV_SOURCE_DIR "/docs/getting-started.md");
  const std::size_t start = guide.find("```cpp\n") + 7, end = guide.find("\n```\n", start) + 1;
  EXPECT_EQ(guide.substr(start, end - start), readFile(QV_SOURCE_DIR "/examples/minimal/main.cpp"));

  qvtest::TempDir dir;
  qvtest::prepareRunFolder(dir, "headless:true,\nnetworking:false,\n");
  qvtest::ChildProcess game(QV_MINIMAL_PATH, dir.path(),
                            {{"QUORVELLE_LOG", nullptr},
                             {"QUORVELLE_CONFIG", nullptr},
                             {"QUORVELLE_LOG_LEVEL", nullptr}});
  ASSERT_TRUE(game.waitUntilCatching(SIGINT));
  game.sendSignal(SIGINT);
  ASSERT_TRUE(game.wait());
  EXPECT_EQ(game.exitStatus(), 0);
  EXPECT_EQ(game.stderrText(), "");
  // Only the start and stop banners: the sprite loaded, nothing went wrong.
  const std::string stars(52, '*');
  EXPECT_EQ(qvtest::runLog(dir), (std::vector<std::string>{stars, "** Quorvelle version 4.25 **",
                                                           "** Game engine started **", stars,
                                                           stars, "** Game engine stopped **"}));
}

using ArcadeTest = qvtest::EngineFixture;

TEST_F(ArcadeTest, ShotSaucersScoreAndASaucerThatGetsThroughEndsTheGame) {
  ASSERT_EQ(restartWith("frame_time:0,\n"), 0);
  const std::string here = qv::platform::currentDirectory(4096);
  ASSERT_EQ(chdir(QV_RUN_DIR), 0);
  loadResources();
  ASSERT_EQ(chdir(here.c_str()), 0);
  new GameStart;
  Player *p_player = new Player;
  qv::GameManager::getInstance().run();
  // Saucers shot are replaced, and the game ends when one reaches the ship.
  EXPECT_EQ(p_player->pictures,
            R"(1: Drone x2 GameStart x1 Player x1 Points=0 x1 Saucer x12 Ship x1 ViewObject=1 x1
600: Bullet x5 Drone x2 Explosion x5 GameStart x1 Player x1 Points=845 x1 Saucer x12 Ship x1 ViewObject=1 x1
802: Drone x2 Explosion x1 GameOver x1 GameStart x1 Player x1 Points=895 x1 Saucer x12 ViewObject=1 x1
)");
  // No warning, error or note: every sprite and sound label resolved.
  EXPECT_EQ(log->text().find('!'), std::string::npos) << log->text();
}

}  // namespace
