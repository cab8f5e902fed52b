#!/bin/sh
# Starts Vantaro Pugnado where it finds its font, images and sounds; arguments go to the game. All is found from
# this script's own place, so that the installed tree may lie anywhere.

# A sound card that may be played on, or the socket of a sound server.
has_sound() {
  runtime=${XDG_RUNTIME_DIR:-/run/user/$(id -u)}
  if [ -n "$PULSE_SERVER" ] || [ -S "$runtime/pulse/native" ] || [ -S "$runtime/pipewire-0" ]; then return 0; fi
  for device in /dev/snd/pcm*p; do
    if [ -w "$device" ]; then return 0; fi
  done
  return 1
}

# The game does not start without sound, so it gets a silent one.
if [ -z "$SDL_AUDIODRIVER" ] && ! has_sound; then export SDL_AUDIODRIVER=dummy; fi

prefix=$(realpath "$0")
prefix=${prefix%/games/*}
cd "$prefix/share/games/vantaro-pugnado" || exit 1
exec "$prefix/lib/games/vantaro-pugnado/vantaro-pugnado" "$@"
