#include "graphics/Console.h"

#include <algorithm>

namespace qv {

Console::Console() : m_columns(0), m_rows(0), m_blank{' ', 0, 0, 0} {
}

void Console::resize(int columns, int rows, Cell blank) {
  m_columns = columns;
  m_rows = rows;
  m_blank = blank;
  const std::size_t count = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  m_back_cells.assign(count, blank);
  m_front_cells.assign(count, blank);
  m_frame.clear();
}

void Console::put(Vector view_pos, Vector pixel, char ch, unsigned char r, unsigned char g,
                  unsigned char b, float angle) {
  m_frame.push_back(Char{pixel.getX(), pixel.getY(), angle, ch, r, g, b});
  // The comparisons run on floats first so positions far off screen never
  // reach an int conversion.
  const float x = view_pos.getX();
  const float y = view_pos.getY();
  if (!(x >= 0 && y >= 0 && x < m_columns && y < m_rows)) return;
  const std::size_t index =
      static_cast<std::size_t>(static_cast<int>(y) * m_columns + static_cast<int>(x));
  m_back_cells[index] = Cell{ch, r, g, b};
}

void Console::swap() {
  m_front_cells.swap(m_back_cells);
  std::fill(m_back_cells.begin(), m_back_cells.end(), m_blank);
  m_frame.clear();
}

int Console::getColumns() const {
  return m_columns;
}
int Console::getRows() const {
  return m_rows;
}
const std::vector<Console::Char> &Console::frame() const {
  return m_frame;
}

std::string Console::text() const {
  return gridText(m_back_cells);
}
std::string Console::shownText() const {
  return gridText(m_front_cells);
}

Console::Cell Console::cell(int x, int y) const {
  if (x < 0 || y < 0 || x >= m_columns || y >= m_rows) return m_blank;
  return m_back_cells[static_cast<std::size_t>(y * m_columns + x)];
}

std::string Console::gridText(const std::vector<Cell> &cells) const {
  std::string text;
  text.reserve(cells.size() + static_cast<std::size_t>(m_rows));
  for (int y = 0; y < m_rows; y++) {
    for (int x = 0; x < m_columns; x++)
      text += cells[static_cast<std::size_t>(y * m_columns + x)].ch;
    text += '\n';
  }
  return text;
}

bool operator==(const Console::Char &a, const Console::Char &b) {
  return a.x == b.x && a.y == b.y && a.angle == b.angle && a.ch == b.ch && a.r == b.r &&
         a.g == b.g && a.b == b.b;
}

}  // namespace qv
