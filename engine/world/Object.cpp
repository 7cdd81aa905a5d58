#include "world/Object.h"

#include <cstdint>
#include <istream>
#include <limits>
#include <ostream>
#include <sstream>
#include <vector>

#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
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

// The level-25 line naming an attribute and its value, shared by writing
// and reading so both logs read alike.
void traceAttribute(const Object &o, unsigned int bit) {
  LogManager &log = LogManager::getInstance();
  switch (bit) {
    case ID:
      log.writeLog(25, "\tID: %d", o.getId());
      break;
    case ACTIVE:
      log.writeLog(25, "\tACTIVE: %s", boolToString(o.isActive()).c_str());
      break;
    case VISIBLE:
      log.writeLog(25, "\tVISIBLE: %s", boolToString(o.isVisible()).c_str());
      break;
    case EVENTS:
      log.writeLog(25, "\tEVENTS: %d", o.getEventCount());
      for (int i = 0; i < o.getEventCount(); i++)
        log.writeLog(25, "\t\t%s (size %d)", o.getEvent(i).c_str(),
                     static_cast<int>(o.getEvent(i).size()));
      break;
    case BOX:
      log.writeLog(25, "\tBOX: %s", o.getBox().toString().c_str());
      break;
    case POSITION:
      log.writeLog(25, "\tPOSITION: %s", o.getPosition().toString().c_str());
      break;
    case TYPE:
      log.writeLog(25, "\tTYPE: %s", o.getType().c_str());
      break;
    case ANIMATION:
      log.writeLog(25, "\tANIMATION: %s", o.getAnimation().toString().c_str());
      break;
    case ALTITUDE:
      log.writeLog(25, "\tALTITUDE: %d", o.getAltitude());
      break;
    case SOLIDNESS:
      log.writeLog(25, "\tSOLIDNESS: %s", solidnessToString(o.getSolidness()).c_str());
      break;
    case NO_SOFT:
      log.writeLog(25, "\tNO_SOFT: %s", boolToString(o.getNoSoft()).c_str());
      break;
    case DIRECTION:
      log.writeLog(25, "\tDIRECTION: %s", o.getDirection().toString().c_str());
      break;
    case SPEED:
      log.writeLog(25, "\tSPEED: %f", o.getSpeed());
      break;
    case ACCELERATION:
      log.writeLog(25, "\tACCELERATION: %s", o.getAcceleration().toString().c_str());
      break;
    case SHAPE:
      log.writeLog(25, "\tSHAPE: %s", o.getShape().toString().c_str());
      break;
    case FOLLOW_PATH:
      log.writeLog(25, "\tFOLLOW_PATH: %s", boolToString(o.getFollowPath()).c_str());
      break;
    case PATH:
      log.writeLog(25, "\tPATH: %s", o.getPath().toString().c_str());
      break;
    case AVOID_COLLISIONS:
      log.writeLog(25, "\tAVOID_COLLISIONS: %s", boolToString(o.getAvoidCollisions()).c_str());
      break;
    default:
      break;
  }
}

// Record order. DIRECTION goes before SPEED, and FOLLOW_PATH before PATH, so
// that the reader turns toward the waypoint of the path it already holds.
const ObjectAttribute RECORD_ORDER[] = {
    ID,    ACTIVE,       VISIBLE,  EVENTS,      BOX,     POSITION,
    TYPE,  ANIMATION,    ALTITUDE, SOLIDNESS,   NO_SOFT, DIRECTION,
    SPEED, ACCELERATION, SHAPE,    FOLLOW_PATH, PATH,    AVOID_COLLISIONS,
};

}  // namespace

int Object::serialize(std::stringstream *p_ss, unsigned int attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "Object::serialize(): attr is %u, modified is %u (%s)", attr, m_modified,
                 boolToString(m_modified != 0).c_str());
  if (trace) log.writeLog(25, "\t%s", toBinaryString(attr).c_str());
  const unsigned int mask = attr ? attr : m_modified;
  writeUnsigned(*p_ss, mask);
  std::ostream &out = *p_ss;
  for (ObjectAttribute bit : RECORD_ORDER) {
    if (!(mask & bit)) continue;
    switch (bit) {
      case ID:
        writeInt(out, m_id);
        break;
      case ACTIVE:
        writeBool(out, m_is_active);
        break;
      case VISIBLE:
        writeBool(out, m_is_visible);
        break;
      case EVENTS:
        writeInt(out, m_event_count);
        for (int i = 0; i < m_event_count; i++) writeString(out, m_event_name[i]);
        break;
      case BOX:
        writeVector(out, m_box.getCorner());
        writeFloat(out, m_box.getHorizontal());
        writeFloat(out, m_box.getVertical());
        break;
      case POSITION:
        writeVector(out, m_position);
        break;
      case TYPE:
        writeString(out, m_type);
        break;
      case ANIMATION:
        m_animation.serialize(p_ss);
        break;
      case ALTITUDE:
        writeInt(out, m_altitude);
        break;
      case SOLIDNESS:
        writeInt(out, m_solidness);
        break;
      case NO_SOFT:
        writeBool(out, m_no_soft);
        break;
      case DIRECTION:
        writeVector(out, m_direction);
        break;
      case SPEED:
        writeFloat(out, m_speed);
        break;
      case ACCELERATION:
        writeVector(out, m_acceleration);
        break;
      case SHAPE:
        m_shape.serialize(p_ss);
        break;
      case FOLLOW_PATH:
        writeBool(out, m_follow_path);
        break;
      case PATH:
        m_path.serialize(p_ss);
        break;
      case AVOID_COLLISIONS:
        writeBool(out, m_avoid_collisions);
        break;
    }
    m_modified &= ~static_cast<unsigned int>(bit);
    if (trace) traceAttribute(*this, bit);
  }
  return checkStream("Object::serialize()", *p_ss);
}

