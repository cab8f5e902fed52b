#include "core/state_machine.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

#include "core/allocation.h"

namespace {

const screen_entry *find_screen(const state_object *state, int id) {
  const screen_entry *end = state->screens + state->screen_count;
  const screen_entry *found =
      std::find_if(state->screens, end, [id](const screen_entry &screen) { return screen.id == id; });
  assert(found != end && "only screens of the table are asked for");
  return found;
}

}  // namespace

void state_init(state_object *state) {
  state->current_state = screen_none;
  state->next_state = screen_main_menu;
  state->screen = nullptr;
}

void state_use_screens(state_object *state, std::span<const screen_entry> screens) {
  state->screens = screens.data();
  state->screen_count = screens.size();
}

void state_change(state_object *state) {
  if (state->next_state == screen_none) return;
  state->previous_state = state->current_state;
  state->current_state = state->next_state;
  state->next_state = screen_none;
  if (state->current_state == screen_none || state->current_state == screen_quit) return;

  const screen_entry *entry = find_screen(state, state->current_state);
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
