#include "net/net.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/say.h"
#include "net/net_socket.h"
#include "net/networks.h"

network_record netInfo;
socket_handle socket_in_out = socket_none;
sockaddr_in communicationAddr;
sockaddr_in bindAddr;
sockaddr_in fromAddr;
sockaddr_in toAddr;
socket_length len;

namespace {

std::uint32_t looked = 0;  // tick (ms) of the last look for networks to listen on

constexpr const char *group_address = "239.1.1.1";
constexpr std::uint16_t game_port = 5555;
constexpr std::int32_t default_fight_time = 120;  // s
constexpr std::uint32_t look_period = 1000;       // ms between two looks for networks to listen on
constexpr int pending_limit = 1000;  // datagrams, more than a socket queues; a flood is not waited out

// Prints `line` and the error code of a step that has failed. Returns whether it was done.
bool report(bool done, const char *line) {
  if (!done) say("%s %d\n", line, socket_last_error());
  return done;
}

void reset_record() {
  netInfo = {};
  looked = 0;
  std::strncpy(netInfo.ip_address, group_address, sizeof netInfo.ip_address - 1);
  netInfo.ip_type = ip_type_v4;
  netInfo.port = game_port;
  netInfo.fight_time = default_fight_time;
  netInfo.fighter1_color = 1;
  netInfo.fighter2_color = 2;
}

// `address` in network byte order.
sockaddr_in socket_address(std::uint32_t address) {
  sockaddr_in result = {};
  result.sin_family = AF_INET;
  result.sin_addr.s_addr = address;
  result.sin_port = htons(netInfo.port);
  return result;
}

// Joins the group on every interface that can do multicast; where the system has just joined by its own
// choice, only if `routed_too`. One that fails does no harm, and most do, having joined before.
void join_group_everywhere(bool routed_too) {
  local_network found[network_limit];
  for (const local_network &network : networks_find(communicationAddr.sin_addr.s_addr, found)) {
    if (!network.multicast || (network.routed && !routed_too)) continue;
    socket_join_group(socket_in_out, communicationAddr.sin_addr, network.address);
  }
}

bool join_group() {
  const bool joined = report(socket_join_group(socket_in_out, communicationAddr.sin_addr, INADDR_ANY),
                             "Setsockopt add multicast membership failed -") &&
                      report(socket_set_option(socket_in_out, IPPROTO_IP, IP_MULTICAST_LOOP, 0),
                             "Setsockopt multicast loopback disable failed -");
  if (joined) join_group_everywhere(false);
  return joined;
}

bool bind_socket() {
  return report(socket_bind(socket_in_out, bindAddr), "Bind() failed -");
}

// Whether the datagram went out whole.
bool send_whole(const char *buffer, int count, const sockaddr_in &to) {
  return socket_send(socket_in_out, buffer, count, to) == count;
}

// From now on the group is sent to from this own address, on its interface; by the system's choice with
// INADDR_ANY.
bool leave_from(std::uint32_t address) {
  return socket_set_option(socket_in_out, IPPROTO_IP, IP_MULTICAST_IF, static_cast<int>(address));
}

// Looks for the networks each time, which is once a second, since they come and go while the game runs. It
// does not matter that one fails while another takes the datagram. The system's choice is good enough when no
// other network is to be reached.
bool send_to_group(const char *buffer, int count) {
  local_network found[network_limit];
  const auto networks = networks_find(communicationAddr.sin_addr.s_addr, found);
  const auto is_left_out = [](const local_network &network) { return network.announces && !network.routed; };
  if (std::ranges::none_of(networks, is_left_out)) return send_whole(buffer, count, communicationAddr);
  bool sent = false;
  for (const local_network &network : networks) {
    if (!network.announces) continue;
    const bool taken = leave_from(network.address) && send_whole(buffer, count, communicationAddr);
    sent = sent || taken;
  }
  leave_from(INADDR_ANY);
  return sent;
}

// False also for a peer that is not there.
bool send_to(char destination, const char *buffer, int count) {
  if (destination == to_group) return send_to_group(buffer, count);
  if (destination == to_sender) return send_whole(buffer, count, fromAddr);
  return net_validate_ip4(netInfo.peer_ip) == 1 && send_whole(buffer, count, toAddr);
}

bool is_destination(char code) {
  return code == to_group || code == to_peer || code == to_sender;
}

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

// Whether the peer was last heard from more than `limit` ms before `now`.
bool unheard_for(std::uint32_t limit, std::uint32_t now) {
  return static_cast<std::uint32_t>(netInfo.heartbeat) + limit < now;
}

}  // namespace

bool net_start_library() {
  return socket_start();
}

int net_init(int mode) {
  reset_record();
  // A socket that could not be made shows in the first option.
  socket_in_out = socket_open();
  if (!report(socket_set_option(socket_in_out, SOL_SOCKET, SO_REUSEADDR, 1),
              "Setsockopt reuseaddr permission failed -")) {
    return 0;
  }
  if (!report(socket_set_option(socket_in_out, SOL_SOCKET, SO_BROADCAST, 0),
              "Setsockopt broadcast permission failed -")) {
    return 0;
  }
  communicationAddr = socket_address(inet_addr(netInfo.ip_address));
  bindAddr = socket_address(htonl(INADDR_ANY));
  if (socket_joins_bound_only && !bind_socket()) return 0;
  if (mode == net_mode_multicast && !join_group()) return 0;
  return socket_joins_bound_only || bind_socket() ? 1 : 0;
}

