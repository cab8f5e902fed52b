#pragma once

// The screen state machine. Every screen is a state; one of them is current, with its record and its four
// operations. A screen, or whatever else wants another one shown, writes the wanted id into next_state; the
// change happens at one point of the frame, when the main loop calls state_change.
//
// The machine knows no screen by name: it is handed a table of them.

#include <cstddef>
#include <span>

enum screen_id : int {
  screen_none = 0,  // as current state: before the first change; as next state: no change pending
  screen_main_menu = 1,
  screen_game = 2,
  screen_lan = 3,
  screen_end = 4,
  screen_options = 5,
  screen_quit = 6,  // the main loop ends; the old screen stays loaded until the teardown
  screen_id_count,  // one more than the last
};

// One row of the table of screens.
struct screen_entry {
  int id;                   // screen_id
  const char *record_name;  // names the record when there is no memory for it
  std::size_t record_size;  // bytes
  // Copies what the new screen must know from the old screen's record before that is released; may be null.
  void (*hand_over)(const void *old_record, void *new_record);
  void (*load)(void *record);
  void (*handle_input)();
  void (*update)();
  void (*render)();
  void (*unload)();
};

struct state_object {
  int current_state;       // screen_id of the screen now running
  int next_state;          // screen_id asked for; screen_none when no change is pending
  int previous_state;      // screen_id of the screen that ran before
  void *screen;            // the current screen's record, owned; null before the first change
  void (*handle_input)();  // the current screen's operations
  void (*update)();
  void (*render)();
  void (*unload)();
  const screen_entry *screens;  // not owned; the table of all screens
  std::size_t screen_count;     // rows of the table
};

// Sets the machine up so that the first change enters the main menu.
void state_init(state_object *state);
// Hands the machine the screens that it changes between. They must outlive it.
void state_use_screens(state_object *state, std::span<const screen_entry> screens);
// Carries out a pending change: allocates the new screen's record, unloads the old screen, installs and
// loads the new one. No memory for the record: prints a line and ends the process with exit status 1.
void state_change(state_object *state);
// Unloads the screen that a change leaves behind and frees its record.
void state_object_unload(state_object *state);
