#ifndef ARCADE_POINTS_H
#define ARCADE_POINTS_H

#include "graphics/ViewObject.h"

// The view string of the points display: view events with this tag add to it.
const char *const POINTS = "Points";

// The points display at the top right of the screen.
class Points : public qv::ViewObject {
 public:
  Points();
};

// Adds to the points display, wherever it is.
void addPoints(int points);

#endif
