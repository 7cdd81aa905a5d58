#include "BoardPath.h"

#include <cstdlib>
#include <utility>

// Why two FIFO queues give exactly the board's A* search:
// - A tile enters the open list at most once in a search (open and closed tiles are never
//   added again), so removing "every node with the chosen tile" removes just the chosen one,
//   and a node's g, h and score g + h never change. The paths carried by the nodes decide
//   nothing and are not kept.
// - The chosen node is the earliest inserted of those with the lowest score. Every step
//   changes g by 1 and the distance to the goal by 1, so a child scores either its parent's
//   score (it moved toward the goal) or that plus 2 (it moved away). The lowest score never
//   decreases, and the open list only ever holds scores f and f + 2, f being the lowest.
//   One queue per score, each in insertion order, so the chosen node is always the head of
//   the queue of score f; when that runs empty, the f + 2 queue takes its place.
// - The goal is chosen with h = 0, so the length returned is the score f at that moment,
//   and no g needs storing. Since f never decreases, once f reaches a limit the result
//   cannot be below it.
// - The scan's starting score of 9999 never matters: on a 12 x 12 board every score stays
//   below 144 + 22.
namespace {

// The board framed by one tile on each side, so that a step never needs a bounds check:
// the frame counts as closed. Cell numbers run row by row within a column.
const int FRAMED_ROWS = BOARD_ROWS + 2;
const int FRAMED_CELLS = (BOARD_COLUMNS + 2) * FRAMED_ROWS;
const int BOARD_TILES = BOARD_COLUMNS * BOARD_ROWS;

enum CellState : unsigned char { UNSEEN, OPEN, CLOSED };
using CellStates = std::array<CellState, FRAMED_CELLS>;

CellStates framedStates() {
  CellStates states{};
  for (int cell = 0; cell < FRAMED_CELLS; cell++) {
    const int column = cell / FRAMED_ROWS - 1, row = cell % FRAMED_ROWS - 1;
    const bool inside = column >= 0 && column < BOARD_COLUMNS && row >= 0 && row < BOARD_ROWS;
    states[cell] = inside ? UNSEEN : CLOSED;
  }
  return states;
}

const CellStates FRESH_STATES = framedStates();

int cellOf(int column, int row) {
  return (column + 1) * FRAMED_ROWS + row + 1;
}

// Open tiles of one score, in insertion order.
struct Queue {
  std::array<unsigned char, BOARD_TILES> cells;
  int head = 0;
  int tail = 0;

  bool empty() const { return head == tail; }
  void clear() { head = tail = 0; }
  void push(int cell) { cells[tail++] = static_cast<unsigned char>(cell); }
  int pop() { return cells[head++]; }
};

// One search; every piece of it lives on the stack.
class Search {
 public:
  Search(const Occupancy &occupied, int to_column, int to_row)
      : occupied_(occupied),
        states_(FRESH_STATES),
        goal_(cellOf(to_column, to_row)),
        goal_column_(to_column),
        goal_row_(to_row) {}

  int run(int from_column, int from_row, int limit) {
    int score = std::abs(from_column - goal_column_) + std::abs(from_row - goal_row_);
    Queue *p_current = &queues_[0], *p_later = &queues_[1];
    const int start = cellOf(from_column, from_row);
    states_[start] = OPEN;
    p_current->push(start);
    for (;;) {
      if (p_current->empty()) {
        if (p_later->empty()) return UNREACHABLE;
        p_current->clear();
        std::swap(p_current, p_later);
        score += 2;
      }
      if (score >= limit) return score;
      const int cell = p_current->pop();
      states_[cell] = CLOSED;
      if (cell == goal_) return score;
      const int column = cell / FRAMED_ROWS - 1, row = cell % FRAMED_ROWS - 1;
      // Down, right, up, left, in the board's order.
      visit(cell + 1, column, row + 1, row < goal_row_, p_current, p_later);
      visit(cell + FRAMED_ROWS, column + 1, row, column < goal_column_, p_current, p_later);
      visit(cell - 1, column, row - 1, row > goal_row_, p_current, p_later);
      visit(cell - FRAMED_ROWS, column - 1, row, column > goal_column_, p_current, p_later);
    }
  }

 private:
  void visit(int cell, int column, int row, bool toward_goal, Queue *p_current, Queue *p_later) {
    if (states_[cell] != UNSEEN) return;
    if (occupied_[column][row] && cell != goal_) return;
    states_[cell] = OPEN;
    (toward_goal ? p_current : p_later)->push(cell);
  }

  const Occupancy &occupied_;
  CellStates states_;
  std::array<Queue, 2> queues_;
  const int goal_;
  const int goal_column_;
  const int goal_row_;
};

}  // namespace

int boardPathLength(const Occupancy &occupied, int from_column, int from_row, int to_column,
                    int to_row, int limit) {
  return Search(occupied, to_column, to_row).run(from_column, from_row, limit);
}
