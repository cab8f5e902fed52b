#include "tests/support/world.h"

#include <SDL_image.h>
#include <SDL_mixer.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <sstream>

#include "media/sounds.h"

world_record world;

namespace {

// The numbers and texts among a call's arguments; addresses are others in every run.
template <typename... types>
std::string list(types... arguments) {
  std::ostringstream words;
  [[maybe_unused]] const auto add = [&words](auto argument) {
    using type = decltype(argument);
    if constexpr (std::is_integral_v<type> || std::is_same_v<type, const char *>) words << argument << " ";
  };
  (add(arguments), ...);
  return words.str();
}

// Whether this call is to fail; puts it on record if not, with its numbers and texts.
bool fails(const std::string &function, const std::string &arguments) {
  const auto found = world.failing.find(function);
  if (found != world.failing.end() && found->second <= 1) {
    if (found->second == 1) world.failing.erase(found);
    SDL_SetError("on demand");
    return true;
  }
  if (found != world.failing.end()) --found->second;
  world.calls += function + " " + arguments;
  world.textures += (function == "SDL_CreateTextureFromSurface") - (function == "SDL_DestroyTexture");
  world.blocks += function == "calloc";
  return false;
}

}  // namespace

// A function that fails on demand, with `failure` for its result.
#define WRAP(type, function, failure, parameters, arguments)                         \
  type __real_##function parameters;                                                 \
  type __wrap_##function parameters {                                                \
    return fails(#function, list arguments) ? failure : __real_##function arguments; \
  }

extern "C" {

WRAP(void *, calloc, nullptr, (std::size_t count, std::size_t size), (count, size))
WRAP(void, srand, void(), (unsigned seed), (seed))
WRAP(int, SDL_Init, -1, (Uint32 flags), (flags))
WRAP(SDL_bool, SDL_SetHint, SDL_FALSE, (const char *name, const char *value), (name, value))
WRAP(const char *, SDL_GetCurrentVideoDriver, "offscreen", (), ())
WRAP(const char *, SDL_GetHint, nullptr, (const char *name), (name))
WRAP(SDL_Window *, SDL_CreateWindow, nullptr, (const char *title, int x, int y, int w, int h, Uint32 flags),
     (title, x, y, w, h, flags))
WRAP(SDL_Renderer *, SDL_CreateRenderer, nullptr, (SDL_Window * w, int index, Uint32 flags),
     (w, index, flags))
WRAP(SDL_Texture *, SDL_CreateTextureFromSurface, nullptr, (SDL_Renderer * r, SDL_Surface *s), (r, s))
WRAP(int, IMG_Init, IMG_INIT_JPG, (int flags), (flags))
WRAP(SDL_Surface *, IMG_Load, nullptr, (const char *path), (path))
WRAP(SDL_RWops *, SDL_RWFromFile, nullptr, (const char *path, const char *mode), (path, mode))
WRAP(int, TTF_Init, -1, (), ())
WRAP(TTF_Font *, TTF_OpenFont, nullptr, (const char *path, int points), (path, points))
WRAP(void, SDL_DestroyTexture, void(), (SDL_Texture * texture), (texture))
WRAP(void, TTF_CloseFont, void(), (TTF_Font * font), (font))
WRAP(void, Mix_FreeChunk, void(), (Mix_Chunk * chunk), (chunk))
WRAP(void, SDL_DestroyRenderer, void(), (SDL_Renderer * renderer), (renderer))
WRAP(void, SDL_DestroyWindow, void(), (SDL_Window * window), (window))
WRAP(void, SDL_SetWindowIcon, void(), (SDL_Window * window, SDL_Surface *icon), (window, icon))
WRAP(void, TTF_Quit, void(), (), ())
WRAP(void, IMG_Quit, void(), (), ())
WRAP(void, Mix_Quit, void(), (), ())
WRAP(void, SDL_Quit, void(), (), ())

void __real_free(void *block);
void __wrap_free(void *block) {
  world.blocks -= block != nullptr;
  __real_free(block);
}

int __wrap_rand() {
  if (world.dice != nullptr) return static_cast<int>((*world.dice)() >> 1);
  const int draw = world.draws.at(0);
  world.draws.pop_front();
  return draw;
}

std::time_t __wrap_time(std::time_t *) {
  return world.seconds;
}

Uint32 __wrap_SDL_GetTicks() {
  return world.ticks;
}

void __wrap_SDL_Delay(Uint32 milliseconds) {
  world.delays.push_back(milliseconds);
  world.ticks += milliseconds;
  if (world.on_delay) world.on_delay();
}

int __real_Mix_OpenAudio(int rate, Uint16 format, int channels, int chunk);
int __wrap_Mix_OpenAudio(int rate, Uint16 format, int channels, int chunk) {
  if (fails("Mix_OpenAudio", list(rate, format, channels, chunk))) return -1;
  return __real_Mix_OpenAudio(rate, format, channels, 64);  // since closing waits for two chunks
}

int __wrap_Mix_PlayChannel(int channel, Mix_Chunk *chunk, int loops) {
  EXPECT_TRUE(channel == -1 && loops == 0);
  world.sounds += chunk == gPunchHit ? "hit " : chunk == gPunch ? "miss " : "bell ";
  return 0;
}

int __wrap_SDL_ShowSimpleMessageBox(Uint32, const char *, const char *message, SDL_Window *) {
  world.box += message;
  return 0;
}

SDL_Surface *__real_TTF_RenderUTF8_Solid(TTF_Font *font, const char *text, SDL_Color color);
SDL_Surface *__wrap_TTF_RenderUTF8_Solid(TTF_Font *font, const char *text, SDL_Color color) {
  world.texts += std::string(text) + "|";
  return fails("TTF_RenderUTF8_Solid", "") ? nullptr : __real_TTF_RenderUTF8_Solid(font, text, color);
}

}  // extern "C"
