// A program of another project, built against the installed engine: it starts
// the engine, runs three frames and stops. Exit status 0 when all three ran.

#include "core/EventStep.h"
#include "core/GameManager.h"
#include "world/Object.h"

class Timer : public qv::Object {
 public:
  Timer() { registerInterest(qv::STEP_EVENT); }

  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() != qv::STEP_EVENT) return 0;
    if (static_cast<const qv::EventStep *>(p_e)->getStepCount() == 2)
      qv::GameManager::getInstance().setGameOver();
    return 1;
  }
};

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.startUp() != 0) {
    game_manager.shutDown();
    return 1;
  }
  new Timer;
  game_manager.run();
  const int steps = game_manager.getStepCount();
  game_manager.shutDown();
  return steps == 3 ? 0 : 2;
}
