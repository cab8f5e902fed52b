#include "app/application.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_mixer.h>
#include <SDL_ttf.h>

#include "core/say.h"
#include "core/window.h"
#include "media/graphics.h"
#include "media/sounds.h"

namespace {

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
  bool started = SDL_Init(SDL_INIT_VIDEO) == 0;
  if (started && drawing_unseen()) {
    SDL_SetError("No available video device");
    started = false;
  }
  if (!started) say("SDL could not init! SDL Error: %s\n", SDL_GetError());
  // SDL starts with text input on, and an input method would take the keys of a match for writing.
  if (started) SDL_StopTextInput();
  return started;
}

// The display's size is asked for as well, since without a window manager the flag alone changes nothing.
Uint32 prepare_full_screen() {
  if (!full_screen) return 0;
  SDL_DisplayMode display;
  if (SDL_GetDesktopDisplayMode(0, &display) == 0) {
    screen_width = display.w;
    screen_height = display.h;
  }
  SDL_ShowCursor(SDL_DISABLE);
  return SDL_WINDOW_FULLSCREEN_DESKTOP;
}

bool create_window() {
  const Uint32 flags = SDL_WINDOW_SHOWN | prepare_full_screen();
  gWindow = SDL_CreateWindow(window_title, SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, screen_width,
                             screen_height, flags);
  if (gWindow == nullptr) say("Window could not be created! SDL ERROR: %s\n", SDL_GetError());
  return gWindow != nullptr;
}

bool create_renderer() {
  gRenderer = SDL_CreateRenderer(gWindow, -1, SDL_RENDERER_ACCELERATED);
  if (gRenderer == nullptr) gRenderer = SDL_CreateRenderer(gWindow, -1, 0);
  if (gRenderer == nullptr) {
    say("Renderer could not be created! SDL Error: %s\n", SDL_GetError());
    return false;
  }
  SDL_SetRenderDrawBlendMode(gRenderer, SDL_BLENDMODE_BLEND);
  SDL_SetRenderDrawColor(gRenderer, 255, 255, 255, 255);
  return true;
}

bool open_audio() {
  return Mix_OpenAudio(audio_rate, AUDIO_S16LSB, audio_channels, audio_chunk) == 0;
}

// Where no sound can be had the game goes on in silence, which is worth a line only for a driver that the
// player has named. A device is not asked for where there is none: sound libraries complain of that at
// length.
bool start_sound() {
  const char *driver = SDL_GetHint(SDL_HINT_AUDIODRIVER);
  const bool named = driver != nullptr && *driver != '\0';
  const bool found = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0 && (named || SDL_GetNumAudioDevices(0) > 0);
  if (found && open_audio()) return true;
  if (named) say("Sound driver %s could not be opened! SDL Error: %s\n", driver, SDL_GetError());
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  SDL_SetHintWithPriority(SDL_HINT_AUDIODRIVER, "dummy", SDL_HINT_OVERRIDE);
  return open_audio();
}

// Tries all three whatever fails, so that every missing library is named at once.
bool start_libraries() {
  bool complete = true;
  if ((IMG_Init(IMG_INIT_PNG) & IMG_INIT_PNG) == 0) {
    say("SDL_image could not init! SDL_image error: %s\n", SDL_GetError());
    complete = false;
  }
  if (TTF_Init() != 0) {
    say("SDL_ttf could not init! SDL_ttf error: %s\n", SDL_GetError());
    complete = false;
  }
  if (!start_sound()) {
    say("SDL_mixer could not initialize! SDL_Mixer Error: %s\n", SDL_GetError());
    complete = false;
  }
  return complete;
}

// A window without its icon is no reason for a line.
void show_icon() {
  SDL_Surface *icon = IMG_Load("assets/icon.png");
  if (icon != nullptr) SDL_SetWindowIcon(gWindow, icon);
  SDL_FreeSurface(icon);
}

}  // namespace

bool init() {
  if (!start_sdl()) return false;
  if (SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "1") == SDL_FALSE) {
    say("Warning: linear texture filtering is not enabled!\n");
  }
  if (!create_window() || !create_renderer() || !start_libraries()) return false;
  show_icon();
  return true;
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
