#include <string>
#include <vector>

#include "EngineFixture.h"
#include "PathFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"

namespace {

using qv::Vector;
using qvtest::Probe;
using Lines = std::vector<std::string>;

class PathManagerTest : public qvtest::PathFixture {
 protected:
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

TEST_F(PathManagerTest, FindPathAttachesListsReplacesAndDelivers) {
  setWorld(20, 20);
  Probe *p_o = walker("walker", Vector(1, 1));
  qv::PathFind *p_first = paths.findPath(p_o, Vector(10, 10));
  ASSERT_NE(p_first, nullptr);
  EXPECT_EQ(p_o->getPathFind(), p_first);
  EXPECT_TRUE(paths.isListed(p_first));
  // A second search replaces the first, which is delisted and deleted.
  qv::PathFind *p_second = paths.findPath(p_o, Vector(3, 1));
  EXPECT_EQ(p_o->getPathFind(), p_second);
  EXPECT_EQ(paths.getSearchCount(), 1);
  Probe *p_boxed = walker("boxed", Vector(15, 15));
  surround(15, 15);
  paths.findPath(p_boxed, Vector(0, 0));
  drain();
  EXPECT_EQ(heard, (Lines{"boxed 0 ", "walker 2 (1,1)|(2,1)|(3,1)|"}));
  EXPECT_TRUE(p_o->getFollowPath());
  EXPECT_EQ(p_o->getPath().toString(), "(1,1)|(2,1)|(3,1)|");
  EXPECT_FALSE(p_boxed->getFollowPath());
  for (const Probe *p : {p_o, p_boxed}) EXPECT_EQ(p->getPathFind(), nullptr);

  EXPECT_EQ(paths.findPath(nullptr, Vector(1, 1)), nullptr);
  EXPECT_TRUE(log->contains("PathManager::findPath(): Error! Object is NULL; no search made."));
  EXPECT_EQ(paths.removePathFind(nullptr), -1);
  EXPECT_EQ(paths.removePathFind(p_second), -1);  // already gone
  paths.shutDown();
  EXPECT_EQ(paths.findPath(p_o, Vector(1, 1)), nullptr);
  EXPECT_TRUE(
      log->contains("PathManager::findPath(): Error! PathManager not started; no search made."));
}

TEST_F(PathManagerTest, SearchesTakeTurnsOneStepEach) {
  // Two floods of a world whose goal is walled in: neither ends soon, and
  // each round steps the first listed, then the second.
  setWorld(160, 48);
  surround(150, 40);
  qv::PathFind *p_a = paths.findPath(walker("a", Vector(1, 1)), Vector(150, 40));
  qv::PathFind *p_b = paths.findPath(walker("b", Vector(1, 46)), Vector(150, 40));
  // Every cycle starts a round with the first search, so a round cut short
  // by the budget gives the first one step more, never two.
  for (int i = 0; i < 5 && paths.getSearchCount() == 2; i++) {
    const int a = p_a->getClosedCount();
    const int b = p_b->getClosedCount();
    paths.cycle(2);  // 2 ms: the clock's millisecond tick cannot end it before one round
    if (paths.getSearchCount() < 2) break;
    const int gained = (p_a->getClosedCount() - a) - (p_b->getClosedCount() - b);
    EXPECT_TRUE(gained == 0 || gained == 1) << "first search gained " << gained;
    EXPECT_GT(p_b->getClosedCount(), b);
  }
}

TEST_F(PathManagerTest, SearchAfterAFinishedOneWaitsForTheNextRound) {
  // Each search ends on its first step (start = goal). When A leaves the
  // list, B moves into its place and the round goes on with C.
  setWorld(10, 10);
  const struct {
    const char *name;
    Vector at;
  } searches[] = {{"A", Vector(1, 1)}, {"B", Vector(3, 3)}, {"C", Vector(5, 5)}};
  for (const auto &s : searches) paths.findPath(walker(s.name, s.at), s.at);
  drain();
  EXPECT_EQ(heard, (Lines{"A 2 (1,1)|", "C 2 (5,5)|", "B 2 (3,3)|"}));
}

TEST_F(PathManagerTest, KeptFinishedSearchIsReportedOnceThenDelisted) {
  setWorld(10, 10);
  Probe *p_keeper = new Probe(Vector(1, 1));
  p_keeper->on_event = [](const qv::Event *) { return 1; };  // never releases
  qv::PathFind *p_search = paths.findPath(p_keeper, Vector(4, 1));
  for (int i = 0; i < 5; i++) paths.cycle(2);
  EXPECT_EQ(p_keeper->count("qv-path"), 1);
  EXPECT_EQ(paths.getSearchCount(), 0);
  EXPECT_EQ(p_keeper->getPathFind(), p_search);  // still owned by the object
  EXPECT_EQ(
      log->count("PathManager::cycle(): Warning! Object " + std::to_string(p_keeper->getId()) +
                 " kept its finished path search; it is no longer stepped."),
      1);
  // It goes with its object, which finds it no longer listed.
  qv::WorldManager::getInstance().markForDelete(p_keeper);
  qv::WorldManager::getInstance().update();
  EXPECT_EQ(paths.getSearchCount(), 0);
}

TEST_F(PathManagerTest, ObjectDestroyedMidSearchTakesItsSearchAlong) {
  setWorld(160, 48);
  Probe *p_gone = walker("gone", Vector(1, 1));
  qv::PathFind *p_search = paths.findPath(p_gone, Vector(158, 46));
  paths.findPath(walker("stays", Vector(1, 2)), Vector(4, 2));
  for (int i = 0; i < 20; i++) p_search->cycleOnce();
  qv::WorldManager::getInstance().markForDelete(p_gone);
  qv::WorldManager::getInstance().update();
  EXPECT_EQ(paths.getSearchCount(), 1);
  drain();
  EXPECT_EQ(heard, (Lines{"stays 2 (1,2)|(2,2)|(3,2)|(4,2)|"}));
}

// The whole engine, so that the frame time sets the minimum cycle time and
// the frame loop drives the path manager.
class PathEngineTest : public qvtest::EngineFixture {
 protected:
  std::string config() const override {
    return "headless:true,\nnetworking:false,\nframe_time:33,\nrandom_seed:1,\nlog_level:5,\n";
  }
};

TEST_F(PathEngineTest, StartsWithTheEngineAndKeepsItsBudgetFloor) {
  qv::PathManager &paths = qv::PathManager::getInstance();
  EXPECT_TRUE(paths.isStarted());
  EXPECT_EQ(paths.getMinCycleTime(), 3);
  EXPECT_TRUE(log->contains("PathManager::startUp(): successfully started."));
  EXPECT_TRUE(log->contains("Path manager started."));
  EXPECT_EQ(paths.startUp(), -1);
  EXPECT_TRUE(log->contains("PathManager::startup(): Warning! PathManager already started."));

  // Nothing listed: back at once, nothing said.
  const std::size_t lines = log->messages().size();
  paths.cycle(0);
  EXPECT_EQ(log->messages().size(), lines);

  // A budget of nothing, or less, still buys the minimum cycle time.
  for (int budget : {0, -40}) {
    Probe *p_o = new Probe(Vector(1, 1));
    qv::PathFind *p_search = paths.findPath(p_o, Vector(70, 20));
    paths.cycle(budget);
    EXPECT_TRUE(p_o->count("qv-path") == 1 || p_search->getClosedCount() > 0) << budget;
    qv::WorldManager::getInstance().markForDelete(p_o);
    qv::WorldManager::getInstance().update();
  }

  qv::GameManager::getInstance().shutDown();
  EXPECT_TRUE(log->contains("PathManager::shutDown(): successfully stopped."));
  EXPECT_TRUE(log->contains("Path manager stopped"));
  EXPECT_FALSE(paths.isStarted());

  // Frames under 10 ms leave no floor: a budget of nothing steps nothing.
  ASSERT_EQ(restartWith("frame_time:9,\n"), 0);
  EXPECT_EQ(paths.getMinCycleTime(), 0);
  Probe *p_o = new Probe(Vector(1, 1));
  qv::PathFind *p_search = paths.findPath(p_o, Vector(3, 1));
  paths.cycle(0);
  EXPECT_EQ(p_search->getClosedCount(), 0);
}

TEST_F(PathEngineTest, FrameLoopDeliversThePathAndTheObjectWalksIt) {
  std::vector<Vector> seen;  // at each frame's step, which comes before the world's update
  Probe *p_o = new Probe(Vector(2, 2)), *p_idle = new Probe;
  p_o->registerInterest(qv::STEP_EVENT);
  p_idle->registerInterest(qv::STEP_EVENT);
  p_idle->setActive(false);
  p_o->on_event = [p_o, &seen](const qv::Event *p_e) {
    if (const auto *p_step = dynamic_cast<const qv::EventStep *>(p_e)) {
      seen.push_back(p_o->getPosition());
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
  const std::vector<Vector> expected = {Vector(2, 2), Vector(2, 2), Vector(2, 2),
                                        Vector(3, 2), Vector(4, 2), Vector(5, 2),
                                        Vector(6, 2), Vector(6, 2), Vector(6, 2)};
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), 9);
  EXPECT_EQ(p_idle->count("qv-step"), 0);
  EXPECT_EQ(p_o->count("qv-path"), 1);
  EXPECT_FALSE(p_o->getFollowPath());
  EXPECT_EQ(p_o->getDirection(), Vector(0, 0));
  EXPECT_EQ(p_o->getPathFind(), nullptr);
}

}  // namespace
