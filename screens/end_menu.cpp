#include "screens/end_menu.h"

#include <SDL.h>

#include <cstdio>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "core/window.h"
#include "fight/fighter.h"
#include "fight/preview.h"
#include "media/graphics.h"
#include "media/layout.h"
#include "net/net.h"
#include "screens/menu.h"

texture gameOver;    // "Game Over"
texture finalScore;  // the score line

namespace {

constexpr int column1 = 42;  // blocks of the ring, fighter 1
constexpr int column2 = 52;  // blocks of the ring, fighter 2
constexpr int row_winner = 34;
constexpr int row_loser = 22;
constexpr int row_draw = 28;
constexpr int loser_knock_frames = 7;  // throws the loser's head back

int row_of(int own_score, int other_score) {
  if (own_score == other_score) return row_draw;
  return own_score > other_score ? row_winner : row_loser;
}

// Nothing runs these values on here, so the poses stay.
void pose(fighter *winner, fighter *loser) {
  winner->punch_phase = punch_full;
  loser->knock_frames = loser_knock_frames;
}

void load_fighters(const end_menu_state *end) {
  const context_record *app = context_get();
  preview_create({column1, row_of(end->score1, end->score2), app->fighter1_color},
                 {column2, row_of(end->score2, end->score1), app->fighter2_color});
  if (end->score1 > end->score2) pose(fighter1, fighter2);
  if (end->score1 < end->score2) pose(fighter2, fighter1);
}

void load_score(const end_menu_state *end) {
  char text[32];
  if (context_is_lan() && net_peer_lost(SDL_GetTicks())) {
    std::snprintf(text, sizeof text, "Disconnected");
  } else {
    std::snprintf(text, sizeof text, "%d - %d", end->score1, end->score2);
  }
  texture_replace_text(text, &finalScore, gFont, text_color_dark, "Unable to create score texture!");
}

void activate(int item) {
  const int again = context_is_lan() ? screen_lan : screen_game;
  context_state_machine()->next_state = item == 1 ? again : screen_main_menu;
}

}  // namespace

void end_load(end_menu_state *end) {
  texture_replace_text("Game Over", &gameOver, gFontBigger, text_color_dark,
                       "Unable to create game over texture!");
  load_score(end);
  load_fighters(end);
  end->selected = 1;
  std::snprintf(end->labels[0], sizeof end->labels[0], "%s", context_is_lan() ? "LAN Games" : "Restart Game");
  std::snprintf(end->labels[1], sizeof end->labels[1], "%s", "Main Menu");
  for (int i = 0; i < end_menu_item_count; ++i) {
    end->items[i] = texture_create();
    end_load_menu_element(i, end->selected);
  }
}

void end_handle_input() {
  end_menu_state *end = current_end_menu();
  while (menu_poll_event()) {
    const SDL_Keycode key = menu_pressed_key();
    const int old = end->selected;
    end->selected = move_selection(key, old, 1, end_menu_item_count);
    menu_recolor_items(old, end->selected, end_unload_menu_element, end_load_menu_element);
    if (key == SDLK_RETURN) activate(end->selected);
  }
}

void end_update() {}

void end_render() {
  menu_begin_frame();
  end_render_winner();
  end_render_menu();
  SDL_RenderPresent(gRenderer);
}

void end_render_winner() {
  layout_render_centered(&gameOver, 0.5, layout_y(0.05));
  layout_render_centered(&finalScore, 0.5, layout_y(0.2));
  preview_render();
}

void end_render_menu() {
  const end_menu_state *end = current_end_menu();
  menu_render_arrows(end->items[0], layout_y((end->selected - 1) * 0.1 + 0.7));
  layout_render_centered(end->items[0], 0.5, layout_y(0.7));
  layout_render_centered(end->items[1], 0.5, layout_y(0.8));
}

void end_unload() {
  preview_destroy();
  texture_unload(&finalScore);
  texture_unload(&gameOver);
  for (int i = 0; i < end_menu_item_count; ++i) {
    end_unload_menu_element(i);
    texture_destroy(&current_end_menu()->items[i]);
  }
}

void end_load_menu_element(int index, int selected) {
  end_menu_state *end = current_end_menu();
  menu_load_item(end->labels[index], end->items[index], index + 1 == selected);
}

void end_unload_menu_element(int index) {
  texture_unload(current_end_menu()->items[index]);
}
