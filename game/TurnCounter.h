#ifndef TACTICS_TURN_COUNTER_H
#define TACTICS_TURN_COUNTER_H

#include "graphics/ViewObject.h"

// The turn number, top centre. Refreshed on every step.
class TurnCounter : public qv::ViewObject {
 public:
  TurnCounter();

  int eventHandler(const qv::Event *p_e) override;
};

#endif
