#include <gtest/gtest.h>

#include "WorldFixture.h"

using qv::Box;
using qv::Object;
using qv::Vector;
using qvtest::Probe;

namespace {

class WorldTest : public qvtest::WorldFixture {
 protected:
  qv::WorldManager &world = qv::WorldManager::getInstance();
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

TEST_F(WorldTest, CollisionsStopOrPassByTheSolidnessOfBothParties) {
  const struct {
    qv::Solidness mover, other;
    bool no_soft, passes;
    std::size_t events;
  } cases[] = {
      {qv::HARD, qv::HARD, false, false, 1},    {qv::HARD, qv::SOFT, false, true, 1},
      {qv::HARD, qv::SOFT, true, false, 1},     {qv::SOFT, qv::HARD, false, true, 1},
      {qv::SPECTRAL, qv::HARD, false, true, 0},
  };
  for (const auto &c : cases) {
    Probe mover(Vector(5, 5)), other(Vector(6, 5));
    mover.setSolidness(c.mover);
    other.setSolidness(c.other);
    mover.setNoSoft(c.no_soft);
    mover.setVelocity(Vector(1, 0));
    world.update();
    EXPECT_EQ(mover.getPosition(), c.passes ? Vector(6, 5) : Vector(5, 5)) << &c - cases;
    EXPECT_EQ(mover.getVelocity(), Vector(1, 0));  // the game decides what a stop means
    // Both hear of it once, with the place the mover was going to.
    for (const Probe *p : {&mover, &other}) {
      ASSERT_EQ(p->collisions.size(), c.events) << &c - cases;
      for (const qv::EventCollision &e : p->collisions)
        EXPECT_TRUE(e.getObject1() == &mover && e.getObject2() == &other &&
                    e.getPosition() == Vector(6, 5));
    }
  }
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

  // Meeting a corner, the slide turns the direction's x about.
  wall.setPosition(Vector(21, 21));
  mover.setPosition(Vector(20, 20));
  mover.setVelocity(Vector(1, 1));
  world.update();
  EXPECT_EQ(mover.getPosition().toString(), "(19,21)");
}

TEST_F(WorldTest, NormalFacesTheSideTheMoverMeetsFirst) {
  Probe mover, obstacle(Vector(10, 10));
  const struct {
    Vector from, velocity, normal;
  } cases[] = {
      {Vector(10, 9), Vector(0, 1), Vector(0, -1)},
      {Vector(10, 11), Vector(0, -1), Vector(0, 1)},
      {Vector(9, 10), Vector(1, 0), Vector(-1, 0)},
      {Vector(11, 10), Vector(-1, 0), Vector(1, 0)},
      {Vector(9, 9), Vector(1, 1), Vector(-1, -1)},
      {Vector(9.2f, 9.2f), Vector(0, 0), Vector(0, -1)},  // overlapping, above comes first
      {Vector(30, 30), Vector(0, 1), Vector(0, 0)},
  };
  setLogLevel(1);
  for (const auto &c : cases) {
    mover.setPosition(c.from);
    mover.setVelocity(c.velocity);
    EXPECT_EQ(qv::getNormal(&mover, &obstacle), c.normal) << c.from.toString();
  }
  EXPECT_EQ(log->count("getNormal(): No collision detected. Returning (0,0)."), 1);
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
  world.moveObject(&p, Vector(30, 12));  // past the slack on the left
  EXPECT_NEAR(world.getView().getCorner().getX(), 30 + 13.333333 - 40, 1e-3);

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
      // At 100 an object is outside the 80 x 24 view; at 80.4 its box reaches into it.
      {10, 3, true, true},  {12, 0, true, true},  {14, 4, true, true},  {16, 0, true, true},
      {100, 1, true, true}, {18, 1, false, true}, {20, 1, true, false}, {80.4f, 2, true, true},
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
