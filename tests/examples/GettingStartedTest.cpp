// The first game of docs/getting-started.md: the guide shows exactly the
// program the build compiles, and that program starts, runs and ends cleanly.

#include <gtest/gtest.h>
#include <signal.h>

#include <string>
#include <vector>

#include "ChildProcess.h"
#include "TempDir.h"

namespace {

using qvtest::readFile;

TEST(GettingStartedTest, TheGuidesFirstGameIsTheBuiltOneAndRunsCleanly) {
  const std::string guide = readFile(QV_SOURCE_DIR "/docs/getting-started.md");
  const std::size_t start = guide.find("```cpp\n") + 7, end = guide.find("\n```\n", start) + 1;
  EXPECT_EQ(guide.substr(start, end - start), readFile(QV_SOURCE_DIR "/examples/minimal/main.cpp"));

  qvtest::TempDir dir;
  qvtest::copyRunFolder(dir.path());
  dir.write("qv-config.txt", "headless:true,\nnetworking:false,\n");
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
  EXPECT_EQ(
      qvtest::logMessages(readFile(dir.file("quorvelle.log"))),
      (std::vector<std::string>{stars, "** Quorvelle version 4.25 **", "** Game engine started **",
                                stars, stars, "** Game engine stopped **"}));
}

}  // namespace
