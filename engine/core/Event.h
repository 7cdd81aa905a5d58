#ifndef QV_EVENT_H
#define QV_EVENT_H

#include <string>

namespace qv {

// The type every event starts with; managers refuse to deliver it.
const std::string UNDEFINED_EVENT = "qv-undefined";

// Base of every event: a small value named by its type string. Senders build
// events on the stack and they live only for one delivery.
class Event {
 public:
  Event();
  virtual ~Event();

  void setType(std::string new_type);
  std::string getType() const;

 private:
  std::string m_event_type;  // UNDEFINED_EVENT until a derived event names itself
};

}  // namespace qv

#endif
