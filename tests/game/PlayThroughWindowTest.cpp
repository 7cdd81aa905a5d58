// The game played in a real window the way a person plays it: a scripted
// player in the game's own frame loop moves the pointer, clicks and presses
// keys through the X server (XTest), so the game gets them as it gets anyone's
// input, and waits frame by frame until the window's text view and the game
// show what each input should bring. Tiles are found from the world's
// geometry, the view's corner and the cell size, never from pixel numbers.

#include <gtest/gtest.h>
#include <unistd.h>

#include <SFML/Graphics/RenderWindow.hpp>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "Board.h"
#include "GameState.h"
#include "Hero.h"
#include "LogCapture.h"
#include "MainMenu.h"
#include "TempDir.h"
#include "Tile.h"
#include "XInput.h"
#include "assets.h"
#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/DisplayManager.h"
#include "graphics/Splash.h"
#include "graphics/Sprite.h"
#include "world/WorldManager.h"

using qvtest::XInput;

namespace {

// One move of the play: its input, then what look() is to read once the
// input has taken effect. Inputs, separated by blanks: a key by its X name
// ("p", "Return") pressed and let go, or held down ("+s") or let go ("-s");
// "c,r" the pointer onto a tile's centre cell; "click" the left button; "off"
// the pointer off the board.
struct Step {
  std::string input;
  std::string expected;
};

// Frames a reading may take: an input reaches the game a frame or two after
// it is sent, and a held key scrolls the view by a cell or two a frame.
const int PATIENCE = 150;

// The texts the play looks for on the screen, each after a semicolon.
const std::string TEXTS =
    ";g a m e   e n g i n e;a Quorvelle tactics game;Current Turn: Player;Turn  1;Turn  2;Turn  3"
    ";Turn  4;Actions:  3;Actions:  2;Actions:  1;LEFT CLICK;Warrior | Health:  8;Warrior's"
    ";Hunter | Health:  6;hunter's;Magician | Health:  6;summon a;";

std::string shown() {
  return qv::DisplayManager::getInstance().shownText();
}

qv::Vector corner() {
  return qv::WorldManager::getInstance().getView().getCorner();
}

// The tile's centre cell on the screen.
int tileX(int column) {
  return 20 + 5 * column - static_cast<int>(corner().getX());
}
int tileY(int row) {
  return 8 + 3 * row - static_cast<int>(corner().getY());
}

// The texts the screen shows, one a line; in a level, then the board rows
// whose tile colours (by their sprites: w y c g r) are not the plain cyan
// base column and white, and a line: whether there are enemies, the view's
// corner, and each hero's tile with the middle row of it as the screen shows
// it ("|[@+|" the Warrior), "-" when off the screen.
std::string look() {
  std::string text;
  for (std::size_t at = 1, bar; (bar = TEXTS.find(';', at)) != std::string::npos; at = bar + 1)
    if (shown().find(TEXTS.substr(at, bar - at)) != std::string::npos)
      text += TEXTS.substr(at, bar - at) + "\n";
  // A level has the camera, which the view follows.
  if (!qv::WorldManager::getInstance().getViewFollowing()) return text;
  for (int r = 0; r < 12; r++) {
    std::string colours;
    for (int c = 0; c < 12; c++)
      colours += getBoard()->getTile(c, r)->getAnimation().getSprite()->getLabel()[5];
    if (colours != "cwwwwwwwwwww") text += std::to_string(r) + " " + colours + "\n";
  }
  const GameState &state = GameState::getInstance();
  text += (state.getEnemyCount() > 0 ? "enemies " : "") +
          std::to_string(static_cast<int>(corner().getX())) + "," +
          std::to_string(static_cast<int>(corner().getY())) + ":";
  for (int i = 0; i < state.getHeroCount(); i++) {
    const Hero *p_hero = state.getHero(i);
    const int x = tileX(p_hero->getGridX()), y = tileY(p_hero->getGridY());
    text += " " + p_hero->getKind().substr(0, 1) + std::to_string(p_hero->getGridX()) + "," +
            std::to_string(p_hero->getGridY()) +
            (x < 2 || x > 77 || y < 0 || y > 23 ? "-" : shown().substr(y * 81 + x - 2, 5));
  }
  return text + "\n";
}

// Plays a script from the step event at the start of each frame. It keeps
// out of the world's list of objects: leaving a level deletes every object
// there, and the player goes on playing.
class Player : public qv::Object {
 public:
  Player(const XInput &x, std::vector<Step> script) : m_x(x), m_script(std::move(script)) {
    registerInterest(qv::STEP_EVENT);
    qv::WorldManager::getInstance().removeObject(this);
  }
  // Back in, for the base to take it out again.
  ~Player() override { qv::WorldManager::getInstance().insertObject(this); }

