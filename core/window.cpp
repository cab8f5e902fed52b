#include "core/window.h"

int screen_width = usual_width;
int screen_height = usual_height;
bool full_screen = false;
SDL_Window *gWindow = nullptr;
SDL_Renderer *gRenderer = nullptr;
