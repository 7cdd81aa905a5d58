#ifndef QV_NETWORK_MANAGER_H
#define QV_NETWORK_MANAGER_H

#include <deque>
#include <string>
#include <vector>

#include "core/Manager.h"

namespace qv {

const std::string DEFAULT_PORT = "9876";  // where a server listens unless told otherwise
const int DEFAULT_MAX_CONNECTIONS = 3;
// Largest message receiveMessage accepts; a bigger length prefix means the
// stream is garbage or hostile, and the connection is closed.
const int MAX_MESSAGE_SIZE = 16 * 1024 * 1024;

// Holds the game's TCP connections. A connection is named by its index in
// the connection list; closing one renumbers the later ones. Interested
// objects hear about connections through EventNetwork (NETWORK_EVENT).
// All sockets are non-blocking: nothing here ever waits, except connect.
class NetworkManager : public Manager {
 public:
  static NetworkManager &getInstance();

  int startUp() override;
  // Closes every connection and the server socket.
  void shutDown() override;
  // The eight network event types.
  bool isValid(std::string event_type) const override;

  // ---- queries -------------------------------------------------------------
  bool isServer() const;
  // -1 asks whether any connection exists.
  bool isConnected(int sock = -1) const;
  int getNumConnections() const;
  int getMaxConnections() const;
  // The port the server socket listens on, -1 when not a server.
  int getPort() const;
  // Bytes waiting to be read on a connection (those already buffered by
  // receiveMessage included), -1 when it is not open.
  int isData(int sock) const;

  // ---- becoming a server or a client ----------------------------------------
  // Listens on port ("0" picks a free one, see getPort). 0 or -1.
  int setServer(std::string port = DEFAULT_PORT);
  // Stops listening; open connections stay. 0, or -1 when not a server.
  int stopServer();
  // Connects to a server, waiting at most timeout_ms; the new connection's
  // index (announced with a CONNECT event), or -1.
  int connect(std::string host, std::string port = DEFAULT_PORT, int timeout_ms = 3000);
  // Most connections held at once; below 0 is refused with -1.
  int setMaxConnections(int max_connections);

  // ---- the connections ------------------------------------------------------
  // The new connection's index, -1 when there is none, -2 on error.
  int accept();
  // 0 when every byte went out, else -1.
  int send(const void *bytes, int length, int sock);
  // Keeps a copy of the bytes and sends them with sendDue in frame `frame`
  // (or the first frame after it). 0, or -1 for a bad connection or length.
  int queue(const void *bytes, int length, int sock, int frame);
  // Sends every queued message whose frame has come; the sum of the sends'
  // results (0 when everything went out).
  int sendDue();
  // Up to length bytes, without waiting: the number read, 0 when nothing is
  // waiting, -1 on error or when the peer has gone (the connection is then
  // closed). peek leaves the bytes to be read again.
  int receive(void *buffer, int length, int sock, bool peek = false);
  // -1 closes every connection. 0, or -1 when a close fails.
  int close(int sock);

  // ---- messages ---------------------------------------------------------------
  // Records carry no length, so whole messages travel with a 4-byte
  // little-endian length in front. sendMessage sends one now (frame -1) or
  // queues it for that frame.
  int sendMessage(const std::string &message, int sock, int frame = -1);
  // 1 and the message when a whole one has arrived, 0 while it is still on
  // its way, -1 on error (a length over MAX_MESSAGE_SIZE closes the connection).
  int receiveMessage(std::string *p_message, int sock);
  // Sends a DATA event for each connection with bytes waiting; returns how
  // many were sent.
  int poll();

 private:
  NetworkManager();

  struct Outgoing {
    std::vector<char> bytes;  // owned copy, released once sent
    int frame;                // step count from which it may go out
  };
  // Bytes read from a socket and not yet taken. Taking moves the start; the
  // taken part is dropped once it outweighs the rest, so draining costs
  // time in proportion to the bytes received, whatever the messages' sizes.
  struct Inbox {
    std::string bytes;      // from start on: not yet taken
    std::size_t start = 0;  // first byte not yet taken

    std::size_t size() const { return bytes.size() - start; }
    const char *data() const { return bytes.data() + start; }
    void take(std::size_t count);
  };
  struct Connection {
    int handle;                  // the socket
    std::deque<Outgoing> queue;  // waiting messages, oldest first
    Inbox inbox;                 // bytes read by receiveMessage, not yet taken
  };

  bool validIndex(int sock) const;
  int addConnection(int handle, int label);
  void announce(int label, int sock, int bytes = 0, const void *p_message = nullptr);
  // False, after a log line, when bytes and length make no message.
  bool isMessage(const char *operation, const void *bytes, int length, int sock) const;
  void logSocketError(int code) const;

  int m_server;                    // listening socket, -1 when not a server
  int m_max_connections;           // DEFAULT_MAX_CONNECTIONS
  std::vector<Connection> m_sock;  // open connections, in index order
};

}  // namespace qv

#endif
