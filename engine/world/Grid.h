#ifndef QV_GRID_H
#define QV_GRID_H

#include <vector>

#include "world/ObjectList.h"
#include "world/Vector.h"

namespace qv {

class Object;

// The collision grid: the world's boundary cut into equal cells, each listing
// the active solid objects whose world box touches it, plus one outside list
// for boxes that reach beyond the grid. A collision query only looks at the
// few cells a box covers.
class Grid {
 public:
  // One cell, (column, row); (-1, -1) names the outside list.
  struct Cell {
    int col;
    int row;
  };

  // Takes the cell size from the configuration, once.
  Grid();
  ~Grid();

  // Builds empty cells for the world manager's current boundary.
  int startUp();
  // Cell size in world cells for the next startUp (values below 1 are
  // refused with -1). Larger cells mean fewer lists but longer ones.
  int setCellSize(int width, int height);
  // Releases every cell and empties the outside list; safe to repeat.
  void shutDown();

  int insertObject(Object *p_o);
  int removeObject(Object *p_o);
  // Moves p_o from the cells of its current position to those of where;
  // called before the position changes.
  int updatePosition(Object *p_o, Vector where);
  // The solid objects other than p_o that p_o's box placed at where touches,
  // each once, in cell order.
  ObjectList getCollisions(const Object *p_o, Vector where) const;

  // The cells of p_o's box placed at where, ordered by row then column,
  // (-1, -1) first when the box reaches outside the grid.
  std::vector<Cell> getCells(const Object *p_o, Vector where) const;
  // The list of one cell (the outside list for (-1, -1)); null outside the
  // grid or before startUp.
  const ObjectList *getCellList(int col, int row) const;
  bool isAllocated() const;
  int getNumCols() const;
  int getNumRows() const;
  int getCellWidth() const;
  int getCellHeight() const;

 private:
  Grid(const Grid &) = delete;
  Grid &operator=(const Grid &) = delete;
  // Logs and answers false when there are no cells yet or p_o is null.
  bool isReady(const char *operation, const Object *p_o) const;
  void cellsOf(const Object *p_o, Vector where, std::vector<Cell> &cells) const;
  ObjectList *listOf(Cell c);

  ObjectList **m_p_cells;  // [row][column], null until startUp
  ObjectList m_outside;    // objects reaching beyond the grid
  int m_num_cols;          // 0 until startUp
  int m_num_rows;          // 0 until startUp
  int m_cell_width;        // configuration "grid_width", 20
  int m_cell_height;       // configuration "grid_height", 8
  // Scratch cell sets reused by every query, so a move allocates nothing.
  mutable std::vector<Cell> m_old_cells;
  mutable std::vector<Cell> m_new_cells;
};

}  // namespace qv

#endif
