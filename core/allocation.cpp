#include "core/allocation.h"

#include <cstdlib>

#include "core/say.h"

void *allocate_or_exit(std::size_t size, const char *name) {
  void *record = std::calloc(1, size);
  if (record == nullptr) {
    say("Could not allocat memory for %s!\n", name);
    std::exit(1);
  }
  return record;
}
