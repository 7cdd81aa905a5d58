#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EngineFixture.h"
#include "LogCapture.h"
#include "TempDir.h"
#include "core/Config.h"
#include "core/LogManager.h"

using qvtest::ScopedEnv;
using qvtest::TempDir;

namespace {

qv::Config &config() {
  return qv::Config::getInstance();
}

// Loads text as the configuration file would be read, through QUORVELLE_CONFIG.
void loadFile(const std::string &text) {
  TempDir dir;
  ScopedEnv env("QUORVELLE_CONFIG", dir.write("qv-config.txt", text).c_str());
  config().loadConfig();
}

// Loads text and returns what went to standard error (the log is not open).
std::string loadCapturingStderr(const std::string &text) {
  testing::internal::CaptureStderr();
  config().loadConfig(text);
  return testing::internal::GetCapturedStderr();
}

}  // namespace

class ConfigLogTest : public qvtest::LogFixture {};

TEST_F(ConfigLogTest, DefaultsWhenFileIsMissingAndTheSummaryAtLevelOne) {
  TempDir dir;
  std::string name = dir.file("absent.txt");
  ScopedEnv env("QUORVELLE_CONFIG", name.c_str());
  config().loadConfig();
  EXPECT_EQ(config().getConfigText(), "");
  EXPECT_FLOAT_EQ(config().getFontScale(), 2.0f);
  EXPECT_EQ(config().getQuadtreeThreshold(), 1);
  EXPECT_EQ(config().getQuadtreeDepth(), 10);
  EXPECT_TRUE(config().getSignals());
  EXPECT_EQ(config().getLogLevel(), 0);
  config().writeConfigToLog();
  EXPECT_EQ(log->messages(), std::vector<std::string>{});  // the summary is level 1

  qv::LogManager::getInstance().setLogLevel(1);
  EXPECT_EQ(config().readConfig(), "");
  EXPECT_EQ(log->messages(),
            std::vector<std::string>{
                "Config::readConfig(): Cannot open Quorvelle configuration file '" + name + "'."});
  std::vector<std::string> summary = {"-----------------------------------",
                                      "Quorvelle configuration:",
                                      "  Window horizontal pixels: 1024",
                                      "  Window vertical pixels: 768",
                                      "  Window horizontal characters: 80",
                                      "  Window vertical characters: 24",
                                      "  Window background color: 0",
                                      "  Frame time: 33",
                                      "  Window style: 5",
                                      "  Window state: default",
                                      "  Window title: Quorvelle",
                                      "  Show mouse: false",
                                      "  Headless: false",
                                      "  Font file: qv-font.ttf",
                                      "  Log file: quorvelle.log",
                                      "  Random seed: 0",
                                      "  Networking: true",
                                      "  Scene graph: grid",
                                      "  Grid width: 20",
                                      "  Grid height: 8",
                                      "-----------------------------------"};
  config().writeConfigToLog();
  std::vector<std::string> lines = log->messages();
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()), summary);

  config().loadConfig(
      "frame_time:16,window_state:fullscreen,headless:true,logfile:x.log,"
      "random_seed:-1,networking:false,grid_width:10,");
  summary[7] = "  Frame time: 16";
  summary[9] = "  Window state: fullscreen";
  summary[12] = "  Headless: true";
  summary[14] = "  Log file: x.log";
  summary[15] = "  Random seed: -1";
  summary[16] = "  Networking: false";
  summary[18] = "  Grid width: 10";
  config().writeConfigToLog();
  lines = log->messages();
  EXPECT_EQ(std::vector<std::string>(lines.end() - summary.size(), lines.end()), summary);
}

TEST(ConfigTest, LinesJoinWithoutSeparatorSoEachNeedsItsComma) {
  loadFile("# a comment, frame_time:99,\r\n\nframe_time:16,\r\nheadless:true,\n");
  EXPECT_EQ(config().getConfigText(), "frame_time:16,headless:true,");
  EXPECT_EQ(config().getFrameTime(), 16);
  EXPECT_TRUE(config().getHeadless());

  // Without the comma the two lines become one item, "16headless:true".
  loadFile("frame_time:16\nheadless:true,\n");
  EXPECT_EQ(config().getFrameTime(), 16);
  EXPECT_FALSE(config().getHeadless());
}

