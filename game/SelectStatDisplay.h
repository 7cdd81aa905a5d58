#ifndef TACTICS_SELECT_STAT_DISPLAY_H
#define TACTICS_SELECT_STAT_DISPLAY_H

#include "graphics/TextBox.h"
#include "graphics/ViewObject.h"

// The selected unit's name and health, bottom left, with instructions for the
// player in a text box. Also carries out Enter (end the player turn) and
// Escape (leave the level for the title screen).
class SelectStatDisplay : public qv::ViewObject {
 public:
  SelectStatDisplay();

  int eventHandler(const qv::Event *p_e) override;
  qv::TextBox *getTextBox() const;

 private:
  int refresh();
  // Marks every object but the title screen for deletion and wakes the title screen.
  void leaveLevel();

  qv::TextBox *m_p_text_box;  // the instructions; owned by the world like every object
};

#endif
