#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graphics/TextBox.h"

TEST(TextBoxLinesTest, WordWrapCuttingNewlinesAndWidthsUnderOneCell) {
  const std::string fox = "the quick brown fox jumps over the lazy dog";
  const struct {
    std::string text;
    int width;
    std::vector<bool> wraps;
    std::string lines;  // each ended by '|'
  } cases[] = {
      // The space right after "jumps over" is itself the break: that line is full width.
      {fox, 10, {true}, "the quick|brown fox|jumps over|the lazy|dog|"},
      {fox, 10, {false}, "the quick |brown fox |jumps over| the lazy |dog|"},
      {"exactly10! and", 10, {true}, "exactly10!|and|"},
      // A space at the very start of a line is never a break; of two spaces the later one is.
      {" abcdef", 3, {true}, " ab|cde|f|"},
      {"ab  cd", 3, {true}, "ab |cd|"},
      {"go extraordinarily far", 6, {true}, "go|extrao|rdinar|ily|far|"},  // long words are cut
      {"one\n\ntwo", 10, {true, false}, "one||two|"},
      {"a\n", 10, {true, false}, "a||"},
      {"\nx", 10, {true, false}, "|x|"},
      // A newline exactly at the width is the break, not an extra empty line.
      {"abc\ndef", 3, {true, false}, "abc|def|"},
      {"ab cd ef\ng", 5, {true}, "ab cd|ef|g|"},
      {"", 10, {true}, "|"},
      {"", 0, {false}, "|"},
      // Under one cell the box is taken as one column wide: it still ends.
      {"ab c", 0, {true}, "a|b|c|"},
      {"ab c", -3, {false}, "a|b| |c|"},
  };
  for (const auto &c : cases)
    for (bool wrap : c.wraps) {
      std::string lines;
      for (const std::string &line : qv::breakLines(c.text, c.width, wrap)) lines += line + '|';
      EXPECT_EQ(lines, c.lines) << "'" << c.text << "' in " << c.width << ", wrap " << wrap;
    }
}
