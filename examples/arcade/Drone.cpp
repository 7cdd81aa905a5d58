#include "Drone.h"

#include "core/EventStep.h"

namespace {
const int WEAVE_STEPS = 12;  // frames between changes of vertical direction
}

Drone::Drone() : Saucer("drone", "Drone", 25, 0.4f), m_steps(0) {
  setVelocity(getVelocity() + qv::Vector(0, 0.2f));
  registerInterest(qv::STEP_EVENT);
}

int Drone::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::STEP_EVENT) return Saucer::eventHandler(p_e);
  if (++m_steps == WEAVE_STEPS) {
    m_steps = 0;
    const qv::Vector velocity = getVelocity();
    setVelocity(qv::Vector(velocity.getX(), -velocity.getY()));
  }
  return 1;
}

void Drone::replace() const {
  new Drone;
}
