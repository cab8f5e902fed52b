// Lists of anything, of the tokens of a message, and of the rooms that were announced.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "net/linked_list.h"
#include "net/peer_list.h"
#include "net/token_list.h"
#include "tests/support/stage.h"

namespace {

const std::string no_memory = "Error, not enough memory\n";

// The tokens of a text behind its letter.
struct decoded {
  explicit decoded(const std::string &message) {
    // A block of exactly its size, so that AddressSanitizer sees the first byte read behind it.
    const std::vector<char> text(message.c_str(), message.c_str() + message.size() + 1);
    complete = extract_tokens_from_transmission(text.data(), 1, &head);
    while (const message_token *token = get_token_by_number(static_cast<unsigned>(data.size() + 1), head))
      data.emplace_back(token->data, static_cast<std::size_t>(token->length));
  }
  ~decoded() { delete_token_list(&head); }
  int complete = 0;  // tokens, or 0 when a length lied
  std::vector<std::string> data;
  list_node *head = nullptr;
};

struct peer_list : testing::Test {
  ~peer_list() override { delete_list(&rooms); }
  // Lists a room and hears it at a tick.
  void announce(const char *id, const char *ip, std::uint32_t now, const char *text = "a1 x 1 h 1 g") {
    update_peer_list(text, ip, id, &rooms);
    update_peer_heartbeat(now, id, rooms);
  }
  // Id, address and heartbeat of each room.
  std::string listed() const {
    std::string listed;
    for (const list_node *node = rooms; get_peer_from_list(node) != nullptr; node = node->next) {
      const room_record *room = get_peer_from_list(node);
      listed += std::string(room->room_id) + "@" + room->ip + " " + std::to_string(room->heartbeat) + "; ";
    }
    return listed;
  }
  list_node *rooms = nullptr;
};

}  // namespace

TEST(linked_list, takes_elements_in_front_behind_and_at_the_end) {
  list_node *head = nullptr;
  append(&head, strdup("b"));
  append(&head, strdup("d"));
  insert(&head, strdup("a"));
  insert_after(head->next, strdup("c"));
  world.failing = {{"calloc", 0}};
  EXPECT_EQ(output_of([&] { EXPECT_FALSE(insert(&head, nullptr) || append(&head, nullptr)); }),
            no_memory + no_memory);
  EXPECT_EQ(output_of([&] { EXPECT_FALSE(insert_after(head, nullptr)); }), no_memory);
  EXPECT_EQ(output_of([] { EXPECT_FALSE(insert_after(nullptr, nullptr)); }),
            "The given previous node cannot be NULL\n");
  world.failing.clear();
  std::string content;
  for (list_node *node = head; node != nullptr; node = node->next) content += static_cast<char *>(node->data);
  EXPECT_EQ(content, "abcd");
  EXPECT_EQ(count_list(head), 4);
  delete_list(&head);
  EXPECT_EQ(count_list(head), 0);
}

TEST(token_list, splits_a_message) {
  const std::string most(500, 'm');
  const struct {
    std::string text;
    int complete;
    std::vector<std::string> data;
  } cases[] = {{"a", 0, {}},
               {"a0 ", 1, {""}},
               {"a3 a b 0  1 c", 3, {"a b", "", "c"}},
               {"a1 xZ1 y", 2, {"x", "y"}},
               {"a1 x rest", 1, {"x"}},
               {"a+2 ab 3z abc", 2, {"ab", "abc"}},
               {"ax yz", 1, {""}},
               {"a500 " + most, 1, {most}},
               // Lengths that lie.
               {"a1 x 501 m" + most, 0, {"x"}},
               {"a1 x 4 abc", 0, {"x"}},
               {"a1 x -1 y", 0, {"x"}},
               {"a1 x 2147483647 y", 0, {"x"}},
               {"a99999999999999999999 x", 0, {}}};
  for (const auto &c : cases) {
    const decoded decoded(c.text);
    EXPECT_EQ(std::tie(decoded.complete, decoded.data), std::tie(c.complete, c.data)) << c.text;
  }
}

