// Program entry: start the engine, let the game set itself up, run the frame
// loop until game over, shut down. Exit status 1 when the engine cannot start.

#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/Splash.h"
#include "platform/platform.h"

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.startUp() != 0) {
    qv::LogManager::getInstance().writeLog("Error starting game manager!");
    game_manager.shutDown();
    return 1;
  }

  // The game's start-up (display size, flushing log, splash, assets, title
  // screen) goes here.
  qv::splash();

  // Ctrl-C or closing the window during the opening sequence ends the whole
  // program, not just the sequence: the stop request outlives the splash's loop.
  if (!qv::platform::stopRequested()) game_manager.run();
  game_manager.shutDown();
  return 0;
}
