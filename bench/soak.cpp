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
#include "app/context.h"
#include "app/state_machine.h"
#include "fight/game.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "screens/main_menu.h"

namespace {

constexpr int lan_item = 3;  // of the main menu

constexpr int frames_per_minute = 1800;
constexpr int first_fight_time = 15;  // s; short matches, so that the first minute sees every screen
constexpr long noise = 64;            // KiB that allocators and first uses of library code come to

// Frames out of which one, on average, has this typed.
constexpr unsigned move_odds = 10;
constexpr unsigned punch_odds = 8;
constexpr unsigned menu_odds = 5;
constexpr unsigned pause_odds = 250;

struct memory {
  long resident;   // KiB
  long anonymous;  // KiB of it that are no pages of files: heap, stack, variables
};

struct {
  int entered[screen_quit + 1];  // times that each screen_id came up
  int pauses;
  int restarts;  // from the pause menu
} seen;

int frames = 0;
int frames_to_play = 10 * frames_per_minute;
Uint32 played_ms = 0;
memory first_minute;
std::mt19937 dice(2024);

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

bool one_in(unsigned odds) {
  return dice() % odds == 0;
}

void push_key(Uint32 type, SDL_Keycode key) {
  SDL_Event event = {};
  event.type = type;
  event.key.keysym.sym = key;
  SDL_PushEvent(&event);
}

void type_key(SDL_Keycode key) {
  push_key(SDL_KEYDOWN, key);
  push_key(SDL_KEYUP, key);
}

void play_match() {
  constexpr SDL_Keycode moves[] = {SDLK_LEFT, SDLK_RIGHT, SDLK_UP, SDLK_DOWN, SDLK_a, SDLK_d, SDLK_w, SDLK_s};
  static bool held[std::size(moves)];
  for (std::size_t i = 0; i < std::size(moves); ++i) {
    if (!one_in(move_odds)) continue;
    held[i] = !held[i];
    push_key(held[i] ? SDL_KEYDOWN : SDL_KEYUP, moves[i]);
  }
  if (one_in(punch_odds)) type_key(SDLK_SPACE);
  if (one_in(punch_odds)) type_key(SDLK_TAB);
  if (!one_in(pause_odds)) return;
  type_key(SDLK_ESCAPE);
  ++seen.pauses;
}

// Types the keys of the next frame.
void type_keys(const state_object *state) {
  const bool in_game = state->current_state == screen_game;
  const game_state *game = in_game ? static_cast<const game_state *>(state->screen) : nullptr;
  if (in_game && game->paused == pause_none) {
    play_match();
    return;
  }
  if (!one_in(menu_odds)) return;
  constexpr SDL_Keycode keys[] = {SDLK_UP, SDLK_DOWN, SDLK_ESCAPE, SDLK_RETURN};
  const SDL_Keycode key = keys[dice() % std::size(keys)];
  // "Exit" would end the run, and "LAN" would wait for another machine.
  const bool in_menu = state->current_state == screen_main_menu;
  const int item = in_menu ? static_cast<const main_menu_screen *>(state->screen)->selected : 0;
  if (key == SDLK_RETURN && (item == main_menu_item_count || item == lan_item)) return;
  type_key(key);
  if (in_game && key == SDLK_RETURN && game->pause_selection == pause_item_restart) ++seen.restarts;
}

void end_frame() {
  state_object *state = context.state_machine;
  static int shown = screen_none;
  if (state->current_state != shown) ++seen.entered[state->current_state];
  shown = state->current_state;
  if (++frames == frames_per_minute) first_minute = measure_memory();
  if (frames < frames_to_play) {
    type_keys(state);
  } else {
    state->next_state = screen_quit;
  }
}

void print_results(const memory &end) {
  const long growth = end.resident - first_minute.resident;
  std::printf(
      "%d frames: %d matches, %d pauses, %d restarts, %d end screens, options %d times, menu %d times\n",
      frames_to_play, seen.entered[screen_game], seen.pauses, seen.restarts, seen.entered[screen_end],
      seen.entered[screen_options], seen.entered[screen_main_menu]);
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
