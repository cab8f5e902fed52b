// What received messages do to a machine, and which of them a match takes in.

#include "lan/message_interpreter.h"

#include <arpa/inet.h>

#include <cstring>
#include <sstream>

#include "app/main_loop.h"
#include "core/context.h"
#include "fight/fighter.h"
#include "fight/game.h"
#include "fight/game_state.h"
#include "lan/lan_room.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "screens/game_screen.h"
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
std::string
    journal;  // of a drained match: the message taken in last in each frame, ">" with a screen asked for
int frames;
Uint32 spent_before_reading;

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
               {"f", " 413 0 0 0 0", "2nhpowt|3nhpot"},
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
      bool taken = false;
      std::istringstream ways(accepted);
      for (std::string way; std::getline(ways, way, '|');) {
        bool fits = true;
        for (const char condition :
             {"0123"[screen], "nh"[hosting], "ps"[strange], "or"[elsewhere], "wt"[starting]})
          fits = fits && way.find(condition) != std::string::npos;
        taken = taken || fits;
      }
      EXPECT_EQ(pairing() != before, taken) << message << " on " << screen << " " << hosting << starting;
    }
  }
}

TEST_F(received, announcement_and_first_guest_are_taken_over) {
  const struct {
    std::uint8_t hosting;
    const char *message,
        *pairing;  // who, room, guest, time, colours, heartbeat, next screen; rooms' heartbeats
  } cases[] = {{0, "!a Rb4kT8mA Eve Bo 75 1 9", "Bob Eve 127.0.0.1 Rb4kT8mA 0 75 12 7000 0, 0 7000"},
               {0, "a Rb4kT8mA Eve Bo 75 2 1", "Bob Eve 127.0.0.1 Rb4kT8mA 0 75 21 7000 0, 0 7000"},
               {0, "c Rb4kT8mA 2 1", "Bob Ada 127.0.0.1 Rb4kT8mA 0 120 21 7000 2, 0 0"},
               {1, "!b Other123 Cid", "Bob Cid 10.0.0.7 Rb4kT8mA 1 120 12 7000 0, 0 0"},
               {1, "f Rb4kT8mA 1 0 0 0 0", "Bob Ada 127.0.0.1 Rb4kT8mA 0 120 12 7000 2, 0 0"},
               {1, "d Rb4kT8mA Cid", "Bob Ada 127.0.0.1 Rb4kT8mA 0 120 12 7000 2, 0 0"}};
  for (const auto &c : cases) {
    lan_menu_state *lobby = static_cast<lan_menu_state *>(enter(3));
    lobby->start_requested = 1;
    reset();
    netInfo.is_host = c.hosting;
    interpret(c.message);
    EXPECT_EQ(pairing(), c.pairing) << c.message;
    EXPECT_EQ(lobby->start_requested, c.message[0] < 'd' || c.message[0] == 'g');
    EXPECT_STREQ(lobby->guest_name, std::strstr(c.message, " Bo ") != nullptr ? "Bo" : "");
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
      {"f Rb4kT8mA 501 -8 15 1 0", "172 135 121342 5 0 0, 124 65 060891 12 -16 20, -1 0 501"}};
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
                           {1, 2, 1}, {1, 7, 1}, {2, 0, 0}, {2, 1, 2}, {2, 2, 0}, {2, 7, 2}};
  for (int number = 600; const auto &[pause, told, after] : pauses) {
    for (const std::string kind : {"f", "e"}) {
      match->paused = pause;
      const std::string body = kind == "f" ? " 0 0 0 " : full_state;
      interpret(kind + " Rb4kT8mA " + std::to_string(number++) + body + std::to_string(told));
      EXPECT_EQ(match->paused, after) << kind << pause << told;
    }
  }
}

// Whatever the size of the guest's window, of which its controls tell.
TEST_F(received, guest_walks_by_the_blocks_of_the_host) {
  for (const auto &[width, height] : {std::pair{800, 640}, {1280, 1024}, {400, 320}}) {
    context.window_width = width;
    context.window_height = height;
    context_calc_units();
    context_calc_ring();
    const fighter &guest = *static_cast<game_state *>(enter(2))->fighter2;
    const int step_x = 4 * context.unit_w, step_y = 4 * context.unit_h;
    reset();
    for (int number = 413; const char *told : {" 4 -4", " 28 -32", " 8 -8"}) {
      interpret("f Rb4kT8mA " + std::to_string(number++) + told + " 0 0");
      EXPECT_EQ(std::tie(guest.vel_x, guest.vel_y), std::make_tuple(step_x, -step_y)) << width << told;
    }
  }
}

