#include <gtest/gtest.h>

#include <random>
#include <string>

#include "BoardPath.h"
#include "ReferencePathLength.h"

namespace {

struct Query {
  Occupancy occupied{};
  int from_column = -1, from_row = -1, to_column = -1, to_row = -1;

  int fast(int limit = UNREACHABLE) const {
    return boardPathLength(occupied, from_column, from_row, to_column, to_row, limit);
  }
  int plain() const {
    return reference::pathLength(occupied, from_column, from_row, to_column, to_row);
  }
};

// Rows from the top separated by '/', the rest of the board empty: '.' empty, '#' a unit
// (wall, hero or enemy), 'S' the start, 'G' the goal, 's' and 'g' a start or goal with a
// unit on it, '*' start and goal on one tile.
Query parse(const std::string &picture) {
  Query q;
  int column = 0, row = 0;
  for (const char c : picture) {
    if (c == '/') {
      row++, column = 0;
      continue;
    }
    q.occupied[column][row] = c == '#' || c == 's' || c == 'g';
    if (c == 'S' || c == 's' || c == '*') q.from_column = column, q.from_row = row;
    if (c == 'G' || c == 'g' || c == '*') q.to_column = column, q.to_row = row;
    column++;
  }
  return q;
}

struct PictureCase {
  const char *name;
  const char *picture;
  int expected;
};

const PictureCase PICTURES[] = {
    // (0,3) is first reached by way of the dead end in column 0, with g 5, and keeps that g
    // although it lies 3 steps from (2,0): 11 steps where 9 would do.
    {"a tile keeps the first g it was given", ".S/.#//#/G#", 11},
    {"a unit blocks: around the wall along the top edge", "S#G", 4},
    {"fenced-in goal", "G#/#/..S", UNREACHABLE},
    {"start and goal on one tile", "*", 0},
    {"a unit next to the start is 1 step away", "sg", 1},
    // The goal's unit does not block; the units around the start other than the start's
    // own do, so the way out is the one free side.
    {"from a unit among units to a unit", "#s#//....g", 5},
};

TEST(BoardPathTest, PicturedBoards) {
  for (const PictureCase &c : PICTURES) {
    SCOPED_TRACE(c.name);
    const Query q = parse(c.picture);
    EXPECT_EQ(q.plain(), c.expected);
    EXPECT_EQ(q.fast(), c.expected);
    EXPECT_EQ(q.fast(c.expected + 1), c.expected);
    EXPECT_GE(q.fast(c.expected), c.expected);
  }
}

// Random boards from empty to half full, random start and goal anywhere (on a unit or
// not), checked against the plain search without a limit and with a random one.
TEST(BoardPathTest, AgreesWithThePlainSearchOnRandomBoards) {
  std::mt19937 random(20240612);
  std::uniform_int_distribution<int> percent(0, 99), column(0, BOARD_COLUMNS - 1),
      row(0, BOARD_ROWS - 1), limit_of(0, 30);
  int failures = 0;
  for (int board = 0; board < 100000 && failures < 10; board++) {
    Query q;
    const int density = percent(random) / 2;
    for (auto &tiles : q.occupied)
      for (auto &&tile : tiles) tile = percent(random) < density;
    q.from_column = column(random), q.from_row = row(random);
    q.to_column = column(random), q.to_row = row(random);
    const int limit = limit_of(random), expected = q.plain(), limited = q.fast(limit);
    if (q.fast() != expected || (expected < limit ? limited != expected : limited < limit)) {
      failures++;
      ADD_FAILURE() << "board " << board << " from (" << q.from_column << "," << q.from_row
                    << ") to (" << q.to_column << "," << q.to_row << "): plain " << expected
                    << ", fast " << q.fast() << ", with limit " << limit << ": " << limited;
    }
  }
}

}  // namespace
