#include "net/token_list.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>
#include <vector>

#include "net/linked_list.h"
#include "tests/support/stage.h"

namespace {

using strings = std::vector<std::string>;

// The tokens of a text behind its letter, and what their decoding returned.
struct decoded {
  explicit decoded(const std::string &message) {
    // A block of exactly its size, so that AddressSanitizer sees the first byte read behind it.
    const std::vector<char> text(message.c_str(), message.c_str() + message.size() + 1);
    result = extract_tokens_from_transmission(text.data(), 1, &head);
  }
  ~decoded() { delete_token_list(&head); }
  strings data() const {
    strings data;
    while (const message_token *token = get_token_by_number(static_cast<unsigned>(data.size() + 1), head)) {
      data.emplace_back(token->data, static_cast<std::size_t>(token->length));
    }
    return data;
  }
  int result = 0;
  list_node *head = nullptr;
};

}  // namespace

TEST(token_list, splits_a_message) {
  const std::string most(500, 'm');
  const std::tuple<std::string, int, strings> cases[] = {
      {"", 0, {}},
      {"a", 0, {}},
      {"a0 ", 1, {""}},
      {"a0  3 abc", 2, {"", "abc"}},
      {"a3 a b 1 c", 2, {"a b", "c"}},
      {"a8 Rb4kT8mA 7 player1 0  3 120 1 1 1 2", 6, {"Rb4kT8mA", "player1", "", "120", "1", "2"}},
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
      {"a99999999999999999999 x", 0, {}},
      {"a-99999999999999999999 x", 0, {}}};
  for (const auto &[text, result, data] : cases) {
    const decoded decoded(text);
    EXPECT_EQ(decoded.result, result) << text;
    EXPECT_EQ(decoded.data(), data) << text;
  }
}

TEST(token_list, reads_tokens_as_numbers) {
  const std::pair<const char *, int> numbers[] = {
      {"a3 120", 120},
      {"a2 -5", -5},
      {"a2 +7", 7},
      {"a3 007", 7},
      {"a3 12x", 12},
      {"a1 x", 0},
      {"a0 ", 0},
      {"a2  3", 0},
      {"a3 +-5", 0},
      {"a10 2147483648", INT_MAX},
      {"a12 -99999999999", INT_MIN},
      {"a19 9999999999999999999", INT_MAX},
      {"a20 00000000000000000012", 1}};  // the twentieth character is not looked at
  int value = 99;
  for (const auto &[text, expected] : numbers) {
    const decoded decoded(text);
    EXPECT_TRUE(get_int_token_by_number(&value, 1, decoded.head));
    EXPECT_EQ(value, expected) << text;
    EXPECT_FALSE(get_int_token_by_number(&value, 2, decoded.head));
    EXPECT_EQ(value, expected);
  }
}

TEST(token_list, gives_up_without_memory) {
  for (int call = 1; call <= 6; ++call) {  // token, data and node of each
    world.failing = {{"calloc", call}};
    const std::string output = output_of([call] {
      const decoded decoded("a1 x 1 y");
      EXPECT_EQ(decoded.result, 0);
      EXPECT_EQ(decoded.data(), call <= 3 ? strings{} : strings{"x"});
    });
    EXPECT_EQ(output, "Error, not enough memory\n");
  }
}
