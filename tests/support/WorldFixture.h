#ifndef QV_TEST_WORLD_FIXTURE_H
#define QV_TEST_WORLD_FIXTURE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "core/Event.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "world/EventCollision.h"
#include "world/Object.h"
#include "world/WorldManager.h"

namespace qvtest {

// Starts only the log and the world manager, with a 160 x 48 world seen
// through an 80 x 24 view, and stops both after the test (the world deletes
// every object the test left behind).
class WorldFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    // Index failures are only reported during a game: an earlier test's
    // shut-down leaves the game over.
    game_over = qv::GameManager::getInstance().getGameOver();
    qv::GameManager::getInstance().setGameOver(false);
    log = std::make_unique<LogCapture>();
    ASSERT_TRUE(log->start());
    ASSERT_EQ(world.startUp(), 0);
    world.setBoundary(qv::Box(qv::Vector(0, 0), 160, 48));
    world.setView(qv::Box(qv::Vector(0, 0), 80, 24));
  }
  void TearDown() override {
    if (world.isStarted()) world.shutDown();
    log.reset();
    qv::GameManager::getInstance().setGameOver(game_over);
  }
  void setLogLevel(int level) { qv::LogManager::getInstance().setLogLevel(level); }

  qv::WorldManager &world = qv::WorldManager::getInstance();
  std::unique_ptr<LogCapture> log;
  bool game_over = false;
};

// An object that records what reaches it and can be told how to answer.
class Probe : public qv::Object {
 public:
  explicit Probe(qv::Vector where = qv::Vector(1, 1)) { setPosition(where); }
  ~Probe() override {
    if (on_delete) on_delete(this);
  }

  int eventHandler(const qv::Event *p_e) override {
    seen.push_back(p_e->getType());
    if (const auto *p_c = dynamic_cast<const qv::EventCollision *>(p_e)) collisions.push_back(*p_c);
    if (on_event) return on_event(p_e);
    return qv::Object::eventHandler(p_e);
  }
  int draw() override {
    if (on_draw) on_draw(this);
    return 0;
  }
  int count(const std::string &type) const {
    return static_cast<int>(std::count(seen.begin(), seen.end(), type));
  }

  std::vector<std::string> seen;                   // event types, in arrival order
  std::vector<qv::EventCollision> collisions;      // copies of collision events
  std::function<int(const qv::Event *)> on_event;  // answer instead of the base handler
  std::function<void(Probe *)> on_draw;
  std::function<void(Probe *)> on_delete;
};

}  // namespace qvtest

#endif
