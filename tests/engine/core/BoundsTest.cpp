// Values from outside past what the engine can hold: sprite files and object
// records. Each is clamped or refused with one line saying so,
// and nothing keeps a value no object can have.
#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <sstream>
#include <string>

#include "ResourceFixture.h"
#include "WorldFixture.h"
#include "core/bounds.h"
#include "graphics/DisplayManager.h"
#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"
#include "world/Object.h"

namespace {

class SpriteBoundsTest : public qvtest::ResourceFixture {};
class RecordBoundsTest : public qvtest::WorldFixture {};

TEST_F(SpriteBoundsTest, SpritesPastTheirBoundsAreNotLoaded) {
  const std::string row(1001, 'x');
  const struct {
    std::string file;
    std::vector<std::string> lines;
  } cases[] = {
      {"100001\n1\n1\n0\nred\nx\n",
       {"RM::loadSimpleSprite(): Error line 1! Number of frames is 100001.", "\tAt most 100000."}},
      {"1\n1001\n1\n0\nred\n" + row + "\n",
       {"RM::loadSimpleSprite(): Error line 2! Width is '1001'.", "\tAt most 1000."}},
      {"1\n1\n1001\n0\nred\nx\n",
       {"RM::loadSimpleSprite(): Error line 3! Height is '1001'.", "\tAt most 1000."}},
      {"1\n1\n1\n100001\nred\nx\n",
       {"RM::loadSimpleSprite(): Error line 4! Slowdown is '100001'.", "\tAt most 100000."}},
      {"<HEADER>\nframes 1\nwidth 1001\nheight 1\n</HEADER>\n<BODY>\n" + row +
           "\nend\n</BODY>\n<FOOTER>\nversion 1\n</FOOTER>\n",
       {"RM::loadRobustSprite(): Error! 'width' is 1001, at most 1000."}},
      {"<HEADER>\nframes 1\nwidth 1\nheight 1\nslowdown 2147483647\n</HEADER>\n",
       {"RM::loadRobustSprite(): Error! 'slowdown' is 2147483647, at most 100000."}},
  };
  std::vector<std::string> expected;
  for (const auto &c : cases) {
    EXPECT_EQ(rm().loadSprite(dir.write("big.txt", c.file), "big"), -1) << c.lines[0];
    expected.insert(expected.end(), c.lines.begin(), c.lines.end());
    expected.push_back("RM::loadSprite(): Sprite 'big' NOT loaded.");
  }
  EXPECT_EQ(log->messages(), expected);
}

// A value's bytes as a record holds them: little-endian, as here.
template <typename T>
std::string raw(T value) {
  return std::string(reinterpret_cast<const char *>(&value), sizeof value);
}

// A refused record leaves every attribute of the object as it was.
TEST_F(RecordBoundsTest, RecordsWithValuesNoObjectCanHaveFailAndChangeNothing) {
  // Text boxes are bounded by the grid: the default one of 80 x 24 cells.
  qv::DisplayManager::getInstance().setHorizontalChars(80);
  qv::DisplayManager::getInstance().setVerticalChars(24);
  const std::string no_label(8, '\0');
  const std::string circle = raw(qv::SHAPE) + raw(qv::CIRCLE);  // then size, colour, fill
  const struct {
    int kind;  // 0 Object, 1 ViewObject, 2 TextBox
    std::string record;
    const char *line;
  } cases[] = {
      {0, circle + raw(std::numeric_limits<float>::quiet_NaN()) + raw(qv::RED) + "\xff",
       "readFloat(): Error! Value nan out of range [-1e+06, 1e+06]; the record is refused."},
      {0, circle + raw(-3.0f) + raw(qv::RED) + "\xff",
       "Shape::deserialize(): Error! Size -3 is negative; the record is refused."},
      {0, raw(qv::ID) + raw(0),
       "Object::deserialize(): Error! Id 0 out of range [1, 2147483647]; the record is refused."},
      {0, raw(qv::ANIMATION) + no_label + raw(INT_MAX) + raw(0) + raw(0),
       "Animation::deserialize(): Error! Frame index 2147483647 out of range [0, 99999]; the "
       "record is refused."},
      {0, raw(qv::ANIMATION) + no_label + raw(0) + raw(INT_MAX) + raw(0),
       "Animation::deserialize(): Error! Slowdown count 2147483647 out of range [-1, 100000]; the "
       "record is refused."},
      {1, raw(qv::VIEW_APPEARANCE) + no_label + "\x01" + raw(99) + raw(qv::TOP_LEFT) + "\x01",
       "ViewObject::deserialize(): Error! Color 99 out of range [0, 8]; the record is refused."},
      // A text box's size, then its padding and word wrap flags.
      {2, raw(qv::TEXTBOX_APPEARANCE) + raw(3e9f) + raw(2.0f) + "\x01\x01",
       "readFloat(): Error! Value 3e+09 out of range [-1e+06, 1e+06]; the record is refused."},
      {2, raw(qv::TEXTBOX_APPEARANCE) + raw(10.0f) + raw(97.0f) + "\x01\x01",
       "TextBox::deserialize(): Error! Size (10,97) out of range (0,0) to (320,96); the record is "
       "refused."},
  };
  // A refused record changes nothing, so each object takes all its records.
  qv::Object *const objects[] = {new qv::Object, new qv::ViewObject, new qv::TextBox};
  for (const auto &c : cases) {
    qv::Object *p_o = objects[c.kind];
    std::stringstream before, after, record(c.record);
    p_o->serialize(&before, ~0u);
    EXPECT_EQ(p_o->deserialize(&record, nullptr), -1) << c.line;
    p_o->serialize(&after, ~0u);
    EXPECT_EQ(after.str(), before.str()) << c.line;
    EXPECT_TRUE(log->contains(c.line)) << c.line << "\n" << log->text();
  }

  // An id near the top of int's range is the object's own, but the counter
  // stays where it can go on counting.
  qv::Object *p_o = new qv::Object;
  std::stringstream record(raw(qv::ID) + raw(INT_MAX - 1));
  EXPECT_EQ(p_o->deserialize(&record, nullptr), 0);
  EXPECT_EQ(p_o->getId(), INT_MAX - 1);
  EXPECT_TRUE(log->contains(
      "Object::deserialize(): Note! Id 2147483646 is past 1073741824; new objects' ids go on "
      "from 1073741824."));
  EXPECT_EQ((new qv::Object)->getId(), qv::ID_COUNTER_MAX);
}

}  // namespace
