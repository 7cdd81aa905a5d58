#include <gtest/gtest.h>

#include "EngineFixture.h"
#include "EventStep.h"
#include "GameManager.h"
#include "WorldFixture.h"

using qv::Box;
using qv::EventCollision;
using qv::Object;
using qv::ObjectList;
using qv::Vector;
using qvtest::Probe;

namespace {

class WorldTest : public qvtest::WorldFixture {
 protected:
  qv::WorldManager &world = qv::WorldManager::getInstance();

  static void expectCollision(const Probe &p, const Object *p_o1, const Object *p_o2, Vector where) {
    ASSERT_EQ(p.collisions.size(), 1u);
    EXPECT_EQ(p.collisions[0].getObject1(), p_o1);
    EXPECT_EQ(p.collisions[0].getObject2(), p_o2);
    EXPECT_EQ(p.collisions[0].getPosition(), where);
  }
};

}  // namespace

TEST_F(WorldTest, StartAndStop) {
  setLogLevel(5);
  EXPECT_EQ(world.startUp(), -1);
  EXPECT_TRUE(log->contains("WorldManager::startup(): Warning! WorldManager already started."));
  world.shutDown();
  EXPECT_TRUE(log->contains("WorldManager::shutDown(): Successfully stopped."));
  ASSERT_EQ(world.startUp(), 0);
  EXPECT_TRUE(log->contains("WorldManager::startUp(): successfully started."));
  EXPECT_EQ(world.getBoundary(), Box());
  EXPECT_EQ(world.getView(), Box());
  EXPECT_EQ(world.getViewSlack(), Vector(0, 0));
}

TEST_F(WorldTest, HardStopsHardAndBothHearOfIt) {
  Probe mover(Vector(5, 5)), wall(Vector(6, 5));
  mover.setVelocity(Vector(1, 0));
  world.update();
  EXPECT_EQ(mover.getPosition(), Vector(5, 5));
  expectCollision(mover, &mover, &wall, Vector(6, 5));
  expectCollision(wall, &mover, &wall, Vector(6, 5));
  EXPECT_EQ(mover.getVelocity(), Vector(1, 0));  // the game decides what a stop means
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), -1);
}

TEST_F(WorldTest, SoftAndSpectralPassThrough) {
  Probe mover(Vector(5, 5)), soft(Vector(6, 5));
  soft.setSolidness(qv::SOFT);
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), 0);
  EXPECT_EQ(mover.getPosition(), Vector(6, 5));
  expectCollision(mover, &mover, &soft, Vector(6, 5));
  expectCollision(soft, &mover, &soft, Vector(6, 5));

  mover.setNoSoft(true);
  EXPECT_EQ(world.moveObject(&mover, Vector(6.5f, 5)), -1);
  EXPECT_EQ(mover.getPosition(), Vector(6, 5));
  EXPECT_EQ(soft.collisions.size(), 2u);

  Probe soft_mover(Vector(20, 20)), hard(Vector(21, 20)), ghost(Vector(20, 22));
  soft_mover.setSolidness(qv::SOFT);
  EXPECT_EQ(world.moveObject(&soft_mover, Vector(21, 20)), 0);
  EXPECT_EQ(hard.collisions.size(), 1u);
  ghost.setSolidness(qv::SPECTRAL);
  EXPECT_EQ(world.moveObject(&ghost, Vector(21, 20)), 0);
  EXPECT_EQ(ghost.getPosition(), Vector(21, 20));
  EXPECT_TRUE(ghost.collisions.empty());
  EXPECT_EQ(hard.collisions.size(), 1u);
}

TEST_F(WorldTest, HandlersHaveTheirSayBeforeTheMoveIsJudged) {
  // A wall that gives way when hit (turning spectral) lets the mover through.
  Probe mover(Vector(5, 5)), door(Vector(6, 5));
  door.on_event = [&](const qv::Event *) {
    door.setSolidness(qv::SPECTRAL);
    return 1;
  };
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), 0);
  EXPECT_EQ(mover.getPosition(), Vector(6, 5));
  EXPECT_EQ(mover.collisions.size(), 1u);
  EXPECT_EQ(world.moveObject(nullptr, Vector(6, 5)), -1);
  EXPECT_EQ(world.insertObject(nullptr), -1);
  EXPECT_EQ(world.removeObject(nullptr), -1);
}

TEST_F(WorldTest, HandlerThatMovesTheMoverWins) {
  Probe mover(Vector(5, 5)), soft(Vector(6, 5));
  soft.setSolidness(qv::SOFT);
  mover.on_event = [&](const qv::Event *) {
    mover.setPosition(Vector(5, 8));
    return 1;
  };
  EXPECT_EQ(world.moveObject(&mover, Vector(6, 5)), -1);
  EXPECT_EQ(mover.getPosition(), Vector(5, 8));
}

