#include <gtest/gtest.h>

#include "ActionDisplay.h"
#include "Camera.h"
#include "GameFixture.h"
#include "HoverStatDisplay.h"
#include "Obstacle.h"
#include "SelectStatDisplay.h"
#include "TurnCounter.h"
#include "TurnDisplay.h"
#include "core/GameManager.h"

using qvtest::GameFixture;
using qvtest::rows;

namespace {

// A display's drawn text without its padding.
std::string shown(const qv::ViewObject *p_v) {
  if (!p_v->isVisible()) return "-";
  std::string text;
  for (char ch : p_v->displayText())
    if (ch != ' ' || (!text.empty() && text.back() != ' ')) text += ch;
  if (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

const std::string NOTHING = "LEFT CLICK to select. ENTER to end player turn.";

}  // namespace

// What the five displays show after each step of a short game.
TEST_F(GameFixture, TheDisplaysFollowTheGame) {
  startLevel();
  layout(rows(3) + "...H........\n" + rows(1) + "....W#g.....\n.....gM.....\n" + "...........o\n" +
         rows(4));
  auto hud = [this] {
    frame();
    return shown(find<TurnDisplay>()) + " / " + shown(find<TurnCounter>()) + " / " +
           shown(find<ActionDisplay>()) + " / " + shown(find<SelectStatDisplay>()) + " / " +
           shown(find<HoverStatDisplay>()) + " / " +
           find<SelectStatDisplay>()->getTextBox()->getText();
  };
  hover(0, 0);
  EXPECT_EQ(hud(), "Current Turn: Player / Turn 1 / Actions: 3 / - / - / " + NOTHING);
  hover(5, 5);
  EXPECT_EQ(hud(),
            "Current Turn: Player / Turn 1 / Actions: 3 / - / Wall | Health: 2 / " + NOTHING);
  click(11, 7);
  EXPECT_EQ(hud(), "Current Turn: Player / Turn 1 / Actions: 3 / Ogre | Health: 5 / " +
                       std::string("Ogre | Health: 5 / RIGHT CLICK to deselect."));
  click(11, 7, qv::Mouse::RIGHT);
  click(4, 5);
  EXPECT_EQ(hud(), "Current Turn: Player / Turn 1 / Actions: 3 / Warrior | Health: 8 / " +
                       std::string("Warrior | Health: 8 / RIGHT CLICK to deselect.\n\nSPACE to "
                                   "end the Warrior's turn but gain +1 Action for each adjacent "
                                   "Enemy."));
  key(qv::Keyboard::SPACE);  // no enemy next to it: nothing
  click(5, 5);               // attack the wall: 2 - 2
  frame();
  // The hovered tile's occupant is gone, and the pointer leaves the board.
  hover(30, 2);
  EXPECT_EQ(hud(), "Current Turn: Player / Turn 1 / Actions: 2 / - / - / " + NOTHING);
  click(6, 6);
  key(qv::Keyboard::SPACE);  // the Magician's wall: one more action
  EXPECT_EQ(hud(),
            "Current Turn: Player / Turn 1 / Actions: 3 / - / Magician | Health: 6 / " + NOTHING);
  click(6, 6);
  hover(30, 2);  // off the board the last tile still counts
  EXPECT_EQ(hud(), "Current Turn: Player / Turn 1 / Actions: 3 / Magician | Health: 6 / " +
                       std::string("Magician | Health: 6 / RIGHT CLICK to deselect.\n\nThis Hero's "
                                   "turn is over.\n\nENTER to end player turn."));
  clickHere(qv::Mouse::RIGHT);
  click(3, 3);
  frame();
  EXPECT_EQ(find<SelectStatDisplay>()->getTextBox()->getText(),
            "RIGHT CLICK to deselect.\n\nSPACE to end the hunter's turn, and gain +1 Action if "
            "there is a target enemy not in melee.");
  // Enter: the enemies act, the next turn shows 3 actions.
  key(qv::Keyboard::ENTER);
  EXPECT_EQ(hud().substr(0, 45), "Current Turn: Player / Turn 2 / Actions: 3 / ");
  state().setPhase(LOSS);
  EXPECT_EQ(hud().substr(0, 31), "Current Turn: Loss... / Turn 2 ");
}

TEST_F(GameFixture, EscapeLeavesTheLevelAndTheNextLevelGoesOnCountingTurns) {
  key(qv::Keyboard::S);  // on the title screen: only its release reaches the camera
  startLevel();
  layout(rows(12));
  while (state().getTurn() < 7) key(qv::Keyboard::ENTER);
  Camera *p_camera = find<Camera>();
  qv::Vector start = p_camera->getPosition();
  key(qv::Keyboard::S, qv::KEY_RELEASED);
  key(qv::Keyboard::D);
  for (int i = 0; i < 10; i++) frame();
  EXPECT_EQ(p_camera->getPosition(), qv::Vector(start.getX() + 20, start.getY() - 10));
  key(qv::Keyboard::D, qv::KEY_RELEASED);
  key(qv::Keyboard::A);
  key(qv::Keyboard::D);  // opposite keys held together cancel
  frame();
  EXPECT_EQ(p_camera->getPosition(), qv::Vector(start.getX() + 20, start.getY() - 11));

  for (int i = 0; i < 110; i++) new Obstacle;  // the registries grow past 100
  EXPECT_EQ(state().getObstacleCount(), 110);
  click(2, 2);
  key(qv::Keyboard::ESCAPE);
  frame();
  EXPECT_EQ(qv::WorldManager::getInstance().getAllObjects(true).getCount(), 1);
  EXPECT_TRUE(menu->isActive());
  EXPECT_EQ(state().getObstacleCount(), 0);
  EXPECT_EQ(qv::WorldManager::getInstance().getView().getCorner(), qv::Vector(0, 0));
  key(qv::Keyboard::Q, qv::KEY_RELEASED);  // any action of Q quits, but not yet
  EXPECT_TRUE(qv::GameManager::getInstance().getGameOver());
  qv::GameManager::getInstance().setGameOver(false);
  Board *p_old = getBoard();
  startLevel();
  EXPECT_NE(getBoard(), p_old);
  EXPECT_EQ(state().getTurn(), 8);
  EXPECT_EQ(state().getPhase(), PLAYER_TURN);
}
