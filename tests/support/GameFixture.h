#ifndef QV_TEST_GAME_FIXTURE_H
#define QV_TEST_GAME_FIXTURE_H

#include <string>

#include "Board.h"
#include "EngineFixture.h"
#include "Entity.h"
#include "GameState.h"
#include "MainMenu.h"
#include "input/EventKeyboard.h"
#include "input/EventMouse.h"
#include "world/WorldManager.h"

namespace qvtest {

// The game as the program starts it (headless, random seed 1, the shipped
// assets, the title screen), played through keyboard and mouse events handed
// to the input manager exactly as it delivers them. Boards are read and set
// as 12 lines of 12 characters, one per row: W H M heroes, g i d o enemies
// (Goblin, Imp, Deathwing, Ogre), # walls, . empty.
// n copies of a row of a board picture ("............" unless given).
std::string rows(int n, const std::string &row = "............\n");

class GameFixture : public EngineFixture {
 protected:
  void SetUp() override;

  // Player input.
  void key(qv::Keyboard::Key key, qv::KeyboardAction action = qv::KEY_PRESSED);
  void hover(int column, int row);  // the pointer moves onto a tile's centre
  void click(int column, int row, qv::Mouse::Button button = qv::Mouse::LEFT);
  void clickHere(qv::Mouse::Button button = qv::Mouse::LEFT);  // wherever the pointer is
  // The rest of a frame: the step event, then the world's update, which
  // deletes what was marked.
  void frame();
  // Replaces every unit of the level with those of a picture (enemies are
  // created row by row, left to right: that is their acting order) and
  // wakes the heroes.
  void layout(const std::string &picture);

  // Pictures.
  std::string units() const;
  // Tile colours by their sprite's first letter after "tile-" (w y c g r):
  // the rows other than the plain cyan base column and white, each after its
  // number.
  std::string colours() const;
  Entity *unitAt(int column, int row) const;
  // After a frame, what the five displays show, padding dropped, "-" for a
  // hidden one, then the text box's text: "Current Turn: Player / Turn 1 /
  // Actions: 3 / selected / hovered / text".
  std::string hud();
  // The first world object of a class, or none.
  template <class T>
  T *find() const {
    qv::ObjectList all = qv::WorldManager::getInstance().getAllObjects(true);
    for (int i = 0; i < all.getCount(); i++)
      if (T *p_found = dynamic_cast<T *>(all[i])) return p_found;
    return nullptr;
  }
  std::string spriteOf(const qv::Object *p_o) const;

  Board &board() const { return *getBoard(); }
  GameState &state() const { return GameState::getInstance(); }

  MainMenu *menu = nullptr;
};

}  // namespace qvtest

#endif
