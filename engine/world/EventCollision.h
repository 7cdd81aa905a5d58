#ifndef QV_EVENT_COLLISION_H
#define QV_EVENT_COLLISION_H

#include "core/Event.h"
#include "world/Vector.h"

namespace qv {

class Object;

const std::string COLLISION_EVENT = "qv-collision";

// Sent by the world manager to both parties when a move would make two solid
// objects touch. Neither pointer is owned.
class EventCollision : public Event {
 public:
  EventCollision();
  EventCollision(Object *p_o1, Object *p_o2, Vector p);

  void setObject1(Object *p_new_o1);
  void setObject2(Object *p_new_o2);
  void setPosition(Vector new_pos);

  Object *getObject1() const;
  Object *getObject2() const;
  Vector getPosition() const;

 private:
  Vector m_pos;      // where the mover was going
  Object *m_p_obj1;  // the mover
  Object *m_p_obj2;  // the object it met
};

}  // namespace qv

#endif
