#include "world/Object.h"

#include <climits>
#include <cstdint>
#include <istream>
#include <ostream>
#include <sstream>
#include <vector>

#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "core/bounds.h"
#include "input/EventKeyboard.h"
#include "input/EventMouse.h"
#include "input/InputManager.h"
#include "network/EventNetwork.h"
#include "network/NetworkManager.h"
#include "path/EventPath.h"
#include "path/PathFind.h"
#include "path/PathManager.h"
#include "resources/ResourceManager.h"
#include "world/SceneGraph.h"
#include "world/WorldManager.h"

namespace qv {

namespace {

int next_id = 1;  // ids are never reused, even after deletion

// The manager that serves an event type; registering and withdrawing must
// agree on it.
Manager &servingManager(const std::string &event_type) {
  if (event_type == KEYBOARD_EVENT || event_type == MOUSE_EVENT) return InputManager::getInstance();
  if (event_type == STEP_EVENT) return GameManager::getInstance();
  if (isNetworkEvent(event_type)) return NetworkManager::getInstance();
  return WorldManager::getInstance();
}

SceneGraph &sceneGraph() {
  return WorldManager::getInstance().getSceneGraph();
}

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
    LogManager::getInstance().writeLog(
        "Object::~Object(): Error! Unable to remove %p from game world.",
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
    LogManager::getInstance().writeLog(
        "Object::eventHandler(): Error! Dynamic cast to EventPath failed.");
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
    LogManager::getInstance().writeLog(
        "Object::setAltitude(): Altitude %d not in range [%d,%d].  Ignored.", new_altitude, 0,
        ALTITUDE_MAX);
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

bool Object::isVisible() const {
  return m_is_visible;
}

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

void Object::setModified(unsigned int new_modified) {
  m_modified = new_modified;
}

unsigned int Object::getModified() const {
  return m_modified;
}

void Object::setShape(Shape new_shape) {
  m_shape = new_shape;
  m_modified |= SHAPE;
}

void Object::setFollowPath(bool follow) {
  m_follow_path = follow;
  if (!m_path.isDone()) setDirection(m_path.getCurrent() - m_position);
  m_modified |= FOLLOW_PATH;
}

int Object::getId() const {
  return m_id;
}

std::string Object::getType() const {
  return m_type;
}

bool Object::isActive() const {
  return m_is_active;
}

Box Object::getBox() const {
  return m_box;
}

Vector Object::getPosition() const {
  return m_position;
}

Vector Object::getDirection() const {
  return m_direction;
}

float Object::getSpeed() const {
  return m_speed;
}

Vector Object::getVelocity() const {
  Vector velocity = m_direction;
  velocity.scale(m_speed);
  return velocity;
}

Vector Object::getAcceleration() const {
  return m_acceleration;
}

int Object::getAltitude() const {
  return m_altitude;
}

Solidness Object::getSolidness() const {
  return m_solidness;
}

bool Object::getNoSoft() const {
  return m_no_soft;
}

bool Object::getAvoidCollisions() const {
  return m_avoid_collisions;
}

Animation Object::getAnimation() const {
  return m_animation;
}

Shape Object::getShape() const {
  return m_shape;
}

Path Object::getPath() const {
  return m_path;
}

bool Object::getFollowPath() const {
  return m_follow_path;
}

Vector Object::predictPosition() const {
  return m_position + getVelocity();
}

bool Object::isSolid() const {
  return m_solidness == HARD || m_solidness == SOFT;
}

bool Object::isModified() const {
  return m_modified != 0;
}

int Object::getEventCount() const {
  return m_event_count;
}

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

PathFind *Object::getPathFind() const {
  return m_p_path_find;
}

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

// ---- records -------------------------------------------------------------------

namespace {

void writeVector(std::ostream &out, const Vector &v) {
  writeFloat(out, v.getX());
  writeFloat(out, v.getY());
}

bool readVector(std::istream &in, Vector &v) {
  float x = 0, y = 0;
  readFloat(in, x);
  readFloat(in, y);
  if (!in) return false;
  v = Vector(x, y);
  return true;
}

void logAllocationFailure(std::uint64_t length) {
  LogManager::getInstance().writeLog("Object::deserialize(): Error! Cannot allocate %d bytes.",
                                     static_cast<int>(length));
}

}  // namespace

// One attribute of the record: its bit, its name in log lines, how its fields
// are written, how they are read and applied, and how its value reads in the
// log. The table of all of them (Attribute::all) is the record: the writer,
// the reader and the log lines follow it row by row. The rows reach the
// object's fields directly; reading applies each value through the setters
// so that the world's indexes follow.
struct Object::Attribute {
  // What reading one record carries from one attribute to the next.
  struct Reading {
    bool trace = false;    // level-25 lines for each attribute
    bool got_box = false;  // the record held a box, which outranks the
    Box received_box;      // one an animation brings with it
  };

  ObjectAttribute bit;
  const char *name;
  void (*write)(const Object &o, std::stringstream &out);
  // Reads the fields and applies them once all have arrived, so a short
  // record changes nothing with half a value. false refuses the whole record.
  bool (*read)(Object &o, std::stringstream &in, Reading &reading);
  // The value as the log shows it after the name.
  std::string (*show)(const Object &o);
  // Further lines below the attribute's own, or null.
  void (*details)(const Object &o);

  // The level-25 line naming the attribute and its value; writing and
  // reading log alike.
  void trace(const Object &o) const {
    LogManager::getInstance().writeLog(25, "\t%s: %s", name, show(o).c_str());
    if (details) details(o);
  }

  // Every attribute, in record order. DIRECTION goes before SPEED, and
  // FOLLOW_PATH before PATH, so that the reader turns toward the waypoint of
  // the path it already holds.
  static const std::vector<Attribute> &all();
};

const std::vector<Object::Attribute> &Object::Attribute::all() {
  static const std::vector<Attribute> table = {
      {ID, "ID", [](const Object &o, std::stringstream &out) { writeInt(out, o.m_id); },
       [](Object &o, std::stringstream &in, Reading &) {
         int id = 0;
         if (!readInt(in, id)) return true;
         if (!recordValueInRange(in, "Object::deserialize()", "Id", id, 1, INT_MAX)) return true;
         if (id != o.m_id) {
           o.m_id = id;
           o.m_modified |= ID;
           // Later objects of this copy must never take a received id, but
           // an id near the top of int's range would leave the counter none
           // to give: it moves no further than ID_COUNTER_MAX.
           if (id >= next_id && id < ID_COUNTER_MAX) {
             next_id = id + 1;
           } else if (id >= ID_COUNTER_MAX && next_id < ID_COUNTER_MAX) {
             LogManager::getInstance().writeLog(
                 "Object::deserialize(): Note! Id %d is past %d; new objects' ids go on from %d.",
                 id, ID_COUNTER_MAX, ID_COUNTER_MAX);
             next_id = ID_COUNTER_MAX;
           }
         }
         return true;
       },
       [](const Object &o) { return std::to_string(o.getId()); }, nullptr},

      {ACTIVE, "ACTIVE",
       [](const Object &o, std::stringstream &out) { writeBool(out, o.m_is_active); },
       [](Object &o, std::stringstream &in, Reading &) {
         bool active = false;
         if (readBool(in, active)) o.setActive(active);
         return true;
       },
       [](const Object &o) { return boolToString(o.isActive()); }, nullptr},

      {VISIBLE, "VISIBLE",
       [](const Object &o, std::stringstream &out) { writeBool(out, o.m_is_visible); },
       [](Object &o, std::stringstream &in, Reading &) {
         bool visible = false;
         if (readBool(in, visible)) o.setVisible(visible);
         return true;
       },
       [](const Object &o) { return boolToString(o.isVisible()); }, nullptr},

      {EVENTS, "EVENTS",
       [](const Object &o, std::stringstream &out) {
         writeInt(out, o.m_event_count);
         for (int i = 0; i < o.m_event_count; i++) writeString(out, o.m_event_name[i]);
       },
       [](Object &o, std::stringstream &in, Reading &reading) {
         int count = 0;
         if (!readInt(in, count)) return true;
         if (count < 0) {
           in.setstate(std::ios::failbit);
           return true;
         }
         // Every name is read before any interest changes, so a short record
         // leaves the registrations alone. A count larger than the names the
         // record holds ends at the first missing one.
         std::vector<std::string> names;
         for (int i = 0; i < count && in.good(); i++) {
           std::string name;
           std::uint64_t length = 0;
           const int result = readString(in, name, length);
           if (result == -2) {
             logAllocationFailure(length);
             continue;
           }
           if (result == 0) {
             if (reading.trace)
               LogManager::getInstance().writeLog(25, "\t\tsize %d", static_cast<int>(length));
             names.push_back(name);
           }
         }
         if (!in.good()) return true;
         for (int i = o.m_event_count - 1; i >= 0; i--) o.unregisterInterest(o.m_event_name[i]);
         for (const std::string &name : names)
           if (o.registerInterest(name) != 0)
             LogManager::getInstance().writeLog(
                 "Object::deserialize(): Error! Register interest: %s", name.c_str());
         return true;
       },
       [](const Object &o) { return std::to_string(o.getEventCount()); },
       [](const Object &o) {
         for (int i = 0; i < o.getEventCount(); i++)
           LogManager::getInstance().writeLog(25, "\t\t%s (size %d)", o.getEvent(i).c_str(),
                                              static_cast<int>(o.getEvent(i).size()));
       }},

      {BOX, "BOX",
       [](const Object &o, std::stringstream &out) {
         writeVector(out, o.m_box.getCorner());
         writeFloat(out, o.m_box.getHorizontal());
         writeFloat(out, o.m_box.getVertical());
       },
       [](Object &o, std::stringstream &in, Reading &reading) {
         Vector corner;
         float horizontal = 0, vertical = 0;
         readVector(in, corner);
         readFloat(in, horizontal);
         readFloat(in, vertical);
         if (!in) return true;
         reading.received_box = Box(corner, horizontal, vertical);
         reading.got_box = true;
         o.setBox(reading.received_box);
         return true;
       },
       [](const Object &o) { return o.getBox().toString(); }, nullptr},

      {POSITION, "POSITION",
       [](const Object &o, std::stringstream &out) { writeVector(out, o.m_position); },
       [](Object &o, std::stringstream &in, Reading &) {
         Vector position;
         if (readVector(in, position)) o.setPosition(position);
         return true;
       },
       [](const Object &o) { return o.getPosition().toString(); }, nullptr},

      {TYPE, "TYPE", [](const Object &o, std::stringstream &out) { writeString(out, o.m_type); },
       [](Object &o, std::stringstream &in, Reading &) {
         std::string type;
         std::uint64_t length = 0;
         const int result = readString(in, type, length);
         if (result == -2) {
           logAllocationFailure(length);
           return false;
         }
         if (result == 0) o.setType(type);
         return true;
       },
       [](const Object &o) { return o.getType(); }, nullptr},

      {ANIMATION, "ANIMATION",
       [](const Object &o, std::stringstream &out) { o.m_animation.serialize(&out); },
       [](Object &o, std::stringstream &in, Reading &reading) {
         Animation animation;
         if (animation.deserialize(&in) != 0) return true;
         o.setAnimation(animation, true);
         // Only the label travels: find the sprite again here, keeping the
         // frame and the count that setSprite starts over.
         if (!animation.getName().empty()) {
           o.setSprite(animation.getName());
           Animation restored = o.m_animation;
           restored.setIndex(animation.getIndex());
           restored.setSlowdownCount(animation.getSlowdownCount());
           o.setAnimation(restored, true);
         }
         if (reading.got_box) o.setBox(reading.received_box);
         return true;
       },
       [](const Object &o) { return o.getAnimation().toString(); }, nullptr},

      {ALTITUDE, "ALTITUDE",
       [](const Object &o, std::stringstream &out) { writeInt(out, o.m_altitude); },
       [](Object &o, std::stringstream &in, Reading &) {
         int altitude = 0;
         if (readInt(in, altitude)) o.setAltitude(altitude);
         return true;
       },
       [](const Object &o) { return std::to_string(o.getAltitude()); }, nullptr},

      {SOLIDNESS, "SOLIDNESS",
       [](const Object &o, std::stringstream &out) { writeInt(out, o.m_solidness); },
       [](Object &o, std::stringstream &in, Reading &) {
         int solidness = 0;
         if (readInt(in, solidness)) o.setSolidness(static_cast<Solidness>(solidness));
         return true;
       },
       [](const Object &o) { return solidnessToString(o.getSolidness()); }, nullptr},

      {NO_SOFT, "NO_SOFT",
       [](const Object &o, std::stringstream &out) { writeBool(out, o.m_no_soft); },
       [](Object &o, std::stringstream &in, Reading &) {
         bool no_soft = false;
         if (readBool(in, no_soft)) {
           o.m_no_soft = no_soft;
           o.m_modified |= NO_SOFT;
         }
         return true;
       },
       [](const Object &o) { return boolToString(o.getNoSoft()); }, nullptr},

      {DIRECTION, "DIRECTION",
       [](const Object &o, std::stringstream &out) { writeVector(out, o.m_direction); },
       [](Object &o, std::stringstream &in, Reading &) {
         Vector direction;
         if (readVector(in, direction)) o.setDirection(direction);
         return true;
       },
       [](const Object &o) { return o.getDirection().toString(); }, nullptr},

      {SPEED, "SPEED", [](const Object &o, std::stringstream &out) { writeFloat(out, o.m_speed); },
       [](Object &o, std::stringstream &in, Reading &) {
         float speed = 0;
         readFloat(in, speed);
         if (in) {
           o.m_speed = speed;
           o.m_modified |= SPEED;
         }
         return true;
       },
       // std::to_string writes a float as printf's "%f" does.
       [](const Object &o) { return std::to_string(o.getSpeed()); }, nullptr},

      {ACCELERATION, "ACCELERATION",
       [](const Object &o, std::stringstream &out) { writeVector(out, o.m_acceleration); },
       [](Object &o, std::stringstream &in, Reading &) {
         Vector acceleration;
         if (readVector(in, acceleration)) o.setAcceleration(acceleration);
         return true;
       },
       [](const Object &o) { return o.getAcceleration().toString(); }, nullptr},

      {SHAPE, "SHAPE", [](const Object &o, std::stringstream &out) { o.m_shape.serialize(&out); },
       [](Object &o, std::stringstream &in, Reading &) {
         Shape shape;
         if (shape.deserialize(&in) == 0) o.setShape(shape);
         return true;
       },
       [](const Object &o) { return o.getShape().toString(); }, nullptr},

      {FOLLOW_PATH, "FOLLOW_PATH",
       [](const Object &o, std::stringstream &out) { writeBool(out, o.m_follow_path); },
       [](Object &o, std::stringstream &in, Reading &) {
         bool follow = false;
         if (readBool(in, follow)) o.setFollowPath(follow);
         return true;
       },
       [](const Object &o) { return boolToString(o.getFollowPath()); }, nullptr},

      {PATH, "PATH", [](const Object &o, std::stringstream &out) { o.m_path.serialize(&out); },
       [](Object &o, std::stringstream &in, Reading &) {
         Path path;
         if (path.deserialize(&in) == 0) o.setPath(path);
         return true;
       },
       [](const Object &o) { return o.getPath().toString(); }, nullptr},

      {AVOID_COLLISIONS, "AVOID_COLLISIONS",
       [](const Object &o, std::stringstream &out) { writeBool(out, o.m_avoid_collisions); },
       [](Object &o, std::stringstream &in, Reading &) {
         bool avoid = false;
         if (readBool(in, avoid)) o.setAvoidCollisions(avoid);
         return true;
       },
       [](const Object &o) { return boolToString(o.getAvoidCollisions()); }, nullptr},
  };
  return table;
}

int Object::serialize(std::stringstream *p_ss, unsigned int attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "Object::serialize(): attr is %u, modified is %u (%s)", attr, m_modified,
                 boolToString(m_modified != 0).c_str());
  if (trace) log.writeLog(25, "\t%s", toBinaryString(attr).c_str());
  const unsigned int mask = attr ? attr : m_modified;
  writeUnsigned(*p_ss, mask);
  for (const Attribute &attribute : Attribute::all()) {
    if (!(mask & attribute.bit)) continue;
    attribute.write(*this, *p_ss);
    m_modified &= ~static_cast<unsigned int>(attribute.bit);
    if (trace) attribute.trace(*this);
  }
  return checkStream("Object::serialize()", *p_ss);
}

int Object::deserialize(std::stringstream *p_ss, unsigned int *p_attr) {
  LogManager &log = LogManager::getInstance();
  unsigned int mask = 0;
  readUnsigned(*p_ss, mask);
  if (p_attr) *p_attr = mask;
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "Object::deserialize(): attr %u (%s)", mask, toBinaryString(mask).c_str());

  // Reading stops at the first failure.
  Attribute::Reading reading;
  reading.trace = log.getLogLevel() >= 25;
  for (const Attribute &attribute : Attribute::all()) {
    if (!(mask & attribute.bit)) continue;
    if (!p_ss->good()) break;
    if (!attribute.read(*this, *p_ss, reading)) return -1;
    if (reading.trace && p_ss->good()) attribute.trace(*this);
  }

  // What was just received counts as unchanged.
  m_modified = 0;
  log.writeLog(20, "Object::deserialize(): done checking all types.");
  return checkStream("Object::deserialize()", *p_ss);
}

}  // namespace qv
