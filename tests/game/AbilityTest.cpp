#include <gtest/gtest.h>

#include "GameFixture.h"

using qvtest::GameFixture;
using qvtest::rows;

namespace {

struct Ability {
  const char *what;
  std::string row;  // row 5 of an otherwise empty board
  int hero_column;
  int actions_before, actions_after;  // ability fails: no change
  std::string row_after;
};

const Ability ABILITIES[] = {
    {"Warrior: one action per adjacent enemy", ".....g......\n....gWg.....\n", 5, 1, 4, ""},
    {"Warrior: walls are no enemies", ".....#......\n....#W#.....\n", 5, 1, 1, ""},
    {"Hunter: an enemy in reach, none adjacent", "....H..g....\n", 4, 2, 3, ""},
    {"Hunter: an enemy two tiles away is no melee", "....H.g.....\n", 4, 2, 3, ""},
    {"Hunter: an adjacent enemy spoils the shot", "....Hg.g....\n", 4, 2, 2, ""},
    {"Hunter: a wall is no target", "....H..#....\n", 4, 2, 2, ""},
    {"Magician: a wall on the free tile to the right", "....M.......\n", 4, 2, 3, "....M#......\n"},
    {"Magician: nothing to the right of column 11", "...........M\n", 11, 2, 2, ""},
    {"Magician: the tile to the right is taken", "....Mg......\n", 4, 2, 2, ""},
};

}  // namespace

TEST_F(GameFixture, SpaceUsesTheSelectedHerosAbilityWhenItsConditionHolds) {
  key(qv::Keyboard::P);
  for (const Ability &a : ABILITIES) {
    SCOPED_TRACE(a.what);
    const int lines = static_cast<int>(a.row.size() / 13);
    layout(rows(6 - lines) + a.row + rows(6));
    state().setActions(a.actions_before);
    click(a.hero_column, 5);
    Entity *p_hero = unitAt(a.hero_column, 5);
    key(qv::Keyboard::SPACE, qv::KEY_RELEASED);  // only a press counts
    EXPECT_EQ(state().getActions(), a.actions_before);
    key(qv::Keyboard::SPACE);
    const bool used = a.actions_after != a.actions_before;
    EXPECT_EQ(state().getActions(), a.actions_after);
    EXPECT_EQ(board().getSelected(), used ? nullptr : p_hero);
    EXPECT_EQ(spriteOf(p_hero).find("-inactive") != std::string::npos, used);
    EXPECT_EQ(units(), rows(6 - lines) + (a.row_after.empty() ? a.row : a.row_after) + rows(6));
  }
}
