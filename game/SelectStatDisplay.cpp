#include "SelectStatDisplay.h"

#include "Board.h"
#include "Entity.h"
#include "GameState.h"
#include "MainMenu.h"
#include "core/EventStep.h"
#include "input/EventKeyboard.h"
#include "world/WorldManager.h"

namespace {

const char *const NOTHING_SELECTED = "LEFT CLICK to select. ENTER to end player turn.";
const char *const DESELECT = "RIGHT CLICK to deselect.";
const char *const TURN_OVER =
    "RIGHT CLICK to deselect.\n\nThis Hero's turn is over.\n\nENTER to end player turn.";

// What Space would do for a hero of this kind that can still act.
std::string abilityText(const std::string &kind) {
  if (kind == "Warrior")
    return "RIGHT CLICK to deselect.\n\nSPACE to end the Warrior's turn but gain +1 Action for "
           "each adjacent Enemy.";
  if (kind == "Magician")
    return "RIGHT CLICK to deselect.\n\nSPACE to summon a Wall on the tile to the right, end the "
           "Magician's turn, and gain +1 Action.";
  if (kind == "Hunter")
    return "RIGHT CLICK to deselect.\n\nSPACE to end the hunter's turn, and gain +1 Action if "
           "there is a target enemy not in melee.";
  return "RIGHT CLICK to deselect.\n\nSPACE to end Hero's turn but gain +1 Action.";
}

}  // namespace

SelectStatDisplay::SelectStatDisplay() : m_p_text_box(new qv::TextBox) {
  setLocation(qv::BOTTOM_LEFT);
  setViewString("");
  setColor(qv::CYAN);
  registerInterest(qv::STEP_EVENT);
  registerInterest(qv::KEYBOARD_EVENT);
  m_p_text_box->setPosition(qv::Vector(8, 12));
  m_p_text_box->setVisible(false);
  m_p_text_box->setColor(qv::CYAN);
  m_p_text_box->setSize(qv::Vector(10, 15));
}

qv::TextBox *SelectStatDisplay::getTextBox() const {
  return m_p_text_box;
}

int SelectStatDisplay::eventHandler(const qv::Event *p_e) {
  if (qv::ViewObject::eventHandler(p_e) == 1) return 1;
  if (p_e->getType() == qv::STEP_EVENT) return refresh();
  if (p_e->getType() != qv::KEYBOARD_EVENT) return 0;
  const auto *p_key = static_cast<const qv::EventKeyboard *>(p_e);
  bool pressed = p_key->getKeyboardAction() == qv::KEY_PRESSED;
  if (p_key->getKey() == qv::Keyboard::ENTER) {
    if (pressed && GameState::getInstance().getPhase() == PLAYER_TURN)
      GameState::getInstance().runEnemyTurn();
    return 1;
  }
  if (p_key->getKey() == qv::Keyboard::ESCAPE && pressed) {
    leaveLevel();
    return 1;
  }
  return 0;
}

int SelectStatDisplay::refresh() {
  Board *p_board = getBoard();
  if (!p_board) return -1;
  Entity *p_unit = p_board->getSelected();
  if (!p_unit) {
    setViewString("");
    m_p_text_box->clearText();
    m_p_text_box->setText(NOTHING_SELECTED);
    m_p_text_box->setSize(qv::Vector(10, 5));
    setVisible(false);
    m_p_text_box->setVisible(true);
    return 1;
  }
  setViewString(p_unit->getKind() + " | Health: ");
  setValue(p_unit->getHealth());
  setVisible(true);
  m_p_text_box->setSize(qv::Vector(10, 15));
  m_p_text_box->clearText();
  if (p_unit->getType() != "Hero")
    m_p_text_box->setText(DESELECT);
  else if (!p_unit->canAct())
    m_p_text_box->setText(TURN_OVER);
  else
    m_p_text_box->setText(abilityText(p_unit->getKind()));
  m_p_text_box->setVisible(true);
  return 1;
}

// The units go in the same frame as their tiles; the board forgets each tile
// as it goes, so no unit reaches a destroyed one. The board itself stays
// until the next level replaces it.
void SelectStatDisplay::leaveLevel() {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  qv::ObjectList all = world.getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++) {
    qv::Object *p_o = all[i];
    if (p_o->getType() == "MainMenu") {
      p_o->setActive(true);
      static_cast<MainMenu *>(p_o)->returnToMenu();
    } else if (p_o != this) {
      // Inactive, the level takes no more input in the frame that is left
      // of it: a click or Enter there would run an enemy turn whose new
      // enemies outlive the level.
      world.markForDelete(p_o);
      p_o->setActive(false);
    }
  }
  GameState::getInstance().setPhase(PLAYER_TURN);
  world.markForDelete(this);
  setActive(false);
}
