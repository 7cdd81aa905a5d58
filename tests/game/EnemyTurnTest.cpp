#include <gtest/gtest.h>

#include <cstdlib>

#include "Enemy.h"
#include "GameFixture.h"

using qvtest::GameFixture;
using qvtest::rows;

namespace {

struct Decision {
  const char *rule;
  std::string before;  // the board when the enemies act, in creation order
  std::string after;   // after every enemy took its turn and the dead are gone
};

const std::string ROW = "............\n";

const std::string WALLED = rows(5, ".#..........\n");

const Decision DECISIONS[] = {
    {"a wall one column to the left is broken down (an Ogre's 2 damage)",
     rows(5) + ".....#o.....\n" + rows(6), rows(5) + "......o.....\n" + rows(6)},
    {"walls above, below and to the right are not targets: the Ogre walks",
     rows(4) + "......#.....\n......o#....\n......#.....\n" + rows(5),
     rows(4) + "......#.....\n.....o.#....\n......#.....\n" + rows(5)},
    {"boxed in, the Goblin does nothing, not even attack the Warrior next to it",
     "..........Wg\n...........#\n" + rows(10), "..........Wg\n...........#\n" + rows(10)},
    {"a hero is a goal worth twice its path: one step away it wins over the base",
     rows(5) + "....i.......\n" + ROW + "....W.......\n" + rows(4),
     rows(5) + "............\n....i.......\n....W.......\n" + rows(4)},
    {"two steps away the hero scores 4, the base 3 steps away 3",
     rows(5) + "....i.......\n" + ROW + ROW + "....W.......\n" + rows(3),
     rows(5) + "...i........\n" + ROW + ROW + "....W.......\n" + rows(3)},
    {"a base tile much nearer by distance than by path draws the Imp (the 1.5 rule)",
     WALLED + ".#.i........\n.#..........\n.##.........\n.#..........\n.#..........\n" + rows(2),
     WALLED + ".#i.........\n.#..........\n.##.........\n.#..........\n.#..........\n" + rows(2)},
    {"enemies act in creation order, each on the board the earlier ones left",
     rows(5) + "..gg........\n" + rows(6), rows(5) + "gg..........\n" + rows(6)},
};

}  // namespace

TEST_F(GameFixture, EnemiesDecideByTheirTargetsGoalsAndPaths) {
  startLevel();
  for (const Decision &d : DECISIONS) {
    layout(d.before);
    for (int i = 0; i < state().getEnemyCount(); i++) state().getEnemy(i)->takeTurn();
    frame();
    EXPECT_EQ(units(), d.after) << d.rule;
  }
}

TEST_F(GameFixture, EnemyAttacksTheTargetInScanOrderAndHitsAHeroBehindNoWall) {
  startLevel();
  // The Deathwing reaches 2 path steps: the Magician, first in scan order and
  // 2 away by distance, is cut off by two Goblins, so the Hunter is hit.
  layout(rows(4) + "....Mg......\n....gd.H....\n" + rows(6));
  state().getEnemy(2)->takeTurn();
  EXPECT_EQ(unitAt(7, 5)->getHealth(), 5);
  EXPECT_EQ(unitAt(4, 4)->getHealth(), 6);
  layout(rows(4) + "......W.....\n.....Hi.....\n" + rows(6));
  state().getEnemy(0)->takeTurn();  // column 5 before column 6
  EXPECT_EQ(unitAt(5, 5)->getHealth(), 5);
  EXPECT_EQ(unitAt(6, 4)->getHealth(), 8);
}

TEST_F(GameFixture, SpawnsFollowTheTurnNumber) {
  startLevel();
  layout(rows(12));
  const char *const expected[] = {"Goblin",        "Goblin",        "Goblin",       "Goblin Imp",
                                  "Goblin Imp",    "Goblin Imp",    "Goblin Imp",   "Deathwing Imp",
                                  "Deathwing Imp", "Deathwing Imp", "Deathwing Imp"};
  bool goblin_group = false, imp_group = false;
  for (int turn = 1; turn <= 15; turn++) {
    ASSERT_EQ(state().getTurn(), turn);
    key(qv::Keyboard::ENTER);
    std::string kinds;
    for (int i = 0; i < state().getEnemyCount(); i++)
      kinds += (i ? " " : "") + state().getEnemy(i)->getKind();
    for (int i = 0; i < state().getEnemyCount(); i++)
      EXPECT_EQ(state().getEnemy(i)->getGridX(), 11);
    if (turn <= 11) {
      EXPECT_EQ(kinds, expected[turn - 1]) << "turn " << turn;
    } else {
      goblin_group |= kinds == "Deathwing Goblin";
      imp_group |= kinds == "Deathwing Imp Imp";
      EXPECT_TRUE(kinds == "Deathwing Goblin" || kinds == "Deathwing Imp Imp") << kinds;
    }
    layout(rows(12));  // clear the way for the next group
  }
  EXPECT_TRUE(goblin_group && imp_group);  // seed 1 rolls both
}

TEST_F(GameFixture, AFullRightColumnSkipsTheSpawnAfterElevenRowDraws) {
  startLevel();
  std::string walled;
  for (int r = 0; r < 12; r++) walled += "...........#\n";
  layout(walled);
  srand(3);
  key(qv::Keyboard::ENTER);  // turn 1: one roll of rand() % 1, then the row draws
  int next = rand();
  srand(3);
  for (int i = 0; i < 12; i++) rand();
  EXPECT_EQ(rand(), next);
  EXPECT_EQ(state().getEnemyCount(), 0);
  EXPECT_EQ(state().getTurn(), 2);
}

TEST_F(GameFixture, AnEnemyOnTheBaseLosesTheGameButTheTurnStillEndsAndNothingMoreHappens) {
  startLevel();
  layout(rows(5) + ".W..........\n.g..........\n" + rows(5));
  // A hero entering the base column is no loss.
  click(1, 5);
  click(0, 5);
  EXPECT_EQ(unitAt(0, 5)->getKind(), "Warrior");
  EXPECT_EQ(state().getPhase(), PLAYER_TURN);
  key(qv::Keyboard::ENTER);
  EXPECT_EQ(state().getPhase(), LOSS);
  EXPECT_EQ(unitAt(0, 6)->getKind(), "Goblin");
  EXPECT_EQ(state().getEnemyCount(), 2);  // the spawn still happened
  EXPECT_EQ(state().getTurn(), 1);
  // No order counts any more.
  click(0, 5);
  key(qv::Keyboard::SPACE);
  key(qv::Keyboard::ENTER);
  EXPECT_EQ(board().getSelected(), nullptr);
  EXPECT_EQ(state().getTurn(), 1);
  EXPECT_EQ(state().getPhase(), LOSS);
}

TEST_F(GameFixture, ASelectedHeroKilledInTheEnemyTurnIsDeselectedWhenItGoes) {
  startLevel();
  layout(rows(5) + ".....Ho.....\n" + rows(6));
  unitAt(5, 5)->setHealth(2);
  click(5, 5);
  key(qv::Keyboard::ENTER);
  EXPECT_TRUE(unitAt(5, 5)->isDead());
  frame();
  EXPECT_EQ(unitAt(5, 5), nullptr);
  EXPECT_EQ(board().getSelected(), nullptr);
  EXPECT_EQ(colours(), [] {
    std::string plain;
    for (int r = 0; r < 12; r++) plain += "cwwwwwwwwwww\n";
    return plain;
  }());
}
