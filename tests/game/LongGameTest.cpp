#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <cstdlib>
#include <set>

#include "Enemy.h"
#include "GameFixture.h"
#include "Hero.h"
#include "Obstacle.h"
#include "Tile.h"
#include "input/InputManager.h"

// Present only in a sanitized build.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

using qvtest::GameFixture;

// Seed 1 and a fixed way of playing, order by order, until the base falls.
// The hash (FNV-1a) covers every unit's kind, health and tile, the turn and
// the phase. When a deliberate rule change alters it, check the printed final
// board by hand against the new rule, then store the new value here.
TEST_F(GameFixture, AScriptedGameEndsTheSameWayEveryTime) {
  const std::uint64_t STORED = 10339695527157459409ull;
  key(qv::Keyboard::P);
  int orders = 0;
  for (; state().getPhase() != LOSS && orders < 400; orders++) {
    Entity *p_hero =
        state().getHeroCount() ? state().getHero(orders % state().getHeroCount()) : nullptr;
    if (!p_hero || orders % 6 == 5) {
      key(qv::Keyboard::ENTER);
      continue;
    }
    click(p_hero->getGridX(), p_hero->getGridY());
    if (orders % 9 == 4) {
      key(qv::Keyboard::SPACE);
    } else {
      // Attack the first unit in reach, else step to the rightmost green tile.
      Tile *p_choice = nullptr;
      for (int pass = 0; pass < 2; pass++)
        for (int c = 0; c < 12; c++)
          for (int r = 0; r < 12; r++) {
            Tile *p_tile = board().getTile(pass ? 11 - c : c, r);
            const bool target = !p_tile->isEmpty() && p_tile->getOccupant()->getType() != "Hero";
            if (!p_choice && (pass ? p_tile->inMoveRange() : p_tile->inAttackRange() && target))
              p_choice = p_tile;
          }
      if (p_choice) click(p_choice->getGridX(), p_choice->getGridY());
    }
    if (board().getSelected()) clickHere(qv::Mouse::RIGHT);
    frame();
  }
  std::string record;
  for (int r = 0; r < 12; r++)
    for (int c = 0; c < 12; c++)
      if (Entity *p_unit = unitAt(c, r))
        record += p_unit->getKind() + std::to_string(p_unit->getHealth()) + "," +
                  std::to_string(c) + "," + std::to_string(r) + ",";
  record += std::to_string(state().getTurn()) + "," + std::to_string(state().getPhase()) + ",";
  std::uint64_t hash = 14695981039346656037ull;
  for (unsigned char ch : record) hash = (hash ^ ch) * 1099511628211ull;
  EXPECT_EQ(hash, STORED) << "after " << orders << " orders, turn " << state().getTurn() << ":\n"
                          << units();
}

// Someone pressing anything anywhere for 4,000 frames: from the title screen
// through levels, losses and Escape back to it, one random input or two a
// frame. After every frame each unit is its own tile's occupant and the
// registries hold exactly the units in the world; at the end a fresh level
// has about the objects and the heap the first one had.
TEST_F(GameFixture, ThousandsOfRandomFramesKeepBoardRegistriesAndMemory) {
  const auto heap_in_use = []() -> std::size_t {
    // Under AddressSanitizer malloc is the sanitizer's, and it keeps the count.
    if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
    return mallinfo2().uordblks;
  };
  const auto object_count = [] {
    return qv::WorldManager::getInstance().getAllObjects(true).getCount();
  };
  // Mostly clicks on the board and Enter, some of every key the game knows
  // and the pointer anywhere on the screen; Escape rarely, or levels would
  // never last to a loss.
  const auto random_input = [this] {
    static const qv::Keyboard::Key KEYS[] = {
        qv::Keyboard::P, qv::Keyboard::SPACE, qv::Keyboard::ENTER, qv::Keyboard::ESCAPE,
        qv::Keyboard::W, qv::Keyboard::A,     qv::Keyboard::S,     qv::Keyboard::D};
    const int choice = std::rand() % 100;
    if (choice < 45) {
      click(std::rand() % 12, std::rand() % 12,
            std::rand() % 4 == 0 ? qv::Mouse::RIGHT : qv::Mouse::LEFT);
    } else if (choice < 65) {
      qv::EventMouse move;
      move.setMouseAction(qv::MOUSE_MOVED);
      move.setMousePosition(
          qv::Vector(static_cast<float>(std::rand() % 80), static_cast<float>(std::rand() % 24)));
      qv::InputManager::getInstance().onEvent(&move);
    } else if (choice < 81) {
      key(choice < 80 ? qv::Keyboard::ENTER : qv::Keyboard::ESCAPE);
    } else {
      key(KEYS[std::rand() % 8], std::rand() % 2 ? qv::KEY_PRESSED : qv::KEY_RELEASED);
    }
  };
  std::srand(16);
  key(qv::Keyboard::P);
  frame();
  const int first_objects = object_count();
  const std::size_t first_heap = heap_in_use();
  int levels = 1, losses = 0, titles = 0;
  for (int f = 0; f < 4000; f++) {
    const int phase = state().getPhase();
    const bool on_title = menu->isActive();
    random_input();
    if (std::rand() % 3 == 0) random_input();
    frame();
    losses += phase != LOSS && state().getPhase() == LOSS;
    titles += !on_title && menu->isActive();
    levels += on_title && !menu->isActive();
    std::set<const qv::Object *> registered, in_world;
    for (int i = 0; i < state().getHeroCount(); i++) registered.insert(state().getHero(i));
    for (int i = 0; i < state().getEnemyCount(); i++) registered.insert(state().getEnemy(i));
    for (int i = 0; i < state().getObstacleCount(); i++) registered.insert(state().getObstacle(i));
    const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
    for (int i = 0; i < all.getCount(); i++) {
      const auto *p_unit = dynamic_cast<const Entity *>(all[i]);
      if (!p_unit) continue;
      in_world.insert(p_unit);
      const Tile *p_tile =
          getBoard() ? board().getTile(p_unit->getGridX(), p_unit->getGridY()) : nullptr;
      ASSERT_TRUE(p_tile && p_tile->getOccupant() == p_unit)
          << p_unit->getKind() << " at " << p_unit->getGridX() << "," << p_unit->getGridY()
          << " is not its tile's occupant after frame " << f;
    }
    ASSERT_EQ(registered, in_world) << "after frame " << f;
  }
  EXPECT_TRUE(levels > 3 && losses > 1 && titles > 3) << levels << losses << titles;

  if (!menu->isActive()) key(qv::Keyboard::ESCAPE);
  frame();
  key(qv::Keyboard::P);
  frame();
  EXPECT_NEAR(object_count(), first_objects, first_objects / 20);
  EXPECT_LT(heap_in_use(), first_heap + first_heap / 20)
      << "heap in use: " << first_heap << " after the first level, " << heap_in_use() << " now";
}