TEST_F(WorldTest, AvoidingObstaclesSlidesAlongThem) {
  Probe mover(Vector(5, 5)), wall(Vector(6, 5));
  mover.setAvoidCollisions(true);
  mover.setVelocity(Vector(1, 0));
  EXPECT_EQ(world.moveObject(&mover, mover.predictPosition()), 0);  // head-on: nowhere to slide
  EXPECT_EQ(mover.getPosition(), Vector(5, 5));
  EXPECT_TRUE(mover.collisions.empty());
  EXPECT_TRUE(wall.collisions.empty());

  mover.setDirection(Vector(0.7071f, 0.7071f));
  mover.setSpeed(1);
  const Vector direction = mover.getDirection();
  world.update();
  EXPECT_EQ(mover.getPosition(), Vector(5, 6));
  EXPECT_EQ(mover.getDirection(), direction);  // only the move slid
  EXPECT_TRUE(mover.collisions.empty());

  // With the slide blocked too, nothing moves and nobody is told.
  setLogLevel(5);
  Probe mover2(Vector(30, 30)), wall2(Vector(31, 30)), floor(Vector(30, 31.5f));
  mover2.setAvoidCollisions(true);
  mover2.setDirection(Vector(1, 1));
  mover2.setSpeed(1);
  EXPECT_EQ(world.moveObject(&mover2, mover2.predictPosition()), -1);
  EXPECT_EQ(mover2.getPosition(), Vector(30, 30));
  EXPECT_TRUE(log->contains(
      "WorldManager::moveObject(): Double collision. Object (avoid obstacles) cannot move."));
  EXPECT_TRUE(mover2.collisions.empty());
  EXPECT_TRUE(floor.collisions.empty());
  EXPECT_TRUE(wall2.collisions.empty());
}

TEST_F(WorldTest, NormalOfAMoverAboveAnObstacle) {
  Probe mover(Vector(10, 10)), obstacle(Vector(10, 11));
  mover.setVelocity(Vector(0, 1));
  EXPECT_EQ(qv::getNormal(&mover, &obstacle), Vector(0, -1));
  mover.setPosition(Vector(30, 30));
  setLogLevel(1);
  EXPECT_EQ(qv::getNormal(&mover, &obstacle), Vector(0, 0));
  EXPECT_TRUE(log->contains("getNormal(): No collision detected. Returning (0,0)."));
}

TEST_F(WorldTest, LeavingTheWorldIsReportedOnce) {
  Probe p(Vector(158, 10));
  p.setVelocity(Vector(2, 0));
  world.update();
  EXPECT_EQ(p.count("qv-out"), 0);  // [157.5, 160.49] still touches the edge
  world.update();
  EXPECT_EQ(p.count("qv-out"), 1);
  world.update();
  EXPECT_EQ(p.count("qv-out"), 1);
  EXPECT_EQ(p.getPosition(), Vector(164, 10));
}

TEST_F(WorldTest, ViewFollowsWithSlackAndStaysInTheWorld) {
  world.setViewSlack(Vector(0.33333334f, 0.33333334f));
  Probe p(Vector(40, 12));
  ASSERT_EQ(world.setViewFollowing(&p), 0);
  EXPECT_EQ(world.getView().getCorner(), Vector(0, 0));
  world.moveObject(&p, Vector(50, 12));  // inside the slack: the view stays
  EXPECT_EQ(world.getView().getCorner(), Vector(0, 0));
  world.moveObject(&p, Vector(60, 12));
  EXPECT_NEAR(world.getView().getCorner().getX(), 60 - (40 + 13.333333), 1e-3);
  EXPECT_EQ(world.getView().getCorner().getY(), 0);

  world.setViewSlack(Vector(0, 0));
  world.moveObject(&p, Vector(70, 30));
  EXPECT_EQ(world.getView().getCorner(), Vector(30, 18));
  world.moveObject(&p, Vector(155, 45));
  EXPECT_EQ(world.getView().getCorner(), Vector(80, 24));
  world.setView(Box(Vector(0, 0), 200, 24));
  world.setViewPosition(Vector(100, 10));
  EXPECT_EQ(world.getView().getCorner(), Vector(0, 0));

  world.setViewSlack(Vector(1.5f, 0));
  EXPECT_TRUE(log->contains("WorldManager::setViewSlack(): Warning! view slack units out of range [0-1]"));
  EXPECT_EQ(world.getViewSlack(), Vector(1.5f, 0));

  EXPECT_EQ(world.setViewFollowing(nullptr), 0);
  EXPECT_EQ(world.getViewFollowing(), nullptr);
  Probe *p_gone = new Probe;
  world.removeObject(p_gone);
  EXPECT_EQ(world.setViewFollowing(p_gone), -1);
  world.insertObject(p_gone);
  p.setActive(false);
  EXPECT_EQ(world.setViewFollowing(&p), 0);  // inactive objects may be followed
  // A followed object that is deleted is no longer followed.
  world.setViewFollowing(p_gone);
  world.markForDelete(p_gone);
  world.update();
  EXPECT_EQ(world.getViewFollowing(), nullptr);
}

