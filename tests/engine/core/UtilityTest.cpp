#include <gtest/gtest.h>

#include <SFML/Graphics/Color.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "EngineFixture.h"
#include "core/LogManager.h"
#include "core/utility.h"

class UtilityLogTest : public qvtest::LogFixture {};

TEST_F(UtilityLogTest, ColorsConvertToTheirComponentsAndNamesAndOthersGiveWhite) {
  // Custom and unsupported colours leave the components as they were.
  struct Row {
    int c;
    unsigned char r, g, b;
    sf::Color sfml;
    const char *name;
  };
  const Row rows[] = {{qv::BLACK, 0, 0, 0, sf::Color::Black, "Black"},
                      {qv::RED, 255, 0, 0, sf::Color::Red, "Red"},
                      {qv::GREEN, 0, 255, 0, sf::Color::Green, "Green"},
                      {qv::YELLOW, 255, 255, 0, sf::Color::Yellow, "Yellow"},
                      {qv::BLUE, 0, 0, 255, sf::Color::Blue, "Blue"},
                      {qv::MAGENTA, 255, 0, 255, sf::Color::Magenta, "Magenta"},
                      {qv::CYAN, 0, 255, 255, sf::Color::Cyan, "Cyan"},
                      {qv::WHITE, 255, 255, 255, sf::Color::White, "White"},
                      {8, 1, 2, 3, sf::Color::White, "Unknown color"},
                      {9, 1, 2, 3, sf::Color::White, "Unknown color"},
                      {-1, 1, 2, 3, sf::Color::White, "Unknown color"}};
  qv::LogManager::getInstance().setLogLevel(5);
  for (const Row &row : rows) {
    const auto c = static_cast<qv::Color>(row.c);
    unsigned char r = 1, g = 2, b = 3;
    qv::colorToRGB(c, r, g, b);
    EXPECT_EQ(std::vector<int>({r, g, b}), std::vector<int>({row.r, row.g, row.b})) << row.c;
    EXPECT_EQ(qv::colorToSFML(c), row.sfml) << row.c;
    EXPECT_EQ(qv::colorToString(c), row.name);
  }
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "colorToSFML(): Color is CUSTOM.", "colorToRGB(): Color 9 not supported.",
                "colorToSFML(): Color 9 not supported.", "colorToRGB(): Color -1 not supported.",
                "colorToSFML(): Color -1 not supported."}));
}

// Files name colours in lower case only; anything else leaves the colour alone.
TEST(UtilityTest, ColorNamesAreReadInLowerCaseOnly) {
  const struct {
    const char *name;
    qv::Color expected;
  } rows[] = {{"black", qv::BLACK}, {"magenta", qv::MAGENTA}, {"white", qv::WHITE},
              {"Cyan", qv::CUSTOM}, {"custom", qv::CUSTOM},   {"red ", qv::CUSTOM},
              {"", qv::CUSTOM}};
  for (const auto &row : rows) {
    qv::Color color = qv::CUSTOM;
    EXPECT_EQ(qv::colorFromName(row.name, color), row.expected != qv::CUSTOM) << row.name;
    EXPECT_EQ(color, row.expected) << row.name;
  }
}

TEST(UtilityTest, EnumerationNamesFallBackOutsideTheirRange) {
  const char *solid[] = {"hard", "soft", "spectral", "undefined", "undefined"};
  for (int i = -1; i <= 3; i++)
    EXPECT_EQ(qv::solidnessToString(static_cast<qv::Solidness>(i)), solid[i < 0 ? 4 : i]);
  const char *transform[] = {"NONE", "VERTICAL", "HORIZONTAL", "BOTH", "UNKNOWN"};
  for (int i = -1; i <= 4; i++)
    EXPECT_EQ(qv::transformToString(static_cast<qv::Transform>(i)), transform[i < 0 ? 4 : i]);
  const char *where[] = {"top-left",     "top-center", "top-right",  "center-left", "center-center",
                         "center-right", "bot-left",   "bot-center", "bot-right"};
  for (int i = 0; i < 9; i++) EXPECT_EQ(qv::locationToString(i), where[i]);
  EXPECT_EQ(qv::locationToString(9), "unknown");
  EXPECT_EQ(qv::locationToString(-1), "unknown");
  EXPECT_EQ(qv::boolToString(true), "true");
  EXPECT_EQ(qv::boolToString(false), "false");
}

