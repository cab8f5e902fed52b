#include "core/utility.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

bool check_collision(SDL_Rect a, SDL_Rect b) {
  return check_collision_on_y_axis(a, b) && check_collision_on_x_axis(a, b);
}

bool check_collision_on_y_axis(SDL_Rect a, SDL_Rect b) {
  return a.y + a.h > b.y && a.y < b.y + b.h;
}

bool check_collision_on_x_axis(SDL_Rect a, SDL_Rect b) {
  return a.x + a.w > b.x && a.x < b.x + b.w;
}

SDL_Keycode plain_key(const SDL_Keysym &key) {
  if (key.sym != SDLK_RETURN && key.sym != SDLK_KP_ENTER) return key.sym;
  return (key.mod & KMOD_ALT) != 0 ? SDLK_UNKNOWN : SDLK_RETURN;
}

int move_selection(SDL_Keycode key, int selected, int first, int last) {
  switch (key) {
    case SDLK_DOWN:
      return selected >= last ? first : selected + 1;
    case SDLK_UP:
      return selected <= first ? last : selected - 1;
    default:
      return selected;
  }
}

void seconds_to_time(int seconds, std::span<char> buffer) {
  const int shown = std::max(seconds, 0);
  std::snprintf(buffer.data(), buffer.size(), "%02d:%02d", shown / 60, shown % 60);
}

const char *time_label(int seconds, std::span<char, time_label_size> buffer) {
  char time[20];
  seconds_to_time(seconds, time);
  std::snprintf(buffer.data(), buffer.size(), "Time: %s", time);
  return buffer.data();
}

namespace {

char random_character() {
  // The last digit and the last letters never occur: each class counts one short of its alphabet.
  switch (std::rand() % 3) {
    case 1:
      return static_cast<char>('0' + std::rand() % 9);
    case 2:
      return static_cast<char>('a' + std::rand() % 25);
    default:
      return static_cast<char>('A' + std::rand() % 25);
  }
}

}  // namespace

char *random_bytes(std::uint32_t count, char *buffer) {
  for (std::uint32_t i = 0; i < count; ++i) buffer[i] = random_character();
  buffer[count] = '\0';
  return buffer;
}
