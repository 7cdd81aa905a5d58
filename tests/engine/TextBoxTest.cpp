#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HudFixture.h"
#include "TextBox.h"

using Lines = std::vector<std::string>;
using qv::breakLines;

namespace {
const std::string FOX = "the quick brown fox jumps over the lazy dog";
}

TEST(TextBoxLinesTest, WordWrapBreaksAtTheLastSpaceWithinReach) {
  // The space right after "jumps over" is itself the break: that line is full width.
  EXPECT_EQ(breakLines(FOX, 10, true),
            (Lines{"the quick", "brown fox", "jumps over", "the lazy", "dog"}));
  EXPECT_EQ(breakLines("exactly10!", 10, true), (Lines{"exactly10!"}));
  EXPECT_EQ(breakLines("exactly10! and", 10, true), (Lines{"exactly10!", "and"}));
  // A space at the very start of a line is never a break (it would make no progress).
  EXPECT_EQ(breakLines(" abcdef", 3, true), (Lines{" ab", "cde", "f"}));
  // Two spaces in a row: the later one within reach is the break, the
  // earlier one stays at the end of the line.
  EXPECT_EQ(breakLines("ab  cd", 3, true), (Lines{"ab ", "cd"}));
}

TEST(TextBoxLinesTest, LongWordsAreCutAtTheWidth) {
  EXPECT_EQ(breakLines("abcdefghijkl mn", 5, true), (Lines{"abcde", "fghij", "kl mn"}));
  EXPECT_EQ(breakLines("go extraordinarily far", 6, true),
            (Lines{"go", "extrao", "rdinar", "ily", "far"}));
}

TEST(TextBoxLinesTest, WithoutWordWrapLinesAreCutAtTheWidthKeepingSpaces) {
  EXPECT_EQ(breakLines(FOX, 10, false),
            (Lines{"the quick ", "brown fox ", "jumps over", " the lazy ", "dog"}));
}

TEST(TextBoxLinesTest, NewlinesEndLinesAndAreDropped) {
  for (bool wrap : {true, false}) {
    EXPECT_EQ(breakLines("a\nb", 10, wrap), (Lines{"a", "b"})) << wrap;
    EXPECT_EQ(breakLines("one\n\ntwo", 10, wrap), (Lines{"one", "", "two"})) << wrap;
    EXPECT_EQ(breakLines("a\n", 10, wrap), (Lines{"a", ""})) << wrap;
    EXPECT_EQ(breakLines("\nx", 10, wrap), (Lines{"", "x"})) << wrap;
    // A newline exactly at the width is the break, not an extra empty line.
    EXPECT_EQ(breakLines("abc\ndef", 3, wrap), (Lines{"abc", "def"})) << wrap;
  }
  // A newline beyond the width does not stop wrapping before it.
  EXPECT_EQ(breakLines("ab cd ef\ng", 5, true), (Lines{"ab cd", "ef", "g"}));
}

TEST(TextBoxLinesTest, EmptyTextAndWidthsUnderOneCell) {
  EXPECT_EQ(breakLines("", 10, true), (Lines{""}));
  EXPECT_EQ(breakLines("", 0, false), (Lines{""}));
  // Under one cell the box is taken as one column wide: it still ends.
  EXPECT_EQ(breakLines("ab c", 0, true), (Lines{"a", "b", "c"}));
  EXPECT_EQ(breakLines("ab c", -3, false), (Lines{"a", "b", " ", "c"}));
}

class TextBoxTest : public qvtest::HudEngineFixture {};

TEST_F(TextBoxTest, NewTextBoxAndItsLines) {
  auto *t = new qv::TextBox;
  EXPECT_EQ(t->getType(), "TextBox");
  EXPECT_EQ(t->getLocation(), qv::CENTER_CENTER);
  EXPECT_FLOAT_EQ(t->getPosition().getX(), 40);
  EXPECT_FLOAT_EQ(t->getPosition().getY(), 12);
  EXPECT_FALSE(t->getDrawValue());
  EXPECT_EQ(t->getColor(), qv::WHITE);
  EXPECT_EQ(t->getSize(), qv::Vector(10, 1));
  EXPECT_TRUE(t->getPadding());
  EXPECT_TRUE(t->getWordWrap());
  EXPECT_EQ(t->getModified() & (qv::TEXTBOX_TEXT | qv::TEXTBOX_APPEARANCE),
            qv::TEXTBOX_TEXT | qv::TEXTBOX_APPEARANCE);

  // The width is the size truncated; a fraction of a cell counts as one.
  t->setText(FOX);
  t->setSize(qv::Vector(10.9f, 2));
  EXPECT_EQ(t->lines().size(), 5u);
  t->setSize(qv::Vector(0.5f, 2));
  EXPECT_EQ(t->lines().size(), 35u);  // one per letter: the spaces are all breaks
  EXPECT_LT(t->draw(), 0);            // headless, but it returns
}
