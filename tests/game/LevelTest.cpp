#include <gtest/gtest.h>

#include <cstdlib>

#include "Camera.h"
#include "GameFixture.h"
#include "Obstacle.h"
#include "Tile.h"
#include "core/GameManager.h"
#include "world/WorldManager.h"

using qvtest::GameFixture;
using qvtest::rows;

namespace {

const std::string NOTHING = "LEFT CLICK to select. ENTER to end player turn.";

// What the level start must leave after srand(seed): heroes at (6,6),
// (4,3), (4,8), then 12 wall attempts of a column and a row draw each,
// skipping taken tiles.
std::string expectedStart(unsigned seed) {
  std::string board = rows(3) + "....H.......\n" + rows(2) + "......W.....\n" + rows(1) +
                      "....M.......\n" + rows(3);
  auto at = [&board](int c, int r) -> char & { return board[static_cast<size_t>(r * 13 + c)]; };
  srand(seed);
  for (int attempt = 0; attempt < 12; attempt++) {
    const int c = rand() % 10 + 1, r = rand() % 10 + 1;
    if (at(c, r) == '.') at(c, r) = '#';
  }
  return board;
}

}  // namespace

TEST_F(GameFixture, LevelsStartFromTheSeedAndEscapeLeavesThemWithTheTurnCountGoingOn) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  int turn = 0;
  for (unsigned seed : {1u, 42u, 20261123u}) {
    key(qv::Keyboard::S);  // on the title screen: only its release reaches the camera
    srand(seed);
    key(qv::Keyboard::P);
    key(qv::Keyboard::P);  // the title screen is gone: P does nothing more
    const int next = rand();
    EXPECT_EQ(units(), expectedStart(seed)) << "seed " << seed;
    EXPECT_EQ(rand(), next);  // the level took the draws of its walls, no more
    EXPECT_EQ(hud(), "Current Turn: Player / Turn " + std::to_string(++turn) +
                         " / Actions: 3 / - / - / " + NOTHING);
    // The camera drifts while W A S D are held; opposite keys cancel.
    Camera *p_camera = find<Camera>();
    const qv::Vector start = p_camera->getPosition();
    key(qv::Keyboard::S, qv::KEY_RELEASED);
    key(qv::Keyboard::D);
    for (int i = 0; i < 10; i++) frame();
    key(qv::Keyboard::D, qv::KEY_RELEASED);
    key(qv::Keyboard::A);
    key(qv::Keyboard::D);
    frame();
    EXPECT_EQ(p_camera->getPosition(), qv::Vector(start.getX() + 20, start.getY() - 11));

    for (int i = 0; i < 110; i++) new Obstacle;  // the registries grow past 100
    click(2, 2);
    key(qv::Keyboard::ESCAPE, qv::KEY_RELEASED);  // only a press leaves
    EXPECT_FALSE(menu->isActive());
    key(qv::Keyboard::ESCAPE);
    frame();
    EXPECT_TRUE(menu->isActive());
    EXPECT_EQ(world.getAllObjects(true).getCount(), 1);
    EXPECT_EQ(world.getView().getCorner(), qv::Vector(0, 0));
  }
  key(qv::Keyboard::Q, qv::KEY_RELEASED);  // any action of Q quits
  EXPECT_TRUE(qv::GameManager::getInstance().getGameOver());
}

