#include "TurnDisplay.h"

#include "GameState.h"
#include "core/EventStep.h"

namespace {

const char *const TURN_LABEL = "Current Turn: ";

// The word after the label; "Enemy" never reaches the screen, since the
// enemy turn starts and ends inside one frame.
const char *phaseWord(int phase) {
  switch (phase) {
    case PLAYER_TURN:
      return "Player";
    case ENEMY_TURN:
      return "Enemy";
    case VICTORY:
      return "Victory!";
    case LOSS:
      return "Loss...";
    default:
      return "";
  }
}

}  // namespace

TurnDisplay::TurnDisplay() {
  setLocation(qv::TOP_LEFT);
  setViewString(TURN_LABEL);
  setColor(qv::CYAN);
  setDrawValue(false);
  registerInterest(qv::STEP_EVENT);
}

int TurnDisplay::eventHandler(const qv::Event *p_e) {
  if (qv::ViewObject::eventHandler(p_e) == 1) return 1;
  if (p_e->getType() != qv::STEP_EVENT) return 0;
  setViewString(std::string(TURN_LABEL) + phaseWord(GameState::getInstance().getPhase()));
  return 1;
}
