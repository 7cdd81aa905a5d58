#ifndef QV_SHAPE_H
#define QV_SHAPE_H

#include <sstream>
#include <string>

#include "core/utility.h"
#include "world/Vector.h"

namespace qv {

enum ShapeType : int {
  UNDEFINED = -1,  // no figure: the object shows only its sprite
  CIRCLE = 0,      // a regular polygon of 3 to 10 corners, by size
  SQUARE = 1,      // a 4-corner polygon standing on a corner
  TRIANGLE = 2,    // a 3-corner polygon pointing up
};

// "undefined", "circle", "square", "triangle"; "unknown" for other values.
std::string shapeTypeToString(int type);

// How one draw configures the shared figure: what a Shape asks SFML to draw,
// in window pixels. Kept as plain data so the geometry can be checked
// without a window.
struct ShapeFigure {
  int points;                // corners of the polygon
  float radius;              // pixels
  float rotation;            // degrees, clockwise
  Vector position;           // top-left of the figure's bounding box, pixels
  unsigned char r, g, b, a;  // fill colour
};

// A filled geometric figure an object can show besides its sprite. It is not
// made of characters: it is drawn in window pixels at the object's position.
// Every Shape draws through one SFML figure that lives in Shape.cpp, so
// drawing allocates nothing.
class Shape {
 public:
  // A white circle, size font_scale x (smaller cell side in whole pixels),
  // read from the configuration and the display when the shape is made.
  Shape();

  // -1 .. 2; anything else is logged and ignored.
  void setType(int new_type);
  void setColor(Color new_color);
  // The components are used as given only while the colour is CUSTOM; any
  // other colour overwrites them at the next draw.
  void setR(unsigned char new_r);
  void setG(unsigned char new_g);
  void setB(unsigned char new_b);
  void setSize(float new_size);
  void setAlpha(unsigned char new_alpha);

  int getType() const;
  Color getColor() const;
  unsigned char getR() const;
  unsigned char getG() const;
  unsigned char getB() const;
  float getSize() const;
  unsigned char getAlpha() const;

  // Draws the figure centred near a world position into the display's window;
  // without a window only logs (level 5).
  void draw(Vector world_pos);

  // The figure this shape makes at a pixel position, with the colour
  // components as they stand. Every type sets its own rotation, so a figure
  // never inherits the square's 45 degrees from an earlier draw.
  ShapeFigure figure(Vector pixel) const;

  // "<type>, size <%f>, <colour name>, <alpha>"
  std::string toString() const;

  // Type, size, colour and alpha. 0, or -1 for a bad stream.
  int serialize(std::stringstream *p_ss) const;
  int deserialize(std::stringstream *p_ss);

 private:
  Color m_color;          // WHITE; CUSTOM: use r, g, b as they are
  unsigned char m_r;      // 0, overwritten from color at each draw unless CUSTOM
  unsigned char m_g;      // 0
  unsigned char m_b;      // 0
  int m_type;             // CIRCLE, a ShapeType
  float m_size;           // pixels, from font scale and cell size
  unsigned char m_alpha;  // 255: opaque
};

}  // namespace qv

#endif
