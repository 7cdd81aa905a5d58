#include "Explosion.h"

#include "core/EventStep.h"
#include "graphics/Sprite.h"
#include "world/WorldManager.h"

Explosion::Explosion(qv::Vector position) : m_steps_left(1) {
  setType("Explosion");
  setSolidness(qv::SPECTRAL);
  setAltitude(3);
  if (setSprite("explosion") == 0) {
    const qv::Sprite *p_sprite = getAnimation().getSprite();
    // A slowdown of 0 steps the animation every frame, as 1 does.
    const int slowdown = p_sprite->getSlowdown() > 0 ? p_sprite->getSlowdown() : 1;
    m_steps_left = p_sprite->getFrameCount() * slowdown;
  }
  setPosition(position);
  registerInterest(qv::STEP_EVENT);
}

int Explosion::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::STEP_EVENT) return 0;
  if (--m_steps_left <= 0) qv::WorldManager::getInstance().markForDelete(this);
  return 1;
}
