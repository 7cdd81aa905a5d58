#include "Screen.h"

#include <algorithm>
#include <cmath>

#include "DisplayFixture.h"
#include "core/Config.h"
#include "graphics/DisplayManager.h"
#include "world/WorldManager.h"

namespace qvtest {

namespace {

int phaseCount(float cell_width) {
  for (int n = 1; n <= 16; n++)
    if (std::fabs(static_cast<float>(n) * cell_width -
                  std::round(static_cast<float>(n) * cell_width)) < 1e-3f)
      return n;
  return 0;
}

// The ink of one drawing of the text, starting x0 pixels into the image.
ScreenText::Drawing inkOfDrawing(const sf::Image &image, const ScreenText &text, float x0, int top,
                                 float cell_width, float cell_height) {
  ScreenText::Drawing drawing;
  const int length = static_cast<int>(text.text.size());
  drawing.left = static_cast<int>(std::floor(x0));
  drawing.width =
      static_cast<int>(std::ceil(x0 + static_cast<float>(length) * cell_width)) - drawing.left;
  drawing.height = static_cast<int>(std::lround(cell_height));
  drawing.ink.resize(static_cast<std::size_t>(drawing.width * drawing.height));
  drawing.cell_points.resize(text.text.size());
  for (int x = 0; x < drawing.width; x++)
    drawing.cell_of.push_back(std::min(
        length - 1, static_cast<int>((static_cast<float>(drawing.left + x) - x0) / cell_width)));
  for (int y = 0; y < drawing.height; y++)
    for (int x = 0; x < drawing.width; x++) {
      const sf::Color c =
          image.getPixel(static_cast<unsigned>(drawing.left + x), static_cast<unsigned>(top + y));
      if (inkOf(static_cast<std::uint32_t>(c.r << 16 | c.g << 8 | c.b)) != text.colour) continue;
      drawing.ink[static_cast<std::size_t>(y * drawing.width + x)] = 1;
      drawing.points.push_back(y * drawing.width + x);
      drawing.cell_points[static_cast<std::size_t>(drawing.cell_of[static_cast<std::size_t>(x)])]++;
    }
  return drawing;
}

}  // namespace

int inkOf(std::uint32_t rgb) {
  const int r = rgb >> 16 & 0xff, g = rgb >> 8 & 0xff, b = rgb & 0xff;
  const int top = std::max({r, g, b});
  if (top < 160) return qv::BLACK;
  return (r * 2 > top ? 1 : 0) | (g * 2 > top ? 2 : 0) | (b * 2 > top ? 4 : 0);
}

// Texts go on every other row, so that no glyph reaches into another's box.
std::vector<ScreenText> drawTexts(const std::string &config_text, int columns, int rows,
                                  const std::vector<std::pair<std::string, qv::Color>> &texts) {
  std::vector<ScreenText> drawn;
  qv::Config::getInstance().loadConfig(config_text);
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  if (display.startUp() != 0) return drawn;
  display.setVerticalChars(rows);
  display.setHorizontalChars(columns);
  qv::WorldManager::getInstance().setView(
      qv::Box(qv::Vector(0, 0), static_cast<float>(columns), static_cast<float>(rows)));
  const float cell_width = qv::charWidth(), cell_height = qv::charHeight();
  const int phases = phaseCount(cell_width);
  struct Job {
    std::size_t text;
    float x;  // the start, in cells
  };
  std::vector<Job> jobs;
  for (std::size_t i = 0; i < texts.size(); i++) {
    drawn.push_back(ScreenText{texts[i].first, texts[i].second, cell_width, phases, {}});
    for (int phase = 0; phase < phases; phase++)
      for (int sixth = 0; sixth < ScreenText::SIXTHS; sixth++)
        jobs.push_back(
            Job{i, static_cast<float>(phase) + static_cast<float>(sixth) / ScreenText::SIXTHS});
  }
  const std::size_t per_screen = static_cast<std::size_t>(rows / 2);
  for (std::size_t first = 0; first < jobs.size(); first += per_screen) {
    const std::size_t last = std::min(jobs.size(), first + per_screen);
    for (std::size_t j = first; j < last; j++)
      display.drawString(qv::Vector(jobs[j].x, static_cast<float>(2 * (j - first))),
                         drawn[jobs[j].text].text, qv::LEFT_JUSTIFIED, drawn[jobs[j].text].colour);
    const sf::Image image = grabWindow();
    for (std::size_t j = first; j < last; j++) {
      const int top =
          static_cast<int>(std::lround(static_cast<float>(2 * (j - first)) * cell_height));
      ScreenText &text = drawn[jobs[j].text];
      text.drawings.push_back(
          inkOfDrawing(image, text, jobs[j].x * cell_width, top, cell_width, cell_height));
    }
    display.swapBuffers();
  }
  display.shutDown();
  return drawn;
}

Screen::Screen(const Picture &picture, int columns, int rows)
    : m_width(picture.width),
      m_height(picture.height),
      m_columns(columns),
      m_rows(rows),
      m_cell_width(static_cast<float>(picture.width) / static_cast<float>(columns)),
      m_cell_height(static_cast<float>(picture.height) / static_cast<float>(rows)),
      m_ink(picture.pixels.size()) {
  std::transform(picture.pixels.begin(), picture.pixels.end(), m_ink.begin(),
                 [](std::uint32_t rgb) { return static_cast<std::uint8_t>(inkOf(rgb)); });
}

std::array<int, 8> Screen::inkIn(float x0, float y0, float x1, float y1) const {
  std::array<int, 8> counts{};
  const int left = std::max(0, static_cast<int>(std::lround(x0 * m_cell_width)));
  const int right = std::min(m_width, static_cast<int>(std::lround(x1 * m_cell_width)));
  const int top = std::max(0, static_cast<int>(std::lround(y0 * m_cell_height)));
  const int bottom = std::min(m_height, static_cast<int>(std::lround(y1 * m_cell_height)));
  for (int y = top; y < bottom; y++)
    for (int x = left; x < right; x++) counts[m_ink[index(x, y)]]++;
  return counts;
}

bool Screen::shows(const ScreenText &text) const {
  const int sixths = ScreenText::SIXTHS;
  const int length = static_cast<int>(text.text.size());
  if (text.phases == 0 || text.text.size() > ScreenText::MAX_LENGTH ||
      std::fabs(text.cell_width - m_cell_width) > 1e-3f)
    return false;
  for (int half_row = 0; half_row + 2 <= 2 * m_rows; half_row++)
    for (int start = 0; start + length * sixths <= m_columns * sixths; start++) {
      const int column = start / sixths, phase = column % text.phases;
      const ScreenText::Drawing &drawing =
          text.drawings[static_cast<std::size_t>(phase * sixths + start % sixths)];
      const int left =
          drawing.left +
          static_cast<int>(std::lround(static_cast<float>(column - phase) * m_cell_width));
      const int top =
          static_cast<int>(std::lround(static_cast<float>(half_row) * m_cell_height / 2));
      if (showsAt(drawing, text.colour, left, top)) return true;
    }
  return false;
}

int Screen::differences(const Screen &other, float x0, float y0, float x1, float y1) const {
  int count = 0;
  for (int y = static_cast<int>(y0 * m_cell_height); y < static_cast<int>(y1 * m_cell_height); y++)
    for (int x = static_cast<int>(x0 * m_cell_width); x < static_cast<int>(x1 * m_cell_width); x++)
      count += m_ink[index(x, y)] != other.m_ink[index(x, y)];
  return count;
}

std::size_t Screen::index(int x, int y) const {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
         static_cast<std::size_t>(x);
}

// A few pixels of each cell may differ (the edges of glyphs drawn over other
// glyphs blend with them), a wrong character's may not. The text's own ink is
// checked first, which rules most places out quickly.
bool Screen::showsAt(const ScreenText::Drawing &drawing, qv::Color colour, int left,
                     int top) const {
  if (left < 0 || top < 0 || left + drawing.width > m_width || top + drawing.height > m_height)
    return false;
  std::array<int, ScreenText::MAX_LENGTH> wrong{};
  const auto tooMany = [&drawing, &wrong](int x) {
    const auto cell = static_cast<std::size_t>(drawing.cell_of[static_cast<std::size_t>(x)]);
    return ++wrong[cell] > drawing.cell_points[cell] / 5 + 4;
  };
  for (int point : drawing.points) {
    const int x = point % drawing.width;
    if (m_ink[index(left + x, top + point / drawing.width)] != colour && tooMany(x)) return false;
  }
  wrong.fill(0);
  for (int y = 0; y < drawing.height; y++)
    for (int x = 0; x < drawing.width; x++) {
      const bool want = drawing.ink[static_cast<std::size_t>(y * drawing.width + x)] != 0;
      if (want != (m_ink[index(left + x, top + y)] == colour) && tooMany(x)) return false;
    }
  return true;
}

}  // namespace qvtest
