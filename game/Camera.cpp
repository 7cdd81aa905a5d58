#include "Camera.h"

#include "core/EventStep.h"
#include "input/EventKeyboard.h"
#include "world/WorldManager.h"

Camera::Camera() {
  setType("Camera");
  setSolidness(qv::SPECTRAL);
  registerInterest(qv::KEYBOARD_EVENT);
  registerInterest(qv::STEP_EVENT);
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.setViewFollowing(this);
  world.moveObject(this, qv::Vector(42, 24));
}

Camera::~Camera() {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.setViewFollowing(nullptr);
  world.setViewPosition(qv::Vector(40, 12));
}

// A press starts a drift and its release takes it back, so a key pressed
// before the level began leaves a drift the other way once released.
int Camera::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() == qv::STEP_EVENT) {
    qv::Vector pos = getPosition();
    qv::WorldManager::getInstance().moveObject(
        this,
        qv::Vector(pos.getX() + static_cast<float>(m_dx), pos.getY() + static_cast<float>(m_dy)));
    return 1;
  }
  if (p_e->getType() != qv::KEYBOARD_EVENT) return 0;
  const auto *p_key = static_cast<const qv::EventKeyboard *>(p_e);
  int sign = 0;
  if (p_key->getKeyboardAction() == qv::KEY_PRESSED) sign = 1;
  if (p_key->getKeyboardAction() == qv::KEY_RELEASED) sign = -1;
  switch (p_key->getKey()) {
    case qv::Keyboard::A:
      m_dx -= 2 * sign;
      break;
    case qv::Keyboard::D:
      m_dx += 2 * sign;
      break;
    case qv::Keyboard::S:
      m_dy += sign;
      break;
    case qv::Keyboard::W:
      m_dy -= sign;
      break;
    default:
      break;
  }
  return 1;
}
