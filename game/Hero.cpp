#include "Hero.h"

#include <cstdlib>

#include "Board.h"
#include "EventPlayerTurn.h"
#include "GameState.h"
#include "Obstacle.h"
#include "Tile.h"
#include "assets.h"
#include "core/LogManager.h"
#include "input/EventKeyboard.h"

namespace {

const char *const ATTACK_SOUNDS[] = {"attack1", "attack2", "attack3"};

void writeLog(const char *text) {
  qv::LogManager::getInstance().writeLog("%s", text);
}

}  // namespace

Hero::Hero() {
  setType("Hero");
  setKind("Hero");
  setSprites("hero-active", "hero-inactive");
  setSprite("hero-active");
  registerInterest(qv::KEYBOARD_EVENT);
  registerInterest(PLAYERTURN_EVENT);
  setKillable(true);
  GameState::getInstance().addHero(this);
}

Hero::~Hero() {
  GameState::getInstance().removeHero(this);
}

bool Hero::canAct() const {
  return m_can_act_now;
}

void Hero::attack(Entity *p_target) {
  if (p_target->getType() == "Hero" || !p_target->isKillable()) return;
  Board *p_board = getBoard();
  for (Entity *p_unit : {static_cast<Entity *>(this), p_target})
    if (Tile *p_tile = p_board->getTile(p_unit->getGridX(), p_unit->getGridY()))
      p_tile->setAttackHighlight(false);
  p_target->setHealth(p_target->getHealth() - getDamage());
  p_board->select(nullptr);
  GameState::getInstance().spendActions(1);  // the last action runs the enemy turn here
  playSound(ATTACK_SOUNDS[rand() % 3]);
}

int Hero::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() == PLAYERTURN_EVENT) {
    m_can_act_now = true;
    setSprite(getActiveSprite());
    return 0;
  }
  if (p_e->getType() != qv::KEYBOARD_EVENT) return 0;
  const auto *p_key = static_cast<const qv::EventKeyboard *>(p_e);
  Board *p_board = getBoard();
  if (p_key->getKey() != qv::Keyboard::SPACE || p_key->getKeyboardAction() != qv::KEY_PRESSED ||
      !p_board || p_board->getSelected() != this ||
      GameState::getInstance().getPhase() != PLAYER_TURN || !m_can_act_now)
    return 1;
  int gain = abilityGain();
  if (gain < 0) return 1;
  GameState &state = GameState::getInstance();
  state.setActions(state.getActions() + gain);
  playSound("ability");
  m_can_act_now = false;
  setSprite(getInactiveSprite());
  p_board->select(nullptr);
  return 1;
}

int Hero::abilityGain() {
  std::string kind = getKind();
  if (kind == "Warrior") return warriorGain();
  if (kind == "Magician") return magicianGain();
  if (kind == "Hunter") return hunterGain();
  return 1;
}

// One action per adjacent enemy; walls and heroes do not count.
int Hero::warriorGain() {
  writeLog("Warrior Ability");
  Board *p_board = getBoard();
  Tile *p_here = p_board->getTile(getGridX(), getGridY());
  int count = 0;
  for (int direction = 1; direction <= 4; direction++) {
    Tile *p_tile = p_board->getNeighbour(p_here, direction);
    writeLog("Checking Neighbour Tile");
    if (!p_tile) continue;
    writeLog("Tile Not Null");
    if (p_tile->isEmpty()) continue;
    writeLog("Clear tile");
    if (p_tile->getOccupant()->getType() == "Enemy") {
      writeLog("Enemy");
      count++;
    }
  }
  return count > 0 ? count : -1;
}

// A wall on the free tile to the right, an obstacle from this moment on.
int Hero::magicianGain() {
  Board *p_board = getBoard();
  Tile *p_right = p_board->getNeighbour(p_board->getTile(getGridX(), getGridY()), 2);
  if (!p_right || !p_right->isEmpty()) return -1;
  Obstacle *p_wall = new Obstacle;
  p_wall->applyKind("Wall");
  p_wall->moveTo(
      qv::Vector(static_cast<float>(p_right->getGridX()), static_cast<float>(p_right->getGridY())));
  return 1;
}

// Shooting from a distance: an enemy in reach (the selected Hunter's red
// tiles) and none adjacent. Walls are no targets.
int Hero::hunterGain() {
  Board *p_board = getBoard();
  Tile *p_here = p_board->getTile(getGridX(), getGridY());
  bool in_melee = false;
  bool has_target = false;
  qv::Vector size = p_board->getSize();
  for (int c = 0; c < size.getX(); c++) {
    for (int r = 0; r < size.getY(); r++) {
      Tile *p_tile = p_board->getTile(c, r);
      if (!p_tile || p_tile->isEmpty() || p_tile->getOccupant()->getType() != "Enemy") continue;
      if (p_board->manhattan(p_tile, p_here) == 1) in_melee = true;
      if (p_tile->inAttackRange()) has_target = true;
    }
  }
  return in_melee || !has_target ? -1 : 1;
}
