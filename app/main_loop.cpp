#include "app/main_loop.h"

#include <SDL.h>

#include <cstdlib>

#include "app/gamepads.h"
#include "app/screen_table.h"
#include "core/context.h"
#include "core/say.h"
#include "core/state_machine.h"
#include "core/timer.h"
#include "core/window.h"
#include "lan/match_drain.h"
#include "net/net.h"

namespace {

template <typename record>
bool allocate(record **destination, const char *failure_line) {
  *destination = static_cast<record *>(std::calloc(1, sizeof(record)));
  if (*destination == nullptr) say("%s\n", failure_line);
  return *destination != nullptr;
}

bool open_network() {
  if (net_init(net_mode_multicast) == 0) {
    say("Could not initiate networking stack.\n");
    return false;
  }
  context.net_info = &netInfo;
  return true;
}

void close_network() {
  context.net_info = nullptr;
  net_close();
}

void fill_settings() {
  context.frame_count = 0;
  context.sound_on = 1;
  context.difficulty = difficulty_easy;
  context.fight_time = longest_fight;
  context.fighter1_color = 1;
  context.fighter2_color = 2;
}

void fill_geometry() {
  SDL_GetWindowSize(gWindow, &context.window_width, &context.window_height);
  context.font_size = context.window_height / 25;
  context_calc_units();
  context_calc_ring();
}

void run_frame(state_object *state) {
  timer_start(context.cap_timer);
  gamepads_translate();
  state->handle_input();
  // Who closes the window is obeyed, whatever else the frame brings: a start, a bell, a leaving peer.
  const bool closing = state->next_state == screen_quit;
  match_drain_host();
  state->update();
  if (closing) state->next_state = screen_quit;
  state_change(state);
  match_drain_guest();
  state->render();
  ++context.frame_count;
  // A frame over its budget is not made up for later.
  match_sleep(screen_tick_per_frame - static_cast<int>(timer_get_ticks(context.cap_timer)));
}

}  // namespace

bool context_init() {
  if (!allocate(&context.fps_timer, "Could not allocate memory for timer.")) return false;
  if (!allocate(&context.cap_timer, "Could not allocate memory for cap timer.")) return false;
  if (!allocate(&context.state_machine, "Could not allocate memory for state.")) return false;
  if (!open_network()) return false;
  timer_init(context.fps_timer);
  timer_init(context.cap_timer);
  state_init(context.state_machine);
  state_use_screens(context.state_machine, screen_table());
  fill_settings();
  fill_geometry();
  return true;
}

void context_loop() {
  state_object *state = context.state_machine;
  state_change(state);
  timer_start(context.fps_timer);
  while (state->current_state != screen_quit) run_frame(state);
}

void context_teardown() {
  state_object *state = context.state_machine;
  if (state != nullptr && state->screen != nullptr) {
    state->unload();
    std::free(state->screen);
    state->screen = nullptr;
  }
  std::free(state);
  context.state_machine = nullptr;
  std::free(context.fps_timer);
  std::free(context.cap_timer);
  context.fps_timer = nullptr;
  context.cap_timer = nullptr;
  close_network();
}
