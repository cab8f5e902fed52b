#include "tests/support/stage.h"

#include <cctype>
#include <regex>

#include "app/application.h"
#include "app/main_loop.h"
#include "core/window.h"
#include "media/graphics.h"
#include "media/sounds.h"

// No display, no sound card.
[[maybe_unused]] const int environment = setenv("SDL_VIDEODRIVER", "dummy", 1) +
                                         setenv("SDL_AUDIODRIVER", "dummy", 1) +
                                         setenv("SDL_RENDER_DRIVER", "software", 1);

open_game::open_game(int width, int height) {
  world = {};
  context = {};
  screen_width = width;
  screen_height = height;
  EXPECT_TRUE(init() && context_init() && graphics_load() && sounds_load());
}

open_game::~open_game() {
  context_teardown();
  close_sdl_window();
  EXPECT_EQ(std::tie(world.textures, world.blocks), std::make_tuple(0, 0)) << "what nobody has released";
}

void *enter(int screen) {
  context.state_machine->next_state = screen;
  state_change(context.state_machine);
  return context.state_machine->screen;
}

std::string output_of(const std::function<void()> &action) {
  testing::internal::CaptureStdout();
  action();
  return std::regex_replace(testing::internal::GetCapturedStdout(),
                            std::regex("((Error|ERROR|error): ).*?(?=\\n|$|Failed|Closing)"), "$1*");
}

void push_keys(const std::string &letters) {
  const std::map<char, SDL_Keycode> keys = {{'D', SDLK_DOWN},   {'U', SDLK_UP},       {'R', SDLK_RETURN},
                                            {'E', SDLK_ESCAPE}, {'N', SDLK_KP_ENTER}, {'X', SDLK_RETURN}};
  SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  for (const char letter : letters) {
    const char name = static_cast<char>(std::toupper(letter));
    if (keys.contains(name)) {
      push_key(keys.at(name), SDL_KEYDOWN, name != letter, name == 'X' ? KMOD_LALT : KMOD_NONE);
      continue;
    }
    SDL_Event event = {};
    event.type = name == 'Q' ? SDL_QUIT : SDL_WINDOWEVENT;
    event.window.event = name == 'F' ? SDL_WINDOWEVENT_FOCUS_LOST : SDL_WINDOWEVENT_MINIMIZED;
    SDL_PushEvent(&event);
  }
}
