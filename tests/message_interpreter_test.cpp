// What received messages do to a machine, and which of them a match takes in.

#include "net/message_interpreter.h"

#include <arpa/inet.h>

#include <cstring>
#include <sstream>

#include "app/context.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "screens/lan_room.h"
#include "tests/support/stage.h"
#include "tests/support/udp_link.h"

namespace {

// A message's text from its letter and its tokens.
std::string packet(const std::string &words) {
  std::istringstream stream(words);
  std::string text, word;
  for (stream >> text; stream >> word;)
    text += (text.size() == 1 ? "" : " ") + std::to_string(word.size()) + " " + word;
  return text;
}

// From the peer; with "!" before it from a stranger.
void interpret(const std::string &words) {
  fromAddr.sin_addr.s_addr = inet_addr(words[0] == '!' ? "10.0.0.7" : "127.0.0.1");
  interpret_message(packet(words.substr(words[0] == '!')).c_str(), 150);
}

// Bob in Ada's room, seven seconds after the start.
struct received : testing::Test {
  received() { context.game_mode = 2; }
  ~received() override { delete_list(&creatorList); }
  void reset() {
    world.ticks = 7000;
    context.state_machine->next_state = 0;
    netInfo = {0, 0, 'a', 120, 1, 2, port, 412, 0, 10, "Bob", "Ada", "127.0.0.1", "", "Rb4kT8mA"};
    delete_list(&creatorList);
    for (const char *room : {"Rb4kT8mA", "Other123"}) update_peer_list("a", "127.0.0.1", room, &creatorList);
  }
  std::string pairing() {
    const network_record &n = netInfo;
    std::ostringstream text;
    text << n.username << " " << n.peer_username << " " << n.peer_ip << " " << n.room_id << " "
         << +n.guest_joined << " " << n.fight_time << " " << n.fighter1_color << n.fighter2_color << " "
         << n.heartbeat << " " << context.state_machine->next_state << ",";
    for (const list_node *node = creatorList; node != nullptr; node = node->next)
      text << " " << get_peer_from_list(node)->heartbeat;
    return text.str();
  }
  open_game game{800, 640};
  int replaced = net_close();
  udp_link link;
  const std::uint16_t port = ntohs(toAddr.sin_port);
};

const std::string full_state = " 10 11 1 2 1 3 4 2 5 -2 -3 0 6 0 8 9 1 12 -1 ";
std::string journal;  // of a drained match: the value taken over in each frame, ">" with a screen asked for
int frames;

}  // namespace

TEST_F(received, messages_are_taken_by_screen_role_sender_and_room_and_only_whole) {
  const struct {
    std::string letter, values, accepted;  // screens, not hosting or hosting, sender, room, start requested
  } cases[] = {{"a", " Ada Bob 60 1 2", "3npsorwt"},
               {"b", " Bob", "3hpowt"},
               {"c", " 2 1", "3nhpowt"},
               {"d", " Bob", "3nhpot"},
               {"g", " Ada", "3npowt"},
               {"h", " Ada", "3nhpsorwt"},
               {"f", " 413 0 0 0 0", "2nhpowt"},
               {"i", " Bob", "23nhpowt"},
               {"j", " Bob", ""},
               {"e", " 413" + full_state + "1", "2nhpowt"}};
  for (const int screen : {1, 2, 3}) {
    void *shown = enter(screen);
    for (int i = 0; i < 160; ++i) {
      const auto &[letter, values, accepted] = cases[i / 16];
      const bool hosting = i & 1, strange = i & 2, elsewhere = i & 4, starting = i & 8;
      reset();
      netInfo.is_host = netInfo.guest_joined = hosting;
      if (screen == 3) static_cast<lan_menu_state *>(shown)->start_requested = starting;
      const std::string message =
          (strange ? "!" : "") + letter + (elsewhere ? " Other123" : " Rb4kT8mA") + values;
      const std::string before = pairing();
      interpret(message.substr(0, message.rfind(' ')));
      EXPECT_EQ(pairing(), before) << "cut short: " << message;
      interpret(message);
      bool taken = true;
      for (const char condition :
           {"0123"[screen], "nh"[hosting], "ps"[strange], "or"[elsewhere], "wt"[starting]})
        taken = taken && accepted.find(condition) != std::string::npos;
      EXPECT_EQ(pairing() != before, taken) << message << " on " << screen << " " << hosting << starting;
    }
  }
}

