// Preloaded into a program by start_up.py: ends it after its first frame, with a line on standard error that
// tells when that was shown, in nanoseconds of the monotonic clock, and the peak of resident memory in KiB.

#include <SDL.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

namespace {

// Of this program alone; getrusage would count what launched it as well.
long peak_memory() {
  char line[256];
  long peak = 0;
  std::FILE *file = std::fopen("/proc/self/status", "r");
  if (file == nullptr) return 0;
  while (std::fgets(line, sizeof line, file) != nullptr && std::sscanf(line, "VmHWM: %ld", &peak) != 1)
    continue;
  std::fclose(file);
  return peak;
}

}  // namespace

extern "C" void SDL_RenderPresent(SDL_Renderer *renderer) {
  reinterpret_cast<void (*)(SDL_Renderer *)>(dlsym(RTLD_NEXT, "SDL_RenderPresent"))(renderer);
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const long peak = peak_memory();
  std::fprintf(stderr, "first frame %lld %ld\n", now.tv_sec * 1'000'000'000LL + now.tv_nsec, peak);
  _exit(0);
}
