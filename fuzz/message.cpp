// Bytes from a peer over a loopback connection, drained as framed messages.
// The first byte splits the input into two sends with a drain between, so
// messages also arrive in pieces. Every message received is sent back
// framed and must arrive unchanged.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzEngine.h"
#include "core/LogManager.h"
#include "network/NetworkManager.h"

namespace {

qv::NetworkManager &network() {
  return qv::NetworkManager::getInstance();
}

void check(bool condition, const char *what) {
  if (condition) return;
  std::fprintf(stderr, "fuzz message: %s\n", what);
  std::abort();
}

// Messages waiting on the receiving connection, each echoed to the sender.
void drain(int receiver, int sender) {
  std::string message;
  while (network().isConnected(receiver) && network().receiveMessage(&message, receiver) == 1) {
    check(network().sendMessage(message, receiver) == 0, "echo not sent");
    std::string echo;
    check(network().receiveMessage(&echo, sender) == 1, "echo not received");
    check(echo == message, "echo differs");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const std::string port = [] {
    setenv("QUORVELLE_LOG", "/dev/null", 1);
    qv::LogManager::getInstance().startUp();
    network().startUp();
    network().setMaxConnections(2);
    check(network().setServer("0") == 0, "no server");
    return std::to_string(network().getPort());
  }();
  const int sender = network().connect("127.0.0.1", port, 1000);
  check(sender == 0, "no connection");
  int receiver = -1;
  for (int tries = 0; tries < 100 && receiver < 0; tries++) receiver = network().accept();
  check(receiver == 1, "connection not accepted");

  const std::size_t split = size > 0 ? data[0] % (size + 1) : 0;
  if (split > 0) network().send(data, static_cast<int>(split), sender);
  drain(receiver, sender);
  if (size > split) network().send(data + split, static_cast<int>(size - split), sender);
  drain(receiver, sender);
  char rest[256];
  while (network().isConnected(receiver) && network().receive(rest, sizeof rest, receiver) > 0) {
  }
  network().close(-1);
  return 0;
}
