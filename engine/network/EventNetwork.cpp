#include "network/EventNetwork.h"

#include "core/LogManager.h"

namespace qv {

bool isNetworkEvent(const std::string &event_type) {
  static const char *const GAME_TYPES[] = {
      "qv-keyboard-network", "qv-mouse-network",     "qv-network-create", "qv-custom-network",
      "qv-network-delete",   "qv-network-game-over", "qv-network-sync",
  };
  if (event_type == NETWORK_EVENT) return true;
  for (const char *p_type : GAME_TYPES)
    if (event_type == p_type) return true;
  return false;
}

EventNetwork::EventNetwork(int label)
    : m_label(NETWORK_UNDEFINED), m_socket_index(-1), m_bytes(0), m_p_message(nullptr) {
  setType(NETWORK_EVENT);
  setLabel(label);
}

void EventNetwork::setLabel(int new_label) {
  if (new_label < NETWORK_UNDEFINED || new_label > NETWORK_CONNECT) {
    LogManager::getInstance().writeLog("EventNetwork::setLabel(): Undefined type (%d).", new_label);
    new_label = NETWORK_UNDEFINED;
  }
  m_label = new_label;
}

void EventNetwork::setSocketIndex(int new_socket_index) {
  m_socket_index = new_socket_index;
}

void EventNetwork::setBytes(int new_bytes) {
  m_bytes = new_bytes;
}

void EventNetwork::setMessage(const void *p_new_message) {
  m_p_message = p_new_message;
}

int EventNetwork::getLabel() const {
  return m_label;
}

int EventNetwork::getSocketIndex() const {
  return m_socket_index;
}

int EventNetwork::getBytes() const {
  return m_bytes;
}

const void *EventNetwork::getMessage() const {
  return m_p_message;
}

}  // namespace qv
