#ifndef QV_MANAGER_H
#define QV_MANAGER_H

#include <string>

#include "world/ObjectList.h"

namespace qv {

class Event;
class Object;

// Most distinct event types one manager can hold interest in.
const int MAX_EVENT_TYPES = 100;

// Base of every engine manager: a type name and a started flag with the
// start/stop rules every manager shares. Managers are singletons started and
// stopped only by the GameManager.
class Manager {
 public:
  Manager();

  // May this manager hold interest in, and deliver, this event type?
  virtual bool isValid(std::string event_type) const;
  virtual ~Manager();

  // Marks the manager started; derived managers call this last on success.
  virtual int startUp();
  // Clears the started flag; derived managers call this from their own.
  virtual void shutDown();

  std::string getType() const;
  void setType(std::string type);
  bool isStarted() const;

  // Calls eventHandler on every active object interested in the event's
  // type, walking a copy of the list so handlers may register or withdraw.
  // Returns how many handlers answered non-zero.
  int onEvent(const Event *p_event) const;
  // Objects call these through Object::registerInterest, which also keeps
  // the object's own list. 0, or -1 when refused (a second registration of
  // the same object is a warning and 0).
  int registerInterest(Object *p_o, std::string event_type);
  int unregisterInterest(Object *p_o, std::string event_type);
  // The objects interested in event_type (empty when none).
  ObjectList getInterested(std::string event_type) const;
  int getEventCount() const;

 protected:
  // Every startUp asks this first: true, after the warning line, when the
  // manager is already started (startUp then returns -1).
  bool refuseSecondStart() const;

 private:
  Manager(const Manager &) = delete;
  Manager &operator=(const Manager &) = delete;

  int findEvent(const std::string &event_type) const;

  std::string m_type;                      // "Manager" until a derived constructor names it
  int m_event_count;                       // 0 event types in use
  std::string m_event[MAX_EVENT_TYPES];    // the types in use, slots 0 .. m_event_count - 1
  ObjectList m_obj_list[MAX_EVENT_TYPES];  // slot i: the objects interested in m_event[i]
  bool m_is_started;                       // false until startUp succeeds
};

}  // namespace qv

#endif
