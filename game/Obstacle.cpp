#include "Obstacle.h"

#include "GameState.h"

Obstacle::Obstacle() {
  setType("Obstacle");
  setKind("Obstacle");
  setSprites("obstacle", "obstacle");
  setSprite("obstacle");
  setRanges(0, getAttackRange());
  setKillable(true);
  GameState::getInstance().addObstacle(this);
}

Obstacle::~Obstacle() {
  GameState::getInstance().removeObstacle(this);
}
