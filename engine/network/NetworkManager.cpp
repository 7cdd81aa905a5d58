#include "network/NetworkManager.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/GameManager.h"
#include "core/LogManager.h"
#include "network/EventNetwork.h"
#include "platform/sockets.h"

namespace qv {

namespace {

const int READ_CHUNK = 4096;  // bytes taken from a socket per read
const int LENGTH_BYTES = 4;   // size of a message's length prefix

std::uint32_t readLength(const char *p_bytes) {
  std::uint32_t length = 0;
  for (int i = LENGTH_BYTES - 1; i >= 0; i--)
    length = (length << 8) | static_cast<unsigned char>(p_bytes[i]);
  return length;
}

}  // namespace

void NetworkManager::Inbox::take(std::size_t count) {
  start += std::min(count, size());
  // Each byte is moved at most once per time the taken part doubles past it.
  if (start == bytes.size()) {
    bytes.clear();
    start = 0;
  } else if (start > bytes.size() / 2) {
    bytes.erase(0, start);
    start = 0;
  }
}

NetworkManager::NetworkManager() : m_server(-1), m_max_connections(DEFAULT_MAX_CONNECTIONS) {
  setType("NetworkManager");
}

NetworkManager &NetworkManager::getInstance() {
  static NetworkManager network_manager;
  return network_manager;
}

int NetworkManager::startUp() {
  LogManager &log = LogManager::getInstance();
  if (refuseSecondStart()) return -1;
  // BSD sockets need no library start-up, so nothing here can fail.
  Manager::startUp();
  log.writeLog(5, "NetworkManager::startUp(): successfully started.");
  return 0;
}

void NetworkManager::shutDown() {
  close(-1);
  stopServer();
  Manager::shutDown();
  LogManager::getInstance().writeLog(5, "NetworkManager::shutDown(): successfully stopped.");
}

bool NetworkManager::isValid(std::string event_type) const {
  if (isNetworkEvent(event_type)) return true;
  LogManager::getInstance().writeLog(
      "NetworkManager::isValid(): Error! NetworkManager does not handle %s.", event_type.c_str());
  return false;
}

// ---- queries -------------------------------------------------------------------

bool NetworkManager::isServer() const {
  return m_server != -1;
}

bool NetworkManager::isConnected(int sock) const {
  if (sock < -1) {
    LogManager::getInstance().writeLog(
        "NetworkManager::isConnected(): Warning! Sock less than -1.");
    return false;
  }
  return !m_sock.empty() && sock < static_cast<int>(m_sock.size());
}

int NetworkManager::getNumConnections() const {
  return static_cast<int>(m_sock.size());
}

int NetworkManager::getMaxConnections() const {
  return m_max_connections;
}

int NetworkManager::getPort() const {
  return isServer() ? platform::socketPort(m_server) : -1;
}

int NetworkManager::isData(int sock) const {
  if (!validIndex(sock)) return -1;
  int waiting = platform::socketAvailable(m_sock[sock].handle);
  if (waiting < 0) return -1;
  return waiting + static_cast<int>(m_sock[sock].inbox.size());
}

bool NetworkManager::validIndex(int sock) const {
  return sock >= 0 && sock < static_cast<int>(m_sock.size());
}

// ---- server and client -----------------------------------------------------------

int NetworkManager::setServer(std::string port) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("NetworkManager::setServer(): Error! NetworkManager not started.");
    return -1;
  }
  if (isServer()) {
    log.writeLog("NetworkManager::setServer(): Error! Already a server on port %d.", getPort());
    return -1;
  }
  int server = platform::socketListen(port);
  if (server == -1) {
    int code = platform::lastSocketError();
    log.writeLog("NetworkManager::setServer(): Error! Unable to listen on port %s:", port.c_str());
    logSocketError(code);
    return -1;
  }
  m_server = server;
  log.writeLog(1, "NetworkManager::setServer(): Listening on port %d.", getPort());
  return 0;
}

