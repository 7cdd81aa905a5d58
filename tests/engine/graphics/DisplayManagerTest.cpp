#include <algorithm>
#include <string>

#include "DisplayFixture.h"
#include "TempDir.h"
#include "core/utility.h"

using qv::DisplayManager;
using qv::Vector;

namespace {

DisplayManager &display() {
  return DisplayManager::getInstance();
}

std::string blankScreen(int columns, int rows) {
  std::string text;
  for (int y = 0; y < rows; y++) text += std::string(static_cast<std::size_t>(columns), ' ') + '\n';
  return text;
}

// A real window of 24 x 8 cells of 20 x 30 pixels, on blue.
class DisplayWindowTest : public qvtest::DisplayFixture {
  std::string settings() const override { return "window_background_color:blue,"; }
};

// Counts the cell's pixels in colour c; pixels that are neither c, the blue
// background nor a blend of the two fail the test.
int pixelsOf(const sf::Image &image, int column, int row, sf::Color c) {
  const sf::Color bg = sf::Color::Blue;
  int count = 0;
  for (unsigned y = unsigned(row) * 30; y < unsigned(row + 1) * 30; y++)
    for (unsigned x = unsigned(column) * 20; x < unsigned(column + 1) * 20; x++) {
      const sf::Color p = image.getPixel(x, y);
      auto between = [](int v, int a, int b) { return v >= std::min(a, b) && v <= std::max(a, b); };
      EXPECT_TRUE(between(p.r, c.r, bg.r) && between(p.g, c.g, bg.g) && between(p.b, c.b, bg.b))
          << "cell " << column << "," << row << " pixel " << x << "," << y;
      count += p == c;
    }
  return count;
}

}  // namespace

TEST_F(DisplayWindowTest, StartUpFromConfigurationAndItsFailures) {
  ASSERT_EQ(started, 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(480, 240));
  EXPECT_EQ(display().startUp(), -1);  // already started
  // A pixel size of 0 takes the desktop's, for that axis only; so does a
  // negative one, which is reported.
  const sf::VideoMode desktop = sf::VideoMode::getDesktopMode();
  display().shutDown();
  loadConfig("window_horizontal_pixels:0,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(desktop.width, 240));
  display().shutDown();
  loadConfig("window_vertical_pixels:-3,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(480, desktop.height));
  display().shutDown();
  // No window system, one that does not answer (a failed start, not a failed
  // process), and a missing font, after which the window stays until shutDown.
  int results = 0;
  for (const char *x_display : {static_cast<const char *>(nullptr), ":4321"}) {
    qvtest::ScopedEnv no_display("DISPLAY", x_display);
    results += display().startUp();
  }
  loadConfig("font_file:/nonexistent/font.ttf,");
  results += display().startUp();
  EXPECT_EQ(results, -3);
  EXPECT_FALSE(display().isStarted());
  EXPECT_NE(display().getWindow(), nullptr);
  display().shutDown();
  EXPECT_EQ(display().getWindow(), nullptr);
  const std::string start = "DisplayManager::startUp(): ";
  for (const std::string &line :
       {std::string("DisplayManager::startup(): Warning! DisplayManager already started."),
        start + "Error! -3 pixels down is no window size; using the desktop's " +
            std::to_string(desktop.height) + ".",
        start + "Error! No window system: DISPLAY is not set.",
        start + "Error! No window system: the X display cannot be reached.",
        start + "Error! Unable to open font from file '/nonexistent/font.ttf'."})
    EXPECT_TRUE(log->contains(line)) << line;
  EXPECT_EQ(log->count(start + "Unable to allocate window!"), 2);

  // Not started, every draw is refused with a line; headless, quietly, and
  // nothing reaches the text view.
  auto drawEverything = [] {
    return display().drawChar(Vector(1, 1), 'a', qv::RED, 0) +
           display().drawChar(Vector(1, 1), 'a', 1, 2, 3, 0) +
           display().drawString(Vector(1, 1), "abc", qv::LEFT_JUSTIFIED, qv::RED) +
           display().swapBuffers();
  };
  EXPECT_EQ(drawEverything(), -4);
  EXPECT_EQ(log->count("DisplayManager not started!"), 4);
  loadConfig("headless:true,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow(), nullptr);
  EXPECT_EQ(drawEverything(), -4);
  EXPECT_EQ(display().screenText(), blankScreen(24, 8));
  EXPECT_EQ(log->count("DisplayManager not started!"), 4);
}

TEST_F(DisplayWindowTest, StringsAndCharactersAsTextAndAsPixels) {
  ASSERT_EQ(started, 0);
  EXPECT_EQ(display().drawString(Vector(10, 0), "abcde", qv::LEFT_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 1), "abcde", qv::CENTER_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 2), "abcd", qv::CENTER_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 3), "abcde", qv::RIGHT_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 4), "", qv::RIGHT_JUSTIFIED, qv::RED), 0);
  display().drawString(Vector(2, 1), "Hi!", qv::LEFT_JUSTIFIED, qv::YELLOW);
  display().drawChar(Vector(20, 6), 'M', qv::RED, 0);
  display().drawChar(Vector(10, 4), '#', qv::WHITE, 0);
  display().drawChar(Vector(11, 4), '@', 0, 255, 255, 0);
  EXPECT_EQ(display().drawChar(Vector(0, 6), 'c', qv::CUSTOM, 0), 0);

  // Glyphs in their colour, and every blank cell wholly background.
  const sf::Image image = grab();
  EXPECT_GT(pixelsOf(image, 2, 1, sf::Color::Yellow), 10);
  EXPECT_GT(pixelsOf(image, 3, 1, sf::Color::Yellow), 5);
  EXPECT_GT(pixelsOf(image, 4, 1, sf::Color::Yellow), 5);
  EXPECT_GT(pixelsOf(image, 20, 6, sf::Color::Red), 10);
  EXPECT_GT(pixelsOf(image, 10, 4, sf::Color::White), 10);
  EXPECT_GT(pixelsOf(image, 11, 4, sf::Color::Cyan), 10);
  for (int y = 0; y < 8; y++)
    for (int x = 0; x < 24; x++)
      if (display().screenChar(x, y) == ' ') {
        EXPECT_EQ(pixelsOf(image, x, y, sf::Color::Blue), 600) << x << "," << y;
      }

  // A fractional position belongs to the cell holding its top-left corner;
  // off-screen characters are drawn but take no cell; the view's corner is
  // the screen's top-left cell.
  EXPECT_EQ(display().drawChar(Vector(3.9f, 5.5f), 'x', qv::GREEN, 0), 0);
  EXPECT_EQ(display().drawChar(Vector(-0.5f, 5), 'y', qv::GREEN, 0), 0);
  EXPECT_EQ(display().drawChar(Vector(23.99f, 7.99f), 'z', 10, 20, 30, 0), 0);
  qv::WorldManager::getInstance().setView(qv::Box(Vector(5, 2), 24, 8));
  display().drawChar(Vector(7, 4), 'v', qv::BLUE, 0);
  const std::string drawn =
      "          abcde         \n"
      "  Hi!   abcde           \n"
      "  v     abcd            \n"
      "     abcde              \n"
      "          #@            \n"
      "   x                    \n"
      "c                   M   \n"
      "                       z\n";
  EXPECT_EQ(display().screenText(), drawn);
  EXPECT_EQ(display().screenColor(12, 3), qv::BLUE);  // blank: the background
  EXPECT_EQ(display().screenColor(12, 0), qv::RED);
  EXPECT_EQ(display().screenColor(3, 5), qv::GREEN);
  EXPECT_EQ(display().screenColor(0, 6), qv::WHITE);  // CUSTOM has no colour: white
  EXPECT_EQ(display().screenColor(23, 7), qv::CUSTOM);
  EXPECT_EQ(display().screenCell(23, 7).b, 30);

  // Swapping shows the frame and starts a blank one, in text and in pixels.
  EXPECT_EQ(display().swapBuffers(), 0);
  EXPECT_EQ(display().shownText(), drawn);
  EXPECT_EQ(display().screenText(), blankScreen(24, 8));
  const sf::Image cleared = grab();
  for (int y = 0; y < 8; y++)
    for (int x = 0; x < 24; x++) ASSERT_EQ(pixelsOf(cleared, x, y, sf::Color::Blue), 600);
}

