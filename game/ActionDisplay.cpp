#include "ActionDisplay.h"

#include "GameState.h"
#include "core/EventStep.h"

ActionDisplay::ActionDisplay() {
  setLocation(qv::TOP_RIGHT);
  setViewString("Actions: ");
  setColor(qv::CYAN);
  registerInterest(qv::STEP_EVENT);
}

int ActionDisplay::eventHandler(const qv::Event *p_e) {
  if (qv::ViewObject::eventHandler(p_e) == 1) return 1;
  if (p_e->getType() != qv::STEP_EVENT) return 0;
  setValue(GameState::getInstance().getActions());
  return 1;
}
