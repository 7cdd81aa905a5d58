#ifndef TACTICS_EVENT_PLAYER_TURN_H
#define TACTICS_EVENT_PLAYER_TURN_H

#include <string>

#include "core/Event.h"

const std::string PLAYERTURN_EVENT = "playerturn";

// Starts a player turn: every hero may act again. Carries no data.
class EventPlayerTurn : public qv::Event {
 public:
  EventPlayerTurn();
};

#endif