  bool finished() const { return m_next == m_script.size(); }

  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() != qv::STEP_EVENT) return 0;
    // The last input ends the game.
    if (finished() && m_frames++ == PATIENCE) fail("the game goes on after the play");
    if (finished()) return 1;
    const Step &step = m_script[m_next];
    if (m_frames++ == 0) send(step.input);
    const std::string seen = m_frames == 1 ? "" : look();
    // A reading holds for two frames: the game's state and the screen that
    // shows it are a frame apart.
    m_matches = seen == step.expected ? m_matches + 1 : 0;
    if (step.expected.empty() || m_matches == 2) {
      m_next++;
      m_frames = m_matches = 0;
    } else if (m_frames > PATIENCE) {
      fail("after " + step.input + ":\n" + seen + "where the play expects\n" + step.expected);
    }
    return 1;
  }

 private:
  void send(const std::string &input) const {
    std::istringstream words(input);
    for (std::string word; words >> word;) {
      int column = 0, row = 0;
      if (word == "click") {
        m_x.button(true);
        m_x.button(false);
      } else if (word == "off") {
        pointAt(0, 12);
      } else if (std::sscanf(word.c_str(), "%d,%d", &column, &row) == 2) {
        pointAt(tileX(column), tileY(row));
      } else if (word[0] == '+' || word[0] == '-') {
        m_x.key(word.c_str() + 1, word[0] == '+');
      } else {
        m_x.key(word.c_str(), true);
        m_x.key(word.c_str(), false);
      }
    }
  }
  // The pointer onto the middle of a cell of the screen.
  void pointAt(int x, int y) const {
    const sf::RenderWindow *p_window = qv::DisplayManager::getInstance().getWindow();
    const sf::Vector2f cell(static_cast<float>(p_window->getSize().x) / 80,
                            static_cast<float>(p_window->getSize().y) / 24);
    m_x.pointer(p_window->getPosition().x + static_cast<int>((x + 0.5f) * cell.x),
                p_window->getPosition().y + static_cast<int>((y + 0.5f) * cell.y));
  }
  // After a failed step the play makes no sense: the game is left.
  void fail(const std::string &problem) {
    ADD_FAILURE() << problem;
    m_next = m_script.size();
    m_frames = PATIENCE + 1;
    qv::GameManager::getInstance().setGameOver();
  }

  const XInput &m_x;
  std::vector<Step> m_script;
  std::size_t m_next = 0;
  int m_frames = 0;   // since the step's input
  int m_matches = 0;  // frames in a row that read as expected
};

// A selected hero's reach, with the heroes where the play puts them: green
// where it can move and the heroes it can reach, red the walls it can hit.
const std::string WARRIOR_REACH =
    "4 cwwwwwgwwwww\n5 cwwwwgggwwww\n6 cwwwwgggwwww\n7 cwwwwgggwwww\n8 cwwwwwgwwwww\n";
const std::string HUNTER_REACH =
    "0 cwwwgwwwwwww\n1 cwwgggwwwwww\n2 cwgggggwwwww\n3 cggggggrwwww\n4 cwgggggwwwww\n"
    "5 cwwgggwwwwww\n6 cwwwrwwwwwww\n";
const std::string MAGICIAN_REACH =
    "6 cwwwrwwwwwww\n7 crwrrwwwwwww\n8 cwwrggwwwwww\n9 cwrwgwwwwwww\n";

