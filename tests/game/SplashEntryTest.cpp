#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "TempDir.h"

using qvtest::ChildProcess;
using qvtest::TempDir;

namespace {

// Runs the built program headless at log level 10 (splash lines and loop
// starts visible), lets it run for wait_ms, then sends Ctrl-C. Returns the
// log's messages; the exit status must be 0.
std::vector<std::string> runAndInterrupt(const std::string &frame_time, int wait_ms) {
  TempDir dir;
  qvtest::copyRunFolder(dir.path());
  dir.write("qv-config.txt", "headless:true,\nnetworking:false,\nframe_time:" + frame_time + ",\n");
  ChildProcess game(
      QV_GAME_PATH, dir.path(),
      {{"QUORVELLE_LOG", nullptr}, {"QUORVELLE_CONFIG", nullptr}, {"QUORVELLE_LOG_LEVEL", "10"}});
  EXPECT_TRUE(game.waitUntilCatching(SIGINT));
  usleep(static_cast<useconds_t>(wait_ms) * 1000);
  game.sendSignal(SIGINT);
  EXPECT_TRUE(game.wait());
  EXPECT_TRUE(game.exited()) << "signal " << game.termSignal();
  EXPECT_EQ(game.exitStatus(), 0);
  return qvtest::logMessages(qvtest::readFile(dir.file("quorvelle.log")));
}

// Only the splash lines and the loop starts and ends.
std::vector<std::string> splashAndLoopLines(const std::vector<std::string> &lines) {
  std::vector<std::string> kept;
  for (const std::string &line : lines)
    if (line.rfind("splash()", 0) == 0 || line.rfind("GameManager::run()", 0) == 0)
      kept.push_back(line);
  return kept;
}

const std::vector<std::string> SPLASH_LOOP = {
    "splash(): Started.", "GameManager::run(): starting game loop",
    "GameManager::run(): end of game loop", "splash(): Finished."};

}  // namespace

TEST(SplashEntryTest, CtrlCDuringTheSplashEndsTheWholeProgram) {
  // 90 frames of 100 ms: the signal arrives well inside the sequence.
  const std::vector<std::string> lines = runAndInterrupt("100", 200);
  EXPECT_EQ(splashAndLoopLines(lines), SPLASH_LOOP);
  EXPECT_NE(std::find(lines.begin(), lines.end(), "** Game engine stopped **"), lines.end());
}

TEST(SplashEntryTest, AfterTheSplashTheFrameLoopRunsUntilCtrlC) {
  // 90 frames of 2 ms end the sequence long before the signal.
  std::vector<std::string> expected = SPLASH_LOOP;
  expected.insert(expected.end(), SPLASH_LOOP.begin() + 1, SPLASH_LOOP.begin() + 3);
  EXPECT_EQ(splashAndLoopLines(runAndInterrupt("2", 800)), expected);
}
