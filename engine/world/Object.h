#ifndef QV_OBJECT_H
#define QV_OBJECT_H

#include <iosfwd>
#include <string>

#include "core/Event.h"
#include "graphics/Animation.h"
#include "graphics/Shape.h"
#include "path/Path.h"
#include "world/Box.h"
#include "world/Vector.h"

namespace qv {

class PathFind;

const int ALTITUDE_MAX = 4;    // altitudes run 0..ALTITUDE_MAX, drawn low to high
const int INTEREST_MAX = 100;  // most event types one object can register for

// HARD and SOFT objects are solid: they collide and live in the collision
// grid. SPECTRAL objects pass through everything.
enum Solidness : int {
  HARD = 0,      // stops and is stopped by other HARD objects
  SOFT = 1,      // passes through, but still collides
  SPECTRAL = 2,  // never collides
};

// Bits of the modified mask: which attributes changed since the mask was
// last reset (serialization sends only those).
enum ObjectAttribute : unsigned int {
  ID = 0x1,
  ACTIVE = 0x2,
  VISIBLE = 0x4,
  EVENTS = 0x8,
  BOX = 0x10,
  POSITION = 0x20,
  TYPE = 0x40,
  ANIMATION = 0x80,
  ALTITUDE = 0x100,
  SOLIDNESS = 0x200,
  NO_SOFT = 0x400,
  SPEED = 0x800,
  DIRECTION = 0x1000,
  ACCELERATION = 0x2000,
  SHAPE = 0x4000,
  PATH = 0x8000,
  FOLLOW_PATH = 0x10000,
  AVOID_COLLISIONS = 0x20000,
};

// Every attribute bit at once: the mask of a new object.
const unsigned int ALL_OBJECT_ATTRIBUTES = 0x3FFFF;

// Base of everything in the game world. Objects are created with new and the
// constructor hands them to the world manager, which owns, moves, collides,
// draws and finally deletes them; game code asks for deletion with
// WorldManager::markForDelete. Setters of indexed attributes tell the scene
// graph first (while the object still reports the old value), then store.
class Object {
 public:
  Object();
  // Withdraws every interest, releases an attached path search and leaves the world.
  virtual ~Object();

  // Setters that the scene graph follows. Those returning int give 0, or
  // -1 with the old value kept.
  virtual void setType(std::string new_type);
  virtual int setPosition(Vector new_pos);

  // Handles PATH_EVENT: follows the path found and releases the search.
  // Returns 1 when the event was handled, 0 otherwise.
  virtual int eventHandler(const Event *p_e);

  virtual int setSolidness(Solidness new_solid);
  virtual void setAvoidCollisions(bool avoid = true);
  virtual int setAltitude(int new_altitude);
  // Stores the direction normalised; marks nothing.
  virtual void setDirection(Vector new_direction);
  // Speed becomes the vector's length, direction its normalised form.
  virtual void setVelocity(Vector new_velocity);
  virtual void setAcceleration(Vector new_acceleration);
  virtual bool isVisible() const;
  virtual int setActive(bool active = true);
  virtual void setBox(Box new_box);
  // Shows the sprite with this label and takes its size as the box.
  virtual int setSprite(std::string sprite_label);
  virtual void setAnimation(Animation new_animation, bool set_box = true);
  // Draws the animation, then the shape, at the position; returns the
  // animation's result.
  virtual int draw();
  // Appends a record of the attributes named by attr, or of the modified
  // ones when attr is 0, and marks the written ones unchanged. 0, or -1
  // after a log line when the stream went bad.
  virtual int serialize(std::stringstream *p_ss, unsigned int attr = 0);
  // Reads one record and applies it through the setters, so the world's
  // indexes follow; the mask read is stored through p_attr when given.
  // Afterwards nothing counts as modified. 0, or -1 for a bad or short record.
  virtual int deserialize(std::stringstream *p_ss, unsigned int *p_attr = nullptr);
  virtual void setModified(unsigned int new_modified);
  virtual unsigned int getModified() const;
  virtual void setShape(Shape new_shape);
  // Points the object at the path's current waypoint, if any.
  virtual void setFollowPath(bool follow = true);

  int getId() const;
  std::string getType() const;
  bool isActive() const;
  Box getBox() const;
  Vector getPosition() const;
  Vector getDirection() const;
  float getSpeed() const;
  Vector getVelocity() const;
  Vector getAcceleration() const;
  int getAltitude() const;
  Solidness getSolidness() const;
  bool getNoSoft() const;
  bool getAvoidCollisions() const;
  Animation getAnimation() const;
  Shape getShape() const;
  Path getPath() const;
  bool getFollowPath() const;
  // Where the object will be after this frame's move.
  Vector predictPosition() const;
  bool isSolid() const;
  bool isModified() const;
  int getEventCount() const;
  // The registered event type at index (registration order), "" outside.
  std::string getEvent(int index) const;

  // Cells per frame along the direction; the direction is kept.
  void setSpeed(float new_speed);
  int setVisible(bool visible = true);
  // When set, the object is also stopped by SOFT objects.
  void setNoSoft(bool no_soft = true);
  void setPath(Path new_path);

  // Attaches a path search that this object owns from now on; its result
  // arrives as a PATH_EVENT. A search already attached is released.
  void setPathFind(PathFind *p_path_find);
  PathFind *getPathFind() const;

  // Registration goes to the manager that serves the type: the game manager
  // for steps, the input manager for keyboard and mouse, the network
  // manager for network types, the world manager for everything else.
  int registerInterest(std::string event_type);
  int unregisterInterest(std::string event_type);

  // One frame of path following and of acceleration; the world manager
  // calls them after the object's move.
  void followPathStep();
  void applyAcceleration();

 private:
  Object(const Object &) = delete;
  Object &operator=(const Object &) = delete;
  void releasePathFind();

  // One attribute of the serialized record; the table of them is in Object.cpp.
  struct Attribute;

  int m_id;                                // from a process-wide counter, never reused
  std::string m_type;                      // "(Undefined)"
  bool m_is_active;                        // true: updated, moved, collided, drawn
  bool m_is_visible;                       // true: drawn
  Box m_box;                               // (-0.5,-0.5) 0.99 x 0.99, relative to position
  Vector m_position;                       // (1,1), world cells
  Vector m_direction;                      // (0,0), unit length or zero
  float m_speed;                           // 0 cells per frame
  Vector m_acceleration;                   // (0,0), added to the velocity each frame
  int m_altitude;                          // 2, drawing layer
  Solidness m_solidness;                   // HARD
  Animation m_animation;                   // no sprite
  bool m_no_soft;                          // false
  int m_event_count;                       // 0 registered event types
  std::string m_event_name[INTEREST_MAX];  // registered types, in registration order
  unsigned int m_modified;                 // ALL_OBJECT_ATTRIBUTES
  Shape m_shape;                           // no shape
  PathFind *m_p_path_find;                 // null, owned when set
  Path m_path;                             // empty
  bool m_follow_path;                      // false
  bool m_avoid_collisions;                 // false: a blocked HARD object stops
};

}  // namespace qv

#endif
