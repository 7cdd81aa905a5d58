// A long game played by someone pressing anything anywhere: from the title
// screen through levels, losses and Escape back to it, one random input or
// two per frame through the input manager.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <set>
#include <string>

#include "Enemy.h"
#include "GameFixture.h"
#include "Hero.h"
#include "Obstacle.h"
#include "Tile.h"
#include "input/InputManager.h"

using qvtest::GameFixture;

// Present only in a sanitized build.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

class SoakTest : public GameFixture {
 protected:
  // What is wrong with the board and the registries now, or "".
  std::string fault() const {
    std::set<const qv::Object *> registered;
    for (int i = 0; i < state().getHeroCount(); i++) registered.insert(state().getHero(i));
    for (int i = 0; i < state().getEnemyCount(); i++) registered.insert(state().getEnemy(i));
    for (int i = 0; i < state().getObstacleCount(); i++) registered.insert(state().getObstacle(i));
    std::set<const qv::Object *> in_world;
    const qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
    for (int i = 0; i < all.getCount(); i++) {
      const std::string type = all[i]->getType();
      if (type == "Hero" || type == "Enemy" || type == "Obstacle") in_world.insert(all[i]);
    }
    if (registered != in_world)
      return std::to_string(registered.size()) + " registered units, " +
             std::to_string(in_world.size()) + " in the world";
    for (const qv::Object *p_o : in_world) {
      const auto *p_unit = static_cast<const Entity *>(p_o);
      const Tile *p_tile =
          getBoard() ? board().getTile(p_unit->getGridX(), p_unit->getGridY()) : nullptr;
      if (!p_tile || p_tile->getOccupant() != p_unit)
        return p_unit->getKind() + " at " + std::to_string(p_unit->getGridX()) + "," +
               std::to_string(p_unit->getGridY()) + " is not its tile's occupant";
    }
    return "";
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

  static std::size_t heapInUse() {
    // Under AddressSanitizer malloc is the sanitizer's, and it keeps the count.
    if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
    return mallinfo2().uordblks;
  }
  static int objectCount() {
    return qv::WorldManager::getInstance().getAllObjects(true).getCount();
  }
};

TEST_F(SoakTest, ThousandsOfRandomFramesKeepBoardRegistriesAndMemory) {
  std::srand(16);
  startLevel();
  frame();
  const int first_objects = objectCount();
  const std::size_t first_heap = heapInUse();

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
    const std::string wrong = fault();
    ASSERT_EQ(wrong, "") << "after frame " << f;
  }
  EXPECT_GT(levels, 3);
  EXPECT_GT(losses, 1);
  EXPECT_GT(titles, 3);

  // Back to a fresh level (its walls are drawn at random): the world and the
  // heap within a few percent of what the first level had.
  if (!menu->isActive()) key(qv::Keyboard::ESCAPE);
  frame();
  startLevel();
  frame();
  EXPECT_NEAR(objectCount(), first_objects, first_objects / 20);
  EXPECT_LT(heapInUse(), first_heap + first_heap / 20)
      << "heap in use: " << first_heap << " after the first level, " << heapInUse() << " now";
}

}  // namespace
