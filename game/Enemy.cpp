#include "Enemy.h"

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

void Enemy::takeTurn() {
  Board *p_board = getBoard();
  if (isDead() || !p_board) return;
  Tile *p_here = p_board->getTile(getGridX(), getGridY());
  qv::Vector here = gridOf(p_here);
  std::vector<Tile *> reachable, targets, goals;
  Tile *p_fallback = nullptr;
  qv::Vector size = p_board->getSize();
  for (int c = 0; c < size.getX(); c++) {
    for (int r = 0; r < size.getY(); r++) {
      Tile *p_tile = p_board->getTile(c, r);
      int d = p_board->manhattan(p_here, p_tile);
      if (d <= getMoveRange() && p_board->pathLength(here, gridOf(p_tile)) <= getMoveRange() &&
          p_tile->isEmpty()) {
        reachable.push_back(p_tile);
        p_fallback = p_tile;
      }
      if (d <= getAttackRange() && p_board->pathLength(here, gridOf(p_tile)) <= getAttackRange() &&
          !p_tile->isEmpty()) {
        std::string type = p_tile->getOccupant()->getType();
        if (type == "Hero" || (type == "Obstacle" && c < getGridX())) targets.push_back(p_tile);
      }
      if (p_tile->isBase() || (!p_tile->isEmpty() && p_tile->getOccupant()->getType() == "Hero"))
        goals.push_back(p_tile);
    }
  }
  if (reachable.empty()) return;
  if (!targets.empty()) {
    attack(targets.front()->getOccupant());
    return;
  }
  int best_path = 10000;
  Tile *p_path_choice = p_fallback;
  int best_near = 10000;
  Tile *p_near_choice = nullptr;
  for (Tile *p_r : reachable) {
    for (Tile *p_g : goals) {
      int p = p_board->pathLength(gridOf(p_r), gridOf(p_g));
      int m = p_board->manhattan(p_r, p_g);
      int score = p_g->isEmpty() ? p : 2 * p;
      if (score < best_path) {
        best_path = score;
        p_path_choice = p_r;
      }
      if (p_g->isEmpty() && m < best_near) {
        best_near = m;
        p_near_choice = p_r;
      }
    }
  }
  Tile *p_destination = static_cast<float>(best_path) > static_cast<float>(best_near) * 1.5f
                            ? p_near_choice
                            : p_path_choice;
  moveTo(gridOf(p_destination));
}
