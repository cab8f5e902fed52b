#include "net/net.h"

#include <cstring>

#include "tests/support/network.h"
#include "tests/support/stage.h"

TEST(net, sets_itself_up_until_a_step_fails) {
  const std::string steps = "reuse=1 broadcast=0 join=239.1.1.1@0.0.0.0 loop=0 bind=0.0.0.0:5555 ";
  const std::pair<const char *, const char *> failures[] = {
      {"reuse", "Setsockopt reuseaddr permission failed - 77\n"},
      {"broadcast", "Setsockopt broadcast permission failed - 77\n"},
      {"join", "Setsockopt add multicast membership failed - 77\n"},
      {"loop", "Setsockopt multicast loopback disable failed - 77\n"},
      {"bind", "Bind() failed - 77\n"}};
  for (const auto &[failing, printed] : failures) {
    network = {};
    network.fails = {failing};
    EXPECT_EQ(output_of([] { EXPECT_EQ(net_init(net_mode_multicast), 0); }), printed);
    EXPECT_EQ(network.asked, steps.substr(0, steps.find(' ', steps.find(failing)) + 1));
  }
  network = {};
  std::memset(static_cast<void *>(&netInfo), 'x', sizeof netInfo);
  EXPECT_EQ(net_init(net_mode_multicast), 1);
  EXPECT_EQ(network.asked, steps);
  const network_record &r = netInfo;
  EXPECT_EQ(std::tie(r.ip_type, r.fight_time, r.fighter1_color, r.fighter2_color, r.port, r.sent_msg_number),
            std::make_tuple('a', 120, 1, 2, 5555, 0u));
  EXPECT_EQ(std::string(r.username) + r.peer_username + r.peer_ip + r.room_id + r.ip_address, group_ip);
}

TEST(net, reaches_the_group_on_every_network) {
  const auto on = [](unsigned number, const char *ip, bool multicast = true) {
    return socket_interface{inet_addr(ip), inet_addr("255.255.255.0"), 0, number, multicast};
  };
  const auto cable = on(1, "10.1.0.2"), alias = on(1, "10.2.0.2"), same = on(2, "10.1.0.3"),
             mute = on(2, "10.2.0.2", false);
  const socket_interface line = {inet_addr("10.8.0.6"), ~0u, inet_addr("10.8.0.5"), 3, true};
  const struct {
    std::vector<socket_interface> interfaces;
    const char *route;         // the system's choice, joined by itself
    std::string joined, from;  // others joined, and those announced from
  } cases[] = {{{alias, cable}, "10.1.0.2", "10.2.0.2", ""},
               {{cable}, "0.0.0.0", "10.1.0.2", "from=10.1.0.2 "},
               {{cable, same}, "10.1.0.3", "10.1.0.2", "from=10.1.0.2 "},
               {{cable, line}, "10.1.0.2", "10.8.0.6", "from=10.1.0.2 from=10.8.0.6 "},
               {{cable, mute}, "10.2.0.2", "10.1.0.2", "from=10.1.0.2 from=10.2.0.2 "}};
  for (const auto &c : cases) {
    network = {};
    network.interfaces = c.interfaces;
    network.route = c.route;
    net_init(net_mode_multicast);
    EXPECT_TRUE(network.asked.ends_with(" loop=0 join=239.1.1.1@" + c.joined + " bind=0.0.0.0:5555 "));
    network.asked = "";
    EXPECT_EQ(net_send_udp_abstract(to_group, "x", 1), 1);
    EXPECT_EQ(network.asked, c.from.empty() ? "" : c.from + "from=0.0.0.0 ");
    EXPECT_EQ(sent_to(group_ip), c.from.size() > 14 ? "x|x|" : "x|");
    EXPECT_EQ(netInfo.sent_msg_number, 1u);
  }
  network.asked = "";
  for (const unsigned tick : {999, 1000, 1999, 2000}) net_listen_everywhere(tick);  // looks once a second
  EXPECT_EQ(network.asked, "join=239.1.1.1@10.1.0.2 join=239.1.1.1@10.1.0.2 ");
}

