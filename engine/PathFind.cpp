#include "PathFind.h"

#include "EventPath.h"

namespace qv {

PathFind::PathFind(Object *p_o, Vector start, Vector goal, Object *p_target)
    : m_p_object(p_o), m_p_target(p_target),
      m_start{static_cast<int>(start.getX()), static_cast<int>(start.getY())},
      m_goal{static_cast<int>(goal.getX()), static_cast<int>(goal.getY())},
      m_columns(0), m_rows(0), m_found(false), m_result(PATH_SEARCHING) {}

PathFind::~PathFind() {}

int PathFind::cycleOnce() { return PATH_FAILED; }

Path PathFind::getPath() const { return Path(); }

Object *PathFind::getObject() const { return m_p_object; }
Object *PathFind::getTarget() const { return m_p_target; }
Vector PathFind::getStart() const {
  return Vector(static_cast<float>(m_start.x), static_cast<float>(m_start.y));
}
Vector PathFind::getGoal() const {
  return Vector(static_cast<float>(m_goal.x), static_cast<float>(m_goal.y));
}
bool PathFind::isFound() const { return m_found; }
bool PathFind::isAllocated() const { return m_p_nodes != nullptr; }
int PathFind::getColumns() const { return m_columns; }
int PathFind::getRows() const { return m_rows; }
int PathFind::getOpenCount() const { return static_cast<int>(m_open.size()); }
int PathFind::getClosedCount() const { return static_cast<int>(m_closed.size()); }

}  // namespace qv