TEST(token_list, reads_tokens_as_numbers) {
  const std::pair<const char *, int> numbers[] = {
      {"a3 120", 120},
      {"a2 -5", -5},
      {"a2 +7", 7},
      {"a3 12x", 12},
      {"a1 x", 0},
      {"a3 +-5", 0},
      {"a10 2147483648", INT_MAX},
      {"a12 -99999999999", INT_MIN},
      {"a20 00000000000000000012", 1}};  // the twentieth character is not looked at
  for (const auto &[text, expected] : numbers) {
    int value = 99;
    const decoded decoded(text);
    EXPECT_TRUE(get_int_token_by_number(&value, 1, decoded.head));
    EXPECT_FALSE(get_int_token_by_number(&value, 2, decoded.head));
    EXPECT_EQ(value, expected) << text;
  }
}

TEST_F(peer_list, keeps_a_room_as_first_announced) {
  const struct {
    const char *id, *ip, *text, *name, *guest;
    int time, color1, color2;
    const char *listed;
  } cases[] = {
      {"Rb4kT8mA", "10.0.0.7", "a8 XXXXXXXX 7 player1 3 Bob 2 75 1 2 5 65537", "player1", "Bob", 75, 2, 1,
       "Rb4kT8mA@10.0.0.7 60; "},
      {"0123456789", "1234567890123456", "a1 x 11 abcdefghijk 12 lmnopqrstuvw 10 1234567890 1 x 5 -1rst",
       "abcdefghij", "lmnopqrstu", 123456789, 0, 65535, "012345678@123456789012345 0; "},  // all cut
      {"empty", "10.0.0.7", "a1 x", "", "", 0, 0, 0, "empty@10.0.0.7 60; "}};
  for (const auto &c : cases) {
    announce(c.id, c.ip, 50, c.text);
    announce(c.id, c.ip, 60, "a8 XXXXXXXX 5 other 3 Eve 2 90 1 1 1 2");
    const room_record *room = get_peer_from_list(rooms);
    EXPECT_EQ(room->name + std::string(",") + room->joiner_name, c.name + std::string(",") + c.guest);
    EXPECT_EQ(std::tie(room->time, room->fighter1_color, room->fighter2_color),
              std::tie(c.time, c.color1, c.color2));
    EXPECT_TRUE(listed().starts_with(c.listed)) << listed();
  }
}

TEST_F(peer_list, removes_the_first_room_of_a_name_and_one_silent_room_a_call) {
  announce("twin", "10.0.0.1", 1000);
  announce("other", "10.0.0.1", 9000);
  announce("twin", "10.0.0.2", 2000);
  EXPECT_EQ(update_peer_heartbeat(40, "none", rooms), 0);
  delete_peer_from_list(&rooms, "none");
  EXPECT_EQ(listed(), "twin@10.0.0.2 2000; other@10.0.0.1 9000; twin@10.0.0.1 1000; ");
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 6000, 5000), 0);
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 6001, 5000), 1);
  EXPECT_EQ(listed(), "twin@10.0.0.2 2000; other@10.0.0.1 9000; ");
  delete_peer_from_list(&rooms, "twin");
  EXPECT_EQ(listed(), "other@10.0.0.1 9000; ");
  update_peer_heartbeat(0xFFFFF000, "other", rooms);  // the tick count is about to start again at 0
  for (const std::uint32_t now : {0xFFFFFF9C, 904u})
    EXPECT_EQ(check_hart_beat_for_list(&rooms, now, 5000), 0);
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 905, 5000), 1);
  EXPECT_EQ(listed(), "");
}

TEST_F(peer_list, lists_no_room_without_memory) {
  for (int call = 1; call <= 5; ++call) {  // the room; a token, its data and its node; the room's node
    world.failing = {{"calloc", call}};
    EXPECT_EQ(output_of([this] { announce("a", "10.0.0.1", 1, "a1 x"); }), no_memory);
    EXPECT_EQ(listed(), call == 1 || call == 5 ? "" : "a@10.0.0.1 1; ");
    delete_list(&rooms);
  }
}
