#include <gtest/gtest.h>

#include "world/Box.h"
#include "world/Vector.h"

using qv::Vector;

TEST(VectorTest, ArithmeticNormalizationAndText) {
  Vector v;
  v.normalize();
  EXPECT_EQ(v, Vector(0, 0));
  Vector w(3, 4);
  EXPECT_FLOAT_EQ(w.getMagnitude(), 5.0f);
  w.normalize();
  EXPECT_FLOAT_EQ(w.getX(), 0.6f);
  EXPECT_FLOAT_EQ(w.getY(), 0.8f);
  w.setXY(1, -2);
  w.scale(-2);
  EXPECT_EQ(w, Vector(-2, 4));
  EXPECT_EQ(w + Vector(1, 1), Vector(-1, 5));
  EXPECT_EQ(w - Vector(1, 1), Vector(-3, 3));
  w += Vector(0.5f, 0.5f);
  EXPECT_EQ(w, Vector(-1.5f, 4.5f));
  EXPECT_TRUE(w != Vector(-1.5f, 4.25f));
  // Six significant digits, no trailing zeros.
  EXPECT_EQ(Vector(1, 1).toString() + Vector(0.5f, -2).toString() + Vector(3, 4.5f).toString() +
                Vector(1.0f / 3.0f, 0).toString(),
            "(1,1)(0.5,-2)(3,4.5)(0.333333,0)");
}

TEST(BoxTest, EqualityAndText) {
  const qv::Box box(Vector(-0.5f, -0.5f), 0.99f, 0.99f);
  EXPECT_TRUE(box == qv::Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  EXPECT_TRUE(box != qv::Box(Vector(-0.5f, -0.5f), 0.99f, 1));
  EXPECT_TRUE(box != qv::Box(Vector(-0.5f, -0.5f), 1, 0.99f));
  EXPECT_EQ(box.toString(), "(-0.5,-0.5) h: 0.99 v: 0.99");
}
