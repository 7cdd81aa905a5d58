#include "core/utility.h"

#include <SFML/Graphics/Color.hpp>
#include <cctype>
#include <cmath>
#include <exception>
#include <istream>
#include <ostream>
#include <sstream>

#include "core/LogManager.h"

namespace qv {

namespace {

struct ColorInfo {
  unsigned char r, g, b;
  const char *name;
};

const ColorInfo COLORS[] = {
    {0, 0, 0, "Black"},  {255, 0, 0, "Red"},       {0, 255, 0, "Green"},  {255, 255, 0, "Yellow"},
    {0, 0, 255, "Blue"}, {255, 0, 255, "Magenta"}, {0, 255, 255, "Cyan"}, {255, 255, 255, "White"},
};

bool isTableColor(Color c) {
  return c >= BLACK && c <= WHITE;
}

// names[value] when value is in range, else the fallback.
template <size_t N>
std::string nameOf(int value, const char *const (&names)[N], const char *fallback) {
  return value >= 0 && value < static_cast<int>(N) ? names[value] : fallback;
}

}  // namespace

void colorToRGB(Color c, unsigned char &r, unsigned char &g, unsigned char &b) {
  if (isTableColor(c)) {
    r = COLORS[c].r;
    g = COLORS[c].g;
    b = COLORS[c].b;
  } else if (c != CUSTOM) {
    LogManager::getInstance().writeLog(5, "colorToRGB(): Color %d not supported.",
                                       static_cast<int>(c));
  }
}

sf::Color colorToSFML(Color c) {
  if (isTableColor(c)) return sf::Color(COLORS[c].r, COLORS[c].g, COLORS[c].b, 255);
  if (c == CUSTOM)
    LogManager::getInstance().writeLog(5, "colorToSFML(): Color is CUSTOM.");
  else
    LogManager::getInstance().writeLog(5, "colorToSFML(): Color %d not supported.",
                                       static_cast<int>(c));
  return sf::Color(255, 255, 255, 255);
}

std::string colorToString(Color c) {
  return isTableColor(c) ? COLORS[c].name : "Unknown color";
}

bool colorFromName(const std::string &name, Color &color) {
  for (int c = BLACK; c <= WHITE; c++) {
    std::string lower = COLORS[c].name;
    for (char &ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    if (name == lower) {
      color = static_cast<Color>(c);
      return true;
    }
  }
  return false;
}

std::string solidnessToString(Solidness s) {
  static const char *const names[] = {"hard", "soft", "spectral"};
  return nameOf(static_cast<int>(s), names, "undefined");
}

std::string transformToString(Transform t) {
  static const char *const names[] = {"NONE", "VERTICAL", "HORIZONTAL", "BOTH"};
  return nameOf(static_cast<int>(t), names, "UNKNOWN");
}

std::string locationToString(int location) {
  static const char *const names[] = {"top-left",    "top-center",    "top-right",
                                      "center-left", "center-center", "center-right",
                                      "bot-left",    "bot-center",    "bot-right"};
  return nameOf(location, names, "unknown");
}

std::string boolToString(bool b) {
  return b ? "true" : "false";
}

std::string toString(int i) {
  std::ostringstream ss;
  ss << i;
  return ss.str();
}

std::string toString(float f) {
  std::ostringstream ss;
  ss << f;
  return ss.str();
}

std::string toBinaryString(unsigned int bits) {
  std::string text;
  text.reserve(32);
  for (int bit = 31; bit >= 0; bit--) text += ((bits >> bit) & 1u) ? '1' : '0';
  return text;
}

int checkStream(const char *where, std::ios &stream) {
  if (stream.good()) return 0;
  // Test the flags one by one: fail() alone is also true for a bad stream.
  std::ios::iostate state = stream.rdstate();
  const char *fault = (state & std::ios::eofbit)    ? "eof"
                      : (state & std::ios::failbit) ? "fail"
                      : (state & std::ios::badbit)  ? "bad"
                                                    : "error";
  LogManager::getInstance().writeLog("%s: Error! Stream %s.", where, fault);
  return -1;
}

namespace {

void writeRaw(std::ostream &out, std::uint64_t value, int size) {
  char bytes[8];
  for (int i = 0; i < size; i++) bytes[i] = static_cast<char>((value >> (8 * i)) & 0xff);
  out.write(bytes, size);
}

bool readRaw(std::istream &in, std::uint64_t &value, int size) {
  unsigned char bytes[8];
  if (!in.read(reinterpret_cast<char *>(bytes), size)) return false;
  value = 0;
  for (int i = 0; i < size; i++) value |= static_cast<std::uint64_t>(bytes[i]) << (8 * i);
  return true;
}

// Bytes left to read; 0 on a stream that has already failed.
std::uint64_t remainingBytes(std::istream &in) {
  if (!in.good()) return 0;
  std::streampos here = in.tellg();
  in.seekg(0, std::ios::end);
  std::streampos end = in.tellg();
  in.seekg(here);
  if (here == std::streampos(-1) || end == std::streampos(-1) || end < here) return 0;
  return static_cast<std::uint64_t>(end - here);
}

void failAtEnd(std::istream &in) {
  in.seekg(0, std::ios::end);
  in.setstate(std::ios::eofbit | std::ios::failbit);
}

}  // namespace

void writeInt(std::ostream &out, int value) {
  writeRaw(out, static_cast<std::uint32_t>(value), 4);
}

void writeUnsigned(std::ostream &out, unsigned int value) {
  writeRaw(out, value, 4);
}

void writeBool(std::ostream &out, bool value) {
  writeRaw(out, value ? 1 : 0, 1);
}

void writeCount(std::ostream &out, std::uint64_t count) {
  writeRaw(out, count, 8);
}

void writeString(std::ostream &out, const std::string &text) {
  writeCount(out, text.size());
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

bool readInt(std::istream &in, int &value) {
  std::uint64_t raw;
  if (!readRaw(in, raw, 4)) return false;
  value = static_cast<int>(static_cast<std::uint32_t>(raw));
  return true;
}

bool readUnsigned(std::istream &in, unsigned int &value) {
  std::uint64_t raw;
  if (!readRaw(in, raw, 4)) return false;
  value = static_cast<unsigned int>(raw);
  return true;
}

bool readBool(std::istream &in, bool &value) {
  std::uint64_t raw;
  if (!readRaw(in, raw, 1)) return false;
  value = raw != 0;
  return true;
}

bool readCount(std::istream &in, std::uint64_t &count, std::uint64_t item_size) {
  std::uint64_t raw;
  if (!readRaw(in, raw, 8)) return false;
  if (item_size > 0 && raw > remainingBytes(in) / item_size) {
    failAtEnd(in);
    return false;
  }
  count = raw;
  return true;
}

int readString(std::istream &in, std::string &text, std::uint64_t &length) {
  if (!readCount(in, length, 1)) return -1;
  std::string read_text;
  try {
    read_text.resize(length);
  } catch (const std::exception &) {  // bad_alloc or length_error
    return -2;
  }
  if (length > 0 && !in.read(&read_text[0], static_cast<std::streamsize>(length))) return -1;
  text = std::move(read_text);
  return 0;
}

bool recordValueInRange(std::ios &stream, const char *where, const char *what, long long value,
                        long long low, long long high) {
  if (value >= low && value <= high) return true;
  LogManager::getInstance().writeLog(
      "%s: Error! %s %lld out of range [%lld, %lld]; the record is refused.", where, what, value,
      low, high);
  stream.setstate(std::ios::failbit);
  return false;
}

bool boxIntersectsBox(const Box &a, const Box &b) {
  float ax = a.getCorner().getX(), ay = a.getCorner().getY();
  float bx = b.getCorner().getX(), by = b.getCorner().getY();
  bool x_overlap =
      valueInRange(ax, bx, bx + b.getHorizontal()) || valueInRange(bx, ax, ax + a.getHorizontal());
  bool y_overlap =
      valueInRange(ay, by, by + b.getVertical()) || valueInRange(by, ay, ay + a.getVertical());
  return x_overlap && y_overlap;
}

bool boxContainsPosition(const Box &box, const Vector &p) {
  float x = box.getCorner().getX(), y = box.getCorner().getY();
  return valueInRange(p.getX(), x, x + box.getHorizontal()) &&
         valueInRange(p.getY(), y, y + box.getVertical());
}

float distance(const Vector &p1, const Vector &p2) {
  float dx = std::fabs(p1.getX() - p2.getX());
  float dy = std::fabs(p1.getY() - p2.getY());
  return std::sqrt(dx * dx + dy * dy);
}

bool valueInRange(float value, float min, float max) {
  return min <= value && value <= max;
}

}  // namespace qv
