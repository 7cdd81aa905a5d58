// Interest registration and delivery on the managers.
#include <gtest/gtest.h>

#include "EventStep.h"
#include "GameManager.h"
#include "InputManager.h"
#include "WorldFixture.h"

using qv::Event;
using qv::EventStep;
using qv::GameManager;
using qvtest::Probe;

namespace {

class Interest : public qvtest::WorldFixture {
 protected:
  GameManager &game = GameManager::getInstance();
  qv::WorldManager &world = qv::WorldManager::getInstance();
};

}  // namespace

TEST(Event, TypesOfTheEngineEvents) {
  EXPECT_EQ(Event().getType(), "qv-undefined");
  EventStep step(7);
  EXPECT_EQ(step.getType(), "qv-step");
  EXPECT_EQ(step.getStepCount(), 7);
  Event e;
  e.setType("playerturn");
  EXPECT_EQ(e.getType(), "playerturn");
}

TEST_F(Interest, DuplicateRegistrationDeliversOnce) {
  setLogLevel(1);
  Probe p;
  ASSERT_EQ(game.registerInterest(&p, "qv-step"), 0);
  EXPECT_EQ(game.registerInterest(&p, "qv-step"), 0);
  EXPECT_TRUE(log->contains("Manager::registerInterest(): Warning! Not adding id " +
                            std::to_string(p.getId()) + " ((Undefined)) twice for event qv-step."));
  EXPECT_EQ(game.getInterested("qv-step").getCount(), 1);
  const EventStep step(3);
  EXPECT_EQ(game.onEvent(&step), 0);  // the base handler ignores steps
  EXPECT_EQ(p.count("qv-step"), 1);
  EXPECT_EQ(game.unregisterInterest(&p, "qv-step"), 0);
  EXPECT_EQ(game.unregisterInterest(&p, "qv-step"), -1);
  EXPECT_EQ(game.getEventCount(), 0);
  EXPECT_EQ(game.registerInterest(nullptr, "qv-step"), -1);
  EXPECT_EQ(game.getEventCount(), 0);
}

TEST_F(Interest, EmptySlotsCloseUpAndDeliveryCountsAnswers) {
  Probe a, b, c;
  a.on_event = [](const Event *) { return 1; };
  b.on_event = [](const Event *) { return 0; };
  c.on_event = [](const Event *) { return 7; };
  a.registerInterest("one");
  b.registerInterest("two");
  c.registerInterest("two");
  c.registerInterest("three");
  EXPECT_EQ(world.getEventCount(), 3);
  EXPECT_EQ(world.unregisterInterest(&a, "one"), 0);
  EXPECT_EQ(world.getEventCount(), 2);
  EXPECT_TRUE(world.getInterested("one").isEmpty());
  Event two;
  two.setType("two");
  EXPECT_EQ(world.onEvent(&two), 1);  // b answered 0, c answered non-zero
  Event three;
  three.setType("three");
  EXPECT_EQ(world.onEvent(&three), 1);
  EXPECT_EQ(b.count("two"), 1);
  EXPECT_EQ(c.count("three"), 1);
  EXPECT_EQ(world.unregisterInterest(&a, "one"), -1);
  EXPECT_EQ(world.unregisterInterest(&a, "two"), -1);
}

TEST_F(Interest, InactiveObjectsAreSkippedButStayRegistered) {
  Probe p;
  ASSERT_EQ(p.registerInterest("playerturn"), 0);
  Event turn;
  turn.setType("playerturn");
  p.setActive(false);
  world.onEvent(&turn);
  EXPECT_EQ(p.count("playerturn"), 0);
  EXPECT_EQ(world.getInterested("playerturn").getCount(), 1);
  p.setActive(true);
  world.onEvent(&turn);
  EXPECT_EQ(p.count("playerturn"), 1);
}

TEST_F(Interest, RefusedTypesAndUndefinedEvents) {
  setLogLevel(1);
  Probe p;
  EXPECT_EQ(qv::InputManager::getInstance().registerInterest(&p, "qv-step"), -1);
  EXPECT_TRUE(log->contains(
      "Manager(InputManager)::registerInterest(): Event 'qv-step' not valid for this Manager"));
  const Event undefined;
  EXPECT_EQ(game.onEvent(&undefined), 0);
  EXPECT_TRUE(log->contains("Manager(GameManager)::onEvent(): Warning! Event type qv-undefined is undefined."));
  Event turn;
  turn.setType("playerturn");
  EXPECT_EQ(game.onEvent(&turn), 0);
  EXPECT_TRUE(log->contains("Manager(GameManager)::onEvent(): Error! Event type playerturn not valid."));
  EXPECT_FALSE(world.isValid("qv-mouse"));
  EXPECT_TRUE(log->contains("WorldManager::isValid(): WorldManager does not handle qv-mouse"));
  EXPECT_FALSE(world.isValid("qv-out"));
  EXPECT_TRUE(log->contains("WorldManager::isValid(): Event qv-out handled automatically."));
  EXPECT_TRUE(world.isValid("qv-view"));
}

TEST_F(Interest, AHundredTypesPerManager) {
  Probe a, b;
  for (int i = 0; i < qv::MAX_EVENT_TYPES; i++)
    ASSERT_EQ(world.registerInterest(&a, "type" + std::to_string(i)), 0) << i;
  const int lines = static_cast<int>(log->messages().size());
  EXPECT_EQ(world.registerInterest(&b, "one more"), -1);
  EXPECT_EQ(static_cast<int>(log->messages().size()), lines);  // refused without a word
  EXPECT_EQ(world.registerInterest(&b, "type99"), 0);          // known types still take objects
  for (int i = 0; i < qv::MAX_EVENT_TYPES; i++) world.unregisterInterest(&a, "type" + std::to_string(i));
  world.unregisterInterest(&b, "type99");
  EXPECT_EQ(world.getEventCount(), 0);
}

TEST_F(Interest, HandlersMayChangeInterestsDuringDelivery) {
  Probe a, b, c;
  a.registerInterest("ping");
  b.registerInterest("ping");
  // a withdraws b and signs c up, then marks itself for deletion: the
  // delivery in progress still reaches b, not c, and a survives until update.
  a.on_event = [&](const Event *) {
    b.unregisterInterest("ping");
    c.registerInterest("ping");
    world.markForDelete(&a);
    return 1;
  };
  Event ping;
  ping.setType("ping");
  EXPECT_EQ(world.onEvent(&ping), 1);
  EXPECT_EQ(b.count("ping"), 1);
  EXPECT_EQ(c.count("ping"), 0);
  a.on_event = nullptr;
  b.on_event = [](const Event *) { return 1; };
  EXPECT_EQ(world.onEvent(&ping), 0);  // a (base handler) and c answer 0
  EXPECT_EQ(a.count("ping"), 2);
  EXPECT_EQ(c.count("ping"), 1);
  EXPECT_EQ(b.count("ping"), 1);
}