TEST_F(received, announcement_and_first_guest_are_taken_over) {
  const struct {
    std::uint8_t hosting;
    const char *message,
        *pairing;  // who, room, guest, time, colours, heartbeat, next screen; rooms' heartbeats
  } cases[] = {{0, "a Rb4kT8mA Eve Bo 75 1 9", "Bo Eve 127.0.0.1 Rb4kT8mA 0 75 12 7000 0, 0 7000"},
               {0, "a Rb4kT8mA Eve Bo 75 2 1", "Bo Eve 127.0.0.1 Rb4kT8mA 0 75 21 7000 0, 0 7000"},
               {1, "!b Other123 Cid", "Bob Cid 10.0.0.7 Rb4kT8mA 1 120 12 7000 0, 0 0"},
               {1, "d Rb4kT8mA Cid", "Bob Ada 127.0.0.1 Rb4kT8mA 0 120 12 10 2, 0 0"}};
  for (const auto &c : cases) {
    lan_menu_state *lobby = static_cast<lan_menu_state *>(enter(3));
    lobby->start_requested = 1;
    reset();
    netInfo.is_host = c.hosting;
    interpret(c.message);
    EXPECT_EQ(pairing(), c.pairing) << c.message;
    EXPECT_EQ(lobby->start_requested, c.message[0] != 'd');
  }
}

TEST_F(received, match_messages_are_mirrored_when_new_and_credible) {
  game_state *match = static_cast<game_state *>(enter(2));
  const auto values = [match] {
    std::ostringstream text;
    for (const fighter *f : {match->fighter1, match->fighter2})
      text << f->x << " " << f->y << " " << f->side << f->punch_phase << f->punching_arm << f->punch_frames
           << f->knock_frames << f->flex_pose << " " << f->score << " " << f->vel_x << " " << f->vel_y
           << ", ";
    text << match->time_left << " " << match->paused << " " << netInfo.received_msg_number;
    return text.str();
  };
  reset();
  const std::string steps[][2] = {
      // "" for no change
      {"f Rb4kT8mA 412 9 9 1 1", "172 130 000003 0 0 0, 476 350 100003 0 0 0, 120 0 412"},
      {"f Rb4kT8mA 413 100001 9 1 1", ""},
      {"e Rb4kT8mA 412" + full_state + "1", ""},
      {"e Rb4kT8mA 413 10 11 2" + full_state.substr(8) + "1", ""},
      {"e Rb4kT8mA 500" + full_state + "1", "172 135 121342 5 0 0, 124 65 060891 12 0 0, -1 2 500"},
      {"f Rb4kT8mA 499 -8 15 1 0", ""},
      {"f Rb4kT8mA 501 -8 15 1 0", "172 135 121342 5 0 0, 124 65 060891 12 -8 15, -1 0 501"}};
  for (std::string before; const auto &[message, after] : steps) {
    interpret(message);
    EXPECT_EQ(values(), after.empty() ? before : after) << message;
    before = values();
  }
  const int punches[][3] = {{0, 0, 0}, {0, 1, 1}, {0, 3, 0}, {1, 0, 1}, {2, 1, 2}};
  for (int number = 502; const auto &[phase, told, after] : punches) {
    match->fighter2->punch_phase = phase;
    interpret("f Rb4kT8mA " + std::to_string(number++) + " 0 0 " + std::to_string(told) + " 0");
    EXPECT_EQ(match->fighter2->punch_phase, after) << phase << told;
  }
  const int pauses[][3] = {{0, 0, 0}, {0, 1, 2}, {0, 2, 0}, {0, 7, 0}, {1, 0, 1}, {1, 1, 1},
                           {1, 2, 1}, {1, 7, 1}, {2, 0, 0}, {2, 1, 2}, {2, 2, 2}, {2, 7, 2}};
  for (int number = 600; const auto &[pause, told, after] : pauses) {
    for (const std::string kind : {"f", "e"}) {
      match->paused = pause;
      const std::string body = kind == "f" ? " 0 0 0 " : full_state;
      interpret(kind + " Rb4kT8mA " + std::to_string(number++) + body + std::to_string(told));
      EXPECT_EQ(match->paused, after) << kind << pause << told;
    }
  }
}

