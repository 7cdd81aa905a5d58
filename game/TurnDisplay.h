#ifndef TACTICS_TURN_DISPLAY_H
#define TACTICS_TURN_DISPLAY_H

#include "graphics/ViewObject.h"

// Whose turn it is, or the result, top left. Refreshed on every step.
class TurnDisplay : public qv::ViewObject {
 public:
  TurnDisplay();

  int eventHandler(const qv::Event *p_e) override;
};

#endif
