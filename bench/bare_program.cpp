// The least that any program of this kind does at its start, for start_up.py: the same libraries, the same
// window, renderer and audio device as the game's, and one frame. With any argument the frame shows one
// translucent texture as well, for which a renderer prepares more than for an empty one.

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_mixer.h>
#include <SDL_ttf.h>

namespace {

bool draw_texture(SDL_Renderer *renderer) {
  SDL_Surface *surface = SDL_CreateRGBSurfaceWithFormat(0, 8, 8, 32, SDL_PIXELFORMAT_ARGB8888);
  SDL_Texture *texture = SDL_CreateTextureFromSurface(renderer, surface);
  SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
  const SDL_Rect area = {0, 0, 80, 64};
  return SDL_RenderCopy(renderer, texture, nullptr, &area) == 0;
}

}  // namespace

int main(int argc, char *[]) {
  if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_AUDIO) != 0) return 1;
  SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "1");
  SDL_Window *window = SDL_CreateWindow("Bare program", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, 800,
                                        640, SDL_WINDOW_SHOWN);
  SDL_Renderer *renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_ACCELERATED);
  if (renderer == nullptr || IMG_Init(IMG_INIT_PNG) == 0 || TTF_Init() != 0) return 1;
  if (Mix_OpenAudio(44100, AUDIO_S16LSB, 2, 2048) != 0) return 1;
  SDL_SetRenderDrawColor(renderer, 20, 170, 40, 255);
  SDL_RenderClear(renderer);
  if (argc > 1 && !draw_texture(renderer)) return 1;
  SDL_RenderPresent(renderer);
  return 0;
}
