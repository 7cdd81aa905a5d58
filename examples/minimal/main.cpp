// A first game: W and S move a ship, Space counts shots, Q quits.
#include "core/GameManager.h"
#include "graphics/EventView.h"
#include "graphics/ViewObject.h"
#include "input/EventKeyboard.h"
#include "resources/ResourceManager.h"
#include "world/WorldManager.h"

class Ship : public qv::Object {
 public:
  Ship() {
    setSprite("ship");  // loaded before the ship is made
    setPosition(qv::Vector(10, 12));
    registerInterest(qv::KEYBOARD_EVENT);
  }

  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() != qv::KEYBOARD_EVENT) return 0;
    const auto *p_key = static_cast<const qv::EventKeyboard *>(p_e);
    qv::WorldManager &world = qv::WorldManager::getInstance();
    if (p_key->getKeyboardAction() == qv::KEY_HELD && p_key->getKey() == qv::Keyboard::W)
      world.moveObject(this, getPosition() + qv::Vector(0, -1));
    if (p_key->getKeyboardAction() == qv::KEY_HELD && p_key->getKey() == qv::Keyboard::S)
      world.moveObject(this, getPosition() + qv::Vector(0, 1));
    if (p_key->getKeyboardAction() == qv::KEY_PRESSED && p_key->getKey() == qv::Keyboard::SPACE) {
      qv::EventView shot("Shots", 1, true);  // adds 1 to every view object "Shots"
      world.onEvent(&shot);
    }
    if (p_key->getKey() == qv::Keyboard::Q) qv::GameManager::getInstance().setGameOver();
    return 1;
  }
};

int main() {
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.startUp() != 0) {  // reads qv-config.txt, opens the window
    game_manager.shutDown();
    return 1;
  }
  qv::ResourceManager::getInstance().loadSprite("sprites/ship-spr.txt", "ship");
  new Ship;  // the world owns it from here on
  auto *p_shots = new qv::ViewObject;
  p_shots->setViewString("Shots");
  p_shots->setLocation(qv::TOP_RIGHT);
  game_manager.run();  // frame after frame, until game over
  game_manager.shutDown();
  return 0;
}
