#ifndef QV_SCENE_GRAPH_H
#define QV_SCENE_GRAPH_H

#include <map>
#include <string>

#include "world/Grid.h"
#include "world/Object.h"
#include "world/ObjectList.h"

namespace qv {

// The world manager's indexes: active and inactive objects, the active solid
// ones, the active visible ones per altitude, the active ones per type name,
// and the collision grid. Object setters call the update operations before
// they store the new value, so each index moves while the object still
// reports the old one. Nothing here owns an object.
class SceneGraph {
 public:
  SceneGraph();
  ~SceneGraph();

  // Empties the type map and builds the grid for the current boundary.
  int startUp();
  void shutDown();
  // Enters the active objects into the type map and the active solid ones
  // into the grid again, after a restart emptied both.
  void reindex();

  int insertObject(Object *p_o);
  int removeObject(Object *p_o);

  ObjectList activeObjects() const;
  ObjectList inactiveObjects() const;
  ObjectList solidObjects() const;
  ObjectList visibleObjects(int altitude) const;
  // The active objects of one type name, empty when there are none.
  ObjectList objectsOfType(std::string type) const;
  ObjectList getCollisions(const Object *p_o, Vector where) const;
  const Grid &getGrid() const;
  Grid &getGrid();

  int updateActive(Object *p_o, bool new_active);
  int updateAltitude(Object *p_o, int new_altitude);
  int updatePosition(Object *p_o, Vector where);
  int updateSolidness(Object *p_o, Solidness new_solidness);
  int updateType(Object *p_o, std::string new_type);
  int updateVisible(Object *p_o, bool new_visible);

 private:
  SceneGraph(const SceneGraph &) = delete;
  SceneGraph &operator=(const SceneGraph &) = delete;

  ObjectList m_objects;                            // every active object
  ObjectList m_solid_objects;                      // active HARD and SOFT objects
  ObjectList m_visible_objects[ALTITUDE_MAX + 1];  // active visible objects by altitude
  ObjectList m_inactive_objects;                   // every inactive object
  std::map<std::string, ObjectList> m_type_map;    // active objects by type name
  Grid m_grid;                                     // active solid objects by cell
};

}  // namespace qv

#endif
