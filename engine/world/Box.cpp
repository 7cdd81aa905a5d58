#include "world/Box.h"

#include "core/utility.h"

namespace qv {

Box::Box() : m_corner(), m_horizontal(0), m_vertical(0) {
}

Box::Box(Vector corner, float horizontal, float vertical)
    : m_corner(corner), m_horizontal(horizontal), m_vertical(vertical) {
}

void Box::setCorner(Vector corner) {
  m_corner = corner;
}
void Box::setHorizontal(float horizontal) {
  m_horizontal = horizontal;
}
void Box::setVertical(float vertical) {
  m_vertical = vertical;
}
Vector Box::getCorner() const {
  return m_corner;
}
float Box::getHorizontal() const {
  return m_horizontal;
}
float Box::getVertical() const {
  return m_vertical;
}

bool Box::operator==(const Box &other) const {
  return m_corner == other.m_corner && m_horizontal == other.m_horizontal &&
         m_vertical == other.m_vertical;
}

bool Box::operator!=(const Box &other) const {
  return !(*this == other);
}

std::string Box::toString() const {
  return m_corner.toString() + " h: " + qv::toString(m_horizontal) +
         " v: " + qv::toString(m_vertical);
}

int Box::serialize(std::stringstream *p_ss) const {
  writeFloat(*p_ss, m_corner.getX());
  writeFloat(*p_ss, m_corner.getY());
  writeFloat(*p_ss, m_horizontal);
  writeFloat(*p_ss, m_vertical);
  return checkStream("Box::serialize()", *p_ss);
}

int Box::deserialize(std::stringstream *p_ss) {
  // Read into locals so a short record leaves the box as it was.
  float x = 0, y = 0, horizontal = 0, vertical = 0;
  readFloat(*p_ss, x);
  readFloat(*p_ss, y);
  readFloat(*p_ss, horizontal);
  readFloat(*p_ss, vertical);
  if (checkStream("Box::deserialize()", *p_ss) != 0) return -1;
  m_corner.setXY(x, y);
  m_horizontal = horizontal;
  m_vertical = vertical;
  return 0;
}

}  // namespace qv
