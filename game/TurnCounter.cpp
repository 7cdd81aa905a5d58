#include "TurnCounter.h"

#include "GameState.h"
#include "core/EventStep.h"

TurnCounter::TurnCounter() {
  setLocation(qv::TOP_CENTER);
  setViewString("Turn ");
  setColor(qv::CYAN);
  registerInterest(qv::STEP_EVENT);
}

int TurnCounter::eventHandler(const qv::Event *p_e) {
  if (qv::ViewObject::eventHandler(p_e) == 1) return 1;
  if (p_e->getType() != qv::STEP_EVENT) return 0;
  setValue(GameState::getInstance().getTurn());
  setDrawValue(true);
  return 1;
}
