// The least that any program of this kind does at its start, for start_up.py: the same libraries, the same
// window, renderer and audio device as the game's, and one frame.

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_mixer.h>
#include <SDL_ttf.h>

int main(int, char *[]) {
  if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_AUDIO) != 0) return 1;
  SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "1");
  SDL_Window *window = SDL_CreateWindow("Bare program", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, 800,
                                        640, SDL_WINDOW_SHOWN);
  SDL_Renderer *renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_ACCELERATED);
  if (renderer == nullptr || IMG_Init(IMG_INIT_PNG) == 0 || TTF_Init() != 0) return 1;
  if (Mix_OpenAudio(44100, AUDIO_S16LSB, 2, 2048) != 0) return 1;
  SDL_SetRenderDrawColor(renderer, 20, 170, 40, 255);
  SDL_RenderClear(renderer);
  SDL_RenderPresent(renderer);
  return 0;
}
