#!/bin/bash
# Builds SDL2, its three companions and FreeType for Windows, as static libraries, from the sources of Debian's own
# packages, and links build/windows-libraries to them. They stay in the user's cache folder, under a name made of
# this script, the toolchain and the sources' versions, so that they are built once.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")"
# shellcheck source=tools/setup.sh
source ../../tools/setup.sh

# source_versions: NAME=VERSION of each source package, as this system would install what is built from it.
source_versions() {
  apt-cache show --no-all-versions libsdl2-dev libsdl2-{image,ttf,mixer}-dev libfreetype-dev |
    awk '/^(Package|Source):/ { name = $2 } /^Version:/ { sub(/\+b[0-9]+$/, "", $2); print name "=" $2 }'
}

# get_sources FOLDER: unpacks each source package to FOLDER/NAME. apt gets lists of its own in FOLDER, of the same
# archives, so that the system's stay as they are and the right to write them is not needed.
get_sources() {
  local options=(-qq -o "Dir::Etc::SourceList=$1/sources.list" -o Dir::Etc::SourceParts=/dev/null
    -o "Dir::State::Lists=$1/lists" -o APT::Sandbox::User="$(id -un)")
  mkdir -p "$1/lists/partial"
  apt-get indextargets --format "deb-src \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" \
    'Identifier: Packages' 'Origin: Debian' >"$1/sources.list"
  (
    cd "$1"
    apt-get "${options[@]}" update
    apt-get "${options[@]}" source --download-only "${versions[@]}"
    local file
    for file in *.dsc; do dpkg-source --no-check -x "$file" "${file%%_*}" >/dev/null; done
  )
}

# build NAME OPTION...: builds and installs one library. No path of the build gets into it.
build() {
  local source=$work/$1 build=$work/build/$1
  shift
  cmake -S "$source" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_C_FLAGS="-ffile-prefix-map=$work=." -DBUILD_SHARED_LIBS=OFF \
    -Wno-dev "$@"
  ninja -C "$build" install
}

build_all() {
  build libsdl2 -DSDL_{VULKAN,OPENGLES,OFFSCREEN,HIDAPI,HAPTIC,SENSOR,POWER,LOCALE,TEST,SHARED}=OFF
  build freetype -DFT_DISABLE_{ZLIB,BZIP2,PNG,HARFBUZZ,BROTLI}=ON
  build libsdl2-image -DSDL2IMAGE_{SAMPLES,DEPS_SHARED,BMP,GIF,JPG,LBM,PCX,PNM,QOI,SVG,TGA,XCF,XPM,XV,PNG_SAVE}=OFF
  build libsdl2-ttf -DSDL2TTF_SAMPLES=OFF
  build libsdl2-mixer -DSDL2MIXER_{SAMPLES,DEPS_SHARED,CMD,FLAC,MOD,MP3,MIDI,OPUS,VORBIS}=OFF
}

# describe NAME REQUIRED...: what pkg-config wants to know, where a library does not say so itself.
describe() {
  printf '%s\n' "Name: $1" "Description: $1" "Version: 2" "Requires: ${*:2}" "Libs: -L$prefix/lib -l$1" \
    >"$prefix/lib/pkgconfig/$1.pc"
}

# forget_folder: lets pkg-config name the link instead, which stays the same when it is put on other libraries.
forget_folder() {
  sed -i "s|$prefix|\${pcfiledir}/../..|" "$prefix"/lib/pkgconfig/*.pc
}

# keep_licences: of everything that ends up in the program. stb_image's stands at the end of its source.
keep_licences() {
  local name folder=$prefix/licences
  mkdir -p "$folder"
  for name in libsdl2 libsdl2-{image,ttf,mixer}; do cp "$work/$name/LICENSE.txt" "$folder/${name#lib}.txt"; done
  {
    sed -n 's/.*Copyright (C) 1996-\([0-9]*\).*/Portions of this software are copyright (C) \1 The FreeType Project/p' \
      "$work/freetype/include/freetype/freetype.h"
    printf '%s\n' "(www.freetype.org). All rights reserved." ""
    cat "$work/freetype/docs/FTL.TXT"
  } >"$folder/freetype.txt"
  sed -n '/^This software is available under 2 licenses/,/^\*\//p' "$work/libsdl2-image/stb_image.h" |
    grep -v '^\*/' >"$folder/stb_image.txt"
  cp /usr/share/doc/mingw-w64-common/copyright "$folder/mingw-w64.txt"
  cp /usr/share/doc/gcc-mingw-w64-base/copyright "$folder/gcc.txt"
}

# make: all of it, into $prefix; marked as complete at the very end, so that what an interruption leaves is made anew.
make() {
  rm -rf "$prefix"
  get_sources "$work"
  build_all
  describe SDL2_image sdl2
  describe SDL2_ttf sdl2 freetype2
  describe SDL2_mixer sdl2
  forget_folder
  keep_licences
  touch "$prefix/complete"
}

install_packages "${windows_packages[@]}"
toolchain=$PWD/toolchain.cmake
mapfile -t versions < <(source_versions)
key=$({ cat make_libraries.sh toolchain.cmake; printf '%s\n' "${versions[@]}"; } | sha256sum)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/vantaro-pugnado
prefix=$cache/windows-${key:0:16}
mkdir -p "$cache" ../../build
ln -sfnT "$prefix" ../../build/windows-libraries  # where the toolchain looks for them

exec 9>"$cache/windows.lock"
flock 9
if [[ -e $prefix/complete ]]; then exit 0; fi
echo "Building the libraries for Windows; this takes minutes, once"
work=$(mktemp -d)
log=$PWD/../../build/windows-libraries.log
trap 'status=$?; rm -rf "$work"; if ((status != 0)); then tail -40 "$log" >&2; fi' EXIT
make >"$log" 2>&1
