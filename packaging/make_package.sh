#!/bin/bash
# Builds the game and packs it for Debian; prints the path of the package.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

install_packages "${game_packages[@]}" dpkg-dev file
build_preset release

rm -f build/package/*.deb  # of other versions, so that one is there to install
umask 022  # the folders in the package take their permissions from it
log=build/package.log
version=$(packaging/version.sh)
if ! cpack --config build/release/CPackConfig.cmake -D CPACK_DEBIAN_PACKAGE_VERSION="$version" \
  -B "$PWD/build/package" >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
sed -n "s/.*package: \(.*\) generated\./\1/p" "$log"
