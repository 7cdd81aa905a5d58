#include "platform/sockets.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace qv {
namespace platform {

namespace {

int makeNonBlocking(int sock) {
  int flags = fcntl(sock, F_GETFL, 0);
  if (flags == -1 || fcntl(sock, F_SETFL, flags | O_NONBLOCK) == -1) return -1;
  return 0;
}

// Closes sock without disturbing errno, so the caller still sees why the
// call that made it useless failed.
int abandon(int sock) {
  int saved = errno;
  ::close(sock);
  errno = saved;
  return -1;
}

struct AddressList {
  addrinfo *p_first = nullptr;
  ~AddressList() {
    if (p_first) freeaddrinfo(p_first);
  }
};

int resolve(const char *host, const std::string &port, int flags, AddressList &list) {
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_protocol = IPPROTO_TCP;
  hints.ai_flags = flags;
  int result = getaddrinfo(host, port.c_str(), &hints, &list.p_first);
  if (result != 0) {
    // Name lookup failures have no errno of their own.
    errno = (result == EAI_SYSTEM) ? errno : EINVAL;
    return -1;
  }
  return 0;
}

int connectOne(const addrinfo *p_a, int timeout_ms) {
  int sock = ::socket(p_a->ai_family, p_a->ai_socktype, p_a->ai_protocol);
  if (sock == -1) return -1;
  if (makeNonBlocking(sock) == -1) return abandon(sock);
  if (::connect(sock, p_a->ai_addr, p_a->ai_addrlen) == 0) return sock;
  if (errno != EINPROGRESS) return abandon(sock);
  pollfd waiting{sock, POLLOUT, 0};
  int ready;
  do {
    ready = ::poll(&waiting, 1, timeout_ms);
  } while (ready == -1 && errno == EINTR);
  if (ready == 0) errno = ETIMEDOUT;
  if (ready <= 0) return abandon(sock);
  int error = 0;
  socklen_t size = sizeof(error);
  if (getsockopt(sock, SOL_SOCKET, SO_ERROR, &error, &size) == -1) return abandon(sock);
  if (error != 0) {
    errno = error;
    return abandon(sock);
  }
  return sock;
}

}  // namespace

int socketListen(const std::string &port) {
  AddressList list;
  if (resolve(nullptr, port, AI_PASSIVE, list) == -1) return -1;
  int last_error = EADDRNOTAVAIL;
  for (addrinfo *p_a = list.p_first; p_a; p_a = p_a->ai_next) {
    int sock = ::socket(p_a->ai_family, p_a->ai_socktype, p_a->ai_protocol);
    if (sock == -1) {
      last_error = errno;
      continue;
    }
    // A restarted server must not wait for the old port to time out.
    int on = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
    if (::bind(sock, p_a->ai_addr, p_a->ai_addrlen) == 0 && ::listen(sock, SOMAXCONN) == 0 &&
        makeNonBlocking(sock) == 0)
      return sock;
    last_error = errno;
    ::close(sock);
  }
  errno = last_error;
  return -1;
}

int socketAccept(int server) {
  int sock;
  do {
    sock = ::accept(server, nullptr, nullptr);
  } while (sock == -1 && errno == EINTR);
  if (sock == -1) return -1;
  // Accepted sockets do not inherit non-blocking mode on every system.
  if (makeNonBlocking(sock) == -1) return abandon(sock);
  return sock;
}

int socketConnect(const std::string &host, const std::string &port, int timeout_ms) {
  AddressList list;
  if (resolve(host.c_str(), port, 0, list) == -1) return -1;
  int last_error = EADDRNOTAVAIL;
  for (addrinfo *p_a = list.p_first; p_a; p_a = p_a->ai_next) {
    int sock = connectOne(p_a, timeout_ms);
    if (sock != -1) return sock;
    last_error = errno;
  }
  errno = last_error;
  return -1;
}

long socketSend(int sock, const void *bytes, long length) {
  long sent;
  do {
    sent = ::send(sock, bytes, static_cast<size_t>(length), MSG_NOSIGNAL);
  } while (sent == -1 && errno == EINTR);
  return sent;
}

long socketReceive(int sock, void *buffer, long length, bool peek) {
  long got;
  do {
    got = ::recv(sock, buffer, static_cast<size_t>(length), MSG_DONTWAIT | (peek ? MSG_PEEK : 0));
  } while (got == -1 && errno == EINTR);
  return got;
}

int socketAvailable(int sock) {
  int waiting = 0;
  if (ioctl(sock, FIONREAD, &waiting) == -1) return -1;
  return waiting;
}

int socketClose(int sock) {
  return ::close(sock);
}

int socketPort(int sock) {
  sockaddr_storage address{};
  socklen_t size = sizeof(address);
  if (getsockname(sock, reinterpret_cast<sockaddr *>(&address), &size) == -1) return -1;
  char port[NI_MAXSERV];
  if (getnameinfo(reinterpret_cast<sockaddr *>(&address), size, nullptr, 0, port, sizeof(port),
                  NI_NUMERICSERV) != 0)
    return -1;
  return std::atoi(port);
}

int lastSocketError() {
  return errno;
}

bool socketWouldBlock(int code) {
  return code == EAGAIN || code == EWOULDBLOCK;
}

bool socketBroken(int code) {
  return code == ENOTCONN || code == EBADF || code == EPIPE || code == ECONNRESET;
}

std::string socketErrorText(int code) {
  std::string text = std::strerror(code);
  std::size_t cut = text.find_first_of("\r\n");
  if (cut != std::string::npos) text.erase(cut);
  return text;
}

}  // namespace platform
}  // namespace qv
