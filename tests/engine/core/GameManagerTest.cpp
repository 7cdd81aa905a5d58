#include <gtest/gtest.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "EngineFixture.h"
#include "SignalTimer.h"
#include "core/Clock.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "path/PathManager.h"
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

// Three numbers from the C generator, seeded first unless seed is -1.
std::vector<int> randomRun(int seed = -1) {
  if (seed != -1) std::srand(seed);
  return {std::rand(), std::rand(), std::rand()};
}

// The index of the first line that is exactly line, or the number of lines.
long indexOf(const std::vector<std::string> &lines, const std::string &line) {
  return std::find(lines.begin(), lines.end(), line) - lines.begin();
}

}  // namespace

class GameManagerTest : public qvtest::EngineFixture {};

TEST_F(GameManagerTest, StartsWithBannersOnlyAndRefusesASecondStart) {
  EXPECT_EQ(game().getFrameTime(), 10);
  EXPECT_FALSE(game().getGameOver());
  EXPECT_EQ(log->messages(), (std::vector<std::string>{STARS, "** Quorvelle version 4.25 **",
                                                       "** Game engine started **", STARS}));
  EXPECT_EQ(game().startUp(), -1);
  EXPECT_TRUE(log->contains("GameManager::startup(): Warning! GameManager already started."));
  EXPECT_TRUE(game().isStarted());
  EXPECT_TRUE(game().isValid("qv-step"));
  EXPECT_FALSE(game().isValid("qv-keyboard"));
  EXPECT_FALSE(game().isValid("playerturn"));
}

TEST_F(GameManagerTest, RaisedLevelShowsStartUpDetailsAndShutDownStopsTheLogLast) {
  ASSERT_EQ(restartWith("log_level:5,"), 0);
  std::vector<std::string> lines = log->messages();
  EXPECT_LT(indexOf(lines, "  Frame time: 10"), indexOf(lines, "Working directory:"));
  EXPECT_EQ(indexOf(lines, "  " + qv::platform::currentDirectory()),
            indexOf(lines, "Working directory:") + 1);
  EXPECT_LT(indexOf(lines, "Log Manager started."),
            indexOf(lines, "GameManager successfully started."));
  EXPECT_LT(indexOf(lines, "GameManager successfully started."), static_cast<long>(lines.size()));

  game().shutDown();
  EXPECT_FALSE(game().isStarted());
  EXPECT_TRUE(game().getGameOver());
  EXPECT_FALSE(qv::LogManager::getInstance().isStarted());
  lines = log->messages();
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(std::vector<std::string>(lines.end() - 3, lines.end()),
            (std::vector<std::string>{STARS, "** Game engine stopped **",
                                      "LogManager::shutDown(): successfully stopped."}));
}

TEST_F(GameManagerTest, RandomSeedFromConfigClockOrNotAtAll) {
  ASSERT_EQ(restartWith("random_seed:7,"), 0);
  std::vector<int> seeded = randomRun();
  EXPECT_EQ(seeded, randomRun(7));

  std::vector<int> expected = randomRun(99);
  std::srand(99);
  ASSERT_EQ(restartWith("random_seed:-1,"), 0);
  EXPECT_EQ(randomRun(), expected);  // -1 leaves the generator alone

  ASSERT_EQ(restartWith("random_seed:0,log_level:10,"), 0);
  const std::string prefix = "GameManager()::startUp(): srand() seed with ";
  std::vector<std::string> lines = log->messages();
  auto line = std::find_if(lines.begin(), lines.end(),
                           [&](const std::string &l) { return l.rfind(prefix, 0) == 0; });
  ASSERT_NE(line, lines.end());
  EXPECT_NEAR(std::atol(line->c_str() + prefix.size()), static_cast<long>(time(nullptr)), 5);
}

