#ifndef TACTICS_BOARD_H
#define TACTICS_BOARD_H

#include "BoardPath.h"
#include "world/Vector.h"

class Entity;
class Tile;

// The 12 x 12 battlefield: its tiles (world objects, owned by the world), the
// selected unit and the tile under the mouse. Not a world object itself.
class Board {
 public:
  // Lifecycle: creates the 144 tiles at their world positions, column 0 the base.
  Board();
  ~Board();

  // Queries. Tiles are indexed by column, then row, both 0..11 (unchecked);
  // a tile the world has already destroyed reads as none.
  Tile *getTile(int column, int row) const;
  // The adjacent tile: 1 down, 2 right, 3 up, 4 left; none at the edge.
  Tile *getNeighbour(Tile *p_tile, int direction) const;
  qv::Vector getSize() const;                 // (columns, rows)
  int manhattan(Tile *p_a, Tile *p_b) const;  // -1 if either is missing
  // Steps of the path the board's A* search finds through empty tiles, or
  // 10000. A tile already waiting to be searched keeps the step count it was
  // first given, so this can exceed the shortest path; every rule relies on it.
  int pathLength(qv::Vector from, qv::Vector to) const;
  // Which tiles hold a unit now: for many path searches on an unchanged board.
  Occupancy getOccupancy() const;
  Entity *getSelected() const;
  Tile *getHovered() const;

  // Commands.
  // Green (hero) or red (enemy) move highlights on the empty tiles in reach.
  void showMoveRange(Tile *p_start, int range);
  // Selects a unit (or none) and recolours every tile for its reach.
  void select(Entity *p_entity);
  void setHovered(Tile *p_tile);
  // Called by a tile the world is destroying, so nothing follows it later.
  void removeTile(Tile *p_tile);

 private:
  Board(const Board &) = delete;
  Board &operator=(const Board &) = delete;

  Tile *m_tiles[BOARD_COLUMNS][BOARD_ROWS];  // [column][row]; none once destroyed
  Tile *m_p_hovered = nullptr;               // the tile the mouse entered last
  Entity *m_p_selected = nullptr;
};

// The current level's board, none before the first level. Setting a new one
// deletes the one it replaces (whose tiles are gone by then).
Board *getBoard();
void setBoard(Board *p_board);

#endif
