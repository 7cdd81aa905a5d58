#ifndef TACTICS_BOARD_PATH_H
#define TACTICS_BOARD_PATH_H

#include <array>

const int BOARD_COLUMNS = 12;
const int BOARD_ROWS = 12;
const int UNREACHABLE = 10000;  // the path length given when no path exists

// Which tiles hold a unit, indexed [column][row].
using Occupancy = std::array<std::array<bool, BOARD_ROWS>, BOARD_COLUMNS>;

// Steps of the path the board's A* search finds from one tile to another, or UNREACHABLE.
// Occupied tiles block the way except the start and the goal. Exactly the board's search,
// including that a tile waiting in the open list keeps the g it was first given, so the
// result can exceed the shortest path. With a limit, the search may stop as soon as the
// result cannot be below the limit, and then returns some value >= limit (a lower bound of
// the full result). Columns and rows must lie on the board. Allocates nothing.
int boardPathLength(const Occupancy &occupied, int from_column, int from_row, int to_column,
                    int to_row, int limit = UNREACHABLE);

#endif
