// The match on screen. Texts are rendered afresh every frame into the scratch texture.

#include <SDL.h>

#include <cstdio>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "core/window.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "media/graphics.h"
#include "media/layout.h"
#include "net/net.h"
#include "screens/game_screen.h"

namespace {

constexpr SDL_Color ring_edge_color = {0, 90, 100, 255};
constexpr double clock_row = 0.05;  // of the height left over by the text

// Returns the text's height in pixels, for what is drawn beside it; 0 when there is no text.
int draw_centered(const char *text, TTF_Font *font, SDL_Color color, double row, const char *failure_line,
                  bool dimmed = false) {
  texture_replace_text(text, &gTemp, font, color, failure_line);
  if (gTemp.handle == nullptr) return 0;
  const int height = gTemp.height;
  layout_render_dimmed(&gTemp, 0.5, layout_y(row), dimmed);
  texture_unload(&gTemp);
  return height;
}

// A text of the match's top row, centred on a fraction of the width.
void draw_top_text(const char *text, double column, const char *failure_line) {
  texture_replace_text(text, &gTemp, gFont, game_text_color, failure_line);
  if (gTemp.handle == nullptr) return;
  const int y = static_cast<int>((context_get()->window_height - gTemp.height) * clock_row);
  layout_render_centered(&gTemp, column, y);
  texture_unload(&gTemp);
}

void draw_score(const fighter *fighter, double column) {
  char text[12];
  std::snprintf(text, sizeof text, "%d", fighter->score);
  draw_top_text(text, column, "Unable to load texture from text (Score)!");
}

void draw_ring() {
  const context_record *app = context_get();
  layout_fill(app->ring, ring_color);
  SDL_SetRenderDrawColor(gRenderer, ring_edge_color.r, ring_edge_color.g, ring_edge_color.b,
                         ring_edge_color.a);
  SDL_RenderDrawRect(gRenderer, &app->ring);
}

void draw_pause_status(int paused) {
  char text[32] = "Press ESC to resume";
  if (paused == pause_by_peer) std::snprintf(text, sizeof text, "Paused by %s", netInfo.peer_username);
  draw_centered(text, gFont, text_color_red, 0.8, nullptr);
}

// Marks the highlighted item; `height` is that of the items' text in pixels.
void draw_pause_markers(int selection, int height) {
  const double width = context_get()->window_width;
  const int left_arrow_x = static_cast<int>(width * 0.75 - width * 0.05);
  layout_render_arrows(layout_x(0.25), left_arrow_x, layout_y((selection - 1) * 0.1 + 0.4), height);
}

}  // namespace

void game_render() {
  const game_state *game = current_game();
  layout_fill_window(game_bg_color);
  draw_ring();
  fighter_render(game->fighter1, 0, 0);
  fighter_render(game->fighter2, 0, 0);
  game_render_timer();
  game_render_score();
  if (game->paused != pause_none) game_render_pause_menu();
  if (game->peer_silent != 0) game_render_disconnecting();
  SDL_RenderPresent(gRenderer);
}

void game_render_timer() {
  char text[6];
  seconds_to_time(current_game()->time_left, text);
  draw_top_text(text, 0.5, "Unable to load texture from text (Time)!");
}

void game_render_score() {
  draw_score(current_game()->fighter1, 0.25);
  draw_score(current_game()->fighter2, 0.75);
}

void game_render_pause_menu() {
  const context_record *app = context_get();
  layout_fill(app->ring, ring_color);
  draw_centered("Game Paused", gFontBigger, text_color_dark, 0.2,
                "Unable to load texture from text (Pause title)!");
  draw_centered(context_sound_label(), gFont, text_color_dark, 0.4,
                "Unable to load texture from text (pause sound)!");
  draw_centered("Restart", gFont, text_color_dark, 0.5, nullptr, context_is_lan());
  const int item_height = draw_centered("Quit", gFont, text_color_dark, 0.6, nullptr);
  draw_pause_status(current_game()->paused);
  draw_pause_markers(current_game()->pause_selection, item_height);
}

void game_render_disconnecting() {
  layout_fill(context_get()->ring, ring_color);
  draw_centered("Disconnecting", gFont, text_color_red, 0.5,
                "Unable to load texture from text (peer disconnected)!");
}
