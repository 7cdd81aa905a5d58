// Path searches across a 160 x 48 world, the size of a game level: from one
// corner to the opposite one in an empty world, and around a wall that
// leaves only a gap at the bottom. Reported: steps (cells expanded) and time
// to completion, frames when the path manager runs at its 3 ms floor, and
// the allocations made by the steps themselves (the node graph and both
// lists are allocated once, when the search is built).
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "path/EventPath.h"
#include "path/PathFind.h"
#include "path/PathManager.h"
#include "world/Object.h"
#include "world/WorldManager.h"

// Every allocation of the benchmark program passes through here and is
// counted, so a benchmark can tell how many a piece of code made.
namespace {
std::atomic<long long> g_allocations{0};
}

void *operator new(std::size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  if (void *p = std::malloc(size ? size : 1)) return p;
  throw std::bad_alloc();
}
// The matching release: GCC cannot see that the replaced new above uses
// malloc, and would warn about every free below.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void operator delete(void *p) noexcept {
  std::free(p);
}
void operator delete(void *p, std::size_t) noexcept {
  std::free(p);
}
#pragma GCC diagnostic pop

namespace {

const int COLUMNS = 160;
const int ROWS = 48;
const int WALL_X = 80;
const int WALL_GAP = 3;  // free rows left at the bottom of the wall

// Starts the world at level size; with a wall, one HARD object per cell of
// column WALL_X from the top down to the gap.
qv::Object *buildWorld(bool wall) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.startUp();
  world.setBoundary(qv::Box(qv::Vector(0, 0), COLUMNS, ROWS));
  if (wall)
    for (int y = 0; y < ROWS - WALL_GAP; y++)
      (new qv::Object)->setPosition(qv::Vector(WALL_X, static_cast<float>(y)));
  qv::Object *p_mover = new qv::Object;
  p_mover->setSolidness(qv::SOFT);
  return p_mover;
}

void runSearch(benchmark::State &state, bool wall, qv::Vector start, qv::Vector goal) {
  qv::Object *p_mover = buildWorld(wall);
  p_mover->setPosition(start);
  long long steps = 0, step_allocations = 0, build_allocations = 0, nodes = 0;
  for (auto _ : state) {
    const long long before_build = g_allocations.load();
    qv::PathFind search(p_mover, start, goal);
    const long long before_steps = g_allocations.load();
    steps = 0;
    int result = qv::PATH_SEARCHING;
    while (result == qv::PATH_SEARCHING) {
      result = search.cycleOnce();
      steps++;
    }
    step_allocations = g_allocations.load() - before_steps;
    build_allocations = before_steps - before_build;
    state.PauseTiming();
    nodes = search.getPath().getNodeCount();
    state.ResumeTiming();
  }
  state.counters["steps"] = static_cast<double>(steps);
  state.counters["path_nodes"] = static_cast<double>(nodes);
  state.counters["build_allocs"] = static_cast<double>(build_allocations);
  state.counters["step_allocs"] = static_cast<double>(step_allocations);
  state.counters["allocs_per_step"] =
      static_cast<double>(step_allocations) / static_cast<double>(steps);
  qv::WorldManager::getInstance().shutDown();
}

// Through the path manager, one cycle per frame at the 3 ms floor.
void runFrames(benchmark::State &state, bool wall, qv::Vector start, qv::Vector goal) {
  qv::Object *p_mover = buildWorld(wall);
  p_mover->setPosition(start);
  qv::PathManager &paths = qv::PathManager::getInstance();
  paths.startUp();
  long long frames = 0;
  for (auto _ : state) {
    paths.findPath(p_mover, goal);
    frames = 0;
    while (paths.getSearchCount() > 0) {
      paths.cycle(3);
      frames++;
    }
  }
  state.counters["frames"] = static_cast<double>(frames);
  state.counters["found"] = p_mover->getPath().getNodeCount() > 0 ? 1 : 0;
  paths.shutDown();
  qv::WorldManager::getInstance().shutDown();
}

void BM_PathEmptyCorner(benchmark::State &state) {
  runSearch(state, false, qv::Vector(0, 0), qv::Vector(COLUMNS - 1, ROWS - 1));
}
void BM_PathWallDetour(benchmark::State &state) {
  runSearch(state, true, qv::Vector(10, 10), qv::Vector(150, 10));
}
void BM_PathEmptyCornerFrames(benchmark::State &state) {
  runFrames(state, false, qv::Vector(0, 0), qv::Vector(COLUMNS - 1, ROWS - 1));
}
void BM_PathWallDetourFrames(benchmark::State &state) {
  runFrames(state, true, qv::Vector(10, 10), qv::Vector(150, 10));
}

}  // namespace

BENCHMARK(BM_PathEmptyCorner)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PathWallDetour)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PathEmptyCornerFrames)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PathWallDetourFrames)->Unit(benchmark::kMillisecond);
