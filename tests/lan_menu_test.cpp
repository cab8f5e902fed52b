// The lobby's pages: names, rooms, and what their keys do and send.

#include "screens/lan_menu.h"

#include <arpa/inet.h>

#include <sstream>

#include "core/context.h"
#include "fight/fighter.h"
#include "fight/preview.h"
#include "media/graphics.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "tests/support/stage.h"
#include "tests/support/udp_link.h"

namespace {

const std::string announcement = " 3 Ada 0  3 120 1 1 1 2";  // after the letter and the room

void list_room(const std::string &room) {
  update_peer_list(("a8 " + room + announcement).c_str(), "127.0.0.1", room.c_str(), &creatorList);
  update_peer_heartbeat(5000, room.c_str(), creatorList);
}

template <typename... values>
std::string joined(const values &...all) {
  std::ostringstream text;
  ((text << all << " "), ...);
  return text.str();
}

// Bob on a page of the lobby, ten seconds after the start.
class lan_menu : public testing::Test {
 protected:
  ~lan_menu() override { delete_list(&creatorList); }
  void open(int page, std::uint8_t guest = 0) {
    netInfo.fighter1_color = 1;
    lobby = static_cast<lan_menu_state *>(enter(3));
    lobby->mode = page;
    world.ticks = 10000;
    context.fight_time = 120;
    netInfo = {guest, page == 2, 'a', 120, 1, 2, port, 0, 0, 5000, "Bob", "Ada", "127.0.0.1", "", "Rb4kT8mA"};
    net_setup_p2p_struct();
  }
  void press(const char *keys) {
    push_keys(keys);
    world.texts = "";
    lan_handle_input();
  }
  // The letters of what was sent to the group and, after a "/", to the peer.
  std::string sent() {
    std::string letters;
    for (const char to : {'a', 'b'}) {
      for (std::string text; !(text = link.sent_to(to)).empty();) letters += text[0];
      if (to == 'a') letters += "/";
    }
    return letters;
  }
  open_game game{800, 700};
  int replaced = net_close();
  udp_link link;
  const std::uint16_t port = ntohs(toAddr.sin_port);
  lan_menu_state *lobby = nullptr;
};

}  // namespace

TEST_F(lan_menu, name_takes_ten_bytes_of_whole_characters) {
  const struct {
    int row;
    const char *before, *keys, *typed, *name, *rendered;  // keys: "<" backspace; "c" and "v" with Ctrl
  } cases[] = {{0, "", "", "bob", "bob", ".......bob|"},
               {0, "abcdefghi", "", "jk", "abcdefghij", "abcdefghij|"},
               {0, "abcdefghij", "", "k", "abcdefghij", ""},
               {0, "abcdefgh", "", "éé", "abcdefghé", "abcdefghé|"},
               {0, "abcdefghi", "", "é", "abcdefghi", ".abcdefghi|"},
               {0, "abcdefgh", "", "a\x7F\u0085\tb", "abcdefghab", "abcdefghab|"},
               {0, "bob", "<", "", "bo", "........bo|"},
               {0, "boé€", "<", "", "boé", "......boé|"},
               {0, "boé", "<", "", "bo", "........bo|"},
               {0, "bob", "v", "v", "abcdefghi", ".abcdefghi|"},
               {0, "bob", "v", "", "abcdefghi", ".abcdefghi|"},
               {0, "bob", "cv", "c", "bob", ".......bob|"},
               {1, "bob", "<", "x", "bob", ""}};
  for (const auto &c : cases) {
    open(0);
    lobby->name_selection = c.row;
    SDL_strlcpy(netInfo.username, c.before, sizeof netInfo.username);
    SDL_SetClipboardText(
        "abcdefgh\tié");  // without what shows nothing, and cut before what does not fit whole
    push_keys("");
    for (const char key : std::string(c.keys))
      push_key(key == '<' ? '\b' : key, SDL_KEYDOWN, 0, key == '<' ? KMOD_NONE : KMOD_RCTRL);
    SDL_Event event = {};
    event.type = SDL_TEXTINPUT;
    SDL_strlcpy(event.text.text, c.typed, sizeof event.text.text);
    if (*c.typed != '\0') SDL_PushEvent(&event);
    SDL_SetModState(*c.keys > '<' && *c.typed != '\0' ? KMOD_LCTRL : KMOD_NONE);  // else up again already
    world.texts = "";
    lan_handle_input();
    EXPECT_EQ(joined(netInfo.username, world.texts), joined(c.name, c.rendered)) << c.keys << c.typed;
  }
  SDL_SetModState(KMOD_NONE);
}

