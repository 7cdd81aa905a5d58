#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "Enemy.h"
#include "GameFixture.h"
#include "ReferenceEnemyTurn.h"
#include "Tile.h"

using qvtest::GameFixture;
using qvtest::rows;

// Enemies act in creation order, each on the board the earlier ones left: the
// first Goblin moves on, the second then has the way free; the Ogre breaks
// down the wall to its left (2 damage), which is gone after the frame.
TEST_F(GameFixture, EnemiesActInCreationOrderOnTheBoardTheEarlierOnesLeft) {
  key(qv::Keyboard::P);
  layout(rows(5) + "..gg...#o...\n" + rows(6));
  for (int i = 0; i < state().getEnemyCount(); i++) state().getEnemy(i)->takeTurn();
  frame();
  EXPECT_EQ(units(), rows(5) + "gg......o...\n" + rows(6));
}

// Every enemy of a random board decides as the plain search would, and acts on it.
TEST_F(GameFixture, EnemyDecisionsAgreeWithThePlainSearchOnRandomBoards) {
  key(qv::Keyboard::P);
  std::mt19937 random(20261123);
  const std::string symbols = "WHMgido#";
  int decisions = 0;
  for (int board_number = 0; board_number < 100; board_number++) {
    std::string picture;
    const int density = static_cast<int>(random() % 50);
    for (int i = 0; i < 12 * 13; i++) {
      const bool unit = i % 13 != 12 && static_cast<int>(random() % 100) < density;
      picture += i % 13 == 12 ? '\n' : unit ? symbols[random() % 8] : '.';
    }
    layout(picture);
    for (int i = 0; i < state().getEnemyCount(); i++, decisions++) {
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
  EXPECT_GT(decisions, 1000);
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
  EXPECT_EQ(state().getEnemyCount(), 0);
  // Then a group a turn, drawn from what the turn number affords.
  std::string groups;
  for (int turns = 2; turns <= 15; turns++) {
    layout(rows(12));  // clear the way for the next group
    groups += "turn " + std::to_string(state().getTurn()) + ":";
    key(qv::Keyboard::ENTER);
    for (int i = 0; i < state().getEnemyCount(); i++) {
      groups += " " + state().getEnemy(i)->getKind();
      EXPECT_EQ(state().getEnemy(i)->getGridX(), 11);
    }
    groups += "\n";
  }
  EXPECT_EQ(groups,
            "turn 2: Goblin\nturn 3: Goblin\nturn 4: Goblin Imp\nturn 5: Goblin Imp\n"
            "turn 6: Goblin Imp\nturn 7: Goblin Imp\nturn 8: Deathwing Imp\n"
            "turn 9: Deathwing Imp\nturn 10: Deathwing Imp\nturn 11: Deathwing Imp\n"
            "turn 12: Deathwing Goblin\nturn 13: Deathwing Goblin\nturn 14: Deathwing Imp Imp\n"
            "turn 15: Deathwing Imp Imp\n");
}

// In one enemy turn the Goblin reaches the base and the Ogre kills the selected Hunter.
TEST_F(GameFixture, AnEnemyOnTheBaseLosesTheGameButTheTurnStillEndsAndNothingMoreHappens) {
  key(qv::Keyboard::P);
  layout(rows(5) + ".W..........\n.g..Ho......\n" + rows(5));
  // A hero entering the base column is no loss.
  click(1, 5);
  click(0, 5);
  EXPECT_EQ(unitAt(0, 5)->getKind(), "Warrior");
  EXPECT_EQ(state().getPhase(), PLAYER_TURN);
  unitAt(4, 6)->setHealth(2);
  click(4, 6);
  key(qv::Keyboard::ENTER);
  frame();
  EXPECT_EQ(unitAt(4, 6), nullptr);
  EXPECT_EQ(board().getSelected(), nullptr);  // deselected as it went
  EXPECT_EQ(colours(), "");
  EXPECT_EQ(unitAt(0, 6)->getKind(), "Goblin");
  EXPECT_EQ(state().getEnemyCount(), 3);  // the spawn still happened
  EXPECT_EQ(hud().substr(0, 31), "Current Turn: Loss... / Turn 1 ");
  // No order counts any more.
  click(0, 5);
  key(qv::Keyboard::SPACE);
  key(qv::Keyboard::ENTER);
  EXPECT_EQ(board().getSelected(), nullptr);
  EXPECT_EQ(hud().substr(0, 31), "Current Turn: Loss... / Turn 1 ");
  // The next level is played again.
  key(qv::Keyboard::ESCAPE);
  frame();
  key(qv::Keyboard::P);
  EXPECT_EQ(hud().substr(0, 45), "Current Turn: Player / Turn 2 / Actions: 3 / ");
}
