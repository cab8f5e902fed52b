#include "app/command_line.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/version.h"
#include "core/window.h"

namespace {

constexpr const char *help =
    "Usage: vantaro-pugnado [OPTION]... [WIDTH [HEIGHT]]\n"
    "Arcade fist-fight in blocky pixel art, in a window of %d x %d pixels or of the size given.\n"
    "\n"
    "  --fullscreen   fill the whole display instead\n"
    "  --message-box  when the game cannot start, say so in a message box, too\n"
    "  --help         print this and end\n"
    "  --version      print the version and end\n";

struct option {
  const char *name;
  void (*take)(command_line *line);
};
constexpr option options[] = {
    {"--fullscreen", [](command_line *) { full_screen = true; }},
    {"--message-box", [](command_line *line) { line->message_box = true; }},
    {"--help",
     [](command_line *line) {
       std::printf(help, usual_width, usual_height);
       line->answered = true;
     }},
    {"--version",
     [](command_line *line) {
       std::printf("%s %s\n", window_title, program_version);
       line->answered = true;
     }},
};

void take_option(const char *name, command_line *line) {
  for (const option &option : options) {
    if (std::strcmp(name, option.name) != 0) continue;
    option.take(line);
    return;
  }
  std::fprintf(stderr, "There is no option %s; --help lists them.\n", name);
}

// The number that `text` begins with; `fallback` where there is none, where it is 0, and where it is past
// the range of an int.
int size_from_text(const char *text, int fallback) {
  errno = 0;
  const long value = std::strtol(text, nullptr, 10);
  if (value == 0 || errno == ERANGE || value < INT_MIN || value > INT_MAX) return fallback;
  return static_cast<int>(value);
}

}  // namespace

command_line command_line_read(int argc, char *const argv[]) {
  command_line line = {};
  int sizes = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "--", 2) == 0) {
      take_option(argv[i], &line);
    } else if (++sizes == 1) {
      screen_width = size_from_text(argv[i], screen_width);
    } else if (sizes == 2) {
      screen_height = size_from_text(argv[i], screen_height);
    }
  }
  return line;
}
