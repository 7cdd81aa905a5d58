#include <cstdlib>
#include <string>

#include "PathFixture.h"
#include "core/utility.h"
#include "path/EventPath.h"

namespace {

using qv::Vector;
using qvtest::PathFixture;
using qvtest::Probe;

class PathFindTest : public PathFixture {
 protected:
  // The path a full search finds for p_mover to goal ("none" without one),
  // then how many cells it closed.
  static std::string route(Probe *p_mover, Vector goal) {
    qv::PathFind search(p_mover, p_mover->getPosition(), goal);
    const bool found = finish(search) == qv::PATH_FOUND;
    return (found ? search.getPath().toString() : "none") + " " +
           std::to_string(search.getClosedCount());
  }
};

TEST(Path, AdvanceStopsAtTheEndAndSetNodesKeepsTheIndex) {
  qv::Path path;
  EXPECT_TRUE(path.isDone());
  EXPECT_EQ(path.toString(), "");
  path.advance();
  EXPECT_EQ(path.getIndex(), 0);
  path.setNodes({Vector(1, 2), Vector(0.5f, -3.25f), Vector(3, 3)});
  EXPECT_EQ(path.toString(), "(1,2)|(0.5,-3.25)|(3,3)|");
  EXPECT_EQ(path.getCurrent(), Vector(1, 2));
  path.advance();
  path.setNodes({Vector(7, 7), Vector(8, 8)});
  EXPECT_EQ(path.getCurrent(), Vector(8, 8));
  for (int i = 0; i < 3; i++) path.advance();
  EXPECT_EQ(path.getIndex(), 2);
  EXPECT_EQ(path.getCurrent(), Vector(0, 0));
  // A shorter list can leave the index at or past the end: done.
  path.setNodes({Vector(9, 9)});
  EXPECT_TRUE(path.isDone());
  qv::Path fresh;
  fresh.setNodes({Vector(9, 9)});
  EXPECT_NE(path, fresh);
}

TEST_F(PathFindTest, EmptyWorldGivesTheStraightDiagonal) {
  setWorld(10, 10);
  Probe *p_mover = new Probe(Vector(0, 0));
  qv::PathFind search(p_mover, p_mover->getPosition(), Vector(3, 3));
  EXPECT_EQ(search.getColumns(), 10);
  EXPECT_EQ(search.getRows(), 10);
  EXPECT_TRUE(search.getPath().isDone());  // nothing found yet

  int steps = 0;
  EXPECT_EQ(finish(search, &steps), qv::PATH_FOUND);
  EXPECT_EQ(steps, 4);  // one cell closed per step: (0,0), (1,1), (2,2), (3,3)
  EXPECT_EQ(search.getClosedCount(), 4);
  const qv::Path path = search.getPath();
  EXPECT_EQ(path.toString(), "(0,0)|(1,1)|(2,2)|(3,3)|");
  EXPECT_EQ(path.getIndex(), 0);
  // A finished search keeps its answer and does no further work.
  EXPECT_EQ(search.cycleOnce(), qv::PATH_FOUND);
  EXPECT_EQ(search.getClosedCount(), 4);
  EXPECT_EQ(search.getPath(), path);
}

TEST_F(PathFindTest, StartAndGoalRoundToTheNearestCell) {
  setWorld(10, 10);
  qv::PathFind search(nullptr, Vector(2.6f, 0.4f), Vector(2.5f, 7.49f));
  EXPECT_EQ(search.getStart(), Vector(3, 0));
  EXPECT_EQ(search.getGoal(), Vector(3, 7));

  qv::PathFind here(nullptr, Vector(4, 4), Vector(4, 4));
  EXPECT_EQ(here.cycleOnce(), qv::PATH_FOUND);
  EXPECT_EQ(here.getPath().toString(), "(4,4)|");
}

TEST_F(PathFindTest, EnclosedStartFailsOnItsFirstStep) {
  setWorld(10, 10);
  Probe *p_mover = new Probe(Vector(5, 5));
  surround(5, 5);
  qv::PathFind search(p_mover, p_mover->getPosition(), Vector(0, 0));
  EXPECT_EQ(search.cycleOnce(), qv::PATH_FAILED);
  EXPECT_EQ(search.getPath().getNodeCount(), 0);
  EXPECT_EQ(search.cycleOnce(), qv::PATH_FAILED);
}

TEST_F(PathFindTest, NoDiagonalSqueezeBetweenTwoBlockedCells) {
  setWorld(10, 10);
  Probe *p_mover = new Probe(Vector(5, 5));
  Probe *p_left = block(4, 5);
  EXPECT_EQ(route(p_mover, Vector(4, 4)), "(5,5)|(4,4)| 2");  // one blocked side is passed
  block(5, 4);
  EXPECT_EQ(route(p_mover, Vector(4, 4)), "(5,5)|(6,4)|(5,3)|(4,4)| 7");
  p_left->setSolidness(qv::SOFT);  // SOFT objects never block
  EXPECT_EQ(route(p_mover, Vector(4, 4)), "(5,5)|(4,4)| 2");
}

TEST_F(PathFindTest, HardUnitOnTheGoalCanBeReachedOthersBlock) {
  setWorld(12, 5);
  Probe *p_mover = new Probe(Vector(1, 2));
  block(6, 2);  // the unit standing on the goal
  EXPECT_EQ(route(p_mover, Vector(6, 2)), "(1,2)|(2,2)|(3,2)|(4,2)|(5,2)|(6,2)| 6");
  // The same unit is an obstacle for a search that only passes it.
  EXPECT_EQ(route(p_mover, Vector(10, 2)),
            "(1,2)|(2,1)|(3,1)|(4,1)|(5,1)|(6,1)|(7,1)|(8,1)|(9,1)|(10,2)| 21");
}

TEST_F(PathFindTest, EqualDetoursPreferTheLaterFoundCells) {
  // A wall straight across the line from start to goal: going over or under
  // costs the same, and the cells below are found after those above.
  setWorld(11, 11);
  Probe *p_mover = new Probe(Vector(2, 5));
  for (int y = 3; y <= 7; y++) block(5, y);
  EXPECT_EQ(route(p_mover, Vector(8, 5)), "(2,5)|(3,6)|(4,7)|(5,8)|(6,7)|(7,6)|(8,5)| 20");
}

TEST_F(PathFindTest, TargetIsReachedWhereTheBoxesTouch) {
  setWorld(12, 12);
  Probe *p_mover = new Probe(Vector(1, 1));
  Probe *p_target = block(7, 7);
  p_target->setBox(qv::Box(Vector(-1.5f, -1.5f), 3, 3));  // covers 5.5 .. 8.5
  qv::PathFind search(p_mover, p_mover->getPosition(), p_target->getPosition(), p_target);
  EXPECT_EQ(search.getTarget(), p_target);
  EXPECT_EQ(finish(search), qv::PATH_FOUND);
  EXPECT_EQ(search.getGoal(), Vector(6, 6));
  EXPECT_EQ(search.getPath().toString(), "(1,1)|(2,2)|(3,3)|(4,4)|(5,5)|(6,6)|");
}

TEST_F(PathFindTest, BlockedCellsMatchTheWorldsCollisionList) {
  // Objects of several sizes over grid cell borders and beyond the world's
  // edge, compared cell by cell with the first HARD object of getCollisions.
  setWorld(44, 20);
  std::srand(7);
  for (int i = 0; i < 40; i++) {
    Probe *p_o = block(std::rand() % 50 - 3, std::rand() % 26 - 3,
                       static_cast<qv::Solidness>(std::rand() % 3));
    const float w = 0.5f + static_cast<float>(std::rand() % 5);
    const float h = 0.5f + static_cast<float>(std::rand() % 4);
    p_o->setBox(qv::Box(Vector(-w / 2, -h / 2), w, h));
  }
  Probe *p_goal_unit = block(21, 8);
  p_goal_unit->setBox(qv::Box(Vector(-2, -2), 4, 4));
  for (const float size : {0.99f, 3.0f}) {
    Probe *p_mover = new Probe(Vector(2, 2));
    p_mover->setBox(qv::Box(Vector(-size / 2, -size / 2), size, size));
    qv::PathFind search(p_mover, p_mover->getPosition(), Vector(21, 8));
    int blocked = 0;
    for (int y = 0; y < 20; y++)
      for (int x = 0; x < 44; x++) {
        bool expected = false;
        const qv::ObjectList hits = qv::WorldManager::getInstance().getCollisions(
            p_mover, Vector(static_cast<float>(x), static_cast<float>(y)));
        for (int k = 0; k < hits.getCount(); k++)
          if (hits[k]->getSolidness() == qv::HARD) {
            expected = !qv::boxContainsPosition(qv::getWorldBox(hits[k]), Vector(21, 8));
            break;
          }
        ASSERT_EQ(search.isBlocked(x, y), expected) << "cell " << x << "," << y << " size " << size;
        blocked += expected;
      }
    EXPECT_GT(blocked, 40);  // the scene really is crowded
    qv::WorldManager::getInstance().markForDelete(p_mover);
    qv::WorldManager::getInstance().update();
  }
}

TEST_F(PathFindTest, WithoutANodeGraphEveryStepFails) {
  setWorld(0, 0);
  qv::PathFind search(nullptr, Vector(0, 0), Vector(1, 1));
  EXPECT_FALSE(search.isAllocated());
  EXPECT_EQ(search.cycleOnce(), qv::PATH_FAILED);
  EXPECT_EQ(log->count("PathFind::cycleOnce(): node graph not allocated.  Cannot find path."), 1);

  setWorld(5, 5);
  qv::PathFind outside(nullptr, Vector(-3, 2), Vector(1, 1));
  EXPECT_EQ(outside.cycleOnce(), qv::PATH_FAILED);
  EXPECT_TRUE(log->contains(
      "PathFind::cycleOnce(): Warning! start cell (-3,2) outside the world; no path."));
}

}  // namespace
