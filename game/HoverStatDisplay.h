#ifndef TACTICS_HOVER_STAT_DISPLAY_H
#define TACTICS_HOVER_STAT_DISPLAY_H

#include "graphics/ViewObject.h"

// The unit under the mouse (the last tile it entered), bottom right; hidden over an empty tile.
// Refreshed on every step.
class HoverStatDisplay : public qv::ViewObject {
 public:
  HoverStatDisplay();

  int eventHandler(const qv::Event *p_e) override;
};

#endif
