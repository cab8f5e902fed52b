#!/bin/bash
# Installs what is missing, builds the game and its tests and runs all of them. Arguments go to ctest, so that
# ./test.sh -R end_to_end runs the end-to-end tests alone.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")"
# shellcheck source=tools/setup.sh
source tools/setup.sh

install_packages "${game_packages[@]}" "${virtual_display_packages[@]}" "${test_packages[@]}"
build_preset release
build_preset sanitize
exec ctest --preset sanitize --parallel "$(nproc)" "$@"
