#include "MainMenu.h"

#include <cstdlib>

#include "ActionDisplay.h"
#include "Board.h"
#include "Camera.h"
#include "GameState.h"
#include "Hero.h"
#include "HoverStatDisplay.h"
#include "Obstacle.h"
#include "Reticle.h"
#include "SelectStatDisplay.h"
#include "Tile.h"
#include "TurnCounter.h"
#include "TurnDisplay.h"
#include "assets.h"
#include "core/GameManager.h"
#include "input/EventKeyboard.h"

namespace {

const qv::Vector MENU_POSITION(40, 12);
const int WALL_ATTEMPTS = 12;

}  // namespace

MainMenu::MainMenu() {
  setType("MainMenu");
  setSprite("mainmenu");
  registerInterest(qv::KEYBOARD_EVENT);
  setPosition(MENU_POSITION);
  setActive(true);
  switchMusic("level music", "menu music");
}

// Any keyboard action counts, pressed, held or released.
int MainMenu::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::KEYBOARD_EVENT) return 0;
  const auto *p_key = static_cast<const qv::EventKeyboard *>(p_e);
  if (p_key->getKey() == qv::Keyboard::P) startLevel();
  if (p_key->getKey() == qv::Keyboard::Q) qv::GameManager::getInstance().setGameOver(true);
  return 1;
}

void MainMenu::startLevel() {
  setActive(false);
  new Camera;
  new Reticle;
  new ActionDisplay;
  new TurnDisplay;
  new SelectStatDisplay;
  new HoverStatDisplay;
  new TurnCounter;

  Board *p_board = new Board;
  Hero *p_warrior = new Hero;
  p_warrior->applyKind("Warrior");
  Hero *p_hunter = new Hero;
  p_hunter->applyKind("Hunter");
  Hero *p_magician = new Hero;
  p_magician->applyKind("Magician");
  setBoard(p_board);

  const float w = p_board->getSize().getX();
  const float h = p_board->getSize().getY();
  p_warrior->moveTo(qv::Vector(w * 0.5f, h * 0.5f));
  p_hunter->moveTo(qv::Vector(w / 3, h / 3 - 1));
  p_magician->moveTo(qv::Vector(w / 3, (h + h) / 3));

  // Never on the outer ring; a drawn tile that is taken just gets no wall.
  for (int attempt = 0; attempt < WALL_ATTEMPTS; attempt++) {
    int column = rand() % (static_cast<int>(w) - 2) + 1;
    int row = rand() % (static_cast<int>(h) - 2) + 1;
    if (!p_board->getTile(column, row)->isEmpty()) continue;
    Obstacle *p_wall = new Obstacle;
    p_wall->applyKind("Wall");
    p_wall->moveTo(qv::Vector(static_cast<float>(column), static_cast<float>(row)));
  }

  GameState::getInstance().startPlayerTurn();
  switchMusic("menu music", "level music");
}

void MainMenu::returnToMenu() {
  setPosition(MENU_POSITION);
  switchMusic("level music", "menu music");
}
