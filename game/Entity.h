#ifndef TACTICS_ENTITY_H
#define TACTICS_ENTITY_H

#include <string>

#include "world/Object.h"

// A unit standing on the board: hero, enemy or wall. Keeps the board's
// occupant links right when it moves or goes, and takes damage.
class Entity : public qv::Object {
 public:
  // Lifecycle. Starts at column 3, row 3, the occupant of no tile.
  Entity();
  // Frees its tile and drops the board's selection if it was the selected unit.
  ~Entity() override;

  // Queries.
  int getGridX() const;
  int getGridY() const;
  int getHealth() const;
  int getMoveRange() const;
  int getAttackRange() const;
  int getDamage() const;
  std::string getKind() const;
  bool isKillable() const;
  bool isDead() const;          // marked for deletion by damage
  virtual bool canAct() const;  // may still act in this player turn

  // Commands.
  // A killable unit below 1 health is marked for deletion; it keeps its tile
  // until the world deletes it at the end of the frame.
  void setHealth(int value);
  // Column, row and screen position; tile occupants are not touched.
  void setGridPosition(qv::Vector position);
  // The only way a unit changes tiles: 0, or -1 when the tile is taken or there
  // is no board. An enemy arriving on the base column loses the game.
  int moveTo(qv::Vector position);
  // Numbers and pictures of one of the game's kinds, if it fits this class.
  void applyKind(std::string name);
  virtual void attack(Entity *p_target);

 protected:
  void setKind(std::string kind);
  void setSprites(std::string active, std::string inactive);
  std::string getActiveSprite() const;
  std::string getInactiveSprite() const;
  void setRanges(int move_range, int attack_range);
  void setKillable(bool killable);

 private:
  int m_column = 3;
  int m_row = 3;
  int m_health = 1;
  int m_move_range = 2;
  int m_attack_range = 1;  // Manhattan steps for heroes, path steps for enemies
  int m_damage = 1;
  bool m_killable = false;  // may be attacked, and dies below 1 health
  std::string m_kind;
  std::string m_active_sprite = "entity-default";
  std::string m_inactive_sprite = "entity-default";
  bool m_dead = false;
};

#endif
