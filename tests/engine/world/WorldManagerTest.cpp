#include <gtest/gtest.h>

#include "EngineFixture.h"
#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"

using qv::Box;
using qv::Object;
using qv::Vector;
using qvtest::Probe;

namespace {

class WorldTest : public qvtest::WorldFixture {
 protected:
  qv::WorldManager &world = qv::WorldManager::getInstance();

  static void expectCollision(const Probe &p, const Object *p_o1, const Object *p_o2,
                              Vector where) {
    ASSERT_EQ(p.collisions.size(), 1u);
    EXPECT_EQ(p.collisions[0].getObject1(), p_o1);
    EXPECT_EQ(p.collisions[0].getObject2(), p_o2);
    EXPECT_EQ(p.collisions[0].getPosition(), where);
  }
};

}  // namespace

TEST_F(WorldTest, StartAndStop) {
  setLogLevel(5);
  EXPECT_EQ(world.startUp(), -1);
  EXPECT_TRUE(log->contains("WorldManager::startup(): Warning! WorldManager already started."));
  world.shutDown();
  EXPECT_TRUE(log->contains("WorldManager::shutDown(): Successfully stopped."));
  ASSERT_EQ(world.startUp(), 0);
  EXPECT_TRUE(log->contains("WorldManager::startUp(): successfully started."));
  EXPECT_EQ(world.insertObject(nullptr), -1);
  EXPECT_EQ(world.removeObject(nullptr), -1);
  EXPECT_EQ(world.moveObject(nullptr, Vector(6, 5)), -1);
}

TEST_F(WorldTest, HardStopsHardAndBothHearOfIt) {
  Probe mover(Vector(5, 5)), wall(Vector(6, 5));
  mover.setVelocity(Vector(1, 0));
  world.update();
  EXPECT_EQ(mover.getPosition(), Vector(5, 5));
  expectCollision(mover, &mover, &wall, Vector(6, 5));
  expectCollision(wall, &mover, &wall, Vector(6, 5));
  EXPECT_EQ(mover.getVelocity(), Vector(1, 0));  // the game decides what a stop means
}

TEST_F(WorldTest, SoftAndSpectralPassThrough) {
  Probe mover(Vector(5, 5)), soft(Vector(6, 5));
  soft.setSolidness(qv::SOFT);
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), 0);
  EXPECT_EQ(mover.getPosition(), Vector(6, 5));
  expectCollision(mover, &mover, &soft, Vector(6, 5));
  expectCollision(soft, &mover, &soft, Vector(6, 5));
  mover.setNoSoft(true);
  EXPECT_EQ(world.moveObject(&mover, Vector(6.5f, 5)), -1);
  EXPECT_EQ(mover.getPosition(), Vector(6, 5));
  EXPECT_EQ(soft.collisions.size(), 2u);

  Probe hard(Vector(21, 20)), ghost(Vector(20, 22));
  soft.setPosition(Vector(20, 20));
  EXPECT_EQ(world.moveObject(&soft, Vector(21, 20)), 0);  // a soft mover passes a hard object
  EXPECT_EQ(hard.collisions.size(), 1u);
  ghost.setSolidness(qv::SPECTRAL);
  EXPECT_EQ(world.moveObject(&ghost, Vector(21, 20)), 0);
  EXPECT_TRUE(ghost.collisions.empty());
  EXPECT_EQ(hard.collisions.size(), 1u);
}

TEST_F(WorldTest, HandlersHaveTheirSayBeforeTheMoveIsJudged) {
  // A wall that gives way when hit (turning spectral) lets the mover through.
  Probe mover(Vector(5, 5)), door(Vector(6, 5));
  door.on_event = [&](const qv::Event *) { return door.setSolidness(qv::SPECTRAL), 1; };
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), 0);
  EXPECT_EQ(mover.getPosition(), Vector(6, 5));
  // A handler that moves the mover wins over the move.
  door.setSolidness(qv::SOFT);
  mover.setPosition(Vector(5, 5));
  mover.on_event = [&](const qv::Event *) { return mover.setPosition(Vector(5, 8)), 1; };
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), -1);
  EXPECT_EQ(mover.getPosition(), Vector(5, 8));
}

