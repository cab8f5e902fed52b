#pragma once

// The application record: settings, window and ring geometry, frame timers, the state machine and the event
// last polled. It exists once.

#include <SDL.h>

#include <cstdint>

struct end_menu_state;
struct game_state;
struct lan_menu_state;
struct main_menu_screen;
struct network_record;
struct options_menu_state;
struct state_object;
struct timer;

enum game_mode : std::uint8_t {
  mode_one_player = 0,   // against the CPU
  mode_two_players = 1,  // at one keyboard
  mode_lan = 2,          // against another machine
};

enum difficulty : int {
  difficulty_easy = 1,
  difficulty_hard = 2,
};

inline constexpr int screen_tick_per_frame = 33;  // frame budget in ms
inline constexpr int longest_fight = 120;         // s; the fight time at the start
inline constexpr int shortest_fight = 60;         // s
inline constexpr int fight_time_step = 15;        // s
inline constexpr int ring_columns = 134;          // blocks across the ring
inline constexpr int ring_rows = 96;              // blocks down the ring

struct context_record {
  std::uint8_t sound_on;         // 1: sound effects are played; options screen and pause menu toggle it
  std::uint8_t game_mode;        // a game_mode; the main menu sets it
  std::uint16_t fighter1_color;  // colour id of fighter 1, 1 or 2
  std::uint16_t fighter2_color;  // colour id of fighter 2, 1 or 2
  int window_width;              // pixels, as the window really came out
  int window_height;             // pixels
  int font_size;                 // points of the normal font
  int unit_w;                    // pixels, width of one block of the ring
  int unit_h;                    // pixels, height of one block of the ring
  std::uint32_t frame_count;     // frames run so far
  int difficulty;                // a difficulty; shown by the options screen, read by nothing else
  int fight_time;                // s, length of a match
  SDL_Rect ring;                 // pixels of the window
  timer *fps_timer;              // owned; runs from the start of the loop
  timer *cap_timer;              // owned; runs from the start of the frame
  state_object *state_machine;   // owned
  network_record *net_info;      // not owned; null unless the network is open
  SDL_Event event;               // the event last polled, by whichever screen
};

// The one application record; zero-filled until context_init.
extern context_record context;

context_record *context_get();
// The state machine of the record.
state_object *context_state_machine();
// The network record; null unless the network is open.
network_record *context_net_info();

// The current screen's record, by its type. Each is there only while its screen is current or just being
// left.
main_menu_screen *current_main_menu();
game_state *current_game();
lan_menu_state *current_lobby();
end_menu_state *current_end_menu();
options_menu_state *current_options_menu();

// True in the lobby, during a LAN match and after it, until the main menu chooses another kind of match.
bool context_is_lan();

// Computes unit_w and unit_h from the window's size: the ring fills at most 80 % of either dimension with
// whole blocks, but a block is never smaller than a pixel.
void context_calc_units();
// Computes the ring from the window's size and the units: centred, possibly wider than a tiny window.
void context_calc_ring();

// Turns the sound effects on or off.
void context_toggle_sound();
// The menus' row about the sound effects.
const char *context_sound_label();
// Moves the fight time on by a step, from the longest fight back to the shortest.
void context_next_fight_time();
