// One world update of 10,000 moving solid objects in a 2000 x 2000 world,
// with the collision grid and with one cell covering the whole world (every
// solid object tested), and the deletion of all of them in one update.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

#include "core/LogManager.h"
#include "world/EventCollision.h"
#include "world/EventOut.h"
#include "world/Grid.h"
#include "world/Object.h"
#include "world/WorldManager.h"

namespace {

const int OBJECTS = 10000;
const float WORLD_SIZE = 2000;

// Turns back when it meets something or leaves the world, as a game object
// would, so that the crowd stays spread over the world.
class Bouncer : public qv::Object {
 public:
  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() == qv::COLLISION_EVENT || p_e->getType() == qv::OUT_EVENT) {
      qv::Vector v = getVelocity();
      v.scale(-1);
      setVelocity(v);
      return 1;
    }
    return 0;
  }
};

float randomIn(float low, float high) {
  return low + (high - low) * static_cast<float>(std::rand()) / static_cast<float>(RAND_MAX);
}

// Starts the world with the given grid cell size (0: the configured one)
// and fills it with OBJECTS bouncers at fixed pseudo-random places.
void fillWorld(int cell_size) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  qv::Grid &grid = world.getSceneGraph().getGrid();
  if (cell_size > 0) grid.setCellSize(cell_size, cell_size);
  world.startUp();
  world.setBoundary(qv::Box(qv::Vector(0, 0), WORLD_SIZE, WORLD_SIZE));
  std::srand(1);
  for (int i = 0; i < OBJECTS; i++) {
    Bouncer *p_o = new Bouncer;
    p_o->setPosition(qv::Vector(randomIn(0, WORLD_SIZE), randomIn(0, WORLD_SIZE)));
    p_o->setVelocity(qv::Vector(randomIn(-1, 1), randomIn(-1, 1)));
  }
}

void emptyWorld() {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.shutDown();
  world.getSceneGraph().getGrid().setCellSize(20, 8);
}

void runUpdates(benchmark::State &state, int cell_size) {
  fillWorld(cell_size);
  qv::WorldManager &world = qv::WorldManager::getInstance();
  for (auto _ : state) world.update();
  state.counters["objects"] = world.getAllObjects().getCount();
  emptyWorld();
}

void BM_WorldUpdateGrid(benchmark::State &state) {
  runUpdates(state, 0);
}

void BM_WorldUpdateNoGrid(benchmark::State &state) {
  runUpdates(state, static_cast<int>(WORLD_SIZE));
}

void BM_WorldDeleteAll(benchmark::State &state) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  for (auto _ : state) {
    state.PauseTiming();
    fillWorld(0);
    const qv::ObjectList all = world.getAllObjects();
    state.ResumeTiming();
    for (int i = 0; i < all.getCount(); i++) world.markForDelete(all[i]);
    world.update();
    state.PauseTiming();
    if (!world.getAllObjects(true).isEmpty()) state.SkipWithError("objects left after the update");
    emptyWorld();
    state.ResumeTiming();
  }
}

}  // namespace

BENCHMARK(BM_WorldUpdateGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WorldUpdateNoGrid)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_WorldDeleteAll)->Unit(benchmark::kMillisecond)->Iterations(10);
