// A program of another project, built against the installed engine: it starts
// the engine, runs a frame and stops. Exit status 0 when all of that worked.

#include <csignal>

#include "core/GameManager.h"

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  const bool started = game_manager.startUp() == 0;
  if (started) {
    std::raise(SIGINT);  // the engine's own stop request: the loop ends after one frame
    game_manager.run();
  }
  const bool ran = started && game_manager.getStepCount() == 1;
  game_manager.shutDown();
  return ran ? 0 : 1;
}
