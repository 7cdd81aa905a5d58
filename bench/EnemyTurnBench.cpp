// One enemy turn's decisions and moves (every enemy on the board takes its
// turn), the game's way against the plain one: a full path search for every
// tile and goal, as the rules read. 30 enemies spread over an open board,
// and 100 enemies filling most of it; three heroes near the base.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <utility>
#include <vector>

#include "Board.h"
#include "Enemy.h"
#include "Hero.h"
#include "Tile.h"
#include "core/LogManager.h"
#include "game/ReferenceEnemyTurn.h"
#include "resources/ResourceManager.h"
#include "world/WorldManager.h"

namespace {

const char *const KINDS[] = {"Goblin", "Imp", "Deathwing", "Ogre"};

class Scene {
 public:
  explicit Scene(int enemy_count) {
    setenv("QUORVELLE_LOG", "/dev/null", 1);
    qv::LogManager::getInstance().startUp();
    qv::ResourceManager::getInstance().startUp();
    qv::WorldManager::getInstance().startUp();
    setBoard(new Board);
    for (int i = 0; i < 3; i++) {
      Hero *p_hero = new Hero;
      p_hero->applyKind("Warrior");
      p_hero->moveTo(qv::Vector(1, static_cast<float>(3 + 3 * i)));
      m_heroes.push_back(p_hero);
    }
    std::mt19937 random(7);
    while (static_cast<int>(m_enemies.size()) < enemy_count) {
      int c = 3 + static_cast<int>(random() % 9), r = static_cast<int>(random() % 12);
      if (!getBoard()->getTile(c, r)->isEmpty()) continue;
      Enemy *p_enemy = new Enemy;
      p_enemy->applyKind(KINDS[random() % 4]);
      p_enemy->moveTo(qv::Vector(static_cast<float>(c), static_cast<float>(r)));
      m_enemies.push_back(p_enemy);
      m_start.emplace_back(c, r);
    }
  }
  ~Scene() {
    qv::WorldManager::getInstance().shutDown();
    setBoard(nullptr);
    qv::ResourceManager::getInstance().shutDown();
    qv::LogManager::getInstance().shutDown();
  }

  // Back to where the turn began.
  void reset() {
    for (Enemy *p_enemy : m_enemies)
      getBoard()->getTile(p_enemy->getGridX(), p_enemy->getGridY())->clearOccupant();
    for (size_t i = 0; i < m_enemies.size(); i++)
      m_enemies[i]->moveTo(
          qv::Vector(static_cast<float>(m_start[i].first), static_cast<float>(m_start[i].second)));
    for (Hero *p_hero : m_heroes) p_hero->setHealth(1000);
  }

  const std::vector<Enemy *> &enemies() const { return m_enemies; }

 private:
  std::vector<Hero *> m_heroes;
  std::vector<Enemy *> m_enemies;
  std::vector<std::pair<int, int>> m_start;
};

void EnemyTurn(benchmark::State &state) {
  Scene scene(static_cast<int>(state.range(0)));
  const bool plain = state.range(1) != 0;
  for (auto _ : state) {
    state.PauseTiming();
    scene.reset();
    state.ResumeTiming();
    for (Enemy *p_enemy : scene.enemies()) {
      if (!plain) {
        p_enemy->takeTurn();
        continue;
      }
      reference::Decision d = reference::enemyDecision(*getBoard(), *p_enemy);
      if (d.action == reference::Decision::ATTACK) p_enemy->attack(d.p_tile->getOccupant());
      if (d.action == reference::Decision::MOVE)
        p_enemy->moveTo(qv::Vector(static_cast<float>(d.p_tile->getGridX()),
                                   static_cast<float>(d.p_tile->getGridY())));
    }
  }
  state.SetLabel(plain ? "plain" : "game");
}

}  // namespace

BENCHMARK(EnemyTurn)
    ->ArgNames({"enemies", "plain"})
    ->ArgsProduct({{30, 100}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
