#ifndef QV_WORLD_MANAGER_H
#define QV_WORLD_MANAGER_H

#include <string>
#include <unordered_set>

#include "core/Manager.h"
#include "world/Box.h"
#include "world/ObjectList.h"
#include "world/SceneGraph.h"
#include "world/Vector.h"

namespace qv {

class Object;

// Owns every game object and runs the world's part of each frame: moves
// objects through collision checks, reports collisions and departures from
// the world, deletes marked objects at the end of the update, keeps the view
// on a followed object and draws the visible objects layer by layer.
class WorldManager : public Manager {
 public:
  static WorldManager &getInstance();
  ~WorldManager() override;

  int startUp() override;
  // Deletes every remaining object.
  void shutDown() override;
  // Any type except input, step, out and collision events, which other
  // managers serve or which are sent without registration.
  bool isValid(std::string event_type) const override;

  int insertObject(Object *p_o);
  int removeObject(Object *p_o);
  // The active objects, followed by the inactive ones when asked.
  ObjectList getAllObjects(bool include_inactive = false) const;
  // The solid objects other than p_o that p_o's box placed at where touches.
  ObjectList getCollisions(const Object *p_o, Vector where) const;

  // Deletes p_o at the end of this frame's update; marking twice is harmless.
  int markForDelete(Object *p_o);
  // Moves p_o to where unless a collision stops it: 0 when moved, -1 when not.
  int moveObject(Object *p_o, Vector where);
  // One frame: move, follow paths, accelerate, then delete marked objects.
  void update();
  // Draws altitudes 0 to ALTITUDE_MAX, lowest first.
  void draw();

  // Restarts the scene graph, so set the boundary before creating objects.
  void setBoundary(Box new_boundary);
  Box getBoundary() const;
  void setView(Box new_view);
  Box getView() const;
  // Centres the view on view_pos, kept inside the boundary.
  void setViewPosition(Vector view_pos);
  // Fractions of the view's width and height, centred, inside which the
  // followed object moves without moving the view.
  void setViewSlack(Vector new_view_slack);
  Vector getViewSlack() const;
  // Keeps p_new_view_following in view; null stops following. -1 for an
  // object that is not in the world.
  int setViewFollowing(Object *p_new_view_following);
  Object *getViewFollowing() const;

  SceneGraph &getSceneGraph();
  const SceneGraph &getSceneGraph() const;
  ObjectList getDeletions() const;

 private:
  WorldManager();
  void followWithView(const Object *p_o);
  int deliverCollisions(Object *p_o, const ObjectList &list, Vector where);
  void deleteObjects(const ObjectList &doomed);

  SceneGraph m_scene_graph;                     // all indexes of the objects
  ObjectList m_deletions;                       // deleted at the end of update
  std::unordered_set<const Object *> m_marked;  // the same objects, for quick look-up
  Object *m_p_view_following;                   // null, not owned
  Box m_boundary;                               // the world's extent, corner (0,0)
  Box m_view;                                   // the part of the world shown
  Vector m_view_slack;                          // (0,0): the view stays centred
};

}  // namespace qv

#endif
