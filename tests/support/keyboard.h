#pragma once

#include <SDL.h>

inline void push_key(SDL_Keycode key, Uint32 type = SDL_KEYDOWN, Uint8 repeat = 0,
                     int modifiers = KMOD_NONE) {
  SDL_Event event = {};
  event.type = type;
  event.key.repeat = repeat;
  event.key.keysym.sym = key;
  event.key.keysym.mod = static_cast<Uint16>(modifiers);
  SDL_PushEvent(&event);
}
