#pragma once

// One picture on the renderer, loaded from a file or rendered from a line of text, with the size at which it
// is drawn.

#include <SDL.h>
#include <SDL_ttf.h>

struct texture {
  SDL_Texture *handle;  // owned; null when nothing is loaded or loading failed
  int width;            // pixels, as drawn
  int height;           // pixels, as drawn
};

// Loads the image file at `path`. A width or height (pixels) of 0 takes the image's own. On failure prints a
// line with the library's error and leaves the handle null. What the record held before is not released.
void texture_load(const char *path, texture *texture, int width, int height);
// Renders one line of UTF-8 text, not antialiased, at its own size. On failure prints a line with the
// library's error and leaves the handle null. What the record held before is not released.
void texture_load_from_rendered_text(const char *text, texture *texture, TTF_Font *font, SDL_Color color);
// The same in place of what the record holds, which is destroyed. Prints `failure_line`, unless it is null,
// as well on failure.
void texture_replace_text(const char *text, texture *texture, TTF_Font *font, SDL_Color color,
                          const char *failure_line);
// Draws the part `source` (null: all of it) with its top-left corner at (x, y) pixels, in the record's size
// or, when `size` is given, in that one's width and height.
void texture_render(const texture *texture, int x, int y, const SDL_Rect *source, const SDL_Rect *size);
// Destroys the picture and clears the handle; the record may be empty.
void texture_unload(texture *texture);

// A record on the heap, empty; ends the process when there is no memory.
texture *texture_create();
// Unloads and frees the record and clears the pointer to it.
void texture_destroy(texture **texture);
