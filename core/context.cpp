#include "core/context.h"

#include <algorithm>
#include <cassert>

#include "core/state_machine.h"

context_record context;

context_record *context_get() {
  return &context;
}

state_object *context_state_machine() {
  return context.state_machine;
}

network_record *context_net_info() {
  return context.net_info;
}

namespace {

// Changing to another screen, the machine already names that one while the old one is unloaded.
void *record_of([[maybe_unused]] int screen) {
  const state_object *state = context.state_machine;
  assert((state->current_state == screen || state->previous_state == screen) && "another screen's record");
  return state->screen;
}

}  // namespace

main_menu_screen *current_main_menu() {
  return static_cast<main_menu_screen *>(record_of(screen_main_menu));
}

game_state *current_game() {
  return static_cast<game_state *>(record_of(screen_game));
}

lan_menu_state *current_lobby() {
  return static_cast<lan_menu_state *>(record_of(screen_lan));
}

end_menu_state *current_end_menu() {
  return static_cast<end_menu_state *>(record_of(screen_end));
}

options_menu_state *current_options_menu() {
  return static_cast<options_menu_state *>(record_of(screen_options));
}

bool context_is_lan() {
  return context.game_mode == mode_lan;
}

void context_toggle_sound() {
  context.sound_on = context.sound_on == 0 ? 1 : 0;
}

const char *context_sound_label() {
  return context.sound_on != 0 ? "Sound: On" : "Sound: Off";
}

void context_next_fight_time() {
  int &time = context.fight_time;
  time = time < longest_fight ? time + fight_time_step : shortest_fight;
}

void context_calc_units() {
  context.unit_w = std::max(static_cast<int>(context.window_width * 0.8), ring_columns) / ring_columns;
  context.unit_h = std::max(static_cast<int>(context.window_height * 0.8), ring_rows) / ring_rows;
}

void context_calc_ring() {
  SDL_Rect &ring = context.ring;
  ring.w = context.unit_w * ring_columns;
  ring.h = context.unit_h * ring_rows;
  ring.x = (context.window_width - ring.w) / 2;
  ring.y = (context.window_height - ring.h) / 2;
}
