#!/bin/bash
# Builds the game for Windows and packs it with all that it needs; prints the path of the zip. The same sources, those
# of the libraries included, make the same zip, whoever packs it and whenever.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/../.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

check_writable build/windows
packaging/windows/make_libraries.sh
build_preset windows

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/windows/CMakeCache.txt)
name=vantaro-pugnado-$version
folder=build/windows-zip/$name
zip=$PWD/build/windows-zip/$name-windows.zip
rm -rf build/windows-zip
install -D -m 755 build/windows/vantaro-pugnado.exe -t "$folder"
install -D -m 644 assets/* -t "$folder/assets"
install -D -m 644 build/windows-libraries/licences/* -t "$folder/licences"
install -m 644 LICENSE -t "$folder"
sed 's/$/\r/' packaging/windows/README.txt | install -m 644 /dev/stdin "$folder/README.txt"

released=$(date -d "$(sed -n '/^ -- .*>  /{s///p;q}' packaging/changelog)" +%s)
cd build/windows-zip
find "$name" -exec touch -d "@$released" {} +
find "$name" -type f | LC_ALL=C sort | TZ=UTC zip -q -9 -X -@ "$zip"
echo "$zip"
