// A long game played by someone pressing anything anywhere: from the title
// screen through levels, losses and Escape back to it, one random input or
// two per frame through the input manager.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "GameFixture.h"
#include "Tile.h"
#include "input/InputManager.h"

using qvtest::GameFixture;

namespace {

class SoakTest : public GameFixture {
 protected:
  // What is wrong with the board and the registries now, or "".
  std::string fault() const {
    const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
    int units = 0;
    for (int i = 0; i < all.getCount(); i++) {
      const auto *p_unit = dynamic_cast<const Entity *>(all[i]);
      if (!p_unit) continue;
      units++;
      const Tile *p_tile =
          getBoard() ? board().getTile(p_unit->getGridX(), p_unit->getGridY()) : nullptr;
      if (!p_tile || p_tile->getOccupant() != p_unit)
        return p_unit->getKind() + " at " + std::to_string(p_unit->getGridX()) + "," +
               std::to_string(p_unit->getGridY()) + " is not its tile's occupant";
    }
    const int registered =
        state().getHeroCount() + state().getEnemyCount() + state().getObstacleCount();
    if (registered == units) return "";
    return std::to_string(registered) + " registered units, " + std::to_string(units) +
           " in the world";
  }

  // One random input: mostly clicks on the board and Enter, some of every
  // key the game knows and the pointer anywhere on the screen.
  void randomInput() {
    static const qv::Keyboard::Key KEYS[] = {
        qv::Keyboard::P, qv::Keyboard::SPACE, qv::Keyboard::ENTER, qv::Keyboard::ESCAPE,
        qv::Keyboard::W, qv::Keyboard::A,     qv::Keyboard::S,     qv::Keyboard::D};
    const int choice = std::rand() % 100;
    if (choice < 45) {
      click(std::rand() % 12, std::rand() % 12,
            std::rand() % 4 == 0 ? qv::Mouse::RIGHT : qv::Mouse::LEFT);
    } else if (choice < 65) {
      qv::EventMouse move;
      move.setMouseAction(qv::MOUSE_MOVED);
      move.setMousePosition(
          qv::Vector(static_cast<float>(std::rand() % 80), static_cast<float>(std::rand() % 24)));
      qv::InputManager::getInstance().onEvent(&move);
    } else if (choice < 80) {
      key(qv::Keyboard::ENTER);
    } else if (choice < 81) {
      key(qv::Keyboard::ESCAPE);  // rare, or levels would never last to a loss
    } else {
      key(KEYS[std::rand() % 8], std::rand() % 2 ? qv::KEY_PRESSED : qv::KEY_RELEASED);
    }
  }
};

TEST_F(SoakTest, ThousandsOfRandomFramesKeepTheBoardAndTheRegistriesInStep) {
  std::srand(16);
  startLevel();
  frame();
  const int first_objects = qv::WorldManager::getInstance().getAllObjects(true).getCount();
  int levels = 1, losses = 0, titles = 0;
  for (int f = 0; f < 4000; f++) {
    const int phase = state().getPhase();
    const bool on_title = menu->isActive();
    randomInput();
    if (std::rand() % 3 == 0) randomInput();
    frame();
    losses += phase != LOSS && state().getPhase() == LOSS;
    titles += !on_title && menu->isActive();
    levels += on_title && !menu->isActive();
    ASSERT_EQ(fault(), "") << "after frame " << f;
  }
  EXPECT_GT(levels, 3);
  EXPECT_GT(losses, 1);
  EXPECT_GT(titles, 3);
  // A fresh level (its walls are drawn at random) has about what the first had.
  if (!menu->isActive()) key(qv::Keyboard::ESCAPE);
  frame();
  startLevel();
  frame();
  EXPECT_NEAR(qv::WorldManager::getInstance().getAllObjects(true).getCount(), first_objects,
              first_objects / 20);
}

}  // namespace
