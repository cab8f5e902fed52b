#include "lan/messages.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "net/message_reader.h"
#include "net/net.h"
#include "net/token_list.h"

namespace {

constexpr int message_repeats = 3;

// Room for the longest message whatever its values: 22 tokens, each a separator, two digits of length, a
// space and at most ten characters, between the letter and the NUL. Only send_draft asks whether it fits a
// datagram.
constexpr std::size_t draft_size = 1 + 22 * 14 + 1;

struct draft {
  char text[draft_size];  // zero-filled behind the text
  std::size_t length;     // characters of the text
};

// A message of that letter with its first token, the room id.
draft start_draft(message_letter letter) {
  draft message = {};
  message.text[0] = letter;
  concat_str_to_buffer(netInfo.room_id, static_cast<int>(std::strlen(netInfo.room_id)), message.text);
  message.length = std::strlen(message.text);
  return message;
}

// Puts a separator at the end and returns where the next token goes.
char *next_token(draft *message) {
  message->text[message->length++] = ' ';
  return message->text + message->length;
}

void add_text(draft *message, const char *text) {
  const char *token = concat_str_to_buffer(text, static_cast<int>(std::strlen(text)), next_token(message));
  message->length += std::strlen(token);
}

void add_numbers(draft *message, std::initializer_list<std::int32_t> values) {
  for (const std::int32_t value : values) {
    const char *token = concat_int_to_buffer(value, next_token(message));
    message->length += std::strlen(token);
  }
}

void add_counter(draft *message) {
  add_numbers(message, {static_cast<std::int32_t>(netInfo.sent_msg_number)});
}

void add_fighter(draft *message, const fighter *fighter) {
  int unit_x = 0;
  int unit_y = 0;
  fighter_get_unit_from_pos(&unit_x, &unit_y, fighter);
  add_numbers(message, {unit_x, unit_y, fighter->side, fighter->punch_phase, fighter->punching_arm,
                        fighter->punch_frames, fighter->knock_frames, fighter->flex_pose, fighter->score});
}

int send_draft(const draft &message, net_destination destination) {
  if (message.length >= datagram_size) return 0;
  char datagram[datagram_size] = {};
  std::memcpy(datagram, message.text, message.length);
  return net_send_udp_abstract(destination, datagram, datagram_size);
}

// A message that says no more than who sends it.
int send_username(message_letter letter, net_destination destination) {
  draft message = start_draft(letter);
  add_text(&message, netInfo.username);
  return send_draft(message, destination);
}

// The host's own phase, mirrored, but for the frames that tell of a press. A press that the host has not
// answered in them is told no more: it would become another punch.
int told_punch_phase(const game_state *match) {
  if (match->punch_tells > 0) return punch_started;
  return match->punch_unheard ? punch_none : match->fighter2->punch_phase;
}

}  // namespace

int messages_game_create() {
  draft message = start_draft(message_game_create);
  add_text(&message, netInfo.username);
  add_text(&message, netInfo.peer_username);
  add_numbers(&message, {context.fight_time, netInfo.fighter1_color, netInfo.fighter2_color});
  return send_draft(message, to_group);
}

int messages_joined_game() {
  return send_username(message_joined_game, to_peer);
}

int messages_starting_game() {
  draft message = start_draft(message_starting_game);
  add_numbers(&message, {netInfo.fighter1_color, netInfo.fighter2_color});
  return send_draft(message, to_peer);
}

int messages_starting_game_ack() {
  return send_username(message_starting_game_ack, to_peer);
}

int messages_game_state() {
  const game_state *match = current_game();
  draft message = start_draft(message_game_state);
  add_counter(&message);
  add_fighter(&message, match->fighter1);
  add_fighter(&message, match->fighter2);
  add_numbers(&message, {match->time_left, match->paused});
  return send_draft(message, to_peer);
}

int messages_key_press() {
  const game_state *match = current_game();
  const fighter *guest = match->fighter2;
  draft message = start_draft(message_key_press);
  add_counter(&message);
  add_numbers(&message, {guest->vel_x, guest->vel_y, told_punch_phase(match), match->paused});
  return send_draft(message, to_peer);
}

int messages_kick_game() {
  return send_username(message_kick_game, to_peer);
}

int messages_cancel_game() {
  return send_username(message_cancel_game, to_group);
}

int messages_leave_game() {
  return send_username(message_leave_game, to_peer);
}

void messages_repeat(int (*message)()) {
  for (int i = 0; i < message_repeats; ++i) message();
}
