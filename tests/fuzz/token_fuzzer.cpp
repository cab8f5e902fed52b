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

// What the room list makes of a message, some time after the last.
static void check_rooms(const char *text, const message &message, std::uint32_t now, list_node **rooms) {
  const int before = count_list(*rooms);
  if (message.letter == 'a')
    update_peer_list(text, now % 2 == 0 ? "10.0.0.1" : "10.0.0.2", message.room_id, rooms);
  if (message.letter == 'h') delete_peer_from_list(rooms, message.room_id);
  const int after = count_list(*rooms);
  assert(after == before || after - before == (message.letter == 'a' ? 1 : message.letter == 'h' ? -1 : 0));
  update_peer_heartbeat(now, message.room_id, *rooms);
  assert(after - check_hart_beat_for_list(rooms, now, 5000) == count_list(*rooms));
  for (const list_node *node = *rooms; node != nullptr; node = node->next) {
    const room_record *room = get_peer_from_list(node);
    assert(ENDS(room->ip) && ENDS(room->name) && ENDS(room->joiner_name) && ENDS(room->room_id));
  }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string input(reinterpret_cast<const char *>(data), size);
  list_node *rooms = nullptr;
  std::uint32_t now = 1;
  for (std::size_t from = 0; from < size; from += std::strlen(input.c_str() + from) + 1) {
    char *text = strdup(input.c_str() + from);  // past whose end nothing can be read unseen
    message message = {};
    check_tokens(text);
    if (message_read(text, &message)) check_rooms(text, message, now += 500, &rooms);
    assert(ENDS(message.room_id) && ENDS(message.name) && ENDS(message.room.name) &&
           ENDS(message.room.guest_name));
    std::free(text);
  }
  delete_list(&rooms);
  return 0;
}
