#ifndef TACTICS_TILE_H
#define TACTICS_TILE_H

#include <string>

#include "world/Object.h"

class Entity;

// One square of the board: its grid position, the unit standing on it, and
// its colours (base, hovered, highlighted). Turns the player's mouse input
// into selection, movement and attack.
class Tile : public qv::Object {
 public:
  // Lifecycle.
  Tile();
  ~Tile() override;  // tells the board, so nothing follows a destroyed tile

  // Queries.
  int getGridX() const;
  int getGridY() const;
  Entity *getOccupant() const;
  bool isEmpty() const;
  bool isBase() const;
  bool isHovered() const;
  bool inMoveRange() const;
  bool inAttackRange() const;

  // Commands. Each colour change ends by showing the sprite its rule picks.
  void setGridPosition(qv::Vector position);  // truncated to whole columns and rows
  void setOccupant(Entity *p_entity);
  void clearOccupant();
  void setBase(bool flag);
  void setHovered(bool flag);
  void setMoveHighlight(bool flag);
  void setAttackHighlight(bool flag);

  int eventHandler(const qv::Event *p_e) override;

 private:
  void leftClick();

  int m_column = 0;
  int m_row = 0;
  bool m_hovered = false;
  bool m_base = false;
  bool m_in_move_range = false;
  bool m_in_attack_range = false;
  Entity *m_p_occupant = nullptr;                // not owned
  std::string m_base_label = "tile-white";       // "tile-cyan" on the base column
  std::string m_highlight_label = "tile-green";  // or "tile-red"
};

#endif
