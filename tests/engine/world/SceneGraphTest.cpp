#include <gtest/gtest.h>

#include "WorldFixture.h"
#include "world/SceneGraph.h"

using qv::Object;
using qv::Vector;
using qvtest::Probe;

namespace {

class SceneGraphTest : public qvtest::WorldFixture {
 protected:
  qv::SceneGraph &graph = qv::WorldManager::getInstance().getSceneGraph();

  // Which indexes hold p_o, as a short text: a(ctive) i(nactive) s(olid)
  // v<altitude> t(ype map) g(rid).
  std::string where(const Object *p_o) const {
    std::string s;
    if (graph.activeObjects().contains(p_o)) s += "a";
    if (graph.inactiveObjects().contains(p_o)) s += "i";
    if (graph.solidObjects().contains(p_o)) s += "s";
    for (int alt = 0; alt <= qv::ALTITUDE_MAX; alt++)
      if (graph.visibleObjects(alt).contains(p_o)) s += "v" + std::to_string(alt);
    if (graph.objectsOfType(p_o->getType()).contains(p_o)) s += "t";
    const qv::Grid &grid = graph.getGrid();
    for (const qv::Grid::Cell &c : grid.getCells(p_o, p_o->getPosition()))
      if (grid.getCellList(c.col, c.row)->contains(p_o)) return s + "g";
    return s;
  }
};

}  // namespace

TEST_F(SceneGraphTest, ActivityVisibilityAltitudeAndSolidness) {
  Probe p(Vector(30, 20));
  EXPECT_EQ(where(&p), "asv2tg");
  EXPECT_EQ(p.setActive(false), 0);
  EXPECT_EQ(where(&p), "i");
  // Changes made while inactive touch no index and are taken up on reactivation.
  p.setAltitude(3);
  p.setPosition(Vector(50, 30));
  EXPECT_EQ(where(&p), "i");
  EXPECT_EQ(p.setActive(true), 0);
  EXPECT_EQ(where(&p), "asv3tg");
  p.setActive(false);
  p.setSolidness(qv::SPECTRAL);
  p.setVisible(false);
  p.setActive(true);
  EXPECT_EQ(where(&p), "at");

  EXPECT_EQ(p.setVisible(true), 0);
  EXPECT_EQ(p.setAltitude(0), 0);
  EXPECT_EQ(where(&p), "av0t");
  EXPECT_EQ(p.setSolidness(qv::HARD), 0);
  EXPECT_EQ(p.setSolidness(qv::SOFT), 0);
  EXPECT_EQ(where(&p), "asv0tg");
  EXPECT_EQ(p.setVisible(false), 0);
  EXPECT_EQ(where(&p), "astg");

  EXPECT_TRUE(graph.visibleObjects(5).isEmpty());
  EXPECT_TRUE(graph.visibleObjects(-1).isEmpty());
  EXPECT_TRUE(log->contains("SceneGraph::visibleObjects(): Warning! altitude 5 not in [0,4]."));
  EXPECT_TRUE(log->contains("SceneGraph::visibleObjects(): Warning! altitude -1 not in [0,4]."));
}

TEST_F(SceneGraphTest, TypeChangesRemovalAndBoundaryChanges) {
  Probe a, b;
  a.setType("Hero");
  b.setType("Hero");
  b.setActive(false);
  EXPECT_EQ(graph.objectsOfType("Hero").getCount(), 1);
  EXPECT_TRUE(graph.objectsOfType("(Undefined)").isEmpty());
  // An inactive object is in no type list: the change is reported, and made.
  b.setType("Enemy");
  EXPECT_TRUE(log->contains("SceneGraph::updateType(): Error! Unable to remove Object (" +
                            std::to_string(b.getId()) + ") type Hero"));
  b.setActive(true);
  EXPECT_EQ(where(&b), "asv2tg");
  EXPECT_TRUE(graph.objectsOfType("Enemy").contains(&b));

  // Removal failures are reported; a new boundary re-enters what is left.
  Probe p(Vector(30, 10)), q(Vector(30.5f, 10));
  EXPECT_EQ(graph.removeObject(&p), 0);
  EXPECT_EQ(where(&p), "");
  EXPECT_EQ(graph.removeObject(&p), -1);
  EXPECT_TRUE(log->contains("SceneGraph::removeObject(): Error removing Object (id " +
                            std::to_string(p.getId()) + ")! Pointer is " + pointer(&p) + "."));
  EXPECT_EQ(graph.insertObject(&p), 0);
  qv::WorldManager::getInstance().setBoundary(qv::Box(Vector(0, 0), 200, 100));
  EXPECT_EQ(graph.getGrid().getNumCols(), 10);
  EXPECT_EQ(where(&p), "asv2tg");
  qv::ObjectList hits = graph.getCollisions(&p, p.getPosition());
  ASSERT_EQ(hits.getCount(), 1);
  EXPECT_EQ(hits[0], &q);
}