TEST_F(WorldTest, DeletionHappensAtTheEndOfTheUpdate) {
  std::vector<std::string> deleted;
  Probe *p_a = new Probe(Vector(10, 10));
  Probe *p_b = new Probe(Vector(20, 10));
  Probe *p_c = new Probe(Vector(30, 10));
  p_a->setVelocity(Vector(1, 0));
  p_b->setVelocity(Vector(1, 0));
  p_a->on_delete = [&](Probe *p) { deleted.push_back("a@" + p->getPosition().toString()); };
  p_b->on_delete = [&](Probe *p) {
    deleted.push_back("b@" + p->getPosition().toString());
    world.markForDelete(p_c);  // deleted in the same pass
  };
  p_c->on_delete = [&](Probe *) { deleted.push_back("c"); };
  // b is marked before the update and still moves in it.
  EXPECT_EQ(world.markForDelete(p_b), 0);
  EXPECT_EQ(world.markForDelete(p_b), 0);
  EXPECT_EQ(world.getDeletions().getCount(), 1);
  p_a->on_event = [&](const qv::Event *) { return 0; };
  p_a->setVelocity(Vector(1, 0));
  world.markForDelete(p_a);
  world.update();
  EXPECT_EQ(deleted, (std::vector<std::string>{"b@(21,10)", "a@(11,10)", "c"}));
  EXPECT_TRUE(world.getDeletions().isEmpty());
  EXPECT_TRUE(world.getAllObjects(true).isEmpty());
}

TEST_F(WorldTest, ShutDownDeletesEveryObject) {
  int deleted = 0;
  for (int i = 0; i < 5; i++) {
    Probe *p_o = new Probe(Vector(static_cast<float>(i), 3));
    p_o->on_delete = [&](Probe *) { deleted++; };
    if (i % 2) p_o->setActive(false);
  }
  ObjectList all = world.getAllObjects(true);
  ASSERT_EQ(all.getCount(), 5);
  EXPECT_TRUE(all[0]->isActive() && all[1]->isActive() && all[2]->isActive());
  EXPECT_FALSE(all[3]->isActive() || all[4]->isActive());
  EXPECT_EQ(world.getAllObjects().getCount(), 3);
  world.markForDelete(all[0]);
  world.shutDown();
  EXPECT_EQ(deleted, 5);
  ASSERT_EQ(world.startUp(), 0);
  world.update();  // the earlier mark is forgotten, not replayed
  EXPECT_EQ(deleted, 5);
}

TEST_F(WorldTest, DrawsLowAltitudesFirstAndOnlyWhatIsInView) {
  std::vector<int> drawn;
  const struct {
    Vector where;
    int altitude;
    bool visible;
    bool active;
  } cases[] = {
      {Vector(10, 10), 3, true, true},  {Vector(12, 10), 0, true, true},
      {Vector(14, 10), 4, true, true},  {Vector(16, 10), 0, true, true},
      {Vector(100, 10), 1, true, true},  // outside the 80 x 24 view
      {Vector(18, 10), 1, false, true},  {Vector(20, 10), 1, true, false},
      {Vector(80.4f, 10), 2, true, true},  // box reaches into the view
  };
  int id = 0;
  for (const auto &c : cases) {
    Probe *p_o = new Probe(c.where);
    p_o->setAltitude(c.altitude);
    p_o->setVisible(c.visible);
    p_o->setActive(c.active);
    p_o->on_draw = [&drawn, id](Probe *) { drawn.push_back(id); };
    id++;
  }
  world.draw();
  EXPECT_EQ(drawn, (std::vector<int>{1, 3, 7, 0, 2}));
}

namespace {

// The real frame loop, headless, for a few frames.
class FrameLoop : public qvtest::EngineFixture {};

class Stepper : public Object {
 public:
  explicit Stepper(int frames) : m_frames(frames) {
    registerInterest("qv-step");
    setVelocity(Vector(1, 0));
    setPosition(Vector(10, 10));
  }
  int eventHandler(const qv::Event *p_e) override {
    const auto *p_step = dynamic_cast<const qv::EventStep *>(p_e);
    if (!p_step) return 0;
    counts.push_back(p_step->getStepCount());
    positions.push_back(getPosition().getX());
    if (static_cast<int>(counts.size()) == m_frames) qv::GameManager::getInstance().setGameOver();
    return 1;
  }
  std::vector<int> counts;
  std::vector<float> positions;

 private:
  int m_frames;
};

}  // namespace

TEST_F(FrameLoop, StepEventsReachObjectsOncePerFrame) {
  Stepper *p_s = new Stepper(4);
  Stepper *p_idle = new Stepper(1000);
  p_idle->setActive(false);
  qv::GameManager::getInstance().run();
  EXPECT_EQ(p_s->counts, (std::vector<int>{0, 1, 2, 3}));
  // The step comes before the world's update: each frame sees the last move.
  EXPECT_EQ(p_s->positions, (std::vector<float>{10, 11, 12, 13}));
  EXPECT_EQ(p_s->getPosition().getX(), 14);
  EXPECT_EQ(qv::GameManager::getInstance().getStepCount(), 4);
  EXPECT_TRUE(p_idle->counts.empty());
}
