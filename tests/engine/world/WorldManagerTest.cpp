#include <gtest/gtest.h>

#include "WorldFixture.h"
#include "network/NetworkManager.h"
#include "path/EventPath.h"

namespace {

using qv::Box;
using qv::Object;
using qv::Vector;
using qvtest::Probe;
using Lines = std::vector<std::string>;

using WorldTest = qvtest::WorldFixture;

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

TEST_F(WorldTest, AvoidingObstaclesSlidesAlongThem) {
  Probe mover(Vector(5, 5)), wall(Vector(6, 5));
  mover.setAvoidCollisions(true);
  mover.setVelocity(Vector(1, 0));
  mover.setDirection(Vector(0.7071f, 0.7071f));
  world.update();
  // Only the move slides, not the direction.
  std::string trail = mover.getPosition().toString() + mover.getDirection().toString();

  // With the slide blocked too, nothing moves.
  setLogLevel(5);
  Probe floor(Vector(5, 7.5f));
  wall.setPosition(Vector(6, 6));
  EXPECT_EQ(world.moveObject(&mover, mover.predictPosition()), -1);
  trail += mover.getPosition().toString();
  EXPECT_TRUE(log->contains(
      "WorldManager::moveObject(): Double collision. Object (avoid obstacles) cannot move."));

  // Meeting a corner, the slide turns the direction's x about.
  wall.setPosition(Vector(21, 21));
  mover.setPosition(Vector(20, 20));
  mover.setVelocity(Vector(1, 1));
  world.update();
  EXPECT_EQ(trail + mover.getPosition().toString(), "(5,6)(0.707107,0.707107)(5,6)(19,21)");
  // Nobody is told of a collision that was avoided.
  EXPECT_TRUE(mover.collisions.empty() && floor.collisions.empty() && wall.collisions.empty());
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

TEST_F(WorldTest, ViewFollowsWithSlackAndStaysInTheWorld) {
  world.setViewSlack(Vector(0.33333334f, 0.33333334f));
  Probe p(Vector(40, 12));
  ASSERT_EQ(world.setViewFollowing(&p), 0);
  std::string corners;
  for (Vector to : {Vector(50, 12), Vector(60, 12), Vector(30, 12)}) {
    world.moveObject(&p, to);  // inside the slack, past it on the right, on the left
    corners += world.getView().getCorner().toString();
  }
  world.moveObject(&p, Vector(155, 45));
  corners += world.getView().getCorner().toString();
  world.setView(Box(Vector(0, 0), 200, 24));  // wider than the world: stays at its left
  world.setViewPosition(Vector(100, 10));
  EXPECT_EQ(corners + world.getView().getCorner().toString(),
            "(0,0)(6.66666,0)(3.33334,0)(80,24)(0,0)");
  world.setViewSlack(Vector(1.5f, 0));
  EXPECT_TRUE(
      log->contains("WorldManager::setViewSlack(): Warning! view slack units out of range [0-1]"));

  // Leaving the world is reported once: [157.5, 160.49] still touches the edge.
  p.setPosition(Vector(158, 10));
  p.setVelocity(Vector(2, 0));
  for (int i = 0; i < 3; i++, world.update()) EXPECT_EQ(p.count("qv-out"), i < 2 ? 0 : 1) << i;
  EXPECT_EQ(p.count("qv-out"), 1);

  Probe *p_gone = new Probe;
  world.setViewFollowing(p_gone);  // a followed object that is deleted is no longer followed
  world.markForDelete(p_gone);
  world.update();
  EXPECT_EQ(world.getViewFollowing(), nullptr);
}

TEST_F(WorldTest, DeletionHappensAtTheEndOfTheUpdateAndAtShutDown) {
  Lines deleted;
  auto doomed = [&](const char *name, float x, bool active = true) {
    Probe *p_o = new Probe(Vector(x, 10));
    p_o->setVelocity(Vector(1, 0));
    p_o->setActive(active);
    p_o->on_delete = [&deleted, name](Probe *p) {
      deleted.push_back(name + p->getPosition().toString());
    };
    return p_o;
  };
  Probe *p_a = doomed("a", 10), *p_b = doomed("b", 20), *p_c = doomed("c", 30, false);
  p_b->on_delete = [&](Probe *p) {
    deleted.push_back("b" + p->getPosition().toString());
    world.markForDelete(p_c);  // deleted in the same pass
  };
  // Marked before the update, twice, b still moves in it and goes once.
  EXPECT_EQ(world.markForDelete(p_b) + world.markForDelete(p_b), 0);
  world.markForDelete(p_a);
  world.update();

  // Shut-down deletes every object, active ones first, and forgets the marks.
  doomed("d", 1, false);
  world.markForDelete(doomed("e", 2));
  setLogLevel(5);
  world.shutDown();
  EXPECT_EQ(world.startUp(), 0);
  world.update();
  EXPECT_EQ(deleted, (Lines{"b(21,10)", "a(11,10)", "c(30,10)", "e(2,10)", "d(1,10)"}));
  for (const char *line : {"WorldManager::shutDown(): Successfully stopped.",
                           "WorldManager::startUp(): successfully started."})
    EXPECT_TRUE(log->contains(line)) << line;
  EXPECT_EQ(world.insertObject(nullptr) + world.removeObject(nullptr) +
                world.moveObject(nullptr, Vector(6, 5)),
            -3);
}

TEST_F(WorldTest, DrawsLowAltitudesFirstAndOnlyWhatIsInView) {
  // At 100 an object is outside the 80 x 24 view; at 80.4 its box reaches into it.
  const float xs[] = {10, 12, 14, 16, 100, 18, 20, 80.4f};
  const int altitudes[] = {3, 0, 4, 0, 1, 1, 1, 2};
  std::vector<int> drawn;
  std::vector<Probe *> probes;
  for (int id = 0; id < 8; id++) {
    probes.push_back(new Probe(Vector(xs[id], 10)));
    probes[id]->setAltitude(altitudes[id]);
    probes[id]->on_draw = [&drawn, id](Probe *) { drawn.push_back(id); };
  }
  probes[5]->setVisible(false);
  probes[6]->setActive(false);
  world.draw();
  EXPECT_EQ(drawn, (std::vector<int>{1, 3, 7, 0, 2}));
}

TEST_F(WorldTest, ObjectSettersRefuseBadValuesAndMarkOnlyChanges) {
  Probe p;
  p.setModified(0);
  EXPECT_EQ(p.setAltitude(5) + p.setAltitude(-1) + p.setSolidness(qv::Solidness(3)) +
                p.setSprite("no-such-sprite") + p.setPosition(Vector(1, 1)),
            -4);
  p.setDirection(Vector(0, 2));
  EXPECT_EQ(p.getDirection(), Vector(0, 1));
  EXPECT_EQ(p.getModified(), 0u);  // nothing refused or unchanged is marked, nor a direction
  EXPECT_EQ(log->messages(),
            (Lines{"Object::setAltitude(): Altitude 5 not in range [0,4].  Ignored.",
                   "Object::setAltitude(): Altitude -1 not in range [0,4].  Ignored.",
                   "Object::setSolidness(): Solidness 3 not one of HARD, SOFT or SPECTRAL.",
                   "RM::getSprite(): Warning! Sprite 'no-such-sprite' not found.",
                   "Object::setSprite(): Warning! Sprite 'no-such-sprite' not found"}));

  p.setVelocity(Vector(3, 4));
  EXPECT_EQ(
      std::to_string(p.getSpeed()) + p.getDirection().toString() + p.predictPosition().toString(),
      "5.000000(0.6,0.8)(4,5)");
  p.setModified(0);
  p.setAltitude(4);
  p.setActive(false);
  p.setVisible(false);
  EXPECT_EQ(p.getModified(), unsigned(qv::ALTITUDE | qv::ACTIVE | qv::VISIBLE));
}

TEST_F(WorldTest, ObjectRegistrationLimitsOrderAndRouting) {
  Probe p;
  // Network events go to their own manager (the game's tests route the rest).
  qv::Manager &network = qv::NetworkManager::getInstance();
  EXPECT_TRUE(p.registerInterest("qv-network-create") == 0 &&
              network.getInterested("qv-network-create").contains(&p));
  p.unregisterInterest("qv-network-create");
  for (int i = 0; i < qv::INTEREST_MAX; i++)
    ASSERT_EQ(p.registerInterest("e" + std::to_string(i)), 0);
  EXPECT_EQ(p.registerInterest("e100"), -1);
  EXPECT_EQ(p.unregisterInterest("e1"), 0);
  EXPECT_EQ(p.registerInterest("e100"), 0);
  EXPECT_EQ(p.getEvent(1) + p.getEvent(99), "e2e100");
  EXPECT_EQ(p.unregisterInterest("never"), -1);
  EXPECT_EQ(log->messages(),
            (Lines{"Object::registerInterest(): maximum (100) reached, cannot register for event "
                   "'e100'",
                   "Object::unregisterInterest(): event 'never' not previously registered"}));
  // Types the world sends without registration are refused and not stored.
  p.unregisterInterest("e0");
  EXPECT_EQ(p.registerInterest("qv-collision"), -1);
  EXPECT_EQ(p.getEventCount(), 99);
}

TEST_F(WorldTest, ObjectFollowsAPathAndAccelerates) {
  Probe *p_o = new Probe(Vector(10, 10));
  qv::EventPath failed;
  qv::Event fake_path;
  fake_path.setType("qv-path");
  EXPECT_EQ(p_o->eventHandler(&failed) * 10 + p_o->eventHandler(&fake_path), 10);
  EXPECT_FALSE(p_o->getFollowPath());
  EXPECT_TRUE(log->contains("Object::eventHandler(): Error! Dynamic cast to EventPath failed."));

  // Waypoints within 0.75 cells (speed 1) are passed at once, the third at 0.8 is not.
  qv::Path path;
  path.setNodes({Vector(10.5f, 10), Vector(10.5f, 10.7f), Vector(10.5f, 11.5f)});
  p_o->setPath(path);
  p_o->setVelocity(Vector(0, 1));
  p_o->setFollowPath(false);  // turns toward the waypoint all the same
  EXPECT_EQ(p_o->getDirection(), Vector(1, 0));
  p_o->setFollowPath(true);
  p_o->followPathStep();
  EXPECT_EQ(p_o->getPosition().toString() + p_o->getDirection().toString(), "(10.5,10.7)(0,1)");

  Probe *p_car = new Probe(Vector(30, 30));
  p_car->setAcceleration(Vector(0.5f, 0));
  world.update();
  world.update();
  EXPECT_EQ(p_car->getPosition().toString() + p_car->getVelocity().toString(), "(30.5,30)(1,0)");
}

TEST(ObjectOutsideWorld, CreationAndDeletionWithoutAStartedWorld) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start(2));
  Object *p_o = new Object;
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<void *>(p_o));
  const std::string id = std::to_string(p_o->getId());
  delete p_o;
  EXPECT_EQ(
      log.messages(),
      (Lines{"WorldManager::insertObject(): Warning! Not adding Object " + id,
             "                              because WorldManager not started.",
             "Object::Object(): Error! Unable to add " + std::string(address) + " to game world.",
             "Grid::removeObject(): Error! grid is NULL",
             "SceneGraph::removeObject(): Error removing Object (id " + id + ")! Pointer is " +
                 address + ".",
             "Object::~Object(): Error! Unable to remove " + std::string(address) +
                 " from game world."}));
}

}  // namespace
