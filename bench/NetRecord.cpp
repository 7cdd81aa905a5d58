#include <benchmark/benchmark.h>

#include <sstream>

#include "core/EventStep.h"
#include "graphics/TextBox.h"
#include "world/Object.h"
#include "world/WorldManager.h"

namespace {

// Writing and reading the full record of a busy object: what a game pays per
// object it sends to another copy each frame.
void BM_ObjectRecordRoundTrip(benchmark::State &state) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.startUp();
  qv::Object *p_src = new qv::Object;
  p_src->setType("Hero");
  p_src->setVelocity(qv::Vector(1, 0.5f));
  p_src->registerInterest("playerturn");
  p_src->registerInterest(qv::STEP_EVENT);
  qv::Object *p_dst = new qv::Object;
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::stringstream ss;
    p_src->serialize(&ss, qv::ALL_OBJECT_ATTRIBUTES);
    p_dst->deserialize(&ss);
    bytes += ss.str().size();
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
  world.shutDown();
}
BENCHMARK(BM_ObjectRecordRoundTrip);

void BM_TextBoxRecordRoundTrip(benchmark::State &state) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.startUp();
  qv::TextBox *p_src = new qv::TextBox;
  p_src->setText("The Warrior strikes the Ogre for 4 damage.");
  qv::TextBox *p_dst = new qv::TextBox;
  for (auto _ : state) {
    std::stringstream ss;
    p_src->serialize(&ss, 0x3FFFFF);
    p_dst->deserialize(&ss);
  }
  world.shutDown();
}
BENCHMARK(BM_TextBoxRecordRoundTrip);

}  // namespace
