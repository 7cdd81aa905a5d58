// Interest registration and delivery on the managers.
#include <gtest/gtest.h>

#include "WorldFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "input/InputManager.h"

using qv::Event;
using qvtest::Probe;

namespace {

class Interest : public qvtest::WorldFixture {
 protected:
  qv::GameManager &game = qv::GameManager::getInstance();
  qv::WorldManager &world = qv::WorldManager::getInstance();
};

}  // namespace

// Delivery answers how many handlers answered non-zero, and skips inactive
// objects; an emptied slot closes up. Each manager takes its own types, a
// hundred at most.
TEST_F(Interest, RegistrationDeliveryAndRefusals) {
  setLogLevel(1);
  Probe p, b, c;
  ASSERT_EQ(game.registerInterest(&p, "qv-step"), 0);
  EXPECT_EQ(game.registerInterest(&p, "qv-step"), 0);
  const qv::EventStep step(3);
  EXPECT_EQ(game.onEvent(&step), 0);  // the base handler ignores steps
  EXPECT_EQ(p.count("qv-step"), 1);
  EXPECT_EQ(game.unregisterInterest(&p, "qv-step"), 0);
  EXPECT_EQ(game.unregisterInterest(&p, "qv-step"), -1);
  EXPECT_EQ(game.getEventCount(), 0);
  EXPECT_EQ(game.registerInterest(nullptr, "qv-step"), -1);

  b.on_event = [](const Event *) { return 0; };
  c.on_event = [](const Event *) { return 7; };
  b.registerInterest("two");
  c.registerInterest("two");
  Event two, turn, undefined;
  two.setType("two");
  turn.setType("playerturn");
  EXPECT_EQ(world.onEvent(&two), 1);
  c.setActive(false);
  EXPECT_EQ(world.onEvent(&two), 0);
  EXPECT_EQ((std::vector<int>{b.count("two"), c.count("two")}), (std::vector<int>{2, 1}));

  EXPECT_EQ(qv::InputManager::getInstance().registerInterest(&p, "qv-step"), -1);
  EXPECT_EQ(game.onEvent(&undefined) + game.onEvent(&turn), 0);
  EXPECT_FALSE(world.isValid("qv-mouse") || world.isValid("qv-out"));
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "Manager::registerInterest(): Warning! Not adding id " + std::to_string(p.getId()) +
                    " ((Undefined)) twice for event qv-step.",
                "Manager(InputManager)::registerInterest(): Event 'qv-step' not valid for this "
                "Manager",
                "Manager(GameManager)::onEvent(): Warning! Event type qv-undefined is undefined.",
                "Manager(GameManager)::onEvent(): Error! Event type playerturn not valid.",
                "WorldManager::isValid(): WorldManager does not handle qv-mouse",
                "WorldManager::isValid(): Event qv-out handled automatically."}));

  // A hundred types per manager, "two" among them; the next is refused
  // without a word.
  for (int i = 1; i < qv::MAX_EVENT_TYPES; i++)
    ASSERT_EQ(world.registerInterest(&p, "type" + std::to_string(i)), 0) << i;
  const size_t lines = log->messages().size();
  EXPECT_EQ(world.registerInterest(&b, "one more"), -1);
  EXPECT_EQ(log->messages().size(), lines);
  EXPECT_EQ(world.registerInterest(&b, "type99"), 0);  // known types still take objects

  // p withdraws b and signs c up, then marks itself for deletion: the
  // delivery in progress still reaches b, not c, and p survives until the update.
  c.setActive(true);
  p.on_event = [&](const Event *) {
    world.unregisterInterest(&b, "type99");
    c.registerInterest("type99");
    world.markForDelete(&p);
    return 1;
  };
  Event last;
  last.setType("type99");
  EXPECT_EQ(world.onEvent(&last), 1);
  EXPECT_EQ((std::vector<int>{b.count("type99"), c.count("type99")}), (std::vector<int>{1, 0}));
  p.on_event = nullptr;
  EXPECT_EQ(world.onEvent(&last), 1);  // c's answer now
  EXPECT_EQ((std::vector<int>{p.count("type99"), b.count("type99"), c.count("type99")}),
            (std::vector<int>{2, 1, 1}));
}
