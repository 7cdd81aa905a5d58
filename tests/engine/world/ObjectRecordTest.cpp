#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "TempDir.h"
#include "WorldFixture.h"
#include "core/utility.h"
#include "graphics/Animation.h"
#include "graphics/Shape.h"
#include "graphics/Sprite.h"
#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"
#include "path/Path.h"
#include "resources/ResourceManager.h"
#include "world/WorldManager.h"

namespace {

using qv::Object;
using qvtest::Probe;

class ObjectRecordTest : public qvtest::WorldFixture {
 protected:
  static std::string bytes(const std::stringstream &ss) { return ss.str(); }
  static std::string le32(std::uint32_t v) {
    std::string out;
    for (int i = 0; i < 4; i++) out += static_cast<char>((v >> (8 * i)) & 0xff);
    return out;
  }
  static std::string le64(std::uint64_t v) { return le32(v & 0xffffffff) + le32(v >> 32); }
  // Deserializes text into o; the stream is built fresh for each record.
  static int apply(Object *p_o, const std::string &record, unsigned int *p_attr = nullptr) {
    std::stringstream ss(record);
    return p_o->deserialize(&ss, p_attr);
  }
};

// Sizes of the 18 attributes of a new object, in record order.
const int NEW_OBJECT_RECORD =
    4 + 4 + 1 + 1 + 4 + 16 + 8 + (8 + 11) + (8 + 0 + 12) + 4 + 4 + 1 + 8 + 4 + 8 + 13 + 1 + 8 + 1;

TEST_F(ObjectRecordTest, NewObjectWritesEverythingOnceThenOnlyAnEmptyMask) {
  Object *p_o = new Object;
  std::stringstream full;
  EXPECT_EQ(p_o->serialize(&full), 0);
  const std::string record = bytes(full);
  ASSERT_EQ(static_cast<int>(record.size()), NEW_OBJECT_RECORD);
  EXPECT_EQ(record.substr(0, 4), le32(0x3FFFF));
  EXPECT_EQ(record.substr(4, 4), le32(p_o->getId()));
  EXPECT_EQ(record.substr(6 + 4, 4), le32(0));  // no events
  // Box corner -0.5 (0xBF000000), position (1,1), type length and text.
  EXPECT_EQ(record.substr(14, 4), le32(0xBF000000));
  EXPECT_EQ(record.substr(30, 8), le32(0x3F800000) + le32(0x3F800000));
  EXPECT_EQ(record.substr(38, 19), le64(11) + "(Undefined)");
  EXPECT_EQ(p_o->getModified(), 0u);

  std::stringstream empty;
  EXPECT_EQ(p_o->serialize(&empty), 0);
  EXPECT_EQ(bytes(empty), le32(0));
}

TEST_F(ObjectRecordTest, NamedAttributesAreWrittenWhateverChangedAndInFixedOrder) {
  Object *p_o = new Object;
  p_o->setModified(qv::POSITION | qv::TYPE);
  std::stringstream ss;
  EXPECT_EQ(p_o->serialize(&ss, qv::POSITION), 0);
  EXPECT_EQ(bytes(ss), le32(0x20) + le32(0x3F800000) + le32(0x3F800000));
  EXPECT_EQ(p_o->getModified(), static_cast<unsigned int>(qv::TYPE));

  p_o->setModified(0);
  std::stringstream unchanged;
  p_o->serialize(&unchanged, qv::ALTITUDE);
  EXPECT_EQ(bytes(unchanged), le32(0x100) + le32(2));

  // Direction before speed, follow-path flag before the path.
  p_o->setVelocity(qv::Vector(0, 2));
  qv::Path path;
  path.setNodes({qv::Vector(4, 1), qv::Vector(5, 1)});
  p_o->setPath(path);
  std::stringstream ordered;
  p_o->serialize(&ordered, qv::SPEED | qv::DIRECTION | qv::PATH | qv::FOLLOW_PATH);
  const std::string record = bytes(ordered);
  ASSERT_EQ(record.size(), 4u + 8 + 4 + 1 + 8 + 16);
  EXPECT_EQ(record.substr(4, 8), le32(0) + le32(0x3F800000));  // direction (0,1)
  EXPECT_EQ(record.substr(12, 4), le32(0x40000000));           // speed 2
  EXPECT_EQ(record.substr(16, 1), std::string(1, '\0'));       // not following
  EXPECT_EQ(record.substr(17, 8), le64(2));
}

TEST_F(ObjectRecordTest, EventsAndTypeRecordHasTheExactLength) {
  Object *p_o = new Object;
  ASSERT_EQ(p_o->registerInterest("alpha"), 0);
  ASSERT_EQ(p_o->registerInterest("qv-step"), 0);
  p_o->setType("Hero");
  std::stringstream ss;
  EXPECT_EQ(p_o->serialize(&ss, qv::EVENTS | qv::TYPE), 0);
  EXPECT_EQ(bytes(ss).size(), 4u + (4 + 8 + 5 + 8 + 7) + (8 + 4));
  EXPECT_EQ(bytes(ss),
            le32(0x48) + le32(2) + le64(5) + "alpha" + le64(7) + "qv-step" + le64(4) + "Hero");
}

TEST_F(ObjectRecordTest, RoundTripRebuildsAnEqualObject) {
  Object *p_src = new Object;
  p_src->setType("Hero");
  p_src->setPosition(qv::Vector(5, 6));
  p_src->setBox(qv::Box(qv::Vector(-1, -2), 3, 4));
  p_src->setAltitude(3);
  p_src->setSolidness(qv::SOFT);
  p_src->setNoSoft(true);
  p_src->setVisible(false);
  p_src->setAvoidCollisions(true);
  p_src->setVelocity(qv::Vector(3, 4));
  p_src->setAcceleration(qv::Vector(0.5f, 0));
  qv::Shape shape;
  shape.setType(qv::TRIANGLE);
  shape.setSize(7);
  shape.setColor(qv::RED);
  p_src->setShape(shape);
  ASSERT_EQ(p_src->registerInterest("alpha"), 0);
  ASSERT_EQ(p_src->registerInterest("beta"), 0);
  std::stringstream ss;
  ASSERT_EQ(p_src->serialize(&ss), 0);

  Probe *p_dst = new Probe(qv::Vector(9, 9));
  ASSERT_EQ(p_dst->registerInterest("gamma"), 0);
  unsigned int received = 0;
  EXPECT_EQ(p_dst->deserialize(&ss, &received), 0);
  EXPECT_EQ(received, 0x3FFFFu);
  EXPECT_EQ(p_dst->getId(), p_src->getId());
  EXPECT_EQ(p_dst->getPosition(), qv::Vector(5, 6));
  EXPECT_EQ(p_dst->getBox(), p_src->getBox());
  EXPECT_EQ(p_dst->getType(), "Hero");
  EXPECT_EQ(p_dst->getAltitude(), 3);
  EXPECT_EQ(p_dst->getSolidness(), qv::SOFT);
  EXPECT_TRUE(p_dst->getNoSoft());
  EXPECT_FALSE(p_dst->isVisible());
  EXPECT_TRUE(p_dst->getAvoidCollisions());
  EXPECT_EQ(p_dst->getVelocity(), qv::Vector(3, 4));
  EXPECT_EQ(p_dst->getAcceleration(), qv::Vector(0.5f, 0));
  EXPECT_EQ(p_dst->getShape().toString(), shape.toString());
  ASSERT_EQ(p_dst->getEventCount(), 2);
  EXPECT_EQ(p_dst->getEvent(0), "alpha");
  EXPECT_EQ(p_dst->getEvent(1), "beta");
  EXPECT_EQ(p_dst->getModified(), 0u);

  // The world's indexes follow: the received types are delivered, the old one is not.
  qv::WorldManager &world = qv::WorldManager::getInstance();
  qv::Event beta, gamma;
  beta.setType("beta");
  gamma.setType("gamma");
  world.onEvent(&beta);
  world.onEvent(&gamma);
  EXPECT_EQ(p_dst->count("beta"), 1);
  EXPECT_EQ(p_dst->count("gamma"), 0);
  EXPECT_EQ(world.getAllObjects().getCount(), 2);
}

TEST_F(ObjectRecordTest, FollowPathTurnsTowardTheHeldPathBeforeTheNewOneArrives) {
  Object *p_dst = new Object;
  qv::Path held;
  held.setNodes({qv::Vector(1, 5)});
  p_dst->setPath(held);
  std::string record = le32(qv::FOLLOW_PATH | qv::PATH) + std::string(1, '\1') + le64(1) +
                       le32(0x41200000) + le32(0x3F800000);  // (10,1)
  EXPECT_EQ(apply(p_dst, record), 0);
  EXPECT_TRUE(p_dst->getFollowPath());
  EXPECT_EQ(p_dst->getDirection(), qv::Vector(0, 1));  // from (1,1) toward (1,5)
  EXPECT_EQ(p_dst->getPath().getNodes(), std::vector<qv::Vector>{qv::Vector(10, 1)});
  EXPECT_EQ(p_dst->getPath().getIndex(), 0);
}

TEST_F(ObjectRecordTest, ReceivedIdMovesTheCounterOnlyUpward) {
  Object *p_o = new Object;
  EXPECT_EQ(apply(p_o, le32(qv::ID) + le32(500)), 0);
  EXPECT_EQ(p_o->getId(), 500);
  EXPECT_EQ((new Object)->getId(), 501);
  Object *p_low = new Object;
  EXPECT_EQ(apply(p_low, le32(qv::ID) + le32(3)), 0);
  EXPECT_EQ(p_low->getId(), 3);
  EXPECT_EQ((new Object)->getId(), 503);
}

TEST_F(ObjectRecordTest, ShortRecordsFailWithEndOfInputAndApplyNoHalfValue) {
  Object *p_src = new Object;
  p_src->setPosition(qv::Vector(7, 8));
  p_src->registerInterest("alpha");
  std::stringstream ss;
  p_src->serialize(&ss);
  const std::string record = bytes(ss);

  for (std::size_t cut = 0; cut < record.size(); cut++) {
    Object *p_dst = new Object;
    ASSERT_EQ(apply(p_dst, record.substr(0, cut)), -1) << "cut at " << cut;
    EXPECT_EQ(p_dst->getEventCount(), cut < 27 ? 0 : 1) << "cut at " << cut;
    EXPECT_EQ(p_dst->getPosition(), cut < 51 ? qv::Vector(1, 1) : qv::Vector(7, 8)) << cut;
    qv::WorldManager::getInstance().markForDelete(p_dst);
  }
  EXPECT_EQ(log->count("Object::deserialize(): Error! Stream eof."),
            static_cast<int>(record.size()));
}

TEST_F(ObjectRecordTest, ForgedLengthsAskForNothingTheRecordDoesNotHold) {
  Object *p_o = new Object;
  // A type claiming 2^62 bytes, a path of 2^60 nodes, 2^31-1 event names.
  EXPECT_EQ(apply(p_o, le32(qv::TYPE) + le64(1ull << 62) + "Hero"), -1);
  EXPECT_EQ(p_o->getType(), "(Undefined)");
  EXPECT_EQ(apply(p_o, le32(qv::PATH) + le64(1ull << 60) + le32(0) + le32(0)), -1);
  EXPECT_EQ(apply(p_o, le32(qv::EVENTS) + le32(0x7FFFFFFF) + le64(5) + "alpha"), -1);
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
    int length = std::rand() % 96;
    for (int i = 0; i < length; i++)
      noise += static_cast<char>(std::rand() % 8 == 0 ? 0xFF : std::rand());
    Object *p_target = round % 3 == 0   ? new Object
                       : round % 3 == 1 ? static_cast<Object *>(new qv::ViewObject)
                                        : new qv::TextBox;
    std::stringstream in(noise);
    int result = p_target->deserialize(&in);
    EXPECT_TRUE(result == 0 || result == -1);
    qv::WorldManager::getInstance().markForDelete(p_target);
    if (round % 100 == 0) qv::WorldManager::getInstance().update();
  }
}

