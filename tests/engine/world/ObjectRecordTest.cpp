#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <sstream>
#include <string>

#include "TempDir.h"
#include "WorldFixture.h"
#include "graphics/Animation.h"
#include "graphics/Shape.h"
#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"
#include "path/Path.h"
#include "resources/ResourceManager.h"

namespace {

using namespace std::string_literals;
using qv::Object;
using qv::Vector;
using qvtest::Probe;

// Builds expected records: little-endian numbers, strings with their 64-bit length.
class ObjectRecordTest : public qvtest::WorldFixture {
 protected:
  static std::string le32(std::uint32_t v) {
    std::string out;
    for (int i = 0; i < 4; i++) out += static_cast<char>((v >> (8 * i)) & 0xff);
    return out;
  }
  static std::string le64(std::uint64_t v) { return le32(v & 0xffffffff) + le32(v >> 32); }
  static std::string f32(float f) {
    std::uint32_t bits;
    std::memcpy(&bits, &f, 4);
    return le32(bits);
  }
  static std::string vec(float x, float y) { return f32(x) + f32(y); }
  static std::string str(const std::string &text) { return le64(text.size()) + text; }
  const std::string NO = std::string(1, '\0'), YES = "\1";

  static std::string record(Object *p_o, unsigned int attr = 0) {
    std::stringstream ss;
    EXPECT_EQ(p_o->serialize(&ss, attr), 0);
    return ss.str();
  }
  static int apply(Object *p_o, const std::string &record, unsigned int *p_attr = nullptr) {
    std::stringstream ss(record);
    return p_o->deserialize(&ss, p_attr);
  }
  std::map<std::string, int> short_records;

