#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <utility>

#include "GameFixture.h"
#include "Tile.h"
#include "world/WorldManager.h"

using qvtest::GameFixture;
using qvtest::rows;

namespace {

const std::string EMPTY_ROW = "............\n";

// What the level start must leave after srand(seed): heroes at (6,6),
// (4,3), (4,8), then 12 wall attempts of a column and a row draw each,
// skipping taken tiles.
std::string expectedStart(unsigned seed) {
  std::string board = rows(12);
  auto at = [&board](int c, int r) -> char& { return board[static_cast<size_t>(r * 13 + c)]; };
  at(6, 6) = 'W';
  at(4, 3) = 'H';
  at(4, 8) = 'M';
  srand(seed);
  for (int attempt = 0; attempt < 12; attempt++) {
    int c = rand() % 10 + 1;
    int r = rand() % 10 + 1;
    if (at(c, r) == '.') at(c, r) = '#';
  }
  return board;
}

}  // namespace

TEST_F(GameFixture, EachLevelStartPlacesHeroesAndWallsFromTheSeedAndAdvancesTheTurn) {
  const unsigned seeds[] = {1, 7, 42, 20261123};
  int turn = 0;
  for (unsigned seed : seeds) {
    srand(seed);
    startLevel();
    EXPECT_EQ(units(), expectedStart(seed)) << "seed " << seed;
    EXPECT_EQ(state().getTurn(), ++turn);
    EXPECT_EQ(state().getActions(), 3);
    EXPECT_EQ(state().getHeroCount(), 3);
    EXPECT_FALSE(menu->isActive());
    // The next draw is the one after the 24 of the walls.
    srand(seed);
    for (int i = 0; i < 24; i++) rand();
    int next = rand();
    srand(seed);
    startLevel();  // the menu is inactive now: P changes nothing
    for (int i = 0; i < 24; i++) rand();
    EXPECT_EQ(rand(), next);

    key(qv::Keyboard::ESCAPE);
    frame();
    EXPECT_TRUE(menu->isActive());
    EXPECT_EQ(qv::WorldManager::getInstance().getAllObjects(true).getCount(), 1);
    EXPECT_EQ(state().getHeroCount() + state().getObstacleCount() + state().getEnemyCount(), 0);
  }
}

TEST_F(GameFixture, SelectionColoursReachAlongPathsAndAttackReachThroughWalls) {
  startLevel();
  layout(EMPTY_ROW + EMPTY_ROW + EMPTY_ROW + EMPTY_ROW +  //
         ".....#......\n"
         "....#H#.go..\n"
         ".....#......\n" +
         EMPTY_ROW +  //
         ".....W#.....\n" + EMPTY_ROW + EMPTY_ROW + EMPTY_ROW);
  const std::string plain = rows(12, "cwwwwwwwwwww\n");
  // The walled-in Hunter cannot move; its reach of 3 passes the walls.
  click(5, 5);
  EXPECT_EQ(colours(), rows(4, "cwwwwwwwwwww\n") +
                           "cwwwwrwwwwww\n"
                           "cwwwrgrwrwww\n"
                           "cwwwwrwwwwww\n"
                           "cwwwwwwwwwww\n"
                           "cwwwwgwwwwww\n" +
                           rows(3, "cwwwwwwwwwww\n"));
  // A left click on another unit keeps the selection; a right click drops it.
  click(5, 8);
  EXPECT_EQ(board().getSelected(), unitAt(5, 5));
  click(5, 8, qv::Mouse::RIGHT);
  EXPECT_EQ(board().getSelected(), nullptr);
  EXPECT_EQ(colours(), plain);  // the hovered tile lost its yellow too
  EXPECT_TRUE(board().getTile(5, 8)->isHovered());

  // The Warrior's move of 2 does not reach (7, 8) behind the wall.
  click(5, 8);
  EXPECT_EQ(colours(), rows(7, "cwwwwwwwwwww\n") +
                           "cwwwgggwwwww\n"
                           "cwwgggrwwwww\n"
                           "cwwwgggwwwww\n"
                           "cwwwwgwwwwww\n"
                           "cwwwwwwwwwww\n");
  hover(6, 9);  // the pointer turns a tile yellow and gives the old one its colour back
  EXPECT_EQ(colours().substr(9 * 13, 13), "cwwwggywwwww\n");
  EXPECT_EQ(colours().substr(8 * 13, 13), "cwwgggrwwwww\n");

  // A move costs an action, plays a move sound (one draw) and deselects.
  srand(5);
  clickHere();
  int next = rand();
  EXPECT_EQ(unitAt(6, 9)->getKind(), "Warrior");
  EXPECT_EQ(state().getActions(), 2);
  EXPECT_EQ(colours(), plain);
  srand(5);
  rand();
  EXPECT_EQ(rand(), next);  // exactly one draw was taken
  EXPECT_TRUE(log->contains("boardNotNull"));
}
