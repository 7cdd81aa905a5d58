#include "HoverStatDisplay.h"

#include "Board.h"
#include "Entity.h"
#include "Tile.h"
#include "core/EventStep.h"

HoverStatDisplay::HoverStatDisplay() {
  setLocation(qv::BOTTOM_RIGHT);
  setViewString("");
  setColor(qv::CYAN);
  registerInterest(qv::STEP_EVENT);
}

int HoverStatDisplay::eventHandler(const qv::Event *p_e) {
  if (qv::ViewObject::eventHandler(p_e) == 1) return 1;
  if (p_e->getType() != qv::STEP_EVENT) return 0;
  Tile *p_tile = getBoard() ? getBoard()->getHovered() : nullptr;
  if (p_tile && !p_tile->isEmpty()) {
    setViewString(p_tile->getOccupant()->getKind() + " | Health: ");
    setValue(p_tile->getOccupant()->getHealth());
    setVisible(true);
  } else {
    setViewString("");
    setVisible(false);
  }
  return 1;
}
