#ifndef TACTICS_ACTION_DISPLAY_H
#define TACTICS_ACTION_DISPLAY_H

#include "graphics/ViewObject.h"

// The action points left in this player turn, top right. Refreshed on every step.
class ActionDisplay : public qv::ViewObject {
 public:
  ActionDisplay();

  int eventHandler(const qv::Event *p_e) override;
};

#endif