// What the five displays show after each step of a short game.
TEST_F(GameFixture, TheDisplaysFollowTheGame) {
  key(qv::Keyboard::P);
  layout(rows(3) + "...H........\n" + rows(1) + "....W#g.....\n.....gM.....\n" + "...........o\n" +
         rows(4));
  const std::string top = "Current Turn: Player / Turn 1 / Actions: ";
  hover(5, 5);
  EXPECT_EQ(hud(), top + "3 / - / Wall | Health: 2 / " + NOTHING);
  click(11, 7);
  click(4, 5);  // an enemy stays selected
  EXPECT_EQ(hud(), top + "3 / Ogre | Health: 5 / Warrior | Health: 8 / RIGHT CLICK to deselect.");
  clickHere(qv::Mouse::RIGHT);
  clickHere();
  EXPECT_EQ(hud(), top +
                       "3 / Warrior | Health: 8 / Warrior | Health: 8 / RIGHT CLICK to "
                       "deselect.\n\nSPACE to end the Warrior's turn but gain +1 Action for "
                       "each adjacent Enemy.");
  key(qv::Keyboard::SPACE);  // no enemy next to it: nothing
  clickHere(qv::Mouse::RIGHT);
  click(6, 6);
  key(qv::Keyboard::SPACE);  // the Magician's wall: one more action, above the turn's 3
  EXPECT_EQ(hud(), top + "4 / - / Magician | Health: 6 / " + NOTHING);
  click(6, 6);
  click(6, 7);  // green, but this hero's turn is over
  hover(6, 6);
  hover(30, 2);  // off the board the last tile still counts
  EXPECT_EQ(hud(), top +
                       "4 / Magician | Health: 6 / Magician | Health: 6 / RIGHT CLICK to "
                       "deselect.\n\nThis Hero's turn is over.\n\nENTER to end player turn.");
  clickHere(qv::Mouse::RIGHT);
  click(4, 5);
  click(5, 5);  // the Warrior spends the Magician's action on the wall: 2 - 2
  frame();
  // The hovered tile's occupant is gone, and the pointer leaves the board.
  hover(30, 2);
  EXPECT_EQ(hud(), top + "3 / - / - / " + NOTHING);
  click(3, 3);
  EXPECT_EQ(hud(), top +
                       "3 / Hunter | Health: 6 / Hunter | Health: 6 / RIGHT CLICK to "
                       "deselect.\n\nSPACE to end the hunter's turn, and gain +1 Action if "
                       "there is a target enemy not in melee.");
  key(qv::Keyboard::ENTER, qv::KEY_RELEASED);  // only a press ends the turn
  key(qv::Keyboard::ENTER);                    // the unspent actions are lost: 3, not 6
  EXPECT_EQ(hud().substr(0, 45), "Current Turn: Player / Turn 2 / Actions: 3 / ");
}

TEST_F(GameFixture, SelectionColoursReachAlongPathsAndAttackReachThroughWalls) {
  key(qv::Keyboard::P);
  layout(rows(4) + ".....#......\n....#H#.go..\n.....#......\n" + rows(1) + ".....W#.....\n" +
         rows(3));
  // The walled-in Hunter cannot move; its reach of 3 passes the walls.
  click(5, 5);
  EXPECT_EQ(colours(), "4 cwwwwrwwwwww\n5 cwwwrgrwrwww\n6 cwwwwrwwwwww\n8 cwwwwgwwwwww\n");
  // A left click on another unit keeps the selection; a right click drops it.
  click(5, 8);
  EXPECT_EQ(board().getSelected(), unitAt(5, 5));
  click(5, 8, qv::Mouse::RIGHT);
  EXPECT_EQ(colours(), "");  // the hovered tile lost its yellow too

  // The Warrior's move of 2 does not reach (7, 8) behind the wall, nor (9, 9).
  click(5, 8);
  const std::string reach = "7 cwwwgggwwwww\n8 cwwgggrwwwww\n";
  EXPECT_EQ(colours(), reach + "9 cwwwgggwwwww\n10 cwwwwgwwwwww\n");
  click(7, 8);
  click(9, 9);
  hover(6, 9);  // the pointer turns a tile yellow and gives the old one its colour back
  EXPECT_EQ(colours(), reach + "9 cwwwggywwwww\n10 cwwwwgwwwwww\n");

  // A move costs an action, plays a move sound (one draw) and deselects.
  srand(5);
  clickHere();
  const int next = rand();
  EXPECT_EQ(units().substr(8 * 13, 26), "......#.....\n......W.....\n");
  EXPECT_EQ(colours(), "");
  srand(5);
  rand();
  EXPECT_EQ(rand(), next);  // exactly one draw was taken
}
