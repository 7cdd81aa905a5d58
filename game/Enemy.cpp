#include "Enemy.h"

#include <cstdlib>
#include <vector>

#include "Board.h"
#include "GameState.h"
#include "Tile.h"

namespace {

qv::Vector gridOf(const Tile *p_tile) {
  return qv::Vector(static_cast<float>(p_tile->getGridX()), static_cast<float>(p_tile->getGridY()));
}

}  // namespace

Enemy::Enemy() {
  setType("Enemy");
  setKind("Enemy");
  setSprites("enemy", "enemy");
  setSprite("enemy");
  setRanges(2, 1);
  setKillable(true);
  GameState::getInstance().addEnemy(this);
}

Enemy::~Enemy() {
  GameState::getInstance().removeEnemy(this);
}

void Enemy::attack(Entity *p_target) {
  if ((p_target->getType() != "Hero" && p_target->getType() != "Obstacle") ||
      !p_target->isKillable())
    return;
  Board *p_board = getBoard();
  for (Entity *p_unit : {static_cast<Entity *>(this), p_target})
    if (Tile *p_tile = p_board->getTile(p_unit->getGridX(), p_unit->getGridY()))
      p_tile->setAttackHighlight(false);
  p_target->setHealth(p_target->getHealth() - getDamage());
}

// Decides exactly as a full path search per tile and goal would, only sooner:
// the board does not change while the enemy thinks, a search stops once it
// cannot beat what it is compared with, and no path is shorter than the
// distance, so a goal that cannot win by distance is not searched at all.
void Enemy::takeTurn() {
  Board *p_board = getBoard();
  if (isDead() || !p_board) return;
  const Occupancy occupied = p_board->getOccupancy();
  const int column = getGridX();
  const int row = getGridY();
  auto within = [&](int c, int r, int range) {
    return std::abs(c - column) + std::abs(r - row) <= range &&
           boardPathLength(occupied, column, row, c, r, range + 1) <= range;
  };

  std::vector<Tile *> reachable, goals;
  Tile *p_target = nullptr;
  for (int c = 0; c < BOARD_COLUMNS; c++) {
    for (int r = 0; r < BOARD_ROWS; r++) {
      Tile *p_tile = p_board->getTile(c, r);
      Entity *p_unit = p_tile->getOccupant();
      if (!p_unit && within(c, r, getMoveRange())) reachable.push_back(p_tile);
      // Walls are broken down only on the way left.
      if (p_unit && !p_target && within(c, r, getAttackRange()) &&
          (p_unit->getType() == "Hero" || (p_unit->getType() == "Obstacle" && c < column)))
        p_target = p_tile;
      if (p_tile->isBase() || (p_unit && p_unit->getType() == "Hero")) goals.push_back(p_tile);
    }
  }
  if (reachable.empty()) return;
  if (p_target) {
    attack(p_target->getOccupant());
    return;
  }

  // An occupied goal counts its path twice; ties keep the earlier tile.
  int best_path = UNREACHABLE;
  Tile *p_path_choice = reachable.back();
  int best_near = UNREACHABLE;
  Tile *p_near_choice = nullptr;
  for (Tile *p_r : reachable) {
    for (Tile *p_g : goals) {
      const int m = p_board->manhattan(p_r, p_g);
      const bool empty = p_g->isEmpty();
      if (empty && m < best_near) {
        best_near = m;
        p_near_choice = p_r;
      }
      const int limit = empty ? best_path : (best_path + 1) / 2;  // what p must stay below
      if (m >= limit) continue;
      const int p = boardPathLength(occupied, p_r->getGridX(), p_r->getGridY(), p_g->getGridX(),
                                    p_g->getGridY(), limit);
      const int score = empty ? p : 2 * p;
      if (score < best_path) {
        best_path = score;
        p_path_choice = p_r;
      }
    }
  }
  Tile *p_destination = static_cast<float>(best_path) > static_cast<float>(best_near) * 1.5f
                            ? p_near_choice
                            : p_path_choice;
  moveTo(gridOf(p_destination));
}
