#ifndef TACTICS_OBSTACLE_H
#define TACTICS_OBSTACLE_H

#include "Entity.h"

// A wall: blocks paths, never moves, can be broken down.
class Obstacle : public Entity {
 public:
  Obstacle();
  ~Obstacle() override;
};

#endif
