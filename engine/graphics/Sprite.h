#ifndef QV_SPRITE_H
#define QV_SPRITE_H

#include <string>
#include <vector>

#include "core/utility.h"
#include "graphics/Frame.h"
#include "world/Vector.h"

namespace qv {

// A labelled sequence of frames of one size and one colour. Sprites are made
// once by the resource manager and shared by every object that shows them.
class Sprite {
 public:
  // Room for max_frames frames; if that cannot be allocated the capacity is 0
  // and every addFrame fails.
  explicit Sprite(int max_frames);
  ~Sprite();

  // Copies the frame into the next free slot; -1 when the sprite is full.
  int addFrame(Frame new_frame);

  void setWidth(int width);
  void setHeight(int height);
  void setColor(Color color);
  void setSlowdown(int slowdown);
  void setTransparency(char transparency);
  void setLabel(std::string label);

  int getWidth() const;
  int getHeight() const;
  Color getColor() const;
  int getSlowdown() const;
  char getTransparency() const;
  std::string getLabel() const;
  int getFrameCount() const;
  int getMaxFrameCount() const;
  // A copy of frame index, or an empty frame when index is out of range.
  Frame getFrame(int index) const;

  // Draws frame index in the sprite's colour; an index out of range draws
  // nothing and returns 0.
  int draw(int index, Vector position, char transparent, int transform) const;

 private:
  Sprite(const Sprite &) = delete;
  Sprite &operator=(const Sprite &) = delete;

  int m_width;                 // 0: width of every frame
  int m_height;                // 0: height of every frame
  int m_max_frame_count;       // capacity, fixed at construction
  int m_frame_count;           // 0: frames added so far
  Color m_color;               // WHITE: colour of every character
  int m_slowdown;              // 1: game frames each sprite frame is shown
  char m_transparency;         // 0: no transparent character
  std::vector<Frame> m_frame;  // max_frame_count slots, the first frame_count used
  std::string m_label;         // "[Undefined]" until the resource manager names it
};

}  // namespace qv

#endif
