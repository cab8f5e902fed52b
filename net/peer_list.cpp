#include "net/peer_list.h"

#include <cstdlib>
#include <cstring>

#include "core/say.h"
#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/token_list.h"

list_node *creatorList = nullptr;

namespace {

constexpr std::size_t number_text_size = 10;  // bytes of a number in an announcement, with NUL

// Fills what the announcement says into a zero-filled record.
void read_announcement(const char *text, room_record *room) {
  list_node *tokens = nullptr;
  extract_tokens_from_transmission(text, 1, &tokens);
  const announcement announced = announcement_read(tokens, number_text_size);
  delete_token_list(&tokens);
  std::memcpy(room->name, announced.name, sizeof room->name);
  std::memcpy(room->joiner_name, announced.guest_name, sizeof room->joiner_name);
  room->time = announced.fight_time;
  room->fighter1_color = announced.fighter1_color;
  room->fighter2_color = announced.fighter2_color;
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
    say("Error, not enough memory\n");
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

room_record *find_room(const list_node *head, const char *room_id) {
  for (const list_node *node = head; node != nullptr; node = node->next) {
    if (has_id(get_peer_from_list(node), room_id)) return get_peer_from_list(node);
  }
  return nullptr;
}

int update_peer_heartbeat(std::uint32_t now, const char *room_id, list_node *head) {
  room_record *room = find_room(head, room_id);
  if (room == nullptr) return 0;
  room->heartbeat = static_cast<std::int32_t>(now);
  return 1;
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
