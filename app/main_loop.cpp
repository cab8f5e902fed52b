// The start, the frames and the end of the application record.

#include <SDL.h>

#include <cstdio>
#include <cstdlib>

#include "app/context.h"
#include "app/state_machine.h"
#include "app/timer.h"
#include "app/window.h"

namespace {

template <typename record>
bool allocate(record **destination, const char *failure_line) {
  *destination = static_cast<record *>(std::calloc(1, sizeof(record)));
  if (*destination == nullptr) std::puts(failure_line);
  return *destination != nullptr;
}

void fill_settings() {
  context.frame_count = 0;
  context.sound_on = 1;
  context.difficulty = difficulty_easy;
  context.fight_time = 120;
  context.fighter1_color = 1;
  context.fighter2_color = 2;
}

void fill_geometry() {
  SDL_GetWindowSize(gWindow, &context.window_width, &context.window_height);
  context.font_size = context.window_height / 25;
  context_calc_units();
  context_calc_ring();
}

// Sleeps out the rest of the frame. A frame over its budget is not made up for later.
void cap_frame() {
  const int spent = static_cast<int>(timer_get_ticks(context.cap_timer));
  if (spent < screen_tick_per_frame) SDL_Delay(static_cast<Uint32>(screen_tick_per_frame - spent));
}

void run_frame(state_object *state) {
  timer_start(context.cap_timer);
  state->handle_input();
  state->update();
  state_change(state);
  state->render();
  ++context.frame_count;
  cap_frame();
}

}  // namespace

bool context_init() {
  if (!allocate(&context.fps_timer, "Could not allocate memory for timer.")) return false;
  if (!allocate(&context.cap_timer, "Could not allocate memory for cap timer.")) return false;
  if (!allocate(&context.state_machine, "Could not allocate memory for state.")) return false;
  timer_init(context.fps_timer);
  timer_init(context.cap_timer);
  state_init(context.state_machine);
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
}
