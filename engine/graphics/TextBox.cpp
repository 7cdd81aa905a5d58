#include "graphics/TextBox.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <sstream>

#include "core/LogManager.h"
#include "core/bounds.h"
#include "graphics/DisplayManager.h"

namespace qv {

std::vector<std::string> breakLines(const std::string &text, int width, bool word_wrap) {
  // Under one cell no line could take a character and the text would never
  // be used up.
  width = std::max(width, 1);
  const std::size_t length = text.size();
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (true) {
    std::size_t end = start + static_cast<std::size_t>(width);
    const std::size_t newline = text.find('\n', start);
    if (newline != std::string::npos) end = std::min(end, newline);
    if (end >= length) {
      lines.push_back(text.substr(std::min(start, length)));
      return lines;
    }
    std::size_t brk = std::string::npos;
    if (word_wrap) {
      for (std::size_t k = end; k >= start + 1; k--) {
        if (text[k] == ' ' || text[k] == '\n') {
          brk = k;
          break;
        }
      }
    }
    if (brk != std::string::npos) {
      // The space or newline at the break belongs to neither line.
      lines.push_back(text.substr(start, brk - start));
      start = brk + 1;
    } else {
      lines.push_back(text.substr(start, end - start));
      start = text[end] == '\n' ? end + 1 : end;
    }
  }
}

TextBox::TextBox() : m_size(10, 1), m_padding(true), m_word_wrap(true) {
  setType("TextBox");
  setLocation(CENTER_CENTER);
  setViewString("");
  setColor(WHITE);
  setDrawValue(false);
  markModified(TEXTBOX_TEXT | TEXTBOX_APPEARANCE);
}

TextBox::~TextBox() = default;

std::vector<std::string> TextBox::lines() const {
  return breakLines(m_text, static_cast<int>(m_size.getX()), m_word_wrap);
}

int TextBox::draw() {
  DisplayManager &display = DisplayManager::getInstance();
  const LogManager &log = LogManager::getInstance();
  const Color color = getColor();
  const Vector pos = viewToWorld(getPosition());
  const float lft = pos.getX() - m_size.getX() * 0.5f;
  const float top = pos.getY() - m_size.getY() * 0.5f;
  const float rgt = lft + m_size.getX() - 1;
  const float bot = top + m_size.getY() - 1;
  log.writeLog(30, "TextBox::draw(): lft %.1f, top %.1f, rgt %.1f, bot %.1f", lft, top, rgt, bot);

  // The frame is drawn whatever the border flag says; padding widens it only.
  int n = static_cast<int>(m_size.getX());
  float left_bar = lft - 1;
  float right_bar = rgt + 1;
  if (m_padding) {
    n += 2;
    left_bar -= 1;
    right_bar += 1;
  }
  const std::string dashes(std::max(n, 0), '-');
  int result = display.drawString(Vector(left_bar + 1, top - 1), dashes, LEFT_JUSTIFIED, color);
  result += display.drawString(Vector(left_bar + 1, bot + 1), dashes, LEFT_JUSTIFIED, color);
  for (int i = 0; i < m_size.getY(); i++) {
    result += display.drawChar(Vector(left_bar, top + i), '|', color, 0);
    result += display.drawChar(Vector(right_bar, top + i), '|', color, 0);
  }

  const std::vector<std::string> text_lines = lines();
  for (const std::string &line : text_lines)
    log.writeLog(30, "TextBox::draw(): line added: %s", line.c_str());
  const int count = static_cast<int>(text_lines.size());
  log.writeLog(25, "TextBox::draw(): vector lines: %d", count);
  for (int i = 0; i < count; i++) log.writeLog(25, "\tline %d: %s", i, text_lines[i].c_str());

  // The newest lines stay visible: the oldest are dropped.
  const int skip = count > m_size.getY() ? static_cast<int>(count - m_size.getY()) : 0;
  for (int i = skip; i < count; i++)
    result +=
        display.drawString(Vector(lft, top + (i - skip)), text_lines[i], LEFT_JUSTIFIED, color);
  return result;
}

void TextBox::setText(std::string new_text) {
  if (new_text == m_text) return;
  m_text = std::move(new_text);
  markModified(TEXTBOX_TEXT);
}

void TextBox::setSize(Vector new_size) {
  if (new_size == m_size) return;
  m_size = new_size;
  markModified(TEXTBOX_APPEARANCE);
}

void TextBox::setPadding(bool new_padding) {
  if (new_padding == m_padding) return;
  m_padding = new_padding;
  markModified(TEXTBOX_APPEARANCE);
}

void TextBox::setWordWrap(bool new_word_wrap) {
  if (new_word_wrap == m_word_wrap) return;
  m_word_wrap = new_word_wrap;
  markModified(TEXTBOX_APPEARANCE);
}

void TextBox::clearText() {
  m_text.clear();
}

std::string TextBox::getText() const {
  return m_text;
}
Vector TextBox::getSize() const {
  return m_size;
}
bool TextBox::getPadding() const {
  return m_padding;
}
bool TextBox::getWordWrap() const {
  return m_word_wrap;
}

// ---- records -------------------------------------------------------------------

int TextBox::serialize(std::stringstream *p_ss, unsigned int attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  log.writeLog(20, "TextBox::serialize(): serializing attributes");
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "TextBox::serialize(): attr is %u, modified is %u (%s)", attr, getModified(),
                 boolToString(getModified() != 0).c_str());
  ViewObject::serialize(p_ss, attr);
  unsigned int modified = getModified();
  const unsigned int mask = attr ? attr : modified;
  if (mask & TEXTBOX_TEXT) {
    if (trace) log.writeLog(25, "\tTEXT: %s", m_text.c_str());
    writeString(*p_ss, m_text);
    modified &= ~static_cast<unsigned int>(TEXTBOX_TEXT);
  }
  if (mask & TEXTBOX_APPEARANCE) {
    writeFloat(*p_ss, m_size.getX());
    writeFloat(*p_ss, m_size.getY());
    writeBool(*p_ss, m_padding);
    writeBool(*p_ss, m_word_wrap);
    modified &= ~static_cast<unsigned int>(TEXTBOX_APPEARANCE);
    if (trace) traceAppearance();
  }
  setModified(modified);
  return checkStream("TextBox::serialize()", *p_ss);
}

