#include <gtest/gtest.h>

#include <SFML/Graphics/Color.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "EngineFixture.h"
#include "core/LogManager.h"
#include "core/utility.h"

class UtilityTest : public qvtest::LogFixture {};

// Colours convert to components and names, others give white. Files name
// colours in lower case only. Custom and unsupported colours leave
// the components, and the colour read from a name, as they were.
TEST_F(UtilityTest, ColorsStreamsBinaryStringsAndBoxes) {
  const struct {
    int c;
    unsigned char r, g, b;
    const char *name, *in_file;
  } rows[] = {{qv::BLACK, 0, 0, 0, "Black", "black"},
              {qv::RED, 255, 0, 0, "Red", "red"},
              {qv::GREEN, 0, 255, 0, "Green", "green"},
              {qv::YELLOW, 255, 255, 0, "Yellow", "yellow"},
              {qv::BLUE, 0, 0, 255, "Blue", "blue"},
              {qv::MAGENTA, 255, 0, 255, "Magenta", "magenta"},
              {qv::CYAN, 0, 255, 255, "Cyan", "cyan"},
              {qv::WHITE, 255, 255, 255, "White", "white"},
              {qv::CUSTOM, 1, 2, 3, "Unknown color", "custom"},
              {9, 1, 2, 3, "Unknown color", "Cyan"},
              {-1, 1, 2, 3, "Unknown color", "red "}};
  qv::LogManager::getInstance().setLogLevel(5);
  for (const auto &row : rows) {
    const auto c = static_cast<qv::Color>(row.c);
    const bool named = row.c >= 0 && row.c < qv::CUSTOM;
    unsigned char r = 1, g = 2, b = 3;
    qv::colorToRGB(c, r, g, b);
    qv::Color read = qv::CUSTOM;
    EXPECT_EQ(qv::colorFromName(row.in_file, read), named) << row.in_file;
    EXPECT_EQ(read, named ? c : qv::CUSTOM) << row.in_file;
    EXPECT_EQ(std::vector<int>({r, g, b}), std::vector<int>({row.r, row.g, row.b})) << row.c;
    EXPECT_EQ(qv::colorToSFML(c), named ? sf::Color(r, g, b) : sf::Color::White) << row.c;
    EXPECT_EQ(qv::colorToString(c), row.name);
  }
  // A stream names its first fault.
  std::stringstream good("abc"), past_end("ab"), failed, bad;
  past_end.setstate(std::ios::eofbit | std::ios::failbit);  // as a read past the end leaves it
  failed.setstate(std::ios::failbit);
  bad.setstate(std::ios::badbit);
  EXPECT_EQ((std::vector<int>{qv::checkStream("Good::read()", good),
                              qv::checkStream("Box::deserialize()", past_end),
                              qv::checkStream("A", failed), qv::checkStream("B", bad)}),
            (std::vector<int>{0, -1, -1, -1}));
  EXPECT_EQ(log->messages(),
            (std::vector<std::string>{
                "colorToSFML(): Color is CUSTOM.", "colorToRGB(): Color 9 not supported.",
                "colorToSFML(): Color 9 not supported.", "colorToRGB(): Color -1 not supported.",
                "colorToSFML(): Color -1 not supported.", "Box::deserialize(): Error! Stream eof.",
                "A: Error! Stream fail.", "B: Error! Stream bad."}));
  EXPECT_EQ(qv::toBinaryString(0x80000005u), "1" + std::string(28, '0') + "101");
  // Boxes include their edges and corners.
  const qv::Box unit(qv::Vector(0, 0), 1, 1), box(qv::Vector(1, 2), 3, 4);
  EXPECT_TRUE(qv::boxIntersectsBox(unit, qv::Box(qv::Vector(1, 1), 1, 1)));
  EXPECT_FALSE(qv::boxIntersectsBox(unit, qv::Box(qv::Vector(1.01f, 0), 1, 1)));
  EXPECT_TRUE(qv::boxContainsPosition(box, qv::Vector(1, 2)) &&
              qv::boxContainsPosition(box, qv::Vector(4, 6)));
  EXPECT_FALSE(qv::boxContainsPosition(box, qv::Vector(4.01f, 6)));
}