int NetworkManager::stopServer() {
  if (!isServer()) return -1;
  if (platform::socketClose(m_server) == -1) {
    int code = platform::lastSocketError();
    LogManager::getInstance().writeLog("NetworkManager::stopServer(): Error! close() returned:");
    logSocketError(code);
  }
  // Even a failed close leaves the handle unusable.
  m_server = -1;
  return 0;
}

int NetworkManager::connect(std::string host, std::string port, int timeout_ms) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("NetworkManager::connect(): Error! NetworkManager not started.");
    return -1;
  }
  if (getNumConnections() >= m_max_connections) {
    log.writeLog(
        "NetworkManager::connect(): Error! Already at max connections (%d), not connecting.",
        m_max_connections);
    return -1;
  }
  int handle = platform::socketConnect(host, port, timeout_ms);
  if (handle == -1) {
    int code = platform::lastSocketError();
    log.writeLog("NetworkManager::connect(): Error! Unable to connect to %s:%s:", host.c_str(),
                 port.c_str());
    logSocketError(code);
    return -1;
  }
  int sock = addConnection(handle, NETWORK_CONNECT);
  log.writeLog(1, "NetworkManager::connect(): Connected to %s:%s, socket %d.", host.c_str(),
               port.c_str(), sock);
  return sock;
}

int NetworkManager::setMaxConnections(int max_connections) {
  if (max_connections < 0) {
    LogManager::getInstance().writeLog(
        "NetworkManager::setMaxConnections(): Error! %d is negative, keeping %d.", max_connections,
        m_max_connections);
    return -1;
  }
  m_max_connections = max_connections;
  return 0;
}

// ---- connections -----------------------------------------------------------------

int NetworkManager::accept() {
  LogManager &log = LogManager::getInstance();
  if (!isServer()) {
    log.writeLog("NetworkManager::accept(): Error! Not setup as server.");
    return -2;
  }
  if (getNumConnections() >= m_max_connections) {
    log.writeLog(20, "NetworkManager::accept(): Won't check for new connetions since at max.");
    log.writeLog(20, "\tUse NM.setMaxConnections() to change max.");
    return -1;
  }
  int handle = platform::socketAccept(m_server);
  if (handle == -1) {
    int code = platform::lastSocketError();
    if (platform::socketWouldBlock(code)) {
      log.writeLog(15, "NetworkManager::accept(): No new connection. Not blocking.");
      return -1;
    }
    log.writeLog("NetworkManager::accept(): Error! accept() returned:");
    logSocketError(code);
    return -2;
  }
  int sock = static_cast<int>(m_sock.size());
  log.writeLog(1, "NetworkManager::accept(): New connection, socket %d.", sock);
  return addConnection(handle, NETWORK_ACCEPT);
}

int NetworkManager::addConnection(int handle, int label) {
  m_sock.push_back(Connection{handle, {}, {}});
  int sock = getNumConnections() - 1;
  announce(label, sock);
  return sock;
}

int NetworkManager::send(const void *bytes, int length, int sock) {
  LogManager &log = LogManager::getInstance();
  if (!isConnected(sock) || sock == -1) {
    log.writeLog("NetworkManager::send(): Error! Socket %d not connected. Unable to send.", sock);
    return -1;
  }
  if (!isMessage("send", bytes, length, sock)) return -1;
  int handle = m_sock[sock].handle;
  log.writeLog(15, "NetworkManager::send(): Socket %d (m_sock[] is %d). Calling ::send()...", sock,
               handle);
  long sent = platform::socketSend(handle, bytes, length);
  if (sent == length) return 0;
  if (sent >= 0) {
    log.writeLog("NetworkManager::send(): Warning! %ld of %d bytes sent.", sent, length);
    return -1;
  }
  int code = platform::lastSocketError();
  log.writeLog("NetworkManager::send(): Error! Return is -1.");
  logSocketError(code);
  if (platform::socketBroken(code)) {
    log.writeLog(1, "\tsocket is closed");
    close(sock);
  }
  return -1;
}

