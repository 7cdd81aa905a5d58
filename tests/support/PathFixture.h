#ifndef QV_TEST_PATH_FIXTURE_H
#define QV_TEST_PATH_FIXTURE_H

#include <string>
#include <vector>

#include "WorldFixture.h"
#include "path/EventPath.h"
#include "path/PathFind.h"
#include "path/PathManager.h"

namespace qvtest {

// The world fixture plus a started path manager, in a world whose size each
// test picks before creating objects.
class PathFixture : public WorldFixture {
 protected:
  void SetUp() override {
    WorldFixture::SetUp();
    ASSERT_EQ(qv::PathManager::getInstance().startUp(), 0);
  }
  void TearDown() override {
    qv::PathManager &paths = qv::PathManager::getInstance();
    if (paths.isStarted()) paths.shutDown();
    // The world deletes what is left; each object delists its own search.
    WorldFixture::TearDown();
    EXPECT_EQ(paths.getSearchCount(), 0);
  }

  void setWorld(int columns, int rows) {
    qv::WorldManager::getInstance().setBoundary(
        qv::Box(qv::Vector(0, 0), static_cast<float>(columns), static_cast<float>(rows)));
  }

  // A one-cell object at (x, y).
  Probe *block(int x, int y, qv::Solidness solidness = qv::HARD) {
    Probe *p_o = new Probe(qv::Vector(static_cast<float>(x), static_cast<float>(y)));
    p_o->setSolidness(solidness);
    return p_o;
  }

  // Hard one-cell objects on the eight cells around (x, y).
  void surround(int x, int y) {
    for (int dy = -1; dy <= 1; dy++)
      for (int dx = -1; dx <= 1; dx++)
        if (dx != 0 || dy != 0) block(x + dx, y + dy);
  }

  // Steps the search until it ends; returns its result and counts the steps.
  static int finish(qv::PathFind &search, int *p_steps = nullptr, int limit = 100000) {
    int result = qv::PATH_SEARCHING;
    int steps = 0;
    while (result == qv::PATH_SEARCHING && steps < limit) {
      result = search.cycleOnce();
      steps++;
    }
    if (p_steps) *p_steps = steps;
    return result;
  }
};

}  // namespace qvtest

#endif
