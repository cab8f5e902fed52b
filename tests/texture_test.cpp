#include "media/texture.h"

#include <gtest/gtest.h>

#include "app/window.h"
#include "media/graphics.h"
#include "tests/support/stage.h"

TEST(texture, takes_sizes_that_are_given) {
  open_game game(800, 640);
  texture image = {};
  texture_load("assets/to_right.png", &image, 31, 17);
  EXPECT_EQ(std::tie(image.width, image.height), std::make_tuple(31, 17));
  SDL_RenderClear(gRenderer);
  const SDL_Rect part = {0, 0, 4, 8}, size = {500, 600, 40, 20}, area = {30, 50, 40, 20};
  texture_render(&image, 30, 50, &part, &size);
  const picture drawn = read_picture();
  SDL_RenderClear(gRenderer);
  SDL_RenderCopy(gRenderer, image.handle, &part, &area);
  EXPECT_EQ(difference(drawn, read_picture()), "");
  texture_unload(&image);
}

TEST(texture, says_which_image_has_no_texture) {
  open_game game(800, 640);
  texture image = {};
  world.failing = {{"SDL_CreateTextureFromSurface", 1}};
  EXPECT_EQ(output_of([&image] { texture_load("assets/dot.png", &image, 0, 0); }),
            "Unable to create texture from assets/dot.png! SDL Error: *\n");
  EXPECT_EQ(image.handle, nullptr);
}

TEST(texture, color_ids) {
  EXPECT_EQ(graphics_get_color(1)->r + graphics_get_color(2)->r + graphics_get_color(7)->r, 255);
}
