#pragma once

// What SDL's headers ask of a configuration made for Windows: Debian's own copy of this file is for Debian.

#define HAVE_STDARG_H 1
#define HAVE_STDDEF_H 1
#define HAVE_STDINT_H 1
