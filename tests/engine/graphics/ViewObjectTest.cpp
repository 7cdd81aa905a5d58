#include <map>

#include "DisplayFixture.h"
#include "graphics/EventView.h"
#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"
#include "world/WorldManager.h"

using qv::Vector;
using qv::ViewObject;

namespace {

class ViewObjectTest : public qvtest::EngineFixture {};
class ViewObjectWindowTest : public qvtest::EngineWindowFixture {};

}  // namespace

// Every location in turn, then 9 and -1 (refused), with the border and
// without; dropping the border re-applies the last location a row further out.
// View events raise or set the value of the exactly tagged label only.
TEST_F(ViewObjectTest, LocationsModifiedGroupsAndViewEvents) {
  auto *v = new ViewObject;
  auto at = [v] { return std::to_string(v->getLocation()) + v->getPosition().toString() + " "; };
  std::string seen = at();
  for (bool border : {true, false}) {
    v->setBorder(border);
    seen += "| " + at();
    for (int loc : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1}) {
      v->setLocation(loc);
      seen += at();
    }
  }
  EXPECT_EQ(seen,
            "1(40,1) | 1(40,1) 0(13.3333,1) 1(40,1) 2(66.6667,1) 3(13.3333,12) 4(40,12) "
            "5(66.6667,12) 6(13.3333,22) 7(40,22) 8(66.6667,22) 8(66.6667,22) 8(66.6667,22) "
            "| 8(66.6667,23) 0(13.3333,0) 1(40,0) 2(66.6667,0) 3(13.3333,11) 4(40,11) "
            "5(66.6667,11) 6(13.3333,23) 7(40,23) 8(66.6667,23) 8(66.6667,23) 8(66.6667,23) ");
  EXPECT_EQ(log->count("ViewObject::setLocation(): Warning! Location out of range (9). Ignored."),
            2);
  // Setting the same position again keeps the location; another one drops it
  // and the border then leaves it alone.
  EXPECT_EQ(v->setPosition(v->getPosition()), 0);
  EXPECT_EQ(at(), "8(66.6667,23) ");
  EXPECT_EQ(v->setPosition(Vector(5, 5)), 0);
  v->setBorder(true);
  EXPECT_EQ(at(), "-1(5,5) ");
  // The view's extents decide, not its corner: these are view coordinates.
  qv::WorldManager::getInstance().setView(qv::Box(Vector(30, 7), 60, 30));
  v->setLocation(qv::CENTER_RIGHT);
  EXPECT_EQ(at(), "5(50,15) ");

  // Setters mark their group only when something changes; a new view object
  // is wholly "changed", its own groups included.
  auto *t = new qv::TextBox;
  EXPECT_EQ((new ViewObject)->getModified(), 0x3FFFFu | qv::VIEW_VALUE | qv::VIEW_APPEARANCE);
  auto marks = [](qv::Object *o, const auto &change) {
    o->setModified(0);
    change();
    return o->getModified();
  };
  EXPECT_EQ(marks(v, [v] { v->setValue(0); }), 0u);
  EXPECT_EQ(marks(v, [v] { v->setValue(7); }), qv::VIEW_VALUE);
  EXPECT_EQ(marks(v, [v] { v->setBorder(false); }), qv::VIEW_APPEARANCE | qv::POSITION);
  EXPECT_EQ(marks(t, [t] { t->setText("hello"); }), qv::TEXTBOX_TEXT);
  EXPECT_EQ(marks(t, [t] { t->setText("hello"); }), 0u);
  EXPECT_EQ(marks(t, [t] { t->setWordWrap(false); }), qv::TEXTBOX_APPEARANCE);
  // The width is the size truncated; a fraction of a cell counts as one.
  t->setWordWrap(true);
  t->setText("the quick brown fox jumps over the lazy dog");
  t->setSize(Vector(10.9f, 2));
  EXPECT_EQ(t->lines().size(), 5u);
  t->setSize(Vector(0.5f, 2));
  EXPECT_EQ(t->lines().size(), 35u);  // one per letter: the spaces are all breaks

  // View events, delivered through the world manager's interest table as a
  // game sends them, raise or set the value of the exactly tagged label only.
  v->setViewString("Turn");
  auto *other = new ViewObject;
  other->setViewString("Turns");
  qv::WorldManager &world = qv::WorldManager::getInstance();
  const qv::EventView raise("Turn", 2, true), set("Turn", 2, false), stranger("turn", 9, false);
  EXPECT_EQ(world.onEvent(&raise) * 10 + v->getValue(), 19);
  EXPECT_EQ(world.onEvent(&set) * 10 + world.onEvent(&stranger), 10);
  EXPECT_EQ(v->getValue() * 10 + other->getValue(), 20);
}