TEST_F(WorldTest, AvoidingObstaclesSlidesAlongThem) {
  Probe mover(Vector(5, 5)), wall(Vector(6, 5));
  mover.setAvoidCollisions(true);
  mover.setVelocity(Vector(1, 0));
  EXPECT_EQ(world.moveObject(&mover, mover.predictPosition()), 0);  // head-on: nowhere to slide
  EXPECT_EQ(mover.getPosition(), Vector(5, 5));
  mover.setDirection(Vector(0.7071f, 0.7071f));
  const Vector direction = mover.getDirection();
  world.update();
  EXPECT_EQ(mover.getPosition(), Vector(5, 6));
  EXPECT_EQ(mover.getDirection(), direction);  // only the move slid
  EXPECT_TRUE(mover.collisions.empty());
  EXPECT_TRUE(wall.collisions.empty());

  // With the slide blocked too, nothing moves and nobody is told.
  setLogLevel(5);
  Probe floor(Vector(5, 7.5f));
  mover.setPosition(Vector(5, 6));
  wall.setPosition(Vector(6, 6));
  EXPECT_EQ(world.moveObject(&mover, mover.predictPosition()), -1);
  EXPECT_EQ(mover.getPosition(), Vector(5, 6));
  EXPECT_TRUE(log->contains(
      "WorldManager::moveObject(): Double collision. Object (avoid obstacles) cannot move."));
  EXPECT_TRUE(mover.collisions.empty() && floor.collisions.empty() && wall.collisions.empty());
}

TEST_F(WorldTest, NormalOfAMoverAboveAnObstacle) {
  Probe mover(Vector(10, 10)), obstacle(Vector(10, 11));
  mover.setVelocity(Vector(0, 1));
  EXPECT_EQ(qv::getNormal(&mover, &obstacle), Vector(0, -1));
  mover.setPosition(Vector(30, 30));
  setLogLevel(1);
  EXPECT_EQ(qv::getNormal(&mover, &obstacle), Vector(0, 0));
  EXPECT_TRUE(log->contains("getNormal(): No collision detected. Returning (0,0)."));
}

TEST_F(WorldTest, LeavingTheWorldIsReportedOnce) {
  Probe p(Vector(158, 10));
  p.setVelocity(Vector(2, 0));
  world.update();
  EXPECT_EQ(p.count("qv-out"), 0);  // [157.5, 160.49] still touches the edge
  world.update();
  world.update();
  EXPECT_EQ(p.count("qv-out"), 1);
  EXPECT_EQ(p.getPosition(), Vector(164, 10));
}

TEST_F(WorldTest, ViewFollowsWithSlackAndStaysInTheWorld) {
  world.setViewSlack(Vector(0.33333334f, 0.33333334f));
  Probe p(Vector(40, 12));
  ASSERT_EQ(world.setViewFollowing(&p), 0);
  world.moveObject(&p, Vector(50, 12));  // inside the slack: the view stays
  EXPECT_EQ(world.getView().getCorner(), Vector(0, 0));
  world.moveObject(&p, Vector(60, 12));
  EXPECT_NEAR(world.getView().getCorner().getX(), 60 - (40 + 13.333333), 1e-3);
  EXPECT_EQ(world.getView().getCorner().getY(), 0);

  world.setViewSlack(Vector(0, 0));
  world.moveObject(&p, Vector(70, 30));
  EXPECT_EQ(world.getView().getCorner(), Vector(30, 18));
  world.moveObject(&p, Vector(155, 45));
  EXPECT_EQ(world.getView().getCorner(), Vector(80, 24));
  world.setView(Box(Vector(0, 0), 200, 24));
  world.setViewPosition(Vector(100, 10));
  EXPECT_EQ(world.getView().getCorner(), Vector(0, 0));
  world.setViewSlack(Vector(1.5f, 0));
  EXPECT_TRUE(
      log->contains("WorldManager::setViewSlack(): Warning! view slack units out of range [0-1]"));

  EXPECT_EQ(world.setViewFollowing(nullptr), 0);
  Probe *p_gone = new Probe;
  world.removeObject(p_gone);
  EXPECT_EQ(world.setViewFollowing(p_gone), -1);
  world.insertObject(p_gone);
  p.setActive(false);
  EXPECT_EQ(world.setViewFollowing(&p), 0);  // inactive objects may be followed
  world.setViewFollowing(p_gone);  // a followed object that is deleted is no longer followed
  world.markForDelete(p_gone);
  world.update();
  EXPECT_EQ(world.getViewFollowing(), nullptr);
}

