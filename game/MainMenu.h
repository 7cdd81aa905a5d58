#ifndef TACTICS_MAIN_MENU_H
#define TACTICS_MAIN_MENU_H

#include "world/Object.h"

// The title screen: plays the menu music; P starts a level, Q quits. Made
// once and never deleted: inactive during a level, woken when it is left.
class MainMenu : public qv::Object {
 public:
  MainMenu();

  int eventHandler(const qv::Event *p_e) override;
  // Creates every object of a level, scatters the walls and starts turn one.
  void startLevel();
  // Back on the title screen with its music.
  void returnToMenu();
};

#endif
