#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EngineFixture.h"
#include "TempDir.h"
#include "core/Config.h"
#include "core/LogManager.h"
#include "core/bounds.h"
#include "graphics/DisplayManager.h"

using qvtest::ScopedEnv;

class ConfigTest : public qvtest::LogFixture {
 protected:
  static qv::Config &config() { return qv::Config::getInstance(); }
  // Loads text as the configuration file would be read, through QUORVELLE_CONFIG.
  void loadFile(const std::string &text) {
    ScopedEnv env("QUORVELLE_CONFIG", dir.write("qv-config.txt", text).c_str());
    config().loadConfig();
  }

  qvtest::TempDir dir;
};

// Lines are joined without a separator, so each needs its comma.
TEST_F(ConfigTest, TheFileLosesCommentsAndLineEndsAndAMissingOneIsSaidAtLevelOne) {
  loadFile("# a comment, frame_time:99,\r\n\nframe_time:16,\r\nheadless:true,\n");
  EXPECT_EQ(config().getConfigText(), "frame_time:16,headless:true,");
  EXPECT_EQ(config().getFrameTime(), 16);
  EXPECT_TRUE(config().getHeadless());
  loadFile("frame_time:16\nheadless:true,\n");  // one item, "16headless:true"
  EXPECT_EQ(config().getFrameTime(), 16);
  EXPECT_FALSE(config().getHeadless());

  const std::string absent = dir.file("absent.txt");
  ScopedEnv env("QUORVELLE_CONFIG", absent.c_str());
  config().loadConfig();
  EXPECT_EQ(log->messages(), std::vector<std::string>{});
  qv::LogManager::getInstance().setLogLevel(1);
  config().loadConfig();
  EXPECT_EQ(config().getConfigText(), "");
  EXPECT_EQ(config().getQuadtreeThreshold(), 1);
  EXPECT_EQ(
      log->messages(),
      std::vector<std::string>{"Config::readConfig(): Cannot open Quorvelle configuration file '" +
                               absent + "'."});
}

// Numbers follow atoi and atof, white space goes even inside values, an empty
// value changes nothing, booleans need an exact "true", keys compare exactly
// and the first one wins, a piece of colons only ends the parse, and each
// load starts from the defaults.
TEST_F(ConfigTest, ValuesAreReadAsTheCLibraryReadsThem) {
  config().loadConfig("quadtree_depth:3,frame_time:20,");
  config().loadConfig(
      "frame_time:33ms,window_horizontal_chars:abc,font_scale:1.5x,random_seed:-1,grid_width:  4 "
      "2,quadtree_depth:,window_title: My Game :x,show_mouse:True,networking:false,signals:yes,"
      "headless:true,font_file:f.ttf,logfile:my.log,grid_height:3,grid_height:5,Log_level:4,"
      "::,quadtree_threshold:6,");
  EXPECT_EQ(config().getFrameTime(), 33);
  EXPECT_EQ(config().getWindowHorizontalChars(), 0);
  EXPECT_FLOAT_EQ(config().getFontScale(), 1.5f);
  EXPECT_EQ(config().getRandomSeed(), -1);
  EXPECT_EQ(config().getGridWidth(), 42);
  EXPECT_EQ(config().getQuadtreeDepth(), 10);
  EXPECT_EQ(config().getWindowTitle(), "MyGame");
  EXPECT_FALSE(config().getShowMouse() || config().getNetworking() || config().getSignals());
  EXPECT_TRUE(config().getHeadless());
  EXPECT_EQ(config().getFontFile() + " " + config().getLogfile(), "f.ttf my.log");
  EXPECT_EQ(config().getGridHeight(), 3);
  EXPECT_EQ(config().getLogLevel() + config().getQuadtreeThreshold(), 1);
  // An empty text searches the items of the previous parse again.
  EXPECT_EQ(qv::match("", "grid_height"), "3");
  config().loadConfig("grid_width:5,");
  EXPECT_EQ(config().getFrameTime(), 33);
  EXPECT_EQ(config().getGridHeight(), 8);
}

