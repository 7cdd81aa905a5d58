#include <gtest/gtest.h>

#include "WorldFixture.h"
#include "world/Grid.h"

using qv::Grid;
using qv::Vector;
using qvtest::Probe;

namespace {

class GridTest : public qvtest::WorldFixture {
 protected:
  const Grid &grid() const { return qv::WorldManager::getInstance().getSceneGraph().getGrid(); }

  // The cells of p at where (or, without where, the cells whose list holds p), as "c,r c,r ...".
  std::string cells(const qv::Object *p_o, const Vector *p_where = nullptr) const {
    std::string s;
    auto add = [&](int col, int row) {
      s += (s.empty() ? "" : " ") + std::to_string(col) + "," + std::to_string(row);
    };
    if (p_where) {
      for (const Grid::Cell &c : grid().getCells(p_o, *p_where)) add(c.col, c.row);
      return s;
    }
    for (int row = -1; row < grid().getNumRows(); row++)
      for (int col = -1; col < grid().getNumCols(); col++)
        if (grid().getCellList(col, row) && grid().getCellList(col, row)->contains(p_o))
          add(col, row);
    return s;
  }
  std::string cells(const qv::Object *p_o, Vector where) const { return cells(p_o, &where); }
};

}  // namespace

TEST_F(GridTest, CellsAtEdgesAndOutside) {
  EXPECT_EQ(grid().getNumCols(), 8);
  EXPECT_EQ(grid().getNumRows(), 6);
  Probe p(Vector(25, 10));
  EXPECT_EQ(cells(&p), "1,1");
  EXPECT_EQ(cells(&p, Vector(20, 16)), "0,1 1,1 0,2 1,2");  // box [19.5, 20.49] spans two columns
  EXPECT_EQ(cells(&p, Vector(0, 0)), "-1,-1 0,0");
  EXPECT_EQ(cells(&p, Vector(25, 0)), "-1,-1 1,0");  // only the top edge is crossed
  EXPECT_EQ(cells(&p, Vector(159.6f, 47.6f)), "-1,-1 7,5");
  EXPECT_EQ(cells(&p, Vector(-5, 10)), "-1,-1");
  EXPECT_EQ(cells(&p, Vector(25, 1e30f)), "-1,-1");

  p.setPosition(Vector(40, 12));  // box reaches into column 2
  EXPECT_EQ(cells(&p), "1,1 2,1");
  p.setPosition(Vector(300, 300));
  EXPECT_EQ(cells(&p), "-1,-1");
  p.setPosition(Vector(25, 10));
  p.setBox(qv::Box(Vector(-15, -5), 30, 10));
  EXPECT_EQ(cells(&p), "0,0 1,0 2,0 0,1 1,1 2,1");  // [10, 40] x [5, 15]
  p.setSolidness(qv::SPECTRAL);
  EXPECT_EQ(cells(&p), "");

  qv::WorldManager::getInstance().setBoundary(qv::Box(Vector(0, 0), 161, 48));
  EXPECT_EQ(grid().getNumCols(), 9);
  qv::WorldManager::getInstance().setBoundary(qv::Box());
  EXPECT_EQ(grid().getNumCols(), 0);
  Probe a(Vector(5, 5)), b(Vector(5.5f, 5));
  EXPECT_EQ(cells(&a), "-1,-1");  // an empty world lists everything outside
  EXPECT_EQ(grid().getCollisions(&a, a.getPosition()).getCount(), 1);
}

TEST_F(GridTest, CollisionsAreUniqueAndExcludeTheMover) {
  Probe mover(Vector(10, 10)), wide(Vector(20, 10));
  wide.setBox(qv::Box(Vector(-1, -0.5f), 2, 0.99f));  // spans columns 0 and 1
  Probe near(Vector(19.2f, 10.5f)), ghost(Vector(19.5f, 10));
  ghost.setSolidness(qv::SPECTRAL);
  // The placed box spans two cells that both list wide: it is reported once.
  qv::ObjectList hits = grid().getCollisions(&mover, Vector(20, 10));
  ASSERT_EQ(hits.getCount(), 2);
  EXPECT_EQ(hits[0], &wide);
  EXPECT_EQ(hits[1], &near);
  EXPECT_TRUE(grid().getCollisions(&mover, Vector(10, 10)).isEmpty());
}

TEST(GridAlone, RefusesWorkWithoutCellsOrObject) {
  qvtest::LogCapture log;
  ASSERT_TRUE(log.start());
  Grid grid;
  for (int allocated = 0; allocated < 2; allocated++) {
    EXPECT_EQ(grid.insertObject(nullptr), -1);
    EXPECT_EQ(grid.removeObject(nullptr), -1);
    EXPECT_EQ(grid.updatePosition(nullptr, Vector()), -1);
    EXPECT_TRUE(grid.getCollisions(nullptr, Vector()).isEmpty());
    for (const char *op : {"insertObject", "removeObject", "updatePosition", "getCollisions"})
      EXPECT_TRUE(log.contains(std::string("Grid::") + op + "(): Error! " +
                               (allocated ? "Object" : "grid") + " is NULL"))
          << op;
    ASSERT_EQ(grid.startUp(), allocated ? -1 : 0);
  }
  EXPECT_TRUE(log.contains("Grid::startUp(): Warning! Grid allocated. Not proceeding."));
  grid.shutDown();
  grid.shutDown();
  EXPECT_FALSE(grid.isAllocated());
  EXPECT_EQ(grid.setCellSize(0, 5), -1);
  EXPECT_TRUE(
      log.contains("Grid::setCellSize(): Error! cell size 0 x 5 not positive, keeping 20 x 8."));
}
