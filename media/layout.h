#pragma once

// Places things by fractions of the window, so that one layout serves every window size. Fractions of a
// pixel are always dropped.

#include <SDL.h>

#include "media/texture.h"

// `fraction` of the window's width, in whole pixels.
int layout_x(double fraction);
// `fraction` of the window's height, in whole pixels.
int layout_y(double fraction);

// Clears the frame and fills the window with `color`.
void layout_fill_window(const SDL_Color &color);
// Fills the rectangle (pixels) with `color`, blended by its alpha over what is there.
void layout_fill(const SDL_Rect &area, const SDL_Color &color);
// Draws the texture in its own size, centred on the column at `fraction` of the window's width, with its top
// at y (pixels).
void layout_render_centered(const texture *texture, double fraction, int y);
// The same, faint when `dimmed`.
void layout_render_dimmed(const texture *texture, double fraction, int y, bool dimmed);

// The width of a selection marker in pixels.
int layout_arrow_width();
// Draws the two selection markers with their left edges at the given columns, top at y and `height` high
// (pixels).
void layout_render_arrows(int right_arrow_x, int left_arrow_x, int y, int height);
