#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "BoardPath.h"
#include "ReferencePathLength.h"

namespace {

// A board drawn row by row, column 0 on the left: '.' empty, '#' a unit (wall, hero or
// enemy), 'S' the start, 'G' the goal, 's' and 'g' a start or goal with a unit on it, '*'
// start and goal on one tile. Rows left out are empty.
struct Query {
  Occupancy occupied{};
  int from_column = -1, from_row = -1, to_column = -1, to_row = -1;
};

Query parse(const std::string &picture) {
  Query query;
  std::istringstream lines(picture);
  std::string line;
  int row = 0;
  while (std::getline(lines, line)) {
    if (line.empty()) continue;
    for (int column = 0; column < BOARD_COLUMNS; column++) {
      const char c = line.at(column);
      query.occupied[column][row] = c == '#' || c == 's' || c == 'g';
      if (c == 'S' || c == 's' || c == '*') query.from_column = column, query.from_row = row;
      if (c == 'G' || c == 'g' || c == '*') query.to_column = column, query.to_row = row;
    }
    row++;
  }
  return query;
}

struct PictureCase {
  const char *name;
  const char *picture;
  int expected;
};

const PictureCase PICTURES[] = {
    {"around a wall with a gap at the bottom", R"(
......#.....
......#.....
..S...#..G..
......#.....
......#.....
......#.....
......#.....
......#.....
......#.....
......#.....
......#.....
)",
     25},
    // (9,9) is first reached by way of the dead end in column 11, with g 5, and keeps that
    // g although it lies 3 steps from the start up column 9: 11 steps where 9 would do.
    {"a tile keeps the first g it was given", R"(
............
............
............
............
............
............
............
..........#G
...........#
............
..........#.
..........S.
)",
     11},
    {"a wall to the right: the tile behind it is 4 steps away", R"(
............
............
............
............
............
...S#G......
)",
     4},
    {"fenced-in goal", R"(
............
............
............
............
.......#....
......#G#...
.......#....
............
.S..........
)",
     UNREACHABLE},
    {"start and goal on one tile", R"(
............
............
............
............
............
.....*......
)",
     0},
    {"a unit next to the start is 1 step away", R"(
............
............
............
............
............
.....sg.....
)",
     1},
    // The goal's unit does not block; the units around the start other than the start's
    // own do, so the way out is the one free side.
    {"from a unit among units to a unit", R"(
............
............
............
....#.......
...#s#......
............
.......g....
)",
     5},
};

TEST(BoardPathTest, PicturedBoards) {
  for (const PictureCase &c : PICTURES) {
    SCOPED_TRACE(c.name);
    const Query q = parse(c.picture);
    ASSERT_GE(q.from_column, 0);
    ASSERT_GE(q.to_column, 0);
    auto length = [&](int limit) {
      return boardPathLength(q.occupied, q.from_column, q.from_row, q.to_column, q.to_row, limit);
    };
    EXPECT_EQ(reference::pathLength(q.occupied, q.from_column, q.from_row, q.to_column, q.to_row),
              c.expected);
    EXPECT_EQ(length(UNREACHABLE), c.expected);
    EXPECT_EQ(length(c.expected + 1), c.expected);
    EXPECT_GE(length(c.expected), c.expected);
  }
}

// Random boards from empty to half full, random start and goal anywhere (on a unit or
// not), checked against the plain search without a limit and with a random one.
TEST(BoardPathTest, AgreesWithThePlainSearchOnRandomBoards) {
  const int BOARDS = 100000;
  std::mt19937 random(20240612);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::uniform_int_distribution<int> column(0, BOARD_COLUMNS - 1), row(0, BOARD_ROWS - 1),
      limit_of(0, 30);
  int failures = 0;
  for (int board = 0; board < BOARDS && failures < 10; board++) {
    Query q;
    const double density = 0.5 * unit(random);
    for (auto &tiles : q.occupied)
      for (auto &&tile : tiles) tile = unit(random) < density;
    q.from_column = column(random), q.from_row = row(random);
    q.to_column = column(random), q.to_row = row(random);
    const int limit = limit_of(random);

    const int expected =
        reference::pathLength(q.occupied, q.from_column, q.from_row, q.to_column, q.to_row);
    const int full = boardPathLength(q.occupied, q.from_column, q.from_row, q.to_column, q.to_row);
    const int limited =
        boardPathLength(q.occupied, q.from_column, q.from_row, q.to_column, q.to_row, limit);
    const bool limited_ok = expected < limit ? limited == expected : limited >= limit;
    if (full != expected || !limited_ok) {
      failures++;
      ADD_FAILURE() << "board " << board << " from (" << q.from_column << "," << q.from_row
                    << ") to (" << q.to_column << "," << q.to_row << "): plain " << expected
                    << ", fast " << full << ", with limit " << limit << ": " << limited;
    }
  }
}

}  // namespace
