#include "Reticle.h"

#include "core/EventStep.h"
#include "core/utility.h"
#include "graphics/DisplayManager.h"
#include "input/EventMouse.h"
#include "world/WorldManager.h"

Reticle::Reticle() {
  setType("Reticle");
  registerInterest(qv::MOUSE_EVENT);
  registerInterest(qv::STEP_EVENT);
  setSolidness(qv::SPECTRAL);
  setAltitude(qv::ALTITUDE_MAX);
  qv::Box world = qv::WorldManager::getInstance().getBoundary();
  setPosition(qv::Vector(world.getHorizontal() / 2, world.getVertical() / 2));
  m_mouse_view = getPosition();
}

int Reticle::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() == qv::MOUSE_EVENT &&
      static_cast<const qv::EventMouse *>(p_e)->getMouseAction() == qv::MOUSE_MOVED) {
    m_mouse_view = static_cast<const qv::EventMouse *>(p_e)->getMousePosition();
    setPosition(qv::viewToWorld(m_mouse_view));
    return 1;
  }
  if (p_e->getType() == qv::STEP_EVENT) setPosition(qv::viewToWorld(m_mouse_view));
  return 0;
}

int Reticle::draw() {
  return qv::DisplayManager::getInstance().drawChar(getPosition(), '+', qv::RED, 0);
}
