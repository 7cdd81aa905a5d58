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

// The screen text with row y replaced.
std::string withRow(std::string text, int columns, int y, const std::string &row) {
  text.replace(static_cast<std::size_t>(y * (columns + 1)), row.size(), row);
  return text;
}

class DisplayWindowTest : public qvtest::DisplayFixture {};

class DisplayHeadlessTest : public qvtest::DisplayFixture {
  std::string settings() const override {
    return "headless:true,window_horizontal_pixels:1024,window_vertical_pixels:768,"
           "window_horizontal_chars:80,window_vertical_chars:24,";
  }
};

class DisplayBlueTest : public qvtest::DisplayFixture {
  std::string settings() const override { return "window_background_color:blue,"; }
};

// Counts the cell's pixels in colour c; pixels that are neither c, the
// background nor a blend of the two fail the test.
int pixelsOf(const sf::Image &image, int column, int row, sf::Color c, sf::Color bg) {
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

TEST_F(DisplayHeadlessTest, GeometryAndRefusedDrawing) {
  ASSERT_EQ(started, 0);
  EXPECT_EQ(display().getWindow(), nullptr);
  EXPECT_FLOAT_EQ(qv::charWidth(), 12.8f);
  EXPECT_FLOAT_EQ(qv::charHeight(), 32.0f);
  EXPECT_EQ(qv::spacesToPixels(Vector(10, 3)), Vector(128, 96));
  EXPECT_EQ(qv::pixelsToSpaces(Vector(128, 96)), Vector(10, 3));
  EXPECT_EQ(qv::pixelsToSpaces(Vector(6.4f, 16)), Vector(0.5f, 0.5f));

  // Headless: every draw fails quietly, and nothing reaches the text view.
  EXPECT_EQ(display().drawChar(Vector(1, 1), 'a', qv::RED, 0), -1);
  EXPECT_EQ(display().drawChar(Vector(1, 1), 'a', 1, 2, 3, 0), -1);
  EXPECT_EQ(display().drawString(Vector(1, 1), "abc", qv::LEFT_JUSTIFIED, qv::RED), -1);
  EXPECT_EQ(display().swapBuffers(), -1);
  EXPECT_EQ(display().screenText(), blankScreen(80, 24));
  EXPECT_EQ(log->count("DisplayManager not started!"), 0);

  // The grid setters change the cell and every later conversion.
  display().setHorizontalChars(40);
  EXPECT_FLOAT_EQ(qv::charWidth(), 25.6f);
  EXPECT_EQ(qv::spacesToPixels(Vector(10, 3)), Vector(256, 96));
  display().setVerticalChars(0);
  EXPECT_EQ(display().getVerticalChars(), 24);
  EXPECT_TRUE(log->contains(
      "DisplayManager::setVerticalChars(): Error! 0 cells down is no grid; using 24 instead."));
  EXPECT_EQ(display().screenText(), blankScreen(40, 24));

  EXPECT_EQ(display().startUp(), -1);
  EXPECT_TRUE(log->contains("DisplayManager::startup(): Warning! DisplayManager already started."));
}

TEST_F(DisplayHeadlessTest, RefusesEverythingBeforeStartUp) {
  display().shutDown();
  loadConfig("headless:false,");
  EXPECT_EQ(display().drawChar(Vector(1, 1), 'a', qv::RED, 0), -1);
  EXPECT_EQ(display().drawChar(Vector(1, 1), 'a', 1, 2, 3, 0), -1);
  EXPECT_EQ(display().drawString(Vector(1, 1), "abc", qv::LEFT_JUSTIFIED, qv::RED), -1);
  EXPECT_EQ(display().swapBuffers(), -1);
  EXPECT_EQ(log->count("DisplayManager not started!"), 4);
}

TEST_F(DisplayWindowTest, StartUpFailures) {
  ASSERT_EQ(started, 0);
  display().shutDown();
  {
    qvtest::ScopedEnv no_display("DISPLAY", nullptr);
    EXPECT_EQ(display().startUp(), -1);
    EXPECT_TRUE(
        log->contains("DisplayManager::startUp(): Error! No window system: DISPLAY is not set."));
  }
  {
    // A display that does not answer fails the start instead of the process.
    qvtest::ScopedEnv dead_display("DISPLAY", ":4321");
    EXPECT_EQ(display().startUp(), -1);
    EXPECT_TRUE(log->contains(
        "DisplayManager::startUp(): Error! No window system: the X display cannot be reached."));
    EXPECT_EQ(log->count("DisplayManager::startUp(): Unable to allocate window!"), 2);
  }
  loadConfig("font_file:/nonexistent/font.ttf,");
  EXPECT_EQ(display().startUp(), -1);
  EXPECT_TRUE(log->contains(
      "DisplayManager::startUp(): Error! Unable to open font from file '/nonexistent/font.ttf'."));
  EXPECT_FALSE(display().isStarted());
  EXPECT_NE(display().getWindow(), nullptr);  // stays open until shutDown
  display().shutDown();
  EXPECT_EQ(display().getWindow(), nullptr);
}

TEST_F(DisplayWindowTest, WindowFromConfiguration) {
  ASSERT_EQ(started, 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(480, 240));
  display().shutDown();
  // A pixel size of 0 takes the desktop's, for that axis only; so does a
  // negative one, which is reported.
  const sf::VideoMode desktop = sf::VideoMode::getDesktopMode();
  loadConfig("window_horizontal_pixels:0,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(desktop.width, 240));
  display().shutDown();
  loadConfig("window_vertical_pixels:-3,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(480, desktop.height));
  EXPECT_TRUE(
      log->contains("DisplayManager::startUp(): Error! -3 pixels down is no window size; "
                    "using the desktop's " +
                    std::to_string(desktop.height) + "."));
}

TEST_F(DisplayWindowTest, TextViewOfStringsAndCharacters) {
  ASSERT_EQ(started, 0);
  std::string expected = blankScreen(24, 8);
  EXPECT_EQ(display().drawString(Vector(10, 0), "abcde", qv::LEFT_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 1), "abcde", qv::CENTER_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 2), "abcd", qv::CENTER_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 3), "abcde", qv::RIGHT_JUSTIFIED, qv::RED), 0);
  EXPECT_EQ(display().drawString(Vector(10, 4), "", qv::RIGHT_JUSTIFIED, qv::RED), 0);
  expected = withRow(expected, 24, 0, "          abcde");
  expected = withRow(expected, 24, 1, "        abcde");
  expected = withRow(expected, 24, 2, "        abcd");
  expected = withRow(expected, 24, 3, "     abcde");
  // A fractional position belongs to the cell holding its top-left corner;
  // off-screen characters are drawn but take no cell.
  EXPECT_EQ(display().drawChar(Vector(3.9f, 5.5f), 'x', qv::GREEN, 0), 0);
  EXPECT_EQ(display().drawChar(Vector(-0.5f, 5), 'y', qv::GREEN, 0), 0);
  EXPECT_EQ(display().drawChar(Vector(23.99f, 7.99f), 'z', 10, 20, 30, 0), 0);
  EXPECT_EQ(display().drawChar(Vector(0, 6), 'c', qv::CUSTOM, 0), 0);
  expected = withRow(expected, 24, 5, "   x");
  expected = withRow(expected, 24, 6, "c");
  expected = withRow(expected, 24, 7, "                       z");
  EXPECT_EQ(display().screenText(), expected);
  EXPECT_EQ(display().screenColor(12, 3), qv::BLACK);  // blank
  EXPECT_EQ(display().screenColor(12, 0), qv::RED);
  EXPECT_EQ(display().screenColor(3, 5), qv::GREEN);
  EXPECT_EQ(display().screenColor(0, 6), qv::WHITE);  // CUSTOM has no colour: white
  EXPECT_EQ(display().screenColor(23, 7), qv::CUSTOM);
  EXPECT_EQ(display().screenCell(23, 7).b, 30);

  // The view's corner is the screen's top-left cell.
  qv::WorldManager::getInstance().setView(qv::Box(Vector(5, 2), 24, 8));
  display().drawChar(Vector(7, 3), 'v', qv::BLUE, 0);
  EXPECT_EQ(display().screenChar(2, 1), 'v');

  // Swapping shows the frame and starts a blank one.
  const std::string drawn = display().screenText();
  EXPECT_EQ(display().swapBuffers(), 0);
  EXPECT_EQ(display().shownText(), drawn);
  EXPECT_EQ(display().screenText(), blankScreen(24, 8));
}

