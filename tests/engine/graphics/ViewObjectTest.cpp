#include <string>
#include <vector>

#include "HudFixture.h"
#include "core/EventStep.h"
#include "core/LogManager.h"
#include "graphics/EventView.h"
#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"
#include "world/WorldManager.h"

using qv::Vector;
using qv::ViewObject;

namespace {

class ViewObjectTest : public qvtest::HudEngineFixture {};
class ViewObjectWindowTest : public qvtest::HudWindowFixture {};

void expectAt(const ViewObject &v, float x, float y, int location) {
  EXPECT_FLOAT_EQ(v.getPosition().getX(), x) << "location " << location;
  EXPECT_FLOAT_EQ(v.getPosition().getY(), y) << "location " << location;
  EXPECT_EQ(v.getLocation(), location);
}

std::string centred(const std::string &text) {
  const std::size_t left = (80 - text.size()) / 2;
  return std::string(left, ' ') + text + std::string(80 - left - text.size(), ' ');
}

}  // namespace

TEST_F(ViewObjectTest, LocationTableWithAndWithoutBorder) {
  auto *v = new ViewObject;
  expectAt(*v, 40, 1, qv::TOP_CENTER);
  const float xs[3] = {80.0f / 6, 40, 80.0f * 5 / 6};
  const float bordered[3] = {1, 12, 22};
  const float plain[3] = {0, 11, 23};
  for (int loc = 0; loc < 9; loc++) {
    v->setLocation(loc);
    expectAt(*v, xs[loc % 3], bordered[loc / 3], loc);
  }
  v->setBorder(false);  // re-applies the last location one row further out
  expectAt(*v, xs[2], plain[2], qv::BOTTOM_RIGHT);
  for (int loc = 0; loc < 9; loc++) {
    v->setLocation(loc);
    expectAt(*v, xs[loc % 3], plain[loc / 3], loc);
  }
  v->setLocation(9);
  v->setLocation(-1);
  expectAt(*v, xs[2], plain[2], qv::BOTTOM_RIGHT);
  EXPECT_EQ(log->count("ViewObject::setLocation(): Warning! Location out of range (9). Ignored."),
            1);
  EXPECT_EQ(log->count("ViewObject::setLocation(): Warning! Location out of range (-1). Ignored."),
            1);
  // Setting the same position again keeps the location; another one drops it
  // and the border then leaves it alone.
  EXPECT_EQ(v->setPosition(v->getPosition()), 0);
  EXPECT_EQ(v->getLocation(), qv::BOTTOM_RIGHT);
  EXPECT_EQ(v->setPosition(Vector(5, 5)), 0);
  v->setBorder(true);
  expectAt(*v, 5, 5, -1);

  // The view's extents decide, not its corner: these are view coordinates.
  qv::WorldManager::getInstance().setView(qv::Box(Vector(30, 7), 60, 30));
  v->setLocation(qv::CENTER_RIGHT);
  expectAt(*v, 50, 15, qv::CENTER_RIGHT);
}

TEST_F(ViewObjectTest, SettersMarkTheirGroupOnlyWhenSomethingChanges) {
  auto *v = new ViewObject;
  // A new view object is wholly "changed", its own groups included.
  EXPECT_EQ(v->getModified(), 0x3FFFFu | qv::VIEW_VALUE | qv::VIEW_APPEARANCE);
  auto marks = [](qv::Object *o, const auto &change) {
    o->setModified(0);
    change();
    return o->getModified();
  };
  EXPECT_EQ(marks(v, [v] { v->setValue(0); }), 0u);
  EXPECT_EQ(marks(v, [v] { v->setValue(7); }), qv::VIEW_VALUE);
  EXPECT_EQ(marks(v, [v] { v->setColor(qv::CYAN); }), qv::VIEW_APPEARANCE);
  EXPECT_EQ(marks(v, [v] { v->setBorder(false); }), qv::VIEW_APPEARANCE | qv::POSITION);
  // setLocation always records the choice, even at the same place.
  EXPECT_EQ(marks(v, [v] { v->setLocation(v->getLocation()); }), qv::VIEW_APPEARANCE);

  auto *t = new qv::TextBox;
  EXPECT_EQ(marks(t, [t] { t->setText("hello"); }), qv::TEXTBOX_TEXT);
  EXPECT_EQ(marks(t, [t] { t->setText("hello"); }), 0u);
  EXPECT_EQ(marks(t, [t] { t->setSize(Vector(10, 1)); }), 0u);
  EXPECT_EQ(marks(t, [t] { t->setWordWrap(false); }), qv::TEXTBOX_APPEARANCE);
  EXPECT_LT(t->draw(), 0);  // headless
  EXPECT_LT(v->draw(), 0);
}

