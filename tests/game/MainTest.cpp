// The built program run on its own in a run folder of its own: headless, or
// in a window played through the X server.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "TempDir.h"
#include "XInput.h"

using qvtest::ChildProcess;
using qvtest::TempDir;

namespace {

const std::string STARS(52, '*');
const char *const LOOP_START = "GameManager::run(): starting game loop";
const char *const LOOP_END = "GameManager::run(): end of game loop";

// Runs the program with these configuration lines and log level (none: the
// default, 0) and sends it a signal wait_ms after it has started. Checks the
// end: the exit status, or minus the signal that ended the program, and
// nothing on standard error. Returns the log's messages, in their order, only
// those among the wanted ones if there are any.
std::vector<std::string> runUntil(int signal, const std::string &config, const char *log_level,
                                  int wait_ms, const std::vector<std::string> &wanted = {},
                                  int status = 0) {
  TempDir dir;
  qvtest::prepareRunFolder(dir, "headless:true,\nnetworking:false,\n" + config);
  ChildProcess game(QV_GAME_PATH, dir.path(),
                    {{"QUORVELLE_LOG", nullptr},
                     {"QUORVELLE_CONFIG", nullptr},
                     {"QUORVELLE_LOG_LEVEL", log_level}});
  // The log file appears once the engine is starting.
  for (int i = 0; i < 2000 && !std::filesystem::exists(dir.file("quorvelle.log")); i++)
    usleep(5000);
  EXPECT_EQ(game.waitUntilCatching(signal, status == 0 ? 10000 : 100), status == 0);
  usleep(static_cast<useconds_t>(wait_ms) * 1000);
  game.sendSignal(signal);
  EXPECT_TRUE(game.wait());
  EXPECT_EQ(game.exited() ? game.exitStatus() : -game.termSignal(), status);
  EXPECT_EQ(game.stderrText(), "");
  std::vector<std::string> kept;
  for (const std::string &line : qvtest::runLog(dir))
    if (wanted.empty() || std::count(wanted.begin(), wanted.end(), line) > 0) kept.push_back(line);
  return kept;
}

}  // namespace

TEST(MainTest, SignalsEndTheProgramWithStatusZeroAndItsLogCompleteUnlessSignalsAreOff) {
  // 90 frames of 20 ms: the signal arrives well inside the splash, and ends
  // the whole program, its log complete to the last line.
  const std::vector<std::string> lifecycle = {
      "GameManager::startUp(): frame time is 20 milliseconds",
      "splash(): Started.",
      LOOP_START,
      LOOP_END,
      "splash(): Finished.",
      "Path manager stopped",
      "** Game engine stopped **"};
  EXPECT_EQ(runUntil(SIGTERM, "frame_time:20,\n", "10", 200, lifecycle), lifecycle);
  // 90 frames of 2 ms end the splash long before the signal.
  const std::vector<std::string> loops = {"splash(): Started.",  LOOP_START, LOOP_END,
                                          "splash(): Finished.", LOOP_START, LOOP_END};
  EXPECT_EQ(runUntil(SIGINT, "frame_time:2,\n", "10", 800, loops), loops);
  runUntil(SIGINT, "signals:false,\n", nullptr, 0, {}, -SIGINT);
}

TEST(MainTest, UnopenableLogEndsWithStatusOneAndTheReasonOnStandardError) {
  TempDir dir;
  qvtest::prepareRunFolder(dir, "headless:true,\n");
  const std::string log_name = dir.file("no-such-folder/quorvelle.log");
  ChildProcess game(QV_GAME_PATH, dir.path(),
                    {{"QUORVELLE_LOG", log_name.c_str()}, {"QUORVELLE_CONFIG", nullptr}});
  ASSERT_TRUE(game.wait());
  ASSERT_TRUE(game.exited());
  EXPECT_EQ(game.exitStatus(), 1);
  EXPECT_EQ(qvtest::logMessages(game.stderrText()),
            (std::vector<std::string>{
                "LogManager::startup(): Warning! Unable to open file '" + log_name + "'.",
                "GameManager::startUp(): Error! Starting log manager.",
                "Error starting game manager!", STARS, "** Game engine stopped **"}));
}

// In a window, played through the X server: Q on the title screen ends the
// program; so does Ctrl-C in a level. Both with status 0 and a complete log.
TEST(MainTest, QOnTheTitleScreenOrCtrlCInALevelEndsTheGameWithStatusZero) {
  const qvtest::XInput x;
  if (!std::getenv("DISPLAY") || !x.ok()) GTEST_SKIP() << "no X display or no XTest library";
  const auto tap = [&x](const char *key) {
    x.key(key, true);
    usleep(100000);
    x.key(key, false);
    usleep(1000000);
  };
  for (bool in_level : {false, true}) {
    TempDir dir;
    qvtest::prepareRunFolder(dir, "networking:false,\nrandom_seed:1,\n");
    ChildProcess game(QV_GAME_PATH, dir.path(),
                      {{"QUORVELLE_LOG", nullptr}, {"QUORVELLE_CONFIG", nullptr}});
    ASSERT_TRUE(game.waitUntilCatching(SIGINT));
    // The window is centred on the screen: the pointer there keeps the
    // keyboard on it, and in a level lies on tile (4, 4).
    const int cx = x.width() / 2 + 3, cy = x.height() / 2 + 8;
    x.pointer(cx, cy);
    usleep(1000000);
    tap("space");  // ends the splash
    if (in_level) {
      tap("p");
      x.pointer(cx + 1, cy);  // the tiles learn where the pointer is
      usleep(500000);
      x.button(true);
      x.button(false);
      usleep(500000);
      game.sendSignal(SIGINT);
    } else {
      tap("q");
    }
    ASSERT_TRUE(game.wait());
    EXPECT_EQ(game.exited() ? game.exitStatus() : -game.termSignal(), 0);
    const std::vector<std::string> lines = qvtest::runLog(dir);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "boardNotNull"), in_level ? 1 : 0);
    ASSERT_GE(lines.size(), 6u);
    EXPECT_EQ(lines.front() + lines[1] + lines[lines.size() - 2] + lines.back(),
              STARS + "** Quorvelle version 4.25 **" + STARS + "** Game engine stopped **");
  }
}
