#include "core/window.h"

int screen_width = 800;
int screen_height = 640;
bool full_screen = false;
SDL_Window *gWindow = nullptr;
SDL_Renderer *gRenderer = nullptr;
