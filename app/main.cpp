// The entry: runs the program from start to end.

#include <SDL.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "app/application.h"
#include "app/assets.h"
#include "app/command_line.h"
#include "app/gamepads.h"
#include "app/main_loop.h"
#include "core/context.h"
#include "core/say.h"
#include "core/window.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "net/net.h"

namespace {

// What comes up one after the other once there is a window, and the line when it does not.
struct stage {
  bool (*start)();
  const char *failure_line;
};
constexpr stage stages[] = {
    {context_init, "Failed to init game!"},
    {graphics_load, "Failed to load media!"},
    {sounds_load, "Failed to load sound!"},
};

bool start_stages() {
  for (const stage &stage : stages) {
    if (stage.start()) continue;
    say("%s\n", stage.failure_line);
    return false;
  }
  return true;
}

// False when the game could not start.
bool run() {
  const bool started = start_stages();
  gamepads_open();
  if (started) context_loop();
  gamepads_close();
  context_teardown();
  return started;
}

bool run_in_window() {
  const bool opened = init();
  if (!opened) say("Failed to initialize!\n");
  const bool started = opened && run();
  close_sdl_window();
  return started;
}

// Whether nobody reads what is printed: so it is on Windows when the game was not started from a terminal.
bool prints_to_nobody() {
#ifdef _WIN32
  return _fileno(stdout) < 0;
#else
  return false;
#endif
}

void tell_failure(const command_line &line) {
  if (!line.message_box && !prints_to_nobody()) return;
  std::fflush(stdout);  // the box may stay for long
  SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_ERROR, window_title, said_lines(), nullptr);
}

}  // namespace

int main(int argc, char *argv[]) {
  const command_line line = command_line_read(argc, argv);
  if (line.answered) return 0;
  if (!net_start_library()) {
    say("WS could not be init\n");
    tell_failure(line);
    return 1;
  }
  assets_find();
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  if (!run_in_window()) tell_failure(line);
  std::puts("Closing...");
  return 0;
}
