// Ten minutes of play at full speed, to see whether resident memory grows: the game's own main loop on SDL's
// dummy drivers, with keys typed at random, the same ones in every run. The clocks that the game reads are
// moved on by the sleep at the end of its frames alone, which takes no time here and types the next keys.
//
// Run it from the project's root, where assets/ is; an argument gives another number of minutes.

#include <SDL.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>

#include "app/application.h"
#include "app/main_loop.h"
#include "core/context.h"
#include "core/state_machine.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "tests/support/random_player.h"

namespace {

constexpr int frames_per_minute = 1800;
constexpr int first_fight_time = 15;  // s; short matches, so that the first minute sees every screen
constexpr long noise = 64;            // KiB that allocators and first uses of library code come to

struct memory {
  long resident;   // KiB
  long anonymous;  // KiB of it that are no pages of files: heap, stack, variables
};

int entered[screen_id_count];  // times that each screen_id came up

int frames = 0;
int frames_to_play = 10 * frames_per_minute;
Uint32 played_ms = 0;
memory first_minute;
random_player player = {std::mt19937(1)};

memory measure_memory() {
  constexpr long page = 4;  // KiB
  long size = 0;
  long resident = 0;
  long shared = 0;
  std::FILE *file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%ld %ld %ld", &size, &resident, &shared) != 3) std::abort();
  std::fclose(file);
  return {resident * page, (resident - shared) * page};
}

void end_frame() {
  state_object *state = context.state_machine;
  static int shown = screen_none;
  if (state->current_state != shown) ++entered[state->current_state];
  shown = state->current_state;
  if (++frames == frames_per_minute) first_minute = measure_memory();
  if (frames < frames_to_play) {
    player.play(*state);
  } else {
    state->next_state = screen_quit;
  }
}

void print_results(const memory &end) {
  const long growth = end.resident - first_minute.resident;
  std::printf("%d frames: %d matches, %d end screens, options %d times, menu %d times\n", frames_to_play,
              entered[screen_game], entered[screen_end], entered[screen_options], entered[screen_main_menu]);
  std::printf("Resident after the first minute: %ld KiB, %ld of them anonymous\n", first_minute.resident,
              first_minute.anonymous);
  std::printf("Resident at the end: %ld KiB, %ld of them anonymous\n", end.resident, end.anonymous);
  std::printf("Resident memory %s (%+ld KiB).\n", growth > noise ? "grew" : "did not grow", growth);
}

}  // namespace

// The linker puts these in the place of the clocks and the sleep, for the game's own calls.
extern "C" Uint32 __wrap_SDL_GetTicks() {
  return played_ms;
}
extern "C" void __wrap_SDL_Delay(Uint32 ms) {
  played_ms += ms;
  end_frame();
}
extern "C" std::time_t __wrap_time(std::time_t *) {
  return 1'000'000 + played_ms / 1000;
}

int main(int argc, char *argv[]) {
  if (argc > 1) frames_to_play = frames_per_minute * std::max(std::atoi(argv[1]), 1);
  SDL_setenv("SDL_VIDEODRIVER", "dummy", 1);
  SDL_setenv("SDL_AUDIODRIVER", "dummy", 1);
  SDL_setenv("SDL_RENDER_DRIVER", "software", 1);
  if (!init() || !context_init() || !graphics_load() || !sounds_load()) return 1;
  context.fight_time = first_fight_time;
  context_loop();
  const memory end = measure_memory();
  context_teardown();
  close_sdl_window();
  print_results(end);
  return 0;
}