TEST_F(ObjectRecordTest, ViewObjectAndTextBoxCarryTheirOwnGroups) {
  qv::TextBox *p_box = new qv::TextBox;
  std::stringstream first;
  p_box->serialize(&first);
  EXPECT_EQ(p_box->getModified(), 0u);
  p_box->setText("hello");
  std::stringstream only_text;
  EXPECT_EQ(p_box->serialize(&only_text), 0);
  EXPECT_EQ(bytes(only_text), le32(qv::TEXTBOX_TEXT) + le64(5) + "hello");

  qv::ViewObject *p_view = new qv::ViewObject;
  p_view->setViewString("Turn");
  p_view->setValue(3);
  p_view->setColor(qv::YELLOW);
  p_view->setLocation(qv::BOTTOM_LEFT);
  p_view->setBorder(false);
  std::stringstream view_record;
  ASSERT_EQ(p_view->serialize(&view_record, qv::VIEW_VALUE | qv::VIEW_APPEARANCE), 0);
  EXPECT_EQ(bytes(view_record), le32(0xC0000) + le32(3) + le64(4) + "Turn" + std::string(1, '\0') +
                                    le32(qv::YELLOW) + le32(qv::BOTTOM_LEFT) +
                                    std::string(1, '\1'));
  qv::ViewObject *p_copy = new qv::ViewObject;
  ASSERT_EQ(p_copy->deserialize(&view_record), 0);
  EXPECT_EQ(p_copy->getViewString(), "Turn");
  EXPECT_EQ(p_copy->getValue(), 3);
  EXPECT_EQ(p_copy->getColor(), qv::YELLOW);
  EXPECT_EQ(p_copy->getLocation(), qv::BOTTOM_LEFT);
  EXPECT_FALSE(p_copy->getBorder());
  EXPECT_EQ(p_copy->getPosition(), p_view->getPosition());

  p_box->setSize(qv::Vector(12, 3));
  p_box->setWordWrap(false);
  p_box->setViewString("log");
  std::stringstream box_record;
  ASSERT_EQ(p_box->serialize(&box_record, 0x3FFFFF), 0);
  qv::TextBox *p_box_copy = new qv::TextBox;
  unsigned int received = 0;
  ASSERT_EQ(p_box_copy->deserialize(&box_record, &received), 0);
  EXPECT_EQ(received, 0x3FFFFFu);
  EXPECT_EQ(p_box_copy->getText(), "hello");
  EXPECT_EQ(p_box_copy->getSize(), qv::Vector(12, 3));
  EXPECT_FALSE(p_box_copy->getWordWrap());
  EXPECT_TRUE(p_box_copy->getPadding());
  EXPECT_EQ(p_box_copy->getViewString(), "log");

  // A short view record fails in the Object part and says so.
  std::stringstream cut(le32(qv::POSITION) + "abc");
  EXPECT_EQ(p_copy->deserialize(&cut), -1);
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
  std::stringstream ss;
  p_src->serialize(&ss, qv::ANIMATION);
  EXPECT_EQ(bytes(ss), le32(qv::ANIMATION) + le64(3) + "man" + le32(1) + le32(3) + le32(0));

  Object *p_dst = new Object;
  EXPECT_EQ(p_dst->deserialize(&ss), 0);
  EXPECT_EQ(p_dst->getAnimation().getSprite(), rm.getSprite("man"));
  EXPECT_EQ(p_dst->getAnimation().getIndex(), 1);
  EXPECT_EQ(p_dst->getAnimation().getSlowdownCount(), 3);
  EXPECT_EQ(p_dst->getBox(), p_src->getBox());

  // A label this copy never loaded leaves the animation without a sprite.
  std::stringstream unknown(le32(qv::ANIMATION) + le64(5) + "ghost" + le32(0) + le32(0) + le32(0));
  EXPECT_EQ(p_dst->deserialize(&unknown), 0);
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
  Object *p_copy = new Object;
  p_copy->deserialize(&ss);
  setLogLevel(0);
  EXPECT_TRUE(log->contains("Object::serialize(): attr is 96, modified is 0 (false)"));
  EXPECT_TRUE(log->contains("\t00000000000000000000000001100000"));
  EXPECT_TRUE(log->contains("Object::deserialize(): attr 96 (00000000000000000000000001100000)"));
  EXPECT_EQ(log->count("\tPOSITION: (1,1)"), 2);
  EXPECT_EQ(log->count("\tTYPE: Hero"), 2);
  EXPECT_TRUE(log->contains("Object::deserialize(): done checking all types."));
}

