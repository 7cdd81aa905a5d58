#include "Tile.h"

#include <cstdlib>

#include "Board.h"
#include "Entity.h"
#include "GameState.h"
#include "assets.h"
#include "core/LogManager.h"
#include "core/utility.h"
#include "input/EventMouse.h"
#include "resources/ResourceManager.h"

namespace {

const char *const TILE_YELLOW = "tile-yellow";
const char *const TILE_GREEN = "tile-green";
const char *const TILE_RED = "tile-red";
const char *const MOVE_SOUNDS[] = {"move1", "move2", "move3"};

}  // namespace

Tile::Tile() {
  setType("Tile");
  setSolidness(qv::SPECTRAL);
  setAltitude(0);
  setSprite(m_base_label);
  setPosition(qv::Vector(10, 10));
  registerInterest(qv::MOUSE_EVENT);
}

Tile::~Tile() {
  if (Board *p_board = getBoard()) p_board->removeTile(this);
}

int Tile::getGridX() const {
  return m_column;
}
int Tile::getGridY() const {
  return m_row;
}
Entity *Tile::getOccupant() const {
  return m_p_occupant;
}
bool Tile::isEmpty() const {
  return m_p_occupant == nullptr;
}
bool Tile::isBase() const {
  return m_base;
}
bool Tile::isHovered() const {
  return m_hovered;
}
bool Tile::inMoveRange() const {
  return m_in_move_range;
}
bool Tile::inAttackRange() const {
  return m_in_attack_range;
}

void Tile::setGridPosition(qv::Vector position) {
  m_column = static_cast<int>(position.getX());
  m_row = static_cast<int>(position.getY());
}

void Tile::setOccupant(Entity *p_entity) {
  m_p_occupant = p_entity;
}
void Tile::clearOccupant() {
  m_p_occupant = nullptr;
}

void Tile::setBase(bool flag) {
  m_base = flag;
  m_base_label = flag ? "tile-cyan" : "tile-white";
  if (!m_hovered) setSprite(m_base_label);
}

void Tile::setHovered(bool flag) {
  m_hovered = flag;
  if (flag)
    setSprite(TILE_YELLOW);
  else
    setSprite(m_in_move_range || m_in_attack_range ? m_highlight_label : m_base_label);
}

// Follows the selected unit's side, and ignores the hovered flag: a hovered
// tile recoloured here shows no yellow until the mouse enters a tile again.
void Tile::setMoveHighlight(bool flag) {
  Board *p_board = getBoard();
  Entity *p_selected = p_board ? p_board->getSelected() : nullptr;
  if (p_selected && p_selected->getType() == "Hero") m_highlight_label = TILE_GREEN;
  if (p_selected && p_selected->getType() == "Enemy") m_highlight_label = TILE_RED;
  m_in_move_range = flag;
  setSprite(flag ? m_highlight_label : m_base_label);
}

// Clearing shows nothing new: select(none) has already shown the base colour.
void Tile::setAttackHighlight(bool flag) {
  if (m_p_occupant) m_highlight_label = m_p_occupant->getType() == "Hero" ? TILE_GREEN : TILE_RED;
  m_in_attack_range = flag;
  if (flag) setSprite(m_highlight_label);
}

int Tile::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::MOUSE_EVENT) return 0;
  const auto *p_mouse = static_cast<const qv::EventMouse *>(p_e);
  if (p_mouse->getMouseAction() == qv::MOUSE_MOVED) {
    qv::Vector world = qv::viewToWorld(p_mouse->getMousePosition());
    int mx = static_cast<int>(world.getX());
    int my = static_cast<int>(world.getY());
    float x = getPosition().getX();
    float y = getPosition().getY();
    if (mx > x - 2.5f && mx < x + 2.5f && my > y - 1.5f && my < y + 1.5f && getBoard())
      getBoard()->setHovered(this);
    return 1;
  }
  if (p_mouse->getMouseAction() != qv::MOUSE_CLICKED || !m_hovered ||
      GameState::getInstance().getPhase() != PLAYER_TURN)
    return 0;
  Board *p_board = getBoard();
  if (p_mouse->getMouseButton() == qv::Mouse::LEFT) {
    leftClick();
  } else if (p_mouse->getMouseButton() == qv::Mouse::RIGHT) {
    if (p_board && p_board->getSelected()) p_board->select(nullptr);
  }
  return 0;
}

void Tile::leftClick() {
  Board *p_board = getBoard();
  if (!p_board) return;
  qv::LogManager::getInstance().writeLog("boardNotNull");
  GameState &state = GameState::getInstance();
  Entity *p_selected = p_board->getSelected();
  if (isEmpty()) {
    if (!p_selected || state.getActions() < 1 || p_selected->getType() != "Hero" ||
        !p_selected->canAct() || !m_in_move_range)
      return;
    if (p_selected->moveTo(qv::Vector(static_cast<float>(m_column), static_cast<float>(m_row))) !=
        0)
      return;
    state.spendActions(1);  // the last action runs the whole enemy turn here
    playSound(MOVE_SOUNDS[rand() % 3]);
    p_board->select(nullptr);
  } else if (!p_selected) {
    p_board->select(m_p_occupant);
  } else if (p_selected->getType() == "Hero" && m_in_attack_range && state.getActions() >= 1 &&
             p_selected->canAct()) {
    p_selected->attack(m_p_occupant);
  }
}
