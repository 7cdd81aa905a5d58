#ifndef TACTICS_HERO_H
#define TACTICS_HERO_H

#include "Entity.h"

// The player's unit. Moves and attacks cost the turn's shared actions; Space
// uses its kind's ability, which ends its part in the turn.
class Hero : public Entity {
 public:
  Hero();
  ~Hero() override;

  bool canAct() const override;
  // Damages an enemy or wall, then spends an action (the last one runs the enemy turn).
  void attack(Entity *p_target) override;
  // "playerturn" wakes the hero; Space, while it is selected, uses its ability.
  int eventHandler(const qv::Event *p_e) override;

 private:
  // Extra actions the ability earns, or -1 when its condition fails.
  int abilityGain();
  int warriorGain();
  int magicianGain();
  int hunterGain();

  bool m_can_act_now = false;  // from a player turn's start until the ability is used
};

#endif
