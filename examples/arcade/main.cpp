// An arcade game on the engine: a ship at the left fires at saucers and
// drones flying in from the right. P starts, W and S (or the arrow keys)
// move, Space fires, Enter sets off the one nuke, Q gives up or quits.
// Run it from the engine's run folder (build/run), where its assets are.

#include "GameStart.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "resources.h"

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.startUp() != 0) {
    qv::LogManager::getInstance().writeLog("Error starting game manager!");
    game_manager.shutDown();
    return 1;
  }
  loadResources();
  new GameStart;  // the world owns it from here on
  game_manager.run();
  game_manager.shutDown();
  return 0;
}
