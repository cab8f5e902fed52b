#include "net/peer_list.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "net/linked_list.h"
#include "net/token_list.h"

list_node *creatorList = nullptr;

namespace {

constexpr std::size_t number_text_size = 10;  // bytes of a number in an announcement, with NUL

// The tokens of an announcement that describe the room; token 1, the room id, comes from the caller.
enum announcement_token : std::uint32_t {
  token_name = 2,
  token_joiner_name = 3,
  token_time = 4,
  token_fighter1_color = 5,
  token_fighter2_color = 6,
};

int announced_number(std::uint32_t number, const list_node *tokens) {
  int value = 0;
  get_int_token_by_number(&value, number, tokens, number_text_size);
  return value;
}

// Fills what the announcement says into a zero-filled record.
void read_announcement(const char *text, room_record *room) {
  list_node *tokens = nullptr;
  extract_tokens_from_transmission(text, 1, &tokens);
  get_string_token_by_number(room->name, sizeof room->name, token_name, tokens);
  get_string_token_by_number(room->joiner_name, sizeof room->joiner_name, token_joiner_name, tokens);
  room->time = announced_number(token_time, tokens);
  room->fighter1_color = static_cast<std::uint16_t>(announced_number(token_fighter1_color, tokens));
  room->fighter2_color = static_cast<std::uint16_t>(announced_number(token_fighter2_color, tokens));
  delete_token_list(&tokens);
}

bool has_id(const room_record *room, const char *room_id) {
  return std::strcmp(room->room_id, room_id) == 0;
}

// Compares in signed 32-bit arithmetic, wrapping round.
bool is_expired(const room_record *room, std::uint32_t now, int time_out) {
  const std::uint32_t last =
      static_cast<std::uint32_t>(room->heartbeat) + static_cast<std::uint32_t>(time_out);
  return static_cast<std::int32_t>(last) < static_cast<std::int32_t>(now);
}

}  // namespace

void update_peer_list(const char *text, const char *sender_ip, const char *room_id, list_node **head) {
  room_record *room = static_cast<room_record *>(std::calloc(1, sizeof(room_record)));
  if (room == nullptr) {
    std::puts("Error, not enough memory");
    return;
  }
  read_announcement(text, room);
  std::strncpy(room->ip, sender_ip, sizeof room->ip - 1);
  std::strncpy(room->room_id, room_id, sizeof room->room_id - 1);
  if (check_peer_node_in_list(*head, room) == 1 || !insert(head, room)) std::free(room);
}

int check_peer_node_in_list(const list_node *head, const room_record *candidate) {
  for (const list_node *node = head; node != nullptr; node = node->next) {
    const room_record *room = get_peer_from_list(node);
    if (has_id(room, candidate->room_id) && std::strcmp(room->ip, candidate->ip) == 0) return 1;
  }
  return 0;
}

int update_peer_heartbeat(std::uint32_t now, const char *room_id, list_node *head) {
  for (list_node *node = head; node != nullptr; node = node->next) {
    room_record *room = get_peer_from_list(node);
    if (!has_id(room, room_id)) continue;
    room->heartbeat = static_cast<std::int32_t>(now);
    return 1;
  }
  return 0;
}

void delete_peer_from_list(list_node **head, const char *room_id) {
  for (list_node **link = head; *link != nullptr; link = &(*link)->next) {
    if (!has_id(get_peer_from_list(*link), room_id)) continue;
    remove_at(link);
    return;
  }
}

int check_hart_beat_for_list(list_node **head, std::uint32_t now, int time_out) {
  for (list_node **link = head; *link != nullptr; link = &(*link)->next) {
    if (!is_expired(get_peer_from_list(*link), now, time_out)) continue;
    remove_at(link);
    return 1;
  }
  return 0;
}

room_record *get_peer_from_list(const list_node *node) {
  return node == nullptr ? nullptr : static_cast<room_record *>(node->data);
}
