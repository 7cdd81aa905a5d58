// One manager holds both ends of each connection here: it serves, connects
// to itself and accepts, so what socket 0 sends, socket 1 reads.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "EngineFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "network/EventNetwork.h"
#include "network/NetworkManager.h"
#include "platform/platform.h"
#include "platform/sockets.h"
#include "world/Object.h"

namespace {

// Writes down every network event as a letter and the socket (a accept,
// d data, x close, c connect), and at each step | and the bytes socket 1
// holds; ends the game loop after six steps.
class Watcher : public qv::Object {
 public:
  Watcher() {
    registerInterest(qv::NETWORK_EVENT);
    registerInterest(qv::STEP_EVENT);
  }
  int eventHandler(const qv::Event *p_e) override {
    if (const auto *p_n = dynamic_cast<const qv::EventNetwork *>(p_e))
      events += std::string("?adxc").at(p_n->getLabel() + 1) +
                std::to_string(p_n->getSocketIndex()) + " ";
    else
      events += "|" + std::to_string(qv::NetworkManager::getInstance().isData(1)) + " ";
    if (std::count(events.begin(), events.end(), '|') == 6)
      qv::GameManager::getInstance().setGameOver();
    return 1;
  }
  std::string events;
};

// Calls f every millisecond until it answers non-zero or ms have passed; its last answer.
template <typename F>
int waitFor(F f, int ms = 1000) {
  int got = 0;
  for (int waited = 0; waited < ms && got == 0; waited++) {
    got = f();
    if (got == 0) qv::platform::sleepMilliseconds(1);
  }
  return got;
}

class NetworkTest : public qvtest::EngineFixture {
 protected:
  std::string config() const override { return "networking:true,\n" + EngineFixture::config(); }
  void SetUp() override {
    EngineFixture::SetUp();
    ASSERT_EQ(nm.setServer("0"), 0) << log->text();
    port = std::to_string(nm.getPort());
    p_watcher = new Watcher;
  }

  // A connection to the own server: socket n is the end that called, n + 1 the accepted end.
  void pair(int n) {
    ASSERT_EQ(nm.connect("localhost", port), n);
    // accept() answers -1 while nobody waits.
    ASSERT_EQ(waitFor([this] { return nm.accept() + 1; }), n + 2);
  }
  // The bytes waiting on a socket once at least want have arrived.
  std::string receiveAll(int sock, int want, bool peek = false) {
    waitFor([&] { return nm.isData(sock) >= want ? 1 : 0; });
    char buffer[64];
    return std::string(buffer, std::max(nm.receive(buffer, sizeof buffer, sock, peek), 0));
  }
  int receiveMessage(int sock, int ms = 1000) {
    return waitFor([&] { return nm.receiveMessage(&message, sock); }, ms);
  }
  // The log below the start-up banner (the default level leaves out the
  // trace), a tab shown as \t and the server's port as PORT.
  std::string logText() const {
    std::string lines;
    for (std::string line : log->messages()) {
      if (line.rfind("\t", 0) == 0) line.replace(0, 1, "\\t");
      if (line.find(" port " + port) != std::string::npos)
        line.replace(line.find(port), port.size(), "PORT");
      if (line.rfind("**", 0) != 0) lines += line + "\n";
    }
    return lines;
  }