TEST_F(lan_menu, text_input_is_on_while_a_name_is_typed) {
  EXPECT_FALSE(SDL_IsTextInputActive()) << "at the start";
  open(0);
  for (const auto &[keys, on] : {std::pair{"", true}, {"D", false}, {"U", true}, {"DR", false}}) {
    press(keys);
    EXPECT_EQ(SDL_IsTextInputActive() == SDL_TRUE, on) << keys;
  }
  open(0);
  press("");
  enter(screen_main_menu);
  EXPECT_FALSE(SDL_IsTextInputActive());
}

TEST_F(lan_menu, keys_change_page_and_room) {
  const struct {
    int page;
    std::uint8_t guest;
    const char *keys, *result;  // row, page, next screen; hosting, colour, time, guest, start; room id; sent
  } cases[] = {{0, 0, "R", "0 0 0 0 1 120 0 0 8 / "},   {0, 0, "DR", "1 1 0 0 1 120 0 0 8 / "},
               {0, 0, "UR", "2 2 0 1 1 120 0 0 8 / "},  {0, 0, "UDE", "0 0 1 0 1 120 0 0 8 / "},
               {1, 0, "E", "0 0 0 0 1 120 0 0 8 / "},   {1, 0, "RE", "0 1 0 0 1 120 0 0 8 / "},
               {2, 0, "R", "0 2 0 1 2 120 0 0 8 / "},   {2, 0, "DR", "1 2 0 1 1 60 0 0 8 / "},
               {2, 0, "DRR", "1 2 0 1 1 75 0 0 8 / "},  {2, 0, "DDR", "2 2 0 1 1 120 0 0 8 / "},
               {2, 1, "DDR", "2 2 0 1 1 120 1 1 8 / "}, {2, 0, "UR", "3 2 0 1 1 120 0 0 8 / "},
               {2, 1, "UR", "3 2 0 1 1 120 0 0 8 /g "}, {2, 1, "E", "0 0 0 0 1 120 0 0 0 hhh/ "},
               {3, 0, "DUR", "0 3 0 0 1 120 0 0 8 / "}, {3, 0, "E", "0 1 0 0 1 120 0 0 0 /i "},
               {1, 0, "QE", "0 1 6 0 1 120 0 0 8 / "},  {2, 1, "QE", "0 2 6 1 1 120 1 0 8 hhh/ "},
               {3, 0, "QE", "0 3 6 0 1 120 0 0 8 /i "}};
  for (const auto &c : cases) {
    open(c.page, c.guest);
    world.draws.assign(c.page == 0 && c.keys[0] == 'U' && c.keys[1] == 'R' ? 16 : 0, 1);
    link.send("queued while nobody listened");
    press(c.keys);
    const bool opened = c.page == page_name_entry && lobby->mode != page_name_entry;
    EXPECT_EQ(net_check_descriptor(0, 0, net_readable), opened ? 0 : net_readable) << c.page << c.keys;
    EXPECT_TRUE(lobby->mode != page_host_room || c.page == lobby->mode || world.texts == "Time: 02:00|");
    EXPECT_EQ(joined(c.page == 2 ? lobby->host_selection : lobby->name_selection, lobby->mode,
                     context.state_machine->next_state, +netInfo.is_host, netInfo.fighter1_color,
                     context.fight_time, +netInfo.guest_joined, +lobby->start_requested,
                     SDL_strlen(netInfo.room_id), sent()),
              c.result)
        << c.page << c.keys;
    EXPECT_TRUE(world.draws.empty()) << "a new room id";
    EXPECT_EQ(fighter1->color, graphics_get_color(netInfo.fighter1_color)) << c.keys;
  }
  open(0);
  for (const char *name : {"", "  "}) {
    SDL_strlcpy(netInfo.username, name, sizeof netInfo.username);
    press("DRDR");
    EXPECT_EQ(lobby->mode, 0) << "nothing opens without a name";
  }
  enter(screen_main_menu);
  EXPECT_EQ(context.unit_w, 4) << "the small fighters' blocks are the lobby's alone";
}

