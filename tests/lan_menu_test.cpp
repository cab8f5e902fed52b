// The lobby's pages: names, rooms, and what their keys do and send.

#include "screens/lan_menu.h"

#include "fight/preview.h"
#include "media/graphics.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "tests/support/network.h"
#include "tests/support/stage.h"

namespace {

// Bob on a page of the lobby, ten seconds after the start.
struct lan_menu : testing::Test {
  ~lan_menu() override { delete_list(&creatorList); }
  void open(int page, std::uint8_t guest = 0) {
    lobby = static_cast<lan_menu_state *>(enter(screen_lan));
    EXPECT_TRUE(netInfo.is_host + netInfo.guest_joined == 0 && *netInfo.room_id + *netInfo.peer_ip == 0);
    EXPECT_TRUE(world.ticks == 0 || *netInfo.username != '\0') << "the name is kept";
    lobby->mode = page;
    world.ticks = 10000;
    context.fight_time = 120;
    share_room();
    netInfo.is_host = page == page_host_room;
    netInfo.guest_joined = guest;
    netInfo.heartbeat = 5000;
  }
  void press(const char *keys) {
    push_keys(keys);
    world.texts = "";
    lan_handle_input();
  }
  // The letters of what was sent.
  static std::string sent() {
    std::string letters;
    for (const datagram &each : network.sent) letters += each.bytes[0];
    network.sent.clear();
    return letters;
  }
  open_game game{800, 700};
  lan_menu_state *lobby = nullptr;
};

}  // namespace

TEST_F(lan_menu, name_takes_ten_bytes_of_whole_characters) {
  const struct {
    const char *before, *keys, *typed, *name, *field;  // keys: "<" backspace; "c" and "v" with Ctrl
    bool held = false;                                 // Ctrl is still down when all that is handled
  } cases[] = {{"abcdefghi", "", "jk", "abcdefghij", "abcdefghij|"},
               {"abcdefghij", "", "k", "abcdefghij", ""},
               {"abcdefghi", "", "é", "abcdefghi", ".abcdefghi|"},
               {"abcdefgh", "", "a\x7F\u0085\tb", "abcdefghab", "abcdefghab|"},
               {"boé€", "<", "", "boé", "......boé|"},
               {"", "<", "vic", "vic", ".......vic|"},
               {"bob", "v", "v", "abcdefghi", ".abcdefghi|", true},
               {"bob", "cv", "c", "bob", ".......bob|", true},
               {"bob", "v", "", "abcdefghi", ".abcdefghi|"}};
  for (const auto &c : cases) {
    open(page_name_entry);
    SDL_strlcpy(netInfo.username, c.before, sizeof netInfo.username);
    SDL_SetClipboardText("abcdefgh\tié");  // of which the tabulator shows nothing, and "é" does not fit whole
    push_keys("");
    for (const char key : std::string(c.keys))
      push_key(key == '<' ? '\b' : key, SDL_KEYDOWN, 0, key == '<' ? KMOD_NONE : KMOD_RCTRL);
    SDL_Event event = {};
    event.type = SDL_TEXTINPUT;
    SDL_strlcpy(event.text.text, c.typed, sizeof event.text.text);
    if (*c.typed != '\0') SDL_PushEvent(&event);
    SDL_SetModState(c.held ? KMOD_LCTRL : KMOD_NONE);
    world.texts = "";
    lan_handle_input();
    EXPECT_EQ(netInfo.username + (" " + world.texts), c.name + (" " + std::string(c.field)));
    EXPECT_EQ(SDL_IsTextInputActive() == SDL_TRUE, std::string(c.name).size() < 10);
  }
}

TEST_F(lan_menu, keys_lead_from_page_to_page) {
  const struct {
    int page;
    const char *keys;
    int page_after, next_screen;
    const char *sent;
  } cases[] = {{page_name_entry, "DR", page_room_list, 0, ""},
               {page_name_entry, "UR", page_host_room, 0, ""},
               {page_name_entry, "UDE", page_name_entry, screen_main_menu, ""},
               {page_room_list, "E", page_name_entry, 0, ""},
               {page_room_list, "QE", page_room_list, screen_quit, ""},
               {page_host_room, "E", page_name_entry, 0, "hhh"},
               {page_host_room, "QE", page_host_room, screen_quit, "hhh"},
               {page_joined_room, "DRE", page_room_list, 0, "i"},
               {page_joined_room, "QE", page_joined_room, screen_quit, "i"}};
  for (const auto &c : cases) {
    open(c.page, c.page == page_host_room);
    world.draws = {1, 8, 2, 24, 3, 24, 4, 9, 5, 25, 0, 26, 7, 0, 8, 1};  // for a new room's id
    network.inbox = {{stranger_ip, "queued while nobody listened"}};
    press(c.keys);
    SCOPED_TRACE(std::to_string(c.page) + c.keys);
    EXPECT_EQ(network.inbox.empty(), c.page == page_name_entry && c.page_after != page_name_entry);
    EXPECT_EQ(std::tie(lobby->mode, context.state_machine->next_state),
              std::tie(c.page_after, c.next_screen));
    EXPECT_EQ(SDL_IsTextInputActive() == SDL_TRUE, lobby->mode == page_name_entry);
    EXPECT_EQ(sent(), c.sent);
    EXPECT_EQ(netInfo.is_host == 1, c.page_after == page_host_room);
    const bool left = c.page >= page_host_room && c.page_after < page_host_room;
    const bool made = c.page == page_name_entry && c.page_after == page_host_room;
    EXPECT_EQ(std::string(netInfo.room_id).empty() && netInfo.guest_joined == 0, left);
    EXPECT_EQ(made ? world.texts + netInfo.room_id : "", made ? "Time: 02:00|8yY0aB0b" : "");
  }
  open(page_name_entry);
  SDL_strlcpy(netInfo.username, "  ", sizeof netInfo.username);
  press("DRDR");
  EXPECT_EQ(lobby->mode, page_name_entry) << "nothing opens without a name";
  EXPECT_FALSE(SDL_IsTextInputActive()) << "on Create";
  press("D");
  EXPECT_TRUE(SDL_IsTextInputActive());
  enter(screen_main_menu);
  EXPECT_FALSE(SDL_IsTextInputActive());
}

