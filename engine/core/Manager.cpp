#include "core/Manager.h"

#include "core/Event.h"
#include "core/LogManager.h"
#include "world/Object.h"

namespace qv {

Manager::Manager() : m_type("Manager"), m_event_count(0), m_is_started(false) {
}

Manager::~Manager() {
}

bool Manager::isValid(std::string) const {
  return false;
}

int Manager::startUp() {
  if (m_is_started)
    LogManager::getInstance().writeLog(1, "Manager::startUp(): Warning! %s already started.",
                                       m_type.c_str());
  m_is_started = true;
  return 0;
}

bool Manager::refuseSecondStart() const {
  if (!m_is_started) return false;
  LogManager::getInstance().writeLog("%s::startup(): Warning! %s already started.", m_type.c_str(),
                                     m_type.c_str());
  return true;
}

void Manager::shutDown() {
  if (!m_is_started)
    LogManager::getInstance().writeLog(1, "Manager::shutDown(): Warning! %s not started.",
                                       m_type.c_str());
  m_is_started = false;
}

std::string Manager::getType() const {
  return m_type;
}

void Manager::setType(std::string type) {
  m_type = std::move(type);
}

bool Manager::isStarted() const {
  return m_is_started;
}

int Manager::findEvent(const std::string &event_type) const {
  for (int i = 0; i < m_event_count; i++)
    if (m_event[i] == event_type) return i;
  return -1;
}

int Manager::registerInterest(Object *p_o, std::string event_type) {
  const LogManager &log = LogManager::getInstance();
  if (!isValid(event_type)) {
    log.writeLog("Manager(%s)::registerInterest(): Event '%s' not valid for this Manager",
                 m_type.c_str(), event_type.c_str());
    return -1;
  }
  const int slot = findEvent(event_type);
  if (slot >= 0) {
    if (p_o && m_obj_list[slot].contains(p_o)) {
      log.writeLog(
          1, "Manager::registerInterest(): Warning! Not adding id %d (%s) twice for event %s.",
          p_o->getId(), p_o->getType().c_str(), event_type.c_str());
      return 0;
    }
    return m_obj_list[slot].insert(p_o);
  }
  if (m_event_count == MAX_EVENT_TYPES) return -1;
  m_obj_list[m_event_count].clear();
  if (m_obj_list[m_event_count].insert(p_o) == -1) return -1;
  m_event[m_event_count] = event_type;
  m_event_count++;
  return 0;
}

int Manager::unregisterInterest(Object *p_o, std::string event_type) {
  const int slot = findEvent(event_type);
  if (slot < 0) return -1;
  if (m_obj_list[slot].remove(p_o) == -1) return -1;
  if (m_obj_list[slot].isEmpty()) {
    // Later slots move down one place, keeping their order.
    for (int i = slot; i < m_event_count - 1; i++) {
      m_event[i] = std::move(m_event[i + 1]);
      m_obj_list[i] = std::move(m_obj_list[i + 1]);
    }
    m_event_count--;
    m_event[m_event_count].clear();
    m_obj_list[m_event_count] = ObjectList();
  }
  return 0;
}

int Manager::onEvent(const Event *p_event) const {
  const LogManager &log = LogManager::getInstance();
  const std::string event_type = p_event->getType();
  if (event_type == UNDEFINED_EVENT) {
    log.writeLog(1, "Manager(%s)::onEvent(): Warning! Event type %s is undefined.", m_type.c_str(),
                 event_type.c_str());
    return 0;
  }
  if (!isValid(event_type)) {
    log.writeLog(1, "Manager(%s)::onEvent(): Error! Event type %s not valid.", m_type.c_str(),
                 event_type.c_str());
    return 0;
  }
  int handled = 0;
  for (int i = 0; i < m_event_count; i++) {
    if (m_event[i] != event_type) continue;
    // Handlers may register or withdraw interest, so walk a copy.
    const ObjectList interested = m_obj_list[i];
    const int count = interested.getCount();
    for (int k = 0; k < count; k++) {
      Object *p_o = interested[k];
      if (p_o->isActive() && p_o->eventHandler(p_event) != 0) handled++;
    }
    break;  // types are unique, and a slot re-made by a handler waits for the next event
  }
  return handled;
}

ObjectList Manager::getInterested(std::string event_type) const {
  const int slot = findEvent(event_type);
  return slot < 0 ? ObjectList() : m_obj_list[slot];
}

int Manager::getEventCount() const {
  return m_event_count;
}

}  // namespace qv