int TextBox::deserialize(std::stringstream *p_ss, unsigned int *p_attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  unsigned int mask = 0;
  int result = ViewObject::deserialize(p_ss, &mask);
  if (p_attr) *p_attr = mask;
  if (result != 0) return result;
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "TextBox::deserialize(): attr %u (%s)", mask, toBinaryString(mask).c_str());
  std::istream &in = *p_ss;
  if ((mask & TEXTBOX_TEXT) && in.good()) {
    std::string text;
    std::uint64_t length = 0;
    int read = readString(in, text, length);
    if (read == -2)
      log.writeLog("TextBox::deserialize(): Error! Cannot allocate %d bytes.",
                   static_cast<int>(length));
    if (read == 0) {
      setText(text);
      if (trace) log.writeLog(25, "\tTEXT: %s", m_text.c_str());
    }
  }
  if ((mask & TEXTBOX_APPEARANCE) && in.good()) {
    float width = 0, height = 0;
    bool padding = true, word_wrap = true;
    readFloat(in, width);
    readFloat(in, height);
    readBool(in, padding);
    readBool(in, word_wrap);
    // Lines are broken and drawn for every cell of the box: a few screens'
    // worth at most.
    const DisplayManager &display = DisplayManager::getInstance();
    const Vector most(static_cast<float>(TEXT_BOX_GRIDS_MAX * display.getHorizontalChars()),
                      static_cast<float>(TEXT_BOX_GRIDS_MAX * display.getVerticalChars()));
    if (in && !(width >= 0 && height >= 0 && width <= most.getX() && height <= most.getY())) {
      log.writeLog(
          "TextBox::deserialize(): Error! Size %s out of range (0,0) to %s; the record is "
          "refused.",
          Vector(width, height).toString().c_str(), most.toString().c_str());
      in.setstate(std::ios::failbit);
    }
    if (in) {
      setSize(Vector(width, height));
      setPadding(padding);
      setWordWrap(word_wrap);
      if (trace) traceAppearance();
    }
  }
  log.writeLog(20, "TextBox::deserialize(): done checking all types.");
  return checkStream("TextBox::deserialize()", *p_ss);
}

void TextBox::traceAppearance() const {
  LogManager &log = LogManager::getInstance();
  log.writeLog(25, "\tAPPEARANCE");
  log.writeLog(25, "\tSIZE: %s", m_size.toString().c_str());
  log.writeLog(25, "\tPADDING: %s", boolToString(m_padding).c_str());
  log.writeLog(25, "\tWORD_WRAP: %s", boolToString(m_word_wrap).c_str());
}

}  // namespace qv