TEST(net, sends_to_group_peer_and_sender) {
  const std::string refused = "Error in sending data - 77\n";
  const struct {
    char destination, ip_type;
    const char *peer, *receiver;  // null for nobody
    std::string printed;
  } cases[] = {{'b', 'a', peer_ip, peer_ip, ""},
               {'c', 'a', "", stranger_ip, ""},
               {'b', 'a', "10.0.0.01", nullptr, refused},
               {'a', 'b', "", nullptr, "Unknown IP version\n"},
               {'d', 'b', "", nullptr, "Unkown destination type!\n"}};
  char bytes[receive_buffer_size];
  for (const auto &c : cases) {
    share_room();
    network.inbox = {{stranger_ip, ""}};
    net_receive_udp(bytes, sizeof bytes);
    netInfo.ip_type = c.ip_type;
    std::strcpy(netInfo.peer_ip, c.peer);
    EXPECT_EQ(output_of([&] { net_send_udp_abstract(c.destination, "abc", 3); }), c.printed);
    EXPECT_EQ(netInfo.sent_msg_number, network.sent.size());
    EXPECT_EQ(c.receiver == nullptr ? "abc|" : sent_to(c.receiver), "abc|");
    EXPECT_TRUE(network.sent.empty());
  }
}

TEST(net, reports_failures_and_waits_out_no_flood) {
  share_room();
  network.inbox.assign(3000, {stranger_ip, "x"});
  EXPECT_EQ(net_discard_strangers(), 1000);
  net_discard_pending();
  EXPECT_EQ(network.inbox.size(), 1000u);
  network.fails = {"receive"};
  EXPECT_EQ(output_of(net_discard_pending), "Error receiving- 77\n") << "once";
  network.fails = {"wait"};
  EXPECT_EQ(output_of([] { EXPECT_EQ(net_check_descriptor(0, 0, 3), 0); }), "Code 25, select failed - 77\n");
}

TEST(net, knows_addresses_peer_and_room) {
  for (const char *valid : {"192.168.1.10", "0.0.0.0", "255.255.255.255"})
    EXPECT_EQ(net_validate_ip4(valid), 1) << valid;
  for (const char *invalid : {"", "192.168.01.1", "256.1.1.1", "1.2.3", "1.2.3.4.", "1..2.3", "1.2.3.-4"})
    EXPECT_EQ(net_validate_ip4(invalid), 0) << invalid;
  share_room();
  for (const std::uint32_t heard : {7000U, 0x7FFFFF00U, 0xFFFFFF00U}) {  // the tick count starts again at 0
    net_peer_heard(heard);
    EXPECT_TRUE(!net_peer_silent(heard + 1000) && net_peer_silent(heard + 1001));
    EXPECT_TRUE(!net_peer_lost(heard + 5000) && net_peer_lost(heard + 5001));
  }
  net_peer_heard(0x7FFFFFFF);
  EXPECT_FALSE(net_peer_silent(0x7FFFFFFF) || net_peer_lost(0x7FFFFFFF)) << "ticks have no sign";
  EXPECT_EQ(net_sender_ip_match(peer_ip) + net_sender_ip_match("10.0.0.10"), 1);
  for (const char *id : {"Rb4kT8mA", "Rb4kT8mA9", ""})
    EXPECT_EQ(net_room_ids_match(id, id), std::strlen(id) == 8 ? 1 : 0) << id;
  EXPECT_EQ(net_room_ids_match("Rb4kT8mA", "Rb4kT8mB"), 0);
  EXPECT_EQ(net_validate_ip4(nullptr) + net_sender_ip_match(nullptr) + net_room_ids_match(nullptr, nullptr),
            0);
}