TEST_F(received, queue_is_drained_two_messages_a_frame) {
  const struct {
    int hosting, mode;
    const char *queue, *journal;  // "f4": controls with that speed, "e5": a game state with that clock
    int left;
  } cases[] = {
      {1, 2, "f4 f8 f9", "8 9 9 ", 0},   {1, 2, "f4 i f8", ">4 0 0 0 ", 0}, {1, 2, "f4 !f9 f8", "8 8 8 ", 0},
      {1, 2, "f4 !f9", "4 4 4 ", 0},     {1, 2, "!f9 !f9 f8", "8 8 8 ", 0}, {1, 2, "f4 b", "0 0 0 ", 0},
      {1, 2, "e5 e4", "0 0 0 ", 0},      {0, 2, "e5 e4 e3", "4 3 3 ", 0},   {0, 2, "e5 !e4 e3", "3 3 3 ", 0},
      {0, 2, "e5 i", "99 >4 99 99 ", 0}, {1, 1, "f4", "0 0 0 ", 1},         {0, 1, "e5", "99 99 99 ", 1}};
  sockaddr_in address = bindAddr;
  address.sin_port = 0;
  address.sin_addr.s_addr = inet_addr("127.0.0.2");
  const socket_handle stranger = socket_open();
  ASSERT_TRUE(socket_bind(stranger, address));
  for (const auto &c : cases) {
    static_cast<game_state *>(enter(2))->time_left = 99;
    reset();
    netInfo.is_host = static_cast<std::uint8_t>(c.hosting);
    context.game_mode = static_cast<Uint8>(c.mode);
    std::istringstream queue(c.queue);
    std::string word;
    for (int number = 413; queue >> word; ++number) {
      const std::string name = word.substr(word[0] == '!'), value = name.substr(1);
      const std::string body =
          name[0] == 'e' ? " 1 1 0 0 0 0 0 3 0 1 1 1 0 0 0 0 3 0 " + value + " 0" : " " + value + " 0 0 0";
      const std::string text = packet(name.substr(0, 1) + " Rb4kT8mA " + std::to_string(number) + body);
      socket_send(word[0] == '!' ? stranger : link.others[1], text.data(), static_cast<int>(text.size()),
                  bindAddr);
    }
    journal = "";
    frames = 0;
    context.state_machine->handle_input = [] {};
    context.state_machine->update = [] {
      int &next = context.state_machine->next_state;
      if (next != 0) journal += ">" + std::to_string(next) + " ";
      next = ++frames == 3 ? 6 : 0;
      world.ticks += 30;  // leaves a guest no time to wait
    };
    context.state_machine->render = [] {
      const game_state *match = static_cast<game_state *>(context.state_machine->screen);
      journal += std::to_string(netInfo.is_host ? match->fighter2->vel_x : match->time_left) + " ";
    };
    context_loop();
    EXPECT_EQ(journal, c.journal) << c.queue;
    EXPECT_EQ(net_check_descriptor(0, 0, net_readable), c.left) << c.queue;
    net_discard_pending();
  }
  socket_close(stranger);
}

TEST_F(received, flood_is_thrown_away_while_a_frame_of_the_match_sleeps) {
  const auto send = [&](int strangers) {
    for (int i = 0; i < strangers; ++i) socket_send(link.others[2], "junk", 4, bindAddr);
  };
  static int next_screen;
  for (const auto &[next, sleeps] : {std::pair{0, 17u + 1 + 1}, {1, 1u + 1 + 1}}) {  // goes on; ends
    enter(2);
    reset();
    netInfo.is_host = 1;
    std::strcpy(netInfo.peer_ip, "127.0.0.2");
    fromAddr = {};
    next_screen = next;
    context.frame_count = 0;
    context.state_machine->handle_input = [] {};
    context.state_machine->update = [] { context.state_machine->next_state = next_screen; };
    world.on_delay = [&] {
      if (context.frame_count == 1) send(1);
      if (context.frame_count == 2) context.state_machine->update = [] {};
      if (context.frame_count == 2) context.state_machine->next_state = 6;
    };
    world.delays.clear();
    send(201);
    context_loop();
    EXPECT_EQ(world.delays.size(), sleeps);
    EXPECT_EQ(net_check_descriptor(0, 0, net_readable), next);
    net_discard_pending();
  }
  for (const char *sender : {"127.0.0.2", "127.0.0.1"}) {
    std::strcpy(netInfo.peer_ip, sender);
    send(3);
    EXPECT_EQ(net_discard_strangers(), sender[8] == '2' ? 3 : 0) << "the peer's stay";
  }
}
