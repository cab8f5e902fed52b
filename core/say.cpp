#include "core/say.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

namespace {

constexpr std::size_t limit = 4000;  // bytes kept of the latest lines
std::string lines;

}  // namespace

void say(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  char text[1000];
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  std::fputs(text, stdout);
  lines += text;
  if (lines.size() > limit) lines.erase(0, lines.size() - limit);
}

const char *said_lines() {
  return lines.c_str();
}