int NetworkManager::queue(const void *bytes, int length, int sock, int frame) {
  LogManager &log = LogManager::getInstance();
  if (!validIndex(sock)) {
    log.writeLog("NetworkManager::queue(): Error! Socket %d not connected. Unable to queue.", sock);
    return -1;
  }
  if (!isMessage("queue", bytes, length, sock)) return -1;
  const char *p_first = static_cast<const char *>(bytes);
  m_sock[sock].queue.push_back(Outgoing{std::vector<char>(p_first, p_first + length), frame});
  return 0;
}

int NetworkManager::sendDue() {
  int step = GameManager::getInstance().getStepCount();
  int total = 0;
  std::size_t i = 0;
  while (i < m_sock.size()) {
    int handle = m_sock[i].handle;
    bool gone = false;
    // Messages leave strictly in queue order, so the bytes of a connection
    // arrive in the order they were queued.
    while (!m_sock[i].queue.empty() && m_sock[i].queue.front().frame <= step) {
      std::vector<char> bytes = std::move(m_sock[i].queue.front().bytes);
      m_sock[i].queue.pop_front();
      total += send(bytes.data(), static_cast<int>(bytes.size()), static_cast<int>(i));
      // A broken peer closes the connection inside send: the next one
      // now sits at this index.
      if (i >= m_sock.size() || m_sock[i].handle != handle) {
        gone = true;
        break;
      }
    }
    if (!gone) i++;
  }
  return total;
}

int NetworkManager::receive(void *buffer, int length, int sock, bool peek) {
  LogManager &log = LogManager::getInstance();
  if (!validIndex(sock)) {
    log.writeLog("NetworkManager::receive(): Error! Socket %d not connected. Unable to receive.",
                 sock);
    return -1;
  }
  if (length <= 0 || !buffer) return 0;
  Inbox &inbox = m_sock[sock].inbox;
  if (inbox.size() > 0) {
    int taken = static_cast<int>(std::min(static_cast<std::size_t>(length), inbox.size()));
    std::memcpy(buffer, inbox.data(), static_cast<std::size_t>(taken));
    if (!peek) inbox.take(static_cast<std::size_t>(taken));
    return taken;
  }
  long got = platform::socketReceive(m_sock[sock].handle, buffer, length, peek);
  if (got > 0) return static_cast<int>(got);
  if (got == 0) {
    log.writeLog(1, "NetworkManager::receive(): Peer closed socket %d.", sock);
    close(sock);
    return -1;
  }
  int code = platform::lastSocketError();
  if (platform::socketWouldBlock(code)) return 0;
  log.writeLog("NetworkManager::receive(): Error! recv() on socket %d returned:", sock);
  logSocketError(code);
  if (platform::socketBroken(code)) close(sock);
  return -1;
}

int NetworkManager::close(int sock) {
  LogManager &log = LogManager::getInstance();
  int first = sock, last = sock + 1;
  if (sock == -1) {
    first = 0;
    last = getNumConnections();
  } else if (!validIndex(sock)) {
    log.writeLog("NetworkManager::close(): Error! Socket %d not connected. Unable to close.", sock);
    return -1;
  }
  // Closed entries are marked with handle -1 and removed together at the
  // end, so a handler that closes or sends during its event cannot make this
  // loop lose its place.
  for (int i = first; i < last && i < getNumConnections(); i++) {
    if (m_sock[i].handle == -1) continue;
    if (platform::socketClose(m_sock[i].handle) == -1) {
      int code = platform::lastSocketError();
      log.writeLog("NetworkManager::close(): Error! close() returned:");
      logSocketError(code);
      return -1;
    }
    m_sock[i].handle = -1;
    announce(NETWORK_CLOSE, i);
  }
  m_sock.erase(std::remove_if(m_sock.begin(), m_sock.end(),
                              [](const Connection &c) { return c.handle == -1; }),
               m_sock.end());
  return 0;
}

// ---- messages --------------------------------------------------------------------

