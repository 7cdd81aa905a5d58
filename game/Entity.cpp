#include "Entity.h"

#include "Board.h"
#include "GameState.h"
#include "Tile.h"
#include "core/LogManager.h"
#include "world/WorldManager.h"

namespace {

// The kinds of heroes and enemies; a kind applies only to units of its type.
struct Kind {
  const char *name;
  const char *type;
  int health, move_range, attack_range, damage;
  const char *active_sprite, *inactive_sprite;
};

const Kind KINDS[] = {
    {"Warrior", "Hero", 8, 2, 1, 2, "warrior-active", "warrior-inactive"},
    {"Hunter", "Hero", 6, 3, 3, 1, "hunter-active", "hunter-inactive"},
    {"Magician", "Hero", 6, 1, 4, 2, "magician-active", "magician-inactive"},
    {"Goblin", "Enemy", 2, 2, 1, 1, "goblin", "goblin"},
    {"Imp", "Enemy", 1, 1, 1, 1, "imp", "imp"},
    {"Deathwing", "Enemy", 2, 3, 2, 1, "deathwing", "deathwing"},
    {"Ogre", "Enemy", 5, 1, 1, 2, "ogre", "ogre"},
};

qv::Vector gridVector(int column, int row) {
  return qv::Vector(static_cast<float>(column), static_cast<float>(row));
}

}  // namespace

Entity::Entity() {
  setType("Entity");
  setAltitude(3);
  setSprite(m_active_sprite);
  setPosition(qv::Vector(0, 0));
  setGridPosition(gridVector(m_column, m_row));
}

Entity::~Entity() {
  Board *p_board = getBoard();
  if (!p_board) return;
  // Only its own tile: a unit never placed, or one of a level left behind
  // while the next one starts, stands on a tile another unit holds.
  Tile *p_tile = p_board->getTile(m_column, m_row);
  if (p_tile && p_tile->getOccupant() == this) p_tile->clearOccupant();
  if (p_board->getSelected() == this) p_board->select(nullptr);
}

int Entity::getGridX() const {
  return m_column;
}
int Entity::getGridY() const {
  return m_row;
}
int Entity::getHealth() const {
  return m_health;
}
int Entity::getMoveRange() const {
  return m_move_range;
}
int Entity::getAttackRange() const {
  return m_attack_range;
}
int Entity::getDamage() const {
  return m_damage;
}
std::string Entity::getKind() const {
  return m_kind;
}
bool Entity::isKillable() const {
  return m_killable;
}
bool Entity::isDead() const {
  return m_dead;
}
bool Entity::canAct() const {
  return false;
}

void Entity::setHealth(int value) {
  m_health = value;
  if (m_killable && value < 1) {
    qv::WorldManager::getInstance().markForDelete(this);
    m_dead = true;
  }
}

void Entity::setGridPosition(qv::Vector position) {
  m_column = static_cast<int>(position.getX());
  m_row = static_cast<int>(position.getY());
  Board *p_board = getBoard();
  if (!p_board) return;
  Tile *p_tile = p_board->getTile(m_column, m_row);
  if (!p_tile) return;
  setPosition(p_tile->getPosition());
  if (p_board->getSelected() == this) p_board->showMoveRange(p_tile, m_move_range);
}

int Entity::moveTo(qv::Vector position) {
  Board *p_board = getBoard();
  if (!p_board) return -1;
  Tile *p_to =
      p_board->getTile(static_cast<int>(position.getX()), static_cast<int>(position.getY()));
  if (!p_to || !p_to->isEmpty()) return -1;
  Tile *p_from = p_board->getTile(m_column, m_row);
  if (p_from && p_from->getOccupant() == this) p_from->clearOccupant();
  p_to->setOccupant(this);
  setGridPosition(position);
  if (p_to->isBase() && getType() == "Enemy") GameState::getInstance().setPhase(LOSS);
  return 0;
}

void Entity::applyKind(std::string name) {
  m_kind = name;
  if (getType() == "Obstacle") {
    m_move_range = 0;
    if (name == "Wall") {
      m_health = 2;
      setSprites("wall", "wall");
    }
  } else {
    for (const Kind &kind : KINDS) {
      if (name != kind.name || getType() != kind.type) continue;
      m_health = kind.health;
      setRanges(kind.move_range, kind.attack_range);
      m_damage = kind.damage;
      setSprites(kind.active_sprite, kind.inactive_sprite);
    }
  }
  setSprite(m_active_sprite);
}

void Entity::attack(Entity *) {
  qv::LogManager::getInstance().writeLog("This entity can't attack");
}

void Entity::setKind(std::string kind) {
  m_kind = kind;
}

void Entity::setSprites(std::string active, std::string inactive) {
  m_active_sprite = active;
  m_inactive_sprite = inactive;
}

std::string Entity::getActiveSprite() const {
  return m_active_sprite;
}
std::string Entity::getInactiveSprite() const {
  return m_inactive_sprite;
}

void Entity::setRanges(int move_range, int attack_range) {
  m_move_range = move_range;
  m_attack_range = attack_range;
}

void Entity::setKillable(bool killable) {
  m_killable = killable;
}
