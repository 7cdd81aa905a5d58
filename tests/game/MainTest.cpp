#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
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
const std::vector<std::string> BANNERS = {STARS, "** Quorvelle version 4.25 **",
                                          "** Game engine started **", STARS};

// A run folder with the shipped assets and a headless configuration.
void prepare(const TempDir &dir, const std::string &extra_config = "") {
  qvtest::copyRunFolder(dir.path());
  dir.write("qv-config.txt",
            "# end-to-end run\nheadless:true,\nnetworking:false,\n" + extra_config);
}

std::vector<std::string> logOf(const TempDir &dir) {
  return qvtest::logMessages(qvtest::readFile(dir.file("quorvelle.log")));
}

bool has(const std::vector<std::string> &lines, const std::string &line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace

TEST(MainTest, CtrlCEndsTheGameWithStatusZeroAndOnlyTheBannersAtLevelZero) {
  TempDir dir;
  prepare(dir);
  ChildProcess game(QV_GAME_PATH, dir.path(),
                    {{"QUORVELLE_LOG", nullptr},
                     {"QUORVELLE_CONFIG", nullptr},
                     {"QUORVELLE_LOG_LEVEL", nullptr}});
  ASSERT_TRUE(game.waitUntilCatching(SIGINT));
  game.sendSignal(SIGINT);
  ASSERT_TRUE(game.wait());
  ASSERT_TRUE(game.exited()) << "signal " << game.termSignal();
  EXPECT_EQ(game.exitStatus(), 0);
  std::vector<std::string> expected = BANNERS;
  expected.push_back(STARS);
  expected.push_back("** Game engine stopped **");
  EXPECT_EQ(logOf(dir), expected);
  EXPECT_EQ(game.stderrText(), "");
}

TEST(MainTest, RaisedLogLevelShowsSettingsAndManagerLifecycleAndSigtermStopsToo) {
  TempDir dir;
  prepare(dir, "frame_time:20,\n");
  ChildProcess game(
      QV_GAME_PATH, dir.path(),
      {{"QUORVELLE_LOG", nullptr}, {"QUORVELLE_CONFIG", nullptr}, {"QUORVELLE_LOG_LEVEL", "5"}});
  ASSERT_TRUE(game.waitUntilCatching(SIGTERM));
  game.sendSignal(SIGTERM);
  ASSERT_TRUE(game.wait());
  ASSERT_TRUE(game.exited()) << "signal " << game.termSignal();
  EXPECT_EQ(game.exitStatus(), 0);
  std::vector<std::string> lines = logOf(dir);
  // In this order, with other lines in between.
  const std::vector<std::string> expected = {
      "LogManager::startUp(): successfully started.",
      "Quorvelle configuration:",
      "  Frame time: 20",
      "  Headless: true",
      "  Networking: false",
      "Working directory:",
      "Log Manager started.",
      "GameManager::startUp(): frame time is 20 milliseconds",
      "Display manager started.",
      "Input manager started.",
      "Resource manager started.",
      "World manager started.",
      "Path manager started.",
      "GameManager successfully started.",
      "GameManager::run(): starting game loop",
      "GameManager::run(): end of game loop",
      "Path manager stopped",
      "World manager stopped",
      "Resource manager stopped",
      "Input manager stopped",
      "Display manager stopped",
      "** Game engine stopped **",
      "LogManager::shutDown(): successfully stopped."};
  auto next = lines.begin();
  for (const std::string &line : expected) {
    next = std::find(next, lines.end(), line);
    ASSERT_NE(next, lines.end()) << "missing or out of order: " << line;
  }
  EXPECT_FALSE(has(lines, "Network manager started."));
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "LogManager::shutDown(): successfully stopped.");
}

TEST(MainTest, UnopenableLogEndsWithStatusOneAndTheReasonOnStandardError) {
  TempDir dir;
  prepare(dir);
  std::string log_name = dir.file("no-such-folder/quorvelle.log");
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

TEST(MainTest, WithSignalsOffCtrlCKeepsItsDefaultEffect) {
  TempDir dir;
  prepare(dir, "signals:false,\n");
  ChildProcess game(QV_GAME_PATH, dir.path(),
                    {{"QUORVELLE_LOG", nullptr}, {"QUORVELLE_CONFIG", nullptr}});
  // The log file appears once the engine is starting.
  for (int i = 0; i < 2000 && !std::filesystem::exists(dir.file("quorvelle.log")); i++)
    usleep(5000);
  EXPECT_FALSE(game.waitUntilCatching(SIGINT, 100));
  game.sendSignal(SIGINT);
  ASSERT_TRUE(game.wait());
  EXPECT_FALSE(game.exited());
  EXPECT_EQ(game.termSignal(), SIGINT);
}

// In a window, played through the X server: Q on the title screen ends the
// program; so does Ctrl-C in a level. Both with status 0 and a complete log.
TEST(MainTest, QOnTheTitleScreenOrCtrlCInALevelEndsTheGameWithStatusZero) {
  qvtest::XInput x;
  ASSERT_TRUE(x.ok());
  auto tap = [&x](const char *key) {
    x.key(key, true);
    usleep(100000);
    x.key(key, false);
    usleep(1000000);
  };
  for (bool in_level : {false, true}) {
    TempDir dir;
    qvtest::copyRunFolder(dir.path());
    dir.write("qv-config.txt", "networking:false,\nrandom_seed:1,\n");
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
    ASSERT_TRUE(game.exited()) << "signal " << game.termSignal();
    EXPECT_EQ(game.exitStatus(), 0);
    std::vector<std::string> lines = logOf(dir);
    EXPECT_EQ(has(lines, "boardNotNull"), in_level);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 2, lines.end()),
              (std::vector<std::string>{STARS, "** Game engine stopped **"}));
  }
}
