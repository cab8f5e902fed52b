#include "media/graphics.h"

#include <initializer_list>

#include "core/context.h"
#include "core/say.h"

TTF_Font *gFont = nullptr;
TTF_Font *gFontBigger = nullptr;
TTF_Font *gFontSmaller = nullptr;
texture to_right_menu_arrow;
texture to_left_menu_arrow;
texture to_down_menu_arrow;
texture to_up_menu_arrow;
texture commet_texture;
texture gTemp;

namespace {

constexpr const char *font_path = "assets/8bit_block.ttf";

struct image {
  texture *destination;
  const char *path;
  const char *failure_line;
};

constexpr const char *arrow_failure = "Failed to load texture image! title!";
constexpr image images[] = {
    {&to_right_menu_arrow, "assets/to_right.png", arrow_failure},
    {&to_left_menu_arrow, "assets/to_left.png", arrow_failure},
    {&to_down_menu_arrow, "assets/down.png", arrow_failure},
    {&to_up_menu_arrow, "assets/up.png", arrow_failure},
    {&commet_texture, "assets/dot.png", "Failed to load texture image! black head!"},
};

bool open_font(TTF_Font **font, int points, const char *size_name) {
  *font = TTF_OpenFont(font_path, points);
  if (*font == nullptr) {
    say("Failed to load %s font! SDL_ttf Error: %s\n", size_name, SDL_GetError());
  }
  return *font != nullptr;
}

bool load_image(const image &image) {
  texture_load(image.path, image.destination, 0, 0);
  if (image.destination->handle == nullptr) say("%s\n", image.failure_line);
  return image.destination->handle != nullptr;
}

}  // namespace

bool graphics_load() {
  const context_record *app = context_get();
  bool complete = open_font(&gFont, app->font_size, "normal");
  complete = open_font(&gFontBigger, app->window_height / 15, "big") && complete;
  complete = open_font(&gFontSmaller, app->font_size / 2, "small") && complete;
  for (const image &image : images) complete = load_image(image) && complete;
  return complete;
}

void graphics_unload() {
  for (TTF_Font **font : {&gFont, &gFontBigger, &gFontSmaller}) {
    if (*font != nullptr) TTF_CloseFont(*font);
    *font = nullptr;
  }
  for (const image &image : images) texture_unload(image.destination);
}

const SDL_Color *graphics_get_color(std::uint16_t color_id) {
  return color_id == 1 ? &player1_color : &player2_color;
}
