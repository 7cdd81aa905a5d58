#include <gtest/gtest.h>

#include <random>

#include "BoardPath.h"
#include "ReferencePathLength.h"

// Random boards from empty to half full, random start and goal anywhere (on a unit or
// not), checked against the plain search without a limit and with a random one: below the
// limit the length is exact, from it on anything not below it will do.
TEST(BoardPathTest, AgreesWithThePlainSearchOnRandomBoards) {
  std::mt19937 random(20240612);
  std::uniform_int_distribution<int> percent(0, 99), column(0, BOARD_COLUMNS - 1),
      row(0, BOARD_ROWS - 1), limit_of(0, 30);
  for (int board = 0; board < 100000; board++) {
    Occupancy occupied{};
    const int density = percent(random) / 2;
    for (auto &tiles : occupied)
      for (auto &&tile : tiles) tile = percent(random) < density;
    const int from_column = column(random), from_row = row(random), to_column = column(random),
              to_row = row(random), limit = limit_of(random);
    const int expected = reference::pathLength(occupied, from_column, from_row, to_column, to_row);
    const int limited = boardPathLength(occupied, from_column, from_row, to_column, to_row, limit);
    // The board's number is enough to replay it from the seed.
    ASSERT_EQ(boardPathLength(occupied, from_column, from_row, to_column, to_row, UNREACHABLE),
              expected)
        << "board " << board;
    ASSERT_TRUE(expected < limit ? limited == expected : limited >= limit) << "board " << board;
  }
}

// (9,9) is first reached by way of the dead end in column 11, with g 5, and
// keeps that g although it lies 3 steps from the start up column 9: 11 steps
// where 9 would do. The game's search must give the same 11.
TEST(BoardPathTest, ATileKeepsTheFirstGItWasGiven) {
  Occupancy occupied{};
  occupied[10][7] = occupied[11][8] = occupied[10][10] = true;
  EXPECT_EQ(reference::pathLength(occupied, 10, 11, 11, 7), 11);
  EXPECT_EQ(boardPathLength(occupied, 10, 11, 11, 7), 11);
}
