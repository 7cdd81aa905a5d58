#include "graphics/ViewObject.h"

#include <cstdint>
#include <istream>
#include <sstream>

#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "graphics/EventView.h"
#include "world/WorldManager.h"

namespace qv {

namespace {

// The centre cell of a location's label in view coordinates: columns at one,
// three and five sixths of the view, rows at the top, middle and bottom, one
// row further in when a border needs room.
Vector locationPosition(int location, bool border) {
  const Box view = WorldManager::getInstance().getView();
  const float w = view.getHorizontal();
  const float h = view.getVertical();
  const float column_x[3] = {w / 6, w * 3 / 6, w * 5 / 6};
  const float row_y_border[3] = {1, h * 0.5f, h - 2};
  const float row_y_plain[3] = {0, h * 0.5f - 1, h - 1};
  const int row = location / 3;
  return Vector(column_x[location % 3], border ? row_y_border[row] : row_y_plain[row]);
}

}  // namespace

ViewObject::ViewObject()
    : m_value(0), m_draw_value(true), m_border(true), m_color(WHITE), m_location(TOP_CENTER) {
  setType("ViewObject");
  setSolidness(SPECTRAL);
  setAltitude(ALTITUDE_MAX);
  Object::setPosition(locationPosition(TOP_CENTER, m_border));
  registerInterest(VIEW_EVENT);
  // A new view object counts as wholly changed, like a new Object, so its
  // first record carries everything.
  markModified(VIEW_VALUE | VIEW_APPEARANCE);
}

ViewObject::~ViewObject() = default;

int ViewObject::setPosition(Vector new_pos) {
  if (new_pos == getPosition()) return 0;
  m_location = -1;
  const int result = Object::setPosition(new_pos);
  markModified(VIEW_APPEARANCE);
  return result;
}

int ViewObject::eventHandler(const Event *p_e) {
  if (p_e->getType() != VIEW_EVENT) return Object::eventHandler(p_e);
  const EventView *p_view_event = dynamic_cast<const EventView *>(p_e);
  if (!p_view_event || p_view_event->getTag() != m_view_string) return 0;
  setValue(p_view_event->getDelta() ? m_value + p_view_event->getValue()
                                    : p_view_event->getValue());
  return 1;
}

std::string ViewObject::displayText() const {
  std::string text = m_view_string;
  if (m_draw_value) text += " " + std::to_string(m_value);
  if (m_border) text = " " + text + " ";
  return text;
}

int ViewObject::draw() {
  DisplayManager &display = DisplayManager::getInstance();
  const std::string text = displayText();
  const Vector pos = viewToWorld(getPosition());
  int result = display.drawString(pos, text, CENTER_JUSTIFIED, m_color);
  if (m_border) {
    const int n = static_cast<int>(text.size());
    const std::string dashes(n, '-');
    const float x = pos.getX();
    const float y = pos.getY();
    result += display.drawString(Vector(x, y - 1), dashes, CENTER_JUSTIFIED, m_color);
    result += display.drawString(Vector(x, y + 1), dashes, CENTER_JUSTIFIED, m_color);
    result += display.drawChar(Vector(x - static_cast<float>(n / 2) - 1, y), '|', m_color, 0);
    result += display.drawChar(Vector(x - static_cast<float>(n / 2) + n, y), '|', m_color, 0);
  }
  return result;
}

void ViewObject::setLocation(int new_location) {
  if (new_location < TOP_LEFT || new_location > BOTTOM_RIGHT) {
    LogManager::getInstance().writeLog(
        "ViewObject::setLocation(): Warning! Location out of range (%d). Ignored.", new_location);
    return;
  }
  setPosition(locationPosition(new_location, m_border));
  m_location = new_location;
  markModified(VIEW_APPEARANCE);
}

void ViewObject::setDrawValue(bool new_draw_value) {
  if (new_draw_value == m_draw_value) return;
  m_draw_value = new_draw_value;
  markModified(VIEW_APPEARANCE);
}

void ViewObject::setValue(int new_value) {
  if (new_value == m_value) return;
  m_value = new_value;
  markModified(VIEW_VALUE);
}

void ViewObject::setBorder(bool new_border) {
  if (new_border == m_border) return;
  m_border = new_border;
  markModified(VIEW_APPEARANCE);
  if (m_location != -1) setLocation(m_location);
}

void ViewObject::setColor(Color new_color) {
  if (new_color == m_color) return;
  m_color = new_color;
  markModified(VIEW_APPEARANCE);
}

void ViewObject::setViewString(std::string new_view_string) {
  if (new_view_string == m_view_string) return;
  m_view_string = std::move(new_view_string);
  markModified(VIEW_APPEARANCE);
}

std::string ViewObject::getViewString() const {
  return m_view_string;
}
int ViewObject::getValue() const {
  return m_value;
}
bool ViewObject::getDrawValue() const {
  return m_draw_value;
}
bool ViewObject::getBorder() const {
  return m_border;
}
Color ViewObject::getColor() const {
  return m_color;
}
int ViewObject::getLocation() const {
  return m_location;
}

void ViewObject::markModified(unsigned int bits) {
  setModified(getModified() | bits);
}

// ---- records -------------------------------------------------------------------

int ViewObject::serialize(std::stringstream *p_ss, unsigned int attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  log.writeLog(20, "ViewObject::serialize(): serializing attributes");
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "ViewObject::serialize(): attr is %u, modified is %u (%s)", attr,
                 getModified(), boolToString(getModified() != 0).c_str());
  Object::serialize(p_ss, attr);
  unsigned int modified = getModified();
  const unsigned int mask = attr ? attr : modified;
  if (mask & VIEW_VALUE) {
    if (trace) log.writeLog(25, "\tVALUE");
    writeInt(*p_ss, m_value);
    modified &= ~static_cast<unsigned int>(VIEW_VALUE);
  }
  if (mask & VIEW_APPEARANCE) {
    writeString(*p_ss, m_view_string);
    writeBool(*p_ss, m_border);
    writeInt(*p_ss, m_color);
    writeInt(*p_ss, m_location);
    writeBool(*p_ss, m_draw_value);
    modified &= ~static_cast<unsigned int>(VIEW_APPEARANCE);
    if (trace) traceAppearance();
  }
  setModified(modified);
  return checkStream("ViewObject::serialize()", *p_ss);
}

