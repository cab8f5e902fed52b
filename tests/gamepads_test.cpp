// Gamepads that SDL makes up: what is done to them comes in by the events of real ones.

#include "app/gamepads.h"

#include <SDL.h>

#include <memory>

#include "core/context.h"
#include "tests/support/stage.h"

namespace {

// What is done to a pad: a capital pushes a button and its small letter lets it go, Left, Right, Up and Down
// being the cross; the stick bends all the way left and right by < and >, a little way by ( and ), and stands
// by 0.
const std::string buttons = "AB....S....UDLR", bends = "<(0)>";
constexpr Sint16 bend_values[] = {-32768, -13000, 0, 13000, 32767};

// The keys that came in since the last look, "+" for a press and "-" for a release.
std::string keys() {
  gamepads_translate();
  std::string names;
  for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
    if (event.type == SDL_KEYDOWN) names += "+";
    if (event.type == SDL_KEYUP) names += "-";
    if (event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) names += SDL_GetKeyName(event.key.keysym.sym);
  }
  return names;
}

// A pad, plugged in until the end of the scope.
struct plugged_pad {
  SDL_Joystick *joystick = SDL_JoystickOpen(SDL_JoystickAttachVirtual(
      SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX, SDL_CONTROLLER_BUTTON_MAX, 0));
  plugged_pad() { gamepads_translate(); }
  ~plugged_pad() {
    const auto id = SDL_JoystickInstanceID(joystick);
    for (int i = 0; i < SDL_NumJoysticks(); ++i) {
      if (SDL_JoystickGetDeviceInstanceID(i) == id) SDL_JoystickDetachVirtual(i);
    }
    SDL_JoystickClose(joystick);
  }
  std::string keys_of(const std::string &actions) {
    std::string names;
    for (const char action : actions) {
      const auto button = buttons.find(static_cast<char>(std::toupper(action))), bend = bends.find(action);
      if (bend != bends.npos)
        SDL_JoystickSetVirtualAxis(joystick, SDL_CONTROLLER_AXIS_LEFTX, bend_values[bend]);
      if (button != buttons.npos) {
        SDL_JoystickSetVirtualButton(joystick, static_cast<int>(button), std::isupper(action) != 0);
      }
      names += keys();
    }
    return names;
  }
};

}  // namespace

TEST(gamepads, controls_are_keys) {
  const struct {
    int screen, game_mode, paused, pad;
    const char *actions, *keys;
  } cases[] = {
      {2, 0, 0, 0, "LlAaBbSs", "+Left-Left+Space-Space+Escape-Escape"},
      {2, 0, 0, 1, "RrAa", "+Right-Right+Space-Space"},
      {2, 1, 0, 0, "UuAa", "+Up-Up+Space-Space"},
      {2, 1, 0, 1, "LRDUlrduAaSs", "+A+D+S+W-A-D-S-W+Tab-Tab+Escape-Escape"},
      {2, 1, 1, 1, "DdAaBbSs", "+Down-Down+Return-Return+Escape-Escape+Escape-Escape"},
      {2, 2, 2, 0, "Aa", "+Return-Return"},
      {1, 1, 0, 1, "DdAa", "+Down-Down+Return-Return"},
      {2, 1, 0, 0, "()<>0", "+Left-Left+Right-Right"},
      {2, 1, 0, 1, "<(Aa0)", "+A+Tab-Tab-A"},
      {2, 1, 0, 0, "<L0l", "+Left-Left"},  // pushed twice
  };
  bare_match match(0);
  gamepads_open();
  plugged_pad pads[2];
  for (const auto &c : cases) {
    match.machine.current_state = c.screen;
    context.game_mode = static_cast<Uint8>(c.game_mode);
    match.game.paused = c.paused;
    EXPECT_EQ(pads[c.pad].keys_of(c.actions), c.keys) << c.actions << " in mode " << c.game_mode;
  }
  gamepads_close();
}

TEST(gamepads, every_press_finds_its_release) {
  bare_match match(1);
  match.machine.current_state = 2;
  gamepads_open();
  auto first = std::make_unique<plugged_pad>();
  plugged_pad second;
  EXPECT_EQ(first->keys_of("AL") + second.keys_of("A"), "+Space+Left+Tab");
  match.game.paused = 1;
  EXPECT_EQ(second.keys_of("a"), "-Tab");
  first.reset();
  EXPECT_EQ(keys(), "-Space-Left");
  match.game.paused = 0;
  EXPECT_EQ(second.keys_of("Aa") + plugged_pad().keys_of("A"), "+Tab-Tab+Space");
  gamepads_close();
}
