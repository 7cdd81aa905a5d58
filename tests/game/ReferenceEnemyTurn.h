#ifndef QV_TEST_REFERENCE_ENEMY_TURN_H
#define QV_TEST_REFERENCE_ENEMY_TURN_H

#include <vector>

#include "Board.h"
#include "Entity.h"
#include "ReferencePathLength.h"
#include "Tile.h"

// An enemy's decision written out plainly: a full path search for every tile
// and goal, no bounds. The yardstick the game's Enemy::takeTurn must agree
// with, and the baseline of its benchmark.
namespace reference {

struct Decision {
  enum Action { NOTHING, ATTACK, MOVE } action;
  ::Tile *p_tile;  // the target's or the destination's tile
};

inline Decision enemyDecision(const Board &board, const Entity &enemy) {
  const Occupancy occupied = board.getOccupancy();
  auto path = [&](const ::Tile *p_a, const ::Tile *p_b) {
    return pathLength(occupied, p_a->getGridX(), p_a->getGridY(), p_b->getGridX(), p_b->getGridY());
  };
  ::Tile *p_here = board.getTile(enemy.getGridX(), enemy.getGridY());
  std::vector<::Tile *> reachable, targets, goals;
  ::Tile *p_fallback = nullptr;
  for (int c = 0; c < BOARD_COLUMNS; c++) {
    for (int r = 0; r < BOARD_ROWS; r++) {
      ::Tile *p_t = board.getTile(c, r);
      int d = board.manhattan(p_here, p_t);
      if (d <= enemy.getMoveRange() && path(p_here, p_t) <= enemy.getMoveRange() &&
          p_t->isEmpty()) {
        reachable.push_back(p_t);
        p_fallback = p_t;
      }
      if (d <= enemy.getAttackRange() && path(p_here, p_t) <= enemy.getAttackRange() &&
          !p_t->isEmpty() &&
          (p_t->getOccupant()->getType() == "Hero" ||
           (p_t->getOccupant()->getType() == "Obstacle" && c < enemy.getGridX())))
        targets.push_back(p_t);
      if (p_t->isBase() || (!p_t->isEmpty() && p_t->getOccupant()->getType() == "Hero"))
        goals.push_back(p_t);
    }
  }
  if (reachable.empty()) return {Decision::NOTHING, nullptr};
  if (!targets.empty()) return {Decision::ATTACK, targets.front()};
  int best_path = 10000, best_near = 10000;
  ::Tile *p_path_choice = p_fallback, *p_near_choice = nullptr;
  for (::Tile *p_r : reachable) {
    for (::Tile *p_g : goals) {
      int p = path(p_r, p_g);
      int m = board.manhattan(p_r, p_g);
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
  return {Decision::MOVE,
          static_cast<double>(best_path) > best_near * 1.5 ? p_near_choice : p_path_choice};
}

}  // namespace reference

#endif
