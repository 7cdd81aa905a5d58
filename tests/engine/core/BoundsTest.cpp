// Values from outside past what the engine can hold: sprite files and object
// records. Each is clamped or refused with one line saying so,
// and nothing keeps a value no object can have.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
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

std::string le32(std::uint32_t v) {
  std::string out;
  for (int i = 0; i < 4; i++) out += static_cast<char>((v >> (8 * i)) & 0xff);
  return out;
}
std::string f32(float f) {
  std::uint32_t bits;
  std::memcpy(&bits, &f, 4);
  return le32(bits);
}

// A refused record leaves every attribute of the object as it was.
TEST_F(RecordBoundsTest, RecordsWithValuesNoObjectCanHaveFailAndChangeNothing) {
  // Text boxes are bounded by the grid: the default one of 80 x 24 cells.
  qv::DisplayManager::getInstance().setHorizontalChars(80);
  qv::DisplayManager::getInstance().setVerticalChars(24);
  const std::string no_label(8, '\0');
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::string circle = le32(qv::SHAPE) + le32(qv::CIRCLE);  // then size, colour, fill
  const std::string text_box = le32(qv::TEXTBOX_APPEARANCE);      // then width, height, flags
  const struct {
    int kind;  // 0 Object, 1 ViewObject, 2 TextBox
    std::string record;
    const char *line;
  } cases[] = {
      {0, circle + f32(nan) + le32(qv::RED) + "\xff",
       "readFloat(): Error! Value nan out of range [-1e+06, 1e+06]; the record is refused."},
      {0, circle + f32(-3) + le32(qv::RED) + "\xff",
       "Shape::deserialize(): Error! Size -3 is negative; the record is refused."},
      {0, le32(qv::ID) + le32(0),
       "Object::deserialize(): Error! Id 0 out of range [1, 2147483647]; the record is refused."},
      {0, le32(qv::ANIMATION) + no_label + le32(INT_MAX) + le32(0) + le32(0),
       "Animation::deserialize(): Error! Frame index 2147483647 out of range [0, 99999]; the "
       "record is refused."},
      {0, le32(qv::ANIMATION) + no_label + le32(0) + le32(INT_MAX) + le32(0),
       "Animation::deserialize(): Error! Slowdown count 2147483647 out of range [-1, 100000]; the "
       "record is refused."},
      {1, le32(qv::VIEW_APPEARANCE) + no_label + "\x01" + le32(99) + le32(qv::TOP_LEFT) + "\x01",
       "ViewObject::deserialize(): Error! Color 99 out of range [0, 8]; the record is refused."},
      {2, text_box + f32(3e9f) + f32(2) + "\x01\x01",
       "readFloat(): Error! Value 3e+09 out of range [-1e+06, 1e+06]; the record is refused."},
      {2, text_box + f32(10) + f32(97) + "\x01\x01",
       "TextBox::deserialize(): Error! Size (10,97) out of range (0,0) to (320,96); the record is "
       "refused."},
  };
  for (const auto &c : cases) {
    qv::Object *p_o = c.kind == 0   ? new qv::Object
                      : c.kind == 1 ? new qv::ViewObject
                                    : new qv::TextBox;
    const unsigned int all = c.kind == 0 ? 0x3FFFF : c.kind == 1 ? 0xFFFFF : 0x3FFFFF;
    std::stringstream before, after, record(c.record);
    p_o->serialize(&before, all);
    EXPECT_EQ(p_o->deserialize(&record, nullptr), -1) << c.line;
    p_o->serialize(&after, all);
    EXPECT_EQ(after.str(), before.str()) << c.line;
    EXPECT_TRUE(log->contains(c.line)) << c.line << "\n" << log->text();
  }

  // An id near the top of int's range is the object's own, but the counter
  // stays where it can go on counting.
  qv::Object *p_o = new qv::Object;
  std::stringstream record(le32(qv::ID) + le32(INT_MAX - 1));
  EXPECT_EQ(p_o->deserialize(&record, nullptr), 0);
  EXPECT_EQ(p_o->getId(), INT_MAX - 1);
  EXPECT_TRUE(log->contains(
      "Object::deserialize(): Note! Id 2147483646 is past 1073741824; new objects' ids go on "
      "from 1073741824."));
  EXPECT_EQ((new qv::Object)->getId(), qv::ID_COUNTER_MAX);
  EXPECT_EQ((new qv::Object)->getId(), qv::ID_COUNTER_MAX + 1);
}

}  // namespace
