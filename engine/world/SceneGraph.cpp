#include "world/SceneGraph.h"

#include "core/GameManager.h"
#include "core/LogManager.h"
#include "core/utility.h"

namespace qv {

namespace {

// Index failures after game over are expected (objects leave in any order
// while the world shuts down), so they are reported only during the game.
bool reportFailures() {
  return !GameManager::getInstance().getGameOver();
}

bool validAltitude(int altitude) {
  return altitude >= 0 && altitude <= ALTITUDE_MAX;
}

}  // namespace

SceneGraph::SceneGraph() {
}

SceneGraph::~SceneGraph() {
}

int SceneGraph::startUp() {
  m_type_map.clear();
  LogManager::getInstance().writeLog(1, "Scenegraph configuration: GRID");
  return m_grid.startUp();
}

void SceneGraph::shutDown() {
  m_type_map.clear();
  m_grid.shutDown();
}

void SceneGraph::reindex() {
  const int count = m_objects.getCount();
  for (int i = 0; i < count; i++) {
    Object *p_o = m_objects[i];
    m_type_map[p_o->getType()].insert(p_o);
    if (p_o->isSolid()) m_grid.insertObject(p_o);
  }
}

int SceneGraph::insertObject(Object *p_o) {
  const LogManager &log = LogManager::getInstance();
  if (!p_o->isActive()) return m_inactive_objects.insert(p_o);
  if (m_objects.insert(p_o) == -1) {
    log.writeLog("SceneGraph::insertObject(): Error! unable to insert active Object (id %d)",
                 p_o->getId());
    return -1;
  }
  if (m_type_map[p_o->getType()].insert(p_o) == -1) {
    log.writeLog("SceneGraph::insertObject(): Error! unable to insert Object (id %d) into type map",
                 p_o->getId());
    return -1;
  }
  if (p_o->isSolid()) {
    if (m_solid_objects.insert(p_o) == -1) {
      log.writeLog("SceneGraph::insertObject(): Error! unable to insert solid Object (id %d)",
                   p_o->getId());
      return -1;
    }
    if (m_grid.insertObject(p_o) == -1) {
      log.writeLog("SceneGraph::insertObject(): Error! unable to add to Grid (id %d)",
                   p_o->getId());
      return -1;
    }
  }
  if (!p_o->isVisible()) return 0;
  const int altitude = p_o->getAltitude();
  if (!validAltitude(altitude)) {
    log.writeLog("SceneGraph::insertObject(): Warning! Altitude %d not in range [%d,%d]", altitude,
                 0, ALTITUDE_MAX);
    return -1;
  }
  if (m_visible_objects[altitude].insert(p_o) == -1) {
    log.writeLog("SceneGraph::insertObject(): Error! unable to insert visible object (id %d)",
                 p_o->getId());
    return -1;
  }
  return 0;
}

int SceneGraph::removeObject(Object *p_o) {
  int sum = 0;
  if (!p_o->isActive()) {
    sum += m_inactive_objects.remove(p_o);
  } else {
    sum += m_objects.remove(p_o);
    auto it = m_type_map.find(p_o->getType());
    sum += it == m_type_map.end() ? -1 : it->second.remove(p_o);
    if (p_o->isVisible()) {
      const int altitude = p_o->getAltitude();
      sum += validAltitude(altitude) ? m_visible_objects[altitude].remove(p_o) : -1;
    }
    if (p_o->isSolid()) {
      sum += m_solid_objects.remove(p_o);
      sum += m_grid.removeObject(p_o);
    }
  }
  if (sum < 0) {
    LogManager::getInstance().writeLog(
        "SceneGraph::removeObject(): Error removing Object (id %d)! Pointer is %p.", p_o->getId(),
        static_cast<void *>(p_o));
    return -1;
  }
  return 0;
}

ObjectList SceneGraph::activeObjects() const {
  return m_objects;
}

ObjectList SceneGraph::inactiveObjects() const {
  return m_inactive_objects;
}

ObjectList SceneGraph::solidObjects() const {
  return m_solid_objects;
}

ObjectList SceneGraph::visibleObjects(int altitude) const {
  if (!validAltitude(altitude)) {
    LogManager::getInstance().writeLog(
        "SceneGraph::visibleObjects(): Warning! altitude %d not in [%d,%d].", altitude, 0,
        ALTITUDE_MAX);
    return ObjectList();
  }
  return m_visible_objects[altitude];
}

ObjectList SceneGraph::objectsOfType(std::string type) const {
  auto it = m_type_map.find(type);
  return it == m_type_map.end() ? ObjectList() : it->second;
}

ObjectList SceneGraph::getCollisions(const Object *p_o, Vector where) const {
  return m_grid.getCollisions(p_o, where);
}

const Grid &SceneGraph::getGrid() const {
  return m_grid;
}

Grid &SceneGraph::getGrid() {
  return m_grid;
}

int SceneGraph::updateActive(Object *p_o, bool new_active) {
  if (new_active == p_o->isActive()) return 0;
  const LogManager &log = LogManager::getInstance();
  const std::string type_name = p_o->getType();
  const char *type = type_name.c_str();
  int result = 0;
  if (!new_active) {
    if (m_objects.remove(p_o) == -1) {
      result = -1;
      if (reportFailures())
        log.writeLog("SceneGraph::updateActive(): remove object (%s) failed for objects!", type);
    }
    auto it = m_type_map.find(type_name);
    if (it == m_type_map.end() || it->second.remove(p_o) == -1) result = -1;
    if (p_o->isVisible() && (!validAltitude(p_o->getAltitude()) ||
                             m_visible_objects[p_o->getAltitude()].remove(p_o) == -1)) {
      result = -1;
      if (reportFailures())
        log.writeLog(
            "SceneGraph::updateActive(): remove visible object (%s) failed for visible_objects!",
            type);
    }
    if (p_o->isSolid()) {
      if (m_solid_objects.remove(p_o) == -1) {
        result = -1;
        if (reportFailures())
          log.writeLog("SceneGraph::updateActive(): remove object (%s) failed for solid_objects!",
                       type);
      }
      if (m_grid.removeObject(p_o) == -1) return -1;
    }
    if (m_inactive_objects.insert(p_o) == -1) {
      result = -1;
      if (reportFailures())
        log.writeLog("SceneGraph::updateActive(): insert object (%s) failed for inactive_objects!",
                     type);
    }
    return result;
  }

  if (m_objects.insert(p_o) == -1) {
    result = -1;
    if (reportFailures())
      log.writeLog("SceneGraph::updateActive(): insert Object (%s) failed for objects!", type);
  }
  if (m_type_map[type_name].insert(p_o) == -1) {
    log.writeLog("SceneGraph::updateActive(): Error! insert Object (%s) failed for type map!",
                 type);
    return -1;
  }
  if (p_o->isVisible() && (!validAltitude(p_o->getAltitude()) ||
                           m_visible_objects[p_o->getAltitude()].insert(p_o) == -1)) {
    result = -1;
    if (reportFailures())
      log.writeLog("SceneGraph::updateActive(): insert Object (%s) failed for visible_objects!",
                   type);
  }
  if (p_o->isSolid()) {
    if (m_solid_objects.insert(p_o) == -1) {
      result = -1;
      if (reportFailures())
        log.writeLog("SceneGraph::updateActive(): insert object (%s) failed for solid_objects!",
                     type);
    }
    if (m_grid.insertObject(p_o) == -1) return -1;
  }
  if (m_inactive_objects.remove(p_o) == -1) {
    result = -1;
    if (reportFailures())
      log.writeLog("SceneGraph::updateActive(): remove object (%s) failed for inactive_objects!",
                   type);
  }
  return result;
}

int SceneGraph::updateAltitude(Object *p_o, int new_altitude) {
  if (!p_o->isActive()) return 0;
  const LogManager &log = LogManager::getInstance();
  if (!validAltitude(new_altitude)) {
    log.writeLog("SceneGraph::updateAltitude(): New altitude %d not in [%d,%d]!  No update.",
                 new_altitude, 0, ALTITUDE_MAX);
    return -1;
  }
  const int old_altitude = p_o->getAltitude();
  if (!validAltitude(old_altitude)) {
    log.writeLog(
        "SceneGraph::updateAltitude(): Old altitude %d not in [%d,%d]! This is unxepected. No "
        "update.",
        old_altitude, 0, ALTITUDE_MAX);
    return -1;
  }
  if (!p_o->isVisible()) return 0;
  if (m_visible_objects[old_altitude].remove(p_o) == -1) {
    if (reportFailures()) {
      log.writeLog("SceneGraph::updateAltitude(): remove from old altitude (%d) failed!",
                   old_altitude);
      log.writeLog("\tObject: type %s, id %d, p %p", p_o->getType().c_str(), p_o->getId(),
                   static_cast<void *>(p_o));
    }
    return -1;
  }
  if (m_visible_objects[new_altitude].insert(p_o) == -1) {
    log.writeLog("SceneGraph::updateAltitude()): insert visible object at altitude %d failed!",
                 new_altitude);
    return -1;
  }
  return 0;
}

int SceneGraph::updatePosition(Object *p_o, Vector where) {
  if (!p_o->isSolid() || !p_o->isActive()) return 0;
  if (m_grid.updatePosition(p_o, where) == -1) {
    LogManager::getInstance().writeLog(
        "SceneGraph::updatePosition(): Error! Calling grid updatePosition (Object %d).",
        p_o->getId());
    return -1;
  }
  return 0;
}

int SceneGraph::updateSolidness(Object *p_o, Solidness new_solidness) {
  if (!p_o->isActive()) return 0;
  const LogManager &log = LogManager::getInstance();
  const bool becomes_spectral = new_solidness != HARD && new_solidness != SOFT;
  if (p_o->isSolid() && becomes_spectral) {
    if (m_solid_objects.remove(p_o) == -1 && reportFailures())
      log.writeLog("SceneGraph::updateSolidness(): unable to remove solid object (%s)",
                   p_o->getType().c_str());
    if (m_grid.removeObject(p_o) == -1) return -1;
  }
  if (p_o->isSolid() || becomes_spectral) return 0;
  if (m_solid_objects.insert(p_o) == -1) {
    if (reportFailures())
      log.writeLog("SceneGraph::updateSolidness(): Error! unable to insert solid object");
    return -1;
  }
  log.writeLog(20, "SceneGraph::updateSolidness(): Adding to grid.");
  if (m_grid.insertObject(p_o) == -1) {
    log.writeLog(
        "SceneGraph::updateSolidness(): Error! unable to insert solid object (%d) into grid",
        p_o->getId());
    return -1;
  }
  return 0;
}

int SceneGraph::updateType(Object *p_o, std::string new_type) {
  const LogManager &log = LogManager::getInstance();
  const std::string old_type = p_o->getType();
  auto it = m_type_map.find(old_type);
  if ((it == m_type_map.end() || it->second.remove(p_o) == -1) && reportFailures()) {
    log.writeLog("SceneGraph::updateType(): Error! Unable to remove Object (%d) type %s",
                 p_o->getId(), old_type.c_str());
    return -1;
  }
  if (m_type_map[new_type].insert(p_o) == -1 && reportFailures()) {
    log.writeLog("SceneGraph::updateType(): Error! Unable to insert Object (%d) type %s",
                 p_o->getId(), old_type.c_str());
    return -1;
  }
  return 0;
}

int SceneGraph::updateVisible(Object *p_o, bool new_visible) {
  if (!p_o->isActive() || new_visible == p_o->isVisible()) return 0;
  const LogManager &log = LogManager::getInstance();
  const int altitude = p_o->getAltitude();
  if (!new_visible) {
    if (!validAltitude(altitude) || m_visible_objects[altitude].remove(p_o) == -1) {
      if (reportFailures())
        log.writeLog("SceneGraph::updateVisible(): unable to remove visible object (%s)",
                     p_o->getType().c_str());
      return -1;
    }
    return 0;
  }
  if (!validAltitude(altitude) || m_visible_objects[altitude].insert(p_o) == -1) {
    if (reportFailures())
      log.writeLog("SceneGraph::updateVisible(): unable to add visible object (%s)",
                   p_o->getType().c_str());
    return -1;
  }
  return 0;
}

}  // namespace qv
