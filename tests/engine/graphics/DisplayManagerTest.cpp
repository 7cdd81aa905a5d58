// The display's grid, as text and as pixels, and the frames, sprites and
// animations drawn on it.

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "DisplayFixture.h"
#include "core/utility.h"
#include "graphics/Animation.h"
#include "graphics/Shape.h"
#include "graphics/Sprite.h"

using qv::DisplayManager;
using qv::Frame;
using qv::Vector;

namespace {

DisplayManager &display() {
  return DisplayManager::getInstance();
}

std::string blankScreen(int columns) {
  std::string text;
  for (int y = 0; y < 8; y++) text += std::string(static_cast<std::size_t>(columns), ' ') + '\n';
  return text;
}

// A real window of 24 x 8 cells of 20 x 30 pixels, on blue.
class DisplayWindowTest : public qvtest::DisplayFixture {
  std::string settings() const override { return "window_background_color:blue,"; }
};

// The same window on black, so a cell that a frame leaves alone shows the
// colour drawn there before, not the background's.
class FrameTest : public qvtest::DisplayFixture {};

// Columns 8..12 of rows 3..6 of the screen text; then a fresh frame.
std::string around() {
  std::string out;
  for (int y = 3; y <= 6; y++) out += display().screenText().substr(y * 25 + 8, 5) + '\n';
  display().swapBuffers();
  return out;
}

// The shipped geometry (80 x 24 cells of 12.8 x 32 pixels) on a background
// that is not black, so a picture laid over the window shows its blending.
class DisplayPictureTest : public qvtest::DisplayFixture {
  std::string settings() const override {
    return "window_horizontal_pixels:1024,window_vertical_pixels:768,window_horizontal_chars:80,"
           "window_vertical_chars:24,font_scale:2.0,window_background_color:blue,";
  }
};

// A full screen of varied characters and colours, a few off the grid or
// turned, with a large shape under the characters and one between them.
void drawScreen(const std::function<void(Vector, char, sf::Color, float)> &draw_char) {
  qv::Shape under, between;
  under.setSize(200);
  under.setColor(qv::RED);
  between.setType(qv::TRIANGLE);
  between.setSize(200);
  between.setColor(qv::CUSTOM);
  between.setG(200);
  between.setAlpha(160);
  under.draw(Vector(40, 12));
  for (int y = 0; y < 24; y++) {
    if (y == 12) between.draw(Vector(20, 10));  // over rows 7 to 13
    for (int x = 0; x < 80; x++) {
      const int i = y * 80 + x;
      const Vector at = i % 13 == 0 ? Vector(x + 0.37f, y + 0.25f) : Vector(float(x), float(y));
      const sf::Color color(static_cast<sf::Uint8>(i * 37), static_cast<sf::Uint8>(255 - i * 11),
                            static_cast<sf::Uint8>(i % 7 * 40));
      draw_char(at, static_cast<char>(' ' + i * 7 % 95), color, i % 41 == 0 ? 30.f : 0.f);
    }
  }
}

}  // namespace

