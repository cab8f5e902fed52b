#include "app/context.h"

#include <algorithm>

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

void context_toggle_sound() {
  context.sound_on = context.sound_on == 0 ? 1 : 0;
}

void context_next_fight_time() {
  context.fight_time = context.fight_time < 120 ? context.fight_time + 15 : 60;
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
