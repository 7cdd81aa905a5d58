#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "EventStep.h"
#include "GameManager.h"
#include "HudFixture.h"
#include "InputManager.h"
#include "Splash.h"
#include "WorldFixture.h"
#include "WorldManager.h"

using qv::Vector;

namespace {

// Where a person can look at the screenshots: <build>/test-output/.
std::filesystem::path outputFolder() {
  const std::filesystem::path folder =
      std::filesystem::path(QV_RUN_DIR).parent_path() / "test-output";
  std::filesystem::create_directories(folder);
  return folder;
}

bool isGreen(sf::Color c) { return c.g > 100 && c.r < 60 && c.b < 60; }
bool isBlue(sf::Color c) { return c.b > 100 && c.r < 60 && c.g < 60; }

// Pixels of the kind within the cell whose top-left corner is at view position p.
int pixelsInCell(const sf::Image &image, Vector p, bool (*kind)(sf::Color)) {
  const Vector px = qv::spacesToPixels(p);
  const int x0 = static_cast<int>(px.getX());
  const int y0 = static_cast<int>(px.getY());
  int count = 0;
  for (int y = y0; y < y0 + static_cast<int>(qv::charHeight()); y++)
    for (int x = x0; x < x0 + static_cast<int>(qv::charWidth()); x++)
      if (x >= 0 && y >= 0 && x < int(image.getSize().x) && y < int(image.getSize().y))
        count += kind(image.getPixel(unsigned(x), unsigned(y)));
  return count;
}

int pixelsInRows(const sf::Image &image, unsigned rows, bool (*kind)(sf::Color)) {
  int count = 0;
  for (unsigned y = 0; y < rows; y++)
    for (unsigned x = 0; x < image.getSize().x; x++) count += kind(image.getPixel(x, y));
  return count;
}

// Every non-blank character of the picture, centred on centre, for which
// `wanted` says yes, must have ink of the kind in its cell. Returns the
// number of characters checked.
int expectInk(const sf::Image &image, const std::vector<std::string> &picture, Vector centre,
              bool (*kind)(sf::Color), const char *what,
              const std::function<bool(int, int)> &wanted = [](int, int) { return true; }) {
  const float w = static_cast<float>(picture[0].size());
  const float h = static_cast<float>(picture.size());
  int checked = 0;
  for (int r = 0; r < int(picture.size()); r++)
    for (int c = 0; c < int(picture[r].size()); c++) {
      if (picture[r][c] == ' ' || !wanted(c, r)) continue;
      const Vector cell(centre.getX() + c - (w - 1) * 0.5f, centre.getY() + r - (h - 1) * 0.5f);
      EXPECT_GT(pixelsInCell(image, cell, kind), 0)
          << what << " '" << picture[r][c] << "' at column " << c << ", row " << r;
      checked++;
    }
  return checked;
}

class SplashScreenshotTest : public qvtest::HudWindowFixture {
 protected:
  // The shipped frame time: the banner's slide is timed by it.
  std::string config() const override {
    return "frame_time:33,\n" + HudWindowFixture::config();
  }
};

}  // namespace

// Runs the sequence through the real frame loop in a real window. At the
// start of a step the back buffer still holds what the previous frame drew,
// so that is what is captured.
TEST_F(SplashScreenshotTest, BannerInGreenThenEmblemInBlue) {
  sf::Image banner_shot, emblem_shot;
  Vector banner_at, emblem_at;
  auto *probe = new qvtest::Probe;
  probe->registerInterest("qv-step");
  probe->on_event = [&](const qv::Event *p_e) {
    const int step = static_cast<const qv::EventStep *>(p_e)->getStepCount();
    qv::WorldManager &world = qv::WorldManager::getInstance();
    const qv::ObjectList all = world.getAllObjects();
    for (int i = 0; i < all.getCount(); i++) {
      if (all[i]->getType() == "Splash") banner_at = all[i]->getPosition();
      if (all[i]->getType() == "SplashQuorvelle") emblem_at = all[i]->getPosition();
    }
    if (step == 21) {  // the banner stopped at step 14; the emblem is still below
      banner_shot = grab();
    }
    if (step == 56) {  // the emblem came to rest at step 45 and shrinks at 59
      emblem_shot = grab();
    }
    if (step == 57) qv::InputManager::getInstance().deliverKeyboard(qv::Keyboard::SPACE,
                                                                   qv::KEY_PRESSED);
    return 0;
  };
  ASSERT_EQ(qv::splash(), 0);
  ASSERT_EQ(qv::GameManager::getInstance().getStepCount(), 58);

  const std::filesystem::path folder = outputFolder();
  ASSERT_TRUE(banner_shot.saveToFile((folder / "splash-banner.png").string()));
  ASSERT_TRUE(emblem_shot.saveToFile((folder / "splash-emblem.png").string()));

  // Banner in place, in its boxed lettering, all green; nothing above it,
  // and no blue above the last row, where the rising emblem just peeks in.
  EXPECT_GT(expectInk(banner_shot, qv::splashBanner(1), banner_at, isGreen, "banner"), 100);
  EXPECT_EQ(pixelsInRows(banner_shot, 23 * 32, isBlue), 0);
  EXPECT_EQ(pixelsInRows(banner_shot, 7 * 32, isGreen), 0);

  // The emblem risen beside it, blue (only the strokes both variants share,
  // since the picture alternates), the banner still green.
  const std::vector<std::string> &a = qv::splashEmblem(0);
  const std::vector<std::string> &b = qv::splashEmblem(1);
  EXPECT_NEAR(emblem_at.getY(), banner_at.getY() + 1, 0.001);
  EXPECT_GT(expectInk(emblem_shot, a, emblem_at, isBlue, "emblem",
                      [&](int c, int r) { return a[r][c] == b[r][c]; }),
            20);
  expectInk(emblem_shot, qv::splashBanner(1), banner_at, isGreen, "banner");
}