// A plain label and one with border and value, and text boxes with and without
// padding, drawn in one frame while the view is scrolled: view coordinates.
TEST_F(ViewObjectWindowTest, LabelsAndTextBoxesInOneScreen) {
  qv::WorldManager::getInstance().setView(qv::Box(Vector(50, 13), 80, 24));
  auto label = [](int location, bool border, bool value) {
    auto *v = new ViewObject;
    v->setViewString("Turn");
    v->setValue(3);
    v->setColor(qv::YELLOW);
    v->setBorder(border);
    v->setDrawValue(value);
    v->setLocation(location);
    return v->draw();
  };
  auto box = [](int location, const char *text, Vector size, bool padding) {
    auto *t = new qv::TextBox;
    t->setText(text);
    t->setSize(size);
    t->setPadding(padding);
    t->setLocation(location);
    return t->draw();
  };
  const char *fox = "the quick brown fox jumps over the lazy dog";
  EXPECT_EQ(label(qv::TOP_LEFT, false, false) + label(qv::TOP_CENTER, true, true) +
                box(qv::CENTER_LEFT, fox, Vector(10, 3), false) +
                box(qv::CENTER_CENTER, fox, Vector(10, 3), true) +
                box(qv::CENTER_RIGHT, "", Vector(4, 1), false),
            0);
  // " Turn 3 " centred on column 40: columns 36..43, bars at 35 and 44; the
  // boxes show their newest lines, padding puts the bars two columns out,
  // and an empty box frames one empty line.
  std::map<int, std::string> rows = {
      {0, "           Turn                     --------"},
      {1, "                                   | Turn 3 |"},
      {2, "                                    --------"},
      {9, "        ----------                ------------"},
      {10, "       |jumps over|              | jumps over |                 ----"},
      {11, "       |the lazy  |              | the lazy   |                |    |"},
      {12, "       |dog       |              | dog        |                 ----"},
      {13, "        ----------                ------------"},
  };
  std::string screen;
  for (int y = 0; y < 24; y++) screen += rows[y] + std::string(80 - rows[y].size(), ' ') + '\n';
  EXPECT_EQ(qv::DisplayManager::getInstance().screenText(), screen);
  EXPECT_EQ(qv::DisplayManager::getInstance().screenColor(35, 1), qv::YELLOW);
}

TEST(TextBoxLinesTest, WordWrapCuttingNewlinesAndWidthsUnderOneCell) {
  const std::string fox = "the quick brown fox jumps over the lazy dog";
  const struct {
    std::string text;
    int width;
    std::vector<bool> wraps;
    std::string lines;  // each ended by '|'
  } cases[] = {
      // The space right after "jumps over" is itself the break: that line is full width.
      {fox, 10, {true}, "the quick|brown fox|jumps over|the lazy|dog|"},
      {fox, 10, {false}, "the quick |brown fox |jumps over| the lazy |dog|"},
      // A space at the very start of a line is never a break; of two spaces the later one is.
      {" abcdef", 3, {true}, " ab|cde|f|"},
      {"ab  cd", 3, {true}, "ab |cd|"},
      {"go extraordinarily far", 6, {true}, "go|extrao|rdinar|ily|far|"},  // long words are cut
      {"one\n\ntwo", 10, {true, false}, "one||two|"},
      // A newline exactly at the width is the break, not an extra empty line.
      {"abc\ndef", 3, {true, false}, "abc|def|"},
      // Under one cell the box is taken as one column wide: it still ends.
      {"ab c", 0, {true}, "a|b|c|"},
  };
  for (const auto &c : cases)
    for (bool wrap : c.wraps) {
      std::string lines;
      for (const std::string &line : qv::breakLines(c.text, c.width, wrap)) lines += line + '|';
      EXPECT_EQ(lines, c.lines) << "'" << c.text << "' in " << c.width << ", wrap " << wrap;
    }
}
