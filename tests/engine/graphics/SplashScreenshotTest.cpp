#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "HudFixture.h"
#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/Splash.h"
#include "input/InputManager.h"
#include "world/WorldManager.h"

using qv::Vector;

namespace {

using Kind = bool (*)(sf::Color);
const Kind GREEN = [](sf::Color c) { return c.g > 100 && c.r < 60 && c.b < 60; };
const Kind BLUE = [](sf::Color c) { return c.b > 100 && c.r < 60 && c.g < 60; };

// Pixels of the kind in the w x h pixel rectangle at (x0, y0), clipped to the image.
int countPixels(const sf::Image &image, int x0, int y0, int w, int h, Kind kind) {
  int count = 0;
  for (int y = std::max(y0, 0); y < std::min(y0 + h, int(image.getSize().y)); y++)
    for (int x = std::max(x0, 0); x < std::min(x0 + w, int(image.getSize().x)); x++)
      count += kind(image.getPixel(unsigned(x), unsigned(y)));
  return count;
}

// Every non-blank character of the picture, centred on centre, must have ink
// of the kind in its cell. Returns the number of characters checked.
int expectInk(const sf::Image &image, const std::vector<std::string> &picture, Vector centre,
              Kind kind) {
  const float w = static_cast<float>(picture[0].size()), h = static_cast<float>(picture.size());
  int checked = 0;
  for (int r = 0; r < int(picture.size()); r++)
    for (int c = 0; c < int(picture[r].size()); c++) {
      if (picture[r][c] == ' ') continue;
      const Vector px = qv::spacesToPixels(
          Vector(centre.getX() + c - (w - 1) * 0.5f, centre.getY() + r - (h - 1) * 0.5f));
      EXPECT_GT(countPixels(image, int(px.getX()), int(px.getY()), int(qv::charWidth()),
                            int(qv::charHeight()), kind),
                0)
          << "'" << picture[r][c] << "' at column " << c << ", row " << r;
      checked++;
    }
  return checked;
}

class SplashScreenshotTest : public qvtest::HudWindowFixture {
 protected:
  // The shipped frame time: the banner's slide is timed by it.
  std::string config() const override { return "frame_time:33,\n" + HudWindowFixture::config(); }
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
    const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects();
    for (int i = 0; i < all.getCount(); i++) {
      if (all[i]->getType() == "Splash") banner_at = all[i]->getPosition();
      if (all[i]->getType() == "SplashQuorvelle") emblem_at = all[i]->getPosition();
    }
    if (step == 21) banner_shot = grab();  // the banner stopped at step 14; the emblem is below
    if (step == 56) emblem_shot = grab();  // the emblem came to rest at step 45, shrinks at 59
    if (step == 57)
      qv::InputManager::getInstance().deliverKeyboard(qv::Keyboard::SPACE, qv::KEY_PRESSED);
    return 0;
  };
  ASSERT_EQ(qv::splash(), 0);
  ASSERT_EQ(qv::GameManager::getInstance().getStepCount(), 58);
  // Where a person can look at the screenshots: <build>/test-output/.
  const auto folder = std::filesystem::path(QV_RUN_DIR).parent_path() / "test-output";
  std::filesystem::create_directories(folder);
  ASSERT_TRUE(banner_shot.saveToFile((folder / "splash-banner.png").string()));
  ASSERT_TRUE(emblem_shot.saveToFile((folder / "splash-emblem.png").string()));

  // Banner in place, in its boxed lettering, all green; nothing above it,
  // and no blue above the last row, where the rising emblem just peeks in.
  EXPECT_GT(expectInk(banner_shot, qv::splashBanner(1), banner_at, GREEN), 100);
  EXPECT_EQ(countPixels(banner_shot, 0, 0, 1024, 23 * 32, BLUE), 0);
  EXPECT_EQ(countPixels(banner_shot, 0, 0, 1024, 7 * 32, GREEN), 0);

  // The emblem risen beside it, blue (only the strokes both variants share,
  // since the picture alternates), the banner still green.
  std::vector<std::string> shared = qv::splashEmblem(0);
  for (std::size_t r = 0; r < shared.size(); r++)
    for (std::size_t c = 0; c < shared[r].size(); c++)
      if (shared[r][c] != qv::splashEmblem(1)[r][c]) shared[r][c] = ' ';
  EXPECT_NEAR(emblem_at.getY(), banner_at.getY() + 1, 0.001);
  EXPECT_GT(expectInk(emblem_shot, shared, emblem_at, BLUE), 20);
  expectInk(emblem_shot, qv::splashBanner(1), banner_at, GREEN);
}
