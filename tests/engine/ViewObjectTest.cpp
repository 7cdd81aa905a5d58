#include <string>
#include <vector>

#include "EventStep.h"
#include "EventView.h"
#include "HudFixture.h"
#include "LogManager.h"
#include "TextBox.h"
#include "ViewObject.h"
#include "WorldManager.h"

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

}  // namespace

TEST_F(ViewObjectTest, NewViewObjectIsASpectralTopCentreLabelListeningForViewEvents) {
  auto *v = new ViewObject;
  EXPECT_EQ(v->getType(), "ViewObject");
  EXPECT_EQ(v->getSolidness(), qv::SPECTRAL);
  EXPECT_EQ(v->getAltitude(), 4);
  expectAt(*v, 40, 1, qv::TOP_CENTER);
  ASSERT_EQ(v->getEventCount(), 1);
  EXPECT_EQ(v->getEvent(0), "qv-view");
  EXPECT_EQ(v->getViewString(), "");
  EXPECT_EQ(v->getValue(), 0);
  EXPECT_TRUE(v->getDrawValue());
  EXPECT_TRUE(v->getBorder());
  EXPECT_EQ(v->getColor(), qv::WHITE);
  // A new view object is wholly "changed", its own groups included.
  EXPECT_EQ(v->getModified(), 0x3FFFFu | qv::VIEW_VALUE | qv::VIEW_APPEARANCE);
}

TEST_F(ViewObjectTest, LocationTableWithAndWithoutBorder) {
  auto *v = new ViewObject;
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

  // The view's extents decide, not its corner: these are view coordinates.
  qv::WorldManager::getInstance().setView(qv::Box(Vector(30, 7), 60, 30));
  v->setLocation(qv::CENTER_RIGHT);
  expectAt(*v, 50, 14, qv::CENTER_RIGHT);
  v->setBorder(true);
  expectAt(*v, 50, 15, qv::CENTER_RIGHT);
}

TEST_F(ViewObjectTest, BorderMovesOnlyAPlacedLabelAndBadLocationsAreIgnored) {
  auto *v = new ViewObject;
  v->setLocation(qv::TOP_LEFT);
  v->setBorder(false);
  expectAt(*v, 80.0f / 6, 0, qv::TOP_LEFT);
  v->setBorder(true);
  expectAt(*v, 80.0f / 6, 1, qv::TOP_LEFT);

  EXPECT_EQ(v->setPosition(Vector(5, 5)), 0);
  expectAt(*v, 5, 5, -1);
  v->setBorder(false);
  expectAt(*v, 5, 5, -1);

  v->setLocation(qv::BOTTOM_LEFT);
  v->setLocation(9);
  v->setLocation(-1);
  expectAt(*v, 80.0f / 6, 23, qv::BOTTOM_LEFT);
  EXPECT_EQ(log->count("ViewObject::setLocation(): Warning! Location out of range (9). Ignored."),
            1);
  EXPECT_EQ(log->count("ViewObject::setLocation(): Warning! Location out of range (-1). Ignored."),
            1);
  // Setting the same position again keeps the location.
  EXPECT_EQ(v->setPosition(v->getPosition()), 0);
  EXPECT_EQ(v->getLocation(), qv::BOTTOM_LEFT);
}

