#include <gtest/gtest.h>

#include <cmath>

#include "world/Box.h"
#include "world/Vector.h"

namespace {

using qv::Vector;

TEST(VectorTest, ArithmeticNormalizationAndText) {
  Vector v, w(3, 4), huge(1e20f, 0), vast(-2e38f, 2e38f);
  EXPECT_FLOAT_EQ(w.getMagnitude(), 5.0f);
  EXPECT_TRUE(std::isfinite(vast.getMagnitude()));
  for (Vector *p : {&v, &w, &huge, &vast}) p->normalize();
  // Six significant digits, no trailing zeros.
  EXPECT_EQ(v.toString() + w.toString() + huge.toString() + vast.toString(),
            "(0,0)(0.6,0.8)(1,0)(-0.707107,0.707107)");
  w.setXY(1, -2);
  w.scale(-2);
  w += Vector(0.5f, 0.5f);
  EXPECT_EQ((w + Vector(1, 1)).toString() + (w - Vector(1, 1)).toString(), "(-0.5,5.5)(-2.5,3.5)");
  EXPECT_TRUE(w == Vector(-1.5f, 4.5f) && w != Vector(-1.5f, 4.25f));
  const qv::Box box(Vector(-0.5f, -0.5f), 0.99f, 0.99f);
  EXPECT_TRUE(box == qv::Box(Vector(-0.5f, -0.5f), 0.99f, 0.99f));
  EXPECT_TRUE(box != qv::Box(Vector(-0.5f, -0.5f), 0.99f, 1));
  EXPECT_TRUE(box != qv::Box(Vector(-0.5f, -0.5f), 1, 0.99f));
  EXPECT_EQ(box.toString(), "(-0.5,-0.5) h: 0.99 v: 0.99");
}

}  // namespace
