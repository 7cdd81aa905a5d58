#include "world/Grid.h"

#include <climits>
#include <cmath>
#include <new>

#include "core/Config.h"
#include "core/LogManager.h"
#include "core/utility.h"
#include "world/Object.h"
#include "world/WorldManager.h"

namespace qv {

namespace {

const int DEFAULT_CELL_WIDTH = 20;
const int DEFAULT_CELL_HEIGHT = 8;

// floor(v / size) as an int, kept far from overflow so that huge or broken
// coordinates simply land outside the grid.
int cellIndex(float v, int size) {
  const double q = std::floor(static_cast<double>(v) / size);
  if (!(q > -1e9)) return -1000000000;  // also NaN
  if (q > 1e9) return 1000000000;
  return static_cast<int>(q);
}

// Cell sets are ordered by row, then column, (-1,-1) first.
bool cellBefore(const Grid::Cell &a, const Grid::Cell &b) {
  return a.row < b.row || (a.row == b.row && a.col < b.col);
}

}  // namespace

Grid::Grid()
    : m_p_cells(nullptr),
      m_num_cols(0),
      m_num_rows(0),
      m_cell_width(Config::getInstance().getGridWidth()),
      m_cell_height(Config::getInstance().getGridHeight()) {
  if (m_cell_width < 1 || m_cell_height < 1) {
    LogManager::getInstance().writeLog(
        "Grid::Grid(): Warning! grid cell size %d x %d not positive, using %d x %d instead.",
        m_cell_width, m_cell_height, DEFAULT_CELL_WIDTH, DEFAULT_CELL_HEIGHT);
    m_cell_width = DEFAULT_CELL_WIDTH;
    m_cell_height = DEFAULT_CELL_HEIGHT;
  }
}

Grid::~Grid() {
  shutDown();
}

int Grid::startUp() {
  const LogManager &log = LogManager::getInstance();
  if (m_p_cells) {
    log.writeLog("Grid::startUp(): Warning! Grid allocated. Not proceeding.");
    return -1;
  }
  const Box boundary = WorldManager::getInstance().getBoundary();
  const float cols = std::ceil(boundary.getHorizontal() / m_cell_width);
  const float rows = std::ceil(boundary.getVertical() / m_cell_height);
  // A negative or broken boundary has no cells; an absurd one fails to allocate.
  m_num_cols = cols > 0 ? (cols < INT_MAX / 2 ? static_cast<int>(cols) : INT_MAX / 2) : 0;
  m_num_rows = rows > 0 ? (rows < INT_MAX / 2 ? static_cast<int>(rows) : INT_MAX / 2) : 0;
  log.writeLog(5, "Grid::startUp(): m_num_cols %d, m_num_rows %d", m_num_cols, m_num_rows);

  m_p_cells = new (std::nothrow) ObjectList *[m_num_rows];
  if (!m_p_cells) {
    log.writeLog("Grid::startUp(): Error! Unable to allocate %d grid rows.", m_num_rows);
    m_num_rows = m_num_cols = 0;
    return -1;
  }
  for (int row = 0; row < m_num_rows; row++) m_p_cells[row] = nullptr;
  for (int row = 0; row < m_num_rows; row++) {
    m_p_cells[row] = new (std::nothrow) ObjectList[m_num_cols];
    if (!m_p_cells[row]) {
      log.writeLog("Grid::startUp(): Error! Unable to allocate columns.");
      shutDown();
      return -1;
    }
  }
  m_outside.clear();
  return 0;
}

int Grid::setCellSize(int width, int height) {
  if (width < 1 || height < 1) {
    LogManager::getInstance().writeLog(
        "Grid::setCellSize(): Error! cell size %d x %d not positive, keeping %d x %d.", width,
        height, m_cell_width, m_cell_height);
    return -1;
  }
  m_cell_width = width;
  m_cell_height = height;
  return 0;
}

void Grid::shutDown() {
  if (m_p_cells) {
    for (int row = 0; row < m_num_rows; row++) delete[] m_p_cells[row];
    delete[] m_p_cells;
    m_p_cells = nullptr;
  }
  m_num_cols = m_num_rows = 0;
  m_outside.clear();
}

void Grid::cellsOf(const Object *p_o, Vector where, std::vector<Cell> &cells) const {
  cells.clear();
  const Box box = getWorldBox(p_o, where);
  const Vector c = box.getCorner();
  int first_col = cellIndex(c.getX(), m_cell_width);
  const int first_row = cellIndex(c.getY(), m_cell_height);
  int last_col = cellIndex(c.getX() + box.getHorizontal(), m_cell_width);
  int last_row = cellIndex(c.getY() + box.getVertical(), m_cell_height);
  bool outside = false;
  if (first_col < 0) {
    outside = true;
    first_col = 0;
  }
  if (first_row < 0) outside = true;
  if (last_row >= m_num_rows) {
    outside = true;
    last_row = m_num_rows - 1;
  }
  if (last_col >= m_num_cols) {
    outside = true;
    last_col = m_num_cols - 1;
  }
  if (outside) cells.push_back({-1, -1});
  for (int row = first_row < 0 ? 0 : first_row; row <= last_row; row++)
    for (int col = first_col; col <= last_col; col++) cells.push_back({col, row});
}

std::vector<Grid::Cell> Grid::getCells(const Object *p_o, Vector where) const {
  std::vector<Cell> cells;
  if (p_o) cellsOf(p_o, where, cells);
  return cells;
}

const ObjectList *Grid::getCellList(int col, int row) const {
  if (!m_p_cells) return nullptr;
  if (col == -1 && row == -1) return &m_outside;
  if (col < 0 || row < 0 || col >= m_num_cols || row >= m_num_rows) return nullptr;
  return &m_p_cells[row][col];
}

ObjectList *Grid::listOf(Cell c) {
  return const_cast<ObjectList *>(getCellList(c.col, c.row));
}

bool Grid::isReady(const char *operation, const Object *p_o) const {
  if (!m_p_cells) {
    LogManager::getInstance().writeLog("Grid::%s(): Error! grid is NULL", operation);
    return false;
  }
  if (!p_o) {
    LogManager::getInstance().writeLog("Grid::%s(): Error! Object is NULL", operation);
    return false;
  }
  return true;
}

int Grid::insertObject(Object *p_o) {
  if (!isReady("insertObject", p_o)) return -1;
  cellsOf(p_o, p_o->getPosition(), m_new_cells);
  for (const Cell &c : m_new_cells) listOf(c)->insert(p_o);
  return 0;
}

int Grid::removeObject(Object *p_o) {
  if (!isReady("removeObject", p_o)) return -1;
  if (!p_o->isSolid() || !p_o->isActive()) return 0;
  cellsOf(p_o, p_o->getPosition(), m_old_cells);
  for (const Cell &c : m_old_cells) listOf(c)->remove(p_o);
  return 0;
}

int Grid::updatePosition(Object *p_o, Vector where) {
  if (!isReady("updatePosition", p_o)) return -1;
  const LogManager &log = LogManager::getInstance();
  cellsOf(p_o, p_o->getPosition(), m_old_cells);
  cellsOf(p_o, where, m_new_cells);
  // Both sets are ordered, so one merge finds what is only in either.
  std::size_t i = 0, j = 0;
  while (i < m_old_cells.size() || j < m_new_cells.size()) {
    if (j == m_new_cells.size() ||
        (i < m_old_cells.size() && cellBefore(m_old_cells[i], m_new_cells[j]))) {
      const Cell &c = m_old_cells[i++];
      ObjectList *p_list = listOf(c);
      if (p_list)
        p_list->remove(p_o);
      else
        log.writeLog("Error! remove Cell x,y out of bounds (%d, %d).", c.col, c.row);
    } else if (i == m_old_cells.size() || cellBefore(m_new_cells[j], m_old_cells[i])) {
      const Cell &c = m_new_cells[j++];
      ObjectList *p_list = listOf(c);
      if (p_list)
        p_list->insert(p_o);
      else
        log.writeLog("Error! insert Cell x,y out of bounds [%d, %d].", c.col, c.row);
    } else {
      i++;  // in both: stays listed
      j++;
    }
  }
  return 0;
}

ObjectList Grid::getCollisions(const Object *p_o, Vector where) const {
  ObjectList collisions;
  if (!isReady("getCollisions", p_o)) return collisions;
  cellsOf(p_o, where, m_new_cells);
  const Box box = getWorldBox(p_o, where);
  // Testing every listed object and dropping repeats among the hits gives the
  // same order as keeping only first sightings, without a candidate list.
  for (const Cell &c : m_new_cells) {
    const ObjectList *p_list = getCellList(c.col, c.row);
    const int count = p_list->getCount();
    for (int k = 0; k < count; k++) {
      Object *p_t = (*p_list)[k];
      if (p_t == p_o || !boxIntersectsBox(getWorldBox(p_t), box)) continue;
      if (m_new_cells.size() > 1 && collisions.contains(p_t)) continue;
      collisions.insert(p_t);
    }
  }
  return collisions;
}

bool Grid::isAllocated() const {
  return m_p_cells != nullptr;
}

int Grid::getNumCols() const {
  return m_num_cols;
}

int Grid::getNumRows() const {
  return m_num_rows;
}

int Grid::getCellWidth() const {
  return m_cell_width;
}

int Grid::getCellHeight() const {
  return m_cell_height;
}

}  // namespace qv
