#pragma once

// Three machines run the whole game, on a network and with clocks that are simulated, so that every run of
// the program is the same. Times are milliseconds, and pass only while machines sleep or wait for their
// sockets. Players look at what is shown, and act by keys and by closing the window.

#include <SDL.h>

#include <deque>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "lan/lan_room.h"
#include "net/net.h"
#include "screens/end_menu.h"
#include "screens/main_menu.h"

enum intention : int { be_idle, be_home, join_room, host_room, start_match, kick_guest };

struct machine {
  unsigned number;
  std::string name;               // of its player
  std::string size[2];            // of its window: width and height
  network_record *net = nullptr;  // of the game that runs here, as are the next two
  context_record *context = nullptr;
  void **hit_sound = nullptr;
  // What follows is new in every run.
  std::function<void(machine &)> on_frame = {};      // at the end of every frame
  intention wish = be_idle;                          // of the player
  std::size_t to_join = 0;                           // whose room
  long long next_punch = 0, punches = 0;             // when the player presses the key, how often it has
  std::map<SDL_Keycode, long long> held = {};        // keys that are down, and until when
  std::deque<SDL_Event> events = {};                 // for the next frame
  long long closing = 0;                             // since when the window is to close; 0: it does not
  int heard[2] = {};                                 // other sounds, and hits
  std::multimap<long long, std::string> inbox = {};  // by arrival; a byte with the sender's number in front
  std::mt19937 random = {};                          // the player's, and that of what is sent from here
  long long clock_ahead = 0;                         // of the wall clock
  long long wake = 0, stopped_until = 0;             // when it goes on, and the earliest at all
  bool listening = false;                            // a datagram wakes it
};
extern machine machines[3];  // running their programs until the process ends
extern machine &host, &guest, &third;
extern long long now;
extern unsigned percent_lost;        // of the datagrams
extern std::set<std::string> texts;  // all that any machine has drawn since it was cleared

// Runs for that long, or until the condition holds, asked for after every step. Returns whether it held.
bool run(long long duration, const std::function<bool()> &until = {});
// Begins anew at the main menus, later than all that the games may remember, on a network that is slow for
// every fourth seed.
void begin(unsigned seed);

// A key goes down, unless it is, and up again after that time. SDLK_a types the next letter of the name.
void press(machine &machine, SDL_Keycode key, long long duration);
// A frame of a player who only lets go of keys.
void rest(machine &machine);
// A frame of a player who does what is wished and fights, fiddling with the keys all the time.
void play(machine &machine);
// A frame of a player who changes its mind, hits any key, closes the window and upsets the machine.
void wander(machine &machine);

// The record of a screen, to be looked at; null while another one is current.
template <typename record, int screen>
const record *shown(const machine &machine) {
  const state_object *state = machine.context->state_machine;
  return state != nullptr && state->current_state == screen ? static_cast<record *>(state->screen) : nullptr;
}
constexpr auto menu_of = shown<main_menu_screen, screen_main_menu>;
constexpr auto lobby_of = shown<lan_menu_state, screen_lan>;
constexpr auto match_of = shown<game_state, screen_game>;
constexpr auto end_of = shown<end_menu_state, screen_end>;
