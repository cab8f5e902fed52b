#!/bin/bash
# Installs what is missing, builds the game and starts it: ./play.sh [--fullscreen] [width height]
# Without a display and without arguments it plays a short match by itself in a virtual one and leaves pictures of it
# under build/.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")"
# shellcheck source=tools/setup.sh
source tools/setup.sh

if [[ $# == 0 && -z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-} ]]; then
  install_packages "${game_packages[@]}" "${virtual_display_packages[@]}"
  build_preset release
  echo "There is no display here, so the game plays a short match by itself in a virtual one."
  exec /usr/bin/python3 tools/demonstration.py
fi

install_packages "${game_packages[@]}"
build_preset release
exec build/release/vantaro-pugnado "$@"
