#!/bin/bash
# Builds the game and packs it for Debian; prints the path of the package.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

install_packages "${game_packages[@]}" dpkg-dev file
build_preset release

umask 022  # the folders in the package take their permissions from it
log=build/package.log
if ! cpack --config build/release/CPackConfig.cmake -B "$PWD/build/package" >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
sed -n "s/.*package: \(.*\) generated\./\1/p" "$log"