  qv::NetworkManager &nm = qv::NetworkManager::getInstance();
  std::string port, message;
  char byte = 0;  // what a plain read takes
  Watcher *p_watcher = nullptr;
};

TEST_F(NetworkTest, ServesItsEventsAcceptsUpToTheMaximumAndStopsWithTheEngine) {
  EXPECT_EQ(nm.startUp(), -1);
  for (const char *type :
       {"qv-network", "qv-keyboard-network", "qv-mouse-network", "qv-network-create",
        "qv-custom-network", "qv-network-delete", "qv-network-game-over", "qv-network-sync"})
    EXPECT_TRUE(nm.isValid(type)) << type;
  EXPECT_FALSE(nm.isValid("qv-step"));
  for (int label = -2; label <= 4; label++)
    EXPECT_EQ(qv::EventNetwork(label).getLabel(), label > 3 ? -1 : std::max(label, -1));
  EXPECT_FALSE(nm.isConnected(-2) || nm.isConnected());
  EXPECT_EQ(nm.accept(), -1);  // nobody waiting yet
  EXPECT_EQ(nm.setServer("0"), -1);

  pair(0);
  EXPECT_TRUE(nm.isConnected(1) && nm.isConnected(-1) && !nm.isConnected(2));
  // At the maximum the third connection waits, untouched, until it is raised.
  ASSERT_EQ(nm.connect("127.0.0.1", port), 2);
  EXPECT_EQ(nm.accept(), -1);
  EXPECT_EQ(nm.connect("127.0.0.1", port), -1);
  EXPECT_EQ(nm.setMaxConnections(-1), -1);
  EXPECT_EQ(nm.setMaxConnections(4), 0);
  EXPECT_EQ(nm.accept(), 3);
  EXPECT_EQ(p_watcher->events, "c0 a1 c2 a3 ");

  // A port already taken is refused with the system's reason.
  ASSERT_EQ(nm.stopServer(), 0);
  EXPECT_EQ(nm.accept(), -2);
  const int blocker = qv::platform::socketListen(port);
  EXPECT_EQ(nm.setServer(port), -1);
  qv::platform::socketClose(blocker);
  EXPECT_EQ(logText(), R"(NetworkManager::startup(): Warning! NetworkManager already started.
NetworkManager::isValid(): Error! NetworkManager does not handle qv-step.
EventNetwork::setLabel(): Undefined type (-2).
EventNetwork::setLabel(): Undefined type (4).
NetworkManager::isConnected(): Warning! Sock less than -1.
NetworkManager::setServer(): Error! Already a server on port PORT.
NetworkManager::connect(): Error! Already at max connections (3), not connecting.
NetworkManager::setMaxConnections(): Error! -1 is negative, keeping 3.
NetworkManager::accept(): Error! Not setup as server.
NetworkManager::setServer(): Error! Unable to listen on port PORT:
\t98 - Address already in use
)");

  // Shut-down closes the connections and the server with the engine.
  ASSERT_EQ(nm.setServer("0"), 0);
  EXPECT_EQ(restartWith("networking:false,\n"), 0);
  EXPECT_FALSE(nm.isStarted() || nm.isServer() || nm.isConnected());
}

TEST_F(NetworkTest, BytesAndMessagesArriveWholeAndHostileLengthsAreRefused) {
  pair(0);
  EXPECT_EQ(nm.receive(&byte, 1, 1), 0);  // nothing waiting: no block
  EXPECT_EQ(nm.send("hello", 5, 0), 0);
  EXPECT_EQ(receiveAll(1, 5, true), "hello");
  EXPECT_EQ(receiveAll(1, 5), "hello");
  EXPECT_EQ(nm.send(nullptr, 3, 0), -1);

  // A message that arrives in pieces is only taken once it is whole.
  EXPECT_EQ(nm.send("\x05\0\0\0ab", 6, 0), 0);
  EXPECT_EQ(receiveMessage(1, 20), 0);
  EXPECT_EQ(nm.isData(1), 6);
  EXPECT_EQ(nm.poll(), 1);
  EXPECT_EQ(nm.send("cde\0\0\0\0", 7, 0), 0);
  EXPECT_EQ(receiveMessage(1), 1);
  EXPECT_EQ(message, "abcde");
  EXPECT_EQ(nm.receiveMessage(&message, 1), 1);  // the empty message right behind it
  EXPECT_EQ(message, "");
  // The manager's own framing: a little-endian length, then the bytes.
  EXPECT_EQ(nm.sendMessage("xyz", 0), 0);
  EXPECT_EQ(receiveAll(1, 7), std::string("\x03\0\0\0xyz", 7));

  // A length claiming 4 GB closes the connection instead of waiting for it.
  EXPECT_EQ(nm.send("\xff\xff\xff\xff", 4, 0), 0);
  EXPECT_EQ(receiveMessage(1), -1);
  EXPECT_EQ(p_watcher->events, "c0 a1 d1 x1 ");
  EXPECT_EQ(logText(), R"(NetworkManager::send(): Error! No message of 3 bytes to send on socket 0.
NetworkManager::receiveMessage(): Error! Message of 4294967295 bytes on socket 1 is over the limit of 16777216. Closing the connection.
)");
}

TEST_F(NetworkTest, QueuedMessageLeavesInItsFrameAndNotBefore) {
  ASSERT_EQ(nm.connect("localhost", port), 0);  // the loop accepts it, as a server's loop does
  ASSERT_EQ(nm.queue("late", 4, 0, 3), 0);
  ASSERT_EQ(nm.sendMessage("x", 0, 3), 0);
  EXPECT_EQ(nm.queue("bad", 3, 1, 0), -1);
  EXPECT_EQ(nm.queue(nullptr, 3, 0, 0), -1);
  // At each step event, what the far end holds is what earlier frames sent.
  qv::GameManager::getInstance().run();
  EXPECT_EQ(p_watcher->events, "c0 |-1 a1 |0 |0 |0 |9 |9 ");
  EXPECT_EQ(receiveAll(1, 9), std::string("late\x01\0\0\0x", 9));
}

TEST_F(NetworkTest, ConnectionsCloseFromEitherEndAndTheRestAreRenumbered) {
  nm.setMaxConnections(4);
  pair(0);
  pair(2);
  EXPECT_EQ(nm.sendMessage("bye", 0), 0);
  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(nm.send("B", 1, 1), 0);  // old 2 is now 1
  EXPECT_EQ(receiveAll(2, 1), "B");
  // The far end of the closed one takes what was sent before the goodbye, then notices it.
  EXPECT_EQ(receiveMessage(0), 1);
  EXPECT_EQ(message, "bye");
  EXPECT_EQ(waitFor([&] { return nm.receive(&byte, 1, 0); }), -1);
  EXPECT_EQ(nm.send("x", 1, 5), -1);
  EXPECT_EQ(nm.close(7), -1);

  // Closing with bytes unread resets the connection: the next send from
  // the far end fails and closes.
  EXPECT_EQ(nm.send("x", 1, 1), 0);
  EXPECT_EQ(receiveAll(0, 1, true), "x");
  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(waitFor([&] { return nm.send("x", 1, 0); }), -1);
  // After an orderly close the first send still goes out (TCP learns of
  // the departure from the reply), the one after it fails.
  pair(0);
  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(waitFor([&] { return nm.send("y", 1, 0); }, 500), -1);
  EXPECT_EQ(p_watcher->events, "c0 a1 c2 a3 x0 x0 x0 x0 c0 a1 x0 x0 ");
  EXPECT_EQ(nm.connect("127.0.0.1", "1"), -1);  // nothing listens on port 1
  EXPECT_EQ(logText(), R"(NetworkManager::send(): Error! Socket 5 not connected. Unable to send.
NetworkManager::close(): Error! Socket 7 not connected. Unable to close.
NetworkManager::send(): Error! Return is -1.
\t104 - Connection reset by peer
NetworkManager::send(): Error! Return is -1.
\t32 - Broken pipe
NetworkManager::connect(): Error! Unable to connect to 127.0.0.1:1:
\t111 - Connection refused
)");
}

}  // namespace
