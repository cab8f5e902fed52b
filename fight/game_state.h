#pragma once

// The record of a match: what the rules, the drawing and the CPU opponent share.

#include <cstdint>

struct cpu_logic;
struct fighter;

enum pause_value : int {
  pause_none = 0,     // the match runs
  pause_local = 1,    // paused on this machine
  pause_by_peer = 2,  // paused on the other machine of a LAN match
};

enum pause_item : int {
  pause_item_sound = 1,
  pause_item_restart = 2,
  pause_item_quit = 3,
};

struct game_state {
  int pause_selection;  // a pause_item, the one highlighted
  int fighting;         // 1 while the match runs, 0 once its end was detected
  int paused;           // a pause_value
  int distance;         // blocks between the fighters' bodies across; kept for the CPU opponent
  int time_left;        // s; may fall below 0 after the end
  int end_at;           // wall-clock second after which the end screen follows
  int end_time;         // wall-clock second at which the clock reaches zero
  fighter *fighter1;    // owned; starts on the left
  fighter *fighter2;    // owned; starts on the right
  cpu_logic *cpu;       // owned; null unless the match is against the CPU
  bool held[2][4];      // direction keys whose press has counted and whose release has not: arrows, letters
  int punch_tells;      // guest: frames in which the host is still told of the last press of the punch key
  std::uint32_t punch_ticks;  // guest: tick (ms) of that press
  bool punch_unheard;         // guest: the host's state has not been heard since that press
  int peer_silent;  // LAN match: 1 when the peer was silent in the last update and has not been heard since
};
