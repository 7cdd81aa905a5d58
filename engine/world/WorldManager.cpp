#include "world/WorldManager.h"

#include <algorithm>
#include <cmath>

#include "core/EventStep.h"
#include "core/LogManager.h"
#include "core/utility.h"
#include "graphics/ViewObject.h"
#include "input/EventKeyboard.h"
#include "input/EventMouse.h"
#include "world/EventCollision.h"
#include "world/EventOut.h"
#include "world/Object.h"

namespace qv {

WorldManager::WorldManager() : m_p_view_following(nullptr), m_view_slack(0, 0) {
  setType("WorldManager");
}

WorldManager::~WorldManager() {
}

WorldManager &WorldManager::getInstance() {
  static WorldManager world_manager;
  return world_manager;
}

int WorldManager::startUp() {
  const LogManager &log = LogManager::getInstance();
  if (refuseSecondStart()) return -1;
  m_deletions.clear();
  m_marked.clear();
  m_boundary = Box();
  m_view = Box();
  m_view_slack = Vector(0, 0);
  m_p_view_following = nullptr;
  if (m_scene_graph.startUp() != 0) {
    log.writeLog("WorldManager::startUp(): Error! Unable to startup Scenegraph");
    return -1;
  }
  Manager::startUp();
  log.writeLog(5, "WorldManager::startUp(): successfully started.");
  return 0;
}

void WorldManager::shutDown() {
  Manager::shutDown();
  deleteObjects(getAllObjects(true));
  // Every marked object is gone with the rest.
  m_deletions.clear();
  m_marked.clear();
  m_p_view_following = nullptr;
  m_scene_graph.shutDown();
  LogManager::getInstance().writeLog(5, "WorldManager::shutDown(): Successfully stopped.");
}

void WorldManager::deleteObjects(const ObjectList &doomed) {
  const int count = doomed.getCount();
  for (int i = 0; i < count; i++) delete doomed[i];
}

bool WorldManager::isValid(std::string event_type) const {
  if (event_type == KEYBOARD_EVENT || event_type == MOUSE_EVENT || event_type == STEP_EVENT) {
    LogManager::getInstance().writeLog("WorldManager::isValid(): WorldManager does not handle %s",
                                       event_type.c_str());
    return false;
  }
  if (event_type == OUT_EVENT || event_type == COLLISION_EVENT) {
    LogManager::getInstance().writeLog("WorldManager::isValid(): Event %s handled automatically.",
                                       event_type.c_str());
    return false;
  }
  return true;
}

int WorldManager::insertObject(Object *p_o) {
  if (!p_o) return -1;
  if (!isStarted()) {
    const LogManager &log = LogManager::getInstance();
    log.writeLog(2, "WorldManager::insertObject(): Warning! Not adding Object %d", p_o->getId());
    log.writeLog(2, "                              because WorldManager not started.");
    return -1;
  }
  return m_scene_graph.insertObject(p_o);
}

int WorldManager::removeObject(Object *p_o) {
  if (!p_o) return -1;
  // The view must not follow an object that is leaving the world.
  if (p_o == m_p_view_following) m_p_view_following = nullptr;
  return m_scene_graph.removeObject(p_o);
}

ObjectList WorldManager::getAllObjects(bool include_inactive) const {
  if (include_inactive) return m_scene_graph.activeObjects() + m_scene_graph.inactiveObjects();
  return m_scene_graph.activeObjects();
}

ObjectList WorldManager::getCollisions(const Object *p_o, Vector where) const {
  return m_scene_graph.getCollisions(p_o, where);
}

int WorldManager::markForDelete(Object *p_o) {
  if (m_marked.count(p_o)) return 0;
  if (m_deletions.insert(p_o) == -1) {
    LogManager::getInstance().writeLog(
        "WorldManager::markForDelete(): Error! unable to add Object %p to deletions list",
        static_cast<void *>(p_o));
    return -1;
  }
  m_marked.insert(p_o);
  return 0;
}

void WorldManager::update() {
  // Handlers may create, move or mark objects: walk a copy.
  const ObjectList active = m_scene_graph.activeObjects();
  const int count = active.getCount();
  for (int i = 0; i < count; i++) {
    Object *p_o = active[i];
    const Vector new_pos = p_o->predictPosition();
    if (new_pos != p_o->getPosition()) moveObject(p_o, new_pos);
    p_o->followPathStep();
    p_o->applyAcceleration();
  }

  // Walk the live list: a destructor that marks another object gets it
  // deleted in this same pass.
  for (int i = 0; i < m_deletions.getCount(); i++) delete m_deletions[i];
  m_deletions.clear();
  m_marked.clear();
}

int WorldManager::deliverCollisions(Object *p_o, const ObjectList &list, Vector where) {
  const Vector start = p_o->getPosition();
  bool refused = false;
  const int count = list.getCount();
  for (int i = 0; i < count; i++) {
    Object *p_t = list[i];
    EventCollision collision(p_o, p_t, where);
    p_o->eventHandler(&collision);
    p_t->eventHandler(&collision);
    // Judged after the handlers: they may change what the parties are.
    if (p_o->getSolidness() == HARD && p_t->getSolidness() == HARD) refused = true;
    if (p_o->getNoSoft() && p_t->getSolidness() == SOFT) refused = true;
  }
  // A handler that moved the mover has decided where it is.
  if (p_o->getPosition() != start) return -1;
  return refused ? -1 : 0;
}

int WorldManager::moveObject(Object *p_o, Vector where) {
  if (!p_o) return -1;
  if (p_o->isSolid()) {
    ObjectList list = getCollisions(p_o, where);
    if (!list.isEmpty() && p_o->getSolidness() == HARD && p_o->getAvoidCollisions()) {
      const Object *p_obstacle = nullptr;
      for (int i = 0; i < list.getCount() && !p_obstacle; i++)
        if (list[i]->getSolidness() == HARD) p_obstacle = list[i];
      if (p_obstacle) {
        // Slide along the obstacle's face: keep only the part of the
        // direction that runs parallel to it.
        const Vector normal = getNormal(p_o, p_obstacle);
        const Vector swapped(normal.getY(), normal.getX());
        const Vector direction = p_o->getDirection();
        Vector slide(direction.getX() * std::fabs(swapped.getX()),
                     direction.getY() * std::fabs(swapped.getY()));
        if (std::fabs(normal.getX()) == 1 && std::fabs(normal.getY()) == 1)
          slide.setX(-slide.getX());
        slide.normalize();
        slide.scale(p_o->getSpeed());
        const Vector where2 = p_o->getPosition() + slide;
        ObjectList list2 = getCollisions(p_o, where2);
        for (int i = 0; i < list2.getCount(); i++) {
          if (list2[i]->getSolidness() == HARD) {
            LogManager::getInstance().writeLog(5,
                                               "WorldManager::moveObject(): Double collision. "
                                               "Object (avoid obstacles) cannot move.");
            return -1;
          }
        }
        list = std::move(list2);
        where = where2;
      }
    }
    if (!list.isEmpty() && deliverCollisions(p_o, list, where) == -1) return -1;
  }

  const Box old_box = getWorldBox(p_o);
  p_o->setPosition(where);
  const Box new_box = getWorldBox(p_o);
  if (boxIntersectsBox(old_box, m_boundary) && !boxIntersectsBox(new_box, m_boundary)) {
    EventOut out;
    p_o->eventHandler(&out);
  }
  if (p_o == m_p_view_following) followWithView(p_o);
  return 0;
}

namespace {

// The view centre on one axis after the followed point p moved: it moves only
// by as much as p went past the slack zone around the centre.
float followAxis(float centre, float p, float slack, float extent) {
  const float low = centre - slack * extent * 0.5f;
  if (p < low) return centre - (low - p);
  const float high = centre + slack * extent * 0.5f;
  if (p > high) return centre + (p - high);
  return centre;
}

}  // namespace

void WorldManager::followWithView(const Object *p_o) {
  const Vector p = p_o->getPosition();
  const float width = m_view.getHorizontal();
  const float height = m_view.getVertical();
  const Vector corner = m_view.getCorner();
  setViewPosition(
      Vector(followAxis(corner.getX() + width / 2, p.getX(), m_view_slack.getX(), width),
             followAxis(corner.getY() + height / 2, p.getY(), m_view_slack.getY(), height)));
}

void WorldManager::draw() {
  for (int altitude = 0; altitude <= ALTITUDE_MAX; altitude++) {
    const ObjectList visible = m_scene_graph.visibleObjects(altitude);
    const int count = visible.getCount();
    for (int i = 0; i < count; i++) {
      Object *p_o = visible[i];
      // View objects place themselves relative to the view, wherever they are.
      if (boxIntersectsBox(getWorldBox(p_o), m_view) || dynamic_cast<ViewObject *>(p_o))
        p_o->draw();
    }
  }
}

void WorldManager::setBoundary(Box new_boundary) {
  if (new_boundary == m_boundary) return;
  m_boundary = new_boundary;
  // The grid is rebuilt for the new size; objects already in the world are
  // entered again so that they keep colliding.
  m_scene_graph.shutDown();
  m_scene_graph.startUp();
  m_scene_graph.reindex();
}

Box WorldManager::getBoundary() const {
  return m_boundary;
}

void WorldManager::setView(Box new_view) {
  m_view = new_view;
}

Box WorldManager::getView() const {
  return m_view;
}

void WorldManager::setViewPosition(Vector view_pos) {
  const float width = m_view.getHorizontal();
  const float height = m_view.getVertical();
  float x = view_pos.getX() - width / 2;
  float y = view_pos.getY() - height / 2;
  if (x + width > m_boundary.getHorizontal()) x = m_boundary.getHorizontal() - width;
  if (y + height > m_boundary.getVertical()) y = m_boundary.getVertical() - height;
  x = std::max(0.0f, x);
  y = std::max(0.0f, y);
  m_view.setCorner(Vector(x, y));
}

void WorldManager::setViewSlack(Vector new_view_slack) {
  if (!valueInRange(new_view_slack.getX(), 0, 1) || !valueInRange(new_view_slack.getY(), 0, 1))
    LogManager::getInstance().writeLog(
        "WorldManager::setViewSlack(): Warning! view slack units out of range [0-1]");
  m_view_slack = new_view_slack;
}

Vector WorldManager::getViewSlack() const {
  return m_view_slack;
}

int WorldManager::setViewFollowing(Object *p_new_view_following) {
  if (!p_new_view_following) {
    m_p_view_following = nullptr;
    return 0;
  }
  if (!m_scene_graph.activeObjects().contains(p_new_view_following) &&
      !m_scene_graph.inactiveObjects().contains(p_new_view_following))
    return -1;
  m_p_view_following = p_new_view_following;
  setViewPosition(p_new_view_following->getPosition());
  return 0;
}

Object *WorldManager::getViewFollowing() const {
  return m_p_view_following;
}

SceneGraph &WorldManager::getSceneGraph() {
  return m_scene_graph;
}

const SceneGraph &WorldManager::getSceneGraph() const {
  return m_scene_graph;
}

ObjectList WorldManager::getDeletions() const {
  return m_deletions;
}

// ---- geometry that needs the world (declared in utility.h) ----------------

Vector worldToView(const Vector &world_pos) {
  return world_pos - WorldManager::getInstance().getView().getCorner();
}

Vector viewToWorld(const Vector &view_pos) {
  return view_pos + WorldManager::getInstance().getView().getCorner();
}

Box getWorldBox(const Object *p_o) {
  return getWorldBox(p_o, p_o->getPosition());
}

Box getWorldBox(const Object *p_o, Vector where) {
  Box box = p_o->getBox();
  box.setCorner(box.getCorner() + where);
  return box;
}

Vector getNormal(const Object *p_o1, const Object *p_o2) {
  const Vector velocity = p_o1->getVelocity();
  const Vector position = p_o1->getPosition();
  const Box obstacle = getWorldBox(p_o2);

  // Bisect for the farthest point of this frame's step that stays clear.
  float t = 0.5f;
  float delta = 0.5f;  // 0.5, 0.25, ... 0.0078125
  Vector best = position;
  for (int i = 1; i <= 7; i++, delta *= 0.5f) {
    Vector offset = velocity;
    offset.scale(t);
    const Vector trial = position + offset;
    if (!boxIntersectsBox(getWorldBox(p_o1, trial), obstacle)) {
      t += delta;
      best = trial;
    } else {
      t -= delta;
    }
  }

  const Box mover = getWorldBox(p_o1, best);
  const Vector c = obstacle.getCorner();
  const float h = obstacle.getHorizontal();
  const float v = obstacle.getVertical();
  static const int SIDES[8][2] = {{0, -1},  {0, 1},  {-1, 0}, {1, 0},
                                  {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
  for (const auto &side : SIDES) {
    const Box neighbour(Vector(c.getX() + side[0] * h, c.getY() + side[1] * v), h, v);
    if (boxIntersectsBox(mover, neighbour)) return Vector(side[0], side[1]);
  }
  LogManager::getInstance().writeLog(1, "getNormal(): No collision detected. Returning (0,0).");
  return Vector(0, 0);
}

}  // namespace qv
