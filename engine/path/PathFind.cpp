#include "path/PathFind.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "core/LogManager.h"
#include "core/utility.h"
#include "path/EventPath.h"
#include "world/Grid.h"
#include "world/Object.h"
#include "world/WorldManager.h"

namespace qv {

namespace {

// Positions name the cell whose centre is nearest: an object's default box
// is centred on its position, so (2.6, 0.4) stands in cell (3, 0).
int nearestCell(float v) {
  const double r = std::floor(static_cast<double>(v) + 0.5);
  if (!(r > -1e9)) return -1000000000;  // also NaN
  if (r > 1e9) return 1000000000;
  return static_cast<int>(r);
}

// A boundary extent as a count of cells; broken or absurd extents give none.
int cellCount(float extent) {
  if (!(extent >= 1.0f) || extent > 1e8f) return 0;
  return static_cast<int>(extent);
}

// The grid's own cell of a coordinate: floor(v / size), kept far from overflow.
int gridIndex(float v, int size) {
  const double q = std::floor(static_cast<double>(v) / size);
  if (!(q > -1e9)) return -1000000000;
  if (q > 1e9) return 1000000000;
  return static_cast<int>(q);
}

const int NO_CELL = -1;

// What the first HARD object of a grid list, other than the mover, that
// touches box says about the cell: the first HARD object touched decides,
// and it blocks unless it stands on the goal.
enum Verdict { NO_HARD, FREE, BLOCKING };

Verdict firstHardVerdict(const ObjectList *p_list, const Object *p_mover, const Box &box,
                         const Vector &goal) {
  const int count = p_list ? p_list->getCount() : 0;
  for (int k = 0; k < count; k++) {
    const Object *p_t = (*p_list)[k];
    if (p_t == p_mover || p_t->getSolidness() != HARD) continue;
    const Box t_box = getWorldBox(p_t);
    if (!boxIntersectsBox(t_box, box)) continue;
    return boxContainsPosition(t_box, goal) ? FREE : BLOCKING;
  }
  return NO_HARD;
}

}  // namespace

PathFind::PathFind(Object *p_o, Vector start, Vector goal, Object *p_target)
    : m_p_object(p_o),
      m_p_target(p_target),
      m_start{nearestCell(start.getX()), nearestCell(start.getY())},
      m_goal{nearestCell(goal.getX()), nearestCell(goal.getY())},
      m_columns(0),
      m_rows(0),
      m_found(false),
      m_result(PATH_SEARCHING) {
  const Box boundary = WorldManager::getInstance().getBoundary();
  const int columns = cellCount(boundary.getHorizontal());
  const int rows = cellCount(boundary.getVertical());
  if (columns == 0 || rows == 0) return;
  const long long cells = static_cast<long long>(columns) * rows;
  m_p_nodes.reset(new (std::nothrow) Node[static_cast<size_t>(cells)]);
  if (!m_p_nodes) {
    LogManager::getInstance().writeLog(
        "PathFind::PathFind(): Error! Unable to allocate %d x %d nodes; the search will fail.",
        columns, rows);
    return;
  }
  for (long long i = 0; i < cells; i++)
    m_p_nodes[i] = Node{0.0f, 0.0f, {NO_CELL, NO_CELL}, false, false};
  // Each cell enters each list at most once, so reserving the whole world
  // here keeps every later step free of allocation.
  try {
    m_open.reserve(static_cast<size_t>(cells));
    m_closed.reserve(static_cast<size_t>(cells));
  } catch (const std::bad_alloc &) {
    m_p_nodes.reset();
    LogManager::getInstance().writeLog(
        "PathFind::PathFind(): Error! Unable to allocate lists for %d x %d cells; the search will "
        "fail.",
        columns, rows);
    return;
  }
  m_columns = columns;
  m_rows = rows;
}

PathFind::~PathFind() {
}

bool PathFind::inGraph(int x, int y) const {
  return x >= 0 && y >= 0 && x < m_columns && y < m_rows;
}

PathFind::Node &PathFind::node(Cell c) {
  return m_p_nodes[static_cast<size_t>(c.y) * static_cast<size_t>(m_columns) +
                   static_cast<size_t>(c.x)];
}

const PathFind::Node &PathFind::node(Cell c) const {
  return m_p_nodes[static_cast<size_t>(c.y) * static_cast<size_t>(m_columns) +
                   static_cast<size_t>(c.x)];
}

// Walks the collision grid cells of the mover's box placed at (x, y) in the
// grid's own order (outside list first, then row by row), which is the order
// of WorldManager::getCollisions, without building a list: the search asks
// up to sixteen times per step and must not allocate.
bool PathFind::isBlocked(int x, int y) const {
  const Grid &grid = WorldManager::getInstance().getSceneGraph().getGrid();
  if (!grid.isAllocated() || !m_p_object) return false;
  const Box box = getWorldBox(m_p_object, Vector(static_cast<float>(x), static_cast<float>(y)));
  const Vector corner = box.getCorner();
  const int width = grid.getCellWidth();
  const int height = grid.getCellHeight();
  const int first_col = gridIndex(corner.getX(), width);
  const int first_row = gridIndex(corner.getY(), height);
  const int last_col = gridIndex(corner.getX() + box.getHorizontal(), width);
  const int last_row = gridIndex(corner.getY() + box.getVertical(), height);
  const Vector goal(static_cast<float>(m_goal.x), static_cast<float>(m_goal.y));

  const bool outside = first_col < 0 || first_row < 0 || last_col >= grid.getNumCols() ||
                       last_row >= grid.getNumRows();
  Verdict verdict = NO_HARD;
  if (outside) verdict = firstHardVerdict(grid.getCellList(-1, -1), m_p_object, box, goal);
  if (verdict != NO_HARD) return verdict == BLOCKING;
  for (int row = std::max(first_row, 0); row <= std::min(last_row, grid.getNumRows() - 1); row++)
    for (int col = std::max(first_col, 0); col <= std::min(last_col, grid.getNumCols() - 1);
         col++) {
      verdict = firstHardVerdict(grid.getCellList(col, row), m_p_object, box, goal);
      if (verdict != NO_HARD) return verdict == BLOCKING;
    }
  return false;
}

bool PathFind::touchesTarget(Cell c) const {
  if (!m_p_target || !m_p_object) return false;
  const Box mover =
      getWorldBox(m_p_object, Vector(static_cast<float>(c.x), static_cast<float>(c.y)));
  const Box target =
      getWorldBox(m_p_target, Vector(static_cast<float>(m_goal.x), static_cast<float>(m_goal.y)));
  return boxIntersectsBox(mover, target);
}

// The open cell with the smallest f, later entries winning ties, taken off
// the open list; the start cell when the list is empty.
void PathFind::takeBestOpen(Cell &current) {
  if (m_open.empty()) {
    current = m_start;
    return;
  }
  size_t best = m_open.size() - 1;
  float best_f = node(m_open[best]).f;
  for (size_t i = best; i-- > 0;) {
    const float f = node(m_open[i]).f;
    if (f < best_f) {
      best_f = f;
      best = i;
    }
  }
  current = m_open[best];
  m_open.erase(m_open.begin() + static_cast<std::ptrdiff_t>(best));
  node(current).open = false;
}

int PathFind::cycleOnce() {
  if (!m_p_nodes) {
    LogManager::getInstance().writeLog(
        "PathFind::cycleOnce(): node graph not allocated.  Cannot find path.");
    return PATH_FAILED;
  }
  // A finished search keeps its answer: stepping on could only disturb it.
  if (m_result != PATH_SEARCHING) return m_result;
  if (!inGraph(m_start.x, m_start.y)) {
    LogManager::getInstance().writeLog(
        "PathFind::cycleOnce(): Warning! start cell (%d,%d) outside the world; no path.", m_start.x,
        m_start.y);
    return m_result = PATH_FAILED;
  }

  Cell current;
  takeBestOpen(current);
  m_closed.push_back(current);
  node(current).closed = true;

  if (current == m_goal) m_found = true;
  if (touchesTarget(current)) {
    m_found = true;
    m_goal = current;
  }
  if (m_found) return m_result = PATH_FOUND;

  const float g = node(current).g;
  for (int dy = -1; dy <= 1; dy++) {
    for (int dx = -1; dx <= 1; dx++) {
      if (dx == 0 && dy == 0) continue;
      const int nx = current.x + dx;
      const int ny = current.y + dy;
      if (!inGraph(nx, ny)) continue;
      Node &n = node(Cell{nx, ny});
      if (n.closed || isBlocked(nx, ny)) continue;
      // No squeezing diagonally between two blocked cells.
      if (dx != 0 && dy != 0 && isBlocked(current.x + dx, current.y) &&
          isBlocked(current.x, current.y + dy))
        continue;
      const float g2 = g + static_cast<float>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
      if (n.open && g2 > n.g) continue;
      if (!n.open) {
        m_open.push_back(Cell{nx, ny});
        n.open = true;
      }
      const int ex = nx - m_goal.x;
      const int ey = ny - m_goal.y;
      n.parent = current;
      n.g = g2;
      n.f = static_cast<float>(
          g2 + std::sqrt(static_cast<double>(ex) * ex + static_cast<double>(ey) * ey));
    }
  }
  if (m_open.empty()) return m_result = PATH_FAILED;
  return PATH_SEARCHING;
}

Path PathFind::getPath() const {
  Path path;
  if (!m_found) return path;
  std::vector<Vector> nodes;
  Cell c = m_goal;
  // The walk is bounded by the number of cells, so a broken parent chain
  // cannot loop.
  const long long limit = static_cast<long long>(m_columns) * m_rows;
  for (long long steps = 0; !(c == m_start) && steps < limit; steps++) {
    if (!inGraph(c.x, c.y)) break;
    nodes.push_back(Vector(static_cast<float>(c.x), static_cast<float>(c.y)));
    c = node(c).parent;
  }
  nodes.push_back(Vector(static_cast<float>(m_start.x), static_cast<float>(m_start.y)));
  path.setNodes(std::vector<Vector>(nodes.rbegin(), nodes.rend()));
  return path;
}

Object *PathFind::getObject() const {
  return m_p_object;
}

Object *PathFind::getTarget() const {
  return m_p_target;
}

Vector PathFind::getStart() const {
  return Vector(static_cast<float>(m_start.x), static_cast<float>(m_start.y));
}

Vector PathFind::getGoal() const {
  return Vector(static_cast<float>(m_goal.x), static_cast<float>(m_goal.y));
}

bool PathFind::isFound() const {
  return m_found;
}

bool PathFind::isAllocated() const {
  return m_p_nodes != nullptr;
}

int PathFind::getColumns() const {
  return m_columns;
}

int PathFind::getRows() const {
  return m_rows;
}

int PathFind::getOpenCount() const {
  return static_cast<int>(m_open.size());
}

int PathFind::getClosedCount() const {
  return static_cast<int>(m_closed.size());
}

}  // namespace qv
