#pragma once

// The letters of the messages, and what each carries: reads a datagram's text into a record, or refuses
// it. Reading looks at nothing but the text and changes nothing; what a message means here and now is the
// interpreter's.

#include <cstddef>
#include <cstdint>

struct list_node;

enum message_letter : char {
  message_game_create = 'a',
  message_joined_game = 'b',
  message_starting_game = 'c',
  message_starting_game_ack = 'd',
  message_game_state = 'e',
  message_key_press = 'f',
  message_kick_game = 'g',
  message_cancel_game = 'h',
  message_leave_game = 'i',
};

// A fighter's state as the host tells it.
struct fighter_report {
  int unit_x;  // blocks from the ring's left edge
  int unit_y;  // blocks from the ring's top edge
  int side;
  int punch_phase;
  int punching_arm;
  int punch_frames;
  int knock_frames;
  int flex_pose;
  int score;
};

// A room as its host announces it.
struct announcement {
  char name[11];                 // the host's
  char guest_name[11];           // empty while there is no guest
  int fight_time;                // s
  std::uint16_t fighter1_color;  // colour id
  std::uint16_t fighter2_color;  // colour id
};

// Every value that some message carries; a message fills those of its letter and leaves the others zero.
struct message {
  char letter;                   // a message_letter
  char room_id[20];              // every message
  announcement room;             // room announcement
  char name[11];                 // joined game: the guest
  std::uint16_t fighter1_color;  // colour id; starting game
  std::uint16_t fighter2_color;
  int counter;              // game state, key press: the sender's message counter
  fighter_report fighter1;  // game state
  fighter_report fighter2;
  int time_left;    // s; game state
  int vel_x;        // pixels per frame; key press
  int vel_y;        // pixels per frame; key press
  int punch_phase;  // key press
  int paused;       // a pause_value as the sender sees it; game state, key press
};

// Reads what an announcement's tokens say of the room, looking at number_size - 1 characters of a number.
// What they lack becomes empty or 0.
announcement announcement_read(const list_node *tokens, std::size_t number_size);

// Reads the NUL-terminated `text`. False for an unknown letter, for fewer tokens than the message's layout,
// and for a match message with a number that no match can produce; tokens past the layout are not looked at.
bool message_read(const char *text, message *message);
