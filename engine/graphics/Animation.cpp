#include "graphics/Animation.h"

#include <sstream>

#include "core/LogManager.h"
#include "core/bounds.h"
#include "core/utility.h"
#include "graphics/Sprite.h"

namespace qv {

Animation::Animation() : m_p_sprite(nullptr), m_index(0), m_slowdown_count(0), m_transform(NONE) {
}

void Animation::setSprite(Sprite *p_new_sprite) {
  if (p_new_sprite) m_name = p_new_sprite->getLabel();
  m_p_sprite = p_new_sprite;
  m_index = 0;
  m_slowdown_count = 0;
}

void Animation::setIndex(int new_index) {
  m_index = new_index;
}
void Animation::setSlowdownCount(int new_slowdown_count) {
  m_slowdown_count = new_slowdown_count;
}
void Animation::setTransform(int new_transform) {
  m_transform = new_transform;
}

Sprite *Animation::getSprite() const {
  return m_p_sprite;
}
std::string Animation::getName() const {
  return m_name;
}
int Animation::getIndex() const {
  return m_index;
}
int Animation::getSlowdownCount() const {
  return m_slowdown_count;
}
int Animation::getTransform() const {
  return m_transform;
}

int Animation::draw(Vector position) {
  if (!m_p_sprite) return 0;
  const int result =
      m_p_sprite->draw(m_index, position, m_p_sprite->getTransparency(), m_transform);
  if (m_slowdown_count == -1) return result;
  // Step after drawing, so the first frame drawn after setSprite is frame 0.
  m_slowdown_count++;
  if (m_slowdown_count < m_p_sprite->getSlowdown()) return result;
  m_slowdown_count = 0;
  m_index++;
  if (m_index < m_p_sprite->getFrameCount()) return result;
  m_index = 0;
  return result;
}

Box Animation::getBox() const {
  if (!m_p_sprite) return Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f);
  const float width = static_cast<float>(m_p_sprite->getWidth());
  const float height = static_cast<float>(m_p_sprite->getHeight());
  return Box(Vector(width * -1.0f * 0.5f, height * -1.0f * 0.5f), width, height);
}

std::string Animation::toString() const {
  return "sprite " + m_name + ", frame_idx " + qv::toString(m_index) + ", slowdown_count " +
         qv::toString(m_slowdown_count) + ", transform " +
         transformToString(static_cast<Transform>(m_transform));
}

int Animation::serialize(std::stringstream *p_ss) const {
  writeString(*p_ss, m_name);
  writeInt(*p_ss, m_index);
  writeInt(*p_ss, m_slowdown_count);
  writeInt(*p_ss, m_transform);
  return checkStream("Animation::serialize()", *p_ss);
}

int Animation::deserialize(std::stringstream *p_ss) {
  std::string name;
  std::uint64_t length = 0;
  if (readString(*p_ss, name, length) == -2) {
    LogManager::getInstance().writeLog("Animation::deserialize(): Error! Cannot allocate %d bytes.",
                                       static_cast<int>(length));
    return -1;
  }
  int index = 0, slowdown_count = 0, transform = NONE;
  readInt(*p_ss, index);
  readInt(*p_ss, slowdown_count);
  readInt(*p_ss, transform);
  if (checkStream("Animation::deserialize()", *p_ss) != 0) return -1;
  // Counters at the top of int's range would step past it when drawn.
  const char *where = "Animation::deserialize()";
  if (!recordValueInRange(*p_ss, where, "Frame index", index, 0, SPRITE_FRAMES_MAX - 1) ||
      !recordValueInRange(*p_ss, where, "Slowdown count", slowdown_count, -1,
                          SPRITE_SLOWDOWN_MAX) ||
      !recordValueInRange(*p_ss, where, "Transform", transform, NONE, BOTH))
    return -1;
  // A sprite of another name no longer belongs to this animation.
  if (name != m_name) m_p_sprite = nullptr;
  m_name = name;
  m_index = index;
  m_slowdown_count = slowdown_count;
  m_transform = transform;
  return 0;
}

}  // namespace qv
