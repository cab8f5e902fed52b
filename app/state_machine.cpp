#include "app/state_machine.h"

#include <cassert>
#include <cstdlib>

#include "app/allocation.h"

void state_init(state_object *state) {
  state->current_state = screen_none;
  state->next_state = screen_main_menu;
  state->screen = nullptr;
}

void state_change(state_object *state) {
  if (state->next_state == screen_none) return;
  state->previous_state = state->current_state;
  state->current_state = state->next_state;
  state->next_state = screen_none;
  if (state->current_state == screen_none || state->current_state == screen_quit) return;

  const screen_entry *entry = screen_table_find(state->current_state);
  assert(entry != nullptr && "only screens of the table are asked for");
  void *record = allocate_or_exit(entry->record_size, entry->record_name);
  if (entry->hand_over != nullptr) entry->hand_over(state->screen, record);
  state_object_unload(state);
  state->handle_input = entry->handle_input;
  state->update = entry->update;
  state->render = entry->render;
  state->unload = entry->unload;
  state->screen = record;
  entry->load(record);
}

void state_object_unload(state_object *state) {
  if (state->previous_state == screen_none || state->current_state == screen_quit) return;
  state->unload();
  std::free(state->screen);
  state->screen = nullptr;
}
