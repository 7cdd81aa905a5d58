// Values from outside past what the engine can hold: configuration files,
// sprite files and object records. Each is clamped or refused with one line
// saying so, and nothing keeps a value no object can have.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>

#include "EngineFixture.h"
#include "ResourceFixture.h"
#include "WorldFixture.h"
#include "core/Config.h"
#include "core/bounds.h"
#include "graphics/DisplayManager.h"
#include "graphics/Sprite.h"
#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"
#include "world/Object.h"

namespace {

class ConfigBoundsTest : public qvtest::LogFixture {};
class SpriteBoundsTest : public qvtest::ResourceFixture {};
class RecordBoundsTest : public qvtest::WorldFixture {};

qv::Config &config() {
  return qv::Config::getInstance();
}

TEST_F(ConfigBoundsTest, SettingsPastTheirBoundsAreClamped) {
  struct Case {
    const char *setting;
    std::function<double()> read;
    double expected;
    const char *line;
  };
  const Case cases[] = {
      {"window_horizontal_chars:200000,", [] { return config().getWindowHorizontalChars(); }, 1000,
       "loadConfig(): Warning! window_horizontal_chars 200000 is over 1000; using 1000."},
      {"window_vertical_chars:200000,", [] { return config().getWindowVerticalChars(); }, 1000,
       "loadConfig(): Warning! window_vertical_chars 200000 is over 1000; using 1000."},
      {"window_horizontal_pixels:99999,", [] { return config().getWindowHorizontalPixels(); },
       16384, "loadConfig(): Warning! window_horizontal_pixels 99999 is over 16384; using 16384."},
      {"frame_time:2147483647,", [] { return config().getFrameTime(); }, 10000,
       "loadConfig(): Warning! frame_time 2147483647 is over 10000; using 10000."},
      {"font_scale:1e10,", [] { return config().getFontScale(); }, 10,
       "loadConfig(): Warning! font_scale 1e+10 out of range [0.1, 10]; using 10."},
      {"font_scale:0,", [] { return config().getFontScale(); }, 0.1f,
       "loadConfig(): Warning! font_scale 0 out of range [0.1, 10]; using 0.1."},
      {"font_scale:nan,", [] { return config().getFontScale(); }, 2,
       "loadConfig(): Warning! font_scale nan out of range [0.1, 10]; using 2."},
  };
  for (const Case &c : cases) {
    config().loadConfig(c.setting);
    EXPECT_EQ(c.read(), c.expected) << c.setting;
    EXPECT_EQ(log->count(c.line), 1) << c.setting << "\n" << log->text();
  }
  config().loadConfig("window_horizontal_chars:1000,font_scale:0.1,frame_time:0,");
  EXPECT_EQ(log->messages().size(), std::size(cases));  // the bounds themselves pass
}

TEST_F(ConfigBoundsTest, TheDisplayOfAHugeGridHasTheCappedGrid) {
  config().loadConfig("headless:true,window_horizontal_chars:200000,window_vertical_chars:200000,");
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  ASSERT_EQ(display.startUp(), 0);
  EXPECT_EQ(display.getHorizontalChars(), qv::CELLS_MAX);
  EXPECT_EQ(display.screenText().size(), 1001u * 1000u);
  display.setHorizontalChars(1001);
  EXPECT_EQ(display.getHorizontalChars(), qv::CELLS_MAX);
  EXPECT_TRUE(log->contains(
      "DisplayManager::setHorizontalChars(): Error! 1001 cells across is no grid; using 1000 "
      "instead."));
  display.shutDown();
  config().loadConfig("headless:true,");
}

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
  for (const auto &c : cases) {
    const std::size_t before = log->messages().size();
    EXPECT_EQ(rm().loadSprite(dir.write("big.txt", c.file), "big"), -1);
    std::vector<std::string> expected = c.lines;
    expected.push_back("RM::loadSprite(): Sprite 'big' NOT loaded.");
    const std::vector<std::string> all = log->messages();
    EXPECT_EQ(std::vector<std::string>(all.begin() + static_cast<long>(before), all.end()),
              expected);
  }
  EXPECT_EQ(rm().getSpriteCount(), 0);
}

// Each frame takes rows off the front of the body: reading many frames must
// not cost the body's length for every frame.
TEST_F(SpriteBoundsTest, ASectionedSpriteOfFortyThousandFramesLoads) {
  std::string file = "<HEADER>\nframes 40000\nwidth 1\nheight 1\n</HEADER>\n<BODY>\n";
  for (int i = 0; i < 40000; i++)
    file += std::string(1, static_cast<char>('a' + i % 26)) + "\nend\n";
  file += "</BODY>\n<FOOTER>\nversion 1\n</FOOTER>\n";
  ASSERT_EQ(rm().loadSprite(dir.write("long.txt", file), "long"), 0) << log->text();
  const qv::Sprite *p_sprite = rm().getSprite("long");
  EXPECT_EQ(p_sprite->getFrameCount(), 40000);
  EXPECT_EQ(p_sprite->getFrame(39999).getString(), "l");  // 39999 % 26 == 11
}

