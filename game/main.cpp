// Program entry: start the engine, set up the screen and the world, show the
// splash, load the assets, open the title screen and run until game over.
// Exit status 1 when the engine cannot start.

#include "MainMenu.h"
#include "assets.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "graphics/Splash.h"
#include "platform/platform.h"
#include "world/WorldManager.h"

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.startUp() != 0) {
    qv::LogManager::getInstance().writeLog("Error starting game manager!");
    game_manager.shutDown();
    return 1;
  }

  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  display.setVerticalChars(24);
  display.setHorizontalChars(80);
  // The world is twice the screen each way; the camera scrolls over it.
  qv::WorldManager::getInstance().setBoundary(qv::Box(qv::Vector(0, 0), 160, 48));
  qv::LogManager::getInstance().setFlush(true);

  qv::splash();
  // Ctrl-C or closing the window during the splash ends the whole program.
  if (!qv::platform::stopRequested()) {
    loadAssets();
    new MainMenu;
    game_manager.run();
  }
  game_manager.shutDown();
  return 0;
}