int NetworkManager::sendMessage(const std::string &message, int sock, int frame) {
  if (message.size() > static_cast<std::size_t>(MAX_MESSAGE_SIZE)) {
    LogManager::getInstance().writeLog(
        "NetworkManager::sendMessage(): Error! Message of %zu bytes is over the limit of %d.",
        message.size(), MAX_MESSAGE_SIZE);
    return -1;
  }
  std::string framed(LENGTH_BYTES, '\0');
  std::uint32_t length = static_cast<std::uint32_t>(message.size());
  for (int i = 0; i < LENGTH_BYTES; i++) framed[i] = static_cast<char>((length >> (8 * i)) & 0xFF);
  framed += message;
  int size = static_cast<int>(framed.size());
  return frame < 0 ? send(framed.data(), size, sock) : queue(framed.data(), size, sock, frame);
}

int NetworkManager::receiveMessage(std::string *p_message, int sock) {
  LogManager &log = LogManager::getInstance();
  if (!validIndex(sock) || !p_message) {
    log.writeLog(
        "NetworkManager::receiveMessage(): Error! Socket %d not connected. Unable to receive.",
        sock);
    return -1;
  }
  // Take what the socket holds, but never more than one message of the
  // largest size could need.
  bool peer_gone = false;
  char chunk[READ_CHUNK];
  while (m_sock[sock].inbox.size() < static_cast<std::size_t>(LENGTH_BYTES + MAX_MESSAGE_SIZE)) {
    long got = platform::socketReceive(m_sock[sock].handle, chunk, READ_CHUNK, false);
    if (got > 0) {
      m_sock[sock].inbox.bytes.append(chunk, static_cast<std::size_t>(got));
      continue;
    }
    if (got == -1) {
      int code = platform::lastSocketError();
      if (platform::socketWouldBlock(code)) break;
      log.writeLog("NetworkManager::receiveMessage(): Error! recv() on socket %d returned:", sock);
      logSocketError(code);
    } else {
      log.writeLog(1, "NetworkManager::receiveMessage(): Peer closed socket %d.", sock);
    }
    peer_gone = true;
    break;
  }
  Inbox &inbox = m_sock[sock].inbox;
  if (inbox.size() >= static_cast<std::size_t>(LENGTH_BYTES)) {
    std::uint32_t length = readLength(inbox.data());
    if (length > static_cast<std::uint32_t>(MAX_MESSAGE_SIZE)) {
      log.writeLog(
          "NetworkManager::receiveMessage(): Error! Message of %u bytes on socket %d is over "
          "the limit of %d. Closing the connection.",
          length, sock, MAX_MESSAGE_SIZE);
      close(sock);
      return -1;
    }
    if (inbox.size() >= LENGTH_BYTES + length) {
      p_message->assign(inbox.data() + LENGTH_BYTES, length);
      inbox.take(LENGTH_BYTES + length);
      return 1;
    }
  }
  // Whole messages that arrived before the peer left were delivered above.
  if (peer_gone) {
    close(sock);
    return -1;
  }
  return 0;
}

int NetworkManager::poll() {
  int sent = 0;
  for (int i = 0; i < getNumConnections(); i++) {
    int waiting = isData(i);
    if (waiting > 0) {
      announce(NETWORK_DATA, i, waiting);
      sent++;
    }
  }
  return sent;
}

void NetworkManager::announce(int label, int sock, int bytes, const void *p_message) {
  EventNetwork event(label);
  event.setSocketIndex(sock);
  event.setBytes(bytes);
  event.setMessage(p_message);
  onEvent(&event);
}

bool NetworkManager::isMessage(const char *operation, const void *bytes, int length,
                               int sock) const {
  if (length >= 0 && (length == 0 || bytes)) return true;
  LogManager::getInstance().writeLog(
      "NetworkManager::%s(): Error! No message of %d bytes to %s on socket %d.", operation, length,
      operation, sock);
  return false;
}

void NetworkManager::logSocketError(int code) const {
  LogManager::getInstance().writeLog("\t%d - %s", code, platform::socketErrorText(code).c_str());
}

}  // namespace qv
