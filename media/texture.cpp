#include "media/texture.h"

#include <SDL_image.h>

#include <cstdlib>

#include "core/allocation.h"
#include "core/say.h"
#include "core/window.h"

void texture_load(const char *path, texture *texture, int width, int height) {
  texture->handle = nullptr;
  SDL_Surface *surface = IMG_Load(path);
  if (surface == nullptr) {
    say("Unable to load image %s! SDL_image Error: %s\n", path, SDL_GetError());
    return;
  }
  texture->handle = SDL_CreateTextureFromSurface(gRenderer, surface);
  if (texture->handle == nullptr) {
    say("Unable to create texture from %s! SDL Error: %s\n", path, SDL_GetError());
  } else {
    texture->width = width == 0 ? surface->w : width;
    texture->height = height == 0 ? surface->h : height;
  }
  SDL_FreeSurface(surface);
}

void texture_load_from_rendered_text(const char *text, texture *texture, TTF_Font *font, SDL_Color color) {
  texture->handle = nullptr;
  SDL_Surface *surface = TTF_RenderUTF8_Solid(font, text, color);
  if (surface == nullptr) {
    // Spelt so; the line is known.
    say("Unable to render text suraface! SDL_ttf Error: %s\n", SDL_GetError());
    return;
  }
  texture->handle = SDL_CreateTextureFromSurface(gRenderer, surface);
  if (texture->handle == nullptr) {
    say("Unable to create texture from rendered text! SDL Error: %s\n", SDL_GetError());
  } else {
    texture->width = surface->w;
    texture->height = surface->h;
  }
  SDL_FreeSurface(surface);
}

void texture_replace_text(const char *text, texture *texture, TTF_Font *font, SDL_Color color,
                          const char *failure_line) {
  texture_unload(texture);
  texture_load_from_rendered_text(text, texture, font, color);
  if (texture->handle == nullptr && failure_line != nullptr) say("%s\n", failure_line);
}

void texture_render(const texture *texture, int x, int y, const SDL_Rect *source, const SDL_Rect *size) {
  SDL_Rect destination = {x, y, texture->width, texture->height};
  if (size != nullptr) {
    destination.w = size->w;
    destination.h = size->h;
  }
  SDL_RenderCopy(gRenderer, texture->handle, source, &destination);
}

void texture_unload(texture *texture) {
  if (texture->handle != nullptr) SDL_DestroyTexture(texture->handle);
  texture->handle = nullptr;
}

texture *texture_create() {
  return allocate_record<texture>("texture");
}

void texture_destroy(texture **texture) {
  if (*texture == nullptr) return;
  texture_unload(*texture);
  std::free(*texture);
  *texture = nullptr;
}
