#include "GameOver.h"

#include "core/EventStep.h"
#include "resources.h"
#include "world/ObjectList.h"
#include "world/WorldManager.h"

GameOver::GameOver() : m_steps_left(GAME_OVER_STEPS) {
  setType("GameOver");
  setSprite("gameover");
  setSolidness(qv::SPECTRAL);
  setAltitude(qv::ALTITUDE_MAX);
  const qv::Box world = qv::WorldManager::getInstance().getBoundary();
  setPosition(qv::Vector(world.getHorizontal() / 2, world.getVertical() / 2));
  registerInterest(qv::STEP_EVENT);
  playSound("game over");
}

int GameOver::eventHandler(const qv::Event *p_e) {
  if (p_e->getType() != qv::STEP_EVENT) return 0;
  if (--m_steps_left > 0) return 1;
  // Everything of the game goes, this screen too; the title screen stays.
  qv::WorldManager &world_manager = qv::WorldManager::getInstance();
  const qv::ObjectList all = world_manager.getAllObjects(true);
  for (int i = 0; i < all.getCount(); i++) {
    if (all[i]->getType() == "GameStart")
      all[i]->setActive(true);
    else
      world_manager.markForDelete(all[i]);
  }
  return 1;
}
