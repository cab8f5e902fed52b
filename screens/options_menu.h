#pragma once

// The options screen: sound, difficulty, fight time and the fighters' colours, kept in the context for the
// rest of the run.

struct options_menu_state {
  int selected;  // the selected row, 1 to 4
};

// Renders the texts, shrinks the layout for the preview and makes its fighters. Prints a line for each text
// that fails.
void options_load(options_menu_state *options);
void options_handle_input();
// Nothing moves on this screen.
void options_update();
void options_render();
// Releases the texts and the fighters and brings back the layout of a match.
void options_unload();
