#ifndef TACTICS_ASSETS_H
#define TACTICS_ASSETS_H

// Loads the game's sprites, sounds and music by label, in manifest order.
// A file that fails to load is reported in the log; the game goes on without it.
void loadAssets();

#endif
