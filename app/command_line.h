#pragma once

// The arguments of the program: options, which begin with two dashes, and the window's size.

struct command_line {
  bool message_box;  // a start that fails is told in a message box, too
  bool answered;     // help or version, which are printed by now: nothing is to be started
};

// Reads all arguments; screen_width, screen_height and full_screen of core/window.h take what they say of the
// window. An unknown option is named on standard error and passed over.
command_line command_line_read(int argc, char *const argv[]);
