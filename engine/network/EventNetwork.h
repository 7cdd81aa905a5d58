#ifndef QV_EVENT_NETWORK_H
#define QV_EVENT_NETWORK_H

#include "core/Event.h"

namespace qv {

const std::string NETWORK_EVENT = "qv-network";

// Is this one of the types the network manager serves: NETWORK_EVENT and the
// seven that copies of a game send each other (keyboard, mouse, object
// creation and deletion, custom data, game over, synchronisation)?
bool isNetworkEvent(const std::string &event_type);

// What happened on a connection. The network manager sends ACCEPT when a
// server takes a new connection, CONNECT when this copy connects to a
// server, DATA when NetworkManager::poll finds bytes waiting, and CLOSE
// when a connection is closed for any reason.
enum NetworkLabel : int {
  NETWORK_UNDEFINED = -1,
  NETWORK_ACCEPT = 0,
  NETWORK_DATA = 1,
  NETWORK_CLOSE = 2,
  NETWORK_CONNECT = 3,
};

// Tells interested objects about a connection, named by its index in the
// network manager's connection list.
class EventNetwork : public Event {
 public:
  // A label outside -1..3 is logged and becomes -1.
  explicit EventNetwork(int label = NETWORK_UNDEFINED);

  void setLabel(int new_label);
  void setSocketIndex(int new_socket_index);
  void setBytes(int new_bytes);
  // The message is not owned: it lives only as long as the delivery.
  void setMessage(const void *p_new_message);

  int getLabel() const;
  int getSocketIndex() const;
  int getBytes() const;
  const void *getMessage() const;

 private:
  int m_label;              // what happened, NETWORK_UNDEFINED when unknown
  int m_socket_index;       // -1, index of the connection
  int m_bytes;              // 0, size of the message
  const void *m_p_message;  // null, not owned
};

}  // namespace qv

#endif
