// Gamepads that SDL makes up: what is done to them comes in by the events of real ones.

#include "app/gamepads.h"

#include <cctype>

#include "app/main_loop.h"
#include "tests/support/stage.h"

namespace {

std::string names;  // of the keys that come in, "+" for a press and "-" for a release

void note_keys() {
  for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
    if (event.type != SDL_KEYDOWN && event.type != SDL_KEYUP) continue;
    names += (event.type == SDL_KEYDOWN ? "+" : "-") + std::string(SDL_GetKeyName(event.key.keysym.sym));
  }
}

// A capital pushes a button and its small letter lets it go: A, B, Start, and Left, Right, Up and Down of the
// cross. The stick bends all the way left and right by < and >, a little way by ( and ), and stands by 0. +
// plugs the pad in, - pulls the first one out.
void act(SDL_Joystick *&pad, char action) {
  const std::string buttons = "AB....S....UDLR", bends = "<(0)>";  // in SDL's order; by their values
  constexpr Sint16 bend_values[] = {-32768, -13000, 0, 13000, 32767};
  const auto button = buttons.find(static_cast<char>(std::toupper(action))), bend = bends.find(action);
  if (bend != bends.npos) SDL_JoystickSetVirtualAxis(pad, SDL_CONTROLLER_AXIS_LEFTX, bend_values[bend]);
  if (button != buttons.npos)
    SDL_JoystickSetVirtualButton(pad, static_cast<int>(button), std::isupper(action) != 0);
  if (action == '-') SDL_JoystickDetachVirtual(0);
  if (action != '+') return;
  pad = SDL_JoystickOpen(SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX,
                                                   SDL_CONTROLLER_BUTTON_MAX, 0));
}

}  // namespace

TEST(gamepads, controls_are_keys) {
  const struct {
    int pad;
    const char *actions, *keys;  // of act(); names
    int mode = mode_two_players, paused = pause_none, screen = screen_game;
  } steps[] = {
      {0, "+UuAaBbSs", "+Up-Up+Space-Space+Escape-Escape"},
      {1, "+LRDUlrduAaSs", "+A+D+S+W-A-D-S-W+Tab-Tab+Escape-Escape"},
      {0, "()<>0", "+Left-Left+Right-Right"},
      {1, "<(Aa0)", "+A+Tab-Tab-A"},
      {0, "<L0l", "+Left-Left"},  // pushed twice
      {1, "RrAa", "+Right-Right+Space-Space", mode_one_player},
      {0, "Aa", "+Return-Return", mode_lan, pause_by_peer},
      {1, "DdAaBb", "+Down-Down+Return-Return+Escape-Escape", mode_two_players, pause_local},
      {1, "DdA", "+Down-Down+Return", mode_two_players, pause_none, screen_main_menu},
      {1, "A", "-Return"},  // which must not move a fighter
      {1, "aA", "+Tab"},
      {1, "a", "-Tab", mode_two_players, pause_local},
      {0, "AL-", "+Space+Left-Space-Left"},
      {1, "Aa", "+Tab-Tab"},
      {2, "+A", "+Space"},
  };
  open_game game(800, 640);
  game_state *match = static_cast<game_state *>(enter(screen_game));
  context.state_machine->handle_input = note_keys;
  context.state_machine->update = [] { context.state_machine->next_state = screen_quit; };
  context.state_machine->render = [] {};
  SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");  // since its window never has the focus
  gamepads_open();
  SDL_Joystick *pads[3] = {};
  for (const auto &step : steps) {
    context.game_mode = static_cast<Uint8>(step.mode);
    match->paused = step.paused;
    names = "";
    for (const char action : std::string(step.actions)) {
      act(pads[step.pad], action);
      context.state_machine->current_state = step.screen;
      context_loop();  // a frame
    }
    EXPECT_EQ(names, step.keys) << "step " << &step - steps;
  }
  gamepads_close();
}
