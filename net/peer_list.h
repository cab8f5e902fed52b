#pragma once

// The rooms that hosts on the network announce, newest first. A room is listed once per (room_id, ip);
// refreshing and removing find it by room_id alone and take the first in list order.
//
// Ticks are milliseconds of SDL_GetTicks, handed in by the caller.

#include <cstdint>

struct list_node;

struct room_record {
  char ip[16];                   // dotted IPv4 address of the host, with NUL
  char name[11];                 // the host's user name, with NUL
  char joiner_name[11];          // the guest's user name, empty while there is none, with NUL
  char room_id[10];              // 8 characters from our own hosts, at most 9 from others, with NUL
  std::uint16_t fighter1_color;  // colour id of fighter 1, as announced
  std::uint16_t fighter2_color;  // colour id of fighter 2, as announced
  std::int32_t time;             // s, length of the match, as announced
  std::int32_t heartbeat;        // tick of the last announcement; 0 until update_peer_heartbeat
};

// The room list: room_record elements. Empty at start, lives for the whole run.
extern list_node *creatorList;

// Lists the room that `text` (a room announcement) describes, in front, unless it is listed already: then
// nothing changes. Over-long texts are cut to the record's fields; what the announcement lacks stays empty or
// 0. No memory: prints "Error, not enough memory" and lists nothing.
void update_peer_list(const char *text, const char *sender_ip, const char *room_id, list_node **head);
// 1 when a listed room has the candidate's room_id and ip, else 0.
int check_peer_node_in_list(const list_node *head, const room_record *candidate);
// The listed room of that id, still owned by the list; null when there is none.
room_record *find_room(const list_node *head, const char *room_id);
// Sets the heartbeat of the room to `now`. 1 when there was such a room, else 0.
int update_peer_heartbeat(std::uint32_t now, const char *room_id, list_node *head);
// Removes the room, if it is listed.
void delete_peer_from_list(list_node **head, const char *room_id);
// Removes the first room last announced more than `time_out` ms before `now`. Returns how many rooms it
// removed: 1 or 0. (The name is spelt so.)
int check_hart_beat_for_list(list_node **head, std::uint32_t now, int time_out);
// The room of a node, owned by the list; null for a null node, which ends a walk.
room_record *get_peer_from_list(const list_node *node);
