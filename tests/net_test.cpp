#include "net/net.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/stage.h"
#include "tests/support/udp_link.h"

namespace {

// What the socket library is asked for while a socket is set up, in place of doing it.
struct set_up_record {
  bool recording = false;
  std::set<int> failing = {};  // calls that fail, from 1
  int error = 0;               // their error code
  int calls = 0;
  std::string asked = {};
  std::vector<socket_interface> interfaces = {};
  const char *route = "0.0.0.0";  // the own address on the way to anywhere else
} set_up;

std::string dotted(const sockaddr_in &address) {
  return inet_ntoa(address.sin_addr) + std::string(":") + std::to_string(ntohs(address.sin_port));
}

// Every field of netInfo, in order.
std::string record() {
  const network_record &r = netInfo;
  std::ostringstream text;
  text << +r.guest_joined << " " << +r.is_host << " " << r.ip_type << " " << r.fight_time << " "
       << r.fighter1_color << " " << r.fighter2_color << " " << r.port << " " << r.received_msg_number << " "
       << r.sent_msg_number << " " << r.heartbeat;
  for (const char *name : {r.username, r.peer_username, r.peer_ip, r.ip_address, r.room_id})
    text << ", " << name;
  return text.str();
}

int answer(const std::string &asked) {
  set_up.asked += asked + " ";
  if (!set_up.failing.contains(++set_up.calls)) return 0;
  errno = set_up.error;
  return -1;
}

std::string value_of(int option, const void *value) {
  if (option == IP_MULTICAST_IF) return inet_ntoa(*static_cast<const in_addr *>(value));
  if (option != IP_ADD_MEMBERSHIP) return std::to_string(*static_cast<const int *>(value));
  const ip_mreq *request = static_cast<const ip_mreq *>(value);
  const std::string group = inet_ntoa(request->imr_multiaddr);
  return group + "@" + inet_ntoa(request->imr_interface);
}

}  // namespace

extern "C" {

int __real_setsockopt(int socket, int level, int option, const void *value, socklen_t size);
int __wrap_setsockopt(int socket, int level, int option, const void *value, socklen_t size) {
  if (!set_up.recording) return __real_setsockopt(socket, level, option, value, size);
  const bool on_ip = level == IPPROTO_IP;
  const std::string name = on_ip && option == IP_ADD_MEMBERSHIP   ? "join"
                           : on_ip && option == IP_MULTICAST_LOOP ? "loop"
                           : on_ip && option == IP_MULTICAST_IF   ? "from"
                           : !on_ip && option == SO_REUSEADDR     ? "reuse"
                           : !on_ip && option == SO_BROADCAST     ? "broadcast"
                                                                  : "unknown";
  return answer(name + "=" + value_of(on_ip ? option : 0, value));
}

int __real_bind(int socket, const sockaddr *address, socklen_t size);
int __wrap_bind(int socket, const sockaddr *address, socklen_t size) {
  if (!set_up.recording) return __real_bind(socket, address, size);
  return answer(std::string("bind=") + dotted(*reinterpret_cast<const sockaddr_in *>(address)));
}

// Wrapped by their linker's names, so a change of theirs must not pass unseen.
static_assert(std::is_same_v<decltype(socket_interfaces), int(socket_interface *, int)>);
static_assert(std::is_same_v<decltype(socket_source), std::uint32_t(std::uint32_t)>);
int __wrap__Z17socket_interfacesP16socket_interfacei(socket_interface *list, int) {
  return static_cast<int>(std::ranges::copy(set_up.interfaces, list).out - list);
}

std::uint32_t __wrap__Z13socket_sourcej(std::uint32_t to) {
  for (const auto &own : set_up.interfaces)
    if (own.address == to) return to;
  for (const auto &own : set_up.interfaces)
    if (own.far_end == to || ((own.address ^ to) & own.mask) == 0) return own.address;
  return inet_addr(set_up.route);
}
}

