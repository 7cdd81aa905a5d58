// One manager holds both ends of each connection here: it serves, connects
// to itself and accepts, so what socket 0 sends, socket 1 reads.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "EngineFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "network/EventNetwork.h"
#include "network/NetworkManager.h"
#include "platform/platform.h"
#include "platform/sockets.h"
#include "world/Object.h"

namespace {

using Events = std::vector<std::pair<int, int>>;

// Records every network event as (label, socket index).
class NetListener : public qv::Object {
 public:
  NetListener() { registerInterest(qv::NETWORK_EVENT); }
  int eventHandler(const qv::Event *p_e) override {
    const auto *p_n = static_cast<const qv::EventNetwork *>(p_e);
    events.emplace_back(p_n->getLabel(), p_n->getSocketIndex());
    return 1;
  }
  Events events;
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
    p_listener = new NetListener;
  }
  void TearDown() override {
    EngineFixture::TearDown();
    nm.setMaxConnections(qv::DEFAULT_MAX_CONNECTIONS);
  }

  int acceptOne() {
    return waitFor([this] { return nm.accept() + 1; }) - 1;
  }
  // A connection to the own server: socket n is the end that called, n + 1 the accepted end.
  void pair(int n) {
    ASSERT_EQ(nm.connect("localhost", port), n);
    ASSERT_EQ(acceptOne(), n + 1);
  }
  // The bytes waiting on a socket once at least want have arrived.
  std::string receiveAll(int sock, int want) {
    waitFor([&] { return nm.isData(sock) >= want ? 1 : 0; });
    char buffer[64];
    return std::string(buffer, std::max(nm.receive(buffer, sizeof buffer, sock), 0));
  }
  int receiveMessage(std::string *p_message, int sock, int ms = 1000) {
    return waitFor([&] { return nm.receiveMessage(p_message, sock); }, ms);
  }
  // The network's lines in the log (the default level leaves out its trace).
  std::string netLog() const {
    std::string lines;
    for (const std::string &line : log->messages())
      if (line.find("Network") != std::string::npos || line.rfind("\t", 0) == 0)
        lines += line + "\n";
    return lines;
  }

  qv::NetworkManager &nm = qv::NetworkManager::getInstance();
  std::string port;
  NetListener *p_listener = nullptr;
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
  EXPECT_TRUE(nm.isConnected(1) && nm.isConnected(-1));
  EXPECT_FALSE(nm.isConnected(2));
  // At the maximum the third connection waits, untouched, until it is raised.
  ASSERT_EQ(nm.connect("127.0.0.1", port), 2);
  EXPECT_EQ(nm.accept(), -1);
  EXPECT_EQ(nm.connect("127.0.0.1", port), -1);
  EXPECT_EQ(nm.setMaxConnections(-1), -1);
  EXPECT_EQ(nm.setMaxConnections(4), 0);
  EXPECT_EQ(acceptOne(), 3);
  EXPECT_EQ(p_listener->events, (Events{{3, 0}, {0, 1}, {3, 2}, {0, 3}}));

  // A port already taken is refused with the system's reason.
  ASSERT_EQ(nm.stopServer(), 0);
  EXPECT_EQ(nm.accept(), -2);
  const int blocker = qv::platform::socketListen(port);
  EXPECT_EQ(nm.setServer(port), -1);
  qv::platform::socketClose(blocker);
  EXPECT_EQ(netLog(),
            "NetworkManager::startup(): Warning! NetworkManager already started.\n"
            "NetworkManager::isValid(): Error! NetworkManager does not handle qv-step.\n"
            "EventNetwork::setLabel(): Undefined type (-2).\n"
            "EventNetwork::setLabel(): Undefined type (4).\n"
            "NetworkManager::isConnected(): Warning! Sock less than -1.\n"
            "NetworkManager::setServer(): Error! Already a server on port " +
                port + ".\n" +
                "NetworkManager::connect(): Error! Already at max connections (3), "
                "not connecting.\n"
                "NetworkManager::setMaxConnections(): Error! -1 is negative, keeping "
                "3.\n"
                "NetworkManager::accept(): Error! Not setup as server.\n"
                "NetworkManager::setServer(): Error! Unable to listen on port " +
                port + ":\n\t98 - Address already in use\n");

