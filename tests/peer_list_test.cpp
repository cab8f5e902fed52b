#include "net/peer_list.h"

#include <gtest/gtest.h>

#include <string>

#include "net/linked_list.h"
#include "tests/support/stage.h"

namespace {

class peer_list : public testing::Test {
 protected:
  ~peer_list() override { delete_list(&rooms); }
  // Lists a room and hears it at a tick.
  void announce(const char *id, const char *ip, std::uint32_t now, const char *text = "a1 x 1 h 1 g") {
    update_peer_list(text, ip, id, &rooms);
    update_peer_heartbeat(now, id, rooms);
  }
  // The rooms in list order: id, address and heartbeat.
  std::string listed() const {
    std::string listed;
    for (const list_node *node = rooms; get_peer_from_list(node) != nullptr; node = node->next) {
      const room_record *room = get_peer_from_list(node);
      listed += std::string(room->room_id) + "@" + room->ip + " " + std::to_string(room->heartbeat) + "; ";
    }
    return listed;
  }
  // What the newest room's announcement said.
  std::string newest() const {
    const room_record *room = get_peer_from_list(rooms);
    return std::string(room->name) + "," + room->joiner_name + "," + std::to_string(room->time) + "," +
           std::to_string(room->fighter1_color) + "," + std::to_string(room->fighter2_color);
  }
  list_node *rooms = nullptr;
};

}  // namespace

TEST_F(peer_list, lists_a_room_as_first_announced) {
  announce("Rb4kT8mA", "10.0.0.7", 50, "a8 XXXXXXXX 7 player1 3 Bob 2 75 1 2 5 65537");
  announce("Rb4kT8mA", "10.0.0.7", 60, "a8 XXXXXXXX 5 other 3 Eve 2 90 1 1 1 2");
  EXPECT_EQ(listed(), "Rb4kT8mA@10.0.0.7 60; ");
  EXPECT_EQ(newest(), "player1,Bob,75,2,1");
}

TEST_F(peer_list, cuts_what_is_too_long_and_leaves_out_what_is_missing) {
  announce("0123456789", "1234567890123456", 1,
           "a1 x 11 abcdefghijk 12 lmnopqrstuvw 10 1234567890 1 x 5 -1rst");
  EXPECT_EQ(newest(), "abcdefghij,lmnopqrstu,123456789,0,65535");
  announce("empty", "10.0.0.7", 2, "a1 x");
  EXPECT_EQ(newest(), ",,0,0,0");
  EXPECT_EQ(listed(), "empty@10.0.0.7 2; 012345678@123456789012345 0; ");
}

TEST_F(peer_list, reaches_the_newest_of_rooms_with_one_id) {
  announce("twin", "10.0.0.1", 10);
  announce("other", "10.0.0.1", 20);
  announce("twin", "10.0.0.2", 30);
  EXPECT_EQ(update_peer_heartbeat(40, "none", rooms), 0);
  EXPECT_EQ(update_peer_heartbeat(40, "twin", rooms), 1);
  EXPECT_EQ(listed(), "twin@10.0.0.2 40; other@10.0.0.1 20; twin@10.0.0.1 10; ");
  delete_peer_from_list(&rooms, "twin");
  delete_peer_from_list(&rooms, "none");
  EXPECT_EQ(listed(), "other@10.0.0.1 20; twin@10.0.0.1 10; ");
  delete_peer_from_list(&rooms, "twin");
  EXPECT_EQ(listed(), "other@10.0.0.1 20; ");
}

TEST_F(peer_list, drops_one_silent_room_a_call) {
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 9000, 5000), 0);
  announce("c", "10.0.0.1", 2000);
  announce("b", "10.0.0.1", 9000);
  announce("a", "10.0.0.1", 1000);
  update_peer_list("a", "10.0.0.1", "unheard", &rooms);
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 5000, 5000), 0);
  for (const int removed : {1, 1, 0}) EXPECT_EQ(check_hart_beat_for_list(&rooms, 7000, 5000), removed);
  EXPECT_EQ(listed(), "b@10.0.0.1 9000; c@10.0.0.1 2000; ");
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 7001, 5000), 1);
  EXPECT_EQ(listed(), "b@10.0.0.1 9000; ");
  update_peer_heartbeat(0xFFFFF000, "b", rooms);  // the tick count is about to start again at 0
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 0xFFFFFF9C, 5000), 0);
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 904, 5000), 0);
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 905, 5000), 1);
}

TEST_F(peer_list, lists_nothing_without_memory) {
  for (const int call : {1, 5}) {  // the record; its node, after the three calls for a token
    world.failing = {{"calloc", call}};
    EXPECT_EQ(output_of([this] { announce("a", "10.0.0.1", 1, "a1 x"); }), "Error, not enough memory\n");
    EXPECT_EQ(listed(), "");
  }
}