// ---- records -----------------------------------------------------------------

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
std::string flags(bool a, bool b) {
  return std::string(1, static_cast<char>(a)) + std::string(1, static_cast<char>(b));
}

const float NAN_F = std::numeric_limits<float>::quiet_NaN();

// Every attribute of a class, as written now: a refused record must leave it.
template <class T>
std::string state(T *p_o, unsigned int all) {
  std::stringstream ss;
  p_o->serialize(&ss, all);
  return ss.str();
}

TEST_F(RecordBoundsTest, RecordsWithValuesNoObjectCanHaveFailAndChangeNothing) {
  // Text boxes are bounded by the grid: the default one of 80 x 24 cells.
  qv::DisplayManager::getInstance().setHorizontalChars(80);
  qv::DisplayManager::getInstance().setVerticalChars(24);
  const std::string no_label = std::string(8, '\0');
  const struct {
    const char *what;
    int kind;  // 0 Object, 1 ViewObject, 2 TextBox
    std::string record;
    const char *line;
  } cases[] = {
      // A circle of no size at all: 17 bytes.
      {"shape size NaN", 0,
       le32(qv::SHAPE) + le32(qv::CIRCLE) + f32(NAN_F) + le32(qv::RED) + "\xff",
       "readFloat(): Error! Value nan out of range [-1e+06, 1e+06]; the record is refused."},
      {"shape size negative", 0,
       le32(qv::SHAPE) + le32(qv::CIRCLE) + f32(-3) + le32(qv::RED) + "\xff",
       "Shape::deserialize(): Error! Size -3 is negative; the record is refused."},
      {"id zero", 0, le32(qv::ID) + le32(0),
       "Object::deserialize(): Error! Id 0 out of range [1, 2147483647]; the record is refused."},
      {"frame index at the top", 0,
       le32(qv::ANIMATION) + no_label + le32(INT_MAX) + le32(0) + le32(0),
       "Animation::deserialize(): Error! Frame index 2147483647 out of range [0, 99999]; the "
       "record is refused."},
      {"slowdown count at the top", 0,
       le32(qv::ANIMATION) + no_label + le32(0) + le32(INT_MAX) + le32(0),
       "Animation::deserialize(): Error! Slowdown count 2147483647 out of range [-1, 100000]; the "
       "record is refused."},
      {"view object colour", 1,
       le32(qv::VIEW_APPEARANCE) + no_label + "\x01" + le32(99) + le32(qv::TOP_LEFT) + "\x01",
       "ViewObject::deserialize(): Error! Color 99 out of range [0, 8]; the record is refused."},
      {"text box width NaN", 2, le32(qv::TEXTBOX_APPEARANCE) + f32(NAN_F) + f32(2) + flags(1, 1),
       "readFloat(): Error! Value nan out of range [-1e+06, 1e+06]; the record is refused."},
      {"text box wider than int", 2,
       le32(qv::TEXTBOX_APPEARANCE) + f32(3e9f) + f32(2) + flags(1, 1),
       "readFloat(): Error! Value 3e+09 out of range [-1e+06, 1e+06]; the record is refused."},
      {"text box far higher than the screen", 2,
       le32(qv::TEXTBOX_APPEARANCE) + f32(10) + f32(97) + flags(1, 1),
       "TextBox::deserialize(): Error! Size (10,97) out of range (0,0) to (320,96); the record is "
       "refused."},
  };
  for (const auto &c : cases) {
    qv::Object *p_o = c.kind == 0   ? new qv::Object
                      : c.kind == 1 ? new qv::ViewObject
                                    : new qv::TextBox;
    const unsigned int all = c.kind == 0 ? 0x3FFFF : c.kind == 1 ? 0xFFFFF : 0x3FFFFF;
    const std::string before = state(p_o, all);
    std::stringstream record(c.record);
    EXPECT_EQ(p_o->deserialize(&record, nullptr), -1) << c.what;
    EXPECT_EQ(state(p_o, all), before) << c.what;
    EXPECT_TRUE(log->contains(c.line)) << c.what << "\n" << log->text();
  }
}

// An id near the top of int's range is the object's own, but the counter
// stays where it can go on counting.
TEST_F(RecordBoundsTest, AnIdNearTheTopLeavesTheCounterRoomToCount) {
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
