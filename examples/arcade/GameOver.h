#ifndef ARCADE_GAME_OVER_H
#define ARCADE_GAME_OVER_H

#include "world/Object.h"

// The "gameover" picture for a few seconds after the ship is lost; then it
// clears the world and brings back the title screen.
class GameOver : public qv::Object {
 public:
  GameOver();

  int eventHandler(const qv::Event *p_e) override;

 private:
  int m_steps_left;  // frames until the title screen returns
};

// How long the game-over screen stays, in frames.
const int GAME_OVER_STEPS = 100;

#endif
