#pragma once

// The one window and the one renderer that every drawing call goes to.

#include <SDL.h>

inline constexpr const char *window_title = "Vantaro Pugnado";

inline constexpr int usual_width = 800;   // pixels, of the window when nobody asks for another size
inline constexpr int usual_height = 640;  // pixels

extern int screen_width;         // width in pixels to open the window with
extern int screen_height;        // height in pixels to open the window with
extern bool full_screen;         // the window is opened over the whole display instead
extern SDL_Window *gWindow;      // owned by init and close_sdl_window; null while there is none
extern SDL_Renderer *gRenderer;  // owned by init and close_sdl_window; null while there is none
