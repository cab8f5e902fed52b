// What every screen shows at two window sizes, compared pixel by pixel with the pictures in tests/pictures/.
// A picture that differs is left in build/pictures/; copy it over the old one when the change is meant.

#include <SDL_image.h>

#include <cstring>
#include <filesystem>

#include "core/window.h"
#include "media/graphics.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "screens/game_screen.h"
#include "screens/lan_menu.h"
#include "tests/support/network.h"
#include "tests/support/stage.h"

namespace {

// A match with the second fighter drawn over the first one's glove.
game_state *fight(int time_left, int score1, int score2, int distance) {
  game_state *game = static_cast<game_state *>(enter(screen_game));
  fighter_set_pos_from_unit(30, 30, game->fighter1);
  fighter_set_pos_from_unit(30 + distance, 42, game->fighter2);
  game->fighter1->punch_phase = punch_full;
  game->fighter1->punching_arm = arm_lower;
  game->fighter2->knock_frames = 2;
  game->time_left = time_left;
  game->fighter1->score = score1;
  game->fighter2->score = score2;
  return game;
}

void end_match(int score1, int score2) {
  std::swap(context.fighter1_color, context.fighter2_color);
  fight(0, score1, score2, 40);
  enter(screen_end);
}

// From here on the matches are on the LAN, and nothing has come from Ada for some ms.
void hear_nothing_for(Uint32 silent) {
  context.game_mode = mode_lan;
  share_room();
  netInfo.heartbeat = 1;
  world.ticks = silent + 1;
}

lan_menu_state *open_lobby(int page, const char *name) {
  lan_menu_state *lobby = static_cast<lan_menu_state *>(enter(screen_lan));
  lobby->mode = page;
  share_room();
  SDL_strlcpy(netInfo.username, name, sizeof netInfo.username);
  lan_load_username_texture();
  return lobby;
}

void list_rooms(int selection, int scroll) {
  lan_menu_state *lobby = open_lobby(page_room_list, "Bob");
  for (const char *room : {"Room0006", "Room0005", "Room0004", "Room0003", "Room0002", "Room0001"}) {
    update_peer_list("a1 x 3 Ada 0 ", "10.0.0.7", room, &creatorList);
  }
  lobby->room_selection = selection;
  lobby->room_scroll = scroll;
}

const struct view {
  const char *name;
  void (*open)();
  const char *keys = "";  // pressed then
} views[] = {
    {"main_menu", [] { enter(screen_main_menu); }},
    {"main_menu_exit", [] { enter(screen_main_menu); }, "DUU"},
    {"options", [] { enter(screen_options); }},
    {"options_changed", [] { enter(screen_options); }, "RDRDRRDR"},
    {"match", [] { fight(75, 99, 7, 4); }},
    {"match_over", [] { fight(-2, 101, 98, 60); }},
    {"pause", [] { fight(59, 3, 12, 40); }, "E"},
    {"pause_sound_off", [] { fight(59, 3, 12, 40); }, "ERDD"},
    {"pause_by_peer",
     [] { hear_nothing_for(1000), fight(75, 3, 12, 40)->paused = pause_by_peer, game_update(); }},
    {"disconnecting", [] { hear_nothing_for(1001), fight(75, 3, 12, 40), game_update(); }},
    {"end_won", [] { end_match(3, 1); }},
    {"end_lost", [] { end_match(0, 2); }, "D"},
    {"end_drawn", [] { end_match(101, 101); }, "DD"},
    {"end_lan", [] { hear_nothing_for(5000), end_match(1, 3); }},
    {"end_lan_lost_peer", [] { hear_nothing_for(5001), end_match(1, 3); }},
    {"lan_nameless", [] { open_lobby(page_name_entry, "")->name_selection = 1; }},
    {"lan_name", [] { open_lobby(page_name_entry, "Bob"); }},
    {"lan_no_rooms", [] { open_lobby(page_room_list, "Bob"); }},
    {"lan_rooms", [] { list_rooms(1, 0); }},
    {"lan_rooms_scrolled", [] { list_rooms(4, 2); }},
    {"lan_host", [] { open_lobby(page_host_room, "Bob"); }},
    {"lan_host_and_guest", [] { open_lobby(page_host_room, "Bob"), netInfo.guest_joined = 1; }, "U"},
    {"lan_joined", [] { SDL_strlcpy(open_lobby(page_joined_room, "Cid")->guest_name, "Bob", 11); }},
    {"lan_joining", [] { open_lobby(page_joined_room, "Bob"); }},
};

void expect_on_screen(const std::string &name) {
  const auto format = SDL_PIXELFORMAT_RGBA32;  // whose rows have no gaps
  const int w = context.window_width, h = context.window_height;
  SDL_Surface *shown = SDL_CreateRGBSurfaceWithFormat(0, w, h, 32, format);
  SDL_RenderReadPixels(gRenderer, nullptr, format, shown->pixels, shown->pitch);
  SDL_Surface *loaded = IMG_Load(("tests/pictures/" + name).c_str());
  SDL_Surface *expected = loaded == nullptr ? nullptr : SDL_ConvertSurfaceFormat(loaded, format, 0);
  if (expected == nullptr || expected->w != w || expected->h != h ||
      std::memcmp(shown->pixels, expected->pixels, static_cast<std::size_t>(shown->pitch * h)) != 0) {
    std::filesystem::create_directories("build/pictures");
    IMG_SavePNG(shown, ("build/pictures/" + name).c_str());
    ADD_FAILURE() << name << " differs; see build/pictures/";
  }
  for (SDL_Surface *surface : {shown, loaded, expected}) SDL_FreeSurface(surface);
}

}  // namespace

TEST(pictures, of_every_screen) {
  for (const SDL_Point size : {SDL_Point{800, 640}, {333, 257}}) {
    for (const view &view : views) {
      open_game game(size.x, size.y);
      view.open();
      push_keys(view.keys);
      context.state_machine->handle_input();
      context.state_machine->render();
      expect_on_screen(std::string(view.name) + "_" + std::to_string(size.x) + ".png");
      delete_list(&creatorList);
    }
  }
}

// Every combination of side, arm and flexed arm, a row for each phase.
TEST(pictures, of_every_pose) {
  open_game game(800, 640);
  SDL_SetRenderDrawColor(gRenderer, 20, 170, 40, 255);
  SDL_RenderClear(gRenderer);
  for (int i = 0; i < 7 * 18; ++i) {
    fighter figure = {};
    fighter_init(&figure, &commet_texture, 0, 0, i / 9 % 2, static_cast<Uint16>(1 + i % 2));
    figure.punch_phase = i / 18;
    figure.punching_arm = i / 4 % 2;
    figure.knock_frames = i / 2 % 4;
    figure.flex_pose = i % 9 % 4;
    figure.x = 6 + i % 18 * 44;
    figure.y = 80 + i / 18 * 70;
    fighter_render(&figure, 1, 2);
  }
  expect_on_screen("poses.png");
}
