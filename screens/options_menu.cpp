#include "screens/options_menu.h"

#include <SDL.h>

#include <cstdio>
#include <utility>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "core/window.h"
#include "fight/fighter.h"
#include "fight/preview.h"
#include "media/graphics.h"
#include "media/layout.h"
#include "media/texture.h"
#include "screens/menu.h"

texture title;    // "Options"
texture option1;  // the sound row
texture option3;  // the difficulty row
texture option4;  // the time row

namespace {

enum options_row : int {
  row_sound = 1,
  row_difficulty = 2,
  row_time = 3,
  row_colors = 4,
};

void load_label(const char *text, texture *label, const char *failure_line) {
  texture_replace_text(text, label, gFont, text_color_dark, failure_line);
}

void load_sound() {
  load_label(context_sound_label(), &option1, "Unable to create option sound texture!");
}

void load_difficulty() {
  load_label(context_get()->difficulty == difficulty_easy ? "Difficulty: Easy" : "Difficulty: Hard", &option3,
             "Unable to create option difficulty texture!");
}

void load_time() {
  char text[time_label_size];
  load_label(time_label(context_get()->fight_time, text), &option4, "Unable to create option time texture!");
}

void swap_colors() {
  context_record *app = context_get();
  std::swap(app->fighter1_color, app->fighter2_color);
  std::swap(fighter1->color, fighter2->color);
}

void change(int row) {
  context_record *app = context_get();
  switch (row) {
    case row_sound:
      context_toggle_sound();
      load_sound();
      break;
    case row_difficulty:
      app->difficulty = app->difficulty == difficulty_easy ? difficulty_hard : difficulty_easy;
      load_difficulty();
      break;
    case row_time:
      context_next_fight_time();
      load_time();
      break;
    case row_colors:
      swap_colors();
      break;
    default:
      break;
  }
}

}  // namespace

void options_load(options_menu_state *options) {
  texture_replace_text("Options", &title, gFontBigger, text_color_dark,
                       "Unable to create options title texture!");
  load_sound();
  load_difficulty();
  load_time();
  preview_shrink_layout(0.6);
  preview_create({29, 0, context_get()->fighter1_color}, {67, 0, context_get()->fighter2_color});
  options->selected = row_sound;
}

void options_handle_input() {
  options_menu_state *options = current_options_menu();
  while (menu_poll_event()) {
    const SDL_Keycode key = menu_pressed_key();
    options->selected = move_selection(key, options->selected, row_sound, row_colors);
    if (key == SDLK_ESCAPE) context_state_machine()->next_state = screen_main_menu;
    if (key == SDLK_RETURN) change(options->selected);
  }
}

void options_update() {}

void options_render() {
  menu_begin_frame();
  layout_render_centered(&title, 0.5, layout_y(0.05));
  layout_render_centered(&option1, 0.5, layout_y(0.3));
  layout_render_centered(&option3, 0.5, layout_y(0.4));
  layout_render_centered(&option4, 0.5, layout_y(0.5));
  preview_render();
  menu_render_arrows(&option3, layout_y((current_options_menu()->selected - 1) * 0.1 + 0.3));
  SDL_RenderPresent(gRenderer);
}

void options_unload() {
  for (texture *label : {&title, &option1, &option3, &option4}) texture_unload(label);
  preview_restore_layout();
  preview_destroy();
}
