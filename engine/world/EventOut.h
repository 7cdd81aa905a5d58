#ifndef QV_EVENT_OUT_H
#define QV_EVENT_OUT_H

#include "core/Event.h"

namespace qv {

const std::string OUT_EVENT = "qv-out";

// Sent by the world manager to an object whose box has just left the world.
class EventOut : public Event {
 public:
  EventOut();
};

}  // namespace qv

#endif
