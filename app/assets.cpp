#include "app/assets.h"

#include <SDL.h>

#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

// From the program's folder: beside it, above a build folder, and where the package has them.
constexpr const char *places[] = {"", "../..", "../share/games/vantaro-pugnado"};

// Other programs have a folder of that name as well. Two files, so that the game still names one that is
// missing.
bool holds_assets(const fs::path &folder) {
  std::error_code error;
  return fs::exists(folder / "assets/8bit_block.ttf", error) || fs::exists(folder / "assets/dot.png", error);
}

}  // namespace

void assets_find() {
  char *program = SDL_GetBasePath();
  if (program == nullptr) return;
  fs::path found = "";
  for (const char *place : places) {
    // SDL tells it in UTF-8, which Windows would take for letters of its own.
    if (!holds_assets(found)) found = fs::path(reinterpret_cast<const char8_t *>(program)) / place;
  }
  SDL_free(program);
  std::error_code error;
  if (holds_assets(found)) fs::current_path(found, error);
}
