#include "graphics/Shape.h"

#include <SFML/Graphics/CircleShape.hpp>
#include <SFML/Graphics/RenderWindow.hpp>
#include <algorithm>
#include <cstdio>

#include "core/Config.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"

namespace qv {

namespace {

// One figure serves every shape: each draw reconfigures it, so drawing
// allocates nothing.
sf::CircleShape &sharedFigure() {
  static sf::CircleShape figure(0.0f, 30);
  return figure;
}

float fontScale() {
  return Config::getInstance().getFontScale();
}

}  // namespace

std::string shapeTypeToString(int type) {
  switch (type) {
    case UNDEFINED:
      return "undefined";
    case CIRCLE:
      return "circle";
    case SQUARE:
      return "square";
    case TRIANGLE:
      return "triangle";
    default:
      return "unknown";
  }
}

Shape::Shape()
    : m_color(WHITE),
      m_r(0),
      m_g(0),
      m_b(0),
      m_type(CIRCLE),
      m_size(fontScale() * static_cast<int>(std::min(charWidth(), charHeight()))),
      m_alpha(255) {
}

void Shape::setType(int new_type) {
  if (new_type < UNDEFINED || new_type > TRIANGLE) {
    LogManager::getInstance().writeLog("Shape::setType(): Unknown shape type %d. Ignoring.",
                                       new_type);
    return;
  }
  m_type = new_type;
}

void Shape::setColor(Color new_color) {
  m_color = new_color;
}
void Shape::setR(unsigned char new_r) {
  m_r = new_r;
}
void Shape::setG(unsigned char new_g) {
  m_g = new_g;
}
void Shape::setB(unsigned char new_b) {
  m_b = new_b;
}
void Shape::setSize(float new_size) {
  m_size = new_size;
}
void Shape::setAlpha(unsigned char new_alpha) {
  m_alpha = new_alpha;
}

int Shape::getType() const {
  return m_type;
}
Color Shape::getColor() const {
  return m_color;
}
unsigned char Shape::getR() const {
  return m_r;
}
unsigned char Shape::getG() const {
  return m_g;
}
unsigned char Shape::getB() const {
  return m_b;
}
float Shape::getSize() const {
  return m_size;
}
unsigned char Shape::getAlpha() const {
  return m_alpha;
}

ShapeFigure Shape::figure(Vector pixel) const {
  ShapeFigure f{
      3,   m_size * 0.5f, 0.0f, Vector(pixel.getX() - m_size * 0.5f, pixel.getY() - m_size * 0.5f),
      m_r, m_g,           m_b,  m_alpha};
  switch (m_type) {
    case CIRCLE:
      f.points = m_size < 3 ? 3 : m_size > 10 ? 10 : static_cast<int>(m_size);
      f.radius = m_size;
      break;
    case SQUARE:
      f.points = 4;
      f.radius = m_size / fontScale();
      f.rotation = 45.0f;
      f.position = Vector(pixel.getX() + m_size * 0.5f, pixel.getY() - m_size / 1.75f);
      break;
    default:  // TRIANGLE
      break;
  }
  return f;
}

void Shape::draw(Vector world_pos) {
  LogManager &log = LogManager::getInstance();
  sf::RenderWindow *p_window = DisplayManager::getInstance().getWindow();
  if (!p_window) {
    log.writeLog(5, "Shape::draw(): DisplayManager window not defined.");
    return;
  }
  if (m_type == UNDEFINED) return;
  const Vector pixel = spacesToPixels(worldToView(world_pos));
  if (m_color != CUSTOM) colorToRGB(m_color, m_r, m_g, m_b);

  const ShapeFigure f = figure(pixel);
  sf::CircleShape &shape = sharedFigure();
  shape.setPointCount(static_cast<std::size_t>(f.points));
  shape.setRadius(f.radius);
  shape.setRotation(f.rotation);
  shape.setPosition(f.position.getX(), f.position.getY());
  shape.setFillColor(sf::Color(f.r, f.g, f.b, f.a));
  log.writeLog(25, "Shape::draw(): Drawing at (%.2f, %.2f)", pixel.getX(), pixel.getY());
  p_window->draw(shape);
}

std::string Shape::toString() const {
  char size[64];
  std::snprintf(size, sizeof size, "%f", m_size);
  return shapeTypeToString(m_type) + ", size " + size + ", " + colorToString(m_color) + ", " +
         std::to_string(static_cast<int>(m_alpha));
}

int Shape::serialize(std::stringstream *p_ss) const {
  writeInt(*p_ss, m_type);
  writeFloat(*p_ss, m_size);
  writeInt(*p_ss, m_color);
  p_ss->put(static_cast<char>(m_alpha));
  return checkStream("Shape::serialize()", *p_ss);
}

int Shape::deserialize(std::stringstream *p_ss) {
  int type = UNDEFINED, color = WHITE;
  float size = 0;
  char alpha = 0;
  readInt(*p_ss, type);
  readFloat(*p_ss, size);
  readInt(*p_ss, color);
  p_ss->get(alpha);
  if (checkStream("Shape::deserialize()", *p_ss) != 0) return -1;
  // readFloat has refused a size that is no number; an unknown figure or
  // colour, or a negative size, is still none a shape can have.
  const char *where = "Shape::deserialize()";
  if (!recordValueInRange(*p_ss, where, "Shape type", type, UNDEFINED, TRIANGLE) ||
      !recordValueInRange(*p_ss, where, "Color", color, BLACK, CUSTOM))
    return -1;
  if (size < 0) {
    LogManager::getInstance().writeLog(
        "Shape::deserialize(): Error! Size %g is negative; the record is refused.",
        static_cast<double>(size));
    p_ss->setstate(std::ios::failbit);
    return -1;
  }
  setType(type);
  setSize(size);
  setColor(static_cast<Color>(color));
  setAlpha(static_cast<unsigned char>(alpha));
  return 0;
}

}  // namespace qv
