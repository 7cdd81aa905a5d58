#include <gtest/gtest.h>

#include <stdexcept>

#include "WorldFixture.h"
#include "world/Grid.h"
#include "world/ObjectListIterator.h"
#include "world/SceneGraph.h"

namespace {

using qv::Grid;
using qv::Object;
using qv::ObjectList;
using qv::Vector;
using qvtest::Probe;

class SceneGraphTest : public qvtest::WorldFixture {
 protected:
  qv::SceneGraph &graph = world.getSceneGraph();
  const Grid &grid() const { return graph.getGrid(); }

  // Which indexes hold p_o: a(ctive) i(nactive) s(olid) v<altitude> t(ype
  // map), then the grid cells whose lists hold it.
  std::string where(const Object *p_o) const {
    std::string s;
    if (graph.activeObjects().contains(p_o)) s += "a";
    if (graph.inactiveObjects().contains(p_o)) s += "i";
    if (graph.solidObjects().contains(p_o)) s += "s";
    for (int alt = 0; alt <= qv::ALTITUDE_MAX; alt++)
      if (graph.visibleObjects(alt).contains(p_o)) s += "v" + std::to_string(alt);
    if (graph.objectsOfType(p_o->getType()).contains(p_o)) s += "t";
    for (int row = -1; row < grid().getNumRows(); row++)
      for (int col = -1; col < grid().getNumCols(); col++)
        if (grid().getCellList(col, row) && grid().getCellList(col, row)->contains(p_o))
          s += " " + std::to_string(col) + "," + std::to_string(row);
    return s;
  }
};

TEST_F(SceneGraphTest, GridCellsAtEdgesOutsideAndInCollisions) {
  ASSERT_EQ(grid().getNumCols() * 10 + grid().getNumRows(), 86);  // 160 x 48 in 20 x 8 cells
  // Cell lists follow moves, box changes and solidness; -1,-1 is the list
  // of objects reaching outside the world.
  Probe p;
  std::string seen;
  for (Vector at : {Vector(25, 10), Vector(20, 16), Vector(0, 0), Vector(25, 0), Vector(159.6f, 20),
                    Vector(25, 47.6f), Vector(-5, 10), Vector(25, 1e30f), Vector(40, 12)}) {
    p.setPosition(at);
    seen += where(&p) + "|";
  }
  p.setPosition(Vector(25, 10));
  p.setBox(qv::Box(Vector(-15, -5), 30, 10));  // [10, 40] x [5, 15]
  seen += where(&p) + "|";
  p.setSolidness(qv::SPECTRAL);
  EXPECT_EQ(seen + where(&p),
            "asv2t 1,1|"
            "asv2t 0,1 1,1 0,2 1,2|"  // box [19.5, 20.49] spans two columns
            "asv2t -1,-1 0,0|"
            "asv2t -1,-1 1,0|"  // top edge only
            "asv2t -1,-1 7,2|"  // right edge only
            "asv2t -1,-1 1,5|"  // bottom edge only
            "asv2t -1,-1|"
            "asv2t -1,-1|"
            "asv2t 1,1 2,1|"  // box reaches into column 2
            "asv2t 0,0 1,0 2,0 0,1 1,1 2,1|"
            "av2t");

  // Collisions: each object once, never the mover, never a spectral one.
  Probe mover(Vector(10, 10)), wide(Vector(20, 10));
  wide.setBox(qv::Box(Vector(-1, -0.5f), 2, 0.99f));  // spans columns 0 and 1
  Probe near(Vector(19.2f, 10.5f));
  qv::ObjectList hits = graph.getCollisions(&mover, Vector(20, 10));
  ASSERT_EQ(hits.getCount(), 2);
  EXPECT_TRUE(hits[0] == &wide && hits[1] == &near);
  EXPECT_TRUE(graph.getCollisions(&mover, Vector(10, 10)).isEmpty());

  // A new boundary re-enters what is there; an empty world lists everything outside.
  world.setBoundary(qv::Box(Vector(0, 0), 161, 100));
  EXPECT_EQ(grid().getNumCols() * 100 + grid().getNumRows(), 913);  // part cells count
  EXPECT_EQ(where(&wide), "asv2t 0,1 1,1");
  world.setBoundary(qv::Box());
  EXPECT_EQ(where(&wide), "asv2t -1,-1");
  EXPECT_EQ(graph.getCollisions(&near, near.getPosition()).getCount(), 1);
}

TEST_F(SceneGraphTest, ActivityVisibilityAltitudeSolidnessTypeAndFailures) {
  Probe p(Vector(30, 20));
  std::string seen;
  auto note = [&] { seen += where(&p) + "|"; };
  note();
  p.setActive(false);
  // Changes made while inactive touch no index and are taken up on reactivation.
  p.setAltitude(3);
  p.setPosition(Vector(50, 30));
  p.setType("Hero");
  note();
  p.setActive(true);
  note();
  p.setActive(false);
  p.setSolidness(qv::SPECTRAL);
  p.setVisible(false);
  p.setActive(true);
  note();
  p.setVisible(true);
  p.setAltitude(0);
  note();
  p.setSolidness(qv::HARD);
  p.setSolidness(qv::SOFT);
  p.setVisible(false);
  p.setType("Enemy");
  note();
  EXPECT_EQ(seen, "asv2t 1,2|i|asv3t 2,3|at|av0t|ast 2,3|");
  EXPECT_EQ(graph.objectsOfType("Hero").getCount() + graph.objectsOfType("Enemy").getCount(), 1);

  // Failures are reported: an inactive object is in no type list, so its
  // change of type above was reported, and made. A grid of its own refuses
  // a second start-up and cells of no size.
  EXPECT_TRUE(graph.visibleObjects(5).isEmpty() && graph.visibleObjects(-1).isEmpty());
  Grid grid;
  ASSERT_EQ(grid.startUp(), 0);
  EXPECT_EQ(grid.startUp(), -1);
  EXPECT_EQ(grid.setCellSize(0, 5), -1);
  grid.shutDown();
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "SceneGraph::updateType(): Error! Unable to remove Object (" +
                    std::to_string(p.getId()) + ") type (Undefined)",
                "SceneGraph::visibleObjects(): Warning! altitude 5 not in [0,4].",
                "SceneGraph::visibleObjects(): Warning! altitude -1 not in [0,4].",
                "Grid::startUp(): Warning! Grid allocated. Not proceeding.",
                "Grid::setCellSize(): Error! cell size 0 x 5 not positive, keeping 20 x 8."}));
  EXPECT_EQ(graph.removeObject(&p), 0);
  EXPECT_EQ(where(&p), "");
  EXPECT_EQ(graph.removeObject(&p), -1);  // its line is pinned for objects outside a world
  graph.insertObject(&p);
}