TEST_F(lan_menu, host_sets_up_the_match) {
  open(page_host_room);
  press("R");
  EXPECT_EQ(fighter1->color, graphics_get_color(2));
  press("DRR");
  EXPECT_EQ(world.texts, "Time: 01:00|Time: 01:15|");
  press("DR");
  EXPECT_EQ(lobby->start_requested, 0) << "there is no guest";
  open(page_host_room, 1);
  press("UR");
  EXPECT_EQ(sent() + netInfo.peer_ip, "g");
}

TEST_F(lan_menu, start_waits_for_the_guest_for_five_seconds) {
  open(page_host_room, 1);
  press("DDR");
  for (const auto &[ticks, letters] : {std::pair{14999u, "ccc"}, {15000u, ""}}) {
    lobby->last_sent = world.ticks = ticks;
    net_peer_heard(ticks);
    press("E");
    lan_update();
    EXPECT_EQ(sent(), letters);
    EXPECT_EQ(lobby->mode, page_host_room) << "keys wait";
  }
  press("R");  // on "Start Game" still
  press("EQ");
  lan_update();
  EXPECT_EQ(sent(), "hhh") << "the close does not wait";
}

TEST_F(lan_menu, room_list_scrolls_and_joins_and_is_come_back_to) {
  open(page_room_list);
  press("D");
  EXPECT_EQ(lobby->room_selection, 0) << "no room, no row";
  for (const char *room : {"Room0006", "Room0005", "Room0004", "Room0003", "Room0002", "Room0001"})
    update_peer_list("a1 x 3 Ada", "10.0.0.3", room, &creatorList);
  const struct {
    const char *keys;
    int row;
    std::string chosen, first_shown;
  } steps[] = {{"R", 0, "", "1"},
               {"D", 1, "Room0001", "1"},
               {"DDD", 4, "Room0004", "1"},
               {"DDDD", 4, "Room0006", "3"},
               {"UUUU", 1, "Room0002", "2"},
               {"UU", 1, "Room0001", "1"},
               {"DDDDD-", 4, "Room0006", "2"}};
  for (const auto &[keys, row, chosen, first_shown] : steps) {
    press(keys);
    if (std::string(keys).ends_with("-")) delete_peer_from_list(&creatorList, "Room0003");
    lan_render();
    EXPECT_EQ(lobby->selected_room_id + std::to_string(lobby->room_selection), chosen + std::to_string(row));
    EXPECT_TRUE(world.texts.starts_with("Ada (Room000" + first_shown + ")|")) << keys << world.texts;
  }
  net_reset_peer_info();
  update_peer_heartbeat(6000, "Room0006", creatorList);
  lobby->guest_name[0] = 'x';
  press("R");
  EXPECT_EQ(std::string(netInfo.peer_ip) + netInfo.room_id + lobby->guest_name, "10.0.0.3Room0006");
  EXPECT_EQ(std::tie(lobby->mode, netInfo.heartbeat), std::make_tuple(page_joined_room, 6000));
  EXPECT_EQ(output_of(lan_render), "") << "the host has no name yet";
  for (const char *message : {"g8 Room0006 3 Ada", "h8 Room0006 3 Ada"}) {
    network.inbox = {{"10.0.0.3", message}};
    lobby->last_sent = 0;
    EXPECT_EQ(output_of(lan_update), "") << "who is sent away does not answer";
    EXPECT_EQ(lobby->mode, page_room_list);
    update_peer_list("a1 x 3 Ada", "10.0.0.3", "Room0006", &creatorList);
    press("R");
  }
  push_keys("Q");
  lan_handle_input();
  EXPECT_EQ(sent_to("10.0.0.3"), "i8 Room0006 3 Bob|") << "before anything else was said";
  context.state_machine->next_state = screen_none;
  update_peer_heartbeat(world.ticks = 11001, "Room0006", creatorList);
  lan_update();
  EXPECT_TRUE(lobby->mode == page_room_list && find_room(creatorList, "Room0006") == nullptr) << "it is lost";
}
