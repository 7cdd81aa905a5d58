#include "graphics/Sprite.h"

#include <exception>
#include <utility>

#include "core/LogManager.h"

namespace qv {

Sprite::Sprite(int max_frames)
    : m_width(0),
      m_height(0),
      m_max_frame_count(0),
      m_frame_count(0),
      m_color(WHITE),
      m_slowdown(1),
      m_transparency(0),
      m_label("[Undefined]") {
  // A capacity that cannot be had leaves an empty sprite rather than
  // bringing the program down: the sprite then refuses every frame.
  bool allocated = false;
  if (max_frames >= 0) {
    try {
      m_frame.resize(static_cast<std::size_t>(max_frames));
      allocated = true;
    } catch (const std::exception &) {
    }
  }
  if (allocated)
    m_max_frame_count = max_frames;
  else
    LogManager::getInstance().writeLog("Sprite::Sprite(): Error! Unable to allocate %d frames.",
                                       max_frames);
}

Sprite::~Sprite() = default;

int Sprite::addFrame(Frame new_frame) {
  if (m_frame_count >= m_max_frame_count) return -1;
  m_frame[static_cast<std::size_t>(m_frame_count)] = std::move(new_frame);
  m_frame_count++;
  return 0;
}

void Sprite::setWidth(int width) {
  m_width = width;
}
void Sprite::setHeight(int height) {
  m_height = height;
}
void Sprite::setColor(Color color) {
  m_color = color;
}
void Sprite::setSlowdown(int slowdown) {
  m_slowdown = slowdown;
}
void Sprite::setTransparency(char transparency) {
  m_transparency = transparency;
}
void Sprite::setLabel(std::string label) {
  m_label = std::move(label);
}

int Sprite::getWidth() const {
  return m_width;
}
int Sprite::getHeight() const {
  return m_height;
}
Color Sprite::getColor() const {
  return m_color;
}
int Sprite::getSlowdown() const {
  return m_slowdown;
}
char Sprite::getTransparency() const {
  return m_transparency;
}
std::string Sprite::getLabel() const {
  return m_label;
}
int Sprite::getFrameCount() const {
  return m_frame_count;
}
int Sprite::getMaxFrameCount() const {
  return m_max_frame_count;
}

Frame Sprite::getFrame(int index) const {
  if (index < 0 || index >= m_frame_count) return Frame();
  return m_frame[static_cast<std::size_t>(index)];
}

int Sprite::draw(int index, Vector position, char transparent, int transform) const {
  // Drawn in place rather than through getFrame's copy: this runs for every
  // visible object every frame.
  if (index < 0 || index >= m_frame_count) return 0;
  return m_frame[static_cast<std::size_t>(index)].draw(position, m_color, transparent, transform);
}

}  // namespace qv
