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
    key(qv::Keyboard::SPACE);  // a second press finds the ability used or still refused
    EXPECT_EQ(state().getActions(), a.actions_after);
  }
  EXPECT_EQ(log->count("Warrior Ability"), 3);  // the refused one twice
  EXPECT_EQ(log->count("Checking Neighbour Tile"), 12);
  EXPECT_EQ(log->count("Enemy"), 3);
}

TEST_F(GameFixture, TheTurnEndsWhenTheActionsReachZeroOrOnEnterAndAbilitiesAddToThePool) {
  key(qv::Keyboard::P);
  layout(rows(2) + ".....H......\n" + rows(3) + ".Wg.........\n.g..........\n" + rows(1) +
         ".....M......\n" + rows(2));
  state().setActions(1);
  click(1, 6);
  key(qv::Keyboard::SPACE);  // two adjacent enemies: 1 + 2
  EXPECT_EQ(state().getActions(), 3);
  click(1, 6);
  click(1, 5);  // green, but this hero's turn is over
  EXPECT_EQ(unitAt(1, 6)->getKind(), "Warrior");
  click(1, 6, qv::Mouse::RIGHT);
  // The pool serves the other heroes; the third order ends the turn inside its click.
  const int moves[][4] = {{5, 2, 5, 3}, {5, 9, 5, 10}, {5, 3, 5, 4}};
  for (const auto &m : moves) {
    EXPECT_EQ(state().getTurn(), 1);
    click(m[0], m[1]);
    click(m[2], m[3]);
  }
  EXPECT_EQ(hud().substr(0, 45), "Current Turn: Player / Turn 2 / Actions: 3 / ");
  key(qv::Keyboard::ENTER);  // 3 unspent actions are lost: the next turn has 3, not 6
  EXPECT_EQ(hud().substr(0, 45), "Current Turn: Player / Turn 3 / Actions: 3 / ");
}
