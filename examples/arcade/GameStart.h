#ifndef ARCADE_GAME_START_H
#define ARCADE_GAME_START_H

#include "world/Object.h"

// The title screen: the "gamestart" picture and the start music. P starts a
// game, Q ends the program. It waits, inactive, while a game is on, and the
// game-over screen brings it back.
class GameStart : public qv::Object {
 public:
  GameStart();

  int eventHandler(const qv::Event *p_e) override;
  // Shows the title screen again and plays its music.
  int setActive(bool active = true) override;

 private:
  // Hides the title screen and makes the ship, the displays and the enemies.
  void start();
};

#endif
