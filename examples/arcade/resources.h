#ifndef ARCADE_RESOURCES_H
#define ARCADE_RESOURCES_H

// Loads the game's sprites, sounds and music by label from the working
// directory (the engine's run folder, a copy of assets/). Call it after the
// engine has started and before the first object that shows a sprite.
void loadResources();

// Plays the sound with this label once, if it loaded.
void playSound(const char *label);

#endif
