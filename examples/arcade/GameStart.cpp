#include "GameStart.h"

#include "Drone.h"
#include "Points.h"
#include "Saucer.h"
#include "Ship.h"
#include "core/GameManager.h"
#include "graphics/ViewObject.h"
#include "input/EventKeyboard.h"
#include "resources/ResourceManager.h"
#include "world/WorldManager.h"

namespace {
const int SAUCERS = 12;
const int DRONES = 2;

void playStartMusic(bool on) {
  qv::Music *p_music = qv::ResourceManager::getInstance().getMusic("start music");
  if (!p_music) return;
  if (on)
    p_music->play(true);
  else
    p_music->stop();
}
}  // namespace

GameStart::GameStart() {
  setType("GameStart");
  setSprite("gamestart");
  setSolidness(qv::SPECTRAL);
  const qv::Box world = qv::WorldManager::getInstance().getBoundary();
  setPosition(qv::Vector(world.getHorizontal() / 2, world.getVertical() / 2));
  registerInterest(qv::KEYBOARD_EVENT);
  playStartMusic(true);
}

int GameStart::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::KEYBOARD_EVENT) return 0;
  const auto *p_keyboard = static_cast<const qv::EventKeyboard *>(p_e);
  if (p_keyboard->getKeyboardAction() != qv::KEY_PRESSED) return 0;
  if (p_keyboard->getKey() == qv::Keyboard::P) start();
  if (p_keyboard->getKey() == qv::Keyboard::Q) qv::GameManager::getInstance().setGameOver();
  return 1;
}

int GameStart::setActive(bool active) {
  if (active && !isActive()) playStartMusic(true);
  return Object::setActive(active);
}

void GameStart::start() {
  setActive(false);
  playStartMusic(false);
  new Ship;
  new Points;
  auto *p_nukes = new qv::ViewObject;
  p_nukes->setViewString(NUKES);
  p_nukes->setValue(1);
  p_nukes->setLocation(qv::TOP_LEFT);
  for (int i = 0; i < SAUCERS; i++) new Saucer;
  for (int i = 0; i < DRONES; i++) new Drone;
}
