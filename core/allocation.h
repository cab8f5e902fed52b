#pragma once

// Records that the game cannot go on without: screens, fighters, the CPU opponent, small textures.
// They are plain data on the heap, zero-filled, released with std::free by whoever asked for them.

#include <cstddef>
#include <type_traits>

// A zero-filled block of `size` bytes. Where there is no memory for it, prints "Could not allocat memory
// for %s!" (spelt so: players' reports and scripts look for it) with `name` and ends the process with exit
// status 1, without any teardown.
void *allocate_or_exit(std::size_t size, const char *name);

// The same, as a record of its type.
template <typename record>
record *allocate_record(const char *name) {
  static_assert(std::is_trivially_default_constructible_v<record>);
  return static_cast<record *>(allocate_or_exit(sizeof(record), name));
}
