#include "PathManager.h"

#include <algorithm>

#include "PathFind.h"

namespace qv {

PathManager::PathManager() : m_min_cycle_time(0) { setType("PathManager"); }

PathManager::~PathManager() {}

PathManager &PathManager::getInstance() {
  static PathManager path_manager;
  return path_manager;
}

int PathManager::startUp() { return Manager::startUp(); }

void PathManager::shutDown() { Manager::shutDown(); }

PathFind *PathManager::findPath(Object *, Vector, Object *) { return nullptr; }

int PathManager::addPathFind(PathFind *p_path_find) {
  if (!p_path_find || isListed(p_path_find)) return -1;
  m_searches.push_back(p_path_find);
  return 0;
}

int PathManager::removePathFind(PathFind *p_path_find) {
  if (!p_path_find || !isListed(p_path_find)) return -1;
  m_searches.erase(std::remove(m_searches.begin(), m_searches.end(), p_path_find),
                   m_searches.end());
  return 0;
}

void PathManager::cycle(int) {}

int PathManager::getMinCycleTime() const { return m_min_cycle_time; }

int PathManager::getSearchCount() const { return static_cast<int>(m_searches.size()); }

bool PathManager::isListed(const PathFind *p_path_find) const {
  return std::find(m_searches.begin(), m_searches.end(), p_path_find) != m_searches.end();
}

}  // namespace qv