  // A value type's record: written as bytes, read back unchanged, and a
  // record one byte short fails under label, leaving the value as it was.
  template <class T>
  void expectValueRecord(const T &value, const std::string &bytes, const std::string &label) {
    std::stringstream out, in(bytes), cut(bytes.substr(0, bytes.size() - 1)), again;
    ASSERT_EQ(value.serialize(&out), 0);
    EXPECT_EQ(out.str(), bytes) << label;
    T back;
    ASSERT_EQ(back.deserialize(&in), 0);
    EXPECT_EQ(back.deserialize(&cut), -1);
    back.serialize(&again);
    EXPECT_EQ(again.str(), bytes) << label;  // bit for bit, negative zero included
    EXPECT_EQ(log->count(label + ": Error! Stream eof."), ++short_records[label]);
  }
};

TEST_F(ObjectRecordTest, ValueTypesWriteLittleEndianFieldsInOrder) {
  expectValueRecord(Vector(1, -2), "\x00\x00\x80\x3f\x00\x00\x00\xc0"s, "Vector::deserialize()");
  expectValueRecord(qv::Box(Vector(1, -2), 0.5f, 80),
                    "\x00\x00\x80\x3f\x00\x00\x00\xc0\x00\x00\x00\x3f\x00\x00\xa0\x42"s,
                    "Box::deserialize()");
  qv::Path path;
  path.setNodes({Vector(1, 2), Vector(-3, 4.5f)});
  path.advance();  // the index does not travel
  expectValueRecord(path, le64(2) + vec(1, 2) + vec(-3, 4.5f), "Path::deserialize()");
  qv::Shape shape;
  shape.setType(qv::SQUARE);
  shape.setSize(7);
  shape.setColor(qv::RED);
  shape.setAlpha(128);
  expectValueRecord(shape, le32(qv::SQUARE) + f32(7) + le32(qv::RED) + "\x80",
                    "Shape::deserialize()");
  std::stringstream hero(str("hero") + le32(2) + le32(0xFFFFFFFF) + le32(qv::HORIZONTAL));
  qv::Animation animation;
  ASSERT_EQ(animation.deserialize(&hero), 0);
  EXPECT_EQ(animation.getSlowdownCount(), -1);
  expectValueRecord(animation, hero.str(), "Animation::deserialize()");
  expectValueRecord(Vector(1.0f / 3.0f, -0.0f), vec(1.0f / 3.0f, -0.0f), "Vector::deserialize()");
}

TEST_F(ObjectRecordTest, NewObjectWritesEveryAttributeOnceThenOnlyAnEmptyMaskAndIdsMoveUp) {
  Object *p_o = new Object;
  std::string full = record(p_o);
  full.replace(110, 9, "<shape>");  // the default shape's size and colour follow the font
  EXPECT_EQ(full, le32(0x3FFFF) + le32(p_o->getId()) + YES + YES + le32(0) + vec(-0.5f, -0.5f) +
                      vec(0.99f, 0.99f) + vec(1, 1) + str("(Undefined)") + str("") + le32(0) +
                      le32(0) + le32(qv::NONE) + le32(2) + le32(qv::HARD) + NO + vec(0, 0) +
                      f32(0) + vec(0, 0) + le32(0xFFFFFFFF) + "<shape>" + NO + le64(0) + NO);
  EXPECT_EQ(p_o->getModified(), 0u);
  EXPECT_EQ(record(p_o), le32(0));

  // A received id moves the id counter, only upward.
  EXPECT_EQ(apply(p_o, le32(qv::ID) + le32(500)), 0);
  EXPECT_EQ(p_o->getId(), 500);
  EXPECT_EQ((new Object)->getId(), 501);
  Object *p_low = new Object;
  EXPECT_EQ(apply(p_low, le32(qv::ID) + le32(3)), 0);
  EXPECT_EQ(p_low->getId(), 3);
  EXPECT_EQ((new Object)->getId(), 503);
}

TEST_F(ObjectRecordTest, NamedAttributesComeInFixedOrderAndRebuildAnEqualObject) {
  Object *p_src = new Object;
  ASSERT_EQ(p_src->registerInterest("alpha"), 0);
  ASSERT_EQ(p_src->registerInterest("qv-step"), 0);
  p_src->setType("Hero");
  p_src->setBox(qv::Box(Vector(-1, -2), 3, 4));
  p_src->setSolidness(qv::SOFT);
  p_src->setNoSoft(true);
  p_src->setVisible(false);
  p_src->setAvoidCollisions(true);
  p_src->setVelocity(Vector(0, 2));
  p_src->setAcceleration(Vector(0.5f, 0));
  qv::Shape shape;
  shape.setType(qv::TRIANGLE);
  p_src->setShape(shape);
  qv::Path path;
  path.setNodes({Vector(4, 1), Vector(5, 1)});
  p_src->setPath(path);
  p_src->setModified(qv::POSITION | qv::TYPE);
  EXPECT_EQ(record(p_src, qv::POSITION), le32(0x20) + vec(1, 1));
  EXPECT_EQ(p_src->getModified(), static_cast<unsigned int>(qv::TYPE));
  p_src->setModified(0);
  const struct {
    unsigned int attr;
    std::string bytes;
  } cases[] = {
      {qv::ALTITUDE, le32(0x100) + le32(2)},
      {qv::EVENTS | qv::TYPE, le32(0x48) + le32(2) + str("alpha") + str("qv-step") + str("Hero")},
      // Direction before speed, the follow-path flag before the path.
      {qv::SPEED | qv::DIRECTION | qv::PATH | qv::FOLLOW_PATH,
       le32(0x19800) + vec(0, 1) + f32(2) + NO + le64(2) + vec(4, 1) + vec(5, 1)},
  };
  for (const auto &c : cases) EXPECT_EQ(record(p_src, c.attr), c.bytes) << c.attr;

  // A round trip into a new object, most of whose values differ.
  p_src->setPosition(Vector(5, 6));
  p_src->setAltitude(3);
  Probe *p_dst = new Probe(Vector(9, 9));
  ASSERT_EQ(p_dst->registerInterest("gamma"), 0);
  unsigned int received = 0;
  EXPECT_EQ(apply(p_dst, record(p_src, 0x3FFFF), &received), 0);
  EXPECT_EQ(received, 0x3FFFFu);
  EXPECT_EQ(p_dst->getModified(), 0u);
  EXPECT_EQ(record(p_dst, 0x3FFFF), record(p_src, 0x3FFFF));

  // The world's indexes follow: the received types are delivered, the old one is not.
  qv::WorldManager &world = qv::WorldManager::getInstance();
  for (const char *type : {"alpha", "gamma"}) {
    qv::Event e;
    e.setType(type);
    world.onEvent(&e);
  }
  EXPECT_EQ(p_dst->count("alpha"), 1);
  EXPECT_EQ(p_dst->count("gamma"), 0);
  EXPECT_EQ(world.getAllObjects().getCount(), 2);
}

TEST_F(ObjectRecordTest, FollowPathTurnsTowardTheHeldPathBeforeTheNewOneArrives) {
  Object *p_dst = new Object;
  qv::Path held;
  held.setNodes({Vector(1, 5)});
  p_dst->setPath(held);
  EXPECT_EQ(apply(p_dst, le32(qv::FOLLOW_PATH | qv::PATH) + YES + le64(1) + vec(10, 1)), 0);
  EXPECT_TRUE(p_dst->getFollowPath());
  EXPECT_EQ(p_dst->getDirection(), Vector(0, 1));  // from (1,1) toward (1,5)
  EXPECT_EQ(p_dst->getPath().toString(), "(10,1)|");
  EXPECT_EQ(p_dst->getPath().getIndex(), 0);
}

TEST_F(ObjectRecordTest, ShortRecordsFailWithEndOfInputAndApplyNoHalfValue) {
  Object *p_src = new Object;
  p_src->setPosition(Vector(7, 8));
  p_src->registerInterest("alpha");
  const std::string full = record(p_src);
  for (std::size_t cut = 0; cut < full.size(); cut++) {
    Object *p_dst = new Object;
    ASSERT_EQ(apply(p_dst, full.substr(0, cut)), -1) << "cut at " << cut;
    EXPECT_EQ(p_dst->getEventCount(), cut < 27 ? 0 : 1) << "cut at " << cut;
    EXPECT_EQ(p_dst->getPosition(), cut < 51 ? Vector(1, 1) : Vector(7, 8)) << cut;
    qv::WorldManager::getInstance().markForDelete(p_dst);
  }
  EXPECT_EQ(log->count("Object::deserialize(): Error! Stream eof."), static_cast<int>(full.size()));
}

TEST_F(ObjectRecordTest, ForgedLengthsAskForNothingTheRecordDoesNotHold) {
  Object *p_o = new Object;
  // A type claiming 2^62 bytes, a path of 2^60 nodes, 2^31-1 event names.
  EXPECT_EQ(apply(p_o, le32(qv::TYPE) + le64(1ull << 62) + "Hero"), -1);
  EXPECT_EQ(p_o->getType(), "(Undefined)");
  EXPECT_EQ(apply(p_o, le32(qv::PATH) + le64(1ull << 60) + vec(0, 0)), -1);
  EXPECT_EQ(apply(p_o, le32(qv::EVENTS) + le32(0x7FFFFFFF) + str("alpha")), -1);
  EXPECT_EQ(p_o->getEventCount(), 0);
  EXPECT_EQ(log->count("Object::deserialize(): Error! Stream eof."), 3);
  EXPECT_EQ(apply(p_o, le32(qv::EVENTS) + le32(0xFFFFFFFF)), -1);
  EXPECT_TRUE(log->contains("Object::deserialize(): Error! Stream fail."));

  // Values no object can have are refused (BoundsTest has the lines); the
  // largest it can have, a million cells out, the world takes.
  for (std::uint32_t bits : {0x7FC00000u, 0x7F800000u, 0xFF800000u, 0x7F7FFFFFu, 0xCF000000u})
    EXPECT_EQ(apply(p_o, le32(qv::POSITION) + le32(bits) + le32(0)), -1);
  EXPECT_EQ(p_o->getPosition(), qv::Vector(1, 1));
  const std::uint32_t million = 0x49742400u;  // 1e6
  EXPECT_EQ(apply(p_o, le32(qv::POSITION | qv::BOX) + le32(million) + le32(0) + le32(million) +
                           le32(million) + le32(million) + le32(million)),
            0);
  qv::WorldManager::getInstance().update();

  // Random bytes into every class: refused or applied, never a crash.
  std::srand(7);
  for (int round = 0; round < 3000; round++) {
    std::string noise = le32(static_cast<std::uint32_t>(std::rand()) & 0x3FFFFF);
    for (int i = std::rand() % 96; i > 0; i--)
      noise += static_cast<char>(std::rand() % 8 == 0 ? 0xFF : std::rand());
    Object *p_target = round % 3 == 0   ? new Object
                       : round % 3 == 1 ? static_cast<Object *>(new qv::ViewObject)
                                        : new qv::TextBox;
    const int result = apply(p_target, noise);
    EXPECT_TRUE(result == 0 || result == -1);
    qv::WorldManager::getInstance().markForDelete(p_target);
    if (round % 100 == 0) qv::WorldManager::getInstance().update();
  }
}

TEST_F(ObjectRecordTest, ViewObjectAndTextBoxCarryTheirOwnGroups) {
  qv::TextBox *p_box = new qv::TextBox;
  record(p_box);
  EXPECT_EQ(p_box->getModified(), 0u);
  p_box->setText("hello");
  EXPECT_EQ(record(p_box), le32(qv::TEXTBOX_TEXT) + str("hello"));

  qv::ViewObject *p_view = new qv::ViewObject;
  p_view->setViewString("Turn");
  p_view->setValue(3);
  p_view->setColor(qv::YELLOW);
  p_view->setLocation(qv::BOTTOM_LEFT);
  p_view->setBorder(false);
  const std::string view = record(p_view, qv::VIEW_VALUE | qv::VIEW_APPEARANCE);
  EXPECT_EQ(view, le32(0xC0000) + le32(3) + str("Turn") + NO + le32(qv::YELLOW) +
                      le32(qv::BOTTOM_LEFT) + YES);
  qv::ViewObject *p_copy = new qv::ViewObject;
  ASSERT_EQ(apply(p_copy, view), 0);
  EXPECT_EQ(record(p_copy, 0xC0020), record(p_view, 0xC0020));  // position follows the location

  p_box->setSize(Vector(12, 3));
  p_box->setWordWrap(false);
  p_box->setViewString("log");
  qv::TextBox *p_box_copy = new qv::TextBox;
  unsigned int received = 0;
  ASSERT_EQ(apply(p_box_copy, record(p_box, 0x3FFFFF), &received), 0);
  EXPECT_EQ(received, 0x3FFFFFu);
  EXPECT_EQ(record(p_box_copy, 0x3FFFFF), record(p_box, 0x3FFFFF));

  // A short view record fails in the Object part and says so.
  EXPECT_EQ(apply(p_copy, le32(qv::POSITION) + "abc"), -1);
  EXPECT_TRUE(log->contains("ViewObject::deserialize(): Error calling Object::deserialize()."));
}

TEST_F(ObjectRecordTest, OnlyTheSpriteLabelTravelsAndTheReaderFindsItsOwn) {
  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  ASSERT_EQ(rm.startUp(), 0);
  struct StopResources {
    ~StopResources() { qv::ResourceManager::getInstance().shutDown(); }
  } stop_resources;
  qvtest::TempDir dir;
  ASSERT_EQ(rm.loadSprite(dir.write("man.txt", "2\n3\n2\n4\ncyan\n.o.\n/#\\\n\\o/\n.#.\n"), "man"),
            0);
  Object *p_src = new Object;
  ASSERT_EQ(p_src->setSprite("man"), 0);
  qv::Animation animation = p_src->getAnimation();
  animation.setIndex(1);
  animation.setSlowdownCount(3);
  p_src->setAnimation(animation, false);
  const std::string sent = record(p_src, qv::ANIMATION);
  EXPECT_EQ(sent, le32(qv::ANIMATION) + str("man") + le32(1) + le32(3) + le32(0));
  Object *p_dst = new Object;
  EXPECT_EQ(apply(p_dst, sent), 0);
  EXPECT_EQ(p_dst->getAnimation().getSprite(), rm.getSprite("man"));
  EXPECT_EQ(record(p_dst, qv::ANIMATION | qv::BOX), record(p_src, qv::ANIMATION | qv::BOX));

  // A label this copy never loaded leaves the animation without a sprite.
  EXPECT_EQ(apply(p_dst, le32(qv::ANIMATION) + str("ghost") + le32(0) + le32(0) + le32(0)), 0);
  EXPECT_EQ(p_dst->getAnimation().getSprite(), nullptr);
  EXPECT_EQ(p_dst->getAnimation().getName(), "ghost");
  EXPECT_TRUE(log->contains("Object::setSprite(): Warning! Sprite 'ghost' not found"));
}

TEST_F(ObjectRecordTest, TraceLinesNameEachAttributeBothWays) {
  Object *p_o = new Object;
  p_o->setType("Hero");
  p_o->setModified(0);
  setLogLevel(25);
  std::stringstream ss;
  p_o->serialize(&ss, qv::POSITION | qv::TYPE);
  (new Object)->deserialize(&ss);
  setLogLevel(0);
  for (const char *line : {"Object::serialize(): attr is 96, modified is 0 (false)",
                           "\t00000000000000000000000001100000",
                           "Object::deserialize(): attr 96 (00000000000000000000000001100000)",
                           "Object::deserialize(): done checking all types."})
    EXPECT_TRUE(log->contains(line)) << line;
  EXPECT_EQ(log->count("\tPOSITION: (1,1)"), 2);
  EXPECT_EQ(log->count("\tTYPE: Hero"), 2);
}

}  // namespace
