#include <gtest/gtest.h>

#include "path/EventPath.h"
#include "path/Path.h"

namespace {

qv::Path pathOf(std::vector<qv::Vector> nodes) {
  qv::Path path;
  path.setNodes(nodes);
  return path;
}

TEST(Path, AdvanceStopsAtTheEndAndADonePathHasNoCurrent) {
  qv::Path empty;
  EXPECT_TRUE(empty.isDone());
  EXPECT_EQ(empty.toString(), "");
  empty.advance();
  EXPECT_EQ(empty.getIndex(), 0);

  qv::Path path = pathOf({qv::Vector(1, 2), qv::Vector(2, 2)});
  EXPECT_EQ(path.toString(), "(1,2)|(2,2)|");
  EXPECT_EQ(path.getCurrent(), qv::Vector(1, 2));
  path.advance();
  EXPECT_EQ(path.getCurrent(), qv::Vector(2, 2));
  path.advance();
  path.advance();
  EXPECT_EQ(path.getIndex(), 2);
  EXPECT_TRUE(path.isDone());
  EXPECT_EQ(path.getCurrent(), qv::Vector(0, 0));
  EXPECT_EQ(pathOf({qv::Vector(0.5f, -3.25f)}).toString(), "(0.5,-3.25)|");
}

TEST(Path, SetNodesKeepsTheIndex) {
  qv::Path path = pathOf({qv::Vector(1, 1), qv::Vector(2, 2), qv::Vector(3, 3)});
  path.advance();
  path.setNodes({qv::Vector(7, 7), qv::Vector(8, 8)});
  EXPECT_EQ(path.getCurrent(), qv::Vector(8, 8));
  // A shorter list can leave the index at or past the end: done.
  path.advance();
  path.setNodes({qv::Vector(9, 9)});
  EXPECT_TRUE(path.isDone());
  EXPECT_NE(path, pathOf({qv::Vector(9, 9)}));

  qv::EventPath event;
  EXPECT_EQ(event.getType(), "qv-path");
  EXPECT_EQ(event.getStatus(), qv::PATH_FAILED);
  EXPECT_TRUE(event.getPath().isDone());
}

}  // namespace
