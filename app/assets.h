#pragma once

// Where the files read at run time lie.

// Makes the folder that holds the game's assets/ the working directory: the present one if it does, else the
// one that fits the program's own place, be that in a build folder, beside the assets or installed. Without
// any the working directory stays, and whatever is loaded from it names what is missing.
void assets_find();
