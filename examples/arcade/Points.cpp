#include "Points.h"

#include "graphics/EventView.h"
#include "world/WorldManager.h"

Points::Points() {
  setType("Points");
  setViewString(POINTS);
  setColor(qv::YELLOW);
  setLocation(qv::TOP_RIGHT);
}

void addPoints(int points) {
  qv::EventView event(POINTS, points, true);
  qv::WorldManager::getInstance().onEvent(&event);
}
