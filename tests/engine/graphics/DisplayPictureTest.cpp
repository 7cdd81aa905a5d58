#include <algorithm>
#include <cstdlib>
#include <functional>

#include "DisplayFixture.h"
#include "graphics/Shape.h"

using qv::Vector;

namespace {

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

// The same screen drawn character by character as an SFML rectangle and text
// (the cell a tenth of a cell left and a fifth down, then the glyph), and
// through the display three times: drawn, drawn and kept, shown from the
// kept picture. Only invisible differences are allowed.
TEST_F(DisplayPictureTest, SamePictureAsEachCharacterDrawnOnItsOwn) {
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
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
    display.getWindow()->draw(cell);
    text.setString(sf::String(ch));
    text.setPosition(pixel.getX(), pixel.getY());
    text.setFillColor(color);
    text.setRotation(angle);
    display.getWindow()->draw(text);
  });
  const sf::Image expected = grab();
  display.swapBuffers();

  for (int frame = 0; frame < 3; frame++) {
    drawScreen([&](Vector at, char ch, sf::Color color, float angle) {
      display.drawChar(at, ch, color.r, color.g, color.b, angle);
    });
    // How many pixels differ, and by how much at most in a channel.
    const sf::Image actual = grab();
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
    display.swapBuffers();
  }
}
