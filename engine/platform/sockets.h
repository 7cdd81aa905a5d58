#ifndef QV_SOCKETS_H
#define QV_SOCKETS_H

#include <string>

// TCP sockets for the network manager. Every handle made here is
// non-blocking. Failing calls return -1 and leave the reason in errno, which
// the caller reads with lastSocketError() before anything else can touch it.
namespace qv {
namespace platform {

// A listening socket on every local address at port ("0" picks a free one).
int socketListen(const std::string &port);
// The next waiting connection, or -1 (EAGAIN when none is waiting).
int socketAccept(int server);
// Connects to host:port, waiting at most timeout_ms for the handshake.
int socketConnect(const std::string &host, const std::string &port, int timeout_ms);
// Bytes sent (possibly fewer than length) or -1. A broken peer gives EPIPE,
// never the SIGPIPE signal.
long socketSend(int sock, const void *bytes, long length);
// Bytes received, 0 when the peer has closed, -1 (EAGAIN when none waiting).
long socketReceive(int sock, void *buffer, long length, bool peek);
// Bytes waiting to be read, or -1.
int socketAvailable(int sock);
int socketClose(int sock);
// The local port a socket is bound to, or -1.
int socketPort(int sock);

int lastSocketError();
// True for the codes that only mean "nothing to do right now".
bool socketWouldBlock(int code);
// True for the codes that mean the connection is gone.
bool socketBroken(int code);
// The system's text for an error code.
std::string socketErrorText(int code);

}  // namespace platform
}  // namespace qv

#endif
