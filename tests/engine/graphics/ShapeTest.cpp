#include "DisplayFixture.h"
#include "core/LogManager.h"
#include "graphics/Shape.h"
#include "world/Object.h"

using qv::Shape;
using qv::Vector;

namespace {

class ShapeTest : public qvtest::EngineFixture {};
class ShapeWindowTest : public qvtest::EngineWindowFixture {};

// The figure a shape of the type and size makes at pixel (100, 50), as text.
std::string figureOf(int type, float size) {
  Shape shape;
  shape.setType(type);
  shape.setSize(size);
  const qv::ShapeFigure f = shape.figure(Vector(100, 50));
  return std::to_string(f.points) + " points, radius " + qv::toString(f.radius) + ", turned " +
         qv::toString(f.rotation) + ", at " + f.position.toString();
}

}  // namespace

TEST_F(ShapeTest, TypesDescriptionFiguresAndHeadlessDraw) {
  Shape shape;
  // Font scale 2.0 times the smaller cell side (12.8 x 32 pixels) in whole pixels.
  EXPECT_EQ(shape.toString(), "circle, size 24.000000, White, 255");
  shape.setType(qv::TRIANGLE);
  shape.setType(3);
  shape.setType(-2);
  EXPECT_EQ(shape.getType(), qv::TRIANGLE);
  EXPECT_TRUE(log->contains("Shape::setType(): Unknown shape type 3. Ignoring.") &&
              log->contains("Shape::setType(): Unknown shape type -2. Ignoring."));
  EXPECT_EQ(qv::shapeTypeToString(qv::SQUARE) + qv::shapeTypeToString(9), "squareunknown");

  // A circle has 3 to 10 corners by its size; a square's radius is its size
  // over the font scale, and it stands turned on a corner.
  EXPECT_EQ(figureOf(qv::CIRCLE, 2), "3 points, radius 2, turned 0, at (99,49)");
  EXPECT_EQ(figureOf(qv::CIRCLE, 7.9f), "7 points, radius 7.9, turned 0, at (96.05,46.05)");
  EXPECT_EQ(figureOf(qv::CIRCLE, 25), "10 points, radius 25, turned 0, at (87.5,37.5)");
  EXPECT_EQ(figureOf(qv::SQUARE, 28), "4 points, radius 14, turned 45, at (114,34)");
  EXPECT_EQ(figureOf(qv::TRIANGLE, 28), "3 points, radius 14, turned 0, at (86,36)");

  qv::LogManager::getInstance().setLogLevel(5);
  shape.draw(Vector(10, 5));
  EXPECT_EQ(log->count("Shape::draw(): DisplayManager window not defined."), 1);
}

TEST_F(ShapeWindowTest, DrawnInPixelsAroundThePosition) {
  // An object shows a shape only once given one: a circle of radius 24 whose
  // box starts 12 pixels up and left of the position's pixel (128, 160).
  auto *p_o = new qv::Object;
  p_o->setPosition(Vector(10, 5));
  p_o->draw();
  EXPECT_EQ(qvtest::grabWindow().getPixel(140, 172), sf::Color::Black);
  Shape shape;
  shape.setColor(qv::GREEN);
  p_o->setShape(shape);
  p_o->draw();
  EXPECT_EQ(qvtest::grabWindow().getPixel(140, 172), sf::Color::Green);
  // CUSTOM keeps the components it was given; any other colour replaces them.
  shape.setColor(qv::CUSTOM);
  shape.setR(10);
  shape.setG(200);
  shape.setB(30);
  shape.draw(Vector(40, 12));
  EXPECT_EQ(qvtest::grabWindow().getPixel(524, 396), sf::Color(10, 200, 30));
  shape.setColor(qv::BLUE);
  shape.draw(Vector(40, 12));
  EXPECT_EQ(qvtest::grabWindow().getPixel(524, 396), sf::Color::Blue);
  qv::DisplayManager::getInstance().swapBuffers();

  // A square stands on a corner: turned 45 degrees, its corners make an
  // upright square around pixel (268, 195). A triangle drawn after it is not
  // turned: its apex stays above pixel (512, 384).
  Shape square, triangle;
  square.setType(qv::SQUARE);
  triangle.setType(qv::TRIANGLE);
  square.draw(Vector(20, 6));
  triangle.draw(Vector(40, 12));
  const sf::Image image = qvtest::grabWindow();
  EXPECT_EQ(image.getPixel(261, 188), sf::Color::White);
  EXPECT_EQ(image.getPixel(512, 380), sf::Color::White);
}
