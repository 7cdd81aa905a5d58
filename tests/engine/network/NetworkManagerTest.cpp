#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "EngineFixture.h"
#include "TempDir.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/TextBox.h"
#include "network/EventNetwork.h"
#include "network/NetworkManager.h"
#include "platform/platform.h"
#include "platform/sockets.h"
#include "world/Object.h"
#include "world/WorldManager.h"

namespace {

using qv::NetworkManager;

// Records every network event as (label, socket index).
class NetListener : public qv::Object {
 public:
  NetListener() { registerInterest(qv::NETWORK_EVENT); }
  int eventHandler(const qv::Event *p_e) override {
    const auto *p_n = dynamic_cast<const qv::EventNetwork *>(p_e);
    if (!p_n) return 0;
    events.emplace_back(p_n->getLabel(), p_n->getSocketIndex());
    return 1;
  }
  std::vector<std::pair<int, int>> events;
};

// The far end of a connection, outside the network manager.
class RawClient {
 public:
  explicit RawClient(int port)
      : m_sock(qv::platform::socketConnect("127.0.0.1", std::to_string(port), 2000)) {}
  ~RawClient() { close(); }
  bool ok() const { return m_sock != -1; }
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
    for (int waited = 0; got.size() < want && waited < ms; waited++) {
      long n = qv::platform::socketReceive(m_sock, chunk, sizeof chunk, false);
      if (n > 0)
        got.append(chunk, n);
      else
        qv::platform::sleepMilliseconds(1);
    }
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
    EngineFixture::TearDown();
    nm.setMaxConnections(qv::DEFAULT_MAX_CONNECTIONS);
  }

  NetworkManager &nm = NetworkManager::getInstance();

  void listen() {
    ASSERT_EQ(nm.setServer("0"), 0) << log->text();
    ASSERT_GT(nm.getPort(), 0);
  }
  // accept() until a waiting connection is taken or a second has passed.
  int acceptOne() {
    for (int tries = 0; tries < 1000; tries++) {
      int sock = nm.accept();
      if (sock != -1) return sock;
      qv::platform::sleepMilliseconds(1);
    }
    return -1;
  }
};

std::string pattern(int n) {
  std::string bytes;
  for (int i = 0; i < n; i++) bytes += static_cast<char>(i * 7 + 3);
  return bytes;
}

TEST(EventNetworkTest, LabelsOutsideTheKnownRangeBecomeUndefined) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  qv::EventNetwork event(7);
  EXPECT_EQ(event.getLabel(), -1);
  EXPECT_TRUE(log.contains("EventNetwork::setLabel(): Undefined type (7)."));
  event.setLabel(-2);
  EXPECT_EQ(event.getLabel(), -1);
  EXPECT_TRUE(log.contains("EventNetwork::setLabel(): Undefined type (-2)."));
  for (int label = -1; label <= 3; label++) EXPECT_EQ(qv::EventNetwork(label).getLabel(), label);
  EXPECT_EQ(log.messages().size(), 2u);

  qv::EventNetwork fresh(0);
  EXPECT_EQ(fresh.getType(), "qv-network");
  EXPECT_EQ(fresh.getSocketIndex(), -1);
  EXPECT_EQ(fresh.getBytes(), 0);
  EXPECT_EQ(fresh.getMessage(), nullptr);
}

