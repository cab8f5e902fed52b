#!/bin/bash
# Compiles every file of the game for Windows, with warnings as errors, and keeps nothing of it: the Windows side of
# the sockets has no other compiler to meet here. SDL's headers are Debian's.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/../.."

compiler=x86_64-w64-mingw32-g++
if ! command -v "$compiler" >/dev/null; then
  echo "skipped: there is no $compiler (package g++-mingw-w64-x86-64-posix)"
  exit 77
fi
printf '%s\0' $(tools/check_floors.py --list | sed "s|$|/*.cpp|") | xargs -0 -n 4 -P "$(nproc)" \
  "$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only \
  -DPUGNADO_VERSION='""' -DPUGNADO_MENU_VERSION='""' -I. -isystem tests/mingw -isystem /usr/include/SDL2