TEST_F(WorldTest, DeletionHappensAtTheEndOfTheUpdate) {
  std::vector<std::string> deleted;
  auto doomed = [&](const char *name, float x) {
    Probe *p_o = new Probe(Vector(x, 10));
    p_o->setVelocity(Vector(1, 0));
    p_o->on_delete = [&deleted, name](Probe *p) {
      deleted.push_back(name + p->getPosition().toString());
    };
    return p_o;
  };
  Probe *p_a = doomed("a", 10), *p_b = doomed("b", 20), *p_c = doomed("c", 30);
  p_c->setVelocity(Vector(0, 0));
  p_b->on_delete = [&](Probe *p) {
    deleted.push_back("b" + p->getPosition().toString());
    world.markForDelete(p_c);  // deleted in the same pass
  };
  EXPECT_EQ(world.markForDelete(p_b), 0);  // marked before the update, still moves in it
  EXPECT_EQ(world.markForDelete(p_b), 0);
  EXPECT_EQ(world.getDeletions().getCount(), 1);
  world.markForDelete(p_a);
  world.update();
  EXPECT_EQ(deleted, (std::vector<std::string>{"b(21,10)", "a(11,10)", "c(30,10)"}));
  EXPECT_TRUE(world.getDeletions().isEmpty());
  EXPECT_TRUE(world.getAllObjects(true).isEmpty());
}

TEST_F(WorldTest, ShutDownDeletesEveryObject) {
  int deleted = 0;
  for (int i = 0; i < 4; i++) {
    Probe *p_o = new Probe(Vector(static_cast<float>(i), 3));
    p_o->on_delete = [&](Probe *) { deleted++; };
    p_o->setActive(i < 2);
  }
  qv::ObjectList all = world.getAllObjects(true);
  ASSERT_EQ(all.getCount(), 4);
  EXPECT_TRUE(all[1]->isActive() && !all[2]->isActive());  // active ones first
  EXPECT_EQ(world.getAllObjects().getCount(), 2);
  world.markForDelete(all[0]);
  world.shutDown();
  EXPECT_EQ(deleted, 4);
  ASSERT_EQ(world.startUp(), 0);
  world.update();  // the earlier mark is forgotten, not replayed
  EXPECT_EQ(deleted, 4);
}

TEST_F(WorldTest, DrawsLowAltitudesFirstAndOnlyWhatIsInView) {
  std::vector<int> drawn;
  const struct {
    float x;
    int altitude;
    bool visible, active;
  } cases[] = {
      {10, 3, true, true},  {12, 0, true, true},  {14, 4, true, true},
      {16, 0, true, true},  {100, 1, true, true},  // outside the 80 x 24 view
      {18, 1, false, true}, {20, 1, true, false}, {80.4f, 2, true, true},  // box reaches into the
                                                                           // view
  };
  for (int id = 0; id < 8; id++) {
    Probe *p_o = new Probe(Vector(cases[id].x, 10));
    p_o->setAltitude(cases[id].altitude);
    p_o->setVisible(cases[id].visible);
    p_o->setActive(cases[id].active);
    p_o->on_draw = [&drawn, id](Probe *) { drawn.push_back(id); };
  }
  world.draw();
  EXPECT_EQ(drawn, (std::vector<int>{1, 3, 7, 0, 2}));
}

// The real frame loop, headless, for a few frames.
class FrameLoop : public qvtest::EngineFixture {};

TEST_F(FrameLoop, StepEventsReachObjectsOncePerFrame) {
  std::vector<int> counts;
  std::vector<float> positions;
  Probe *p_s = new Probe(Vector(10, 10)), *p_idle = new Probe;
  p_s->setVelocity(Vector(1, 0));
  p_s->on_event = [&](const qv::Event *p_e) {
    const auto *p_step = dynamic_cast<const qv::EventStep *>(p_e);
    if (!p_step) return 0;
    counts.push_back(p_step->getStepCount());
    positions.push_back(p_s->getPosition().getX());
    if (counts.size() == 4) qv::GameManager::getInstance().setGameOver();
    return 1;
  };
  p_s->registerInterest("qv-step");
  p_idle->registerInterest("qv-step");
  p_idle->setActive(false);
  qv::GameManager::getInstance().run();
  EXPECT_EQ(counts, (std::vector<int>{0, 1, 2, 3}));
  // The step comes before the world's update: each frame sees the last move.
  EXPECT_EQ(positions, (std::vector<float>{10, 11, 12, 13}));
  EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), 4);
  EXPECT_EQ(p_idle->count("qv-step"), 0);
}
