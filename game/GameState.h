#ifndef TACTICS_GAME_STATE_H
#define TACTICS_GAME_STATE_H

#include <string>
#include <vector>

class Enemy;
class Hero;
class Obstacle;

enum Phase : int { PLAYER_TURN = 0, ENEMY_TURN = 1, VICTORY = 2, LOSS = 3 };

// Whose turn it is, the turn number, the player's shared action points and
// the units on the board. The registries do not own the units: each unit
// adds itself when made and removes itself when destroyed. They grow as
// needed, so a long game may hold any number of walls and enemies.
class GameState {
 public:
  static GameState &getInstance();

  // Queries.
  int getPhase() const;
  int getTurn() const;
  int getActions() const;
  int getEnemyCount() const;
  Enemy *getEnemy(int i) const;  // in creation order
  int getHeroCount() const;
  Hero *getHero(int i) const;
  int getObstacleCount() const;
  Obstacle *getObstacle(int i) const;

  // Turn flow.
  void setPhase(int new_phase);
  void setActions(int new_actions);  // never starts the enemy turn
  // Takes n actions; reaching exactly 0 runs the whole enemy turn before returning.
  // -1 (and nothing changes) when fewer than n are left.
  int spendActions(int n);
  // Wakes the heroes; PLAYER_TURN with 3 actions and the next turn number.
  // Nothing once the game is won or lost.
  void startPlayerTurn();
  // Every enemy acts, new ones enter, then the next player turn starts
  // unless the game was lost meanwhile. Only from PLAYER_TURN.
  void runEnemyTurn();
  // One enemy of that kind at the right-hand edge, in a free row drawn at
  // random (up to 11 draws); none when no drawn row was free.
  void spawnEnemy(std::string kind);

  // Registries.
  void addEnemy(Enemy *p_enemy);
  void removeEnemy(Enemy *p_enemy);
  void addHero(Hero *p_hero);
  void removeHero(Hero *p_hero);
  void addObstacle(Obstacle *p_obstacle);
  void removeObstacle(Obstacle *p_obstacle);

 private:
  GameState() = default;
  GameState(const GameState &) = delete;
  GameState &operator=(const GameState &) = delete;

  int m_phase = PLAYER_TURN;            // a Phase
  int m_turn = 0;                       // the first player turn is turn 1
  int m_actions = 0;                    // left in the current player turn
  std::vector<Enemy *> m_enemies;       // in creation order: the order they act in
  std::vector<Hero *> m_heroes;         // kept up to date, read by no rule
  std::vector<Obstacle *> m_obstacles;  // kept up to date, read by no rule
};

#endif