TEST(net, sets_itself_up_step_by_step) {
  const std::tuple<int, std::set<int>, int, const char *, const char *> cases[] = {
      // mode, calls that fail, their error; what is printed, and the end of what was asked
      {2, {}, 0, "", "reuse=1 broadcast=0 join=239.1.1.1@0.0.0.0 loop=0 bind=0.0.0.0:5555 "},
      {0, {}, 0, "", "reuse=1 broadcast=0 bind=0.0.0.0:5555 "},
      {2, {1}, 5, "Setsockopt reuseaddr permission failed - 5\n", "reuse=1 "},
      {2, {2}, 6, "Setsockopt broadcast permission failed - 6\n", "broadcast=0 "},
      {2, {3}, 7, "Setsockopt add multicast membership failed - 7\n", "join=239.1.1.1@0.0.0.0 "},
      {2, {4}, 8, "Setsockopt multicast loopback disable failed - 8\n", "loop=0 "},
      {2, {5}, 9, "Bind() failed - 9\n", "bind=0.0.0.0:5555 "},
      // No network: the loopback interface takes the membership.
      {2, {3}, 19, "", "@0.0.0.0 join=239.1.1.1@127.0.0.1 loop=0 bind=0.0.0.0:5555 "},
      {2, {3, 4}, 19, "Setsockopt add multicast membership failed - 19\n", "join=239.1.1.1@127.0.0.1 "}};
  for (const auto &[mode, failing, error, printed, asked] : cases) {
    std::memset(static_cast<void *>(&netInfo), 'x', sizeof netInfo);
    set_up = {.recording = true, .failing = failing, .error = error};
    int result = -1;
    EXPECT_EQ(output_of([&, mode = mode] { result = net_init(mode); }), printed);
    EXPECT_EQ(result, *printed == '\0' ? 1 : 0);
    EXPECT_TRUE(set_up.asked.ends_with(asked)) << set_up.asked;
    EXPECT_EQ(record(), "0 0 a 120 1 2 5555 0 0 0, , , , 239.1.1.1, ");
    EXPECT_EQ(net_close(), 0);
  }
  EXPECT_EQ(dotted(communicationAddr), "239.1.1.1:5555");
  set_up = {};
}

TEST(net, reaches_the_group_on_every_network) {
  const auto on = [](unsigned number, const char *address, bool multicast = true) {
    return socket_interface{inet_addr(address), inet_addr("255.255.255.0"), 0, number, multicast};
  };
  const auto cable = on(1, "10.1.0.2"), alias = on(1, "10.2.0.2"), same = on(2, "10.1.0.3"),
             radio = on(2, "10.2.0.2"), no_group = on(2, "10.2.0.2", false);
  const socket_interface line = {inet_addr("10.8.0.6"), ~0u, inet_addr("10.8.0.5"), 3, true};
  const struct {
    std::vector<socket_interface> interfaces;
    const char *route;
    std::set<int> failing;
    std::string joined, from;  // beside the steps of every set-up
  } cases[] = {{{alias, cable}, "10.1.0.2", {}, "@10.2.0.2 ", ""},
               {{cable}, "0.0.0.0", {}, "@10.1.0.2 ", "from=10.1.0.2 "},
               {{cable, same}, "10.1.0.3", {}, "@10.1.0.2 ", "from=10.1.0.2 "},
               {{cable, line}, "10.1.0.2", {}, "@10.8.0.6 ", "from=10.1.0.2 from=10.8.0.6 "},
               {{cable, radio}, "10.2.0.2", {5, 8}, "@10.1.0.2 ", "from=10.1.0.2 from=10.2.0.2 "},
               {{cable, no_group}, "10.2.0.2", {}, "@10.1.0.2 ", "from=10.1.0.2 from=10.2.0.2 "},
               {{no_group}, "0.0.0.0", {}, "", ""}};
  for (const auto &[interfaces, route, failing, joined, from] : cases) {
    set_up = {.recording = true, .failing = failing, .interfaces = interfaces, .route = route};
    EXPECT_EQ(output_of([] { net_init(2); }), "");
    communicationAddr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(output_of([] { EXPECT_EQ(net_send_udp_abstract('a', "x", 1), 1); }), "");
    EXPECT_EQ(netInfo.sent_msg_number, 1u);
    EXPECT_EQ(set_up.asked.substr(50), (joined.empty() ? "" : "join=239.1.1.1" + joined) +
                                           "bind=0.0.0.0:5555 " + from +
                                           (from.empty() ? "" : "from=0.0.0.0 "));
    net_close();
  }
  set_up = {};
}

