#include "media/sounds.h"

#include <initializer_list>

#include "core/context.h"
#include "core/say.h"

Mix_Chunk *gPunchHit = nullptr;
Mix_Chunk *gPunch = nullptr;
Mix_Chunk *gBell = nullptr;

namespace {

Mix_Chunk *load_chunk(const char *path) {
  Mix_Chunk *chunk = Mix_LoadWAV_RW(SDL_RWFromFile(path, "rb"), 1);
  // This line alone ends without a line break.
  if (chunk == nullptr) say("Failed to load sound chunk! SDL_mixer Error: %s", SDL_GetError());
  return chunk;
}

}  // namespace

bool sounds_load() {
  gPunchHit = load_chunk("assets/hit.wav");
  gPunch = load_chunk("assets/miss.wav");
  gBell = load_chunk("assets/end.wav");
  return gPunchHit != nullptr;
}

void sounds_unload() {
  for (Mix_Chunk **chunk : {&gPunch, &gPunchHit, &gBell}) {
    if (*chunk != nullptr) Mix_FreeChunk(*chunk);
    *chunk = nullptr;
  }
}

void sounds_play(Mix_Chunk *chunk) {
  if (context_get()->sound_on != 0 && chunk != nullptr) Mix_PlayChannel(-1, chunk, 0);
}
