#include "path/PathManager.h"

#include <algorithm>
#include <cstdint>

#include "core/Clock.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "path/EventPath.h"
#include "path/PathFind.h"
#include "world/Object.h"

namespace qv {

PathManager::PathManager()
    : m_min_cycle_time(0), m_p_delivering(nullptr), m_delivery_released(false) {
  setType("PathManager");
}

PathManager::~PathManager() {
}

PathManager &PathManager::getInstance() {
  static PathManager path_manager;
  return path_manager;
}

int PathManager::startUp() {
  const LogManager &log = LogManager::getInstance();
  if (refuseSecondStart()) return -1;
  m_min_cycle_time = GameManager::getInstance().getFrameTime() / 10;
  Manager::startUp();
  log.writeLog(5, "PathManager::startUp(): successfully started.");
  return 0;
}

void PathManager::shutDown() {
  Manager::shutDown();
  LogManager::getInstance().writeLog(5, "PathManager::shutDown(): successfully stopped.");
}

PathFind *PathManager::findPath(Object *p_o, Vector goal, Object *p_target) {
  const LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("PathManager::findPath(): Error! %s not started; no search made.",
                 getType().c_str());
    return nullptr;
  }
  if (!p_o) {
    log.writeLog("PathManager::findPath(): Error! Object is NULL; no search made.");
    return nullptr;
  }
  PathFind *p_path_find = new PathFind(p_o, p_o->getPosition(), goal, p_target);
  // The object owns the search from here on; attaching releases (and
  // delists) the one it had.
  p_o->setPathFind(p_path_find);
  addPathFind(p_path_find);
  return p_path_find;
}

int PathManager::addPathFind(PathFind *p_path_find) {
  if (!p_path_find || isListed(p_path_find)) return -1;
  m_searches.push_back(p_path_find);
  return 0;
}

int PathManager::removePathFind(PathFind *p_path_find) {
  if (!p_path_find || !isListed(p_path_find)) return -1;
  m_searches.erase(std::remove(m_searches.begin(), m_searches.end(), p_path_find),
                   m_searches.end());
  if (p_path_find == m_p_delivering) m_delivery_released = true;
  return 0;
}

// Hands a finished search's result to its object. The object normally
// releases the search in its handler; one it keeps would report the same
// result on every later step and eat the whole budget, so it is delisted
// (the object still owns it and deletes it when it goes).
void PathManager::deliver(PathFind *p_path_find, int status) {
  Object *p_o = p_path_find->getObject();
  m_p_delivering = p_path_find;
  m_delivery_released = false;
  if (p_o) {
    EventPath event(status, p_path_find->getPath());
    p_o->eventHandler(&event);
  }
  const bool released = m_delivery_released;
  m_p_delivering = nullptr;
  if (released) return;
  removePathFind(p_path_find);
  if (p_o)
    LogManager::getInstance().writeLog(
        "PathManager::cycle(): Warning! Object %d kept its finished path search; "
        "it is no longer stepped.",
        p_o->getId());
  else
    LogManager::getInstance().writeLog(
        "PathManager::cycle(): Warning! path search %p has no object to report to; "
        "it is no longer stepped.",
        static_cast<void *>(p_path_find));
}

void PathManager::cycle(int budget_ms) {
  const int budget = std::max(budget_ms, m_min_cycle_time);
  Clock clock;
  auto elapsed = [&clock]() { return clock.split() / 1000; };
  while (!m_searches.empty()) {
    if (elapsed() >= budget) break;
    // A finished search leaves the list, so the one after it moves into its
    // place and waits for the next round: every search gets one step per
    // round whatever the others do.
    for (std::size_t i = 0; i < m_searches.size(); i++) {
      PathFind *p_path_find = m_searches[i];
      const int result = p_path_find->cycleOnce();
      if (result == PATH_FAILED || result == PATH_FOUND) deliver(p_path_find, result);
      if (elapsed() > budget) break;
    }
  }
  if (elapsed() > budget)
    LogManager::getInstance().writeLog(5, "PathManager::cycle(): cycle time %d exceeded.", budget);
}

int PathManager::getMinCycleTime() const {
  return m_min_cycle_time;
}

int PathManager::getSearchCount() const {
  return static_cast<int>(m_searches.size());
}

bool PathManager::isListed(const PathFind *p_path_find) const {
  return std::find(m_searches.begin(), m_searches.end(), p_path_find) != m_searches.end();
}

}  // namespace qv
