#ifndef ARCADE_SHIP_H
#define ARCADE_SHIP_H

#include "input/EventKeyboard.h"
#include "world/Object.h"

// The view string of the nukes display.
const char *const NUKES = "Nukes";

// The player's ship at the left of the screen. W and S (or the arrow keys)
// move it, Space fires, Enter sets off the nuke, Q gives up. A saucer that
// reaches it ends the game.
class Ship : public qv::Object {
 public:
  Ship();

  int eventHandler(const qv::Event *p_e) override;

 private:
  void keyboard(const qv::EventKeyboard *p_keyboard);
  void move(float dy);
  void fire();
  void nuke();
  void end();

  int m_move_wait;  // frames until the ship may move again
  int m_fire_wait;  // frames until it may fire again
  int m_nukes;      // nukes left
};

#endif