int ViewObject::deserialize(std::stringstream *p_ss, unsigned int *p_attr) {
  LogManager &log = LogManager::getInstance();
  const bool trace = log.getLogLevel() >= 25;
  unsigned int mask = 0;
  int result = Object::deserialize(p_ss, &mask);
  if (p_attr) *p_attr = mask;
  if (result != 0) {
    log.writeLog("ViewObject::deserialize(): Error calling Object::deserialize().");
    return result;
  }
  if (log.getLogLevel() >= 20)
    log.writeLog(20, "ViewObject::deserialize(): attr %u (%s)", mask, toBinaryString(mask).c_str());
  std::istream &in = *p_ss;
  int value = 0;
  if ((mask & VIEW_VALUE) && readInt(in, value)) {
    setValue(value);
    if (trace) log.writeLog(25, "\tVALUE: %d", value);
  }
  if ((mask & VIEW_APPEARANCE) && in.good()) {
    std::string view_string;
    std::uint64_t length = 0;
    bool border = true, draw_value = true;
    int color = WHITE, location = TOP_CENTER;
    const int string_read = readString(in, view_string, length);
    if (string_read == -2)
      log.writeLog("ViewObject::deserialize(): Error! Cannot allocate %d bytes.",
                   static_cast<int>(length));
    readBool(in, border);
    readInt(in, color);
    readInt(in, location);
    readBool(in, draw_value);
    // All five or none: half an appearance would be misplaced on screen.
    if (in && recordValueInRange(in, "ViewObject::deserialize()", "Color", color, BLACK, CUSTOM)) {
      if (string_read == 0) setViewString(view_string);
      setBorder(border);
      setColor(static_cast<Color>(color));
      // -1 says the sender placed the object by position, which the Object
      // record already carried.
      if (location != -1) setLocation(location);
      setDrawValue(draw_value);
      if (trace) traceAppearance();
    }
  }
  log.writeLog(20, "ViewObject::deserialize(): done checking all types.");
  return checkStream("ViewObject::deserialize()", *p_ss);
}

void ViewObject::traceAppearance() const {
  LogManager &log = LogManager::getInstance();
  log.writeLog(25, "\tAPPEARANCE");
  log.writeLog(25, "\tVIEW_STRING: %s", m_view_string.c_str());
  log.writeLog(25, "\tBORDER: %s", boolToString(m_border).c_str());
  log.writeLog(25, "\tCOLOR: %s", colorToString(m_color).c_str());
  log.writeLog(25, "\tLOCATION: %s", locationToString(m_location).c_str());
  log.writeLog(25, "\tDRAW_VALUE: %s", boolToString(m_draw_value).c_str());
}

}  // namespace qv
