#include "tests/support/stage.h"

#include <SDL_image.h>
#include <SDL_ttf.h>

#include <array>
#include <cctype>
#include <regex>

#include "app/application.h"
#include "app/context.h"
#include "app/window.h"
#include "fight/game.h"
#include "media/graphics.h"
#include "media/sounds.h"

// No display, no sound card.
[[maybe_unused]] const int environment = setenv("SDL_VIDEODRIVER", "dummy", 1) +
                                         setenv("SDL_AUDIODRIVER", "dummy", 1) +
                                         setenv("SDL_RENDER_DRIVER", "software", 1);

open_game::open_game(int width, int height) {
  world = {};
  context = {};
  screen_width = width;
  screen_height = height;
  EXPECT_TRUE(init() && context_init() && graphics_load() && sounds_load());
}

open_game::~open_game() {
  context_teardown();
  close_sdl_window();
  EXPECT_EQ(world.textures, 0) << "textures that nobody destroyed";
}

namespace {
Mix_Chunk hit, miss, bell;
}

bare_match::bare_match(int game_mode) {
  world = {};
  context = {};
  SDL_Init(SDL_INIT_EVENTS);
  context.game_mode = static_cast<Uint8>(game_mode);
  context.window_width = 800;
  context.window_height = 640;
  context.unit_w = 4;
  context.unit_h = 5;
  context.ring = {132, 80, 536, 480};
  context.sound_on = 1;
  context.fight_time = 120;
  context.fighter1_color = 1;
  context.fighter2_color = 2;
  context.frame_count = 1;
  context.state_machine = &machine;
  machine.screen = &game;
  gPunchHit = &hit;
  gPunch = &miss;
  gBell = &bell;
  game_load(&game);
}

bare_match::~bare_match() {
  game_unload();
  gPunchHit = gPunch = gBell = nullptr;
  SDL_Quit();
}

void *enter(int screen) {
  context.state_machine->next_state = screen;
  state_change(context.state_machine);
  return context.state_machine->screen;
}

std::string output_of(const std::function<void()> &action) {
  testing::internal::CaptureStdout();
  action();
  return std::regex_replace(testing::internal::GetCapturedStdout(),
                            std::regex("((Error|ERROR|error): ).*?(?=\\n|$|Failed|Closing)"), "$1*");
}

void push_key(SDL_Keycode key, Uint32 type, Uint8 repeat) {
  SDL_Event event = {};
  event.type = type;
  event.key.repeat = repeat;
  event.key.keysym.sym = key;
  SDL_PushEvent(&event);
}

void push_keys(const std::string &letters) {
  const std::string names = "DUREXQ";
  const SDL_Keycode keys[] = {SDLK_DOWN, SDLK_UP, SDLK_RETURN, SDLK_ESCAPE, SDLK_KP_ENTER, 0};
  SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  for (const char letter : letters) {
    const auto key = names.find(static_cast<char>(std::toupper(letter)));
    push_key(keys[key], letter == 'Q' ? SDL_QUIT : SDL_KEYDOWN, std::islower(letter) ? 1 : 0);
  }
}

namespace {

// A text in the game's font.
SDL_Surface *draw_text(const char *text, int points, SDL_Color color) {
  TTF_Font *font = TTF_OpenFont("assets/8bit_block.ttf", points);
  SDL_Surface *surface = TTF_RenderUTF8_Solid(font, text, color);
  TTF_CloseFont(font);
  return surface;
}

void paint(SDL_Surface *surface, SDL_Rect area) {
  SDL_Texture *texture = SDL_CreateTextureFromSurface(gRenderer, surface);
  SDL_FreeSurface(surface);
  SDL_RenderCopy(gRenderer, texture, nullptr, &area);
  SDL_DestroyTexture(texture);
}

}  // namespace

SDL_Point text_size(const char *text, int points) {
  SDL_Surface *surface = draw_text(text, points, {});
  const SDL_Point size = {surface->w, surface->h};
  SDL_FreeSurface(surface);
  return size;
}

void paint_fill(const SDL_Rect &area, const SDL_Color &color) {
  SDL_SetRenderDrawColor(gRenderer, color.r, color.g, color.b, color.a);
  SDL_RenderFillRect(gRenderer, &area);
}

void paint_text(const std::string &text, int points, SDL_Color color, double column, int y) {
  SDL_Surface *surface = draw_text(text.c_str(), points, color);
  paint(surface, {static_cast<int>(column - surface->w * 0.5), y, surface->w, surface->h});
}

void paint_arrows(int right_x, int left_x, int y, int width, int height) {
  paint(IMG_Load("assets/to_right.png"), {right_x, y, width, height});
  paint(IMG_Load("assets/to_left.png"), {left_x, y, width, height});
}

void paint_menu_arrows(const char *reference, const layout &layout, int y) {
  const SDL_Point text = text_size(reference, layout.points);
  const int left = (layout.width - text.x) / 2;
  paint_arrows(left - layout.arrow * 3 / 2, left + text.x + layout.arrow / 2, y, layout.arrow, text.y);
}

void paint_fighter(int x, int y, const SDL_Color &color, const pose &pose, int unit_w, int unit_h) {
  fighter fighter = {};
  fighter.x = x;
  fighter.y = y;
  fighter.color = &color;
  fighter.texture = &commet_texture;
  fighter.side = pose.side;
  fighter.punch_phase = pose.punch_phase;
  fighter.knock_frames = pose.knock_frames;
  fighter.punching_arm = pose.punching_arm;
  fighter.flex_pose = pose.flex_pose;
  fighter_render(&fighter, unit_w, unit_h);
}

std::string difference(const picture &a, const picture &b) {
  if (a.width != b.width || a.pixels.size() != b.pixels.size()) return "size";
  SDL_Rect area = {};
  for (std::size_t i = 0; i < a.pixels.size(); ++i) {
    const int at = static_cast<int>(i);
    const SDL_Rect pixel = {at % a.width, at / a.width, 1, 1};
    if (a.pixels[i] != b.pixels[i]) SDL_UnionRect(&area, &pixel, &area);
  }
  return area.w == 0 ? "" : testing::PrintToString(std::array{area.x, area.y, area.w, area.h});
}
