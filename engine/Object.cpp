#include "Object.h"

#include "EventPath.h"
#include "EventStep.h"
#include "GameManager.h"
#include "InputManager.h"
#include "LogManager.h"
#include "NetworkManager.h"
#include "PathFind.h"
#include "PathManager.h"
#include "ResourceManager.h"
#include "SceneGraph.h"
#include "WorldManager.h"

namespace qv {

namespace {

int next_id = 1;  // ids are never reused, even after deletion

const char *const NETWORK_EVENTS[] = {
    "qv-network",        "qv-keyboard-network",  "qv-mouse-network", "qv-network-create",
    "qv-custom-network", "qv-network-delete",    "qv-network-game-over", "qv-network-sync",
};

// The manager that serves an event type; registering and withdrawing must
// agree on it.
Manager &servingManager(const std::string &event_type) {
  if (event_type == "qv-keyboard" || event_type == "qv-mouse") return InputManager::getInstance();
  if (event_type == STEP_EVENT) return GameManager::getInstance();
  for (const char *name : NETWORK_EVENTS)
    if (event_type == name) return NetworkManager::getInstance();
  return WorldManager::getInstance();
}

SceneGraph &sceneGraph() { return WorldManager::getInstance().getSceneGraph(); }

}  // namespace

Object::Object()
    : m_id(next_id++),
      m_type("(Undefined)"),
      m_is_active(true),
      m_is_visible(true),
      m_box(Vector(-0.5f, -0.5f), 0.99f, 0.99f),
      m_position(1, 1),
      m_speed(0),
      m_altitude(2),
      m_solidness(HARD),
      m_no_soft(false),
      m_event_count(0),
      m_modified(ALL_OBJECT_ATTRIBUTES),
      m_p_path_find(nullptr),
      m_follow_path(false),
      m_avoid_collisions(false) {
  m_shape.setType(UNDEFINED);
  if (WorldManager::getInstance().insertObject(this) == -1)
    LogManager::getInstance().writeLog("Object::Object(): Error! Unable to add %p to game world.",
                                       static_cast<void *>(this));
}

Object::~Object() {
  // No manager may keep a pointer to this object.
  for (int i = m_event_count - 1; i >= 0; i--) unregisterInterest(m_event_name[i]);
  releasePathFind();
  if (WorldManager::getInstance().removeObject(this) == -1)
    LogManager::getInstance().writeLog("Object::~Object(): Error! Unable to remove %p from game world.",
                                       static_cast<void *>(this));
}

void Object::releasePathFind() {
  if (!m_p_path_find) return;
  PathManager::getInstance().removePathFind(m_p_path_find);
  delete m_p_path_find;
  m_p_path_find = nullptr;
}

void Object::setType(std::string new_type) {
  sceneGraph().updateType(this, new_type);
  m_type = std::move(new_type);
  m_modified |= TYPE;
}

int Object::setPosition(Vector new_pos) {
  if (new_pos == m_position) return 0;
  sceneGraph().updatePosition(this, new_pos);
  m_position = new_pos;
  m_modified |= POSITION;
  return 0;
}

int Object::eventHandler(const Event *p_e) {
  if (p_e->getType() != PATH_EVENT) return 0;
  const EventPath *p_path_event = dynamic_cast<const EventPath *>(p_e);
  if (!p_path_event) {
    LogManager::getInstance().writeLog("Object::eventHandler(): Error! Dynamic cast to EventPath failed.");
    return 0;
  }
  if (p_path_event->getStatus() == PATH_FOUND) {
    setPath(p_path_event->getPath());
    setFollowPath(true);
  }
  releasePathFind();
  return 1;
}

int Object::setSolidness(Solidness new_solid) {
  if (new_solid == m_solidness) return 0;
  if (new_solid < HARD || new_solid > SPECTRAL) {
    LogManager::getInstance().writeLog(
        "Object::setSolidness(): Solidness %d not one of HARD, SOFT or SPECTRAL.",
        static_cast<int>(new_solid));
    return -1;
  }
  if (sceneGraph().updateSolidness(this, new_solid) == -1) return -1;
  m_solidness = new_solid;
  m_modified |= SOLIDNESS;
  return 0;
}

void Object::setAvoidCollisions(bool avoid) {
  m_avoid_collisions = avoid;
  m_modified |= AVOID_COLLISIONS;
}

int Object::setAltitude(int new_altitude) {
  if (new_altitude == m_altitude) return 0;
  if (new_altitude < 0 || new_altitude > ALTITUDE_MAX) {
    LogManager::getInstance().writeLog("Object::setAltitude(): Altitude %d not in range [%d,%d].  Ignored.",
                                       new_altitude, 0, ALTITUDE_MAX);
    return -1;
  }
  if (sceneGraph().updateAltitude(this, new_altitude) == -1) return -1;
  m_altitude = new_altitude;
  m_modified |= ALTITUDE;
  return 0;
}

void Object::setDirection(Vector new_direction) {
  new_direction.normalize();
  m_direction = new_direction;
}

void Object::setVelocity(Vector new_velocity) {
  m_speed = new_velocity.getMagnitude();
  new_velocity.normalize();
  m_direction = new_velocity;
  m_modified |= SPEED | DIRECTION;
}

void Object::setAcceleration(Vector new_acceleration) {
  m_acceleration = new_acceleration;
  m_modified |= ACCELERATION;
}

bool Object::isVisible() const { return m_is_visible; }

int Object::setActive(bool active) {
  if (active == m_is_active) return 0;
  if (sceneGraph().updateActive(this, active) == -1) return -1;
  m_is_active = active;
  m_modified |= ACTIVE;
  return 0;
}

void Object::setBox(Box new_box) {
  if (new_box == m_box) return;
  // Leaving and re-entering the scene graph moves the grid cells with the box.
  SceneGraph &scene_graph = sceneGraph();
  scene_graph.removeObject(this);
  m_box = new_box;
  scene_graph.insertObject(this);
  m_modified |= BOX;
}

int Object::setSprite(std::string sprite_label) {
  Sprite *p_sprite = ResourceManager::getInstance().getSprite(sprite_label);
  if (!p_sprite) {
    LogManager::getInstance().writeLog("Object::setSprite(): Warning! Sprite '%s' not found",
                                       sprite_label.c_str());
    return -1;
  }
  m_animation.setSprite(p_sprite);
  setBox(m_animation.getBox());
  return 0;
}

void Object::setAnimation(Animation new_animation, bool set_box) {
  m_animation = new_animation;
  m_modified |= ANIMATION;
  if (set_box) setBox(m_animation.getBox());
}

int Object::draw() {
  const int result = m_animation.draw(m_position);
  if (m_shape.getType() != UNDEFINED) m_shape.draw(m_position);
  return result;
}

void Object::setModified(unsigned int new_modified) { m_modified = new_modified; }

unsigned int Object::getModified() const { return m_modified; }

void Object::setShape(Shape new_shape) {
  m_shape = new_shape;
  m_modified |= SHAPE;
}

void Object::setFollowPath(bool follow) {
  m_follow_path = follow;
  if (!m_path.isDone()) setDirection(m_path.getCurrent() - m_position);
  m_modified |= FOLLOW_PATH;
}

int Object::getId() const { return m_id; }

std::string Object::getType() const { return m_type; }

bool Object::isActive() const { return m_is_active; }

Box Object::getBox() const { return m_box; }

Vector Object::getPosition() const { return m_position; }

Vector Object::getDirection() const { return m_direction; }

float Object::getSpeed() const { return m_speed; }

Vector Object::getVelocity() const {
  Vector velocity = m_direction;
  velocity.scale(m_speed);
  return velocity;
}

Vector Object::getAcceleration() const { return m_acceleration; }

int Object::getAltitude() const { return m_altitude; }

Solidness Object::getSolidness() const { return m_solidness; }

bool Object::getNoSoft() const { return m_no_soft; }

bool Object::getAvoidCollisions() const { return m_avoid_collisions; }

Animation Object::getAnimation() const { return m_animation; }

Shape Object::getShape() const { return m_shape; }

Path Object::getPath() const { return m_path; }

bool Object::getFollowPath() const { return m_follow_path; }

Vector Object::predictPosition() const { return m_position + getVelocity(); }

bool Object::isSolid() const { return m_solidness == HARD || m_solidness == SOFT; }

bool Object::isModified() const { return m_modified != 0; }

int Object::getEventCount() const { return m_event_count; }

std::string Object::getEvent(int index) const {
  return index >= 0 && index < m_event_count ? m_event_name[index] : std::string();
}

void Object::setSpeed(float new_speed) {
  m_speed = new_speed;
  m_modified |= SPEED;
}

int Object::setVisible(bool visible) {
  if (visible == isVisible()) return 0;
  if (sceneGraph().updateVisible(this, visible) == -1) return -1;
  m_is_visible = visible;
  m_modified |= VISIBLE;
  return 0;
}

void Object::setNoSoft(bool no_soft) {
  if (no_soft == m_no_soft) return;
  m_no_soft = no_soft;
  m_modified |= NO_SOFT;
}

void Object::setPath(Path new_path) {
  m_path = std::move(new_path);
  m_modified |= PATH;
}

void Object::setPathFind(PathFind *p_path_find) {
  if (p_path_find == m_p_path_find) return;
  releasePathFind();
  m_p_path_find = p_path_find;
}

PathFind *Object::getPathFind() const { return m_p_path_find; }

int Object::registerInterest(std::string event_type) {
  if (m_event_count == INTEREST_MAX) {
    LogManager::getInstance().writeLog(
        "Object::registerInterest(): maximum (%d) reached, cannot register for event '%s'",
        INTEREST_MAX, event_type.c_str());
    return -1;
  }
  if (servingManager(event_type).registerInterest(this, event_type) == -1) return -1;
  m_event_name[m_event_count++] = std::move(event_type);
  m_modified |= EVENTS;
  return 0;
}

int Object::unregisterInterest(std::string event_type) {
  int index = 0;
  while (index < m_event_count && m_event_name[index] != event_type) index++;
  if (index == m_event_count) {
    LogManager::getInstance().writeLog(
        "Object::unregisterInterest(): event '%s' not previously registered", event_type.c_str());
    return -1;
  }
  if (servingManager(event_type).unregisterInterest(this, event_type) == -1) return -1;
  for (int i = index; i < m_event_count - 1; i++) m_event_name[i] = std::move(m_event_name[i + 1]);
  m_event_name[--m_event_count].clear();
  m_modified |= EVENTS;
  return 0;
}

void Object::followPathStep() {
  if (!m_follow_path) return;
  // Close enough to snap: three quarters of a frame's travel.
  const double snap_distance = static_cast<double>(m_speed * 3) * 0.25;
  while (!m_path.isDone()) {
    const Vector waypoint = m_path.getCurrent();
    if (distance(m_position, waypoint) > snap_distance) {
      setDirection(waypoint - m_position);
      return;
    }
    setPosition(waypoint);
    m_path.advance();
    m_modified |= PATH;
  }
  setDirection(Vector(0, 0));
  setFollowPath(false);
}

void Object::applyAcceleration() {
  if (m_acceleration == Vector(0, 0)) return;
  setVelocity(getVelocity() + m_acceleration);
}

}  // namespace qv