TEST(ConfigTest, NumbersFollowAtoiAndAtofStringsLoseTheirBlanksAndBooleansNeedExactTrue) {
  config().loadConfig(
      "frame_time:33ms,window_horizontal_chars:abc,font_scale:1.5x,random_seed:-1,grid_width:  4 "
      "2,quadtree_depth:,window_title: My Game ,show_mouse:True,networking:false,signals:yes,"
      "headless:true,font_file:f.ttf,logfile:my.log,");
  EXPECT_EQ(config().getFrameTime(), 33);
  EXPECT_EQ(config().getWindowHorizontalChars(), 0);
  EXPECT_FLOAT_EQ(config().getFontScale(), 1.5f);
  EXPECT_EQ(config().getRandomSeed(), -1);
  EXPECT_EQ(config().getGridWidth(), 42);      // white space goes, even inside values
  EXPECT_EQ(config().getQuadtreeDepth(), 10);  // an empty value changes nothing
  EXPECT_EQ(config().getWindowTitle(), "MyGame");
  EXPECT_FALSE(config().getShowMouse());
  EXPECT_FALSE(config().getNetworking());
  EXPECT_FALSE(config().getSignals());
  EXPECT_TRUE(config().getHeadless());
  EXPECT_EQ(config().getFontFile(), "f.ttf");
  EXPECT_EQ(config().getLogfile(), "my.log");
}

TEST(ConfigTest, ColorsStylesAndStatesAcceptOnlyTheirWords) {
  EXPECT_EQ(loadCapturingStderr("window_background_color:yellow,window_style:none,"
                                "window_state:fullscreen,"),
            "");
  EXPECT_EQ(config().getWindowBackgroundColor(), 3);
  EXPECT_EQ(config().getWindowStyle(), 0);
  EXPECT_EQ(config().getWindowState(), 1);

  config().loadConfig("window_background_color:white,window_style:7,window_state:default,");
  EXPECT_EQ(config().getWindowBackgroundColor(), 7);
  EXPECT_EQ(config().getWindowStyle(), 7);
  EXPECT_EQ(config().getWindowState(), 0);

  std::string err =
      loadCapturingStderr("window_background_color:Yellow,window_style:0,window_state:full,");
  EXPECT_EQ(qvtest::logMessages(err),
            (std::vector<std::string>{"loadConfig(): Unsupported window color 'Yellow'",
                                      "loadConfig(): Unsupported window style '0'",
                                      "loadConfig(): Unsupported window state 'full'"}));
  EXPECT_EQ(config().getWindowBackgroundColor(), 0);
  EXPECT_EQ(config().getWindowStyle(), 5);
  EXPECT_EQ(config().getWindowState(), 0);
}

TEST(ConfigTest, FirstKeyWinsAndEachLoadStartsFromDefaults) {
  config().loadConfig("frame_time:20,frame_time:40,grid_height:3,");
  EXPECT_EQ(config().getFrameTime(), 20);
  EXPECT_EQ(config().match("grid_height"), "3");
  config().loadConfig("grid_width:5,");
  EXPECT_EQ(config().getFrameTime(), 33);
  EXPECT_EQ(config().getGridHeight(), 8);
}

TEST(ConfigTest, MatchRemembersThePreviousItems) {
  EXPECT_EQ(qv::match("a:1,b:2", "b"), "2");
  EXPECT_EQ(qv::match("", "a"), "1");
  EXPECT_EQ(qv::match("", "c"), "");
  EXPECT_EQ(qv::match("a", "a"), "");
  // Keys compare exactly; a value stops at the next colon.
  EXPECT_EQ(qv::match(",,Key:v:w,,key:x,", "key"), "x");
  EXPECT_EQ(qv::match("", "Key"), "v");
  // A piece of colons only ends the parse: later items are never seen.
  EXPECT_EQ(qv::match("a:1,::,b:2", "a"), "1");
  EXPECT_EQ(qv::match("", "b"), "");
  EXPECT_EQ(qv::match(" k e y : v a l ", "key"), "val");
}

TEST_F(ConfigLogTest, MatchTracesItsParseAtLevel25) {
  qv::LogManager::getInstance().setLogLevel(25);
  qv::match("a:1, b:2", "b");
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "match(\"a:1, b:2\", \"b\")", "match(): number of elements allocated is 2",
                "\titem number 0", "\tkey a", "\tval 1", "\titem number 1", "\tkey b", "\tval 2",
                "match(): parsed.", "match(): Looking for match 'b' among 2 items."}));
}
