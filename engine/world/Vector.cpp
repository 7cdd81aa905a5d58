#include "world/Vector.h"

#include <cmath>
#include <cstdint>
#include <cstring>

#include "core/LogManager.h"
#include "core/bounds.h"
#include "core/utility.h"

namespace qv {

namespace {

// In double precision: squaring a float can overflow where the length itself
// is far in range, and (1e20, 0) must still normalize to (1, 0).
double magnitude(float x, float y) {
  const double dx = x, dy = y;
  return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

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
  return static_cast<float>(magnitude(m_x, m_y));
}

void Vector::normalize() {
  const double length = magnitude(m_x, m_y);
  if (length > 0) {
    m_x = static_cast<float>(m_x / length);
    m_y = static_cast<float>(m_y / length);
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
  float read = 0;
  std::memcpy(&read, &bits, sizeof read);
  // No object has a coordinate, extent, speed or size that is no number or
  // past the bound: the record stops here as a short one would.
  if (!(std::fabs(read) <= RECORD_FLOAT_MAX)) {
    LogManager::getInstance().writeLog(
        "readFloat(): Error! Value %g out of range [%g, %g]; the record is refused.",
        static_cast<double>(read), static_cast<double>(-RECORD_FLOAT_MAX),
        static_cast<double>(RECORD_FLOAT_MAX));
    in.setstate(std::ios::failbit);
    return;
  }
  value = read;
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
