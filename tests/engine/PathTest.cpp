#include <gtest/gtest.h>

#include "EventPath.h"
#include "Path.h"

namespace {

qv::Path pathOf(std::vector<qv::Vector> nodes) {
  qv::Path path;
  path.setNodes(nodes);
  return path;
}

TEST(Path, EmptyPathIsDoneAndStaysDone) {
  qv::Path path;
  EXPECT_TRUE(path.isDone());
  EXPECT_EQ(path.getIndex(), 0);
  EXPECT_EQ(path.getCurrent(), qv::Vector(0, 0));
  path.advance();
  EXPECT_EQ(path.getIndex(), 0);
  EXPECT_EQ(path.toString(), "");
}

TEST(Path, AdvanceWalksToTheEndAndNoFurther) {
  qv::Path path = pathOf({qv::Vector(1, 2), qv::Vector(2, 2)});
  EXPECT_EQ(path.toString(), "(1,2)|(2,2)|");
  EXPECT_FALSE(path.isDone());
  EXPECT_EQ(path.getCurrent(), qv::Vector(1, 2));
  path.advance();
  EXPECT_EQ(path.getCurrent(), qv::Vector(2, 2));
  path.advance();
  EXPECT_TRUE(path.isDone());
  EXPECT_EQ(path.getCurrent(), qv::Vector(0, 0));
  path.advance();
  path.advance();
  EXPECT_EQ(path.getIndex(), 2);
  EXPECT_TRUE(path.isDone());
  // Fractional waypoints keep six significant digits in the text form.
  EXPECT_EQ(pathOf({qv::Vector(0.5f, -3.25f)}).toString(), "(0.5,-3.25)|");
}

TEST(Path, SetNodesKeepsTheIndex) {
  qv::Path path = pathOf({qv::Vector(1, 1), qv::Vector(2, 2), qv::Vector(3, 3)});
  path.advance();
  path.setNodes({qv::Vector(7, 7), qv::Vector(8, 8)});
  EXPECT_EQ(path.getIndex(), 1);
  EXPECT_EQ(path.getCurrent(), qv::Vector(8, 8));
  // A shorter list can leave the index at or past the end: done.
  path.advance();
  path.setNodes({qv::Vector(9, 9)});
  EXPECT_TRUE(path.isDone());
  EXPECT_EQ(path.getCurrent(), qv::Vector(0, 0));
  EXPECT_NE(path, pathOf({qv::Vector(9, 9)}));
}

TEST(EventPath, CarriesStatusAndPath) {
  qv::EventPath empty;
  EXPECT_EQ(empty.getType(), "qv-path");
  EXPECT_EQ(empty.getStatus(), qv::PATH_FAILED);
  EXPECT_EQ(empty.getPath().getNodeCount(), 0);

  const qv::Path path = pathOf({qv::Vector(0, 0), qv::Vector(1, 1)});
  qv::EventPath found(qv::PATH_FOUND, path);
  EXPECT_EQ(found.getType(), "qv-path");
  EXPECT_EQ(found.getStatus(), 2);
  EXPECT_EQ(found.getPath(), path);
  found.setStatus(qv::PATH_FAILED);
  found.setPath(qv::Path());
  EXPECT_EQ(found.getStatus(), 0);
  EXPECT_TRUE(found.getPath().isDone());
}

}  // namespace
