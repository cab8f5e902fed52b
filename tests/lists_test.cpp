// Lists of the tokens of a message, of what a message carries, and of the rooms that were announced.

#include <climits>

#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/peer_list.h"
#include "net/token_list.h"
#include "tests/support/stage.h"

namespace {

struct peer_list : testing::Test {
  ~peer_list() override { delete_list(&creatorList); }
  // Lists a room and hears it at a tick.
  void announce(const char *id, const char *ip, std::uint32_t now, const char *text = "a1 x 1 h 1 g") {
    update_peer_list(text, ip, id, &creatorList);
    update_peer_heartbeat(now, id, creatorList);
  }
  // Id, address and heartbeat of each room.
  std::string listed() const {
    std::string listed;
    for (const list_node *node = creatorList; get_peer_from_list(node) != nullptr; node = node->next) {
      const room_record *room = get_peer_from_list(node);
      listed += std::string(room->room_id) + "@" + room->ip + " " + std::to_string(room->heartbeat) + "; ";
    }
    return listed;
  }
};

}  // namespace

TEST(token_list, reads_tokens_as_numbers_and_stops_at_a_lie) {
  const char *text = "2 -5 2 +7 3 12x 3 +-5 10 2147483648 12 -99999999999 20 00000000000000000012";
  list_node *tokens = nullptr;
  extract_tokens_from_transmission(text, 0, &tokens);
  int value = 99;
  for (unsigned number = 1; const int expected : {-5, 7, 12, 0, INT_MAX, INT_MIN, 1}) {
    EXPECT_TRUE(get_int_token_by_number(&value, number++, tokens));
    EXPECT_EQ(value, expected) << "of the last one, nineteen characters are looked at";
  }
  EXPECT_FALSE(get_int_token_by_number(&value, 8, tokens));
  delete_token_list(&tokens);
  for (const std::string &lie : {std::string("4 abc"), std::string("-1 y"), "501 " + std::string(501, 'm')}) {
    EXPECT_EQ(extract_tokens_from_transmission(("1 x " + lie).c_str(), 0, &tokens), 0) << lie;
    delete_token_list(&tokens);
  }
}

TEST(message_reader, refuses_what_no_match_makes) {
  const struct {
    char letter;
    int token, least, most;
  } cases[] = {
      {'e', 2, 0, 999999999}, {'e', 3, -1000, 1000},  {'e', 4, -1000, 1000},     {'e', 5, 0, 1},
      {'e', 6, 0, 6},         {'e', 7, 0, 1},         {'e', 8, 0, 1000},         {'e', 9, 0, 1000},
      {'e', 10, 0, 3},        {'e', 11, 0, 9999},     {'e', 12, -1000, 1000},    {'e', 21, -1000000, 1000000},
      {'e', 22, 0, 255},      {'f', 2, 0, 999999999}, {'f', 3, -100000, 100000}, {'f', 4, -100000, 100000},
      {'f', 5, 0, 6},         {'f', 6, 0, 255}};
  for (const auto &c : cases) {
    for (const int value : {c.least - 1, c.least, c.most, c.most + 1}) {
      std::string text = c.letter + std::string("8 Rb4kT8mA");
      for (int token = 2; token <= 22; ++token) {
        const std::string number = std::to_string(token == c.token ? value : 0);
        text += " " + std::to_string(number.size()) + " " + number;
      }
      message read;
      EXPECT_EQ(message_read(text.c_str(), &read), value >= c.least && value <= c.most) << text;
    }
  }
}

TEST_F(peer_list, keeps_a_room_as_first_announced) {
  announce("Rb4kT8mA", "10.0.0.7", 50, "a8 XXXXXXXX 7 player1 3 Bob 2 75 1 2 5 65537");
  announce("Rb4kT8mA", "10.0.0.7", 60, "a8 XXXXXXXX 5 other 3 Eve 2 90 1 1 1 2");
  const char *too_long = "a1 x 11 abcdefghijk 12 lmnopqrstuvw 10 1234567890 1 x 5 -1rst";
  announce("0123456789", "1234567890123456", 0, too_long);
  EXPECT_EQ(listed(), "012345678@123456789012345 0; Rb4kT8mA@10.0.0.7 60; ");
  const room_record *cut = get_peer_from_list(creatorList), *room = get_peer_from_list(creatorList->next);
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
  delete_peer_from_list(&creatorList, "none");
  EXPECT_EQ(check_hart_beat_for_list(&creatorList, 6000, 5000), 0);
  EXPECT_EQ(check_hart_beat_for_list(&creatorList, 7001, 5000), 1);
  EXPECT_EQ(listed(), "other@10.0.0.1 9000; twin@10.0.0.1 1000; ");
  delete_peer_from_list(&creatorList, "twin");
  EXPECT_EQ(listed(), "other@10.0.0.1 9000; ");
  update_peer_heartbeat(0xFFFFF000, "other", creatorList);  // the tick count is about to start again at 0
  for (const std::uint32_t now : {0xFFFFFF9C, 904u, 905u})
    EXPECT_EQ(check_hart_beat_for_list(&creatorList, now, 5000), now == 905 ? 1 : 0);
}
