#include "Saucer.h"

#include <cstdlib>

#include "EventNuke.h"
#include "Explosion.h"
#include "Points.h"
#include "resources.h"
#include "world/EventCollision.h"
#include "world/EventOut.h"
#include "world/WorldManager.h"

Saucer::Saucer() : Saucer("saucer", "Saucer", 10, 0.25f) {
}

Saucer::Saucer(const char *sprite_label, const char *type, int points, float speed)
    : m_points(points) {
  setType(type);
  setSprite(sprite_label);
  // SOFT: saucers fly through one another, but bullets and the ship meet them.
  setSolidness(qv::SOFT);
  setVelocity(qv::Vector(-speed, 0));
  moveToStart();
  registerInterest(NUKE_EVENT);
}

int Saucer::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() == qv::OUT_EVENT) {
    moveToStart();
    return 1;
  }
  if (p_e->getType() == NUKE_EVENT) {
    blowUp();
    return 1;
  }
  if (p_e->getType() == qv::COLLISION_EVENT) {
    const auto *p_collision = static_cast<const qv::EventCollision *>(p_e);
    qv::Object *p_other =
        p_collision->getObject1() == this ? p_collision->getObject2() : p_collision->getObject1();
    if (p_other->getType() != "Bullet") return 0;  // the ship sees to its own end
    qv::WorldManager::getInstance().markForDelete(p_other);
    blowUp();
    return 1;
  }
  return 0;
}

void Saucer::replace() const {
  new Saucer;
}

void Saucer::moveToStart() {
  const qv::Box world = qv::WorldManager::getInstance().getBoundary();
  const int rows = static_cast<int>(world.getVertical()) - 6;
  setPosition(qv::Vector(world.getHorizontal() + 4 + static_cast<float>(std::rand() % 40),
                         4 + static_cast<float>(std::rand() % rows)));
}

void Saucer::blowUp() {
  // Two bullets may hit in one frame; the first one counts.
  if (!isActive()) return;
  setActive(false);
  qv::WorldManager::getInstance().markForDelete(this);
  new Explosion(getPosition());
  playSound("explode");
  addPoints(m_points);
  replace();
}
