// Feeds a stranger's texts to the token decoder, the message reader and the room list. The input is a row of
// texts, parted by NULs, taken for datagrams that arrive one after the other.

#undef NDEBUG  // whatever the build, the assertions are what is checked
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <string>

#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/peer_list.h"
#include "net/token_list.h"

#define ENDS(text) (std::memchr(text, '\0', sizeof(text)) != nullptr)

// Every token is the piece of the text that its length says, right behind the one before.
static void check_tokens(const char *text) {
  list_node *tokens = nullptr;
  const char *data = text + (text[0] == '\0' ? 0 : 1);
  const int count = extract_tokens_from_transmission(text, static_cast<int>(data - text), &tokens);
  assert(count == 0 || count == count_list(tokens));
  for (const list_node *node = tokens; node != nullptr; node = node->next) {
    const message_token *token = static_cast<const message_token *>(node->data);
    data += std::strcspn(data, " ") + 1;
    assert(token->length >= 0 && data + token->length <= text + std::strlen(text));
    assert(std::memcmp(data, token->data, static_cast<std::size_t>(token->length)) == 0);
    data += token->length + 1;
  }
  delete_token_list(&tokens);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string input(reinterpret_cast<const char *>(data), size);
  list_node *rooms = nullptr;
  for (std::size_t from = 0; from < size; from += std::strlen(input.c_str() + from) + 1) {
    char *text = strdup(input.c_str() + from);  // past whose end nothing can be read unseen
    check_tokens(text);
    message message = {};
    if (message_read(text, &message)) update_peer_list(text, "10.0.0.1", message.room_id, &rooms);
    assert(ENDS(message.room_id) && ENDS(message.name) && ENDS(message.room.name) &&
           ENDS(message.room.guest_name));
    std::free(text);
  }
  for (const list_node *node = rooms; node != nullptr; node = node->next) {
    const room_record *room = get_peer_from_list(node);
    assert(ENDS(room->ip) && ENDS(room->name) && ENDS(room->joiner_name) && ENDS(room->room_id));
  }
  delete_list(&rooms);
  return 0;
}