TEST_F(received, queue_is_drained_two_messages_a_frame) {
  const struct {
    int hosting, mode;
    const char *queue, *journal;
    int left;
    Uint32 spent = 0;  // ms of the frame before anything is read
  } cases[] = {
      {1, 2, "f f f", "2 3 3 ", 0},     {1, 2, "f i f", ">4 0 0 0 ", 0},   {1, 2, "f !f f", "3 3 3 ", 0},
      {1, 2, "f !f", "1 1 1 ", 0},      {1, 2, "!f !f f", "3 3 3 ", 0},    {1, 2, "f b", "0 0 0 ", 0},
      {1, 2, "e e", "0 0 0 ", 0},       {0, 2, "e e e", "2 3 3 ", 0},      {0, 2, "e !e e", "3 3 3 ", 0},
      {0, 2, "e i", "0 >4 0 0 ", 0},    {1, 1, "f", "0 0 0 ", 1},          {0, 1, "e", "0 0 0 ", 1},
      {1, 2, "f f f", "2 3 3 ", 0, 33}, {1, 2, "b !f f", "0 0 3 ", 0, 33}, {0, 2, "b e e", "0 3 3 ", 0, 33}};
  sockaddr_in address = bindAddr;
  address.sin_port = 0;
  address.sin_addr.s_addr = inet_addr("127.0.0.2");
  const socket_handle stranger = socket_open();
  ASSERT_TRUE(socket_bind(stranger, address));
  for (const auto &c : cases) {
    enter(2);
    reset();
    netInfo.is_host = static_cast<std::uint8_t>(c.hosting);
    context.game_mode = static_cast<Uint8>(c.mode);
    std::istringstream queue(c.queue);
    std::string word;
    for (int number = 413; queue >> word; ++number) {
      const std::string text = packet(word.substr(word[0] == '!') + " Rb4kT8mA " + std::to_string(number) +
                                      (word.back() == 'e' ? full_state + "0" : " 0 0 0 0"));
      socket_send(word[0] == '!' ? stranger : link.others[1], text.data(), static_cast<int>(text.size()),
                  bindAddr);
    }
    journal = "";
    frames = 0;
    spent_before_reading = c.spent;
    context.state_machine->handle_input = [] { world.ticks += spent_before_reading; };
    context.state_machine->update = [] {
      int &next = context.state_machine->next_state;
      if (next != 0) journal += ">" + std::to_string(next) + " ";
      next = ++frames == 3 ? 6 : 0;
      world.ticks += 30;  // leaves a guest no time to wait
    };
    context.state_machine->render = [] {
      journal += std::to_string(netInfo.received_msg_number % 412) + " ";
    };
    context_loop();
    EXPECT_EQ(journal, c.journal) << c.queue;
    EXPECT_EQ(net_check_descriptor(0, 0, net_readable), c.left) << c.queue;
    net_discard_pending();
  }
  socket_close(stranger);
}

// What the host hears when it runs the same punches.
TEST_F(received, guest_hears_hits_and_misses) {
  const struct {
    int phase, knock, phase_after, knock_after;  // fighter 1's phases, fighter 2's knock-back
    const char *sounds;
  } cases[] = {{2, 0, 4, 6, "hit "},  {3, 0, 4, 6, "hit "},  {0, 2, 0, 6, "hit "}, {0, 6, 0, 6, ""},
               {1, 0, 4, 0, "miss "}, {3, 0, 5, 0, "miss "}, {3, 1, 4, 0, ""},     {3, 0, 3, 0, ""},
               {0, 0, 4, 0, ""},      {4, 0, 5, 0, ""},      {2, 0, 3, 0, ""}};
  game_state *match = static_cast<game_state *>(enter(2));
  reset();
  for (int number = 413; const auto &c : cases) {
    for (const bool swapped : {false, true}) {
      fighter *puncher = swapped ? match->fighter2 : match->fighter1;
      fighter *other = swapped ? match->fighter1 : match->fighter2;
      *puncher = *other = {};
      puncher->punch_phase = c.phase;
      other->knock_frames = c.knock;
      const std::string told[] = {" 1 1 0 " + std::to_string(c.phase_after) + " 0 0 0 3 0",
                                  " 9 9 1 0 0 0 " + std::to_string(c.knock_after) + " 3 0"};
      world.sounds = "";
      interpret("e Rb4kT8mA " + std::to_string(number++) + told[swapped] + told[!swapped] + " 60 0");
      EXPECT_EQ(world.sounds, c.sounds) << &c - cases << swapped;
    }
  }
}

// One press is told in four frames, unless the host's state shows the punch or the frames take too long.
TEST_F(received, punch_is_told_until_it_is_seen) {
  const struct {
    const char *pressed,
        *mirrored;      // by frame: the punch key, and the phase that the host tells before, if it does
    Uint32 frame_time;  // ms
    const char *told;
  } cases[] = {{"x.......", "00000000", 33, "11110000"}, {"x...x...", "00000000", 33, "11111111"},
               {"x.......", "01123456", 33, "11123456"}, {"x.......", "00200000", 33, "11200000"},
               {"x.......", "00000000", 70, "11000000"}, {"x.......", "0----000", 33, "11110000"},
               {".x......", "30000000", 33, "31111000"}};
  for (const auto &c : cases) {
    game_state *match = static_cast<game_state *>(enter(2));
    reset();
    netInfo.received_msg_number = 0;
    std::string told;
    for (int frame = 0; frame < 8; ++frame) {
      if (c.mirrored[frame] != '-') match->fighter2->punch_phase = c.mirrored[frame] - '0';
      match->punch_unheard = match->punch_unheard && c.mirrored[frame] == '-';
      push_keys("");
      if (c.pressed[frame] == 'x') push_key(SDLK_SPACE);
      game_handle_input();
      const std::string message = link.sent_to('b').c_str();
      told += message[message.size() - 5];
      world.ticks += c.frame_time;
    }
    EXPECT_EQ(told, c.told) << c.pressed << c.mirrored << c.frame_time;
  }
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
