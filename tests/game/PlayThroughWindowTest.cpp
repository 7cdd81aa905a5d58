// The real program in a real window under the X server the tests run in,
// played the way a person plays it: the pointer moved and clicked and keys
// pressed through the server (XTest), and every step checked on pictures of
// the window. Tiles are found from the world's geometry and the view's
// corner, the cell size from the window's size and the grid; texts are
// recognised against the same texts drawn beforehand by the engine's own
// display.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ChildProcess.h"
#include "Screen.h"
#include "TempDir.h"
#include "XSession.h"
#include "core/Config.h"
#include "core/utility.h"

namespace {

using qvtest::Screen;
using qvtest::ScreenText;

// The grid the program sets up in its window, and its world.
const int COLUMNS = 80;
const int ROWS = 24;
const float WORLD_HEIGHT = 48;

// Where the view's corner is in the world.
struct Corner {
  float x, y;
};

// A level starts with the view on the title screen's corner (0, 0); the
// camera, placed at (42, 24), drags the view along by as much as it lies
// outside the view's slack zone, the middle third.
Corner levelStartCorner() {
  auto follow = [](float corner, float extent, float camera) {
    const float centre = corner + extent / 2, slack = extent / 3 / 2;
    if (camera > centre + slack) return camera - slack - extent / 2;
    if (camera < centre - slack) return camera + slack - extent / 2;
    return corner;
  };
  return Corner{follow(0, COLUMNS, 42), follow(0, ROWS, 24)};
}

// Scrolled as far as the world goes.
const Corner TOP_EDGE{0, 0};
const Corner BOTTOM_EDGE{0, WORLD_HEIGHT - ROWS};

// The tile's centre cell on the screen.
float tileX(int column, Corner corner) {
  return static_cast<float>(20 + 5 * column) - corner.x;
}
float tileY(int row, Corner corner) {
  return static_cast<float>(8 + 3 * row) - corner.y;
}

// Board rows the screen shows whole and clear of the HUD's boxes (screen rows
// 3 to 20).
std::vector<int> shownRows(Corner corner) {
  std::vector<int> rows;
  for (int r = 0; r < 12; r++)
    if (tileY(r, corner) - 1 >= 3 && tileY(r, corner) + 1 <= 20) rows.push_back(r);
  return rows;
}

// The letter of the colour with the most ink, if it has more pixels than
// the floor.
char strongest(const std::array<int, 8> &ink,
               std::initializer_list<std::pair<qv::Color, char>> letters, int floor, char none) {
  char best = none;
  for (const auto &[colour, letter] : letters)
    if (ink[colour] > floor) {
      floor = ink[colour];
      best = letter;
    }
  return best;
}

// A tile's colour by its top and bottom edges (w y c g r; ? for no tile), and
// what stands on it by the glyphs in its middle: h hero (magenta), # wall
// (cyan), e enemy (green), . nothing (or a stray pixel).
char tileColour(const Screen &screen, int column, int row, Corner corner) {
  const float x = tileX(column, corner), y = tileY(row, corner);
  std::array<int, 8> ink = screen.inkIn(x - 2, y - 1, x + 3, y);
  const std::array<int, 8> bottom = screen.inkIn(x - 2, y + 1, x + 3, y + 2);
  for (std::size_t c = 0; c < ink.size(); c++) ink[c] += bottom[c];
  return strongest(
      ink, {{qv::WHITE, 'w'}, {qv::YELLOW, 'y'}, {qv::CYAN, 'c'}, {qv::GREEN, 'g'}, {qv::RED, 'r'}},
      30, '?');
}

char unitOn(const Screen &screen, int column, int row, Corner corner) {
  const float x = tileX(column, corner), y = tileY(row, corner);
  return strongest(screen.inkIn(x - 1, y, x + 2, y + 1),
                   {{qv::MAGENTA, 'h'}, {qv::CYAN, '#'}, {qv::GREEN, 'e'}}, 40, '.');
}

// The shown rows of the board: tile colours, a blank, then units, as in
// "cwwwgggwwwww ....h..#....".
std::string board(const Screen &screen, Corner corner) {
  std::string text;
  for (int r : shownRows(corner)) {
    std::string units;
    for (int c = 0; c < 12; c++) {
      text += tileColour(screen, c, r, corner);
      units += unitOn(screen, c, r, corner);
    }
    text += " " + units + "\n";
  }
  return text;
}

// The same from two pictures of the whole board, 12 lines of 12.
std::string board(const std::string &colours, const std::string &units, Corner corner) {
  std::string text;
  for (int r : shownRows(corner))
    text += colours.substr(static_cast<std::size_t>(r) * 13, 12) + " " +
            units.substr(static_cast<std::size_t>(r) * 13, 12) + "\n";
  return text;
}

std::string repeat(const std::string &line, int n) {
  std::string text;
  for (int i = 0; i < n; i++) text += line;
  return text;
}

// A board reading with the enemies left out, and a line saying whether one
// was there: where they go is the enemies' business.
std::string withoutEnemies(std::string reading) {
  const bool enemy = reading.find('e') != std::string::npos;
  std::replace(reading.begin(), reading.end(), 'e', '.');
  return reading + (enemy ? "an enemy\n" : "");
}

// A board reading with only the heroes' units.
std::string heroesOnly(std::string reading) {
  for (std::size_t line = 0; line + 26 <= reading.size(); line += 26)
    std::replace_if(
        reading.begin() + static_cast<std::ptrdiff_t>(line + 13),
        reading.begin() + static_cast<std::ptrdiff_t>(line + 25), [](char c) { return c != 'h'; },
        '.');
  return reading;
}

const std::string PLAIN = repeat("cwwwwwwwwwww\n", 12);
// Random seed 1: the heroes at their places, the walls the 12 draws give.
const std::string LEVEL_ONE =
    "............\n"
    "............\n"
    "..........#.\n"
    "....h..#....\n"
    "............\n"
    "............\n"
    "....#.h.#...\n"
    ".#.##.......\n"
    "...#h.......\n"
    "..#.........\n"
    ".#......#...\n"
    "............\n";

// The tile colours of a selected hero's reach (green: where it can move,
// and heroes it can reach; red: walls it can hit), on the seed-1 board with
// the heroes where the play below has put them.
const std::string WARRIOR_REACH = repeat("cwwwwwwwwwww\n", 4) +
                                  "cwwwwwgwwwww\n"
                                  "cwwwwgggwwww\n"
                                  "cwwwwgggwwww\n"
                                  "cwwwwgggwwww\n"
                                  "cwwwwwgwwwww\n" +
                                  repeat("cwwwwwwwwwww\n", 3);
const std::string HUNTER_REACH =
    "cwwwgwwwwwww\n"
    "cwwgggwwwwww\n"
    "cwgggggwwwww\n"
    "cggggggrwwww\n"
    "cwgggggwwwww\n"
    "cwwgggwwwwww\n"
    "cwwwrwwwwwww\n" +
    repeat("cwwwwwwwwwww\n", 5);
const std::string MAGICIAN_REACH = repeat("cwwwwwwwwwww\n", 6) +
                                   "cwwwrwwwwwww\n"
                                   "crwrrwwwwwww\n"
                                   "cwwrggwwwwww\n"
                                   "cwrwgwwwwwww\n" +
                                   repeat("cwwwwwwwwwww\n", 2);

// Whether a box of the screen holds tile ink (white or cyan).
bool tileInkIn(const Screen &screen, float x0, float y0, float x1, float y1) {
  const std::array<int, 8> ink = screen.inkIn(x0, y0, x1, y1);
  return ink[qv::WHITE] + ink[qv::CYAN] > 0;
}

// Which screen rows between the HUD's boxes (3 to 20) show tiles right of
// the instruction box: # or . for each.
std::string tileRows(const Screen &screen) {
  std::string rows;
  for (int y = 3; y <= 20; y++)
    rows += tileInkIn(screen, 16, static_cast<float>(y), COLUMNS, static_cast<float>(y + 1)) ? '#'
                                                                                             : '.';
  return rows + "\n";
}

// The last screen column with tiles between the HUD's boxes.
int tilesEnd(const Screen &screen) {
  int x = COLUMNS - 1;
  while (x >= 0 && !tileInkIn(screen, static_cast<float>(x), 3, static_cast<float>(x + 1), 21)) x--;
  return x;
}

std::string greenInk(const Screen &screen) {
  return screen.inkIn(0, 0, COLUMNS, ROWS)[qv::GREEN] > 500 ? "splash" : "no splash";
}

const std::string STARS(52, '*');

class PlayThroughWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
    x = std::make_unique<qvtest::XSession>();
    if (!x->ok()) GTEST_SKIP() << x->problem();
    // The shipped settings, with a fixed seed so that the board is known.
    qvtest::copyRunFolder(dir.path());
    const std::string shipped = qvtest::readFile(dir.file("qv-config.txt"));
    ASSERT_FALSE(shipped.empty());
    dir.write("qv-config.txt", "random_seed: 1,\n" + shipped);
    {
      qvtest::ScopedEnv config("QUORVELLE_CONFIG", dir.file("qv-config.txt").c_str());
      texts = qvtest::drawTexts("window_title: qv-texts, font_file:" + dir.file("qv-font.ttf") +
                                    "," + qv::Config::getInstance().readConfig(),
                                COLUMNS, ROWS, TEXTS);
    }
    ASSERT_EQ(texts.size(), TEXTS.size()) << "the display did not start";
    const std::vector<qvtest::XWindow> before = x->windows("Quorvelle");
    game = std::make_unique<qvtest::ChildProcess>(
        QV_GAME_PATH, dir.path(),
        std::vector<std::pair<std::string, const char *>>{{"QUORVELLE_LOG", nullptr},
                                                          {"QUORVELLE_CONFIG", nullptr},
                                                          {"QUORVELLE_LOG_LEVEL", nullptr}});
    window = x->findNewWindow("Quorvelle", before);
    ASSERT_NE(window, 0u) << "no game window";
    int left = 0, top = 0;
    ASSERT_TRUE(x->geometry(window, &left, &top, &width, &height));
    ASSERT_FLOAT_EQ(texts[0].cell_width, static_cast<float>(width) / COLUMNS)
        << "the texts were drawn on other cells than the game's";
    x->focus(window);
    x->movePointer(window, width / 2, height / 2);
  }

  Screen look() const { return Screen(x->grab(window), COLUMNS, ROWS); }

  // Looks at the window until read() gives what is expected and still does a
  // moment later, or the time is up, then checks the last reading. A change
  // can take a frame to reach every part of the screen (the HUD reads the
  // game at the next frame's step), so a reading must hold for a few frames.
  // After a failed step the play makes no sense: the later ones are skipped.
  void expectSeen(const std::string &step, const std::function<std::string(const Screen &)> &read,
                  const std::string &expected, int timeout_ms = 8000) const {
    if (HasFailure()) return;
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeout_ms);
    std::string seen;
    auto since = Clock::time_point::max();  // when the reading became the expected one
    do {
      const auto taken = Clock::now();
      const Screen screen = look();
      if (screen.empty()) {
        ADD_FAILURE() << step << ": the window is gone";
        return;
      }
      seen = read(screen);
      if (seen != expected)
        since = Clock::time_point::max();
      else if (since == Clock::time_point::max())
        since = taken;
      else if (taken - since >= std::chrono::milliseconds(150))
        return;
      // The game and the test share the machine: a look costs a few frames'
      // worth of work, so the game is given time between looks.
      std::this_thread::sleep_for(std::chrono::milliseconds(40));
    } while (Clock::now() < deadline);
    EXPECT_EQ(seen, expected) << step;
  }

  // Holds a key down until the screen shows what is expected, and checks
  // that it stays so once the key is up.
  void holdUntil(const char *key, const std::string &step,
                 const std::function<std::string(const Screen &)> &read,
                 const std::string &expected) const {
    if (HasFailure()) return;
    x->key(key, true);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    for (Screen s = look(); !s.empty() && read(s) != expected; s = look()) {
      if (std::chrono::steady_clock::now() > deadline) break;
      std::this_thread::sleep_for(std::chrono::milliseconds(40));
    }
    x->key(key, false);
    expectSeen(step, read, expected);
  }

  // Which of these texts the screen shows, one per line.
  std::string shown(const Screen &screen, const std::vector<std::string> &wanted) const {
    std::string found;
    for (const std::string &name : wanted) {
      auto text = std::find_if(texts.begin(), texts.end(),
                               [&name](const ScreenText &t) { return t.text == name; });
      if (text == texts.end()) return "(" + name + " is not among the drawn texts)";
      if (screen.shows(*text)) found += name + "\n";
    }
    return found;
  }

  // The title screen: its line of text, and no cyan of the level's HUD.
  std::string titleScreen(const Screen &screen) const {
    return shown(screen, {"a Quorvelle tactics game"}) +
           (screen.inkIn(0, 0, COLUMNS, ROWS)[qv::CYAN] > 0 ? "cyan ink\n" : "");
  }

  // The pointer onto a tile's centre cell; the tile lights up yellow.
  void pointAt(int column, int row, Corner corner) const {
    const float cell_width = static_cast<float>(width) / COLUMNS;
    const float cell_height = static_cast<float>(height) / ROWS;
    x->movePointer(window, static_cast<int>((tileX(column, corner) + 0.5f) * cell_width),
                   static_cast<int>((tileY(row, corner) + 0.5f) * cell_height));
    expectSeen(
        "pointer on tile " + std::to_string(column) + "," + std::to_string(row),
        [&](const Screen &s) { return std::string(1, tileColour(s, column, row, corner)); }, "y");
  }

  void clickTile(int column, int row, Corner corner) const {
    pointAt(column, row, corner);
    x->click();
  }

  // Every text the checks look for, drawn before the game starts.
  static const std::vector<std::pair<std::string, qv::Color>> TEXTS;

  qvtest::TempDir dir;
  std::unique_ptr<qvtest::XSession> x;
  std::vector<ScreenText> texts;
  std::unique_ptr<qvtest::ChildProcess> game;
  qvtest::XWindow window = 0;
  int width = 0, height = 0;
};

