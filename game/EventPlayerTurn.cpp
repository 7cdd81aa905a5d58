#include "EventPlayerTurn.h"

EventPlayerTurn::EventPlayerTurn() {
  setType(PLAYERTURN_EVENT);
}