  // Shut-down closes the connections and the server with the engine.
  ASSERT_EQ(nm.setServer("0"), 0);
  EXPECT_EQ(restartWith("networking:false,\n"), 0);
  EXPECT_FALSE(nm.isStarted() || nm.isServer() || nm.isConnected());
}

TEST_F(NetworkTest, BytesAndMessagesArriveWholeAndInOrderAndHostileLengthsAreRefused) {
  pair(0);
  char buffer[8];
  EXPECT_EQ(nm.receive(buffer, sizeof buffer, 1), 0);  // nothing waiting: no block
  EXPECT_EQ(nm.send("hello, server", 13, 0), 0);
  waitFor([&] { return nm.isData(1) >= 13 ? 1 : 0; });
  EXPECT_EQ(nm.receive(buffer, 5, 1, true), 5);
  EXPECT_EQ(std::string(buffer, 5), "hello");
  EXPECT_EQ(receiveAll(1, 13), "hello, server");
  EXPECT_EQ(nm.send(nullptr, 3, 0), -1);

  // A message that arrives in pieces is only taken once it is whole.
  std::string message;
  EXPECT_EQ(nm.send("\x05\x00\x00\x00"
                    "ab",
                    6, 0),
            0);
  EXPECT_EQ(receiveMessage(&message, 1, 20), 0);
  EXPECT_EQ(nm.isData(1), 6);
  EXPECT_EQ(nm.poll(), 1);
  EXPECT_EQ(nm.send("cde\x00\x00\x00\x00", 7, 0), 0);
  EXPECT_EQ(receiveMessage(&message, 1), 1);
  EXPECT_EQ(message, "abcde");
  EXPECT_EQ(nm.receiveMessage(&message, 1), 1);  // the empty message right behind it
  EXPECT_EQ(message, "");
  // The manager's own framing: a little-endian length, then the bytes.
  EXPECT_EQ(nm.sendMessage("xyz", 0), 0);
  EXPECT_EQ(receiveAll(1, 7), std::string("\x03\x00\x00\x00xyz", 7));
  const std::string big(3000, 'q');
  EXPECT_EQ(nm.sendMessage(big, 1), 0);
  EXPECT_EQ(receiveMessage(&message, 0), 1);
  EXPECT_EQ(message, big);

  // Thousands of small messages, sent in pieces cut through them, while the
  // inbox is taken from its front and compacted behind.
  auto message_for = [](int k) { return std::string(k % 4, static_cast<char>('a' + k % 26)); };
  const int count = 20000;
  std::string stream;
  for (int k = 0; k < count; k++)
    stream += std::string(1, static_cast<char>(k % 4)) + std::string(3, '\0') + message_for(k);
  const std::size_t piece = stream.size() / 4 + 3;
  int received = 0;
  for (std::size_t at = 0; at < stream.size(); at += piece) {
    const std::string bytes = stream.substr(at, piece);
    ASSERT_EQ(nm.send(bytes.data(), static_cast<int>(bytes.size()), 0), 0);
    while (receiveMessage(&message, 1, 200) == 1) ASSERT_EQ(message, message_for(received++));
  }
  EXPECT_EQ(received, count);
  EXPECT_EQ(nm.isData(1), 0);

  // A length claiming 4 GB closes the connection instead of waiting for it.
  EXPECT_EQ(nm.send("\xff\xff\xff\xff", 4, 0), 0);
  EXPECT_EQ(receiveMessage(&message, 1), -1);
  EXPECT_EQ(nm.getNumConnections(), 1);
  EXPECT_EQ(p_listener->events, (Events{{3, 0}, {0, 1}, {1, 1}, {2, 1}}));
  EXPECT_EQ(netLog(),
            "NetworkManager::send(): Error! No message of 3 bytes to send on socket 0.\n"
            "NetworkManager::receiveMessage(): Error! Message of 4294967295 bytes on socket 1 is "
            "over the limit of 16777216. Closing the connection.\n");
}

