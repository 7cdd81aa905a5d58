#include "Board.h"

#include <cstdlib>
#include <memory>

#include "Entity.h"
#include "Tile.h"

namespace {

std::unique_ptr<Board> g_p_board;

}  // namespace

Board *getBoard() {
  return g_p_board.get();
}

void setBoard(Board *p_board) {
  if (p_board != g_p_board.get()) g_p_board.reset(p_board);
}

Board::Board() {
  for (int c = 0; c < BOARD_COLUMNS; c++) {
    for (int r = 0; r < BOARD_ROWS; r++) {
      Tile *p_tile = new Tile;
      p_tile->setGridPosition(qv::Vector(static_cast<float>(c), static_cast<float>(r)));
      p_tile->setPosition(
          qv::Vector(static_cast<float>(5 * (c + 4)), static_cast<float>(r + 2 * (r + 4))));
      if (c == 0) p_tile->setBase(true);
      m_tiles[c][r] = p_tile;
    }
  }
}

// The tiles belong to the world, which deletes them when the level is left.
Board::~Board() = default;

Tile *Board::getTile(int column, int row) const {
  return m_tiles[column][row];
}

Tile *Board::getNeighbour(Tile *p_tile, int direction) const {
  if (!p_tile) return nullptr;
  int c = p_tile->getGridX();
  int r = p_tile->getGridY();
  switch (direction) {
    case 1:
      r++;
      break;
    case 2:
      c++;
      break;
    case 3:
      r--;
      break;
    case 4:
      c--;
      break;
    default:
      return nullptr;
  }
  if (c < 0 || c >= BOARD_COLUMNS || r < 0 || r >= BOARD_ROWS) return nullptr;
  return m_tiles[c][r];
}

qv::Vector Board::getSize() const {
  return qv::Vector(BOARD_COLUMNS, BOARD_ROWS);
}

int Board::manhattan(Tile *p_a, Tile *p_b) const {
  if (!p_a || !p_b) return -1;
  return std::abs(p_a->getGridX() - p_b->getGridX()) + std::abs(p_a->getGridY() - p_b->getGridY());
}

int Board::pathLength(qv::Vector from, qv::Vector to) const {
  return boardPathLength(getOccupancy(), static_cast<int>(from.getX()),
                         static_cast<int>(from.getY()), static_cast<int>(to.getX()),
                         static_cast<int>(to.getY()));
}

Occupancy Board::getOccupancy() const {
  Occupancy occupied{};
  for (int c = 0; c < BOARD_COLUMNS; c++)
    for (int r = 0; r < BOARD_ROWS; r++)
      occupied[c][r] = m_tiles[c][r] && !m_tiles[c][r]->isEmpty();
  return occupied;
}

Entity *Board::getSelected() const {
  return m_p_selected;
}
Tile *Board::getHovered() const {
  return m_p_hovered;
}

void Board::showMoveRange(Tile *p_start, int range) {
  const Occupancy occupied = getOccupancy();
  for (int c = 0; c < BOARD_COLUMNS; c++) {
    for (int r = 0; r < BOARD_ROWS; r++) {
      Tile *p_tile = m_tiles[c][r];
      if (!p_tile) continue;
      int d = manhattan(p_start, p_tile);
      bool flag = d <= range && d != 0 && p_tile->isEmpty() &&
                  boardPathLength(occupied, p_start->getGridX(), p_start->getGridY(), c, r,
                                  range + 1) <= range;
      p_tile->setMoveHighlight(flag);
    }
  }
}

void Board::select(Entity *p_entity) {
  m_p_selected = p_entity;
  if (!p_entity) {
    for (int c = 0; c < BOARD_COLUMNS; c++) {
      for (int r = 0; r < BOARD_ROWS; r++) {
        if (!m_tiles[c][r]) continue;
        m_tiles[c][r]->setMoveHighlight(false);
        m_tiles[c][r]->setAttackHighlight(false);
      }
    }
    return;
  }
  Tile *p_start = getTile(p_entity->getGridX(), p_entity->getGridY());
  if (!p_start) return;
  showMoveRange(p_start, p_entity->getMoveRange());
  for (int c = 0; c < BOARD_COLUMNS; c++) {
    for (int r = 0; r < BOARD_ROWS; r++) {
      Tile *p_tile = m_tiles[c][r];
      if (!p_tile) continue;
      p_tile->setAttackHighlight(manhattan(p_tile, p_start) <= p_entity->getAttackRange() &&
                                 !p_tile->isEmpty());
    }
  }
}

void Board::setHovered(Tile *p_tile) {
  if (m_p_hovered) m_p_hovered->setHovered(false);
  p_tile->setHovered(true);
  m_p_hovered = p_tile;
}

void Board::removeTile(Tile *p_tile) {
  if (!p_tile) return;
  int c = p_tile->getGridX();
  int r = p_tile->getGridY();
  if (c >= 0 && c < BOARD_COLUMNS && r >= 0 && r < BOARD_ROWS && m_tiles[c][r] == p_tile)
    m_tiles[c][r] = nullptr;
  if (m_p_hovered == p_tile) m_p_hovered = nullptr;
}
