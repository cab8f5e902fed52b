#pragma once

// The messages of the LAN protocol. A message is one datagram of datagram_size bytes: its letter, its
// tokens (net/token_list.h), then NULs; at least one of them.
//
//   letter                   to     tokens
//   a room announcement      group  room_id, username, peer_username, fight time (s), colour 1, colour 2
//   b joined game            peer   room_id, username
//   c starting game          peer   room_id, colour 1, colour 2
//   d starting game ack      peer   room_id, username
//   e game state             peer   room_id, counter, fighter 1, fighter 2, time left (s), pause value
//   f key press              peer   room_id, counter, fighter 2's vel_x, vel_y (pixels per frame) and
//                                   punch_phase (1 in the frames that tell of a press), pause value
//   g kick                   peer   room_id, username
//   h cancel game            group  room_id, username
//   i leave game             peer   room_id, username
//
// A fighter is nine tokens: its place across and down (blocks from the ring's top-left corner), side,
// punch_phase, punching_arm, punch_frames, knock_frames, flex_pose, score. The counter is sent_msg_number
// before the send, so that it rises from one match message to the next.

// Each builds its message from netInfo, the settings and the current match, sends it and returns what
// net_send_udp_abstract does. A text that does not fit a datagram with its NUL is not sent: 0. Messages to
// the peer go where net_setup_p2p_struct aimed; a game state and a key press take the match from the game
// screen, which must be the current one.

int messages_game_create();        // every second, from a host in the lobby
int messages_joined_game();        // every second, from a guest in the lobby
int messages_starting_game();      // three a frame, from a host until it is acknowledged
int messages_starting_game_ack();  // one for each starting game that a guest accepts
int messages_game_state();         // every frame, from the host of a match
int messages_key_press();          // every frame, from the guest of a match
int messages_kick_game();          // once, from a host in the lobby
int messages_cancel_game();        // three times, from a host that closes its room
int messages_leave_game();         // once from a guest in the lobby, three times from who quits a match

// Sends three copies of a message, for those that no other message answers or makes good.
void messages_repeat(int (*message)());
