#include "core/window.h"

int screen_width = 800;
int screen_height = 640;
SDL_Window *gWindow = nullptr;
SDL_Renderer *gRenderer = nullptr;
