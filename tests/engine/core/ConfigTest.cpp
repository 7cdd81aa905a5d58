#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "EngineFixture.h"
#include "TempDir.h"
#include "core/Config.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"

class ConfigTest : public qvtest::LogFixture {
 protected:
  static qv::Config &config() { return qv::Config::getInstance(); }
};

// Numbers follow atoi and atof, white space goes even inside values, an empty
// value changes nothing, booleans need an exact "true", keys compare exactly
// and the first one wins, a piece of colons only ends the parse, and each
// load starts from the defaults. Colours, styles and states take only their
// words, colours in lower case.
TEST_F(ConfigTest, ValuesAreReadAsTheCLibraryReadsThemAndClampedToTheirBounds) {
  config().loadConfig("quadtree_depth:3,frame_time:20,");
  config().loadConfig(
      "frame_time:34ms,window_horizontal_chars:abc,font_scale:1.5x,random_seed:-1,grid_width:  4 "
      "2,quadtree_depth:,window_title: My Game :x,show_mouse:True,networking:false,signals:yes,"
      "headless:true,font_file:f.ttf,logfile:my.log,grid_height:3,grid_height:5,Log_level:4,"
      "window_background_color:Yellow,window_style:0,window_state:full,::,quadtree_threshold:6,");
  std::ostringstream values;
  values << config().getFrameTime() << ' ' << config().getWindowHorizontalChars() << ' '
         << config().getFontScale() << ' ' << config().getRandomSeed() << ' '
         << config().getGridWidth() << ' ' << config().getQuadtreeDepth() << ' '
         << config().getWindowTitle() << ' ' << config().getShowMouse() << config().getNetworking()
         << config().getSignals() << config().getHeadless() << ' ' << config().getFontFile() << ' '
         << config().getLogfile() << ' ' << config().getGridHeight() << ' '
         << config().getLogLevel() << config().getQuadtreeThreshold();
  EXPECT_EQ(values.str(), "34 0 1.5 -1 42 10 MyGame 0001 f.ttf my.log 3 01");
  auto window = [] {
    return std::vector<int>{config().getWindowBackgroundColor(), config().getWindowStyle(),
                            config().getWindowState(), config().getGridHeight()};
  };
  EXPECT_EQ(window(), (std::vector<int>{qv::BLACK, 5, 0, 3}));
  config().loadConfig("window_background_color:yellow,window_style:none,window_state:fullscreen,");
  EXPECT_EQ(window(), (std::vector<int>{qv::YELLOW, 0, 1, 8}));
  config().loadConfig("window_background_color:white,window_style:7,window_state:default,");
  EXPECT_EQ(window(), (std::vector<int>{qv::WHITE, 7, 0, 8}));
  // Past their bounds settings are clamped, and the bounds themselves pass;
  // no number at all gives the default font scale.
  config().loadConfig(
      "window_horizontal_chars:1000,window_vertical_pixels:16384,font_scale:10,frame_time:10000,");
  config().loadConfig("font_scale:0.1,");
  config().loadConfig(
      "frame_time:2147483647,font_scale:1e10,window_horizontal_pixels:99999,headless:true,"
      "window_vertical_pixels:16385,window_horizontal_chars:200000,window_vertical_chars:1001,");
  EXPECT_EQ(
      (std::vector<int>{config().getFrameTime(), config().getWindowHorizontalPixels(),
                        config().getWindowVerticalPixels(), config().getWindowHorizontalChars(),
                        config().getWindowVerticalChars()}),
      (std::vector<int>{10000, 16384, 16384, 1000, 1000}));
  // The display holds the capped grid.
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  ASSERT_EQ(display.startUp(), 0);
  EXPECT_EQ(display.screenText().size(), 1001u * 1000u);
  display.shutDown();
  config().loadConfig("font_scale:0,");
  config().loadConfig("font_scale:nan,");
  // The file loses comments and line ends; a missing one is said at level one.
  qvtest::TempDir dir;
  const std::string file = dir.write(
      "qv-config.txt", "# a comment, frame_time:99,\r\n\nframe_time:16,\r\nheadless:true,\n");
  qvtest::ScopedEnv env("QUORVELLE_CONFIG", file.c_str());
  config().loadConfig();
  EXPECT_EQ(config().getConfigText(), "frame_time:16,headless:true,");
  std::remove(file.c_str());
  config().loadConfig();
  qv::LogManager::getInstance().setLogLevel(1);
  config().loadConfig();
  EXPECT_EQ(config().getFrameTime(), 33);  // not from the previous parse
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "loadConfig(): Unsupported window color 'Yellow'",
                "loadConfig(): Unsupported window style '0'",
                "loadConfig(): Unsupported window state 'full'",
                "loadConfig(): Warning! frame_time 2147483647 is over 10000; using 10000.",
                "loadConfig(): Warning! font_scale 1e+10 out of range [0.1, 10]; using 10.",
                "loadConfig(): Warning! window_horizontal_pixels 99999 is over 16384; using 16384.",
                "loadConfig(): Warning! window_vertical_pixels 16385 is over 16384; using 16384.",
                "loadConfig(): Warning! window_horizontal_chars 200000 is over 1000; using 1000.",
                "loadConfig(): Warning! window_vertical_chars 1001 is over 1000; using 1000.",
                "loadConfig(): Warning! font_scale 0 out of range [0.1, 10]; using 0.1.",
                "loadConfig(): Warning! font_scale nan out of range [0.1, 10]; using 2.",
                "Config::readConfig(): Cannot open Quorvelle configuration file '" + file + "'."}));
}
