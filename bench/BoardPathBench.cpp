// The board's path search, fast version against the plain one (the baseline), on random
// 12 x 12 boards of several densities (the share of tiles holding a wall or a unit).
// Reported: searches per second (items_per_second).
// - Anywhere: random start and goal anywhere on the board.
// - Reach: an enemy's reach test, every tile within 2 steps of a random tile, asked only
//   whether it lies within 2 path steps; the fast search runs without a limit and with 3.
// - ToBase: from a random tile in the right half to each of the 12 base tiles, as an enemy
//   scoring its goals; the fast search runs without a limit and with the best length found
//   so far from that tile as its limit.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "BoardPath.h"
#include "game/ReferencePathLength.h"

namespace {

enum Search { FAST, FAST_WITH_LIMIT, PLAIN };

struct Query {
  int board;
  int from_column, from_row, to_column, to_row;
  int limit;  // for FAST_WITH_LIMIT
};

struct Workload {
  std::vector<Occupancy> boards;
  std::vector<Query> queries;
  bool best_as_limit = false;  // FAST_WITH_LIMIT also stops at the best length so far
};

const int BOARDS = 64;

enum Kind { ANYWHERE, REACH, TO_BASE };

Workload makeWorkload(Kind kind, int density_percent) {
  std::mt19937 random(1234 + density_percent);
  std::uniform_int_distribution<int> percent(0, 99), column(0, BOARD_COLUMNS - 1),
      right_column(BOARD_COLUMNS / 2, BOARD_COLUMNS - 1), row(0, BOARD_ROWS - 1);
  Workload work;
  work.best_as_limit = kind == TO_BASE;
  for (int b = 0; b < BOARDS; b++) {
    Occupancy occupied{};
    for (auto &tiles : occupied)
      for (auto &&tile : tiles) tile = percent(random) < density_percent;
    work.boards.push_back(occupied);
    if (kind == ANYWHERE) {
      for (int i = 0; i < 16; i++)
        work.queries.push_back(
            {b, column(random), row(random), column(random), row(random), UNREACHABLE});
    } else if (kind == REACH) {
      const int c = column(random), r = row(random);
      for (int tc = 0; tc < BOARD_COLUMNS; tc++)
        for (int tr = 0; tr < BOARD_ROWS; tr++)
          if (std::abs(tc - c) + std::abs(tr - r) <= 2)
            work.queries.push_back({b, c, r, tc, tr, 3});
    } else {
      const int c = right_column(random), r = row(random);
      for (int tr = 0; tr < BOARD_ROWS; tr++) work.queries.push_back({b, c, r, 0, tr, UNREACHABLE});
    }
  }
  return work;
}

void runSearches(benchmark::State &state, Kind kind, int density_percent, Search search) {
  const Workload work = makeWorkload(kind, density_percent);
  long long total = 0;
  for (auto _ : state) {
    int best = UNREACHABLE;  // the best length so far from one start
    for (std::size_t i = 0; i < work.queries.size(); i++) {
      const Query &q = work.queries[i];
      const Occupancy &occupied = work.boards[q.board];
      if (i > 0 && q.board != work.queries[i - 1].board) best = UNREACHABLE;
      int length;
      if (search == PLAIN)
        length = reference::pathLength(occupied, q.from_column, q.from_row, q.to_column, q.to_row);
      else if (search == FAST)
        length = boardPathLength(occupied, q.from_column, q.from_row, q.to_column, q.to_row);
      else
        length = boardPathLength(occupied, q.from_column, q.from_row, q.to_column, q.to_row,
                                 work.best_as_limit ? std::min(q.limit, best) : q.limit);
      best = std::min(best, length);
      total += length;
    }
  }
  benchmark::DoNotOptimize(total);
  state.SetItemsProcessed(state.iterations() * static_cast<long long>(work.queries.size()));
}

// Registered density by density, so that each fast figure sits under its baseline.
int registerAll() {
  struct Row {
    const char *name;
    Kind kind;
    Search search;
  };
  const Row rows[] = {{"plain", ANYWHERE, PLAIN},
                      {"fast", ANYWHERE, FAST},
                      {"plain", REACH, PLAIN},
                      {"fast", REACH, FAST},
                      {"fast_limit3", REACH, FAST_WITH_LIMIT},
                      {"plain", TO_BASE, PLAIN},
                      {"fast", TO_BASE, FAST},
                      {"fast_best_as_limit", TO_BASE, FAST_WITH_LIMIT}};
  const char *kind_names[] = {"BoardPathAnywhere", "BoardPathReach", "BoardPathToBase"};
  for (Kind kind : {ANYWHERE, REACH, TO_BASE})
    for (int density : {0, 15, 30, 45})
      for (const Row &row : rows) {
        if (row.kind != kind) continue;
        const std::string name =
            std::string(kind_names[kind]) + "/density:" + std::to_string(density) + "%/" + row.name;
        benchmark::RegisterBenchmark(name.c_str(), runSearches, kind, density, row.search);
      }
  return 0;
}

[[maybe_unused]] const int REGISTERED = registerAll();

}  // namespace
