#include "app/utility.h"

#include <gtest/gtest.h>

#include "tests/support/world.h"

TEST(utility, overlap_needs_a_common_pixel) {
  const struct {
    SDL_Rect b;
    bool rows, columns;
  } cases[] = {
      {{9, 9, 10, 10}, true, true},   {{10, 0, 10, 10}, true, false},  {{-10, 0, 10, 10}, true, false},
      {{0, 10, 10, 10}, false, true}, {{0, -10, 10, 10}, false, true}, {{100, 5, 10, 10}, true, false},
      {{1, 5, 0, 1}, true, true},     {{0, 5, 0, 1}, true, false},     {{10, 5, 0, 1}, true, false}};
  for (const auto &[b, rows, columns] : cases) {
    const SDL_Rect a = {0, 0, 10, 10};
    EXPECT_EQ(check_collision(a, b), rows && columns) << b.x << ", " << b.y;
    EXPECT_EQ(check_collision_on_y_axis(a, b), rows) << b.x << ", " << b.y;
    EXPECT_EQ(check_collision_on_x_axis(a, b), columns) << b.x << ", " << b.y;
  }
}

TEST(utility, random_text_takes_a_class_and_a_character) {
  world.draws = {1, 8, 2, 24, 3, 24, 4, 9, 5, 25, 0, 26, 7, 0, 8, 1};
  char text[] = "..........";
  EXPECT_EQ(random_bytes(8, text), text);
  EXPECT_STREQ(text, "8yY0aB0b");
  EXPECT_EQ(text[9], '.');
  EXPECT_STREQ(random_bytes(0, text), "");
}
