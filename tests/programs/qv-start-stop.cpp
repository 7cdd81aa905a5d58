// Run by the tests as a child process: starts the engine from the working
// directory's configuration, loads boom.wav as a sound and as music, plays
// and stops both, and shuts down. Exit status 0 when both loads succeeded and
// both labels resolve, 2 otherwise, 1 when the engine did not start.

#include "core/GameManager.h"
#include "resources/ResourceManager.h"

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.startUp() != 0) {
    game_manager.shutDown();
    return 1;
  }
  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  const bool loaded =
      rm.loadSound("boom.wav", "boom") == 0 && rm.loadMusic("boom.wav", "tune") == 0;
  qv::Sound *p_sound = rm.getSound("boom");
  qv::Music *p_music = rm.getMusic("tune");
  if (p_sound && p_music) {
    p_sound->play();
    p_music->play();
    p_sound->stop();
    p_music->stop();
  }
  game_manager.shutDown();
  return loaded && p_sound && p_music ? 0 : 2;
}
