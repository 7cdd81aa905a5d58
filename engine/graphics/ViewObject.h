#ifndef QV_VIEW_OBJECT_H
#define QV_VIEW_OBJECT_H

#include <string>

#include "core/utility.h"
#include "world/Object.h"

namespace qv {

// The nine standard places on the screen; -1 means the position was set directly.
enum ViewObjectLocation : int {
  TOP_LEFT = 0,
  TOP_CENTER = 1,
  TOP_RIGHT = 2,
  CENTER_LEFT = 3,
  CENTER_CENTER = 4,
  CENTER_RIGHT = 5,
  BOTTOM_LEFT = 6,
  BOTTOM_CENTER = 7,
  BOTTOM_RIGHT = 8,
};

// Modified-mask bits of view objects and text boxes, after the 18 of Object.
enum ViewObjectAttribute : unsigned int {
  VIEW_VALUE = 0x40000,           // value
  VIEW_APPEARANCE = 0x80000,      // view string, border, color, location, draw value
  TEXTBOX_TEXT = 0x100000,        // text
  TEXTBOX_APPEARANCE = 0x200000,  // size, padding, word wrap
};

// A heads-up display element: an object placed in view coordinates, so it
// stays put on screen while the view scrolls. It shows its view string,
// optionally followed by its value and framed by a border. An EventView whose
// tag equals the view string changes the value.
class ViewObject : public Object {
 public:
  // SPECTRAL, altitude 4, at TOP_CENTER, interested in VIEW_EVENT.
  ViewObject();
  ~ViewObject() override;

  // Setting a position directly forgets the location (it becomes -1).
  int setPosition(Vector new_pos) override;
  // VIEW_EVENT events tagged with the view string set or raise the value.
  int eventHandler(const Event *p_e) override;
  // The label (and value) centred on the position, with the border around it.
  // 0, or negative when some drawing failed.
  int draw() override;
  // The Object record, then VALUE and APPEARANCE.
  int serialize(std::stringstream *p_ss, unsigned int attr = 0) override;
  int deserialize(std::stringstream *p_ss, unsigned int *p_attr = nullptr) override;

  // Moves the object to one of the nine places (0..8); other values are
  // logged and ignored.
  virtual void setLocation(int new_location);
  virtual void setDrawValue(bool new_draw_value = true);
  virtual void setValue(int new_value);
  // Re-applies the location, since the border moves the label by one row.
  virtual void setBorder(bool new_border);
  virtual void setColor(Color new_color);
  virtual void setViewString(std::string new_view_string);

  std::string getViewString() const;
  int getValue() const;
  bool getDrawValue() const;
  bool getBorder() const;
  Color getColor() const;
  int getLocation() const;

  // The text draw() centres: label, value and the border's blank margins.
  std::string displayText() const;

 protected:
  // Sets bits in the modified mask.
  void markModified(unsigned int bits);

 private:
  // The level-25 lines of the APPEARANCE group.
  void traceAppearance() const;

 private:
  std::string m_view_string;  // "": the label shown
  int m_value;                // 0: the number shown after the label
  bool m_draw_value;          // true: show the value
  bool m_border;              // true: frame of dashes and bars around the label
  Color m_color;              // WHITE: label, value and frame
  int m_location;             // TOP_CENTER; -1 once the position is set directly
};

}  // namespace qv

#endif
