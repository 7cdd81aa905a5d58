#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "Enemy.h"
#include "GameFixture.h"
#include "ReferenceEnemyTurn.h"
#include "Tile.h"

using qvtest::GameFixture;
using qvtest::rows;

// Every enemy of a random board decides as the plain search would, and acts on it.
TEST_F(GameFixture, EnemyDecisionsAgreeWithThePlainSearchOnRandomBoards) {
  key(qv::Keyboard::P);
  std::mt19937 random(20261123);
  for (int board_number = 0; board_number < 100; board_number++) {
    std::string picture;
    const int density = static_cast<int>(random() % 50);
    for (int i = 0; i < 12 * 13; i++)
      picture += i % 13 == 12                                 ? '\n'
                 : static_cast<int>(random() % 100) < density ? "WHMgido#"[random() % 8]
                                                              : '.';
    layout(picture);
    for (int i = 0; i < state().getEnemyCount(); i++) {
      Enemy *p_enemy = state().getEnemy(i);
      reference::Decision expected = reference::enemyDecision(board(), *p_enemy);
      const bool attacks = expected.action == reference::Decision::ATTACK;
      Tile *p_ends = expected.action == reference::Decision::MOVE
                         ? expected.p_tile
                         : board().getTile(p_enemy->getGridX(), p_enemy->getGridY());
      Entity *p_target = attacks ? expected.p_tile->getOccupant() : p_enemy;
      const int health = p_target->getHealth() - (attacks ? p_enemy->getDamage() : 0);
      p_enemy->takeTurn();
      ASSERT_EQ(p_ends->getOccupant(), p_enemy) << picture;
      ASSERT_EQ(p_target->getHealth(), health) << picture;
    }
  }
}

// The spawn budget grows with the turn number; every group enters in the
// right column, on a row drawn up to eleven times until one is free.
TEST_F(GameFixture, SpawnsFollowTheTurnNumber) {
  key(qv::Keyboard::P);
  // Turn 1 into a full right column: one roll of rand() % 1, eleven row draws, no Goblin.
  layout(rows(12, "...........#\n"));
  srand(3);
  key(qv::Keyboard::ENTER);
  const int next = rand();
  srand(3);
  for (int i = 0; i < 12; i++) rand();
  EXPECT_EQ(rand(), next);
  // Then a group a turn from turn 2 on, drawn from what the turn number
  // affords: the kinds' initials, "?" for one outside the right column.
  std::string groups;
  for (int turns = 2; turns <= 15; turns++) {
    layout(rows(12));  // clear the way for the next group
    key(qv::Keyboard::ENTER);
    for (int i = 0; i < state().getEnemyCount(); i++)
      groups += state().getEnemy(i)->getGridX() == 11 ? state().getEnemy(i)->getKind()[0] : '?';
    groups += " ";
  }
  EXPECT_EQ(groups, "G G GI GI GI GI DI DI DI DI DG DG DII DII ");
}

// In one enemy turn the Goblin reaches the base and the Ogre kills the selected Hunter.
TEST_F(GameFixture, AnEnemyOnTheBaseLosesTheGameButTheTurnStillEndsAndNothingMoreHappens) {
  key(qv::Keyboard::P);
  layout(rows(5) + ".W..........\n.g..Ho......\n" + rows(5));
  // A hero entering the base column is no loss.
  click(1, 5);
  click(0, 5);
  EXPECT_EQ(unitAt(0, 5)->getKind(), "Warrior");
  unitAt(4, 6)->setHealth(2);
  click(4, 6);
  key(qv::Keyboard::ENTER);
  frame();
  EXPECT_EQ(unitAt(4, 6), nullptr);
  EXPECT_EQ(board().getSelected(), nullptr);  // deselected as it went
  EXPECT_EQ(unitAt(0, 6)->getKind(), "Goblin");
  EXPECT_EQ(state().getEnemyCount(), 3);  // the spawn still happened
  key(qv::Keyboard::ENTER);               // no new player turn
  EXPECT_EQ(hud().substr(0, 31), "Current Turn: Loss... / Turn 1 ");
}
