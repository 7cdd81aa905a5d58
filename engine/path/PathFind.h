#ifndef QV_PATH_FIND_H
#define QV_PATH_FIND_H

#include <memory>
#include <vector>

#include "path/Path.h"
#include "world/Vector.h"

namespace qv {

class Object;

// One incremental A* search over the world's cells for one object. Each
// cycleOnce expands a single cell, so the path manager can spread a search
// over many frames. The object owns the search (it is attached with
// Object::setPathFind, usually by PathManager::findPath) and releases it when
// the result arrives or when it is destroyed.
//
// Cells are whole world positions: cell (x, y) is where the object would
// stand with its position at (x, y). The search steps to all eight
// neighbours; a cell is blocked when the first HARD object the mover's box
// would touch there does not cover the goal, so a search may end on a cell
// held by the unit it is heading for.
class PathFind {
 public:
  // A search for p_o from cell start to cell goal (both rounded to the
  // nearest cell, whose centre the position is closest to), optionally ending as soon as p_o
  // touches p_target. The node graph covers the world manager's current boundary and is allocated
  // here, once; with an empty boundary it stays unallocated and the first step fails.
  PathFind(Object *p_o, Vector start, Vector goal, Object *p_target = nullptr);
  // Releases the node graph and both lists.
  ~PathFind();

  // One step: PATH_FAILED (0) no path exists, PATH_SEARCHING (1), or
  // PATH_FOUND (2). A finished search keeps reporting its result without
  // searching further.
  int cycleOnce();
  // Start to goal, both included, index 0; empty unless found.
  Path getPath() const;

  Object *getObject() const;
  Object *getTarget() const;
  Vector getStart() const;
  // The cell to reach; the cell actually reached once a target is touched.
  Vector getGoal() const;
  bool isFound() const;
  bool isAllocated() const;
  int getColumns() const;
  int getRows() const;
  int getOpenCount() const;
  int getClosedCount() const;
  // Whether the world, as it is now, keeps the object out of cell (x, y):
  // the first HARD object its box would touch there does not cover the goal.
  bool isBlocked(int x, int y) const;

 private:
  PathFind(const PathFind &) = delete;
  PathFind &operator=(const PathFind &) = delete;

  struct Cell {
    int x;
    int y;
    bool operator==(const Cell &o) const { return x == o.x && y == o.y; }
  };
  // Search state of one world cell.
  struct Node {
    float g;      // cost from the start
    float f;      // g plus the estimate to the goal
    Cell parent;  // the cell it was reached from, (-1,-1) unset
    bool open;    // listed in the open list
    bool closed;  // listed in the closed list
  };

  bool inGraph(int x, int y) const;
  Node &node(Cell c);
  const Node &node(Cell c) const;
  bool touchesTarget(Cell c) const;
  void takeBestOpen(Cell &current);

  Object *m_p_object;                 // the mover, not owned
  Object *m_p_target;                 // null, or the object to reach, not owned
  Cell m_start;                       // where the search starts
  Cell m_goal;                        // where it ends
  int m_columns;                      // world boundary's horizontal extent
  int m_rows;                         // world boundary's vertical extent
  std::unique_ptr<Node[]> m_p_nodes;  // rows x columns, null when not allocated
  std::vector<Cell> m_open;           // found, not expanded, in the order found
  std::vector<Cell> m_closed;         // expanded, in order
  bool m_found;                       // the goal was reached
  int m_result;                       // PATH_SEARCHING until the search ends
};

}  // namespace qv

#endif