int Object::deserialize(std::stringstream *p_ss, unsigned int *p_attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  std::istream &in = *p_ss;
  unsigned int mask = 0;
  readUnsigned(in, mask);
  if (p_attr) *p_attr = mask;
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "Object::deserialize(): attr %u (%s)", mask, toBinaryString(mask).c_str());

  // Each attribute is applied only once all its fields were read, and
  // reading stops at the first failure: a short record changes nothing
  // with half a value.
  // The sender's box outranks the one an animation brings with it: it is
  // what the sender has, even when set after the sprite.
  bool got_box = false;
  Box received_box;
  for (ObjectAttribute bit : RECORD_ORDER) {
    if (!(mask & bit)) continue;
    if (!in.good()) break;
    bool flag = false;
    int number = 0;
    float real = 0;
    Vector vector;
    std::string text;
    std::uint64_t length = 0;
    switch (bit) {
      case ID:
        if (!readInt(in, number)) break;
        if (number != m_id) {
          m_id = number;
          m_modified |= ID;
          // Later objects of this copy must never take a received id.
          if (number >= next_id && number < std::numeric_limits<int>::max()) next_id = number + 1;
        }
        break;
      case ACTIVE:
        if (readBool(in, flag)) setActive(flag);
        break;
      case VISIBLE:
        if (readBool(in, flag)) setVisible(flag);
        break;
      case EVENTS: {
        if (!readInt(in, number)) break;
        if (number < 0) {
          in.setstate(std::ios::failbit);
          break;
        }
        // Every name is read before any interest changes, so a short record
        // leaves the registrations alone. A count larger than the names the
        // record holds ends at the first missing one.
        std::vector<std::string> names;
        for (int i = 0; i < number && in.good(); i++) {
          int result = readString(in, text, length);
          if (result == -2) {
            log.writeLog("Object::deserialize(): Error! Cannot allocate %d bytes.",
                         static_cast<int>(length));
            continue;
          }
          if (result == 0) {
            if (trace) log.writeLog(25, "\t\tsize %d", static_cast<int>(length));
            names.push_back(text);
          }
        }
        if (!in.good()) break;
        for (int i = m_event_count - 1; i >= 0; i--) unregisterInterest(m_event_name[i]);
        for (const std::string &name : names)
          if (registerInterest(name) != 0)
            log.writeLog("Object::deserialize(): Error! Register interest: %s", name.c_str());
        break;
      }
      case BOX: {
        Vector corner;
        float horizontal = 0, vertical = 0;
        readVector(in, corner);
        readFloat(in, horizontal);
        readFloat(in, vertical);
        if (!in) break;
        received_box = Box(corner, horizontal, vertical);
        got_box = true;
        setBox(received_box);
        break;
      }
      case POSITION:
        if (readVector(in, vector)) setPosition(vector);
        break;
      case TYPE: {
        int result = readString(in, text, length);
        if (result == -2) {
          log.writeLog("Object::deserialize(): Error! Cannot allocate %d bytes.",
                       static_cast<int>(length));
          return -1;
        }
        if (result == 0) setType(text);
        break;
      }
      case ANIMATION: {
        Animation animation;
        if (animation.deserialize(p_ss) != 0) break;
        setAnimation(animation, true);
        // Only the label travels: find the sprite again here, keeping the
        // frame and the count that setSprite starts over.
        if (!animation.getName().empty()) {
          setSprite(animation.getName());
          Animation restored = m_animation;
          restored.setIndex(animation.getIndex());
          restored.setSlowdownCount(animation.getSlowdownCount());
          setAnimation(restored, true);
        }
        if (got_box) setBox(received_box);
        break;
      }
      case ALTITUDE:
        if (readInt(in, number)) setAltitude(number);
        break;
      case SOLIDNESS:
        if (readInt(in, number)) setSolidness(static_cast<Solidness>(number));
        break;
      case NO_SOFT:
        if (readBool(in, flag)) {
          m_no_soft = flag;
          m_modified |= NO_SOFT;
        }
        break;
      case DIRECTION:
        if (readVector(in, vector)) setDirection(vector);
        break;
      case SPEED:
        readFloat(in, real);
        if (in) {
          m_speed = real;
          m_modified |= SPEED;
        }
        break;
      case ACCELERATION:
        if (readVector(in, vector)) setAcceleration(vector);
        break;
      case SHAPE: {
        Shape shape;
        if (shape.deserialize(p_ss) == 0) setShape(shape);
        break;
      }
      case FOLLOW_PATH:
        if (readBool(in, flag)) setFollowPath(flag);
        break;
      case PATH: {
        Path path;
        if (path.deserialize(p_ss) == 0) setPath(path);
        break;
      }
      case AVOID_COLLISIONS:
        if (readBool(in, flag)) setAvoidCollisions(flag);
        break;
    }
    if (trace && in.good()) traceAttribute(*this, bit);
  }

  // What was just received counts as unchanged.
  m_modified = 0;
  log.writeLog(20, "Object::deserialize(): done checking all types.");
  return checkStream("Object::deserialize()", *p_ss);
}

}  // namespace qv