TEST_F(DisplayBlueTest, PixelsOfDrawnAndBlankCells) {
  ASSERT_EQ(started, 0);
  const sf::Color bg = sf::Color::Blue;
  display().drawString(Vector(2, 1), "Hi!", qv::LEFT_JUSTIFIED, qv::YELLOW);
  display().drawChar(Vector(20, 6), 'M', qv::RED, 0);
  display().drawChar(Vector(10, 4), '#', qv::WHITE, 0);
  display().drawChar(Vector(11, 4), '@', 0, 255, 255, 0);
  const sf::Image image = grab();
  EXPECT_GT(pixelsOf(image, 2, 1, sf::Color::Yellow, bg), 10);
  EXPECT_GT(pixelsOf(image, 3, 1, sf::Color::Yellow, bg), 5);
  EXPECT_GT(pixelsOf(image, 4, 1, sf::Color::Yellow, bg), 5);
  EXPECT_GT(pixelsOf(image, 20, 6, sf::Color::Red, bg), 10);
  EXPECT_GT(pixelsOf(image, 10, 4, sf::Color::White, bg), 10);
  EXPECT_GT(pixelsOf(image, 11, 4, sf::Color::Cyan, bg), 10);
  for (int y = 0; y < 8; y++)
    for (int x = 0; x < 24; x++)
      if (display().screenChar(x, y) == ' ') {
        EXPECT_EQ(pixelsOf(image, x, y, bg, bg), 600) << "blank cell " << x << "," << y;
      }

  // After a swap the back buffer is cleared to the background.
  display().swapBuffers();
  const sf::Image cleared = grab();
  for (int y = 0; y < 8; y++)
    for (int x = 0; x < 24; x++) ASSERT_EQ(pixelsOf(cleared, x, y, bg, bg), 600);
}

TEST_F(DisplayWindowTest, GlyphSizeFollowsFontScaleNotGridChanges) {
  ASSERT_EQ(started, 0);
  // Cells of 20 x 30 pixels with font scale 1.0: characters of size 20.
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
  display().drawChar(Vector(5, 2), '|', qv::RED, 0);
  EXPECT_EQ(heightOfBar(grab()), height);
}
