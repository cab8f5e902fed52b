#pragma once

// The three sound effects. They live from sounds_load at the start to sounds_unload at the end.

#include <SDL_mixer.h>

extern Mix_Chunk *gPunchHit;  // a punch lands; null when it is not loaded
extern Mix_Chunk *gPunch;     // a punch misses; null when it is not loaded
extern Mix_Chunk *gBell;      // the match ends; null when it is not loaded

// Loads the three, printing a line for each that fails. Returns false only when the hit sound failed; the
// game goes on without the others.
bool sounds_load();
// Frees what was loaded.
void sounds_unload();
// Plays the chunk once on the first free channel while sound is on. A null chunk plays nothing.
void sounds_play(Mix_Chunk *chunk);
