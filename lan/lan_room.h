#pragma once

// The record of the LAN lobby and the few operations on it that a message from another machine can cause.
// The lobby's screen stands above (lan_menu.h).

#include <cstdint>

#include "media/texture.h"

enum lan_page : int {
  page_name_entry = 0,
  page_room_list = 1,
  page_host_room = 2,
  page_joined_room = 3,
};

// Rows of the pages.
enum name_row : int {
  entry_name = 0,
  entry_join = 1,
  entry_create = 2,
};

enum host_row : int {
  host_colors = 0,
  host_time = 1,
  host_start = 2,
  host_kick = 3,
};

inline constexpr int list_rows = 4;  // rooms that the room list shows at once

struct lan_menu_state {
  int name_selection;       // a name_row
  int room_selection;       // cursor row of the room list, 1 to 4; 0 before there is one
  int host_selection;       // a host_row
  int room_scroll;          // index in the room list of the first room shown
  int mode;                 // the lan_page shown
  std::uint32_t last_sent;  // tick (ms) of the last announcement or joined message
  std::uint8_t
      start_requested;        // 1 from "Start Game" until the guest acknowledges or is forgotten, 5 s at most
  char selected_room_id[10];  // id of the room drawn at the cursor row; empty while there was none
  std::uint32_t start_ticks;  // tick (ms) of "Start Game"
  char guest_name[11];        // joined room: who is in it, as the host has announced since this player joined
};

extern texture lan_time;  // the fight time; loaded while the lobby is current

// Renders "Time: mm:ss" for `seconds` in place of the last one. Prints a line on failure.
void lan_load_time_texture(int seconds);
// Gives the preview fighters the colours of two colour ids.
void lan_set_players_color(std::uint16_t color_id1, std::uint16_t color_id2);
// A guest leaves the room that it joined, back to the room list, when `room_id` names that room. To be
// called only while the lobby is current.
void lan_leave_host_room(const char *room_id);
// Forgets the other machine, and with it a start that it has not acknowledged. To be called only while the
// lobby is current.
void lan_forget_peer();
