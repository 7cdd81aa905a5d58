#ifndef QV_BOX_H
#define QV_BOX_H

#include <sstream>
#include <string>

#include "world/Vector.h"

namespace qv {

// An axis-aligned rectangle: top-left corner and extents in cells. Both
// edges belong to the box.
class Box {
 public:
  Box();
  Box(Vector corner, float horizontal, float vertical);

  void setCorner(Vector corner);
  void setHorizontal(float horizontal);
  void setVertical(float vertical);
  Vector getCorner() const;
  float getHorizontal() const;
  float getVertical() const;

  bool operator==(const Box &other) const;
  bool operator!=(const Box &other) const;

  // "(x,y) h: H v: V".
  std::string toString() const;
  // Corner, horizontal, vertical as little-endian singles (16 bytes); 0 or -1.
  int serialize(std::stringstream *p_ss) const;
  int deserialize(std::stringstream *p_ss);

 private:
  Vector m_corner;     // (0,0), top-left
  float m_horizontal;  // 0, width in cells
  float m_vertical;    // 0, height in cells
};

}  // namespace qv

#endif
