#include "Bullet.h"

#include "world/EventOut.h"
#include "world/WorldManager.h"

Bullet::Bullet(qv::Vector ship_position) {
  setType("Bullet");
  setSprite("bullet");
  // SOFT: it passes through other bullets but still meets the saucers.
  setSolidness(qv::SOFT);
  setPosition(ship_position + qv::Vector(6, 0));
  // One cell a frame: never more than a saucer's width, so none is jumped.
  setVelocity(qv::Vector(1, 0));
}

int Bullet::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::OUT_EVENT) return 0;
  qv::WorldManager::getInstance().markForDelete(this);
  return 1;
}