TEST_F(ObjectRecordTest, ValueClassesRoundTripByteForByte) {
  qv::Path path;
  path.setNodes({qv::Vector(1, 2), qv::Vector(-3, 4.5f)});
  path.advance();
  std::stringstream path_ss;
  EXPECT_EQ(path.serialize(&path_ss), 0);
  EXPECT_EQ(path_ss.str().size(), 8u + 16);
  qv::Path path_copy;
  EXPECT_EQ(path_copy.deserialize(&path_ss), 0);
  EXPECT_EQ(path_copy.getNodes(), path.getNodes());
  EXPECT_EQ(path_copy.getIndex(), 0);

  qv::Shape shape;
  shape.setType(qv::SQUARE);
  shape.setAlpha(128);
  std::stringstream shape_ss;
  EXPECT_EQ(shape.serialize(&shape_ss), 0);
  EXPECT_EQ(shape_ss.str().size(), 13u);
  qv::Shape shape_copy;
  EXPECT_EQ(shape_copy.deserialize(&shape_ss), 0);
  EXPECT_EQ(shape_copy.getType(), qv::SQUARE);
  EXPECT_EQ(shape_copy.getAlpha(), 128);

  const std::string animation_record =
      le64(4) + "hero" + le32(2) + le32(0xFFFFFFFF) + le32(qv::HORIZONTAL);
  std::stringstream animation_in(animation_record);
  qv::Animation animation;
  EXPECT_EQ(animation.deserialize(&animation_in), 0);
  EXPECT_EQ(animation.getName(), "hero");
  EXPECT_EQ(animation.getSlowdownCount(), -1);
  std::stringstream animation_out;
  EXPECT_EQ(animation.serialize(&animation_out), 0);
  EXPECT_EQ(animation_out.str(), animation_record);
  std::stringstream animation_short(animation_record.substr(0, 15));
  EXPECT_EQ(animation.deserialize(&animation_short), -1);
  EXPECT_TRUE(log->contains("Animation::deserialize(): Error! Stream eof."));
}

}  // namespace