TEST_F(ViewObjectTest, ViewEventsRaiseOrSetTheValueOfTheTaggedLabelOnly) {
  auto *turn = new ViewObject;
  turn->setViewString("Turn");
  turn->setValue(3);
  auto *other = new ViewObject;
  other->setViewString("Turns");
  other->setValue(3);
  qv::WorldManager &world = qv::WorldManager::getInstance();
  // Delivered the way a game sends it: through the world manager's interest table.
  const qv::EventView raise("Turn", 2, true), set("Turn", 2, false), stranger("turn", 9, false);
  EXPECT_EQ(world.onEvent(&raise), 1);
  EXPECT_EQ(turn->getValue(), 5);
  EXPECT_EQ(world.onEvent(&set), 1);
  EXPECT_EQ(turn->getValue(), 2);
  EXPECT_EQ(world.onEvent(&stranger), 0);  // tags match exactly
  EXPECT_EQ(turn->eventHandler(&stranger), 0);
  EXPECT_EQ(turn->getValue(), 2);
  EXPECT_EQ(other->getValue(), 3);
  const qv::EventStep step(4);  // anything else goes to the base handler
  EXPECT_EQ(turn->eventHandler(&step), 0);
}

TEST_F(ViewObjectWindowTest, BorderedLabelWithValueAndPlainLabel) {
  auto *v = new ViewObject;
  v->setViewString("Turn");
  v->setValue(3);
  v->setColor(qv::YELLOW);
  EXPECT_EQ(v->draw(), 0);
  // " Turn 3 " centred on column 40: columns 36..43, bars at 35 and 44.
  EXPECT_EQ(row(0), centred("--------"));
  EXPECT_EQ(row(1), centred("| Turn 3 |"));
  EXPECT_EQ(row(2), row(0));
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  EXPECT_EQ(display.screenColor(35, 1), qv::YELLOW);

  // Plain, and a scrolled view does not move it on screen.
  display.swapBuffers();
  v->setBorder(false);
  v->setDrawValue(false);
  qv::WorldManager::getInstance().setView(qv::Box(Vector(50, 13), 80, 24));
  EXPECT_EQ(v->draw(), 0);
  EXPECT_EQ(row(0), centred("Turn"));
  EXPECT_EQ(row(1), std::string(80, ' '));

  // Border without value: the label keeps a blank margin inside the bars.
  display.swapBuffers();
  v->setBorder(true);
  EXPECT_EQ(v->draw(), 0);
  EXPECT_EQ(row(0), centred("------"));
  EXPECT_EQ(row(1), centred("| Turn |"));
}

TEST_F(ViewObjectWindowTest, TextBoxShowsItsNewestLinesInsideTheFrame) {
  qv::LogManager::getInstance().setLogLevel(30);
  auto *t = new qv::TextBox;
  t->setSize(Vector(10, 3));
  t->setText("the quick brown fox jumps over the lazy dog");
  EXPECT_EQ(t->draw(), 0);
  // Centred on (40, 12): text from column 35, rows 10.5 to 12.5 (cells 10 to 12);
  // padding puts the bars two columns out.
  EXPECT_EQ(row(9), centred("------------"));
  EXPECT_EQ(row(10), centred("| jumps over |"));
  EXPECT_EQ(row(11), centred("| the lazy   |"));
  EXPECT_EQ(row(12), centred("| dog        |"));
  EXPECT_EQ(row(13), row(9));
  EXPECT_TRUE(log->contains("TextBox::draw(): lft 35.0, top 10.5, rgt 44.0, bot 12.5"));
  EXPECT_TRUE(log->contains("TextBox::draw(): vector lines: 5"));
  EXPECT_TRUE(log->contains("\tline 4: dog"));

  // Without padding the frame hugs the text.
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  display.swapBuffers();
  t->setPadding(false);
  EXPECT_EQ(t->draw(), 0);
  EXPECT_EQ(row(10), centred("|jumps over|"));

  // An empty box draws its frame around one empty line.
  display.swapBuffers();
  t->setText("");
  t->setSize(Vector(4, 1));
  EXPECT_EQ(t->draw(), 0);
  EXPECT_EQ(row(10), centred("----"));
  EXPECT_EQ(row(11), centred("|    |"));
  EXPECT_EQ(row(12), row(10));
}