// The grid setters change the cell and every later conversion, but not the
// glyph size, which font scale 1.0 makes 20 for cells of 20 x 30 pixels.
TEST_F(DisplayWindowTest, GridChangesAndGlyphSize) {
  ASSERT_EQ(started, 0);
  EXPECT_EQ(qv::spacesToPixels(Vector(10, 3)), Vector(200, 90));
  sf::Font font;
  ASSERT_TRUE(font.loadFromFile(QV_SOURCE_DIR "/assets/qv-font.ttf"));
  const sf::FloatRect glyph = font.getGlyph('|', 20, true).bounds;
  auto heightOfBar = [](const sf::Image &image) {
    unsigned top = 9999, bottom = 0;
    for (unsigned y = 0; y < image.getSize().y; y++)
      for (unsigned x = 0; x < image.getSize().x; x++)
        if (image.getPixel(x, y).r > 0) top = std::min(top, y), bottom = std::max(bottom, y);
    return int(bottom) - int(top) + 1;
  };
  display().drawChar(Vector(5, 2), '|', qv::RED, 0);
  const int height = heightOfBar(grab());
  EXPECT_NEAR(height, glyph.height, 2.5);  // plus antialiased edge rows
  display().swapBuffers();
  display().setHorizontalChars(12);
  EXPECT_EQ(display().screenText(), blankScreen(12, 8));
  display().setVerticalChars(0);
  EXPECT_TRUE(log->contains(
      "DisplayManager::setVerticalChars(): Error! 0 cells down is no grid; using 8 instead."));
  EXPECT_EQ(qv::spacesToPixels(Vector(10, 3)), Vector(400, 90));
  display().drawChar(Vector(5, 2), '|', qv::RED, 0);
  EXPECT_EQ(heightOfBar(grab()), height);
}
