#!/bin/bash
# Installs what is missing, builds the game and starts it: ./play.sh [width height]
# Without a display it plays a short match by itself in a virtual one and leaves pictures of it under build/.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")"
# shellcheck source=tools/setup.sh
source tools/setup.sh

# A sound card that may be played on, or the socket of a sound server.
has_sound() {
  local runtime=${XDG_RUNTIME_DIR:-/run/user/$EUID} device
  if [[ -n ${PULSE_SERVER:-} || -S $runtime/pulse/native || -S $runtime/pipewire-0 ]]; then return 0; fi
  for device in /dev/snd/pcm*p; do
    if [[ -w $device ]]; then return 0; fi
  done
  return 1
}

install_packages "${game_packages[@]}"
build_preset release

if [[ -z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-} ]]; then
  echo "There is no display here, so the game plays a short match by itself in a virtual one."
  install_packages "${virtual_display_packages[@]}"
  exec /usr/bin/python3 tools/demonstration.py
fi

if [[ -z ${SDL_AUDIODRIVER:-} ]] && ! has_sound; then
  echo "There is no sound card here, so the game is silent."
  export SDL_AUDIODRIVER=dummy
fi
exec build/release/vantaro-pugnado "$@"
