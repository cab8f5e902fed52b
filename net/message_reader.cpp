#include "net/message_reader.h"

#include <iterator>

#include "net/linked_list.h"
#include "net/token_list.h"

namespace {

// A number of a match message with the bounds within which it is believed. They are generous: what lies
// outside cannot come from a match, only from a stranger or a fault. What is used as an index is bounded
// exactly.
template <typename record>
struct number_field {
  int record::*field;
  int least;
  int most;
};

constexpr int counter_limit = 999'999'999;  // as many digits as a number token carries
constexpr int unit_limit = 1000;            // blocks
constexpr int velocity_limit = 100'000;     // pixels per frame
constexpr int frames_limit = 1000;          // frames
constexpr int score_limit = 9999;           // points
constexpr int time_limit = 1'000'000;       // s, for a wall clock that is set during a match
constexpr int pause_limit = 255;            // values that mean nothing to this version are no harm

constexpr number_field<fighter_report> fighter_fields[] = {
    {&fighter_report::unit_x, -unit_limit, unit_limit},
    {&fighter_report::unit_y, -unit_limit, unit_limit},
    {&fighter_report::side, 0, 1},
    {&fighter_report::punch_phase, 0, 6},
    {&fighter_report::punching_arm, 0, 1},
    {&fighter_report::punch_frames, 0, frames_limit},
    {&fighter_report::knock_frames, 0, frames_limit},
    {&fighter_report::flex_pose, 0, 3},
    {&fighter_report::score, 0, score_limit},
};
constexpr number_field<message> counter_field[] = {{&message::counter, 0, counter_limit}};
constexpr number_field<message> clock_fields[] = {
    {&message::time_left, -time_limit, time_limit},
    {&message::paused, 0, pause_limit},
};
constexpr number_field<message> control_fields[] = {
    {&message::vel_x, -velocity_limit, velocity_limit},
    {&message::vel_y, -velocity_limit, velocity_limit},
    {&message::punch_phase, 0, 6},
    {&message::paused, 0, pause_limit},
};

// The number of a token; 0 when there is none.
int read_number(const list_node *tokens, unsigned token, std::size_t size = token_number_size) {
  int value = 0;
  get_int_token_by_number(&value, token, tokens, size);
  return value;
}

// Reads consecutive number tokens from `token` on into the record's fields.
template <typename record, std::size_t count>
bool read_numbers(const list_node *tokens, unsigned token, record *destination,
                  const number_field<record> (&fields)[count]) {
  for (const number_field<record> &field : fields) {
    const int value = read_number(tokens, token++);
    if (value < field.least || value > field.most) return false;
    destination->*field.field = value;
  }
  return true;
}

std::uint16_t read_color(const list_node *tokens, unsigned token, std::size_t size = token_number_size) {
  return static_cast<std::uint16_t>(read_number(tokens, token, size));
}

bool read_announcement(const list_node *tokens, message *message) {
  message->room = announcement_read(tokens, token_number_size);
  return true;
}

bool read_name(const list_node *tokens, message *message) {
  get_string_token_by_number(message->name, sizeof message->name, 2, tokens);
  return true;
}

bool read_colors(const list_node *tokens, message *message) {
  message->fighter1_color = read_color(tokens, 2);
  message->fighter2_color = read_color(tokens, 3);
  return true;
}

bool read_game_state(const list_node *tokens, message *message) {
  return read_numbers(tokens, 2, message, counter_field) &&
         read_numbers(tokens, 3, &message->fighter1, fighter_fields) &&
         read_numbers(tokens, 12, &message->fighter2, fighter_fields) &&
         read_numbers(tokens, 21, message, clock_fields);
}

bool read_controls(const list_node *tokens, message *message) {
  return read_numbers(tokens, 2, message, counter_field) && read_numbers(tokens, 3, message, control_fields);
}

struct layout {
  char letter;
  unsigned tokens;      // least number of tokens
  std::size_t room_id;  // bytes of the room id that are looked at, with the NUL
  bool (*read)(const list_node *tokens, message *message);
};
constexpr std::size_t lobby_id = 9;
constexpr std::size_t long_id = sizeof(message::room_id);
constexpr layout layouts[] = {
    {message_game_create, 6, long_id, read_announcement}, {message_joined_game, 2, lobby_id, read_name},
    {message_starting_game, 3, lobby_id, read_colors},    {message_starting_game_ack, 2, lobby_id, read_name},
    {message_game_state, 22, long_id, read_game_state},   {message_key_press, 6, long_id, read_controls},
    {message_kick_game, 2, lobby_id, read_name},          {message_cancel_game, 2, lobby_id, read_name},
    {message_leave_game, 2, lobby_id, read_name},
};

bool read_tokens(const layout &layout, const list_node *tokens, message *message) {
  if (get_token_by_number(layout.tokens, tokens) == nullptr) return false;
  get_string_token_by_number(message->room_id, layout.room_id, 1, tokens);
  return layout.read(tokens, message);
}

}  // namespace

announcement announcement_read(const list_node *tokens, std::size_t number_size) {
  announcement room = {};
  get_string_token_by_number(room.name, sizeof room.name, 2, tokens);
  get_string_token_by_number(room.guest_name, sizeof room.guest_name, 3, tokens);
  room.fight_time = read_number(tokens, 4, number_size);
  room.fighter1_color = read_color(tokens, 5, number_size);
  room.fighter2_color = read_color(tokens, 6, number_size);
  return room;
}

bool message_read(const char *text, message *message) {
  for (const layout &layout : layouts) {
    if (layout.letter != text[0]) continue;
    *message = {};
    message->letter = text[0];
    list_node *tokens = nullptr;
    extract_tokens_from_transmission(text, 1, &tokens);
    const bool read = read_tokens(layout, tokens, message);
    delete_token_list(&tokens);
    return read;
  }
  return false;
}
