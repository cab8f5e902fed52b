#include "net/linked_list.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/stage.h"

TEST(linked_list, takes_elements_in_front_behind_and_at_the_end) {
  list_node *head = nullptr;
  append(&head, strdup("b"));
  append(&head, strdup("d"));
  insert(&head, strdup("a"));
  insert_after(head->next, strdup("c"));
  const std::string no_memory = "Error, not enough memory\n";
  world.failing = {{"calloc", 0}};
  EXPECT_EQ(output_of([&] { EXPECT_FALSE(insert(&head, nullptr)); }), no_memory);
  EXPECT_EQ(output_of([&] { EXPECT_FALSE(append(&head, nullptr)); }), no_memory);
  EXPECT_EQ(output_of([&] { EXPECT_FALSE(insert_after(head, nullptr)); }), no_memory);
  EXPECT_EQ(output_of([] { EXPECT_FALSE(insert_after(nullptr, nullptr)); }),
            "The given previous node cannot be NULL\n");
  std::string content;
  for (list_node *node = head; node != nullptr; node = node->next) content += static_cast<char *>(node->data);
  EXPECT_EQ(content, "abcd");
  EXPECT_EQ(count_list(head), 4);
  delete_list(&head);
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(count_list(head), 0);
}
