#include "app/application.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_mixer.h>
#include <SDL_ttf.h>

#include <cstdio>

#include "core/window.h"
#include "media/graphics.h"
#include "media/sounds.h"

namespace {

constexpr const char *window_title = "Vantaro Pugnado";
constexpr int audio_rate = 44100;  // Hz
constexpr int audio_channels = 2;  // stereo
constexpr int audio_chunk = 2048;  // samples

// Without a display SDL goes on by itself with its offscreen driver, where nobody would see the game or
// could end it. That is no start, unless it was asked for.
bool drawing_unseen() {
  const char *driver = SDL_GetCurrentVideoDriver();
  return SDL_GetHint(SDL_HINT_VIDEODRIVER) == nullptr && driver != nullptr &&
         SDL_strcmp(driver, "offscreen") == 0;
}

bool start_sdl() {
  bool started = SDL_Init(SDL_INIT_VIDEO | SDL_INIT_AUDIO) == 0;
  if (started && drawing_unseen()) {
    SDL_SetError("No available video device");
    started = false;
  }
  if (!started) std::printf("SDL could not init! SDL Error: %s\n", SDL_GetError());
  // SDL starts with text input on, and an input method would take the keys of a match for writing.
  if (started) SDL_StopTextInput();
  return started;
}

bool create_window() {
  gWindow = SDL_CreateWindow(window_title, SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, screen_width,
                             screen_height, SDL_WINDOW_SHOWN);
  if (gWindow == nullptr) std::printf("Window could not be created! SDL ERROR: %s\n", SDL_GetError());
  return gWindow != nullptr;
}

bool create_renderer() {
  gRenderer = SDL_CreateRenderer(gWindow, -1, SDL_RENDERER_ACCELERATED);
  if (gRenderer == nullptr) {
    std::printf("Renderer could not be created! SDL Error: %s\n", SDL_GetError());
    return false;
  }
  SDL_SetRenderDrawBlendMode(gRenderer, SDL_BLENDMODE_BLEND);
  SDL_SetRenderDrawColor(gRenderer, 255, 255, 255, 255);
  return true;
}

// Tries all three whatever fails, so that every missing library is named at once.
bool start_libraries() {
  bool complete = true;
  if ((IMG_Init(IMG_INIT_PNG) & IMG_INIT_PNG) == 0) {
    std::printf("SDL_image could not init! SDL_image error: %s\n", SDL_GetError());
    complete = false;
  }
  if (TTF_Init() != 0) {
    std::printf("SDL_ttf could not init! SDL_ttf error: %s\n", SDL_GetError());
    complete = false;
  }
  if (Mix_OpenAudio(audio_rate, AUDIO_S16LSB, audio_channels, audio_chunk) != 0) {
    std::printf("SDL_mixer could not initialize! SDL_Mixer Error: %s\n", SDL_GetError());
    complete = false;
  }
  return complete;
}

}  // namespace

bool init() {
  if (!start_sdl()) return false;
  if (SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "1") == SDL_FALSE) {
    std::puts("Warning: linear texture filtering is not enabled!");
  }
  return create_window() && create_renderer() && start_libraries();
}

void close_sdl_window() {
  graphics_unload();
  sounds_unload();
  if (gRenderer != nullptr) SDL_DestroyRenderer(gRenderer);
  gRenderer = nullptr;
  if (gWindow != nullptr) SDL_DestroyWindow(gWindow);
  gWindow = nullptr;
  TTF_Quit();
  IMG_Quit();
  Mix_CloseAudio();
  Mix_Quit();
  SDL_Quit();
}
