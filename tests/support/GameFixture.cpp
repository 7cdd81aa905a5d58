#include "GameFixture.h"

#include <unistd.h>

#include "ActionDisplay.h"
#include "Enemy.h"
#include "EventPlayerTurn.h"
#include "Hero.h"
#include "HoverStatDisplay.h"
#include "Obstacle.h"
#include "SelectStatDisplay.h"
#include "Tile.h"
#include "TurnCounter.h"
#include "TurnDisplay.h"
#include "assets.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/utility.h"
#include "graphics/Sprite.h"
#include "input/InputManager.h"
#include "world/WorldManager.h"

namespace qvtest {

namespace {

const std::string UNIT_KINDS = "WHMgido#";
const char *const KIND_NAMES[] = {"Warrior", "Hunter",    "Magician", "Goblin",
                                  "Imp",     "Deathwing", "Ogre",     "Wall"};

std::string shown(const qv::ViewObject *p_v) {
  if (!p_v->isVisible()) return "-";
  std::string text;
  for (char ch : p_v->displayText())
    if (ch != ' ' || (!text.empty() && text.back() != ' ')) text += ch;
  if (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

}  // namespace

std::string rows(int n, const std::string &row) {
  std::string text;
  for (int i = 0; i < n; i++) text += row;
  return text;
}

void GameFixture::SetUp() {
  EngineFixture::SetUp();
  qv::WorldManager::getInstance().setBoundary(qv::Box(qv::Vector(0, 0), 160, 48));
  // The asset paths are relative to the program's folder.
  char cwd[4096];
  ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
  ASSERT_EQ(chdir(QV_RUN_DIR), 0);
  loadAssets();
  ASSERT_EQ(chdir(cwd), 0);
  menu = new MainMenu;
}

void GameFixture::key(qv::Keyboard::Key key, qv::KeyboardAction action) {
  qv::EventKeyboard event;
  event.setKey(key);
  event.setKeyboardAction(action);
  qv::InputManager::getInstance().onEvent(&event);
}

void GameFixture::hover(int column, int row) {
  qv::EventMouse event;
  event.setMouseAction(qv::MOUSE_MOVED);
  event.setMousePosition(qv::worldToView(  // the tile's centre
      qv::Vector(static_cast<float>(20 + 5 * column), static_cast<float>(8 + 3 * row))));
  qv::InputManager::getInstance().onEvent(&event);
}

void GameFixture::click(int column, int row, qv::Mouse::Button button) {
  hover(column, row);
  clickHere(button);
}

void GameFixture::clickHere(qv::Mouse::Button button) {
  qv::EventMouse event;
  event.setMouseAction(qv::MOUSE_CLICKED);
  event.setMouseButton(button);
  qv::InputManager::getInstance().onEvent(&event);
}

void GameFixture::frame() {
  qv::EventStep step;
  qv::GameManager::getInstance().onEvent(&step);
  qv::WorldManager::getInstance().update();
}

void GameFixture::layout(const std::string &picture) {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  for (int c = 0; c < 12; c++)
    for (int r = 0; r < 12; r++)
      if (Entity *p_unit = unitAt(c, r)) world.markForDelete(p_unit);
  frame();
  for (int r = 0; r < 12; r++) {
    for (int c = 0; c < 12; c++) {
      size_t kind = UNIT_KINDS.find(picture[static_cast<size_t>(r * 13 + c)]);
      if (kind == std::string::npos) continue;
      Entity *p_unit = kind < 3   ? static_cast<Entity *>(new Hero)
                       : kind < 7 ? static_cast<Entity *>(new Enemy)
                                  : static_cast<Entity *>(new Obstacle);
      p_unit->applyKind(KIND_NAMES[kind]);
      p_unit->moveTo(qv::Vector(static_cast<float>(c), static_cast<float>(r)));
    }
  }
  EventPlayerTurn wake;
  world.onEvent(&wake);
}

Entity *GameFixture::unitAt(int column, int row) const {
  Tile *p_tile = board().getTile(column, row);
  return p_tile ? p_tile->getOccupant() : nullptr;
}

std::string GameFixture::units() const {
  std::string text;
  for (int r = 0; r < 12; r++) {
    for (int c = 0; c < 12; c++) {
      const Entity *p_unit = unitAt(c, r);
      size_t k = 0;
      while (p_unit && k < UNIT_KINDS.size() && p_unit->getKind() != KIND_NAMES[k]) k++;
      text += !p_unit ? '.' : k < UNIT_KINDS.size() ? UNIT_KINDS[k] : '?';
    }
    text += '\n';
  }
  return text;
}

std::string GameFixture::colours() const {
  std::string text;
  for (int r = 0; r < 12; r++) {
    std::string row;
    for (int c = 0; c < 12; c++) row += spriteOf(board().getTile(c, r)).at(5);
    if (row != "cwwwwwwwwwww") text += std::to_string(r) + " " + row + "\n";
  }
  return text;
}

std::string GameFixture::hud() {
  frame();
  return shown(find<TurnDisplay>()) + " / " + shown(find<TurnCounter>()) + " / " +
         shown(find<ActionDisplay>()) + " / " + shown(find<SelectStatDisplay>()) + " / " +
         shown(find<HoverStatDisplay>()) + " / " +
         find<SelectStatDisplay>()->getTextBox()->getText();
}

std::string GameFixture::spriteOf(const qv::Object *p_o) const {
  const qv::Sprite *p_sprite = p_o->getAnimation().getSprite();
  return p_sprite ? p_sprite->getLabel() : "";
}

}  // namespace qvtest
