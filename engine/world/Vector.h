#ifndef QV_VECTOR_H
#define QV_VECTOR_H

#include <sstream>
#include <string>

namespace qv {

// A pair of floats: a position, extent or motion in character cells
// (x to the right, y downward).
class Vector {
 public:
  Vector();
  Vector(float x, float y);

  void setX(float x);
  void setY(float y);
  void setXY(float x, float y);
  float getX() const;
  float getY() const;

  float getMagnitude() const;
  // Scales to length 1; the zero vector stays zero.
  void normalize();
  void scale(float s);

  Vector operator+(const Vector &other) const;
  Vector operator-(const Vector &other) const;
  Vector &operator+=(const Vector &other);
  bool operator==(const Vector &other) const;
  bool operator!=(const Vector &other) const;

  // "(x,y)" with six significant digits.
  std::string toString() const;
  // x then y as little-endian IEEE-754 singles (8 bytes); 0 or -1.
  int serialize(std::stringstream *p_ss) const;
  int deserialize(std::stringstream *p_ss);

 private:
  float m_x;  // 0, cells to the right
  float m_y;  // 0, cells downward
};

// Raw little-endian IEEE-754 single, the unit of every record format. Reading
// refuses (fails the stream, after a log line) a value that is no number or
// beyond RECORD_FLOAT_MAX either side, leaving value as it was.
void writeFloat(std::ostream &out, float value);
void readFloat(std::istream &in, float &value);

}  // namespace qv

#endif
