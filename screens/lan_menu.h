#pragma once

// The LAN lobby: name entry, room list, the host's room and the room a guest joined. Each page has its keys
// and its picture; what passes between the machines is sent and received by the update.

#include "lan/lan_room.h"

// Texts of the lobby, loaded while it is current.
extern texture lan_title;
extern texture lan_join;
extern texture lan_create;
extern texture lan_created;  // heading of the room list
extern texture lan_start_game;
extern texture lan_kick;
extern texture lan_host;
extern texture lan_joined;
extern texture lan_name;  // the user name's field

// Forgets any earlier pairing, renders the texts and makes the preview. Prints a line for each text that
// fails.
void lan_load(lan_menu_state *lobby);
// Handles the keys of the current page. While a start waits for the guest, all events but the window's close
// stay queued. A close tells the machine that shares the room.
void lan_handle_input();
// One frame of sending, receiving at most one datagram, and time-outs. Waits at most 1 ms for the socket.
void lan_update();
// Draws the current page and presents the frame (lan_menu_render.cpp).
void lan_render();
// Releases texts and fighters and brings back the layout of a match. The pairing stays.
void lan_unload();

// Renders the user name's field in place of the last one: ten characters, dots before the name. Prints a
// line on failure.
void lan_load_username_texture();
// Draws the room list's rows and marks, and notes the room at the cursor row in selected_room_id. Scrolls a
// list that has shrunk back to its last rooms.
void lan_render_created_games();