TEST_F(DisplayWindowTest, StartUpFromConfigurationAndItsFailures) {
  EXPECT_EQ(display().startUp(), -1);  // already started
  // A pixel size of 0 takes the desktop's; so does a negative one, which is
  // reported.
  const sf::VideoMode desktop = sf::VideoMode::getDesktopMode();
  display().shutDown();
  loadConfig("window_horizontal_pixels:0,window_vertical_pixels:-3,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow()->getSize(), sf::Vector2u(desktop.width, desktop.height));
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

  // Headless, every draw is refused quietly and nothing reaches the text view.
  loadConfig("headless:true,");
  ASSERT_EQ(display().startUp(), 0);
  EXPECT_EQ(display().getWindow(), nullptr);
  EXPECT_EQ(display().drawChar(Vector(1, 1), 'a', qv::RED, 0) +
                display().drawChar(Vector(1, 1), 'a', 1, 2, 3, 0) +
                display().drawString(Vector(1, 1), "abc", qv::LEFT_JUSTIFIED, qv::RED) +
                display().swapBuffers(),
            -4);
  EXPECT_EQ(display().screenText(), blankScreen(24));
  EXPECT_FALSE(log->contains("DisplayManager not started!"));
}

// Justification, fractional and off-screen positions and the view's corner,
// in the text view; swapping shows the frame and clears text and pixels.
TEST_F(DisplayWindowTest, StringsCharactersAndGridChanges) {
  int results = display().drawString(Vector(10, 0), "abcde", qv::LEFT_JUSTIFIED, qv::RED) +
                display().drawString(Vector(10, 1), "abcde", qv::CENTER_JUSTIFIED, qv::RED) +
                display().drawString(Vector(10, 2), "abcd", qv::CENTER_JUSTIFIED, qv::RED) +
                display().drawString(Vector(10, 3), "abcde", qv::RIGHT_JUSTIFIED, qv::RED) +
                display().drawString(Vector(10, 4), "", qv::RIGHT_JUSTIFIED, qv::RED);
  display().drawString(Vector(2, 1), "Hi!", qv::LEFT_JUSTIFIED, qv::YELLOW);
  display().drawChar(Vector(20, 6), 'M', qv::RED, 0);
  display().drawChar(Vector(10, 4), '#', qv::WHITE, 0);
  display().drawChar(Vector(11, 4), '@', 0, 255, 255, 0);
  results += display().drawChar(Vector(0, 6), 'c', qv::CUSTOM, 0) +
             display().drawChar(Vector(3.9f, 5.5f), 'x', qv::GREEN, 0) +
             display().drawChar(Vector(-0.5f, 5), 'y', qv::GREEN, 0) +
             display().drawChar(Vector(23.99f, 7.99f), 'z', 10, 20, 30, 0);
  EXPECT_EQ(results, 0);
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
  // Blank is the background; CUSTOM has no colour of its own: white.
  std::string colors;
  for (const auto &[x, y] :
       std::vector<std::pair<int, int>>{{12, 3}, {12, 0}, {11, 4}, {0, 6}, {23, 7}})
    colors += qv::colorToString(display().screenColor(x, y)) + " ";
  EXPECT_EQ(colors, "Blue Red Cyan White Unknown color ");
  EXPECT_EQ(display().screenCell(23, 7).b, 30);

  EXPECT_EQ(display().swapBuffers(), 0);
  EXPECT_EQ(display().shownText(), drawn);
  EXPECT_EQ(display().screenText(), blankScreen(24));

  // The grid setters change the cell and every later conversion; a grid of
  // no cells is refused.
  EXPECT_EQ(qv::spacesToPixels(Vector(10, 3)), Vector(200, 90));
  display().setHorizontalChars(12);
  EXPECT_EQ(display().screenText(), blankScreen(12));
  display().setVerticalChars(0);
  EXPECT_TRUE(log->contains(
      "DisplayManager::setVerticalChars(): Error! 0 cells down is no grid; using 8 instead."));
  EXPECT_EQ(qv::spacesToPixels(Vector(10, 3)), Vector(400, 90));
}

TEST_F(FrameTest, CentredMirroredTransparentAnimatedAndWithoutDisplay) {
  // A 3 x 2 frame at (10, 5) covers x 9..11 on rows 4.5 and 5.5; an unknown
  // transform draws it as stored.
  for (const auto &[transform, picture] :
       std::vector<std::pair<int, std::string>>{{qv::NONE, "     \n abc \n def \n     \n"},
                                                {qv::HORIZONTAL, "     \n cba \n fed \n     \n"},
                                                {qv::VERTICAL, "     \n def \n abc \n     \n"},
                                                {qv::BOTH, "     \n fed \n cba \n     \n"},
                                                {7, "     \n abc \n def \n     \n"}}) {
    EXPECT_EQ(Frame(3, 2, "abcdef").draw(Vector(10, 5), qv::GREEN, 0, transform), 0);
    EXPECT_EQ(around(), picture) << "transform " << transform;
  }
  // Even sizes sit on half cells: x 9.5 and 10.5 fall in cells 9 and 10. A
  // string shorter than its size draws what it has; empty frames nothing.
  Frame(2, 1, "xy").draw(Vector(10, 3), qv::RED, 0, qv::NONE);
  EXPECT_EQ(Frame(3, 2, "abcd").draw(Vector(10, 5), qv::RED, 0, qv::BOTH), 0);
  EXPECT_EQ(Frame().draw(Vector(10, 5), qv::RED, 0, qv::NONE), 0);
  EXPECT_EQ(Frame(3, 0, "abc").draw(Vector(10, 5), qv::RED, 0, qv::NONE), 0);
  EXPECT_EQ(around(), " xy  \n   d \n cba \n     \n");

  // The transparent character leaves its cells untouched; without one every
  // cell is drawn, blanks included.
  display().drawString(Vector(9, 4), "xyz", qv::LEFT_JUSTIFIED, qv::BLUE);
  EXPECT_EQ(Frame(3, 1, "#a#").draw(Vector(10, 4), qv::RED, '#', qv::HORIZONTAL), 0);
  EXPECT_EQ(display().screenColor(9, 4), qv::BLUE);
  EXPECT_EQ(display().screenColor(10, 4), qv::RED);
  Frame(3, 1, "# #").draw(Vector(10, 5), qv::RED, 0, qv::NONE);
  EXPECT_EQ(around(), "     \n xaz \n # # \n     \n");

  // Each frame shows for the sprite's slowdown in game frames, the current
  // one drawn before the step; slowdown count -1 freezes it.
  qv::Sprite sprite(3);
  for (const char *frame : {"a", "b", "c"}) sprite.addFrame(Frame(1, 1, frame));
  sprite.setSlowdown(2);
  sprite.setColor(qv::MAGENTA);
  sprite.setTransparency('c');
  qv::Animation animation;
  // A new sprite starts over, at its first frame and count.
  animation.setIndex(2);
  animation.setSlowdownCount(1);
  animation.setSprite(&sprite);
  std::string seen;
  for (int i = 0; i < 13; i++) {
    if (i == 8) animation.setSlowdownCount(-1);
    EXPECT_EQ(animation.draw(Vector(10, 4)), 0);
    if (i == 0) {
      EXPECT_EQ(display().screenColor(10, 4), qv::MAGENTA);
    }
    seen += around()[8];
  }
  EXPECT_EQ(seen, "aabb  aabbbbb");  // 'c' is the sprite's transparent character

  // Sprites hold as many frames as they were made for. Without a display a
  // frame fails at its first cell (but has nothing to draw when all is
  // transparent); the animation still steps.
  display().shutDown();
  qv::Sprite two(2), broken(-1);
  EXPECT_EQ(two.addFrame(Frame(2, 1, "ab")) + two.addFrame(Frame(2, 1, "cd")), 0);
  EXPECT_EQ(two.addFrame(Frame(2, 1, "ef")) + broken.addFrame(Frame(1, 1, "a")), -2);
  EXPECT_EQ(
      two.getFrame(1).getString() + two.getFrame(2).getString() + two.getFrame(-1).getString(),
      "cd");
  EXPECT_EQ(Frame(3, 1, "abc").draw(Vector(5, 5), qv::RED, 0, qv::NONE), -1);
  EXPECT_EQ(Frame(3, 1, "###").draw(Vector(5, 5), qv::RED, '#', qv::NONE), 0);
  qv::Animation other;
  EXPECT_EQ(other.getBox(), qv::Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  EXPECT_EQ(other.draw(Vector()), 0);  // no sprite: nothing, no step
  other.setSprite(&two);
  EXPECT_EQ(other.draw(Vector(5, 5)) + two.draw(5, Vector(5, 5), 0, qv::NONE), -1);
  EXPECT_EQ(other.getIndex(), 1);
  EXPECT_EQ(log->count("DisplayManager not started!"), 2);
  two.setWidth(5);
  two.setHeight(3);
  other.setSprite(&two);
  EXPECT_EQ(other.getBox(), qv::Box(Vector(-2.5f, -1.5f), 5, 3));
}

// The same screen drawn character by character as an SFML rectangle and text
// (the cell a tenth of a cell left and a fifth down, then the glyph), and
// through the display three times: drawn, drawn and kept, shown from the
// kept picture. Only invisible differences are allowed.
TEST_F(DisplayPictureTest, SamePictureAsEachCharacterDrawnOnItsOwn) {
  sf::Font font;
  ASSERT_TRUE(font.loadFromFile(QV_SOURCE_DIR "/assets/qv-font.ttf"));
  sf::Text text("", font, 25);  // font scale 2 x the 12.8 pixel cell width
  text.setStyle(sf::Text::Bold);
  sf::RectangleShape cell(sf::Vector2f(qv::charWidth(), qv::charHeight()));
  cell.setFillColor(sf::Color::Blue);
  drawScreen([&](Vector at, char ch, sf::Color color, float angle) {
    const Vector pixel = qv::spacesToPixels(at);
    cell.setPosition(pixel.getX() - qv::charWidth() / 10, pixel.getY() + qv::charHeight() / 5);
    cell.setRotation(angle);
    display().getWindow()->draw(cell);
    text.setString(sf::String(ch));
    text.setPosition(pixel.getX(), pixel.getY());
    text.setFillColor(color);
    text.setRotation(angle);
    display().getWindow()->draw(text);
  });
  const sf::Image expected = qvtest::grabWindow();
  display().swapBuffers();

  for (int frame = 0; frame < 3; frame++) {
    drawScreen([&](Vector at, char ch, sf::Color color, float angle) {
      display().drawChar(at, ch, color.r, color.g, color.b, angle);
    });
    // How many pixels differ, and by how much at most in a channel.
    const sf::Image actual = qvtest::grabWindow();
    const sf::Uint8 *p = actual.getPixelsPtr(), *q = expected.getPixelsPtr();
    int pixels = 0, most = 0;
    for (std::size_t i = 0; i < 1024 * 768; i++) {
      int here = 0;
      for (std::size_t c = 4 * i; c < 4 * i + 3; c++) here = std::max(here, std::abs(p[c] - q[c]));
      pixels += here > 0;
      most = std::max(most, here);
    }
    EXPECT_LE(pixels, 1024 * 768 / 1000) << "frame " << frame;
    EXPECT_LE(most, 2) << "frame " << frame;
    display().swapBuffers();
  }
}
