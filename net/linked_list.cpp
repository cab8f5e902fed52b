#include "net/linked_list.h"

#include <cstdlib>

#include "core/say.h"

namespace {

// Links a new node in where `link` points; the node that stood there follows it.
bool link_in(list_node **link, void *element) {
  list_node *node = static_cast<list_node *>(std::calloc(1, sizeof(list_node)));
  if (node == nullptr) {
    say("Error, not enough memory\n");
    return false;
  }
  node->data = element;
  node->next = *link;
  *link = node;
  return true;
}

}  // namespace

int count_list(const list_node *head) {
  int count = 0;
  for (const list_node *node = head; node != nullptr; node = node->next) ++count;
  return count;
}

bool insert(list_node **head, void *element) {
  return link_in(head, element);
}

bool insert_after(list_node *node, void *element) {
  if (node == nullptr) {
    say("The given previous node cannot be NULL\n");
    return false;
  }
  return link_in(&node->next, element);
}

bool append(list_node **head, void *element) {
  list_node **link = head;
  while (*link != nullptr) link = &(*link)->next;
  return link_in(link, element);
}

void remove_at(list_node **link) {
  list_node *node = *link;
  *link = node->next;
  std::free(node->data);
  std::free(node);
}

void delete_list(list_node **head) {
  while (*head != nullptr) remove_at(head);
}
