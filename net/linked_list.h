#pragma once

// A singly linked list of elements on the heap. A list is its head pointer, null for the empty list. Elements
// come from std::malloc or std::calloc and belong to the list: every removal frees the element together with
// its node.

struct list_node {
  void *data;       // the element, owned
  list_node *next;  // the following node; null at the tail
};

// Number of nodes.
int count_list(const list_node *head);

// The three operations that add an element return true when the list has taken it. Without memory for a node
// they print "Error, not enough memory", leave the list as it was and the element with the caller.

// Puts the element in front.
bool insert(list_node **head, void *element);
// Puts the element right behind `node`. A null node prints "The given previous node cannot be NULL" and
// changes nothing.
bool insert_after(list_node *node, void *element);
// Puts the element behind the last one.
bool append(list_node **head, void *element);

// Unlinks the node that `link` (the head, or some node's `next`) points to, and frees it with its element.
void remove_at(list_node **link);
// Frees every element and every node, and sets the head to null.
void delete_list(list_node **head);
