#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "WorldFixture.h"
#include "graphics/ViewObject.h"
#include "path/Path.h"

namespace {

using namespace std::string_literals;
using qv::Object;
using qv::Vector;
using Lines = std::vector<std::string>;

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
};

TEST_F(ObjectRecordTest, ValueTypesComputeAndWriteLittleEndianFieldsInOrder) {
  // Lengths are taken in double precision: squares of floats overflow.
  Vector zero, huge(1e20f, 0), vast(-2e38f, 2e38f);
  EXPECT_TRUE(std::isfinite(vast.getMagnitude()));
  for (Vector *p : {&zero, &huge, &vast}) p->normalize();
  EXPECT_EQ(zero.toString() + huge.toString() + vast.toString(), "(0,0)(1,0)(-0.707107,0.707107)");
  const qv::Box unit(zero, 1, 1);
  EXPECT_TRUE(unit == qv::Box(zero, 1, 1) && unit != qv::Box(zero, 1, 2) &&
              unit != qv::Box(zero, 2, 1));

  const std::string bytes = "\x00\x00\x80\x3f\x00\x00\x00\xc0\x00\x00\x00\x3f\x00\x00\xa0\x42"s;
  std::stringstream out, in(bytes), cut(bytes.substr(8, 7));
  Vector(1, -2).serialize(&out);
  qv::Box(Vector(1, -2), 0.5f, 80).serialize(&out);
  EXPECT_EQ(out.str(), bytes.substr(0, 8) + bytes);
  Vector v;
  qv::Box box;
  ASSERT_EQ(v.deserialize(&in), 0);     // both read one stream: the vector first
  ASSERT_EQ(box.deserialize(&in), -1);  // the box is four bytes short
  EXPECT_EQ(v.toString() + box.toString(), "(1,-2)(0,0) h: 0 v: 0");
  in.clear();
  in.str(bytes);
  ASSERT_EQ(box.deserialize(&in) + v.deserialize(&cut), -1);
  EXPECT_EQ(v.toString() + box.toString(), "(1,-2)(1,-2) h: 0.5 v: 80");
  // A path read over a used one starts from its first node.
  qv::Path path;
  path.setNodes({Vector(9, 9)});
  path.advance();
  std::stringstream nodes(le64(1) + vec(1, 2));
  ASSERT_EQ(path.deserialize(&nodes), 0);
  EXPECT_EQ(path.getCurrent().toString(), "(1,2)");
  EXPECT_EQ(log->messages(), (Lines{"Box::deserialize(): Error! Stream eof.",
                                    "Vector::deserialize(): Error! Stream eof."}));
}

// Each attribute read alone into one object, which then writes the same
// bytes and names the value in its log line; all together, in this order,
// make the whole record.
TEST_F(ObjectRecordTest, EveryAttributeReadsWritesAndLogsItsValue) {
  const struct {
    unsigned int bit;
    std::string bytes;
    Lines lines;
  } rows[] = {
      {qv::ID, le32(900), {"\tID: 900"}},
      {qv::ACTIVE, NO, {"\tACTIVE: false"}},
      {qv::VISIBLE, YES, {"\tVISIBLE: true"}},
      {qv::EVENTS,
       le32(2) + str("alpha") + str("qv-step"),
       {"\tEVENTS: 2", "\t\talpha (size 5)", "\t\tqv-step (size 7)"}},
      {qv::BOX, vec(-1, -2) + f32(3) + f32(4), {"\tBOX: (-1,-2) h: 3 v: 4"}},
      {qv::POSITION, vec(5, 6), {"\tPOSITION: (5,6)"}},
      {qv::TYPE, str("Hero"), {"\tTYPE: Hero"}},
      {qv::ANIMATION,
       str("hero") + le32(2) + le32(0xFFFFFFFF) + le32(qv::HORIZONTAL),
       {"\tANIMATION: sprite hero, frame_idx 2, slowdown_count -1, transform HORIZONTAL"}},
      {qv::ALTITUDE, le32(3), {"\tALTITUDE: 3"}},
      {qv::SOLIDNESS, le32(qv::SOFT), {"\tSOLIDNESS: soft"}},
      {qv::NO_SOFT, YES, {"\tNO_SOFT: true"}},
      // Direction before speed and the follow-path flag before the path, so
      // that a reader turns toward the path it already holds.
      {qv::DIRECTION, vec(0, 1), {"\tDIRECTION: (0,1)"}},
      {qv::SPEED, f32(2), {"\tSPEED: 2.000000"}},
      {qv::ACCELERATION, vec(0.5f, 0), {"\tACCELERATION: (0.5,0)"}},
      {qv::SHAPE,
       le32(qv::TRIANGLE) + f32(3) + le32(qv::RED) + "\x80",
       {"\tSHAPE: triangle, size 3.000000, Red, 128"}},
      {qv::FOLLOW_PATH, YES, {"\tFOLLOW_PATH: true"}},
      {qv::PATH, le64(2) + vec(4, 1) + vec(5, 1), {"\tPATH: (4,1)|(5,1)|"}},
      {qv::AVOID_COLLISIONS, NO, {"\tAVOID_COLLISIONS: false"}},
  };
  qvtest::Probe *p_o = new qvtest::Probe(Vector(9, 9));
  ASSERT_EQ(p_o->registerInterest("gamma"), 0);
  p_o->setVisible(false);
  p_o->setAvoidCollisions(true);
  std::string all = le32(qv::ALL_OBJECT_ATTRIBUTES);
  Lines lines;
  for (const auto &row : rows) {
    // One byte short, the attribute keeps its value.
    const std::string before = record(p_o, row.bit);
    EXPECT_EQ(apply(p_o, le32(row.bit) + row.bytes.substr(0, row.bytes.size() - 1)), -1);
    EXPECT_EQ(record(p_o, row.bit), before) << row.bit;
    unsigned int received = 0;
    EXPECT_EQ(apply(p_o, le32(row.bit) + row.bytes, &received), 0) << row.bit;
    EXPECT_EQ(received, row.bit);
    EXPECT_EQ(p_o->getModified(), 0u) << row.bit;  // what was received counts as unchanged
    EXPECT_EQ(record(p_o, row.bit), le32(row.bit) + row.bytes) << row.bit;
    all += row.bytes;
    lines.insert(lines.end(), row.lines.begin(), row.lines.end());
  }
  for (const char *label : {"Object", "Animation", "Shape", "Path"})
    EXPECT_TRUE(log->contains(label + "::deserialize(): Error! Stream eof."s)) << label;
  // All together, a record held box outranks the one the animation brings.
  Object *p_copy = new Object;
  ASSERT_EQ(apply(p_copy, all), 0);
  setLogLevel(25);
  const std::size_t before = log->messages().size() + 2;  // after the mask's two lines
  EXPECT_EQ(record(p_copy, qv::ALL_OBJECT_ATTRIBUTES), all);
  const Lines written = log->messages();
  EXPECT_EQ(Lines(written.begin() + static_cast<std::ptrdiff_t>(before), written.end()), lines);

  // The world's indexes follow the received types.
  EXPECT_TRUE(world.getInterested("alpha").contains(p_o) && world.getInterested("gamma").isEmpty());
}

