#include "net/token_list.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/say.h"
#include "net/linked_list.h"

namespace {

constexpr std::size_t int_text_size = 12;  // bytes of the longest int, "-2147483648", with NUL

void write_int(char (&text)[int_text_size], int value) {
  *std::to_chars(text, text + int_text_size - 1, value).ptr = '\0';
}

void append_token(char *buffer, const char *length, const char *data) {
  char *end = buffer + std::strlen(buffer);
  std::strcat(end, length);
  std::strcat(end, " ");
  std::strcat(end, data);
}

message_token *token_of(const list_node *node) {
  return static_cast<message_token *>(node->data);
}

void free_token(message_token *token) {
  if (token != nullptr) std::free(token->data);
  std::free(token);
}

// A token with a copy of `length` bytes; null without memory for it.
message_token *create_token(int number, const char *bytes, int length) {
  message_token *token = static_cast<message_token *>(std::calloc(1, sizeof(message_token)));
  if (token == nullptr) return nullptr;
  token->number = static_cast<std::uint32_t>(number);
  token->length = length;
  // An empty token has a byte of its own too, since null is to mean that there is no memory.
  token->data = static_cast<char *>(std::calloc(1, static_cast<std::size_t>(std::max(length, 1))));
  if (token->data == nullptr) {
    free_token(token);
    return nullptr;
  }
  std::memcpy(token->data, bytes, static_cast<std::size_t>(length));
  return token;
}

// Puts a new token at the end of the list. Prints a line and returns false without memory.
bool decode_token(int number, const char *bytes, int length, list_node **head) {
  message_token *token = create_token(number, bytes, length);
  if (token == nullptr) {
    say("Error, not enough memory\n");
    return false;
  }
  if (add_token_to_message_token_list(token, head)) return true;
  free_token(token);
  return false;
}

}  // namespace

char *concat_str_to_buffer(const char *string, int length, char *buffer) {
  char length_text[int_text_size];
  write_int(length_text, length);
  append_token(buffer, length_text, string);
  return buffer;
}

char *concat_int_to_buffer(std::int32_t value, char *buffer) {
  char text[int_text_size];
  write_int(text, value);
  text[token_integer_most] = '\0';
  char length_text[int_text_size];
  get_string_length_of_token(length_text, sizeof length_text, text);
  append_token(buffer, length_text, text);
  return buffer;
}

char *get_string_length_of_token(char *destination, std::size_t size, const char *string) {
  std::memset(destination, 0, size);
  std::snprintf(destination, size, "%zu", std::strlen(string));
  return destination;
}

int extract_tokens_from_transmission(const char *text, int start, list_node **head) {
  const int text_length = static_cast<int>(std::strlen(text));
  int count = 0;
  for (int space = find_n_char(text, ' ', 1, start); space != -1; space = find_n_char(text, ' ', 1, start)) {
    ++count;
    const int data = space + 1;
    const int length = int_from_text(std::string_view(text + start, text + space));
    if (length < 0 || length > token_data_most || length > text_length - data) return 0;
    if (!decode_token(count, text + data, length, head)) return 0;
    start = data + length + 1;
  }
  return count;
}

int find_n_char(const char *text, char character, int n, int start) {
  const int text_length = static_cast<int>(std::strlen(text));
  for (int i = start; i < text_length; ++i) {
    if (text[i] == character && --n == 0) return i;
  }
  return -1;
}

bool add_token_to_message_token_list(message_token *token, list_node **head) {
  return append(head, token);
}

message_token *get_token_by_number(std::uint32_t number, const list_node *head) {
  for (const list_node *node = head; node != nullptr; node = node->next) {
    if (token_of(node)->number == number) return token_of(node);
  }
  return nullptr;
}

char *get_string_token_by_number(char *destination, std::size_t size, std::uint32_t number,
                                 const list_node *head) {
  const message_token *token = get_token_by_number(number, head);
  if (token == nullptr) return nullptr;
  std::memset(destination, 0, size);
  std::memcpy(destination, token->data, std::min(static_cast<std::size_t>(token->length), size - 1));
  return destination;
}

bool get_int_token_by_number(int *value, std::uint32_t number, const list_node *head, std::size_t text_size) {
  char text[token_number_size];
  const std::size_t size = std::min(text_size, sizeof text);
  if (get_string_token_by_number(text, size, number, head) == nullptr) return false;
  *value = int_from_text(text);
  return true;
}

int int_from_text(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return 0;
  }
  int value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) return text.front() == '-' ? INT_MIN : INT_MAX;
  return value;
}

void free_tokens_from_list(list_node *head) {
  for (list_node *node = head; node != nullptr; node = node->next) {
    std::free(token_of(node)->data);
    token_of(node)->data = nullptr;
  }
}

void delete_token_list(list_node **head) {
  free_tokens_from_list(*head);
  delete_list(head);
}
