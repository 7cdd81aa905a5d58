#include "world/Vector.h"

#include <cmath>
#include <cstdint>
#include <cstring>

#include "core/utility.h"

namespace qv {

Vector::Vector() : m_x(0), m_y(0) {
}

Vector::Vector(float x, float y) : m_x(x), m_y(y) {
}

void Vector::setX(float x) {
  m_x = x;
}
void Vector::setY(float y) {
  m_y = y;
}
void Vector::setXY(float x, float y) {
  m_x = x;
  m_y = y;
}
float Vector::getX() const {
  return m_x;
}
float Vector::getY() const {
  return m_y;
}

float Vector::getMagnitude() const {
  return std::sqrt(m_x * m_x + m_y * m_y);
}

void Vector::normalize() {
  float length = getMagnitude();
  if (length > 0) {
    m_x /= length;
    m_y /= length;
  }
}

void Vector::scale(float s) {
  m_x *= s;
  m_y *= s;
}

Vector Vector::operator+(const Vector &other) const {
  return Vector(m_x + other.m_x, m_y + other.m_y);
}

Vector Vector::operator-(const Vector &other) const {
  return Vector(m_x - other.m_x, m_y - other.m_y);
}

Vector &Vector::operator+=(const Vector &other) {
  m_x += other.m_x;
  m_y += other.m_y;
  return *this;
}

bool Vector::operator==(const Vector &other) const {
  return m_x == other.m_x && m_y == other.m_y;
}

bool Vector::operator!=(const Vector &other) const {
  return !(*this == other);
}

std::string Vector::toString() const {
  return "(" + qv::toString(m_x) + "," + qv::toString(m_y) + ")";
}

void writeFloat(std::ostream &out, float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  char bytes[4];
  for (int i = 0; i < 4; i++) bytes[i] = static_cast<char>((bits >> (8 * i)) & 0xff);
  out.write(bytes, 4);
}

void readFloat(std::istream &in, float &value) {
  unsigned char bytes[4];
  if (!in.read(reinterpret_cast<char *>(bytes), 4)) return;
  std::uint32_t bits = 0;
  for (int i = 0; i < 4; i++) bits |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
  std::memcpy(&value, &bits, sizeof value);
}

int Vector::serialize(std::stringstream *p_ss) const {
  writeFloat(*p_ss, m_x);
  writeFloat(*p_ss, m_y);
  return checkStream("Vector::serialize()", *p_ss);
}

int Vector::deserialize(std::stringstream *p_ss) {
  // Read into locals so a short record leaves the vector as it was.
  float x = 0, y = 0;
  readFloat(*p_ss, x);
  readFloat(*p_ss, y);
  if (checkStream("Vector::deserialize()", *p_ss) != 0) return -1;
  setXY(x, y);
  return 0;
}

}  // namespace qv