TEST_F(NetworkTest, StartedOnlyWithNetworkingAndServesTheNetworkTypes) {
  EXPECT_TRUE(nm.isStarted());
  EXPECT_EQ(nm.startUp(), -1);
  EXPECT_TRUE(log->contains("NetworkManager::startup(): Warning! NetworkManager already started."));
  for (const char *type :
       {"qv-network", "qv-keyboard-network", "qv-mouse-network", "qv-network-create",
        "qv-custom-network", "qv-network-delete", "qv-network-game-over", "qv-network-sync"})
    EXPECT_TRUE(nm.isValid(type)) << type;
  EXPECT_FALSE(nm.isValid("qv-step"));
  EXPECT_TRUE(
      log->contains("NetworkManager::isValid(): Error! NetworkManager does not handle qv-step."));

  // Shut-down closes the connections and the server with the engine.
  listen();
  RawClient client(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  EXPECT_EQ(restartWith("networking:false,\n"), 0);
  EXPECT_FALSE(nm.isStarted());
  EXPECT_FALSE(nm.isServer());
  EXPECT_FALSE(nm.isConnected());
}

TEST_F(NetworkTest, AcceptsAClientAndAnnouncesItsIndex) {
  EXPECT_EQ(nm.accept(), -2);
  EXPECT_EQ(nm.accept(), -2);
  EXPECT_EQ(log->count("NetworkManager::accept(): Error! Not setup as server."), 2);

  auto *p_listener = new NetListener;
  listen();
  EXPECT_EQ(nm.setServer("0"), -1);
  EXPECT_TRUE(nm.isServer());
  EXPECT_EQ(nm.accept(), -1);  // nobody waiting yet

  RawClient client(nm.getPort());
  ASSERT_TRUE(client.ok());
  EXPECT_EQ(acceptOne(), 0);
  ASSERT_EQ(p_listener->events.size(), 1u);
  EXPECT_EQ(p_listener->events[0], std::make_pair(0, 0));

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
}

TEST_F(NetworkTest, BytesArriveIntactBothWays) {
  listen();
  RawClient client(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);

  const std::string out = pattern(3000);
  EXPECT_EQ(nm.send(out.data(), static_cast<int>(out.size()), 0), 0);
  EXPECT_EQ(client.read(out.size()), out);
  EXPECT_EQ(nm.send(nullptr, 3, 0), -1);
  EXPECT_TRUE(
      log->contains("NetworkManager::send(): Error! No message of 3 bytes to send on socket 0."));
  EXPECT_TRUE(nm.isConnected(0));

  char buffer[64];
  EXPECT_EQ(nm.receive(buffer, sizeof buffer, 0), 0);  // nothing waiting: no block
  client.write("hello, server");
  while (nm.isData(0) < 13) qv::platform::sleepMilliseconds(1);
  EXPECT_EQ(nm.receive(buffer, 5, 0, true), 5);
  EXPECT_EQ(std::string(buffer, 5), "hello");
  EXPECT_EQ(nm.receive(buffer, sizeof buffer, 0), 13);
  EXPECT_EQ(std::string(buffer, 13), "hello, server");
}

TEST_F(NetworkTest, MessagesKeepTheirBoundariesAndHostileLengthsAreRefused) {
  listen();
  RawClient client(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  auto *p_listener = new NetListener;

  // A message that arrives in pieces is only taken once it is whole.
  std::string message;
  client.write(std::string("\x05\x00\x00\x00", 4) + "ab");
  for (int i = 0; i < 20; i++) EXPECT_EQ(nm.receiveMessage(&message, 0), 0);
  EXPECT_EQ(nm.isData(0), 6);
  EXPECT_EQ(nm.poll(), 1);
  EXPECT_EQ(p_listener->events.back(), std::make_pair(1, 0));
  client.write(std::string("cde") + std::string("\x00\x00\x00\x00", 4));
  int got = 0;
  for (int i = 0; i < 1000 && got == 0; i++, qv::platform::sleepMilliseconds(1))
    got = nm.receiveMessage(&message, 0);
  EXPECT_EQ(got, 1);
  EXPECT_EQ(message, "abcde");
  EXPECT_EQ(nm.receiveMessage(&message, 0), 1);  // the empty message right behind it
  EXPECT_EQ(message, "");

  // And the manager's own framing is what the far end reads.
  EXPECT_EQ(nm.sendMessage("xyz", 0), 0);
  EXPECT_EQ(client.read(7), std::string("\x03\x00\x00\x00xyz", 7));

  // A length claiming 4 GB closes the connection instead of waiting for it.
  client.write("\xff\xff\xff\xff");
  got = 0;
  for (int i = 0; i < 1000 && got == 0; i++, qv::platform::sleepMilliseconds(1))
    got = nm.receiveMessage(&message, 0);
  EXPECT_EQ(got, -1);
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
  listen();
  RawClient client(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
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
  listen();
  RawClient client(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  ASSERT_EQ(nm.queue("late", 4, 0, 3), 0);
  ASSERT_EQ(nm.sendMessage("x", 0, 3), 0);
  EXPECT_EQ(nm.queue("bad", 3, 1, 0), -1);
  EXPECT_EQ(nm.queue(nullptr, 3, 0, 0), -1);

  // At each step event, what the client holds is what earlier frames sent.
  struct Watcher : qv::Object {
    RawClient *p_client;
    std::vector<int> waiting;
    explicit Watcher(RawClient *p_c) : p_client(p_c) { registerInterest(qv::STEP_EVENT); }
    int eventHandler(const qv::Event *p_e) override {
      if (p_e->getType() != qv::STEP_EVENT) return 0;
      waiting.push_back(p_client->waiting());
      if (waiting.size() == 6) qv::GameManager::getInstance().setGameOver();
      return 1;
    }
  };
  auto *p_watcher = new Watcher(&client);
  auto *p_listener = new NetListener;
  RawClient newcomer(nm.getPort());  // the loop accepts it, as a server's loop does
  qv::GameManager::getInstance().run();
  EXPECT_EQ(p_watcher->waiting, (std::vector<int>{0, 0, 0, 0, 9, 9}));
  EXPECT_EQ(nm.getNumConnections(), 2);
  EXPECT_EQ(p_listener->events, (std::vector<std::pair<int, int>>{{0, 1}}));
  EXPECT_EQ(client.read(9), std::string("late\x01\x00\x00\x00x", 9));
}

TEST_F(NetworkTest, ConnectionCountAndTheMaximum) {
  EXPECT_FALSE(nm.isConnected());
  EXPECT_FALSE(nm.isConnected(0));
  EXPECT_FALSE(nm.isConnected(-2));
  EXPECT_TRUE(log->contains("NetworkManager::isConnected(): Warning! Sock less than -1."));

  listen();
  RawClient a(nm.getPort()), b(nm.getPort()), c(nm.getPort()), d(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  EXPECT_TRUE(nm.isConnected(0));
  EXPECT_TRUE(nm.isConnected(-1));
  EXPECT_FALSE(nm.isConnected(1));
  ASSERT_EQ(acceptOne(), 1);
  ASSERT_EQ(acceptOne(), 2);

  // At the maximum the fourth client waits, untouched, until it is raised.
  qv::LogManager::getInstance().setLogLevel(20);
  EXPECT_EQ(nm.accept(), -1);
  EXPECT_TRUE(
      log->contains("NetworkManager::accept(): Won't check for new connetions since at max."));
  EXPECT_TRUE(log->contains("\tUse NM.setMaxConnections() to change max."));
  qv::LogManager::getInstance().setLogLevel(0);
  EXPECT_EQ(nm.connect("127.0.0.1", std::to_string(nm.getPort())), -1);
  EXPECT_EQ(nm.setMaxConnections(-1), -1);
  EXPECT_EQ(nm.getMaxConnections(), 3);
  EXPECT_EQ(nm.setMaxConnections(4), 0);
  EXPECT_EQ(acceptOne(), 3);
  EXPECT_EQ(nm.getNumConnections(), 4);
}

TEST_F(NetworkTest, ClosingRenumbersAndTellsTheListeners) {
  listen();
  RawClient a(nm.getPort()), b(nm.getPort()), c(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  ASSERT_EQ(acceptOne(), 1);
  ASSERT_EQ(acceptOne(), 2);
  auto *p_listener = new NetListener;

  EXPECT_EQ(nm.close(0), 0);
  EXPECT_EQ(p_listener->events, (std::vector<std::pair<int, int>>{{2, 0}}));
  EXPECT_EQ(nm.getNumConnections(), 2);
  EXPECT_EQ(nm.send("B", 1, 0), 0);  // old 1 is now 0
  EXPECT_EQ(nm.send("C", 1, 1), 0);
  EXPECT_EQ(b.read(1), "B");
  EXPECT_EQ(c.read(1), "C");
  EXPECT_EQ(a.read(1, 50), "");  // the closed one hears the goodbye, no data

  EXPECT_EQ(nm.send("x", 1, 5), -1);
  EXPECT_TRUE(
      log->contains("NetworkManager::send(): Error! Socket 5 not connected. Unable to send."));
  EXPECT_EQ(nm.send("x", 1, -2), -1);
  EXPECT_TRUE(
      log->contains("NetworkManager::send(): Error! Socket -2 not connected. Unable to send."));
  EXPECT_EQ(nm.close(7), -1);

  p_listener->events.clear();
  EXPECT_EQ(nm.close(-1), 0);
  EXPECT_EQ(p_listener->events, (std::vector<std::pair<int, int>>{{2, 0}, {2, 1}}));
  EXPECT_FALSE(nm.isConnected());
}

TEST_F(NetworkTest, ADepartedPeerIsNoticedOnSend) {
  listen();
  RawClient reset(nm.getPort()), orderly(nm.getPort());
  ASSERT_EQ(acceptOne(), 0);
  ASSERT_EQ(acceptOne(), 1);
  auto *p_listener = new NetListener;

  // A reset arrives before the next send, which fails and closes.
  reset.abort();
  qv::platform::sleepMilliseconds(20);
  EXPECT_EQ(nm.send("x", 1, 0), -1);
  EXPECT_TRUE(log->contains("NetworkManager::send(): Error! Return is -1."));
  EXPECT_EQ(p_listener->events, (std::vector<std::pair<int, int>>{{2, 0}}));
  EXPECT_EQ(nm.getNumConnections(), 1);

  // After an orderly close the first send still goes out (TCP learns of
  // the departure from the reply), the one after it fails.
  orderly.close();
  int result = 0;
  for (int i = 0; i < 100 && result == 0; i++, qv::platform::sleepMilliseconds(5))
    result = nm.send("y", 1, 0);
  EXPECT_EQ(result, -1);
  EXPECT_FALSE(nm.isConnected());
  EXPECT_EQ(p_listener->events.size(), 2u);
}

TEST_F(NetworkTest, ReceiveNoticesTheGoodbyeAndConnectFindsTheServer) {
  listen();
  auto *p_listener = new NetListener;
  int client = nm.connect("localhost", std::to_string(nm.getPort()));
  ASSERT_EQ(client, 0);
  ASSERT_EQ(acceptOne(), 1);
  EXPECT_EQ(p_listener->events, (std::vector<std::pair<int, int>>{{3, 0}, {0, 1}}));

  // One manager holds both ends here: what 0 sends, 1 reads.
  EXPECT_EQ(nm.sendMessage("ping", 0), 0);
  std::string message;
  int got = 0;
  for (int i = 0; i < 1000 && got == 0; i++, qv::platform::sleepMilliseconds(1))
    got = nm.receiveMessage(&message, 1);
  EXPECT_EQ(message, "ping");

  EXPECT_EQ(nm.close(0), 0);
  char buffer[8];
  got = 0;
  for (int i = 0; i < 1000 && got == 0; i++, qv::platform::sleepMilliseconds(1))
    got = nm.receive(buffer, sizeof buffer, 0);
  EXPECT_EQ(got, -1);
  EXPECT_FALSE(nm.isConnected());

  EXPECT_EQ(nm.stopServer(), 0);
  EXPECT_EQ(nm.connect("127.0.0.1", "1"), -1);  // nothing listens on port 1
  EXPECT_TRUE(log->contains("NetworkManager::connect(): Error! Unable to connect to 127.0.0.1:1:"));
  EXPECT_TRUE(log->contains("\t111 - Connection refused"));
}

}  // namespace

// ---- two copies of the engine ------------------------------------------------------
// The test process forks: parent and child each start their own log, world
// and network managers (their own singletons, in their own address spaces)
// and talk over loopback, as two copies of a game on one machine would.

namespace {

const unsigned int ALL_TEXT_BOX_ATTRIBUTES = 0x3FFFFF;

// The log goes where QUORVELLE_LOG points.
void startPeerEngine() {
  qv::LogManager::getInstance().startUp();
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.startUp();
  world.setBoundary(qv::Box(qv::Vector(0, 0), 160, 48));
  world.setView(qv::Box(qv::Vector(0, 0), 80, 24));
  NetworkManager::getInstance().startUp();
}

void stopPeerEngine() {
  NetworkManager::getInstance().shutDown();
  qv::WorldManager::getInstance().shutDown();
  qv::LogManager::getInstance().shutDown();
}

// 1 and the message, or 0 after five seconds without one.
int awaitMessage(std::string *p_message, int sock) {
  for (int waited = 0; waited < 5000; waited++) {
    int got = NetworkManager::getInstance().receiveMessage(p_message, sock);
    if (got != 0) return got;
    qv::platform::sleepMilliseconds(1);
  }
  return 0;
}

// The child: connects, rebuilds each object it receives and sends back the
// record of what it rebuilt. The exit status says where it failed.
int runPeer(int port_pipe, const std::string &log_path) {
  setenv("QUORVELLE_LOG", log_path.c_str(), 1);
  startPeerEngine();
  int port = 0;
  if (read(port_pipe, &port, sizeof port) != static_cast<ssize_t>(sizeof port)) return 10;
  NetworkManager &nm = NetworkManager::getInstance();
  int sock = nm.connect("127.0.0.1", std::to_string(port));
  if (sock != 0) return 11;
  for (int i = 0; i < 2; i++) {
    std::string message;
    if (awaitMessage(&message, sock) != 1) return 12 + i;
    qv::Object *p_o = i == 0 ? new qv::Object : new qv::TextBox;
    std::stringstream in(message);
    if (p_o->deserialize(&in) != 0) return 14 + i;
    std::stringstream out;
    p_o->serialize(&out, i == 0 ? qv::ALL_OBJECT_ATTRIBUTES : ALL_TEXT_BOX_ATTRIBUTES);
    if (nm.sendMessage(out.str(), sock) != 0) return 16 + i;
  }
  stopPeerEngine();
  return 0;
}

TEST(NetworkExchangeTest, TwoEnginesRebuildEachOthersObjects) {
  qvtest::TempDir dir;
  int port_pipe[2];
  ASSERT_EQ(pipe(port_pipe), 0);
  pid_t child = fork();
  ASSERT_NE(child, -1);
  if (child == 0) {
    close(port_pipe[1]);
    _exit(runPeer(port_pipe[0], dir.file("peer.log")));
  }
  close(port_pipe[0]);

  qvtest::ScopedEnv log_env("QUORVELLE_LOG", dir.file("server.log").c_str());
  startPeerEngine();
  NetworkManager &nm = NetworkManager::getInstance();
  ASSERT_EQ(nm.setServer("0"), 0);
  int port = nm.getPort();
  ASSERT_EQ(write(port_pipe[1], &port, sizeof port), static_cast<ssize_t>(sizeof port));
  close(port_pipe[1]);
  int sock = -1;
  for (int waited = 0; waited < 5000 && sock == -1; waited++, qv::platform::sleepMilliseconds(1))
    sock = nm.accept();
  ASSERT_EQ(sock, 0);

  qv::Object *p_unit = new qv::Object;
  p_unit->setType("Hero");
  p_unit->setPosition(qv::Vector(12, 7));
  p_unit->setVelocity(qv::Vector(0.5f, 0));
  p_unit->setAltitude(1);
  p_unit->setSolidness(qv::SPECTRAL);
  p_unit->registerInterest("playerturn");
  p_unit->registerInterest("qv-network");
  qv::TextBox *p_box = new qv::TextBox;
  p_box->setText("Warrior\nHP 12");
  p_box->setSize(qv::Vector(14, 4));
  p_box->setLocation(qv::BOTTOM_RIGHT);
  p_box->setValue(42);

  std::stringstream unit_record, box_record;
  ASSERT_EQ(p_unit->serialize(&unit_record, qv::ALL_OBJECT_ATTRIBUTES), 0);
  ASSERT_EQ(p_box->serialize(&box_record, ALL_TEXT_BOX_ATTRIBUTES), 0);
  EXPECT_EQ(nm.sendMessage(unit_record.str(), sock), 0);
  EXPECT_EQ(nm.sendMessage(box_record.str(), sock), 0);

  // What the other copy rebuilt, written out again, is byte for byte what
  // this copy sent: every attribute arrived and was applied.
  std::string echo;
  EXPECT_EQ(awaitMessage(&echo, sock), 1);
  EXPECT_EQ(echo, unit_record.str());
  EXPECT_EQ(awaitMessage(&echo, sock), 1);
  EXPECT_EQ(echo, box_record.str());

  int status = -1;
  for (int waited = 0; waited < 5000; waited++, qv::platform::sleepMilliseconds(1))
    if (waitpid(child, &status, WNOHANG) == child) break;
  if (!WIFEXITED(status)) {
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
      << "peer status " << status << "\n"
      << qvtest::readFile(dir.file("peer.log"));
  stopPeerEngine();
}

}  // namespace
