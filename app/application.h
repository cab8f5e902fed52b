#pragma once

// The libraries, the window and the renderer: up at the start, down at the end.

// Starts SDL with its image, font and audio libraries and opens window and renderer; sound that cannot be
// opened leaves the game silent. Prints a line for what fails and returns false then; close_sdl_window
// releases what had come up.
bool init();
// Releases media, renderer, window and libraries, also those that never came up.
void close_sdl_window();