TEST_F(ViewObjectTest, EachSetterMarksItsGroupOnlyWhenSomethingChanges) {
  auto *v = new ViewObject;
  auto marks = [v](const auto &change) {
    v->setModified(0);
    change();
    return v->getModified();
  };
  EXPECT_EQ(marks([v] { v->setValue(0); }), 0u);
  EXPECT_EQ(marks([v] { v->setValue(7); }), qv::VIEW_VALUE);
  EXPECT_EQ(marks([v] { v->setViewString(""); }), 0u);
  EXPECT_EQ(marks([v] { v->setViewString("Turn"); }), qv::VIEW_APPEARANCE);
  EXPECT_EQ(marks([v] { v->setColor(qv::WHITE); }), 0u);
  EXPECT_EQ(marks([v] { v->setColor(qv::CYAN); }), qv::VIEW_APPEARANCE);
  EXPECT_EQ(marks([v] { v->setDrawValue(true); }), 0u);
  EXPECT_EQ(marks([v] { v->setDrawValue(false); }), qv::VIEW_APPEARANCE);
  EXPECT_EQ(marks([v] { v->setBorder(true); }), 0u);
  EXPECT_EQ(marks([v] { v->setBorder(false); }), qv::VIEW_APPEARANCE | qv::POSITION);
  // setLocation always records the choice, even at the same place.
  EXPECT_EQ(marks([v] { v->setLocation(v->getLocation()); }), qv::VIEW_APPEARANCE);
  EXPECT_EQ(marks([v] { v->setPosition(Vector(3, 3)); }), qv::VIEW_APPEARANCE | qv::POSITION);

  auto *t = new qv::TextBox;
  auto text_marks = [t](const auto &change) {
    t->setModified(0);
    change();
    return t->getModified();
  };
  EXPECT_EQ(text_marks([t] { t->setText("hello"); }), qv::TEXTBOX_TEXT);
  EXPECT_EQ(text_marks([t] { t->setText("hello"); }), 0u);
  EXPECT_EQ(text_marks([t] { t->clearText(); }), 0u);
  EXPECT_EQ(t->getText(), "");
  EXPECT_EQ(text_marks([t] { t->setSize(Vector(10, 1)); }), 0u);
  EXPECT_EQ(text_marks([t] { t->setSize(Vector(12, 4)); }), qv::TEXTBOX_APPEARANCE);
  EXPECT_EQ(text_marks([t] { t->setPadding(true); }), 0u);
  EXPECT_EQ(text_marks([t] { t->setPadding(false); }), qv::TEXTBOX_APPEARANCE);
  EXPECT_EQ(text_marks([t] { t->setWordWrap(true); }), 0u);
  EXPECT_EQ(text_marks([t] { t->setWordWrap(false); }), qv::TEXTBOX_APPEARANCE);
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
  const qv::EventView raise("Turn", 2, true);
  EXPECT_EQ(world.onEvent(&raise), 1);
  EXPECT_EQ(turn->getValue(), 5);
  const qv::EventView set("Turn", 2, false);
  EXPECT_EQ(world.onEvent(&set), 1);
  EXPECT_EQ(turn->getValue(), 2);
  EXPECT_EQ(other->getValue(), 3);

  const qv::EventView stranger("turn", 9, false);  // tags match exactly
  EXPECT_EQ(world.onEvent(&stranger), 0);
  EXPECT_EQ(turn->eventHandler(&stranger), 0);
  EXPECT_EQ(turn->getValue(), 2);
  EXPECT_EQ(other->getValue(), 3);

  // Anything else goes to the base handler, which wants only paths.
  const qv::EventStep step(4);
  EXPECT_EQ(turn->eventHandler(&step), 0);
}

TEST_F(ViewObjectTest, HeadlessDrawingReportsFailure) {
  auto *v = new ViewObject;
  v->setViewString("Turn");
  EXPECT_LT(v->draw(), 0);
  auto *t = new qv::TextBox;
  t->setText("x");
  EXPECT_LT(t->draw(), 0);
}