TEST_F(NetworkTest, QueuedMessageLeavesInItsFrameAndNotBefore) {
  ASSERT_EQ(nm.connect("localhost", port), 0);  // the loop accepts it, as a server's loop does
  ASSERT_EQ(nm.queue("late", 4, 0, 3), 0);
  ASSERT_EQ(nm.sendMessage("x", 0, 3), 0);
  EXPECT_EQ(nm.queue("bad", 3, 1, 0), -1);
  EXPECT_EQ(nm.queue(nullptr, 3, 0, 0), -1);

  // At each step event, what the far end holds is what earlier frames sent.
  struct Watcher : qv::Object {
    std::vector<int> waiting;
    Watcher() { registerInterest(qv::STEP_EVENT); }
    int eventHandler(const qv::Event *) override {
      waiting.push_back(qv::NetworkManager::getInstance().isData(1));
      if (waiting.size() == 6) qv::GameManager::getInstance().setGameOver();
      return 1;
    }
  };
  auto *p_watcher = new Watcher;
  qv::GameManager::getInstance().run();
  EXPECT_EQ(p_watcher->waiting, (std::vector<int>{-1, 0, 0, 0, 9, 9}));
  EXPECT_EQ(p_listener->events, (Events{{3, 0}, {0, 1}}));
  EXPECT_EQ(receiveAll(1, 9), std::string("late\x01\x00\x00\x00x", 9));
  EXPECT_EQ(netLog(),
            "NetworkManager::queue(): Error! Socket 1 not connected. Unable to queue.\n"
            "NetworkManager::queue(): Error! No message of 3 bytes to queue on socket 0.\n");
}

TEST_F(NetworkTest, ConnectionsCloseFromEitherEndAndTheRestAreRenumbered) {
  nm.setMaxConnections(4);
  pair(0);
  pair(2);
  p_listener->events.clear();
  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(nm.send("B", 1, 1), 0);  // old 2 is now 1
  EXPECT_EQ(receiveAll(2, 1), "B");
  char byte;  // the far end of the closed one hears the goodbye
  EXPECT_EQ(waitFor([&] { return nm.receive(&byte, 1, 0); }), -1);
  EXPECT_EQ(nm.send("x", 1, 5), -1);
  EXPECT_EQ(nm.send("x", 1, -2), -1);
  EXPECT_EQ(nm.close(7), -1);

  // Closing with bytes unread resets the connection: the next send from
  // the far end fails and closes.
  EXPECT_EQ(nm.send("x", 1, 1), 0);
  qv::platform::sleepMilliseconds(20);
  EXPECT_EQ(nm.close(0), 0);
  qv::platform::sleepMilliseconds(20);
  EXPECT_EQ(nm.send("x", 1, 0), -1);
  // After an orderly close the first send still goes out (TCP learns of
  // the departure from the reply), the one after it fails.
  pair(0);
  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(waitFor([&] { return nm.send("y", 1, 0); }, 500), -1);
  EXPECT_FALSE(nm.isConnected());
  EXPECT_EQ(p_listener->events,
            (Events{{2, 0}, {2, 0}, {2, 0}, {2, 0}, {3, 0}, {0, 1}, {2, 0}, {2, 0}}));

  ASSERT_EQ(nm.stopServer(), 0);
  EXPECT_EQ(nm.connect("127.0.0.1", "1"), -1);  // nothing listens on port 1
  EXPECT_EQ(netLog(),
            "NetworkManager::send(): Error! Socket 5 not connected. Unable to send.\n"
            "NetworkManager::isConnected(): Warning! Sock less than -1.\n"
            "NetworkManager::send(): Error! Socket -2 not connected. Unable to send.\n"
            "NetworkManager::close(): Error! Socket 7 not connected. Unable to close.\n"
            "NetworkManager::send(): Error! Return is -1.\n"
            "\t104 - Connection reset by peer\n"
            "NetworkManager::send(): Error! Return is -1.\n"
            "\t32 - Broken pipe\n"
            "NetworkManager::connect(): Error! Unable to connect to 127.0.0.1:1:\n"
            "\t111 - Connection refused\n");
}

}  // namespace