// Lists never touch the objects, so stand-in addresses will do.
Object *fake(int i) {
  static char slots[64];
  return reinterpret_cast<Object *>(&slots[i]);
}

ObjectList listOf(std::initializer_list<int> ids) {
  ObjectList list;
  for (int i : ids) list.insert(fake(i));
  return list;
}

// The entries as "0 2 1 ", walked by an iterator, then the capacity after a slash.
std::string show(const ObjectList &list) {
  std::string s;
  for (qv::ObjectListIterator it(&list); !it.isDone(); it.next())
    s += std::to_string(reinterpret_cast<char *>(it.currentObject()) -
                        reinterpret_cast<char *>(fake(0))) +
         " ";
  return s + "/" + std::to_string(list.getCapacity());
}

TEST_F(SceneGraphTest, ObjectListInsertRemoveCopyIterateAndBadIndex) {
  ObjectList list = listOf({0, 1, 2, 1});  // duplicates are kept
  // Nothing is no object; only the first of two equal entries goes.
  EXPECT_EQ(list.insert(nullptr) + list.remove(fake(1)) + list.remove(fake(7)), -2);
  const std::string before = show(list);
  list.clear();
  EXPECT_EQ(show(ObjectList()) + before + show(list), "/10 2 1 /4/4");

  // Emptying from the front, then refilling, keeps order and capacity.
  list = listOf({0, 1, 2, 3, 4, 5, 6, 7});
  for (int i = 0; i < 5; i++) list.remove(fake(i));
  for (int i = 10; i < 15; i++) list.insert(fake(i));
  EXPECT_EQ(list.remove(fake(13)), 0);
  ObjectList copy(list);
  copy.remove(fake(5));
  ObjectList &self = copy;
  copy = self;
  EXPECT_EQ(show(list) + show(copy) + show(listOf({0, 1}) + listOf({2, 3})),
            "5 6 7 10 11 12 14 /86 7 10 11 12 14 /80 1 2 3 /4");

  // An iterator walks the live list: an entry appended after the end is seen.
  qv::ObjectListIterator it(&copy);
  for (int i = 0; i < 7; i++) it.next();
  EXPECT_TRUE(it.isDone() && it.currentObject() == nullptr);
  copy.insert(fake(2));
  EXPECT_EQ(it.currentObject(), fake(2));
  it.first();
  EXPECT_EQ(it.currentObject(), fake(6));

  EXPECT_THROW((void)list[-1], std::out_of_range);
  EXPECT_THROW((void)list[7], std::out_of_range);
  try {
    (void)ObjectList()[0];
  } catch (const std::out_of_range &e) {
    EXPECT_STREQ(e.what(), "ObjectList::operator[](): Invalid index!");
  }
  EXPECT_EQ(log->messages(), (std::vector<std::string>{
                                 "ObjectList::operator[](): Error! Index -1 out of range [0, 6]",
                                 "ObjectList::operator[](): Error! Index 7 out of range [0, 6]",
                                 "ObjectList::operator[](): Error! Index 0 out of range [0, -1]"}));
}

}  // namespace
