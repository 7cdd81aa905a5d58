// The game manager's start, loop and shut-down, and the clock, frame pacing
// and stop signals the loop is built on.
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "EngineFixture.h"
#include "WorldFixture.h"
#include "core/Clock.h"
#include "core/EventStep.h"
#include "core/FramePacing.h"
#include "core/GameManager.h"
#include "platform/platform.h"
#include "world/WorldManager.h"

namespace {

qv::GameManager &game() {
  return qv::GameManager::getInstance();
}

const std::string STARS(52, '*');

class GameManagerTest : public qvtest::EngineFixture {};

// Started from a working directory of 256 characters, one more than its
// buffer holds with the terminating zero. Then a start that fails because a
// manager is already running: the loop refuses to run, and shut-down stops
// only the managers that started. The banner is checked where the game runs as a
// program.
TEST_F(GameManagerTest, StartUpAndShutDownLogEachManagerInOrder) {
  // Each test runs in a process of its own, which may stay in this folder.
  const std::string deep = dir.path() + "/" + std::string(255 - dir.path().size(), 'd');
  std::filesystem::create_directory(deep);
  ASSERT_EQ(chdir(deep.c_str()), 0);
  ASSERT_EQ(qv::platform::currentDirectory(257), deep);  // 256 characters and the end
  ASSERT_EQ(restartWith("log_level:1,"), 0);
  EXPECT_EQ(game().startUp(), -1);
  EXPECT_FALSE(game().getGameOver());
  game().shutDown();
  EXPECT_TRUE(game().getGameOver());
  const std::vector<std::string> lines = log->messages();
  // The whole summary: the defaults but for the fixture's settings.
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 4, lines.begin() + 27),
            (std::vector<std::string>{"-----------------------------------",
                                      "Quorvelle configuration:",
                                      "  Window horizontal pixels: 1024",
                                      "  Window vertical pixels: 768",
                                      "  Window horizontal characters: 80",
                                      "  Window vertical characters: 24",
                                      "  Window background color: 0",
                                      "  Frame time: 10",
                                      "  Window style: 5",
                                      "  Window state: default",
                                      "  Window title: Quorvelle",
                                      "  Show mouse: false",
                                      "  Headless: true",
                                      "  Font file: qv-font.ttf",
                                      "  Log file: quorvelle.log",
                                      "  Random seed: 1",
                                      "  Networking: false",
                                      "  Scene graph: grid",
                                      "  Grid width: 20",
                                      "  Grid height: 8",
                                      "-----------------------------------",
                                      "Working directory:",
                                      "  (full path too long)"}));
  EXPECT_EQ(
      std::vector<std::string>(lines.begin() + 27, lines.end()),
      (std::vector<std::string>{
          "Log Manager started.", "DisplayManager::startUp(): no graphics in headless mode.",
          "Display manager started.", "InputManager::startUp(): no input in headless mode.",
          "Input manager started.", "Resource manager started.", "Scenegraph configuration: GRID",
          "World manager started.", "Path manager started.", "Scenegraph configuration: GRID",
          "GameManager successfully started.",
          "GameManager::startup(): Warning! GameManager already started.", "Path manager stopped",
          "World manager stopped", "Resource manager stopped", "Input manager stopped",
          "Display manager stopped", STARS, "** Game engine stopped **"}));

  ASSERT_EQ(qv::WorldManager::getInstance().startUp(), 0);
  EXPECT_EQ(restartWith("log_level:1,"), -1);
  game().run();  // at once: a loop without managers would never end
  game().shutDown();
  const std::vector<std::string> failed = log->messages();
  EXPECT_EQ(std::vector<std::string>(failed.end() - 9, failed.end()),
            (std::vector<std::string>{
                "WorldManager::startup(): Warning! WorldManager already started.",
                "GameManager::startUp(): Error starting world manager.",
                "GameManager::run(): Error! GameManager not started (startUp() failed or was never "
                "called): no game loop, returning at once.",
                "World manager stopped", "Resource manager stopped", "Input manager stopped",
                "Display manager stopped", STARS, "** Game engine stopped **"}));
}

