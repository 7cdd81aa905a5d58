#ifndef QV_TEST_DISPLAY_FIXTURE_H
#define QV_TEST_DISPLAY_FIXTURE_H

#include <gtest/gtest.h>

#include <SFML/Graphics.hpp>
#include <cstdlib>
#include <memory>
#include <string>

#include "EngineFixture.h"
#include "LogCapture.h"
#include "core/Config.h"
#include "graphics/DisplayManager.h"
#include "world/WorldManager.h"

namespace qvtest {

// The pixels drawn since the last swap (the window's back buffer).
inline sf::Image grabWindow() {
  sf::RenderWindow *window = qv::DisplayManager::getInstance().getWindow();
  sf::Texture texture;
  texture.create(window->getSize().x, window->getSize().y);
  texture.update(*window);
  return texture.copyToImage();
}

// Starts only the log and the display manager. The default is a small real
// window of 24 x 8 cells of 20 x 30 pixels; skipped when there is no X
// display. The world's view is put back at the origin before and after.
class DisplayFixture : public ::testing::Test {
 protected:
  // Settings placed before the defaults: the first occurrence of a key wins.
  virtual std::string settings() const { return ""; }

  void SetUp() override {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
    log = std::make_unique<LogCapture>();
    ASSERT_TRUE(log->start());
    loadConfig("");
    resetView();
    ASSERT_EQ(qv::DisplayManager::getInstance().startUp(), 0);
  }

  // Loads extra, then settings(), then the fixture's defaults (the first
  // occurrence of a key wins).
  void loadConfig(const std::string &extra) const {
    qv::Config::getInstance().loadConfig(
        extra + settings() +
        "headless:false,window_horizontal_pixels:480,window_vertical_pixels:240,"
        "window_horizontal_chars:24,window_vertical_chars:8,window_background_color:black,"
        "font_scale:1.0,font_file:" QV_SOURCE_DIR "/assets/qv-font.ttf,");
  }

  void TearDown() override {
    qv::DisplayManager &display = qv::DisplayManager::getInstance();
    if (display.isStarted()) display.shutDown();
    resetView();
    log.reset();
  }

  static void resetView() {
    qv::WorldManager::getInstance().setView(qv::Box(qv::Vector(0, 0), 24, 8));
  }

  std::unique_ptr<LogCapture> log;
};

// The whole engine with a real window of 80 x 24 cells of 12.8 x 32 pixels
// (the shipped geometry); skipped when there is no X display.
class EngineWindowFixture : public EngineFixture {
 protected:
  std::string config() const override {
    return "headless:false,\nwindow_horizontal_pixels:1024,\nwindow_vertical_pixels:768,\n"
           "window_horizontal_chars:80,\nwindow_vertical_chars:24,\nfont_scale:2.0,\n"
           "font_file:" QV_SOURCE_DIR "/assets/qv-font.ttf,\n" +
           EngineFixture::config();
  }
  void SetUp() override {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
    EngineFixture::SetUp();
  }
};

}  // namespace qvtest

#endif
