#include "GameState.h"

#include <algorithm>
#include <cstdlib>

#include "Board.h"
#include "Enemy.h"
#include "EventPlayerTurn.h"
#include "Tile.h"
#include "world/WorldManager.h"

namespace {

const int ACTIONS_PER_TURN = 3;
const int SPAWN_ROW_DRAWS = 11;  // the first draw and up to 10 more
const int SPAWN_GROUP_MAX = 4;   // the budget's half is capped here

// The kinds each spawn group creates, in order; group i costs i + 1.
const std::vector<std::vector<std::string>> SPAWN_GROUPS = {
    {"Imp"},  {"Goblin"},      {"Deathwing"},      {"Deathwing", "Imp"}, {"Deathwing", "Goblin"},
    {"Ogre"}, {"Ogre", "Imp"}, {"Ogre", "Goblin"},
};

template <typename T>
void removeFirst(std::vector<T *> &registry, T *p_unit) {
  auto it = std::find(registry.begin(), registry.end(), p_unit);
  if (it != registry.end()) registry.erase(it);
}

}  // namespace

GameState &GameState::getInstance() {
  static GameState state;
  return state;
}

int GameState::getPhase() const {
  return m_phase;
}
int GameState::getTurn() const {
  return m_turn;
}
int GameState::getActions() const {
  return m_actions;
}
int GameState::getEnemyCount() const {
  return static_cast<int>(m_enemies.size());
}
Enemy *GameState::getEnemy(int i) const {
  return m_enemies[i];
}
int GameState::getHeroCount() const {
  return static_cast<int>(m_heroes.size());
}
Hero *GameState::getHero(int i) const {
  return m_heroes[i];
}
int GameState::getObstacleCount() const {
  return static_cast<int>(m_obstacles.size());
}
Obstacle *GameState::getObstacle(int i) const {
  return m_obstacles[i];
}

void GameState::setPhase(int new_phase) {
  m_phase = new_phase;
}
void GameState::setActions(int new_actions) {
  m_actions = new_actions;
}

int GameState::spendActions(int n) {
  if (n > m_actions) return -1;
  m_actions -= n;
  if (m_actions == 0) runEnemyTurn();
  return 0;
}

void GameState::startPlayerTurn() {
  if (m_phase == VICTORY || m_phase == LOSS) return;
  // Delivered at once and kept by nobody, so it lives on the stack.
  EventPlayerTurn player_turn;
  qv::WorldManager::getInstance().onEvent(&player_turn);
  m_phase = PLAYER_TURN;
  m_actions = ACTIONS_PER_TURN;
  m_turn++;
}

void GameState::runEnemyTurn() {
  if (m_phase != PLAYER_TURN) return;
  m_phase = ENEMY_TURN;

  for (int i = 0; i < getEnemyCount(); i++) m_enemies[i]->takeTurn();

  int budget = m_turn / 4 + 2;
  while (budget > 0) {
    int cap = std::min(budget / 2, SPAWN_GROUP_MAX);
    int roll = budget > 1 ? rand() % cap : 0;
    int index = cap + roll;
    for (const std::string &kind : SPAWN_GROUPS[index]) spawnEnemy(kind);
    budget -= index + 1;
  }

  startPlayerTurn();  // nothing once an enemy has reached the base
}

void GameState::spawnEnemy(std::string kind) {
  Board *p_board = getBoard();
  if (!p_board) return;
  int columns = static_cast<int>(p_board->getSize().getX());
  int rows = static_cast<int>(p_board->getSize().getY());
  for (int draw = 0; draw < SPAWN_ROW_DRAWS; draw++) {
    int row = rand() % rows;
    Tile *p_tile = p_board->getTile(columns - 1, row);
    if (p_tile && p_tile->isEmpty()) {
      Enemy *p_enemy = new Enemy;
      p_enemy->applyKind(kind);
      p_enemy->moveTo(qv::Vector(static_cast<float>(columns - 1), static_cast<float>(row)));
      return;
    }
  }
}

void GameState::addEnemy(Enemy *p_enemy) {
  m_enemies.push_back(p_enemy);
}
void GameState::removeEnemy(Enemy *p_enemy) {
  removeFirst(m_enemies, p_enemy);
}
void GameState::addHero(Hero *p_hero) {
  m_heroes.push_back(p_hero);
}
void GameState::removeHero(Hero *p_hero) {
  removeFirst(m_heroes, p_hero);
}
void GameState::addObstacle(Obstacle *p_obstacle) {
  m_obstacles.push_back(p_obstacle);
}
void GameState::removeObstacle(Obstacle *p_obstacle) {
  removeFirst(m_obstacles, p_obstacle);
}
