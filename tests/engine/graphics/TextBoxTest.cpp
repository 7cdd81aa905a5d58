#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graphics/TextBox.h"

using Lines = std::vector<std::string>;
using qv::breakLines;

namespace {
const std::string FOX = "the quick brown fox jumps over the lazy dog";
}

TEST(TextBoxLinesTest, WordWrapAndCutting) {
  // The space right after "jumps over" is itself the break: that line is full width.
  EXPECT_EQ(breakLines(FOX, 10, true),
            (Lines{"the quick", "brown fox", "jumps over", "the lazy", "dog"}));
  EXPECT_EQ(breakLines("exactly10! and", 10, true), (Lines{"exactly10!", "and"}));
  // A space at the very start of a line is never a break; of two spaces the later one is.
  EXPECT_EQ(breakLines(" abcdef", 3, true), (Lines{" ab", "cde", "f"}));
  EXPECT_EQ(breakLines("ab  cd", 3, true), (Lines{"ab ", "cd"}));
  // Long words are cut at the width.
  EXPECT_EQ(breakLines("go extraordinarily far", 6, true),
            (Lines{"go", "extrao", "rdinar", "ily", "far"}));
  EXPECT_EQ(breakLines(FOX, 10, false),
            (Lines{"the quick ", "brown fox ", "jumps over", " the lazy ", "dog"}));
}

TEST(TextBoxLinesTest, NewlinesEmptyTextAndWidthsUnderOneCell) {
  for (bool wrap : {true, false}) {
    EXPECT_EQ(breakLines("one\n\ntwo", 10, wrap), (Lines{"one", "", "two"})) << wrap;
    EXPECT_EQ(breakLines("a\n", 10, wrap), (Lines{"a", ""})) << wrap;
    EXPECT_EQ(breakLines("\nx", 10, wrap), (Lines{"", "x"})) << wrap;
    // A newline exactly at the width is the break, not an extra empty line.
    EXPECT_EQ(breakLines("abc\ndef", 3, wrap), (Lines{"abc", "def"})) << wrap;
  }
  EXPECT_EQ(breakLines("ab cd ef\ng", 5, true), (Lines{"ab cd", "ef", "g"}));
  EXPECT_EQ(breakLines("", 10, true), (Lines{""}));
  EXPECT_EQ(breakLines("", 0, false), (Lines{""}));
  // Under one cell the box is taken as one column wide: it still ends.
  EXPECT_EQ(breakLines("ab c", 0, true), (Lines{"a", "b", "c"}));
  EXPECT_EQ(breakLines("ab c", -3, false), (Lines{"a", "b", " ", "c"}));
}