TEST(PlayThroughWindowTest, APlayerSkipsTheSplashPlaysTwoTurnsScrollsLeavesAndComesBack) {
  if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
  const XInput x;
  if (!x.ok()) GTEST_SKIP() << "no X server or no XTest library (libXtst.so.6)";
  // In a level: the turn, the actions, the other texts and the tile colours,
  // the view and the heroes, where the pointer's reticle (+) stands on the
  // middle of the tile it is on.
  const auto step = [](const char *input, int turn, int actions, const std::string &shows,
                       const std::string &view) {
    return Step{input, "Current Turn: Player\nTurn  " + std::to_string(turn) +
                           "\nActions:  " + std::to_string(actions) + "\n" + shows + view + "\n"};
  };
  const std::string title = "a Quorvelle tactics game\n", idle = "LEFT CLICK\n",
                    warrior = "Warrior | Health:  8\n", hunter = "Hunter | Health:  6\n",
                    magician = "Magician | Health:  6\n", start = "0,8: W6,6|[@+| H4,3|@-)| M4,8-",
                    on_warrior = "0,8: W6,6|[++| H4,3|@-)| M4,8-",
                    bottom = "enemies 0,24: W6,4- H2,4- M4,9|~+||",
                    top = "enemies 0,0: W6,4|[@+| H2,4|@-)| M4,9-";
  const std::vector<Step> script = {
      {"", "g a m e   e n g i n e\n"},
      {"space", title},
      step("off p", 1, 3, idle, start),
      // The Warrior: pointed at, clicked to show its reach, moved for an
      // action by a click on a green tile.
      step("6,6", 1, 3, idle + warrior + "6 cwwwwwywwwww\n", on_warrior),
      step("click", 1, 3, warrior + "Warrior's\n" + WARRIOR_REACH, on_warrior),
      step("6,4 click", 1, 2, idle + warrior, "0,8: W6,4|[++| H4,3|@-)| M4,8-"),
      // The Hunter, two tiles left and one down.
      step("4,3 click", 1, 2, hunter + "hunter's\n" + HUNTER_REACH,
           "0,8: W6,4|[@+| H4,3|@+)| M4,8-"),
      step("2,4 click", 1, 1, idle + hunter, "0,8: W6,4|[@+| H2,4|@+)| M4,8-"),
      // The Magician stands below the screen: S scrolls down to the world's
      // bottom edge. Its move spends the last action: the enemies act and
      // turn 2 begins; Enter ends that one.
      step("+s", 1, 1, idle + hunter, "0,24: W6,4- H2,4- M4,8|~@||"),
      step("-s 4,8 click", 1, 1, magician + "summon a\n" + MAGICIAN_REACH,
           "0,24: W6,4- H2,4- M4,8|~+||"),
      step("4,9 click", 2, 3, idle + magician, bottom),
      step("Return", 3, 3, idle + magician, bottom),
      // W up to the world's top edge, D to its right edge, A back to the left.
      step("off +w", 3, 3, idle + magician, top),
      step("-w +d", 3, 3, idle + magician, "enemies 80,0: W6,4- H2,4- M4,9-"),
      step("-d +a", 3, 3, idle + magician, top),
      // Escape: the title screen; P: a new level, the turn count going on.
      // Q means nothing in a level.
      {"-a Escape", title},
      step("off p", 4, 3, idle, start),
      {"q Escape", title},
      {"q", ""},
  };

  qvtest::TempDir dir;
  qvtest::LogCapture log;
  // The shipped settings with a fixed seed, so that the board is known; the
  // font and the assets are found from the program's folder.
  const std::string shipped = qvtest::readFile(QV_RUN_DIR "/qv-config.txt");
  qvtest::ScopedEnv config("QUORVELLE_CONFIG",
                           dir.write("qv-config.txt", "random_seed: 1,\n" + shipped).c_str());
  char cwd[4096];
  ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
  ASSERT_EQ(chdir(QV_RUN_DIR), 0);
  // As the program starts, the player at the keyboard from the first frame.
  qv::GameManager &game = qv::GameManager::getInstance();
  ASSERT_EQ(game.startUp(), 0);
  qv::DisplayManager::getInstance().setVerticalChars(24);
  qv::DisplayManager::getInstance().setHorizontalChars(80);
  qv::WorldManager::getInstance().setBoundary(qv::Box(qv::Vector(0, 0), 160, 48));
  x.focus(qv::DisplayManager::getInstance().getWindow()->getSystemHandle());
  auto player = std::make_unique<Player>(x, std::move(script));
  qv::splash();
  EXPECT_LT(game.getStepCount(), 90) << "the splash ran to its end";
  if (!player->finished()) {
    loadAssets();
    new MainMenu;
    game.run();
  }
  EXPECT_TRUE(player->finished()) << "the game ended before the play";
  player.reset();
  game.shutDown();
  for (const char *key : {"w", "a", "s", "d"}) x.key(key, false);
  ASSERT_EQ(chdir(cwd), 0);
  // The whole log: the banners around a line for each click on a tile. A slow
  // machine adds its warnings about late frames.
  std::string lines;
  for (const std::string &line : log.messages())
    if (line.rfind("GameManager::run(): Can't keep up!", 0) != 0) lines += line + "\n";
  const std::string stars(52, '*');
  std::string expected =
      stars + "\n** Quorvelle version 4.25 **\n** Game engine started **\n" + stars + "\n";
  for (int click = 0; click < 6; click++) expected += "boardNotNull\n";
  EXPECT_EQ(lines, expected + stars + "\n** Game engine stopped **\n");
}

}  // namespace
