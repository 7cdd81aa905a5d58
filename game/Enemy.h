#ifndef TACTICS_ENEMY_H
#define TACTICS_ENEMY_H

#include "Entity.h"

// A monster walking in from the right toward the base column.
class Enemy : public Entity {
 public:
  Enemy();
  ~Enemy() override;

  // Damages a hero or a wall; costs nothing and plays nothing.
  void attack(Entity *p_target) override;
  // One enemy turn: attack the first target in reach, else walk toward the
  // nearest goal (base tiles and heroes). Nothing when boxed in.
  void takeTurn();
};

#endif
