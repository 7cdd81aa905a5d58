#include "Board.h"

#include <cstdlib>
#include <memory>
#include <vector>

#include "Entity.h"
#include "Tile.h"

namespace {

const int UNREACHABLE = 10000;
const int NO_SCORE = 9999;  // above every score a search on the board can reach

std::unique_ptr<Board> g_p_board;

}  // namespace

Board *getBoard() {
  return g_p_board.get();
}

void setBoard(Board *p_board) {
  if (p_board != g_p_board.get()) g_p_board.reset(p_board);
}

Board::Board() {
  for (int c = 0; c < COLUMNS; c++) {
    for (int r = 0; r < ROWS; r++) {
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
  if (c < 0 || c >= COLUMNS || r < 0 || r >= ROWS) return nullptr;
  return m_tiles[c][r];
}

qv::Vector Board::getSize() const {
  return qv::Vector(COLUMNS, ROWS);
}

int Board::manhattan(Tile *p_a, Tile *p_b) const {
  if (!p_a || !p_b) return -1;
  return std::abs(p_a->getGridX() - p_b->getGridX()) + std::abs(p_a->getGridY() - p_b->getGridY());
}

int Board::pathLength(qv::Vector from, qv::Vector to) const {
  Tile *p_start = getTile(static_cast<int>(from.getX()), static_cast<int>(from.getY()));
  Tile *p_goal = getTile(static_cast<int>(to.getX()), static_cast<int>(to.getY()));
  // A tile enters the open list at most once, so one g per tile is its node.
  struct Node {
    Tile *p_tile;
    int g;
  };
  std::vector<Node> open = {{p_start, 0}};
  std::vector<Tile *> closed;
  auto contains = [](const std::vector<Tile *> &tiles, Tile *p_tile) {
    for (Tile *p : tiles)
      if (p == p_tile) return true;
    return false;
  };
  while (!open.empty()) {
    size_t best = open.size();
    int best_score = NO_SCORE;
    for (size_t i = 0; i < open.size(); i++) {
      int score = open[i].g + manhattan(open[i].p_tile, p_goal);
      if (score < best_score) {
        best_score = score;
        best = i;
      }
    }
    if (best == open.size()) break;
    Node node = open[best];
    open.erase(open.begin() + static_cast<long>(best));
    closed.push_back(node.p_tile);
    if (node.p_tile == p_goal) return node.g;
    for (int direction = 1; direction <= 4; direction++) {
      Tile *p_next = getNeighbour(node.p_tile, direction);
      if (!p_next || contains(closed, p_next)) continue;
      bool queued = false;
      for (const Node &n : open) queued = queued || n.p_tile == p_next;
      if (queued) continue;
      if (!p_next->isEmpty() && p_next != p_goal) continue;
      open.push_back({p_next, node.g + 1});
    }
  }
  return UNREACHABLE;
}

Entity *Board::getSelected() const {
  return m_p_selected;
}
Tile *Board::getHovered() const {
  return m_p_hovered;
}

void Board::showMoveRange(Tile *p_start, int range) {
  for (int c = 0; c < COLUMNS; c++) {
    for (int r = 0; r < ROWS; r++) {
      Tile *p_tile = m_tiles[c][r];
      if (!p_tile) continue;
      int d = manhattan(p_start, p_tile);
      bool flag = d <= range && d != 0 &&
                  pathLength(qv::Vector(static_cast<float>(p_start->getGridX()),
                                        static_cast<float>(p_start->getGridY())),
                             qv::Vector(static_cast<float>(c), static_cast<float>(r))) <= range &&
                  p_tile->isEmpty();
      p_tile->setMoveHighlight(flag);
    }
  }
}

void Board::select(Entity *p_entity) {
  m_p_selected = p_entity;
  if (!p_entity) {
    for (int c = 0; c < COLUMNS; c++) {
      for (int r = 0; r < ROWS; r++) {
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
  for (int c = 0; c < COLUMNS; c++) {
    for (int r = 0; r < ROWS; r++) {
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
  if (c >= 0 && c < COLUMNS && r >= 0 && r < ROWS && m_tiles[c][r] == p_tile)
    m_tiles[c][r] = nullptr;
  if (m_p_hovered == p_tile) m_p_hovered = nullptr;
}
