#pragma once

// The start, the frames and the end of the application record.

// Allocates and fills the record and opens the network. On failure prints what is missing, returns false, and
// leaves what it made to context_teardown.
bool context_init();
// Runs frames of screen_tick_per_frame ms until the quit screen is current.
void context_loop();
// Unloads the current screen and releases what context_init made, also after it failed.
void context_teardown();
