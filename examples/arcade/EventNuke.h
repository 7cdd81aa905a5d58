#ifndef ARCADE_EVENT_NUKE_H
#define ARCADE_EVENT_NUKE_H

#include <string>

#include "core/Event.h"

const std::string NUKE_EVENT = "nuke";

// The ship's nuke going off: every saucer that registered for it blows up.
// A type the engine does not know, so the world manager delivers it.
class EventNuke : public qv::Event {
 public:
  EventNuke();
};

#endif
