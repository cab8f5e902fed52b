// The entry: reads the window's size from the command line and runs the program from start to end.

#include <SDL.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "app/application.h"
#include "app/main_loop.h"
#include "core/context.h"
#include "core/window.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "net/net.h"

namespace {

// The number that `text` begins with; `fallback` where there is none, where it is 0, and where it is past
// the range of an int.
int size_from_text(const char *text, int fallback) {
  errno = 0;
  const long value = std::strtol(text, nullptr, 10);
  if (value == 0 || errno == ERANGE || value < INT_MIN || value > INT_MAX) return fallback;
  return static_cast<int>(value);
}

void read_window_size(int argc, char *argv[]) {
  if (argc > 1) screen_width = size_from_text(argv[1], 800);
  if (argc > 2) screen_height = size_from_text(argv[2], 640);
}

void run() {
  if (!context_init()) {
    std::puts("Failed to init game!");
  } else if (!graphics_load()) {
    std::puts("Failed to load media!");
  } else if (!sounds_load()) {
    std::puts("Failed to load sound!");
  } else {
    context_loop();
  }
  context_teardown();
}

}  // namespace

int main(int argc, char *argv[]) {
  if (!net_start_library()) {
    std::puts("WS could not be init");
    return 1;
  }
  read_window_size(argc, argv);
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  if (init()) {
    run();
  } else {
    std::puts("Failed to initialize!");
  }
  close_sdl_window();
  std::puts("Closing...");
  return 0;
}
