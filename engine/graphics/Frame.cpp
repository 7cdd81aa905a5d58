#include "graphics/Frame.h"

#include <utility>

#include "graphics/Animation.h"
#include "graphics/DisplayManager.h"

namespace qv {

Frame::Frame() : m_width(0), m_height(0) {
}

Frame::Frame(int width, int height, std::string frame_string)
    : m_width(width), m_height(height), m_frame_str(std::move(frame_string)) {
}

void Frame::setWidth(int width) {
  m_width = width;
}
void Frame::setHeight(int height) {
  m_height = height;
}
void Frame::setString(std::string frame_string) {
  m_frame_str = std::move(frame_string);
}

int Frame::getWidth() const {
  return m_width;
}
int Frame::getHeight() const {
  return m_height;
}
std::string Frame::getString() const {
  return m_frame_str;
}
bool Frame::isEmpty() const {
  return m_frame_str.empty();
}

int Frame::draw(Vector position, Color color, char transparent, int transform) const {
  if (m_frame_str.empty() || m_height < 1 || m_width < 1) return 0;

  const bool flip_rows = transform == VERTICAL || transform == BOTH;
  const bool flip_columns = transform == HORIZONTAL || transform == BOTH;
  // Centring: an odd width puts the middle column on position.x, an even
  // width sits on half cells.
  const float left = position.getX() - (m_width - 1) * 0.5f;
  const float top = position.getY() - (m_height - 1) * 0.5f;
  const std::size_t length = m_frame_str.size();
  DisplayManager &display = DisplayManager::getInstance();

  for (int y = 0; y < m_height; y++) {
    const int row = flip_rows ? m_height - 1 - y : y;
    for (int x = 0; x < m_width; x++) {
      const int column = flip_columns ? m_width - 1 - x : x;
      const std::size_t index = static_cast<std::size_t>(column) +
                                static_cast<std::size_t>(m_width) * static_cast<std::size_t>(row);
      // A string shorter than width x height leaves its missing cells undrawn.
      if (index >= length) continue;
      const char ch = m_frame_str[index];
      if (transparent != 0 && ch == transparent) continue;
      if (display.drawChar(Vector(left + x, top + y), ch, color, 0) != 0) return -1;
    }
  }
  return 0;
}

}  // namespace qv
