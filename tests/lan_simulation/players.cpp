#include <iterator>

#include "lan_simulation.h"

namespace {

SDL_Event key_event(Uint32 type, SDL_Keycode code) {
  SDL_Event event = {.type = type};
  event.key.keysym.sym = code;
  return event;
}

SDL_Keycode to_row(int selected, int wanted) {
  return selected == wanted ? SDLK_RETURN : SDLK_DOWN;
}

SDL_Keycode in_lobby(const machine &own, const lan_menu_state &lobby) {
  const std::string typed = own.net->username, wanted = machines[own.to_join].net->room_id;
  const bool joins = own.wish == join_room;
  switch (lobby.mode) {
    case page_name_entry:
      if (own.wish == be_home) return SDLK_ESCAPE;
      if (typed == own.name) return to_row(lobby.name_selection, joins ? entry_join : entry_create);
      if (lobby.name_selection != entry_name) return SDLK_DOWN;
      return own.name.starts_with(typed) ? SDLK_a : SDLK_BACKSPACE;
    case page_room_list:
      if (!joins) return SDLK_ESCAPE;
      if (lobby.selected_room_id == wanted) return SDLK_RETURN;
      return own.context->frame_count % 256 < 128 ? SDLK_DOWN : SDLK_UP;
    case page_host_room:
      if (own.wish < host_room) return SDLK_ESCAPE;
      if (own.wish == host_room || own.net->guest_joined == 0) return SDLK_UNKNOWN;
      return to_row(lobby.host_selection, own.wish == start_match ? host_start : host_kick);
    default:
      return joins ? SDLK_UNKNOWN : SDLK_ESCAPE;
  }
}

SDL_Keycode in_match(const machine &own, const game_state &match) {
  const bool leaves = own.wish == be_home || own.context->game_mode != mode_lan;
  if (leaves && match.paused != pause_none) return to_row(match.pause_selection, pause_item_quit);
  return leaves || (match.paused == pause_local && own.wish != be_idle) ? SDLK_ESCAPE : SDLK_UNKNOWN;
}

// The key that leads from what is shown to what is wished.
SDL_Keycode next_key(const machine &own) {
  if (const auto *match = match_of(own)) return in_match(own, *match);
  if (own.wish == be_idle) return SDLK_UNKNOWN;
  if (const auto *lobby = lobby_of(own)) return in_lobby(own, *lobby);
  if (const auto *end = end_of(own)) return to_row(end->selected, own.wish == be_home ? 2 : 1);
  const auto *menu = menu_of(own);
  if (menu == nullptr) return SDLK_ESCAPE;  // the options
  if (own.wish == be_home) return SDLK_UNKNOWN;
  return menu->labels[menu->selected - 1] == std::string("LAN") ? SDLK_RETURN : SDLK_DOWN;
}

// Walks about near the other one. After a long wait between two punches comes a short one.
void fight(machine &own, const game_state &match) {
  if (match.fighting == 0 || match.paused != pause_none) return;
  const fighter &mine = own.net->is_host != 0 ? *match.fighter1 : *match.fighter2;
  const fighter &other = own.net->is_host != 0 ? *match.fighter2 : *match.fighter1;
  const int draw = static_cast<int>(own.random() % 3200), hold = draw % 400;
  if (draw % 4 == 0) press(own, mine.x < other.x ? SDLK_RIGHT : SDLK_LEFT, hold);
  if (draw % 8 == 1) press(own, mine.y < other.y ? SDLK_DOWN : SDLK_UP, hold);
  if (now < own.next_punch || own.held.contains(SDLK_SPACE)) return;
  press(own, SDLK_SPACE, 50);
  own.next_punch = now + (++own.punches % 2 == 1 ? 600 : hold);
}

}  // namespace

void press(machine &machine, SDL_Keycode key, long long duration) {
  if (!machine.held.emplace(key, now + duration).second) return;
  machine.events.push_back(key_event(SDL_KEYDOWN, key));
  if (key != SDLK_a) return;
  const std::size_t at = std::string(machine.net->username).size();
  SDL_Event typed = {.type = SDL_TEXTINPUT};
  machine.name.copy(typed.text.text, machine.name[at] < 0 ? 2 : 1, at);  // the bytes of the letter
  machine.events.push_back(typed);
}

void rest(machine &machine) {
  for (const auto &[key, until] : machine.held) {
    if (until <= now) machine.events.push_back(key_event(SDL_KEYUP, key));
  }
  std::erase_if(machine.held, [](const auto &key) { return key.second <= now; });
}

void play(machine &machine) {
  rest(machine);
  const auto draw = machine.random();
  if (draw % 32 == 0) press(machine, draw / 32 % 2 == 0 ? SDLK_LEFT : SDLK_RIGHT, draw / 64 % 1000);
  if (const auto *match = match_of(machine)) fight(machine, *match);
  if (draw / 4 % 2 == 0) press(machine, next_key(machine), 20);
}

void wander(machine &machine) {
  constexpr SDL_Keycode keys[] = {SDLK_ESCAPE, SDLK_RETURN, SDLK_RETURN, SDLK_UP,       SDLK_DOWN,
                                  SDLK_LEFT,   SDLK_RIGHT,  SDLK_SPACE,  SDLK_BACKSPACE};
  constexpr intention wishes[] = {host_room, start_match, start_match, join_room, join_room,
                                  join_room, kick_guest,  be_home,     be_idle};
  const auto draw = machine.random(), pick = draw / 1024;
  if (draw % 128 == 0) machine.wish = wishes[pick % std::size(wishes)];
  if (draw % 4 == 1 && machines[pick % 3].net->is_host != 0) machine.to_join = pick % 3;
  if (draw % 64 == 2) press(machine, keys[pick % std::size(keys)], pick / 16 % 500);
  if (draw % 1024 == 3) machine.events.push_back({.type = SDL_QUIT}), machine.closing = now;
  if (draw % 1024 == 4) machine.stopped_until = now + static_cast<int>(pick % 8000);
  if (draw % 256 == 5) machine.clock_ahead += static_cast<int>(pick % 200'000) - 100'000;
  play(machine);
}