TEST_F(GameManagerTest, RandomSeedFromConfigClockOrNotAtAll) {
  std::srand(7);
  const std::vector<int> seven = {std::rand(), std::rand()};
  ASSERT_EQ(restartWith("random_seed:7,"), 0);
  EXPECT_EQ(std::rand(), seven[0]);
  ASSERT_EQ(restartWith("random_seed:-1,"), 0);
  EXPECT_EQ(std::rand(), seven[1]);  // -1 leaves the generator alone
  const long now = static_cast<long>(time(nullptr));
  ASSERT_EQ(restartWith("random_seed:0,log_level:10,"), 0);
  const std::string seeded = "GameManager()::startUp(): srand() seed with ";
  EXPECT_TRUE(log->contains(seeded + std::to_string(now)) ||
              log->contains(seeded + std::to_string(now + 1)));
}

// A stop request before the run still lets every run do one frame, and it
// outlives the first run (the splash screen's loop), so the game's loop ends
// too; a new start clears it. One during a frame ends the loop after it. A
// frame that runs over is logged.
TEST_F(GameManagerTest, StopSignalsEndTheLoopAfterTheirFrameAndShutDownRestoresTheirDefault) {
  raise(SIGINT);
  game().run();
  game().run();
  EXPECT_EQ(game().getStepCount(), 1);

  ASSERT_EQ(restartWith(""), 0);
  auto *p_probe = new qvtest::Probe;
  p_probe->on_event = [](const qv::Event *) {
    const int step = game().getStepCount();
    if (step == 1 || step == 2) qv::platform::sleepMilliseconds(15);
    if (step == 3) raise(SIGTERM);
    return 0;
  };
  p_probe->registerInterest(qv::STEP_EVENT);
  qv::Clock clock;
  game().run();
  EXPECT_EQ(game().getStepCount(), 4);
  EXPECT_GE(clock.split(), 45000);
  // Frame 2 follows an overrun, so no oversleep explains its own.
  const std::string text = log->text();
  const std::regex overrun(
      "GameManager::run\\(\\): Can't keep up! frame_time 10 ms, split [1-9][0-9]+ ms\n");
  const auto overruns = std::distance(std::sregex_iterator(text.begin(), text.end(), overrun),
                                      std::sregex_iterator());
  EXPECT_TRUE(overruns == 1 || overruns == 2) << text;

  game().shutDown();
  struct sigaction after {};
  sigaction(SIGINT, nullptr, &after);
  EXPECT_EQ(after.sa_handler, SIG_DFL);
}

// Clock readings are whole milliseconds; a signal does not cut a sleep short.
TEST(FramePacingTest, SleepsOutlastStopSignalsAndTheFrameTimeSplitsIntoSleepAndPathBudget) {
  ASSERT_EQ(qv::platform::installStopSignals(), 0);
  std::thread ctrl_c([main = pthread_self()] {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    pthread_kill(main, SIGTERM);
  });
  qv::Clock clock;
  qv::platform::sleepMilliseconds(40);
  ctrl_c.join();
  const std::int64_t split = clock.split();
  EXPECT_GE(split, 39000);  // a reading may sit just before a millisecond tick
  EXPECT_EQ(split % 1000, 0);

  // The path budget is 95 % of what is left, truncated toward zero. Only a
  // sleep past its due carries into the next frame. No overrun line in the
  // first frame, with an oversleep pending, or without a frame time. Rows:
  // frame time, split, adjust, then the remaining time and the path budget.
  const std::int64_t rows[][5] = {{33, 5000, 0, 28000, 26}, {33, 5000, 2000, 26000, 24},
                                  {33, 32000, 0, 1000, 0},  {33, 40000, 0, -7000, -6},
                                  {0, 0, 0, 0, 0},          {-5, 0, 0, -5000, -4}};
  for (const auto &r : rows) {
    const int frame_ms = static_cast<int>(r[0]);
    EXPECT_EQ(qv::frameRemaining(frame_ms, r[1], r[2]), r[3]) << r[1];
    EXPECT_EQ(qv::pathBudget(frame_ms, r[1], r[2]), r[4]) << r[1];
  }
  EXPECT_EQ(qv::oversleep(30000, 28000), 2000);
  EXPECT_EQ(qv::oversleep(28000, 28000) + qv::oversleep(27000, 28000), 0);
  EXPECT_TRUE(qv::overrunReported(1, 1, 0));
  EXPECT_FALSE(qv::overrunReported(33, 0, 0) || qv::overrunReported(33, 5, 1000) ||
               qv::overrunReported(0, 5, 0));
}

}  // namespace
