// Lists of the tokens of a message, of what a message carries, and of the rooms that were announced.

#include <gtest/gtest.h>

#include <climits>

#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/peer_list.h"
#include "net/token_list.h"
#include "tests/support/stage.h"

namespace {

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

TEST(token_list, splits_a_message) {
  const std::string most(500, 'm');
  const struct {
    std::string text;
    int complete;  // tokens, or 0 when a length lied
    std::vector<std::string> data;
  } cases[] = {{"a", 0, {}},
               {"a3 a b 0  1 c", 3, {"a b", "", "c"}},
               {"a+2 abZ3z abcx yz", 3, {"ab", "abc", ""}},
               {"a500 " + most, 1, {most}},
               {"a1 x 501 m" + most, 0, {"x"}},
               {"a1 x 4 abc", 0, {"x"}},
               {"a1 x -1 y", 0, {"x"}}};
  for (const auto &c : cases) {
    list_node *tokens = nullptr;
    EXPECT_EQ(extract_tokens_from_transmission(c.text.c_str(), 1, &tokens), c.complete) << c.text;
    EXPECT_EQ(count_list(tokens), static_cast<int>(c.data.size()));
    for (unsigned number = 1; const std::string &data : c.data) {
      const message_token *token = get_token_by_number(number++, tokens);
      EXPECT_EQ(std::string(token->data, static_cast<std::size_t>(token->length)), data) << c.text;
    }
    delete_token_list(&tokens);
  }
}

TEST(token_list, reads_tokens_as_numbers) {
  const std::pair<const char *, int> numbers[] = {
      {"2 -5", -5},
      {"2 +7", 7},
      {"3 12x", 12},
      {"3 +-5", 0},
      {"10 2147483648", INT_MAX},
      {"12 -99999999999", INT_MIN},
      {"20 00000000000000000012", 1}};  // the twentieth character is not looked at
  for (const auto &[text, expected] : numbers) {
    list_node *tokens = nullptr;
    int value = 99;
    extract_tokens_from_transmission(text, 0, &tokens);
    EXPECT_TRUE(get_int_token_by_number(&value, 1, tokens));
    EXPECT_FALSE(get_int_token_by_number(&value, 2, tokens));
    EXPECT_EQ(value, expected) << text;
    delete_token_list(&tokens);
  }
}

TEST(message_reader, refuses_what_no_match_makes) {
  using numbers = std::vector<int>;
  const std::tuple<char, int, numbers> cases[] = {
      {'f', -1, {0, -100000, -100000, 0, 0}},
      {'f', 1, {999999999, 100000, 100000, 6, 255}},
      {'e', -1, {0, -1000, -1000, 0, 0, 0, 0, 0, 0, 0, -1000, -1000, 0, 0, 0, 0, 0, 0, 0, -1000000, 0}},
      {'e', 1, {999999999, 1000, 1000, 1, 6,    1,    1000, 1000, 3,       9999, 1000,
                1000,      1,    6,    1, 1000, 1000, 3,    9999, 1000000, 255}}};
  for (const auto &[letter, step, limits] : cases) {
    for (std::size_t beyond = 0; beyond <= limits.size(); ++beyond) {  // none in the last round
      std::string text = letter + std::string("8 Rb4kT8mA");
      for (std::size_t i = 0; i < limits.size(); ++i) {
        const std::string number = std::to_string(limits[i] + (i == beyond ? step : 0));
        text += " " + std::to_string(number.size()) + " " + number;
      }
      message read;
      EXPECT_EQ(message_read(text.c_str(), &read), beyond == limits.size()) << text;
    }
  }
}

TEST_F(peer_list, keeps_a_room_as_first_announced) {
  announce("Rb4kT8mA", "10.0.0.7", 50, "a8 XXXXXXXX 7 player1 3 Bob 2 75 1 2 5 65537");
  announce("Rb4kT8mA", "10.0.0.7", 60, "a8 XXXXXXXX 5 other 3 Eve 2 90 1 1 1 2");
  const char *too_long = "a1 x 11 abcdefghijk 12 lmnopqrstuvw 10 1234567890 1 x 5 -1rst";
  announce("0123456789", "1234567890123456", 0, too_long);
  EXPECT_EQ(listed(), "012345678@123456789012345 0; Rb4kT8mA@10.0.0.7 60; ");
  const room_record *cut = get_peer_from_list(rooms), *room = get_peer_from_list(rooms->next);
  EXPECT_EQ(std::string(cut->name) + cut->joiner_name, "abcdefghijlmnopqrstu");
  EXPECT_EQ(room->name + std::string(room->joiner_name), "player1Bob");
  EXPECT_EQ(std::tie(cut->time, cut->fighter1_color, cut->fighter2_color),
            std::make_tuple(123456789, 0, 65535));
  EXPECT_EQ(std::tie(room->time, room->fighter1_color, room->fighter2_color), std::make_tuple(75, 2, 1));
}

TEST_F(peer_list, removes_the_first_room_of_a_name_and_one_silent_room_a_call) {
  announce("twin", "10.0.0.1", 1000);
  announce("other", "10.0.0.1", 9000);
  announce("twin", "10.0.0.2", 2000);
  delete_peer_from_list(&rooms, "none");
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 6000, 5000), 0);
  EXPECT_EQ(check_hart_beat_for_list(&rooms, 7001, 5000), 1);
  EXPECT_EQ(listed(), "other@10.0.0.1 9000; twin@10.0.0.1 1000; ");
  delete_peer_from_list(&rooms, "twin");
  EXPECT_EQ(listed(), "other@10.0.0.1 9000; ");
  update_peer_heartbeat(0xFFFFF000, "other", rooms);  // the tick count is about to start again at 0
  for (const std::uint32_t now : {0xFFFFFF9C, 904u, 905u})
    EXPECT_EQ(check_hart_beat_for_list(&rooms, now, 5000), now == 905 ? 1 : 0);
}
