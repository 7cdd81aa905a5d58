#ifndef QV_FRAME_H
#define QV_FRAME_H

#include <string>

#include "core/utility.h"
#include "world/Vector.h"

namespace qv {

// One picture of a sprite: a rectangle of characters stored row after row
// with no separators, so the character at column c, row r is at c + width * r.
class Frame {
 public:
  Frame();
  Frame(int width, int height, std::string frame_string);

  void setWidth(int width);
  void setHeight(int height);
  void setString(std::string frame_string);

  int getWidth() const;
  int getHeight() const;
  std::string getString() const;
  bool isEmpty() const;

  // Draws the frame centred on position, one drawChar per cell, mirrored by
  // transform (a Transform; unknown values draw as stored). Cells holding
  // the transparent character (when it is not 0) are skipped and keep what
  // is under them. Returns -1 at the first character that cannot be drawn.
  int draw(Vector position, Color color, char transparent, int transform) const;

 private:
  int m_width;              // 0: characters per row
  int m_height;             // 0: rows
  std::string m_frame_str;  // empty: an empty frame draws nothing
};

}  // namespace qv

#endif
