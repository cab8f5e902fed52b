#pragma once

// The version, as CMakeLists.txt names it for everything that shows one.

extern const char *const program_version;  // three numbers with dots between
extern const char *const menu_version;     // its first two numbers
