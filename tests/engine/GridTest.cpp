#include <gtest/gtest.h>

#include "Grid.h"
#include "WorldFixture.h"

using qv::Grid;
using qv::ObjectList;
using qv::Vector;
using qvtest::Probe;

namespace {

class GridTest : public qvtest::WorldFixture {
 protected:
  const Grid &grid() const { return qv::WorldManager::getInstance().getSceneGraph().getGrid(); }

  // The cells of p at where, as "c,r c,r ...".
  std::string cells(const qv::Object *p_o, Vector where) const {
    std::string s;
    for (const Grid::Cell &c : grid().getCells(p_o, where))
      s += (s.empty() ? "" : " ") + std::to_string(c.col) + "," + std::to_string(c.row);
    return s;
  }
  // The cells whose list holds p, same form.
  std::string listedIn(const qv::Object *p_o) const {
    std::string s;
    for (int row = -1; row < grid().getNumRows(); row++)
      for (int col = -1; col < grid().getNumCols(); col++) {
        const ObjectList *p_list = grid().getCellList(col, row);
        if (p_list && p_list->contains(p_o))
          s += (s.empty() ? "" : " ") + std::to_string(col) + "," + std::to_string(row);
      }
    return s;
  }
};

}  // namespace

TEST_F(GridTest, CellsAtEdgesAndOutside) {
  EXPECT_EQ(grid().getNumCols(), 8);
  EXPECT_EQ(grid().getNumRows(), 6);
  Probe p(Vector(25, 10));
  EXPECT_EQ(listedIn(&p), "1,1");
  EXPECT_EQ(cells(&p, Vector(20, 10)), "0,1 1,1");  // box [19.5, 20.49] spans two columns
  EXPECT_EQ(cells(&p, Vector(20, 16)), "0,1 1,1 0,2 1,2");
  EXPECT_EQ(cells(&p, Vector(0, 0)), "-1,-1 0,0");
  EXPECT_EQ(cells(&p, Vector(159.6f, 47.6f)), "-1,-1 7,5");
  EXPECT_EQ(cells(&p, Vector(-5, 10)), "-1,-1");
  EXPECT_EQ(cells(&p, Vector(300, 10)), "-1,-1");
  EXPECT_EQ(cells(&p, Vector(25, -3)), "-1,-1");
  EXPECT_EQ(cells(&p, Vector(25, 1e30f)), "-1,-1");

  p.setPosition(Vector(0, 0));
  EXPECT_EQ(listedIn(&p), "-1,-1 0,0");
  p.setPosition(Vector(300, 300));
  EXPECT_EQ(listedIn(&p), "-1,-1");
  p.setPosition(Vector(25.4f, 10.2f));
  EXPECT_EQ(listedIn(&p), "1,1");

  qv::WorldManager::getInstance().setBoundary(qv::Box(Vector(0, 0), 161, 48));
  EXPECT_EQ(grid().getNumCols(), 9);
  EXPECT_EQ(listedIn(&p), "1,1");
}

TEST_F(GridTest, MovesFollowCellEdges) {
  Probe p(Vector(25, 10));
  p.setPosition(Vector(28, 12));
  EXPECT_EQ(listedIn(&p), "1,1");
  p.setPosition(Vector(40, 12));  // box reaches into column 2
  EXPECT_EQ(listedIn(&p), "1,1 2,1");
  p.setPosition(Vector(45, 12));
  EXPECT_EQ(listedIn(&p), "2,1");
  // A bigger box covers more cells and leaves them all again.
  p.setBox(qv::Box(Vector(-15, -5), 30, 10));
  EXPECT_EQ(listedIn(&p), "1,0 2,0 3,0 1,1 2,1 3,1 1,2 2,2 3,2");
  p.setSolidness(qv::SPECTRAL);
  EXPECT_EQ(listedIn(&p), "");
}

TEST_F(GridTest, CollisionsAreUniqueAndExcludeTheMover) {
  Probe mover(Vector(10, 10));
  Probe wide(Vector(20, 10));  // spans columns 0 and 1
  wide.setBox(qv::Box(Vector(-1, -0.5f), 2, 0.99f));
  Probe near(Vector(19.2f, 10.5f));
  Probe far(Vector(60, 30));
  Probe ghost(Vector(19.5f, 10));
  ghost.setSolidness(qv::SPECTRAL);
  // The placed box spans two cells that both list wide: it is reported once.
  ObjectList hits = grid().getCollisions(&mover, Vector(20, 10));
  ASSERT_EQ(hits.getCount(), 2);
  EXPECT_EQ(hits[0], &wide);
  EXPECT_EQ(hits[1], &near);
  EXPECT_TRUE(grid().getCollisions(&mover, Vector(10, 10)).isEmpty());
}

TEST_F(GridTest, EmptyBoundaryListsEverythingOutside) {
  qv::WorldManager::getInstance().setBoundary(qv::Box());
  EXPECT_EQ(grid().getNumCols(), 0);
  EXPECT_EQ(grid().getNumRows(), 0);
  Probe a(Vector(5, 5));
  Probe b(Vector(5.5f, 5));
  EXPECT_EQ(listedIn(&a), "-1,-1");
  EXPECT_EQ(grid().getCollisions(&a, a.getPosition()).getCount(), 1);
}

TEST(GridAlone, RefusesWorkWithoutCellsOrObject) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  Grid grid;
  qv::Object *p_o = nullptr;
  EXPECT_EQ(grid.insertObject(p_o), -1);
  EXPECT_EQ(grid.removeObject(p_o), -1);
  EXPECT_EQ(grid.updatePosition(p_o, Vector()), -1);
  EXPECT_TRUE(grid.getCollisions(p_o, Vector()).isEmpty());
  for (const char *op : {"insertObject", "removeObject", "updatePosition", "getCollisions"})
    EXPECT_TRUE(log.contains(std::string("Grid::") + op + "(): Error! grid is NULL")) << op;

  ASSERT_EQ(grid.startUp(), 0);
  EXPECT_EQ(grid.startUp(), -1);
  EXPECT_TRUE(log.contains("Grid::startUp(): Warning! Grid allocated. Not proceeding."));
  EXPECT_TRUE(grid.isAllocated());
  EXPECT_EQ(grid.insertObject(nullptr), -1);
  EXPECT_EQ(grid.removeObject(nullptr), -1);
  EXPECT_EQ(grid.updatePosition(nullptr, Vector()), -1);
  EXPECT_TRUE(grid.getCollisions(nullptr, Vector()).isEmpty());
  for (const char *op : {"insertObject", "removeObject", "updatePosition", "getCollisions"})
    EXPECT_TRUE(log.contains(std::string("Grid::") + op + "(): Error! Object is NULL")) << op;
  grid.shutDown();
  grid.shutDown();
  EXPECT_FALSE(grid.isAllocated());

  EXPECT_EQ(grid.setCellSize(0, 5), -1);
  EXPECT_TRUE(log.contains("Grid::setCellSize(): Error! cell size 0 x 5 not positive, keeping 20 x 8."));
  EXPECT_EQ(grid.setCellSize(10, 4), 0);
  EXPECT_EQ(grid.getCellWidth(), 10);
  EXPECT_EQ(grid.getCellHeight(), 4);
}
