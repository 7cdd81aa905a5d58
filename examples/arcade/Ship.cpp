#include "Ship.h"

#include "Bullet.h"
#include "EventNuke.h"
#include "Explosion.h"
#include "GameOver.h"
#include "core/EventStep.h"
#include "graphics/EventView.h"
#include "resources.h"
#include "world/EventCollision.h"
#include "world/WorldManager.h"

namespace {
const int MOVE_FRAMES = 2;  // frames between moves while a key is held
const int FIRE_FRAMES = 8;  // frames between shots
}  // namespace

Ship::Ship() : m_move_wait(0), m_fire_wait(0), m_nukes(1) {
  setType("Ship");
  setSprite("ship");
  const qv::Box world = qv::WorldManager::getInstance().getBoundary();
  setPosition(qv::Vector(7, world.getVertical() / 2));
  registerInterest(qv::KEYBOARD_EVENT);
  registerInterest(qv::STEP_EVENT);
}

int Ship::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() == qv::KEYBOARD_EVENT) {
    keyboard(static_cast<const qv::EventKeyboard *>(p_e));
    return 1;
  }
  if (p_e->getType() == qv::STEP_EVENT) {
    if (m_move_wait > 0) m_move_wait--;
    if (m_fire_wait > 0) m_fire_wait--;
    return 1;
  }
  if (p_e->getType() == qv::COLLISION_EVENT) {
    const auto *p_collision = static_cast<const qv::EventCollision *>(p_e);
    const qv::Object *p_other =
        p_collision->getObject1() == this ? p_collision->getObject2() : p_collision->getObject1();
    if (p_other->getType() == "Saucer" || p_other->getType() == "Drone") end();
    return 1;
  }
  return 0;
}

void Ship::keyboard(const qv::EventKeyboard *p_keyboard) {
  // The first frame of a held key brings KEY_PRESSED and KEY_HELD together;
  // the waits keep that from moving or firing twice.
  const qv::KeyboardAction action = p_keyboard->getKeyboardAction();
  if (action == qv::KEY_RELEASED) return;
  switch (p_keyboard->getKey()) {
    case qv::Keyboard::W:
    case qv::Keyboard::UP_ARROW:
      move(-1);
      break;
    case qv::Keyboard::S:
    case qv::Keyboard::DOWN_ARROW:
      move(+1);
      break;
    case qv::Keyboard::SPACE:
      fire();
      break;
    case qv::Keyboard::ENTER:
      if (action == qv::KEY_PRESSED) nuke();
      break;
    case qv::Keyboard::Q:
      if (action == qv::KEY_PRESSED) end();
      break;
    default:
      break;
  }
}

void Ship::move(float dy) {
  if (m_move_wait > 0) return;
  m_move_wait = MOVE_FRAMES;
  // Rows 0 to 2 belong to the displays.
  const float y = getPosition().getY() + dy;
  const qv::Box world = qv::WorldManager::getInstance().getBoundary();
  if (y < 4 || y > world.getVertical() - 2) return;
  qv::WorldManager::getInstance().moveObject(this, qv::Vector(getPosition().getX(), y));
}

void Ship::fire() {
  if (m_fire_wait > 0) return;
  m_fire_wait = FIRE_FRAMES;
  new Bullet(getPosition());
  playSound("fire");
}

void Ship::nuke() {
  if (m_nukes == 0) return;
  m_nukes--;
  qv::EventView nukes_left(NUKES, -1, true);
  qv::WorldManager::getInstance().onEvent(&nukes_left);
  playSound("nuke");
  EventNuke nuke;
  qv::WorldManager::getInstance().onEvent(&nuke);
}

void Ship::end() {
  if (!isActive()) return;
  setActive(false);
  qv::WorldManager::getInstance().markForDelete(this);
  new Explosion(getPosition());
  playSound("explode");
  new GameOver;
}
