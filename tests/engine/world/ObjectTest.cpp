#include <gtest/gtest.h>

#include "WorldFixture.h"
#include "core/GameManager.h"
#include "input/InputManager.h"
#include "network/NetworkManager.h"
#include "path/EventPath.h"

using qv::Box;
using qv::Object;
using qv::Vector;
using qvtest::Probe;

namespace {

class ObjectTest : public qvtest::WorldFixture {
 protected:
  qv::WorldManager &world = qv::WorldManager::getInstance();
};

}  // namespace

TEST_F(ObjectTest, IdsAreNeverReused) {
  Object *p_a = new Object;
  Object *p_b = new Object;
  EXPECT_EQ(p_b->getId(), p_a->getId() + 1);
  world.markForDelete(p_a);
  world.update();
  EXPECT_EQ((new Object)->getId(), p_b->getId() + 1);
}

TEST_F(ObjectTest, SettersRefuseBadValuesAndMarkChanges) {
  Probe p;
  p.setModified(0);
  EXPECT_EQ(p.setAltitude(5), -1);
  EXPECT_EQ(p.setAltitude(-1), -1);
  EXPECT_TRUE(log->contains("Object::setAltitude(): Altitude 5 not in range [0,4].  Ignored."));
  EXPECT_TRUE(log->contains("Object::setAltitude(): Altitude -1 not in range [0,4].  Ignored."));
  EXPECT_EQ(p.setSolidness(static_cast<qv::Solidness>(3)), -1);
  EXPECT_TRUE(
      log->contains("Object::setSolidness(): Solidness 3 not one of HARD, SOFT or SPECTRAL."));
  EXPECT_EQ(p.setSprite("no-such-sprite"), -1);
  EXPECT_TRUE(log->contains("Object::setSprite(): Warning! Sprite 'no-such-sprite' not found"));
  EXPECT_EQ(p.setPosition(Vector(1, 1)), 0);
  p.setDirection(Vector(0, 2));
  EXPECT_EQ(p.getDirection(), Vector(0, 1));
  EXPECT_EQ(p.getModified(), 0u);  // nothing refused or unchanged is marked, nor a direction

  p.setVelocity(Vector(3, 4));
  EXPECT_FLOAT_EQ(p.getSpeed(), 5);
  EXPECT_EQ(p.getDirection(), Vector(0.6f, 0.8f));
  EXPECT_EQ(p.getModified(), unsigned(qv::SPEED | qv::DIRECTION));
  EXPECT_EQ(p.predictPosition(), Vector(4, 5));
  p.setModified(0);
  p.setAltitude(4);
  p.setSolidness(qv::SOFT);
  p.setActive(false);
  p.setVisible(false);
  p.setType("Hero");
  p.setPosition(Vector(3, 3));
  p.setBox(Box(Vector(-1, -1), 2, 2));
  p.setAcceleration(Vector(0, 1));
  p.setAvoidCollisions(true);
  p.setNoSoft(true);
  EXPECT_EQ(p.getModified(), unsigned(qv::ALTITUDE | qv::SOLIDNESS | qv::ACTIVE | qv::VISIBLE |
                                      qv::TYPE | qv::POSITION | qv::BOX | qv::ACCELERATION |
                                      qv::AVOID_COLLISIONS | qv::NO_SOFT));
}

TEST_F(ObjectTest, RegistrationLimitsOrderAndRouting) {
  {
    Probe p;
    for (int i = 0; i < qv::INTEREST_MAX; i++)
      ASSERT_EQ(p.registerInterest("e" + std::to_string(i)), 0);
    EXPECT_EQ(p.registerInterest("e100"), -1);
    EXPECT_TRUE(log->contains(
        "Object::registerInterest(): maximum (100) reached, cannot register for event 'e100'"));
    EXPECT_EQ(p.unregisterInterest("e1"), 0);
    EXPECT_EQ(p.getEvent(1), "e2");
    EXPECT_EQ(p.registerInterest("e100"), 0);
    EXPECT_EQ(p.getEvent(99), "e100");
    EXPECT_EQ(p.unregisterInterest("never"), -1);
    EXPECT_TRUE(
        log->contains("Object::unregisterInterest(): event 'never' not previously registered"));
    // Types the world sends without registration are refused and not stored.
    p.unregisterInterest("e0");
    EXPECT_EQ(p.registerInterest("qv-collision"), -1);
    EXPECT_EQ(p.getEventCount(), 99);
  }

  Probe *p_o = new Probe;
  const struct {
    const char *type;
    qv::Manager &manager;
  } routes[] = {
      {"qv-step", qv::GameManager::getInstance()},
      {"qv-keyboard", qv::InputManager::getInstance()},
      {"qv-network-create", qv::NetworkManager::getInstance()},
      {"playerturn", world},
      {"qv-path", world},
  };
  for (const auto &route : routes) {
    ASSERT_EQ(p_o->registerInterest(route.type), 0) << route.type;
    EXPECT_TRUE(route.manager.getInterested(route.type).contains(p_o)) << route.type;
  }
  EXPECT_EQ(p_o->unregisterInterest("qv-network-create"), 0);
  EXPECT_FALSE(qv::NetworkManager::getInstance().getInterested("qv-network-create").contains(p_o));
  // Deletion withdraws every remaining registration.
  world.markForDelete(p_o);
  world.update();
  for (const auto &route : routes) EXPECT_TRUE(route.manager.getInterested(route.type).isEmpty());
}

TEST_F(ObjectTest, FollowsAPathAndAccelerates) {
  Probe *p_o = new Probe(Vector(10, 10));
  qv::EventPath failed;
  EXPECT_EQ(p_o->eventHandler(&failed), 1);
  EXPECT_FALSE(p_o->getFollowPath());
  qv::Event fake_path;
  fake_path.setType("qv-path");
  EXPECT_EQ(p_o->eventHandler(&fake_path), 0);
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
  EXPECT_EQ(p_o->getPosition(), Vector(10.5f, 10.7f));
  EXPECT_EQ(p_o->getDirection(), Vector(0, 1));

  Probe *p_car = new Probe(Vector(30, 30));
  p_car->setAcceleration(Vector(0.5f, 0));
  world.update();
  world.update();
  EXPECT_EQ(p_car->getPosition(), Vector(30.5f, 30));
  EXPECT_EQ(p_car->getVelocity(), Vector(1, 0));
}

TEST(ObjectOutsideWorld, CreationAndDeletionWithoutAStartedWorld) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start(2));
  ASSERT_FALSE(qv::WorldManager::getInstance().isStarted());
  Object *p_o = new Object;
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<void *>(p_o));
  EXPECT_TRUE(log.contains("WorldManager::insertObject(): Warning! Not adding Object " +
                           std::to_string(p_o->getId())));
  EXPECT_TRUE(log.contains("                              because WorldManager not started."));
  EXPECT_TRUE(log.contains(std::string("Object::Object(): Error! Unable to add ") + address +
                           " to game world."));
  delete p_o;
  EXPECT_TRUE(log.contains(std::string("Object::~Object(): Error! Unable to remove ") + address +
                           " from game world."));
}