TEST(net, sends_to_group_peer_and_sender) {
  const std::tuple<char, const char *, char, std::string> cases[] = {
      // destination, peer_ip, ip_type; what is printed, nothing when it is sent
      {'a', "", 'a', ""},
      {'b', "127.0.0.1", 'a', ""},
      {'c', "", 'a', ""},
      {'b', "", 'a', "Error in sending data - 11\n"},
      {'b', "127.0.0.01", 'a', "Error in sending data - 11\n"},
      {'a', "127.0.0.1", 'b', "Unknown IP version\n"},
      {'d', "127.0.0.1", 'b', "Unkown destination type!\n"}};
  const std::string bytes("a\0bc", 4);
  for (const auto &[code, peer_ip, ip_type, printed] : cases) {
    udp_link link;
    netInfo.ip_type = ip_type;
    std::strcpy(netInfo.peer_ip, peer_ip);
    unsigned result = 9;
    EXPECT_EQ(output_of([&, code = code] {
                errno = 11;
                result = static_cast<unsigned>(net_send_udp_abstract(code, bytes.data(), 4));
              }),
              printed);
    EXPECT_EQ(result, printed.empty() ? 1u : 0u);
    EXPECT_EQ(netInfo.sent_msg_number, result);
    for (const char each : {'a', 'b', 'c'})
      EXPECT_EQ(link.sent_to(each), each == code && result == 1 ? bytes : "");
  }
}

TEST(net, receives_a_datagram_as_a_text) {
  udp_link link;
  for (const std::size_t sent : {0u, 1u, 149u, 150u, 151u, 400u}) {
    const std::size_t taken = std::min<std::size_t>(sent, 150);
    char buffer[152];
    std::memset(buffer, 'x', sizeof buffer);
    len = 0;
    link.send(std::string(sent, 'd'));
    EXPECT_EQ(net_receive_udp(buffer, 151), static_cast<int>(taken));
    EXPECT_EQ(std::string(buffer, 152), std::string(taken, 'd') + std::string(151 - taken, '\0') + "x");
    EXPECT_EQ(fromAddr.sin_port, toAddr.sin_port);
    EXPECT_STREQ(net_get_sender_ip(), "127.0.0.1");
  }
  netInfo.ip_type = 'b';
  EXPECT_EQ(net_get_sender_ip(), nullptr);
}

TEST(net, reports_what_the_socket_refuses) {
  char buffer[151] = "x";
  EXPECT_EQ(output_of([&] { EXPECT_EQ(net_receive_udp(buffer, 151), 151); }), "Error receiving- 9\n");
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(output_of([] { EXPECT_EQ(net_check_descriptor(0, 0, 3), 0); }), "Code 25, select failed - 9\n");
  udp_link link;
  const std::string too_long(70000, 'x');
  EXPECT_EQ(output_of([&] { EXPECT_EQ(net_send_udp_abstract('b', too_long.data(), 70000), 0); }),
            "Error in sending data - 90\n");
  EXPECT_EQ(netInfo.sent_msg_number, 0u);
}

TEST(net, knows_addresses_from_other_texts) {
  for (const char *valid : {"192.168.1.10", "0.0.0.0", "255.255.255.255", "10.0.100.1"})
    EXPECT_EQ(net_validate_ip4(valid), 1) << valid;
  for (const char *invalid : {"", "192.168.01.1", "256.1.1.1", "1.2.3", "1.2.3.4.", "1..2.3", "1.2.3.4.5",
                              ".1.2.3", "1.2.3.", "1.2.3.-4", "1.2.3.99999999999999999999"})
    EXPECT_EQ(net_validate_ip4(invalid), 0) << invalid;
  EXPECT_EQ(net_validate_ip4(nullptr), 0);
}

TEST(net, knows_its_peer_and_its_room) {
  netInfo = {};
  std::strcpy(netInfo.peer_ip, "10.0.0.7");
  EXPECT_EQ(net_sender_ip_match("10.0.0.7"), 1);
  for (const char *other : {"10.0.0.77", "10.0.0.", ""}) EXPECT_EQ(net_sender_ip_match(other), 0);
  EXPECT_EQ(net_sender_ip_match(nullptr), 0);
  const std::tuple<const char *, const char *, int> rooms[] = {
      {"Rb4kT8mA", "Rb4kT8mA", 1}, {"Rb4kT8mB", "Rb4kT8mA", 0},
      {"Rb4kT8mA", "Rb4kT8m", 0},  {"", "", 0},
      {"Rb4kT8m", "Rb4kT8m", 0},   {"Rb4kT8mA9", "Rb4kT8mA9", 0},
      {nullptr, "Rb4kT8mA", 0},    {"Rb4kT8mA", nullptr, 0}};
  for (const auto &[one, other, match] : rooms) EXPECT_EQ(net_room_ids_match(one, other), match);
}
