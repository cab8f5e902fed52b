#include "core/utility.h"

#include <gtest/gtest.h>

#include "tests/support/world.h"

TEST(utility, random_text_takes_a_class_and_a_character) {
  world.draws = {1, 8, 2, 24, 3, 24, 4, 9, 5, 25, 0, 26, 7, 0, 8, 1};
  char text[] = "..........";
  EXPECT_EQ(random_bytes(8, text), text);
  EXPECT_STREQ(text, "8yY0aB0b");
  EXPECT_EQ(text[9], '.');
  EXPECT_STREQ(random_bytes(0, text), "");
}
