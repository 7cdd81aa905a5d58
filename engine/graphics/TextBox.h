#ifndef QV_TEXT_BOX_H
#define QV_TEXT_BOX_H

#include <string>
#include <vector>

#include "graphics/ViewObject.h"

namespace qv {

// A view object showing a block of text in a framed box of a given size.
// Lines are wrapped at spaces (or cut at the width); when there are more
// lines than rows, the newest lines stay visible and the oldest are dropped.
class TextBox : public ViewObject {
 public:
  // At CENTER_CENTER, empty, WHITE, without value; size (10, 1).
  TextBox();
  ~TextBox() override;

  // The frame (always, whatever the border flag) and the visible lines.
  int draw() override;
  // The ViewObject record, then TEXT and APPEARANCE.
  int serialize(std::stringstream *p_ss, unsigned int attr = 0) override;
  int deserialize(std::stringstream *p_ss, unsigned int *p_attr = nullptr) override;

  // '\n' forces a line break.
  void setText(std::string new_text);
  // Width and height in cells.
  void setSize(Vector new_size);
  // One blank column inside the frame on each side.
  void setPadding(bool new_padding);
  // Break lines at spaces rather than mid-word.
  void setWordWrap(bool new_word_wrap);
  // Empties the text without marking it modified.
  void clearText();

  std::string getText() const;
  Vector getSize() const;
  bool getPadding() const;
  bool getWordWrap() const;

  // The text broken into lines of at most the box's width.
  std::vector<std::string> lines() const;

 private:
  // The level-25 lines of the APPEARANCE group.
  void traceAppearance() const;

  std::string m_text;  // "": the text shown
  Vector m_size;       // (10,1): width and height in cells
  bool m_padding;      // true: frame one column wider on each side
  bool m_word_wrap;    // true: break at spaces
};

// Breaks text into lines of at most width characters: at the last space or
// newline within reach when word_wrap is on, otherwise (or when a word is
// longer than a line) mid-word. A newline always ends a line. A width below
// one is taken as one.
std::vector<std::string> breakLines(const std::string &text, int width, bool word_wrap);

}  // namespace qv

#endif