TEST_F(ViewObjectWindowTest, BorderedLabelWithValueAndPlainLabel) {
  auto *v = new ViewObject;
  v->setViewString("Turn");
  v->setValue(3);
  v->setColor(qv::YELLOW);
  EXPECT_EQ(v->draw(), 0);
  // " Turn 3 " centred on column 40: columns 36..43, bars at 35 and 44.
  EXPECT_EQ(row(0), std::string(36, ' ') + "--------" + std::string(36, ' '));
  EXPECT_EQ(row(1), std::string(35, ' ') + "| Turn 3 |" + std::string(35, ' '));
  EXPECT_EQ(row(2), row(0));
  EXPECT_EQ(row(3), std::string(80, ' '));
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  EXPECT_EQ(display.screenColor(37, 1), qv::YELLOW);
  EXPECT_EQ(display.screenColor(35, 1), qv::YELLOW);
  EXPECT_EQ(display.screenColor(40, 0), qv::YELLOW);

  display.swapBuffers();
  v->setBorder(false);
  v->setDrawValue(false);
  EXPECT_EQ(v->draw(), 0);
  EXPECT_EQ(row(0), std::string(38, ' ') + "Turn" + std::string(38, ' '));
  EXPECT_EQ(row(1), std::string(80, ' '));

  // A scrolled view does not move it on screen.
  display.swapBuffers();
  qv::WorldManager::getInstance().setView(qv::Box(Vector(50, 13), 80, 24));
  EXPECT_EQ(v->draw(), 0);
  EXPECT_EQ(row(0), std::string(38, ' ') + "Turn" + std::string(38, ' '));

  // Border without value: the label keeps a blank margin inside the bars.
  display.swapBuffers();
  v->setBorder(true);
  EXPECT_EQ(v->draw(), 0);
  EXPECT_EQ(row(0), std::string(37, ' ') + "------" + std::string(37, ' '));
  EXPECT_EQ(row(1), std::string(36, ' ') + "| Turn |" + std::string(36, ' '));
}

TEST_F(ViewObjectWindowTest, TextBoxShowsItsNewestLinesInsideTheFrame) {
  qv::LogManager::getInstance().setLogLevel(30);
  auto *t = new qv::TextBox;
  t->setSize(Vector(10, 3));
  t->setText("the quick brown fox jumps over the lazy dog");
  EXPECT_EQ(t->draw(), 0);
  // Centred on (40, 12): text from column 35, rows 10.5 to 12.5 (cells 10 to 12);
  // padding puts the bars two columns out.
  EXPECT_EQ(row(9), std::string(34, ' ') + "------------" + std::string(34, ' '));
  EXPECT_EQ(row(10), std::string(33, ' ') + "| jumps over |" + std::string(33, ' '));
  EXPECT_EQ(row(11), std::string(33, ' ') + "| the lazy   |" + std::string(33, ' '));
  EXPECT_EQ(row(12), std::string(33, ' ') + "| dog        |" + std::string(33, ' '));
  EXPECT_EQ(row(13), row(9));
  EXPECT_EQ(row(8), std::string(80, ' '));
  EXPECT_EQ(row(14), std::string(80, ' '));
  EXPECT_TRUE(log->contains("TextBox::draw(): lft 35.0, top 10.5, rgt 44.0, bot 12.5"));
  EXPECT_TRUE(log->contains("TextBox::draw(): line added: jumps over"));
  EXPECT_TRUE(log->contains("TextBox::draw(): vector lines: 5"));
  EXPECT_TRUE(log->contains("\tline 0: the quick"));
  EXPECT_TRUE(log->contains("\tline 4: dog"));

  // Without padding the frame hugs the text.
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  display.swapBuffers();
  t->setPadding(false);
  EXPECT_EQ(t->draw(), 0);
  EXPECT_EQ(row(9), std::string(35, ' ') + "----------" + std::string(35, ' '));
  EXPECT_EQ(row(10), std::string(34, ' ') + "|jumps over|" + std::string(34, ' '));

  // An empty box draws its frame around one empty line.
  display.swapBuffers();
  t->setText("");
  t->setSize(Vector(4, 1));
  EXPECT_EQ(t->draw(), 0);
  EXPECT_EQ(row(10), std::string(38, ' ') + "----" + std::string(38, ' '));
  EXPECT_EQ(row(11), std::string(37, ' ') + "|    |" + std::string(37, ' '));
  EXPECT_EQ(row(12), row(10));
  EXPECT_EQ(t->lines(), std::vector<std::string>{""});
}