TEST(UtilityTest, NumbersReadAsAStreamWritesThem) {
  EXPECT_EQ(qv::toString(-42), "-42");
  EXPECT_EQ(qv::toString(1.0f / 3.0f), "0.333333");
  EXPECT_EQ(qv::toString(0.99f), "0.99");
  EXPECT_EQ(qv::toString(3.0f), "3");
  EXPECT_EQ(qv::toString(1234567.0f), "1.23457e+06");
  EXPECT_EQ(qv::toBinaryString(5), std::string(29, '0') + "101");
  EXPECT_EQ(qv::toBinaryString(0x80000001u), "1" + std::string(30, '0') + "1");
  EXPECT_EQ(qv::toBinaryString(0xffffffffu), std::string(32, '1'));
}

TEST_F(UtilityLogTest, CheckStreamNamesTheFirstFaultyFlag) {
  std::stringstream good("abc");
  EXPECT_EQ(qv::checkStream("Good::read()", good), 0);

  std::stringstream past_end("ab");
  char buffer[4];
  past_end.read(buffer, 4);  // sets eof and fail
  EXPECT_EQ(qv::checkStream("Box::deserialize()", past_end), -1);

  for (auto [name, state] : {std::pair("A", std::ios::failbit), std::pair("B", std::ios::badbit)}) {
    std::stringstream stream;
    stream.setstate(state);
    EXPECT_EQ(qv::checkStream(name, stream), -1);
  }

  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{"Box::deserialize(): Error! Stream eof.",
                                      "A: Error! Stream fail.", "B: Error! Stream bad."}));
}

TEST(UtilityTest, BoxesIntersectWithSharedEdgesAndCorners) {
  qv::Box unit(qv::Vector(0, 0), 1, 1);
  EXPECT_TRUE(qv::boxIntersectsBox(unit, qv::Box(qv::Vector(1, 1), 1, 1)));  // corner
  EXPECT_TRUE(qv::boxIntersectsBox(unit, qv::Box(qv::Vector(1, 0), 1, 1)));  // edge
  EXPECT_FALSE(qv::boxIntersectsBox(unit, qv::Box(qv::Vector(1.01f, 0), 1, 1)));
  EXPECT_FALSE(qv::boxIntersectsBox(unit, qv::Box(qv::Vector(0, -1.5f), 1, 1)));
  // One box inside the other, either way round.
  qv::Box big(qv::Vector(-5, -5), 10, 10);
  EXPECT_TRUE(qv::boxIntersectsBox(unit, big));
  EXPECT_TRUE(qv::boxIntersectsBox(big, unit));
  // Default object boxes one cell apart do not touch; half a cell apart they do.
  auto objectBox = [](float x, float y) {
    return qv::Box(qv::Vector(x - 0.5f, y - 0.5f), 0.99f, 0.99f);
  };
  EXPECT_FALSE(qv::boxIntersectsBox(objectBox(1, 1), objectBox(2, 1)));
  EXPECT_TRUE(qv::boxIntersectsBox(objectBox(1, 1), objectBox(1.5f, 1)));
}

TEST(UtilityTest, ContainmentDistanceAndRangeIncludeTheirEnds) {
  qv::Box box(qv::Vector(1, 2), 3, 4);
  EXPECT_TRUE(qv::boxContainsPosition(box, qv::Vector(1, 2)));
  EXPECT_TRUE(qv::boxContainsPosition(box, qv::Vector(4, 6)));
  EXPECT_FALSE(qv::boxContainsPosition(box, qv::Vector(4.01f, 6)));
  EXPECT_FALSE(qv::boxContainsPosition(box, qv::Vector(2, 1.99f)));
  EXPECT_FLOAT_EQ(qv::distance(qv::Vector(1, 1), qv::Vector(4, 5)), 5.0f);
  EXPECT_FLOAT_EQ(qv::distance(qv::Vector(4, 5), qv::Vector(1, 1)), 5.0f);
  EXPECT_TRUE(qv::valueInRange(4, 0, 4));
  EXPECT_TRUE(qv::valueInRange(0, 0, 4));
  EXPECT_FALSE(qv::valueInRange(5, 0, 4));
  EXPECT_FALSE(qv::valueInRange(-1, 0, 4));
}
