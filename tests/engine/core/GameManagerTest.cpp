// The game manager's start, loop and shut-down, and the clock, frame pacing
// and stop signals the loop is built on.
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
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
#include "core/LogManager.h"
#include "platform/platform.h"
#include "world/WorldManager.h"

namespace {

qv::GameManager &game() {
  return qv::GameManager::getInstance();
}

const std::string STARS(52, '*');

// The current disposition of sig.
void (*handlerOf(int sig))(int) {
  struct sigaction current {};
  sigaction(sig, nullptr, &current);
  return current.sa_handler;
}

// The log's lines from the first that is exactly line on.
std::vector<std::string> linesFrom(const std::string &line, std::vector<std::string> lines) {
  lines.erase(lines.begin(), std::find(lines.begin(), lines.end(), line));
  return lines;
}

class GameManagerTest : public qvtest::EngineFixture {};

// Started from a working directory too long for its buffer; the summary shows
// the defaults but for the fixture's settings. Then a start that fails
// because a manager is already running: the loop refuses to run, and
// shut-down stops only the managers that started.
TEST_F(GameManagerTest, StartUpAndShutDownLogEachManagerInOrder) {
  EXPECT_EQ(log->messages(), (std::vector<std::string>{STARS, "** Quorvelle version 4.25 **",
                                                       "** Game engine started **", STARS}));
  std::string deep = dir.path();
  while (deep.size() < 300) deep += "/" + std::string(40, 'd');
  std::filesystem::create_directories(deep);
  const std::string old = qv::platform::currentDirectory(4096);
  ASSERT_EQ(chdir(deep.c_str()), 0);
  const int started = restartWith("log_level:1,");
  ASSERT_EQ(chdir(old.c_str()), 0);
  ASSERT_EQ(started, 0);
  EXPECT_EQ(game().startUp(), -1);
  EXPECT_EQ(game().getFrameTime(), 10);
  EXPECT_FALSE(game().getGameOver());
  EXPECT_TRUE(game().isValid("qv-step"));
  EXPECT_FALSE(game().isValid("qv-keyboard") || game().isValid("playerturn"));
  game().shutDown();
  EXPECT_TRUE(game().getGameOver());
  EXPECT_FALSE(game().isStarted() || qv::LogManager::getInstance().isStarted());
  EXPECT_EQ(log->messages(), (std::vector<std::string>{
                                 STARS,
                                 "** Quorvelle version 4.25 **",
                                 "** Game engine started **",
                                 STARS,
                                 "-----------------------------------",
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
                                 "  (full path too long)",
                                 "Log Manager started.",
                                 "DisplayManager::startUp(): no graphics in headless mode.",
                                 "Display manager started.",
                                 "InputManager::startUp(): no input in headless mode.",
                                 "Input manager started.",
                                 "Resource manager started.",
                                 "Scenegraph configuration: GRID",
                                 "World manager started.",
                                 "Path manager started.",
                                 "Scenegraph configuration: GRID",
                                 "GameManager successfully started.",
                                 "GameManager::startup(): Warning! GameManager already started.",
                                 "Path manager stopped",
                                 "World manager stopped",
                                 "Resource manager stopped",
                                 "Input manager stopped",
                                 "Display manager stopped",
                                 STARS,
                                 "** Game engine stopped **"}));

  ASSERT_EQ(qv::WorldManager::getInstance().startUp(), 0);
  EXPECT_EQ(restartWith("log_level:1,"), -1);
  EXPECT_FALSE(game().isStarted());
  qv::Clock clock;
  game().run();
  EXPECT_LT(clock.split(), 100000);
  EXPECT_TRUE(game().getGameOver());
  EXPECT_EQ(game().getStepCount(), 0);
  game().shutDown();
  EXPECT_EQ(linesFrom("Resource manager started.", log->messages()),
            (std::vector<std::string>{
                "Resource manager started.",
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
// frame that runs over is logged, but none of no frame time.
TEST_F(GameManagerTest, StopSignalsEndTheLoopAfterTheirFrameAndFollowTheSignalsSetting) {
  ASSERT_EQ(restartWith("log_level:1,frame_time:0,"), 0);
  raise(SIGINT);
  EXPECT_TRUE(game().getGameOver());
  qv::Clock clock;
  game().run();
  game().run();
  EXPECT_EQ(game().getStepCount(), 1);
  EXPECT_LT(clock.split(), 5000);  // a zero frame time never sleeps
  EXPECT_EQ(log->count("GameManager::run(): end of game loop"), 2);

  ASSERT_EQ(restartWith(""), 0);
  auto *p_probe = new qvtest::Probe;
  p_probe->on_event = [](const qv::Event *) {
    const int step = game().getStepCount();
    if (step == 1 || step == 2) qv::platform::sleepMilliseconds(15);
    if (step == 3) raise(SIGTERM);
    return 0;
  };
  p_probe->registerInterest(qv::STEP_EVENT);
  clock.delta();
  game().run();
  EXPECT_EQ(game().getStepCount(), 4);
  EXPECT_GE(clock.split(), 45000);
  // Frame 2 follows an overrun, so no oversleep explains its own.
  int overruns = 0;
  for (const std::string &line : log->messages()) {
    if (line.rfind("GameManager::run(): Can't keep up!", 0) != 0) continue;
    overruns++;
    EXPECT_TRUE(std::regex_match(
        line, std::regex("GameManager::run\\(\\): Can't keep up! frame_time 10 ms, split "
                         "[1-9][0-9]+ ms")))
        << line;
  }
  EXPECT_TRUE(overruns == 1 || overruns == 2) << overruns;

  EXPECT_NE(handlerOf(SIGINT), SIG_DFL);
  EXPECT_NE(handlerOf(SIGTERM), SIG_DFL);
  game().shutDown();
  EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
  ASSERT_EQ(restartWith("signals:false,"), 0);
  EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
  EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
}

// Clock readings are whole milliseconds; a signal does not cut a sleep short.
TEST(ClockTest, MeasuresSleepsInWholeMillisecondsAndSleepOutlastsAStopSignal) {
  ASSERT_EQ(qv::platform::installStopSignals(), 0);
  std::thread ctrl_c([main = pthread_self()] {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    pthread_kill(main, SIGTERM);
  });
  qv::Clock clock;
  qv::platform::sleepMilliseconds(40);
  ctrl_c.join();
  const std::int64_t split = clock.split();
  EXPECT_TRUE(qv::platform::stopRequested());
  EXPECT_GE(split, 39000);  // a reading may sit just before a millisecond tick
  EXPECT_EQ(split % 1000, 0);
  EXPECT_GE(clock.delta(), split);
  qv::platform::sleepMilliseconds(-5);
  EXPECT_LT(clock.split(), 5000);
  qv::platform::clearStopRequest();
  EXPECT_FALSE(qv::platform::stopRequested());
  const std::string cwd = qv::platform::currentDirectory(4096);
  ASSERT_EQ(cwd.substr(0, 1), "/");
  EXPECT_EQ(qv::platform::currentDirectory(cwd.size() + 1), cwd);
  EXPECT_EQ(qv::platform::currentDirectory(cwd.size()), "");
  EXPECT_EQ(qv::platform::currentDirectory(0), "");
}

// The path budget is 95 % of what is left, truncated toward zero. Only a
// sleep past its due carries into the next frame. No overrun line in the first
// frame, with an oversleep pending, or without a frame time.
TEST(FramePacingTest, SleepPathBudgetOversleepAndOverrunFollowTheFrameTime) {
  const struct {
    int frame_ms;
    std::int64_t split, adjust, remaining;
    int budget;
  } rows[] = {{33, 5000, 0, 28000, 26}, {33, 5000, 2000, 26000, 24},
              {33, 32000, 0, 1000, 0},  {33, 40000, 0, -7000, -6},
              {0, 0, 0, 0, 0},          {-5, 0, 0, -5000, -4}};
  for (const auto &r : rows) {
    EXPECT_EQ(qv::frameRemaining(r.frame_ms, r.split, r.adjust), r.remaining) << r.split;
    EXPECT_EQ(qv::pathBudget(r.frame_ms, r.split, r.adjust), r.budget) << r.split;
  }
  EXPECT_EQ(qv::oversleep(30000, 28000), 2000);
  EXPECT_EQ(qv::oversleep(28000, 28000) + qv::oversleep(27000, 28000), 0);
  EXPECT_TRUE(qv::overrunReported(1, 1, 0));
  EXPECT_FALSE(qv::overrunReported(33, 0, 0) || qv::overrunReported(33, 5, 1000) ||
               qv::overrunReported(0, 5, 0));
}

}  // namespace