TEST_F(GameManagerTest, StopSignalOrGameOverBeforeRunStillLetsEveryRunDoOneFrame) {
  ASSERT_EQ(restartWith("log_level:1,frame_time:0,"), 0);
  raise(SIGINT);
  EXPECT_TRUE(game().getGameOver());
  game().setGameOver(true);
  qv::Clock clock;
  game().run();
  EXPECT_EQ(game().getStepCount(), 1);
  EXPECT_LT(clock.split(), 5000);  // a zero frame time never sleeps
  // The splash screen's loop and the game's loop are two runs: the request
  // outlives the first, so the second ends too.
  game().run();
  EXPECT_EQ(game().getStepCount(), 1);
  EXPECT_EQ(log->count("GameManager::run(): end of game loop"), 2);
  EXPECT_EQ(log->count("GameManager::run(): Can't keep up! frame_time 0 ms, split 0 ms"), 0);
}

TEST_F(GameManagerTest, StopSignalDuringRunEndsTheLoopAfterThatFrame) {
  // A timer delivers SIGTERM while the loop sleeps between frames.
  qvtest::SignalTimer timer(SIGTERM, 75);
  ASSERT_TRUE(timer.armed());
  qv::Clock clock;
  game().run();
  std::int64_t elapsed = clock.split();
  EXPECT_GE(game().getStepCount(), 2);
  EXPECT_GE(elapsed, 70000);
  EXPECT_LT(elapsed, 5000000) << "the loop did not stop";
}

TEST_F(GameManagerTest, SignalHandlersFollowTheSignalsSetting) {
  EXPECT_NE(handlerOf(SIGINT), SIG_DFL);
  EXPECT_NE(handlerOf(SIGTERM), SIG_DFL);
  game().shutDown();
  EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
  ASSERT_EQ(restartWith("signals:false,"), 0);
  EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
  EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
}

TEST_F(GameManagerTest, AFailedStartUpRefusesToRunAndShutDownStopsOnlyTheStartedManagers) {
  stopEngine();
  // A manager that is already running refuses to start again.
  ASSERT_EQ(qv::WorldManager::getInstance().startUp(), 0);
  EXPECT_EQ(restartWith("log_level:1,"), -1);
  EXPECT_FALSE(game().isStarted());
  EXPECT_TRUE(qv::DisplayManager::getInstance().isStarted());
  EXPECT_FALSE(qv::PathManager::getInstance().isStarted());
  EXPECT_TRUE(log->contains("GameManager::startUp(): Error starting world manager."));
  EXPECT_TRUE(log->contains("Resource manager started."));
  EXPECT_FALSE(log->contains("Path manager started."));
  EXPECT_FALSE(log->contains("Network manager started."));

  const bool game_over = game().getGameOver();
  const int steps = game().getStepCount();
  qv::Clock clock;
  game().run();
  EXPECT_LT(clock.split(), 100000);
  EXPECT_EQ(game().getGameOver(), game_over);
  EXPECT_EQ(game().getStepCount(), steps);
  EXPECT_EQ(log->count("GameManager::run(): Error! GameManager not started (startUp() failed or "
                       "was never called): no game loop, returning at once."),
            1);
  EXPECT_FALSE(log->contains("GameManager::run(): starting game loop"));

  game().shutDown();
  EXPECT_FALSE(qv::WorldManager::getInstance().isStarted());
  EXPECT_FALSE(qv::DisplayManager::getInstance().isStarted());
  std::vector<std::string> lines = log->messages();
  EXPECT_EQ(std::vector<std::string>(lines.begin() + indexOf(lines, "World manager stopped"),
                                     lines.end()),
            (std::vector<std::string>{"World manager stopped", "Resource manager stopped",
                                      "Input manager stopped", "Display manager stopped", STARS,
                                      "** Game engine stopped **"}));
}

TEST_F(GameManagerTest, WorkingDirectoryTooLongForItsBufferIsNamedSo) {
  std::string deep = dir.path();
  while (deep.size() < 300) deep += "/" + std::string(40, 'd');
  std::filesystem::create_directories(deep);
  std::string old = qv::platform::currentDirectory(4096);
  ASSERT_EQ(chdir(deep.c_str()), 0);
  int result = restartWith("log_level:1,");
  ASSERT_EQ(chdir(old.c_str()), 0);
  ASSERT_EQ(result, 0);
  std::vector<std::string> lines = log->messages();
  ASSERT_LT(indexOf(lines, "Working directory:") + 1, static_cast<long>(lines.size()));
  EXPECT_EQ(lines[indexOf(lines, "Working directory:") + 1], "  (full path too long)");
}
