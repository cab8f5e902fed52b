#include "app/gamepads.h"

#include <SDL.h>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/game_state.h"

namespace {

// What of a pad can be held; the directions come once from the cross and once from the stick.
enum pad_control : int {
  cross_left,
  cross_right,
  cross_up,
  cross_down,
  stick_left,
  stick_right,
  stick_up,
  stick_down,
  lower_button,
  right_button,
  start_button,
  control_count,
};

// In the order of the controls; SDLK_UNKNOWN does nothing.
using key_set = SDL_Keycode[control_count];
constexpr key_set menu_keys = {SDLK_LEFT, SDLK_RIGHT, SDLK_UP,     SDLK_DOWN,   SDLK_LEFT,  SDLK_RIGHT,
                               SDLK_UP,   SDLK_DOWN,  SDLK_RETURN, SDLK_ESCAPE, SDLK_ESCAPE};
// The keys of fighters are those of screens/game_screen.cpp.
constexpr key_set fighter1_keys = {SDLK_LEFT, SDLK_RIGHT, SDLK_UP,    SDLK_DOWN,    SDLK_LEFT,  SDLK_RIGHT,
                                   SDLK_UP,   SDLK_DOWN,  SDLK_SPACE, SDLK_UNKNOWN, SDLK_ESCAPE};
constexpr key_set fighter2_keys = {SDLK_a, SDLK_d, SDLK_w,   SDLK_s,       SDLK_a,     SDLK_d,
                                   SDLK_w, SDLK_s, SDLK_TAB, SDLK_UNKNOWN, SDLK_ESCAPE};

struct pad_button {
  int button;  // an SDL_GameControllerButton
  pad_control control;
};
constexpr pad_button buttons[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, cross_left}, {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, cross_right},
    {SDL_CONTROLLER_BUTTON_DPAD_UP, cross_up},     {SDL_CONTROLLER_BUTTON_DPAD_DOWN, cross_down},
    {SDL_CONTROLLER_BUTTON_A, lower_button},       {SDL_CONTROLLER_BUTTON_B, right_button},
    {SDL_CONTROLLER_BUTTON_START, start_button},
};

struct stick_axis {
  int axis;  // an SDL_GameControllerAxis
  pad_control negative;
  pad_control positive;
};
constexpr stick_axis stick_axes[] = {{SDL_CONTROLLER_AXIS_LEFTX, stick_left, stick_right},
                                     {SDL_CONTROLLER_AXIS_LEFTY, stick_up, stick_down}};
// Of 32767: a stick must be pushed further to hold a direction than to keep it, so that none flutters.
constexpr int push_out = 16000;
constexpr int let_go = 11000;

struct pad {
  SDL_GameController *controller;   // owned; null where there is no pad
  SDL_Keycode keys[control_count];  // pressed by what is held now
};
pad pads[2];

bool fought = false;  // whether a match ran at the last translation

bool fights() {
  return context_state_machine()->current_state == screen_game && current_game()->paused == pause_none;
}

const key_set &keys_of(const pad &pad) {
  if (!fights()) return menu_keys;
  const bool second = &pad == &pads[1] && context_get()->game_mode == mode_two_players;
  return second ? fighter2_keys : fighter1_keys;
}

bool is_pressed(SDL_Keycode key) {
  for (const pad &pad : pads) {
    for (const SDL_Keycode pressed : pad.keys) {
      if (pressed == key) return true;
    }
  }
  return false;
}

void queue_key(Uint32 type, SDL_Keycode key) {
  SDL_Event event = {};
  event.type = type;
  event.key.state = type == SDL_KEYDOWN ? SDL_PRESSED : SDL_RELEASED;
  event.key.keysym.sym = key;
  event.key.keysym.scancode = SDL_GetScancodeFromKey(key);
  SDL_PushEvent(&event);
}

// A control releases what it has pressed, whatever it would press by now. A key held by several controls is
// pressed by the first of them and released by the last.
void hold(pad *pad, pad_control control, bool held) {
  SDL_Keycode &key = pad->keys[control];
  if (held == (key != SDLK_UNKNOWN)) return;
  const SDL_Keycode changed = held ? keys_of(*pad)[control] : key;
  if (!held) key = SDLK_UNKNOWN;
  if (changed != SDLK_UNKNOWN && !is_pressed(changed)) queue_key(held ? SDL_KEYDOWN : SDL_KEYUP, changed);
  if (held) key = changed;
}

// What was pressed in a menu must not move a fighter, least of all the other player's.
void release_all() {
  for (pad &pad : pads) {
    for (int control = 0; control < control_count; ++control) {
      hold(&pad, static_cast<pad_control>(control), false);
    }
  }
}

void push_button(pad *pad, const SDL_ControllerButtonEvent &event) {
  for (const pad_button &button : buttons) {
    if (button.button == event.button) hold(pad, button.control, event.state == SDL_PRESSED);
  }
}

void move_stick(pad *pad, const SDL_ControllerAxisEvent &event) {
  for (const stick_axis &axis : stick_axes) {
    if (axis.axis != event.axis) continue;
    const auto bend = [pad](pad_control control, int way) {
      hold(pad, control, way > (pad->keys[control] == SDLK_UNKNOWN ? push_out : let_go));
    };
    bend(axis.negative, -event.value);
    bend(axis.positive, event.value);
  }
}

// The pad that an event comes from; null for one that plays no part.
pad *find_pad(SDL_JoystickID id) {
  SDL_GameController *controller = SDL_GameControllerFromInstanceID(id);
  for (pad &pad : pads) {
    if (controller != nullptr && pad.controller == controller) return &pad;
  }
  return nullptr;
}

void plug_in(int device) {
  if (find_pad(SDL_JoystickGetDeviceInstanceID(device)) != nullptr) return;
  for (pad &pad : pads) {
    if (pad.controller != nullptr) continue;
    pad.controller = SDL_GameControllerOpen(device);
    return;
  }
}

// SDL has let go of all that the pad held by now.
void pull_out(pad *pad) {
  SDL_GameControllerClose(pad->controller);
  pad->controller = nullptr;
}

void translate(const SDL_Event &event) {
  if (event.type == SDL_CONTROLLERDEVICEADDED) return plug_in(event.cdevice.which);
  pad *pad = find_pad(event.cdevice.which);  // which lies at the same place in all of them
  if (pad == nullptr) return;
  if (event.type == SDL_CONTROLLERAXISMOTION) move_stick(pad, event.caxis);
  if (event.type == SDL_CONTROLLERBUTTONDOWN || event.type == SDL_CONTROLLERBUTTONUP) {
    push_button(pad, event.cbutton);
  }
  if (event.type == SDL_CONTROLLERDEVICEREMOVED) pull_out(pad);
}

}  // namespace

void gamepads_open() {
  SDL_SetHint(SDL_HINT_AUTO_UPDATE_JOYSTICKS, "0");
  SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER);
}

void gamepads_translate() {
  if (fights() && !fought) release_all();
  fought = fights();
  SDL_GameControllerUpdate();
  SDL_Event event;
  while (SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_CONTROLLERAXISMOTION, SDL_CONTROLLERSENSORUPDATE) > 0) {
    translate(event);
  }
}

void gamepads_close() {
  for (pad &pad : pads) {
    if (pad.controller != nullptr) SDL_GameControllerClose(pad.controller);
    pad = {};
  }
}
