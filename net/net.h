#pragma once

// LAN transport: one IPv4 UDP socket on port 5555, joined to the group 239.1.1.1, and the record of this
// machine's network role and its pairing. Rooms are announced to the group, on every network that this
// machine is on; everything else goes to the one peer. The socket blocks: ask net_check_descriptor before
// net_receive_udp.
//
// A socket failure is printed as one line with the platform's error code, and nothing is retried: a lost
// datagram is made good by the next one.

#include <cstdint>

inline constexpr int datagram_size = 150;        // bytes sent, and the most bytes taken from one received
inline constexpr int receive_buffer_size = 151;  // bytes of a buffer to receive into: a datagram and a NUL
inline constexpr int receive_failed = 151;       // what net_receive_udp returns after a failure
inline constexpr int from_stranger = -1;         // what net_receive_from_peer returns for another machine's
inline constexpr int room_id_length = 8;         // characters
inline constexpr char ip_type_v4 = 'a';          // the only address family there is

inline constexpr std::uint32_t peer_silent_after = 1000;  // ms unheard, then the match stands still
inline constexpr std::uint32_t peer_lost_after = 5000;    // ms unheard, then the pairing ends

enum net_mode : int {
  net_mode_multicast = 2,  // join the group
};

// What the socket can be ready for.
enum net_readiness : int {
  net_readable = 1,
  net_writable = 2,
};

enum net_destination : char {
  to_group = 'a',
  to_peer = 'b',    // the address that net_setup_p2p_struct took, while peer_ip is a valid one
  to_sender = 'c',  // where the last datagram came from
};

struct network_record {
  std::uint8_t guest_joined;          // host: 1 once a guest is in the room
  std::uint8_t is_host;               // 1 while this machine hosts a room
  char ip_type;                       // ip_type_v4
  std::int32_t fight_time;            // s, length of the match; a guest takes the host's from announcements
  std::uint16_t fighter1_color;       // colour id of fighter 1 in a LAN match
  std::uint16_t fighter2_color;       // colour id of fighter 2 in a LAN match
  std::uint16_t port;                 // UDP port, host byte order
  std::uint32_t received_msg_number;  // highest message counter accepted from the peer in a match
  std::uint32_t sent_msg_number;      // datagrams sent successfully; the counter of match messages
  std::int32_t heartbeat;             // tick (ms) when the peer was last heard from; 0: never
  char username[11];                  // this player's name, with NUL; entered in the lobby
  char peer_username[11];             // the other player's name, with NUL; empty when there is no peer
  char peer_ip[16];                   // the peer's dotted address, with NUL; empty when there is no peer
  char ip_address[16];                // the group's dotted address, with NUL
  char room_id[10];                   // the room hosted or joined: 8 characters with NUL, or empty
};

// The one network record; zero-filled until net_init.
extern network_record netInfo;

// Starts the platform's socket library, before anything else here. False when it does not start.
bool net_start_library();
// Sets the record to its defaults, opens the socket, configures and binds it; net_mode_multicast joins the
// group. 1, or 0 after printing the step that failed; net_close then closes what was opened.
int net_init(int mode);
// Joins the group also on the networks that have come since, a cable's or a VPN's; at tick `now` (ms),
// looking at most once a second. To be called while rooms are listened for.
void net_listen_everywhere(std::uint32_t now);
// Closes the socket. Returns what the platform says, 0 on success.
int net_close();

// Takes peer_ip and port as the address of the peer.
void net_setup_p2p_struct();
// Forgets the peer: its address and name, the counters and the heartbeat; guest_joined 0, fight_time 120.
// Role, room, this player's name and the colours stay.
void net_reset_peer_info();
// Leaves the room as far as the record goes: room_id becomes empty.
void net_clear_room_id();

// Sends `count` bytes to a net_destination. 1 when all of them went out, which adds 1 to sent_msg_number;
// otherwise prints a line and returns 0. To the group they go on every network from which a guest can join;
// that is one send, and done when one of the networks takes them.
int net_send_udp_abstract(char destination, const char *buffer, int count);
// Zero-fills `size` bytes of the buffer and receives one datagram into them, cut to datagram_size bytes, so
// that a receive_buffer_size buffer always holds a text. Returns the bytes received; after a failure prints a
// line and returns receive_failed with the buffer empty.
int net_receive_udp(char *buffer, int size);
// The same for the peer's datagrams alone: one of another machine is left out, returns from_stranger with the
// buffer empty, and does not become the last datagram that the questions about the sender are about.
int net_receive_from_peer(char *buffer, int size);
// Throws away what has queued up on the socket while nobody listened.
void net_discard_pending();
// Throws away the datagrams of other machines than the peer that are next in the queue, at most a queue full
// of them; the peer's stay. Returns how many.
int net_discard_strangers();
// Waits at most the given time until the socket is ready for one of `which`, a sum of net_readiness. Returns
// the sum of those it is ready for; 0 when the time has passed and, with a line, on failure.
int net_check_descriptor(int seconds, int microseconds, int which);

// The dotted address that the last datagram came from, valid until the next call; null unless ip_type is
// ip_type_v4.
const char *net_get_sender_ip();
// 1 when the dotted address is peer_ip; 0 otherwise, and for null.
int net_sender_ip_match(const char *text);
// True when the last datagram came from the peer.
bool net_sender_is_peer();
// 1 when both texts are the same room id of 8 characters; 0 otherwise, and for null.
int net_room_ids_match(const char *a, const char *b);
// 1 for four numbers of 0 to 255 without leading zeros and with dots between them; 0 otherwise, and for null.
int net_validate_ip4(const char *text);

// Notes that the peer was heard at tick `now` (ms).
void net_peer_heard(std::uint32_t now);
// True when the peer has not been heard from for more than peer_silent_after or peer_lost_after at tick `now`
// (ms). Sums wrap round at 32 bits.
bool net_peer_silent(std::uint32_t now);
bool net_peer_lost(std::uint32_t now);
