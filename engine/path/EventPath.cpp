#include "path/EventPath.h"

namespace qv {

EventPath::EventPath() : m_status(PATH_FAILED) {
  setType(PATH_EVENT);
}

EventPath::EventPath(int status, const Path &path) : m_status(status), m_path(path) {
  setType(PATH_EVENT);
}

void EventPath::setStatus(int new_status) {
  m_status = new_status;
}

void EventPath::setPath(const Path &new_path) {
  m_path = new_path;
}

int EventPath::getStatus() const {
  return m_status;
}

Path EventPath::getPath() const {
  return m_path;
}

}  // namespace qv
