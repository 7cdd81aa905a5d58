#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "EngineFixture.h"
#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/utility.h"
#include "path/EventPath.h"
#include "path/PathFind.h"
#include "path/PathManager.h"

namespace {

using qv::Vector;
using qvtest::Probe;
using Lines = std::vector<std::string>;

// The world fixture plus a started path manager, in a world whose size each
// test picks before creating objects.
class PathTest : public qvtest::WorldFixture {
 protected:
  void SetUp() override {
    WorldFixture::SetUp();
    ASSERT_EQ(paths.startUp(), 0);
  }
  void TearDown() override {
    if (paths.isStarted()) paths.shutDown();
    // The world deletes what is left; each object delists its own search.
    WorldFixture::TearDown();
    EXPECT_EQ(paths.getSearchCount(), 0);
  }
  // A one-cell object at (x, y).
  Probe *block(int x, int y, qv::Solidness solidness = qv::HARD) {
    Probe *p_o = new Probe(Vector(float(x), float(y)));
    p_o->setSolidness(solidness);
    return p_o;
  }
  // The path a full search finds from start to goal ("none" without one),
  // then how many cells it closed.
  static std::string route(Probe *p_mover, Vector goal, qv::Object *p_target = nullptr) {
    qv::PathFind search(p_mover, p_mover->getPosition(), goal, p_target);
    int result = qv::PATH_SEARCHING, steps = 0;
    for (; result == qv::PATH_SEARCHING && steps < 100000; steps++) result = search.cycleOnce();
    EXPECT_EQ(search.cycleOnce(), result);  // a finished search keeps its answer
    return (result == qv::PATH_FOUND ? search.getPath().toString() : "none") + " " +
           std::to_string(search.getClosedCount());
  }
  // A probe that notes each path event as "name status path", then lets the
  // base handler follow the path and release the search.
  Probe *walker(const std::string &name, Vector where) {
    Probe *p_o = new Probe(where);
    p_o->on_event = [this, p_o, name](const qv::Event *p_e) {
      if (const auto *p_path = dynamic_cast<const qv::EventPath *>(p_e))
        heard.push_back(name + " " + std::to_string(p_path->getStatus()) + " " +
                        p_path->getPath().toString());
      return p_o->qv::Object::eventHandler(p_e);
    };
    return p_o;
  }
  // Cycles until no search is left (or the tries run out).
  void drain(int tries = 100) {
    while (paths.getSearchCount() > 0 && tries-- > 0) paths.cycle(5);
  }
  qv::PathManager &paths = qv::PathManager::getInstance();
  Lines heard;
};

TEST(Path, AdvanceStopsAtTheEndAndSetNodesKeepsTheIndex) {
  qv::Path path;
  path.advance();
  EXPECT_TRUE(path.isDone() && path.getIndex() == 0 && path.toString().empty());
  path.setNodes({Vector(1, 2)});
  path.advance();
  path.setNodes({Vector(7, 7), Vector(8, 8)});
  EXPECT_EQ(path.getCurrent(), Vector(8, 8));
  for (int i = 0; i < 3; i++) path.advance();
  EXPECT_EQ(path.getCurrent().toString() + std::to_string(path.getIndex()), "(0,0)2");
}

TEST_F(PathTest, SearchesGoAroundHardObjectsAndNeverSqueezeDiagonally) {
  const struct {
    float width, height;
    Vector from, to;
    const char *blocks;  // hard objects at "x,y", soft ones at "sx,y"
    const char *route;
  } cases[] = {
      {10, 10, Vector(0, 0), Vector(3, 3), "", "(0,0)|(1,1)|(2,2)|(3,3)| 4"},
      {10, 10, Vector(4, 4), Vector(4, 4), "", "(4,4)| 1"},
      {10, 10, Vector(5, 5), Vector(4, 4), "4,5", "(5,5)|(4,4)| 2"},
      {10, 10, Vector(5, 5), Vector(4, 4), "4,5 5,4", "(5,5)|(6,4)|(5,3)|(4,4)| 7"},
      {10, 10, Vector(5, 5), Vector(4, 4), "s4,5 5,4", "(5,5)|(4,4)| 2"},
      {10, 10, Vector(5, 5), Vector(0, 0), "4,4 5,4 6,4 4,5 6,5 4,6 5,6 6,6", "none 1"},
      // A HARD unit on the goal can be reached; passing it, it blocks.
      {12, 5, Vector(1, 2), Vector(6, 2), "6,2", "(1,2)|(2,2)|(3,2)|(4,2)|(5,2)|(6,2)| 6"},
      {12, 5, Vector(1, 2), Vector(10, 2), "6,2",
       "(1,2)|(2,1)|(3,1)|(4,1)|(5,1)|(6,1)|(7,1)|(8,1)|(9,1)|(10,2)| 21"},
      // Over or under a wall costs the same; the cells below are found later, and win.
      {11, 11, Vector(2, 5), Vector(8, 5), "5,3 5,4 5,5 5,6 5,7",
       "(2,5)|(3,6)|(4,7)|(5,8)|(6,7)|(7,6)|(8,5)| 20"},
  };
  for (const auto &c : cases) {
    world.setBoundary(qv::Box(Vector(0, 0), c.width, c.height));
    std::istringstream blocks(c.blocks);
    for (std::string b; blocks >> b;)
      block(std::stoi(b.substr(b[0] == 's')), std::stoi(b.substr(b.find(',') + 1)),
            b[0] == 's' ? qv::SOFT : qv::HARD);
    EXPECT_EQ(route(new Probe(c.from), c.to), c.route) << c.blocks;
    const qv::ObjectList all = world.getAllObjects();
    for (int i = 0; i < all.getCount(); i++) world.markForDelete(all[i]);
    world.update();
  }

  // Start and goal round to the nearest cell; a target is reached where the boxes touch.
  world.setBoundary(qv::Box(Vector(0, 0), 12, 12));
  qv::PathFind rounded(nullptr, Vector(2.6f, 0.4f), Vector(2.5f, 7.49f));
  EXPECT_EQ(rounded.getStart().toString() + rounded.getGoal().toString(), "(3,0)(3,7)");
  EXPECT_EQ(rounded.getColumns() * 100 + rounded.getRows(), 1212);
  Probe *p_target = block(7, 7);
  p_target->setBox(qv::Box(Vector(-1.5f, -1.5f), 3, 3));  // covers 5.5 .. 8.5
  EXPECT_EQ(route(new Probe, p_target->getPosition(), p_target),
            "(1,1)|(2,2)|(3,3)|(4,4)|(5,5)|(6,6)| 6");

  // Without a node graph, or from outside it, every step fails.
  world.setBoundary(qv::Box());
  EXPECT_EQ(qv::PathFind(nullptr, Vector(0, 0), Vector(1, 1)).cycleOnce(), qv::PATH_FAILED);
  world.setBoundary(qv::Box(Vector(0, 0), 5, 5));
  EXPECT_EQ(qv::PathFind(nullptr, Vector(-3, 2), Vector(1, 1)).cycleOnce(), qv::PATH_FAILED);
  EXPECT_EQ(
      log->messages(),
      (Lines{"PathFind::cycleOnce(): node graph not allocated.  Cannot find path.",
             "PathFind::cycleOnce(): Warning! start cell (-3,2) outside the world; no path."}));
}

TEST_F(PathTest, BlockedCellsMatchTheWorldsCollisionList) {
  // Objects of several sizes over grid cell borders and beyond the world's
  // edge, compared cell by cell with the first HARD object of getCollisions.
  // The world is two grid cells wide and high, so that its edges are the grid's.
  world.setBoundary(qv::Box(Vector(0, 0), 40, 16));
  std::srand(7);
  for (int i = 0; i < 40; i++) {
    Probe *p_o = block(std::rand() % 50 - 3, std::rand() % 26 - 3,
                       static_cast<qv::Solidness>(std::rand() % 3));
    const float w = 0.5f + static_cast<float>(std::rand() % 5);
    const float h = 0.5f + static_cast<float>(std::rand() % 4);
    p_o->setBox(qv::Box(Vector(-w / 2, -h / 2), w, h));
  }
  block(21, 8)->setBox(qv::Box(Vector(-2, -2), 4, 4));            // on the goal
  block(21, 3)->setBox(qv::Box(Vector(-0.75f, -0.5f), 1.5f, 1));  // only past a column border
  for (const float size : {0.99f, 3.0f}) {
    Probe *p_mover = new Probe(Vector(2, 2));
    p_mover->setBox(qv::Box(Vector(-size / 2, -size / 2), size, size));
    qv::PathFind search(p_mover, p_mover->getPosition(), Vector(21, 8));
    for (int y = 0; y < 16; y++)
      for (int x = 0; x < 40; x++) {
        bool expected = false;
        const qv::ObjectList hits = world.getCollisions(p_mover, Vector(float(x), float(y)));
        for (int k = 0; k < hits.getCount(); k++)
          if (hits[k]->getSolidness() == qv::HARD) {
            expected = !qv::boxContainsPosition(qv::getWorldBox(hits[k]), Vector(21, 8));
            break;
          }
        ASSERT_EQ(search.isBlocked(x, y), expected) << "cell " << x << "," << y << " size " << size;
      }
  }
}

TEST_F(PathTest, ManagerAttachesReplacesAndDelivers) {
  Probe *p_o = walker("walker", Vector(1, 1));
  paths.findPath(p_o, Vector(10, 10));
  // A second search replaces the first, which is delisted and deleted.
  qv::PathFind *p_second = paths.findPath(p_o, Vector(3, 1));
  Probe *p_boxed = walker("boxed", Vector(15, 15));
  for (int i = 0; i < 9; i++)
    if (i != 4) block(14 + i % 3, 14 + i / 3);
  paths.findPath(p_boxed, Vector(0, 0));
  drain();
  EXPECT_EQ(heard, (Lines{"boxed 0 ", "walker 2 (1,1)|(2,1)|(3,1)|"}));
  // Only the walker that found its path follows it; both searches are released.
  EXPECT_EQ(p_o->getPath().toString() + std::to_string(p_o->getFollowPath()) +
                std::to_string(p_boxed->getFollowPath()),
            "(1,1)|(2,1)|(3,1)|10");
  EXPECT_TRUE(p_o->getPathFind() == nullptr && p_boxed->getPathFind() == nullptr);

  EXPECT_EQ(paths.findPath(nullptr, Vector(1, 1)), nullptr);
  EXPECT_EQ(paths.removePathFind(nullptr) + paths.removePathFind(p_second), -2);  // already gone
  paths.shutDown();
  EXPECT_EQ(paths.findPath(p_o, Vector(1, 1)), nullptr);
  EXPECT_EQ(log->messages(),
            (Lines{"PathManager::findPath(): Error! Object is NULL; no search made.",
                   "PathManager::findPath(): Error! PathManager not started; no search made."}));
}

TEST_F(PathTest, SearchesTakeTurnsOneStepEachRound) {
  // Each of these ends on its first step (start = goal). When A leaves the
  // list, B moves into its place and the round goes on with C.
  for (Vector at : {Vector(1, 1), Vector(3, 3), Vector(5, 5)})
    paths.findPath(walker(at.toString(), at), at);
  drain();
  EXPECT_EQ(heard, (Lines{"(1,1) 2 (1,1)|", "(5,5) 2 (5,5)|", "(3,3) 2 (3,3)|"}));
}

TEST_F(PathTest, KeptOrOrphanedSearchesLeaveTheList) {
  Probe *p_keeper = new Probe(Vector(1, 1));
  p_keeper->on_event = [](const qv::Event *) { return 1; };  // never releases
  qv::PathFind *p_search = paths.findPath(p_keeper, Vector(4, 1));
  for (int i = 0; i < 5; i++) paths.cycle(2);
  EXPECT_EQ(p_keeper->count("qv-path"), 1);  // delivered once, then delisted
  EXPECT_EQ(log->messages(),
            Lines{"PathManager::cycle(): Warning! Object " + std::to_string(p_keeper->getId()) +
                  " kept its finished path search; it is no longer stepped."});

  // An object destroyed mid-search takes its search along.
  Probe *p_gone = walker("gone", Vector(1, 1));
  p_search = paths.findPath(p_gone, Vector(158, 46));
  paths.findPath(walker("stays", Vector(1, 2)), Vector(4, 2));
  for (int i = 0; i < 20; i++) p_search->cycleOnce();
  world.markForDelete(p_gone);
  world.markForDelete(p_keeper);
  world.update();
  drain();
  EXPECT_EQ(heard, (Lines{"stays 2 (1,2)|(2,2)|(3,2)|(4,2)|"}));
}

// The whole engine, so that the frame time (10 ms) sets the minimum cycle
// time and the frame loop drives the path manager.
using PathEngineTest = qvtest::EngineFixture;

TEST_F(PathEngineTest, FrameLoopDeliversThePathWithinABudgetFloor) {
  ASSERT_EQ(restartWith("log_level:5,\n"), 0);
  std::string seen;  // at each frame's step, which comes before the world's update
  Probe *p_o = new Probe(Vector(2, 2));
  p_o->registerInterest(qv::STEP_EVENT);
  p_o->on_event = [p_o, &seen](const qv::Event *p_e) {
    if (const auto *p_step = dynamic_cast<const qv::EventStep *>(p_e)) {
      seen += p_o->getPosition().toString();
      if (p_step->getStepCount() == 0) qv::PathManager::getInstance().findPath(p_o, Vector(6, 2));
      if (p_step->getStepCount() == 8) qv::GameManager::getInstance().setGameOver();
      return 1;
    }
    p_o->setVelocity(Vector(1, 0));  // sets off once the path is known
    return p_o->qv::Object::eventHandler(p_e);
  };
  qv::GameManager::getInstance().run();
  // The path arrives at the end of frame 0; frame 1 snaps to its first
  // waypoint (the start) and turns; from frame 2 on, one cell per frame.
  EXPECT_EQ(seen, "(2,2)(2,2)(2,2)(3,2)(4,2)(5,2)(6,2)(6,2)(6,2)");
  EXPECT_TRUE(p_o->count("qv-path") == 1 && !p_o->getFollowPath() &&
              p_o->getPathFind() == nullptr && p_o->getDirection() == Vector(0, 0));

  // A budget of nothing, or less, still buys a tenth of the frame time.
  qv::PathManager &paths = qv::PathManager::getInstance();
  EXPECT_EQ(paths.getMinCycleTime(), 1);
  EXPECT_EQ(paths.startUp(), -1);
  for (int budget : {0, -40}) {
    const int heard = p_o->count("qv-path");
    qv::PathFind *p_search = paths.findPath(p_o, Vector(70, 20));
    paths.cycle(budget);
    EXPECT_TRUE(p_o->count("qv-path") > heard || p_search->getClosedCount() > 0) << budget;
  }
  qv::GameManager::getInstance().shutDown();
  for (const char *line : {"PathManager::startUp(): successfully started.",
                           "PathManager::startup(): Warning! PathManager already started.",
                           "PathManager::shutDown(): successfully stopped."})
    EXPECT_TRUE(log->contains(line)) << line;
}

}  // namespace