TEST_F(ObjectRecordTest, NewObjectWritesItsDefaultsOnceAndIdsOnlyMoveUp) {
  Object *p_o = new Object;
  std::string full = record(p_o);
  full.replace(110, 9, "<shape>");  // the default shape's size and colour follow the font
  EXPECT_EQ(full, le32(0x3FFFF) + le32(p_o->getId()) + YES + YES + le32(0) + vec(-0.5f, -0.5f) +
                      vec(0.99f, 0.99f) + vec(1, 1) + str("(Undefined)") + str("") + le32(0) +
                      le32(0) + le32(qv::NONE) + le32(2) + le32(qv::HARD) + NO + vec(0, 0) +
                      f32(0) + vec(0, 0) + le32(0xFFFFFFFF) + "<shape>" + NO + le64(0) + NO);
  EXPECT_EQ(record(p_o), le32(0));
  p_o->setModified(qv::POSITION | qv::TYPE);
  EXPECT_EQ(record(p_o, qv::POSITION), le32(qv::POSITION) + vec(1, 1));
  EXPECT_EQ(p_o->getModified(), unsigned(qv::TYPE));  // only what was written counts as sent

  // A received id at or past the counter moves it on; a lower one does not.
  const int next = p_o->getId() + 1;
  EXPECT_EQ(apply(p_o, le32(qv::ID) + le32(next)), 0);
  EXPECT_EQ((new Object)->getId(), next + 1);
  EXPECT_EQ(apply(p_o, le32(qv::ID) + le32(3)), 0);
  EXPECT_EQ((new Object)->getId(), next + 2);

  // Following turns toward the held path's waypoint; the new path starts over.
  qv::Path held;
  held.setNodes({Vector(1, 5)});
  p_o->setPath(held);
  EXPECT_EQ(apply(p_o, le32(qv::FOLLOW_PATH | qv::PATH) + YES + le64(1) + vec(10, 1)), 0);
  EXPECT_EQ(p_o->getDirection(), Vector(0, 1));  // from (1,1) toward (1,5)
}

TEST_F(ObjectRecordTest, ForgedLengthsAndImpossibleValuesAreRefused) {
  // A type of 2^62 bytes, a path of 2^60 nodes, 2^31-1 event names, -1 of
  // them; no number, infinities, past a million cells (BoundsTest has those lines).
  Object *p_o = new Object;
  for (const std::string &forged :
       {le32(qv::TYPE) + le64(1ull << 62) + "Hero", le32(qv::PATH) + le64(1ull << 60) + vec(0, 0),
        le32(qv::EVENTS) + le32(0x7FFFFFFF) + str("alpha"), le32(qv::EVENTS) + le32(0xFFFFFFFF)})
    EXPECT_EQ(apply(p_o, forged), -1);
  for (std::uint32_t bits : {0x7FC00000u, 0x7F800000u, 0xFF800000u, 0x7F7FFFFFu, 0xCF000000u})
    EXPECT_EQ(apply(p_o, le32(qv::POSITION) + le32(bits) + le32(0)), -1);
  EXPECT_EQ(record(p_o, qv::TYPE | qv::EVENTS | qv::POSITION),
            le32(0x68) + le32(0) + vec(1, 1) + str("(Undefined)"));
  EXPECT_TRUE(log->contains("Object::deserialize(): Error! Stream fail."));
  // The bounds themselves pass, and the world takes an object a million cells out.
  EXPECT_EQ(apply(p_o, le32(qv::POSITION) + f32(1e6f) + f32(-1e6f)), 0);
  world.update();
}

TEST_F(ObjectRecordTest, ViewObjectCarriesItsOwnGroups) {
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
  EXPECT_EQ(apply(p_copy, le32(qv::POSITION) + "abc"), -1);
  EXPECT_TRUE(log->contains("ViewObject::deserialize(): Error calling Object::deserialize()."));
}

}  // namespace
