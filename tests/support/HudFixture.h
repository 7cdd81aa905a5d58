#ifndef QV_TEST_HUD_FIXTURE_H
#define QV_TEST_HUD_FIXTURE_H

#include "DisplayFixture.h"
#include "EngineFixture.h"

namespace qvtest {

// The whole engine, headless: an 80 x 24 cell view at the origin.
class HudEngineFixture : public EngineFixture {};

// The whole engine with a real window of 80 x 24 cells of 12.8 x 32 pixels
// (the shipped geometry); skipped when there is no X display.
class HudWindowFixture : public EngineFixture {
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

  // One row of the text view of the frame being drawn.
  static std::string row(int y) {
    return qv::DisplayManager::getInstance().screenText().substr(static_cast<std::size_t>(y) * 81,
                                                                 80);
  }

  static sf::Image grab() { return grabWindow(); }
};

}  // namespace qvtest

#endif
