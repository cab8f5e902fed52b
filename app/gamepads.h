#pragma once

// Gamepads, as keys: their events are turned into those of the keyboard, so that no screen knows of them.
//
// In menus, the pause menu being one, the directions are the arrow keys, the lower button is Return and the
// right one Escape. In a running match the lower button punches. Start is always Escape. The first pad has
// the keys of fighter 1; the second one those of fighter 2 in a match of two players, else those of the first
// as well.

// Begins to look for pads. Without them, or when SDL cannot look, the game is played by keyboard alone.
void gamepads_open();
// Queues the keys that the pads have pressed and released since the last call; those of a pad that was pulled
// out are released, and so is what is held when a match begins or goes on. Once a frame, before the screen's
// input: no event of a pad is queued in between, where the screen would drop it.
void gamepads_translate();
// Forgets the pads; what they held is not released any more.
void gamepads_close();
