#include "core/Event.h"

namespace qv {

Event::Event() : m_event_type(UNDEFINED_EVENT) {
}

Event::~Event() {
}

void Event::setType(std::string new_type) {
  m_event_type = std::move(new_type);
}

std::string Event::getType() const {
  return m_event_type;
}

}  // namespace qv
