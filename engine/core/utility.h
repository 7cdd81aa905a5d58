#ifndef QV_UTILITY_H
#define QV_UTILITY_H

#include <cstdint>
#include <ios>
#include <iosfwd>
#include <string>

#include "world/Box.h"
#include "world/Vector.h"

namespace sf {
class Color;
}

namespace qv {

class Object;

// The engine's colours. CUSTOM marks a colour given by explicit components
// elsewhere and has none of its own.
enum Color : int {
  BLACK = 0,
  RED = 1,
  GREEN = 2,
  YELLOW = 3,
  BLUE = 4,
  MAGENTA = 5,
  CYAN = 6,
  WHITE = 7,
  CUSTOM = 8,
};

// Defined with objects (Object.h) and animations (Animation.h).
enum Solidness : int;
enum Transform : int;

// ---- colours and names -------------------------------------------------------
// Writes c's components; leaves r, g, b untouched for CUSTOM and bad values.
void colorToRGB(Color c, unsigned char &r, unsigned char &g, unsigned char &b);
// c with alpha 255; opaque white for CUSTOM and bad values.
sf::Color colorToSFML(Color c);
std::string colorToString(Color c);
// The colour whose name colorToString gives, written in lower case as
// configuration and sprite files spell it; false for any other text.
bool colorFromName(const std::string &name, Color &color);
std::string solidnessToString(Solidness s);
std::string transformToString(Transform t);
// A view object's place on the screen, "top-left" (0) to "bot-right" (8).
std::string locationToString(int location);
std::string boolToString(bool b);

// ---- numbers as text ---------------------------------------------------------
// As a standard stream writes them by default (floats: six significant digits).
std::string toString(int i);
std::string toString(float f);
// Exactly 32 characters, most significant bit first.
std::string toBinaryString(unsigned int bits);

// 0 if the stream is good, else one log line naming where and the fault, -1.
int checkStream(const char *where, std::ios &stream);

// ---- record fields -------------------------------------------------------------
// Raw little-endian values, as records exchanged between copies of the game
// carry them (floats: writeFloat and readFloat in Vector.h). A read that runs
// out of input leaves the value untouched and the stream failed at end of
// input, for checkStream to report once the whole record has been read.
void writeInt(std::ostream &out, int value);
void writeUnsigned(std::ostream &out, unsigned int value);
void writeBool(std::ostream &out, bool value);
// A 64-bit length, then the bytes, no terminator.
void writeString(std::ostream &out, const std::string &text);
void writeCount(std::ostream &out, std::uint64_t count);
bool readInt(std::istream &in, int &value);
bool readUnsigned(std::istream &in, unsigned int &value);
bool readBool(std::istream &in, bool &value);
// Reads a 64-bit count of items at least item_size bytes long each. A count
// the rest of the input cannot hold means the record was cut short (or
// forged): the stream is failed at end of input, so nobody allocates or
// loops for items that are not there.
bool readCount(std::istream &in, std::uint64_t &count, std::uint64_t item_size);
// 0, -1 when the input failed, or -2 when no memory could be had for the
// text, whose length is then left in length (the bytes stay unread).
int readString(std::istream &in, std::string &text, std::uint64_t &length);
// True when low <= value <= high. Otherwise a value no object can have came
// in a record: one log line names where, what and the range, and the stream
// is failed as a short record's would be.
bool recordValueInRange(std::ios &stream, const char *where, const char *what, long long value,
                        long long low, long long high);

// ---- geometry ----------------------------------------------------------------
// Overlap on both axes, shared edges and corners included.
bool boxIntersectsBox(const Box &a, const Box &b);
bool boxContainsPosition(const Box &box, const Vector &p);
float distance(const Vector &p1, const Vector &p2);
// min <= value <= max.
bool valueInRange(float value, float min, float max);
// World position relative to the world manager's view, and back.
// (Defined with the world manager, which owns the view.)
Vector worldToView(const Vector &world_pos);
Vector viewToWorld(const Vector &view_pos);
// p_o's box placed at its position, or at where.
// (Defined with the world manager, like the view conversions.)
Box getWorldBox(const Object *p_o);
Box getWorldBox(const Object *p_o, Vector where);
// The side of the obstacle p_o2 that the moving p_o1 meets this frame:
// (0,-1) above, (0,1) below, (-1,0) left, (1,0) right, both components
// for a corner; (0,0), logged at level 1, when they do not meet.
Vector getNormal(const Object *p_o1, const Object *p_o2);

}  // namespace qv

#endif
