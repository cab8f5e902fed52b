#pragma once

// The one window and the one renderer that every drawing call goes to.

#include <SDL.h>

extern int screen_width;         // width in pixels to open the window with
extern int screen_height;        // height in pixels to open the window with
extern SDL_Window *gWindow;      // owned by init and close_sdl_window; null while there is none
extern SDL_Renderer *gRenderer;  // owned by init and close_sdl_window; null while there is none
