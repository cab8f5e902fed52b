#pragma once

// The text form of a message: one type letter, then tokens. A token is the length of its data in decimal, one
// space, and exactly that many bytes of data; one more space stands between two tokens, none behind the
// letter:
//
//   a8 Rb4kT8mA 7 player1 0  3 120 1 1 1 2
//
// Builders append tokens to a text. Receivers split a text into a token list and ask for tokens by number,
// counting from 1. What arrives is a stranger's: a length that is negative, too large or past the end of the
// text ends the decoding, and nothing outside the text is read.

#include <cstddef>
#include <cstdint>
#include <string_view>

struct list_node;

inline constexpr int token_data_most = 500;           // bytes of data that the decoder takes
inline constexpr int token_integer_most = 9;          // characters that an integer is written with
inline constexpr std::size_t token_number_size = 20;  // bytes of a text that a number is read from, with NUL

struct message_token {
  std::uint32_t number;  // position in the message, from 1
  std::int32_t length;   // bytes of data, 0 to token_data_most
  char *data;            // owned; no NUL behind it
};

// Encoding. `buffer` holds a text with a NUL, and room behind it for the token: that is the caller's duty.
// Both return `buffer`.

// Appends `length`, a space and the whole string; `length` is the string's own.
char *concat_str_to_buffer(const char *string, int length, char *buffer);
// Appends a token with the value in decimal; a value of ten or more characters is cut to its first nine.
char *concat_int_to_buffer(std::int32_t value, char *buffer);
// Zero-fills `size` bytes of the destination and writes the string's length into it in decimal, cut to fit.
// Returns the destination.
char *get_string_length_of_token(char *destination, std::size_t size, const char *string);

// Decoding.

// Appends a message_token to the list for every token of `text` from index `start` on. Returns how many there
// were. Returns 0 at a length that lies, and, after printing "Error, not enough memory", when there is no
// memory; tokens decoded before that stay in the list, which the caller deletes in any case.
int extract_tokens_from_transmission(const char *text, int start, list_node **head);
// Index of the n-th `character` at or after index `start`; -1 when the text has fewer.
int find_n_char(const char *text, char character, int n, int start);
// Puts the token last. False leaves it with the caller, see append.
bool add_token_to_message_token_list(message_token *token, list_node **head);

// Queries.

// The first token with that number, still owned by the list; null when there is none.
message_token *get_token_by_number(std::uint32_t number, const list_node *head);
// Copies a token's data into the destination of `size` bytes, cut to size - 1, with NULs up to its end.
// Returns the destination, or null when there is no such token; the destination is unchanged then.
char *get_string_token_by_number(char *destination, std::size_t size, std::uint32_t number,
                                 const list_node *head);
// Reads a token as a decimal number, from the first text_size - 1 characters of its data (at most
// token_number_size - 1). Returns false and leaves `value` unchanged when there is no such token.
bool get_int_token_by_number(int *value, std::uint32_t number, const list_node *head,
                             std::size_t text_size = token_number_size);
// The number that a text begins with: an optional sign and digits up to the first other character. No digits
// give 0; a number past the range of an int gives the nearest int.
int int_from_text(std::string_view text);

// Frees the data of every token and clears the pointers to it; records and nodes stay.
void free_tokens_from_list(list_node *head);
// Frees the list with everything in it and sets the head to null.
void delete_token_list(list_node **head);
