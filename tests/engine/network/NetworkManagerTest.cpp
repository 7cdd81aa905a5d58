#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "EngineFixture.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/TextBox.h"
#include "network/EventNetwork.h"
#include "network/NetworkManager.h"
#include "platform/platform.h"
#include "platform/sockets.h"
#include "world/Object.h"

namespace {

using qv::NetworkManager;
using Events = std::vector<std::pair<int, int>>;

// Records every network event as (label, socket index).
class NetListener : public qv::Object {
 public:
  NetListener() { registerInterest(qv::NETWORK_EVENT); }
  int eventHandler(const qv::Event *p_e) override {
    const auto *p_n = dynamic_cast<const qv::EventNetwork *>(p_e);
    if (p_n) events.emplace_back(p_n->getLabel(), p_n->getSocketIndex());
    return p_n ? 1 : 0;
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

// The far end of a connection, outside the network manager.
class RawClient {
 public:
  explicit RawClient(int port)
      : m_sock(qv::platform::socketConnect("127.0.0.1", std::to_string(port), 2000)) {}
  ~RawClient() { close(); }
  void close() {
    if (m_sock != -1) ::close(m_sock);
    m_sock = -1;
  }
  // Closes with a reset instead of the orderly goodbye.
  void abort() {
    linger hard{1, 0};
    setsockopt(m_sock, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    close();
  }
  void write(const std::string &bytes) {
    ASSERT_EQ(qv::platform::socketSend(m_sock, bytes.data(), static_cast<long>(bytes.size())),
              static_cast<long>(bytes.size()));
  }
  // Everything that arrives within ms milliseconds, or up to want bytes.
  std::string read(std::size_t want, int ms = 1000) {
    std::string got;
    char chunk[4096];
    waitFor(
        [&] {
          long n = qv::platform::socketReceive(m_sock, chunk, sizeof chunk, false);
          if (n > 0) got.append(chunk, n);
          return got.size() >= want ? 1 : 0;
        },
        ms);
    return got;
  }
  int waiting() const { return qv::platform::socketAvailable(m_sock); }

 private:
  int m_sock;
};

class NetworkTest : public qvtest::EngineFixture {
 protected:
  std::string config() const override { return "networking:true,\n" + EngineFixture::config(); }

  void TearDown() override {
    clients.clear();
    EngineFixture::TearDown();
    nm.setMaxConnections(qv::DEFAULT_MAX_CONNECTIONS);
  }

  // Listens on a free port and accepts n raw clients as sockets 0 to n - 1.
  void serve(int n) {
    ASSERT_EQ(nm.setServer("0"), 0) << log->text();
    for (int i = 0; i < n; i++) {
      clients.push_back(std::make_unique<RawClient>(nm.getPort()));
      ASSERT_EQ(acceptOne(), i);
    }
  }
  int acceptOne() {
    return waitFor([this] { return nm.accept() + 1; }) - 1;
  }
  int receiveMessage(std::string *p_message, int sock) {
    return waitFor([&] { return nm.receiveMessage(p_message, sock); });
  }

  NetworkManager &nm = NetworkManager::getInstance();
  std::vector<std::unique_ptr<RawClient>> clients;
};

TEST(EventNetworkTest, LabelsOutsideTheKnownRangeBecomeUndefined) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  qv::EventNetwork event(7);
  EXPECT_EQ(event.getLabel(), -1);
  event.setLabel(-2);
  EXPECT_EQ(event.getLabel(), -1);
  for (int label = -1; label <= 3; label++) EXPECT_EQ(qv::EventNetwork(label).getLabel(), label);
  EXPECT_EQ(log.messages(),
            (std::vector<std::string>{"EventNetwork::setLabel(): Undefined type (7).",
                                      "EventNetwork::setLabel(): Undefined type (-2)."}));
  EXPECT_EQ(event.getType(), "qv-network");
}

TEST_F(NetworkTest, ServesItsTypesAcceptsUpToTheMaximumAndStopsWithTheEngine) {
  EXPECT_EQ(nm.startUp(), -1);
  EXPECT_TRUE(log->contains("NetworkManager::startup(): Warning! NetworkManager already started."));
  for (const char *type :
       {"qv-network", "qv-keyboard-network", "qv-mouse-network", "qv-network-create",
        "qv-custom-network", "qv-network-delete", "qv-network-game-over", "qv-network-sync"})
    EXPECT_TRUE(nm.isValid(type)) << type;
  EXPECT_FALSE(nm.isValid("qv-step"));
  EXPECT_TRUE(
      log->contains("NetworkManager::isValid(): Error! NetworkManager does not handle qv-step."));
  EXPECT_EQ(nm.accept(), -2);
  EXPECT_EQ(nm.accept(), -2);
  EXPECT_EQ(log->count("NetworkManager::accept(): Error! Not setup as server."), 2);
  EXPECT_FALSE(nm.isConnected());
  EXPECT_FALSE(nm.isConnected(0));
  EXPECT_FALSE(nm.isConnected(-2));
  EXPECT_TRUE(log->contains("NetworkManager::isConnected(): Warning! Sock less than -1."));

  auto *p_listener = new NetListener;
  serve(0);
  EXPECT_EQ(nm.setServer("0"), -1);
  EXPECT_TRUE(nm.isServer());
  EXPECT_EQ(nm.accept(), -1);  // nobody waiting yet
  RawClient a(nm.getPort()), b(nm.getPort()), c(nm.getPort()), d(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  EXPECT_EQ(p_listener->events, (Events{{0, 0}}));
  EXPECT_TRUE(nm.isConnected(0));
  EXPECT_TRUE(nm.isConnected(-1));
  EXPECT_FALSE(nm.isConnected(1));
  ASSERT_EQ(acceptOne(), 1);
  ASSERT_EQ(acceptOne(), 2);
  // At the maximum the fourth client waits, untouched, until it is raised.
  EXPECT_EQ(nm.accept(), -1);
  EXPECT_EQ(nm.connect("127.0.0.1", std::to_string(nm.getPort())), -1);
  EXPECT_EQ(nm.setMaxConnections(-1), -1);
  EXPECT_EQ(nm.getMaxConnections(), 3);
  EXPECT_EQ(nm.setMaxConnections(4), 0);
  EXPECT_EQ(acceptOne(), 3);
  EXPECT_EQ(nm.getNumConnections(), 4);

  // A port already taken is refused with the system's reason.
  int port = nm.getPort();
  ASSERT_EQ(nm.stopServer(), 0);
  int blocker = qv::platform::socketListen(std::to_string(port));
  ASSERT_NE(blocker, -1);
  EXPECT_EQ(nm.setServer(std::to_string(port)), -1);
  EXPECT_TRUE(log->contains("NetworkManager::setServer(): Error! Unable to listen on port " +
                            std::to_string(port) + ":"));
  EXPECT_TRUE(log->contains("\t98 - Address already in use"));
  qv::platform::socketClose(blocker);

  // Shut-down closes the connections and the server with the engine.
  ASSERT_EQ(nm.setServer("0"), 0);
  EXPECT_EQ(restartWith("networking:false,\n"), 0);
  EXPECT_FALSE(nm.isStarted());
  EXPECT_FALSE(nm.isServer());
  EXPECT_FALSE(nm.isConnected());
}

TEST_F(NetworkTest, BytesAndMessagesArriveIntactAndHostileLengthsAreRefused) {
  serve(1);
  RawClient &client = *clients[0];
  std::string out;
  for (int i = 0; i < 3000; i++) out += static_cast<char>(i * 7 + 3);
  EXPECT_EQ(nm.send(out.data(), static_cast<int>(out.size()), 0), 0);
  EXPECT_EQ(client.read(out.size()), out);
  EXPECT_EQ(nm.send(nullptr, 3, 0), -1);
  EXPECT_TRUE(
      log->contains("NetworkManager::send(): Error! No message of 3 bytes to send on socket 0."));
  EXPECT_TRUE(nm.isConnected(0));

  char buffer[64];
  EXPECT_EQ(nm.receive(buffer, sizeof buffer, 0), 0);  // nothing waiting: no block
  client.write("hello, server");
  waitFor([&] { return nm.isData(0) >= 13 ? 1 : 0; });
  EXPECT_EQ(nm.receive(buffer, 5, 0, true), 5);
  EXPECT_EQ(std::string(buffer, 5), "hello");
  EXPECT_EQ(nm.receive(buffer, sizeof buffer, 0), 13);
  EXPECT_EQ(std::string(buffer, 13), "hello, server");

  // A message that arrives in pieces is only taken once it is whole.
  auto *p_listener = new NetListener;
  std::string message;
  client.write(std::string("\x05\x00\x00\x00", 4) + "ab");
  for (int i = 0; i < 20; i++) EXPECT_EQ(nm.receiveMessage(&message, 0), 0);
  EXPECT_EQ(nm.isData(0), 6);
  EXPECT_EQ(nm.poll(), 1);
  EXPECT_EQ(p_listener->events.back(), std::make_pair(1, 0));
  client.write(std::string("cde") + std::string("\x00\x00\x00\x00", 4));
  EXPECT_EQ(receiveMessage(&message, 0), 1);
  EXPECT_EQ(message, "abcde");
  EXPECT_EQ(nm.receiveMessage(&message, 0), 1);  // the empty message right behind it
  EXPECT_EQ(message, "");

  // And the manager's own framing is what the far end reads.
  EXPECT_EQ(nm.sendMessage("xyz", 0), 0);
  EXPECT_EQ(client.read(7), std::string("\x03\x00\x00\x00xyz", 7));

  // A length claiming 4 GB closes the connection instead of waiting for it.
  client.write("\xff\xff\xff\xff");
  EXPECT_EQ(receiveMessage(&message, 0), -1);
  EXPECT_FALSE(nm.isConnected());
  EXPECT_TRUE(
      log->contains("NetworkManager::receiveMessage(): Error! Message of 4294967295 bytes on "
                    "socket 0 is over the limit of 16777216. Closing the connection."));
  EXPECT_EQ(p_listener->events.back(), std::make_pair(2, 0));
}

// Thousands of small messages waiting at once, arriving in pieces cut
// anywhere: each is taken whole and in order while the inbox is taken from
// its front and compacted behind (bench/HostileInputBench.cpp times it).
TEST_F(NetworkTest, ManyWaitingMessagesDrainWholeAndInOrder) {
  serve(1);
  RawClient &client = *clients[0];
  auto message_for = [](int k) { return std::string(k % 4, static_cast<char>('a' + k % 26)); };
  const int count = 20000;
  std::string stream;
  for (int k = 0; k < count; k++)
    stream += std::string(1, static_cast<char>(k % 4)) + std::string(3, '\0') + message_for(k);
  const std::size_t piece = stream.size() / 4 + 3;  // cuts through messages
  int received = 0;
  std::string message;
  for (std::size_t at = 0; at < stream.size(); at += piece) {
    client.write(stream.substr(at, piece));
    for (int idle = 0; idle < 200;) {
      int got = nm.receiveMessage(&message, 0);
      ASSERT_NE(got, -1);
      if (got == 0) {
        idle++;
        qv::platform::sleepMilliseconds(1);
        continue;
      }
      ASSERT_EQ(message, message_for(received)) << "message " << received;
      received++;
      idle = 0;
    }
  }
  EXPECT_EQ(received, count);
  EXPECT_EQ(nm.isData(0), 0);
}

TEST_F(NetworkTest, QueuedMessageLeavesInItsFrameAndNotBefore) {
  serve(1);
  ASSERT_EQ(nm.queue("late", 4, 0, 3), 0);
  ASSERT_EQ(nm.sendMessage("x", 0, 3), 0);
  EXPECT_EQ(nm.queue("bad", 3, 1, 0), -1);
  EXPECT_EQ(nm.queue(nullptr, 3, 0, 0), -1);

  // At each step event, what the client holds is what earlier frames sent.
  struct Watcher : qv::Object {
    RawClient *p_client;
    std::vector<int> waiting;
    explicit Watcher(RawClient *p_c) : p_client(p_c) { registerInterest(qv::STEP_EVENT); }
    int eventHandler(const qv::Event *) override {
      waiting.push_back(p_client->waiting());
      if (waiting.size() == 6) qv::GameManager::getInstance().setGameOver();
      return 1;
    }
  };
  auto *p_watcher = new Watcher(clients[0].get());
  auto *p_listener = new NetListener;
  RawClient newcomer(nm.getPort());  // the loop accepts it, as a server's loop does
  qv::GameManager::getInstance().run();
  EXPECT_EQ(p_watcher->waiting, (std::vector<int>{0, 0, 0, 0, 9, 9}));
  EXPECT_EQ(nm.getNumConnections(), 2);
  EXPECT_EQ(p_listener->events, (Events{{0, 1}}));
  EXPECT_EQ(clients[0]->read(9), std::string("late\x01\x00\x00\x00x", 9));
}

TEST_F(NetworkTest, ClosingRenumbersAndTellsTheListeners) {
  serve(3);
  auto *p_listener = new NetListener;
  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(p_listener->events, (Events{{2, 0}}));
  EXPECT_EQ(nm.getNumConnections(), 2);
  EXPECT_EQ(nm.send("B", 1, 0), 0);  // old 1 is now 0
  EXPECT_EQ(nm.send("C", 1, 1), 0);
  EXPECT_EQ(clients[1]->read(1), "B");
  EXPECT_EQ(clients[2]->read(1), "C");
  EXPECT_EQ(clients[0]->read(1, 50), "");  // the closed one hears the goodbye, no data

  for (int sock : {5, -2}) {
    EXPECT_EQ(nm.send("x", 1, sock), -1);
    EXPECT_TRUE(log->contains("NetworkManager::send(): Error! Socket " + std::to_string(sock) +
                              " not connected. Unable to send."));
  }
  EXPECT_EQ(nm.close(7), -1);
  p_listener->events.clear();
  EXPECT_EQ(nm.close(-1), 0);
  EXPECT_EQ(p_listener->events, (Events{{2, 0}, {2, 1}}));
  EXPECT_FALSE(nm.isConnected());
}

TEST_F(NetworkTest, ADepartedPeerIsNoticedOnSend) {
  serve(2);
  auto *p_listener = new NetListener;
  // A reset arrives before the next send, which fails and closes.
  clients[0]->abort();
  qv::platform::sleepMilliseconds(20);
  EXPECT_EQ(nm.send("x", 1, 0), -1);
  EXPECT_TRUE(log->contains("NetworkManager::send(): Error! Return is -1."));
  EXPECT_EQ(p_listener->events, (Events{{2, 0}}));
  EXPECT_EQ(nm.getNumConnections(), 1);

  // After an orderly close the first send still goes out (TCP learns of
  // the departure from the reply), the one after it fails.
  clients[1]->close();
  EXPECT_EQ(waitFor([&] { return nm.send("y", 1, 0); }, 500), -1);
  EXPECT_FALSE(nm.isConnected());
  EXPECT_EQ(p_listener->events.size(), 2u);
}

TEST_F(NetworkTest, ReceiveNoticesTheGoodbyeAndConnectFindsTheServer) {
  serve(0);
  auto *p_listener = new NetListener;
  ASSERT_EQ(nm.connect("localhost", std::to_string(nm.getPort())), 0);
  ASSERT_EQ(acceptOne(), 1);
  EXPECT_EQ(p_listener->events, (Events{{3, 0}, {0, 1}}));

  // One manager holds both ends here: what 0 sends, 1 reads.
  EXPECT_EQ(nm.sendMessage("ping", 0), 0);
  std::string message;
  receiveMessage(&message, 1);
  EXPECT_EQ(message, "ping");
  // An object's record crosses intact: the copy rebuilt from it writes the same record.
  qv::TextBox *p_box = new qv::TextBox;
  p_box->setType("Hero");
  p_box->setPosition(qv::Vector(12, 7));
  p_box->setVelocity(qv::Vector(0.5f, 0));
  p_box->setSolidness(qv::SPECTRAL);
  p_box->registerInterest("playerturn");
  p_box->setText("Warrior\nHP 12");
  p_box->setLocation(qv::BOTTOM_RIGHT);
  p_box->setValue(42);
  std::stringstream record, echo;
  ASSERT_EQ(p_box->serialize(&record, 0x3FFFFF), 0);
  EXPECT_EQ(nm.sendMessage(record.str(), 1), 0);
  EXPECT_EQ(receiveMessage(&message, 0), 1);
  std::stringstream in(message);
  qv::TextBox *p_copy = new qv::TextBox;
  EXPECT_EQ(p_copy->deserialize(&in), 0);
  p_copy->serialize(&echo, 0x3FFFFF);
  EXPECT_EQ(echo.str(), record.str());

  EXPECT_EQ(nm.close(0), 0);
  char buffer[8];
  EXPECT_EQ(waitFor([&] { return nm.receive(buffer, sizeof buffer, 0); }), -1);
  EXPECT_FALSE(nm.isConnected());

  EXPECT_EQ(nm.stopServer(), 0);
  EXPECT_EQ(nm.connect("127.0.0.1", "1"), -1);  // nothing listens on port 1
  EXPECT_TRUE(log->contains("NetworkManager::connect(): Error! Unable to connect to 127.0.0.1:1:"));
  EXPECT_TRUE(log->contains("\t111 - Connection refused"));
}

}  // namespace
