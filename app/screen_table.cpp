#include "app/screen_table.h"

#include "fight/fighter.h"
#include "fight/game_state.h"
#include "screens/end_menu.h"
#include "screens/game_screen.h"
#include "screens/lan_menu.h"
#include "screens/main_menu.h"
#include "screens/options_menu.h"

namespace {

// A load operation behind the type that the table calls it by.
template <typename record, void (*load)(record *)>
void load_as(void *screen) {
  load(static_cast<record *>(screen));
}

// The end screen only ever follows the game.
void hand_over_scores(const void *old_record, void *new_record) {
  const game_state *game = static_cast<const game_state *>(old_record);
  end_menu_state *end = static_cast<end_menu_state *>(new_record);
  end->score1 = game->fighter1->score;
  end->score2 = game->fighter2->score;
}

constexpr screen_entry screens[] = {
    {screen_main_menu, "main menu state", sizeof(main_menu_screen), nullptr,
     load_as<main_menu_screen, main_menu_load>, main_menu_handle_input, main_menu_update, main_menu_render,
     main_menu_unload},
    {screen_game, "game state", sizeof(game_state), nullptr, load_as<game_state, game_load>,
     game_handle_input, game_update, game_render, game_unload},
    {screen_lan, "lan menu state", sizeof(lan_menu_state), nullptr, load_as<lan_menu_state, lan_load>,
     lan_handle_input, lan_update, lan_render, lan_unload},
    {screen_end, "end menu state", sizeof(end_menu_state), hand_over_scores,
     load_as<end_menu_state, end_load>, end_handle_input, end_update, end_render, end_unload},
    {screen_options, "options menu state", sizeof(options_menu_state), nullptr,
     load_as<options_menu_state, options_load>, options_handle_input, options_update, options_render,
     options_unload},
};

}  // namespace

std::span<const screen_entry> screen_table() {
  return screens;
}
