#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

#include "GameFixture.h"
#include "Hero.h"
#include "Tile.h"

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