const std::vector<std::pair<std::string, qv::Color>> PlayThroughWindowTest::TEXTS = {
    {"a Quorvelle tactics game", qv::WHITE},
    {"Current Turn: Player", qv::CYAN},
    {"Turn  1", qv::CYAN},
    {"Turn  2", qv::CYAN},
    {"Turn  3", qv::CYAN},
    {"Turn  4", qv::CYAN},
    {"Actions:  3", qv::CYAN},
    {"Actions:  2", qv::CYAN},
    {"Actions:  1", qv::CYAN},
    {"LEFT CLICK", qv::CYAN},
    {"end player", qv::CYAN},
    {"Warrior | Health:  8", qv::CYAN},
    {"Warrior's", qv::CYAN},
    {"Hunter | Health:  6", qv::CYAN},
    {"hunter's", qv::CYAN},
    {"Magician | Health:  6", qv::CYAN},
    {"summon a", qv::CYAN},
};

TEST_F(PlayThroughWindowTest, APlayerSkipsTheSplashPlaysTwoTurnsScrollsLeavesAndComesBack) {
  const auto title = [this](const Screen &s) { return titleScreen(s); };
  expectSeen("the splash screen", greenInk, "splash");
  x->tap("space");
  expectSeen("the title screen", title, "a Quorvelle tactics game\n");

  // P: the level, through the view the camera sets.
  x->tap("p");
  Corner corner = levelStartCorner();
  const auto level = [&corner, this](const std::vector<std::string> &wanted) {
    return [&corner, this, wanted](const Screen &s) {
      return withoutEnemies(board(s, corner)) + shown(s, wanted);
    };
  };
  expectSeen(
      "a level", level({"Current Turn: Player", "Turn  1", "Actions:  3", "LEFT CLICK"}),
      board(PLAIN, LEVEL_ONE, corner) + "Current Turn: Player\nTurn  1\nActions:  3\nLEFT CLICK\n");

  // The Warrior: a click shows its reach, a click on a green tile moves it
  // there for one action.
  clickTile(6, 6, corner);
  expectSeen("the Warrior selected", level({"Warrior | Health:  8", "Warrior's", "LEFT CLICK"}),
             board(WARRIOR_REACH, LEVEL_ONE, corner) + "Warrior | Health:  8\nWarrior's\n");
  clickTile(6, 4, corner);
  std::string units = LEVEL_ONE;
  units.replace(6 * 13 + 6, 1, ".").replace(4 * 13 + 6, 1, "h");
  // The pointer is still on it: the hover display names it.
  expectSeen("the Warrior moved", level({"Warrior | Health:  8", "Actions:  3", "Actions:  2"}),
             board(PLAIN, units, corner) + "Warrior | Health:  8\nActions:  2\n");

  // The Hunter, three tiles left and down.
  clickTile(4, 3, corner);
  expectSeen("the Hunter selected", level({"Hunter | Health:  6", "hunter's"}),
             board(HUNTER_REACH, units, corner) + "Hunter | Health:  6\nhunter's\n");
  clickTile(2, 4, corner);
  units.replace(3 * 13 + 4, 1, ".").replace(4 * 13 + 2, 1, "h");
  expectSeen("the Hunter moved", level({"Actions:  1"}),
             board(PLAIN, units, corner) + "Actions:  1\n");

  // The Magician stands below the screen: S scrolls down to the world's
  // bottom edge, where the board ends three rows above the HUD.
  holdUntil("s", "scrolled down", tileRows, "################..\n");
  corner = BOTTOM_EDGE;
  expectSeen("the board's lower half", level({}), board(PLAIN, units, corner));
  clickTile(4, 8, corner);
  expectSeen("the Magician selected", level({"Magician | Health:  6", "summon a"}),
             board(MAGICIAN_REACH, units, corner) + "Magician | Health:  6\nsummon a\n");
  // Its move spends the last action: the enemies act and turn 2 begins.
  clickTile(4, 9, corner);
  units.replace(8 * 13 + 4, 1, ".").replace(9 * 13 + 4, 1, "h");
  const std::string turn = "Current Turn: Player\nTurn  ";
  expectSeen("turn 2", level({"Current Turn: Player", "Turn  2", "Actions:  3"}),
             board(PLAIN, units, corner) + "an enemy\n" + turn + "2\nActions:  3\n");
  // Enter: the enemies' turn, and the next.
  x->tap("Return");
  expectSeen("turn 3", level({"Current Turn: Player", "Turn  3", "Actions:  3"}),
             board(PLAIN, units, corner) + "an enemy\n" + turn + "3\nActions:  3\n");

  // W up to the world's top edge; D moves the board left by some tiles, A
  // back to the world's left edge, where the picture is the one before.
  holdUntil("w", "scrolled up", tileRows, "....##############\n");
  corner = TOP_EDGE;
  expectSeen("the board's upper part", level({}), board(PLAIN, units, corner));
  const Screen top = look();
  const int right_end = tilesEnd(top);
  holdUntil(
      "d", "scrolled right",
      [right_end](const Screen &s) { return tilesEnd(s) <= right_end - 20 ? "moved" : "not yet"; },
      "moved");
  holdUntil(
      "a", "scrolled left",
      [&top](const Screen &s) {
        return s.differences(top, 16, 3, COLUMNS, 21) < 100 ? "as before" : "elsewhere";
      },
      "as before");

  // Escape: the title screen; P: a new level, the turn count going on.
  x->tap("Escape");
  expectSeen("back on the title screen", title, "a Quorvelle tactics game\n");
  x->tap("p");
  corner = levelStartCorner();
  // Its walls come from later draws: only the heroes are known.
  expectSeen(
      "a second level",
      [&corner, this](const Screen &s) {
        return heroesOnly(board(s, corner)) + shown(s, {"Turn  4", "Actions:  3"});
      },
      heroesOnly(board(PLAIN, LEVEL_ONE, corner)) + "Turn  4\nActions:  3\n");
  ASSERT_FALSE(HasFailure());
  // Q means nothing in a level: the Escape after it still finds the game.
  x->tap("q");
  x->tap("Escape");
  expectSeen("the title screen once more", title, "a Quorvelle tactics game\n");
  x->tap("q");
  ASSERT_TRUE(game->wait(10000)) << "the game did not end on Q";
  ASSERT_TRUE(game->exited()) << "signal " << game->termSignal();
  EXPECT_EQ(game->exitStatus(), 0);
  // The whole log: the banners, a line for each left click on a tile, the
  // closing banner. A slow machine adds its warnings about late frames.
  std::vector<std::string> log;
  for (const std::string &line : qvtest::logMessages(qvtest::readFile(dir.file("quorvelle.log"))))
    if (line.rfind("GameManager::run(): Can't keep up!", 0) != 0) log.push_back(line);
  std::vector<std::string> expected = {STARS, "** Quorvelle version 4.25 **",
                                       "** Game engine started **", STARS};
  expected.insert(expected.end(), 6, "boardNotNull");
  expected.insert(expected.end(), {STARS, "** Game engine stopped **"});
  EXPECT_EQ(log, expected);
}

}  // namespace