void net_listen_everywhere(std::uint32_t now) {
  if (now - looked < look_period) return;
  looked = now;
  join_group_everywhere(true);
}

int net_close() {
  const int result = socket_close(socket_in_out);
  socket_in_out = socket_none;
  return result;
}

void net_setup_p2p_struct() {
  toAddr = socket_address(inet_addr(netInfo.peer_ip));
}

void net_reset_peer_info() {
  toAddr = {};
  std::memset(netInfo.peer_username, 0, sizeof netInfo.peer_username);
  std::memset(netInfo.peer_ip, 0, sizeof netInfo.peer_ip);
  netInfo.fight_time = default_fight_time;
  netInfo.guest_joined = 0;
  netInfo.received_msg_number = 0;
  netInfo.sent_msg_number = 0;
  netInfo.heartbeat = 0;
}

void net_clear_room_id() {
  std::memset(netInfo.room_id, 0, room_id_length + 1);
}

int net_send_udp_abstract(char destination, const char *buffer, int count) {
  if (!is_destination(destination)) {
    say("Unkown destination type!\n");  // spelt so; the line is known
    return 0;
  }
  if (netInfo.ip_type != ip_type_v4) {
    say("Unknown IP version\n");
    return 0;
  }
  if (!report(send_to(destination, buffer, count), "Error in sending data -")) return 0;
  ++netInfo.sent_msg_number;
  return 1;
}

int net_receive_udp(char *buffer, int size) {
  len = sizeof fromAddr;
  std::memset(buffer, 0, static_cast<std::size_t>(size));
  const int most = std::min(datagram_size, size - 1);
  const int received = socket_receive(socket_in_out, buffer, most, &fromAddr, &len);
  if (!report(received >= 0, "Error receiving-")) return receive_failed;
  buffer[received] = '\0';
  return received;
}

int net_receive_from_peer(char *buffer, int size) {
  const sockaddr_in last_sender = fromAddr;
  const int received = net_receive_udp(buffer, size);
  if (net_sender_is_peer()) return received;
  fromAddr = last_sender;
  std::memset(buffer, 0, static_cast<std::size_t>(size));
  return from_stranger;
}

void net_discard_pending() {
  char buffer[receive_buffer_size];
  for (int i = 0; i < pending_limit; ++i) {
    if ((net_check_descriptor(0, 0, net_readable) & net_readable) == 0) return;
    if (net_receive_udp(buffer, sizeof buffer) == receive_failed) return;
  }
}

int net_discard_strangers() {
  for (int discarded = 0; discarded < pending_limit; ++discarded) {
    sockaddr_in from = {};
    const bool queued =
        socket_wait(socket_in_out, socket_readable, 0, 0) > 0 && socket_peek(socket_in_out, &from);
    if (!queued || net_sender_ip_match(inet_ntoa(from.sin_addr)) != 0) return discarded;
    char byte = 0;
    socket_length length = sizeof from;
    socket_receive(socket_in_out, &byte, sizeof byte, &from, &length);
  }
  return pending_limit;
}

int net_check_descriptor(int seconds, int microseconds, int which) {
  const int ready = socket_wait(socket_in_out, which, seconds, microseconds);
  return report(ready >= 0, "Code 25, select failed -") ? ready : 0;
}

const char *net_get_sender_ip() {
  return netInfo.ip_type == ip_type_v4 ? inet_ntoa(fromAddr.sin_addr) : nullptr;
}

int net_sender_ip_match(const char *text) {
  return text != nullptr && std::strcmp(text, netInfo.peer_ip) == 0 ? 1 : 0;
}

bool net_sender_is_peer() {
  return net_sender_ip_match(net_get_sender_ip()) != 0;
}

int net_room_ids_match(const char *a, const char *b) {
  if (a == nullptr || b == nullptr || std::strlen(a) != room_id_length) return 0;
  return std::strcmp(a, b) == 0 ? 1 : 0;
}

int net_validate_ip4(const char *text) {
  if (text == nullptr) return 0;
  int dots = 0;
  int digits = 0;  // of the number now read
  int value = 0;   // of the number now read
  for (; *text != '\0'; ++text) {
    if (is_digit(*text)) {
      if (digits > 0 && value == 0) return 0;
      value = value * 10 + (*text - '0');
      ++digits;
      if (value > 255) return 0;
    } else {
      if (*text != '.' || digits == 0) return 0;
      ++dots;
      digits = 0;
      value = 0;
    }
  }
  return dots == 3 && digits > 0 ? 1 : 0;
}

void net_peer_heard(std::uint32_t now) {
  netInfo.heartbeat = static_cast<std::int32_t>(now);
}

bool net_peer_silent(std::uint32_t now) {
  return unheard_for(peer_silent_after, now);
}

bool net_peer_lost(std::uint32_t now) {
  return unheard_for(peer_lost_after, now);
}