TEST_F(lan_menu, start_waits_for_the_guest_for_five_seconds) {
  open(2, 1);
  press("DDR");
  for (const auto &[ticks, letters] : {std::pair{14999, "/ccc"}, {15000, "/"}}) {
    world.ticks = static_cast<Uint32>(ticks);
    lobby->last_sent = world.ticks;
    netInfo.heartbeat = ticks;
    press("E");
    lan_update();
    EXPECT_EQ(joined(lobby->mode, +netInfo.guest_joined, sent()), joined(2, 1, letters)) << "keys wait";
  }
  press("DE");
  EXPECT_EQ(joined(lobby->mode, sent()), "0 hhh/ ");
  open(2, 1);
  press("DDR");
  press("EQ");
  lan_update();
  EXPECT_EQ(joined(lobby->mode, context.state_machine->next_state, sent()), "2 6 hhh/ ")
      << "the close does not";
}

TEST_F(lan_menu, room_list_scrolls_and_joins) {
  open(1);
  press("D");
  EXPECT_EQ(lobby->room_selection, 0) << "no room, no row";
  for (const char number : {'6', '5', '4', '3', '2', '1'}) list_room(std::string("Room000") + number);
  const char *steps[][2] = {
      {"R", "0 0  Ada (Room0001)| "},           {"D", "1 0 Room0001 Ada (Room0001)| "},
      {"DDD", "4 0 Room0004 Ada (Room0001)| "}, {"D", "4 1 Room0005 Ada (Room0002)| "},
      {"DDD", "4 2 Room0006 Ada (Room0003)| "}, {"UUU", "1 2 Room0003 Ada (Room0003)| "},
      {"U", "1 1 Room0002 Ada (Room0002)| "},   {"UU", "1 0 Room0001 Ada (Room0001)| "}};
  for (const auto &[keys, result] : steps) {
    press(keys);
    lan_render();
    EXPECT_EQ(
        joined(lobby->room_selection, lobby->room_scroll, lobby->selected_room_id, world.texts.substr(0, 15)),
        result)
        << keys;
  }
  press("DDDDD");
  delete_peer_from_list(&creatorList, "Room0003");
  world.texts = "";
  lan_render();
  EXPECT_EQ(
      joined(lobby->room_selection, lobby->room_scroll, lobby->selected_room_id, world.texts.substr(0, 15)),
      "4 1 Room0006 Ada (Room0002)| ")
      << "a list that has shrunk";
  netInfo.peer_ip[0] = '\0';
  netInfo.heartbeat = 0;
  lobby->guest_name[0] = 'x';
  toAddr.sin_addr.s_addr = 0;
  press("R");
  EXPECT_EQ(joined(lobby->mode, netInfo.peer_ip, netInfo.room_id, netInfo.heartbeat, lobby->guest_name),
            "3 127.0.0.1 Room0006 5000  ");
  press("E");
  EXPECT_EQ(sent(), "/i") << "also before the first joined message";
}