TEST_F(ConfigTest, ColorsStylesAndStatesAcceptOnlyTheirWords) {
  auto window = [] {
    return std::vector<int>{config().getWindowBackgroundColor(), config().getWindowStyle(),
                            config().getWindowState()};
  };
  config().loadConfig("window_background_color:yellow,window_style:none,window_state:fullscreen,");
  EXPECT_EQ(window(), (std::vector<int>{qv::YELLOW, 0, 1}));
  config().loadConfig("window_background_color:white,window_style:7,window_state:default,");
  EXPECT_EQ(window(), (std::vector<int>{qv::WHITE, 7, 0}));
  EXPECT_EQ(log->messages(), std::vector<std::string>{});
  config().loadConfig("window_background_color:Yellow,window_style:0,window_state:full,");
  EXPECT_EQ(window(), (std::vector<int>{qv::BLACK, 5, 0}));
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{"loadConfig(): Unsupported window color 'Yellow'",
                                      "loadConfig(): Unsupported window style '0'",
                                      "loadConfig(): Unsupported window state 'full'"}));
}

// No number at all gives the default font scale.
TEST_F(ConfigTest, SettingsPastTheirBoundsAreClampedAndTheBoundsThemselvesPass) {
  config().loadConfig(
      "window_horizontal_chars:1000,window_vertical_pixels:16384,font_scale:0.1,frame_time:0,");
  config().loadConfig("font_scale:10,frame_time:10000,");
  EXPECT_EQ(log->messages(), std::vector<std::string>{});
  config().loadConfig(
      "frame_time:2147483647,font_scale:1e10,window_horizontal_pixels:99999,headless:true,"
      "window_vertical_pixels:16385,window_horizontal_chars:200000,window_vertical_chars:1001,");
  EXPECT_EQ(
      (std::vector<int>{config().getFrameTime(), config().getWindowHorizontalPixels(),
                        config().getWindowVerticalPixels(), config().getWindowHorizontalChars(),
                        config().getWindowVerticalChars()}),
      (std::vector<int>{10000, 16384, 16384, 1000, 1000}));
  EXPECT_FLOAT_EQ(config().getFontScale(), 10.0f);
  // The display holds the capped grid, and takes no wider one.
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  ASSERT_EQ(display.startUp(), 0);
  EXPECT_EQ(display.screenText().size(), 1001u * 1000u);
  display.setHorizontalChars(1001);
  EXPECT_EQ(display.getHorizontalChars(), qv::CELLS_MAX);
  display.shutDown();
  config().loadConfig("font_scale:0,");
  EXPECT_FLOAT_EQ(config().getFontScale(), 0.1f);
  config().loadConfig("font_scale:nan,");
  EXPECT_FLOAT_EQ(config().getFontScale(), 2.0f);
  EXPECT_EQ(
      log->messages(),
      (std::vector<std::string>{
          "loadConfig(): Warning! frame_time 2147483647 is over 10000; using 10000.",
          "loadConfig(): Warning! font_scale 1e+10 out of range [0.1, 10]; using 10.",
          "loadConfig(): Warning! window_horizontal_pixels 99999 is over 16384; using 16384.",
          "loadConfig(): Warning! window_vertical_pixels 16385 is over 16384; using 16384.",
          "loadConfig(): Warning! window_horizontal_chars 200000 is over 1000; using 1000.",
          "loadConfig(): Warning! window_vertical_chars 1001 is over 1000; using 1000.",
          "DisplayManager::setHorizontalChars(): Error! 1001 cells across is no grid; using 1000 "
          "instead.",
          "loadConfig(): Warning! font_scale 0 out of range [0.1, 10]; using 0.1.",
          "loadConfig(): Warning! font_scale nan out of range [0.1, 10]; using 2."}));
}
