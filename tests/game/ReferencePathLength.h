#ifndef QV_TEST_REFERENCE_PATH_LENGTH_H
#define QV_TEST_REFERENCE_PATH_LENGTH_H

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "BoardPath.h"

// The board's path search written out plainly, step by step, with its node lists and
// path copies: the yardstick boardPathLength must agree with, and the baseline of the
// benchmark. Deliberately not optimised.
namespace reference {

struct Tile {
  int column;
  int row;
  bool operator==(const Tile &other) const { return column == other.column && row == other.row; }
};

struct Node {
  Tile tile;
  std::vector<Tile> path;  // tiles walked so far
  int g;
  int h;
};

inline int manhattan(const Tile &a, const Tile &b) {
  return std::abs(a.column - b.column) + std::abs(a.row - b.row);
}

// Directions 1 down, 2 right, 3 up, 4 left; false at the board's edge.
inline bool neighbour(const Tile &tile, int direction, Tile &result) {
  const int d_column[] = {0, 0, 1, 0, -1}, d_row[] = {0, 1, 0, -1, 0};
  result = {tile.column + d_column[direction], tile.row + d_row[direction]};
  return result.column >= 0 && result.column < BOARD_COLUMNS && result.row >= 0 &&
         result.row < BOARD_ROWS;
}

inline bool contains(const std::vector<Tile> &list, const Tile &tile) {
  return std::find(list.begin(), list.end(), tile) != list.end();
}

inline int pathLength(const Occupancy &occupied, int from_column, int from_row, int to_column,
                      int to_row) {
  const Tile start{from_column, from_row}, goal{to_column, to_row};
  std::vector<Node> open_nodes, closed_nodes;
  std::vector<Tile> open_tiles, closed_tiles;
  open_nodes.push_back({start, {}, 0, manhattan(start, goal)});
  open_tiles.push_back(start);
  for (;;) {
    // The node with the smallest g + distance, the first one on a tie.
    int best_score = 9999;
    std::size_t chosen_index = open_nodes.size();
    for (std::size_t i = 0; i < open_nodes.size(); i++) {
      const int score = open_nodes[i].g + manhattan(open_nodes[i].tile, goal);
      if (score < best_score) {
        best_score = score;
        chosen_index = i;
      }
    }
    if (chosen_index == open_nodes.size()) return UNREACHABLE;  // no score below 9999
    Node chosen = open_nodes[chosen_index];

    open_nodes.erase(std::remove_if(open_nodes.begin(), open_nodes.end(),
                                    [&](const Node &node) {
                                      return node.tile == chosen.tile && node.path == chosen.path;
                                    }),
                     open_nodes.end());
    open_tiles.erase(std::remove(open_tiles.begin(), open_tiles.end(), chosen.tile),
                     open_tiles.end());
    closed_nodes.push_back(chosen);
    closed_tiles.push_back(chosen.tile);
    chosen.path.push_back(chosen.tile);

    if (chosen.tile == goal) return chosen.g;

    for (int direction = 1; direction <= 4; direction++) {
      Tile next;
      if (!neighbour(chosen.tile, direction, next)) continue;
      if (contains(closed_tiles, next) || contains(open_tiles, next)) continue;
      if (occupied[next.column][next.row] && !(next == goal)) continue;
      open_nodes.push_back({next, chosen.path, chosen.g + 1, manhattan(next, goal)});
      open_tiles.push_back(next);
    }

    if (open_nodes.empty()) return UNREACHABLE;
  }
}

}  // namespace reference

#endif
