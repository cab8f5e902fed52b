#!/bin/bash
# Installs what is missing, builds the game and its tests, analyses the sources, runs all tests and fuzzes for some
# seconds. Arguments go to ctest, so that ./test.sh -R end_to_end runs the end-to-end tests alone.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")"
# shellcheck source=tools/setup.sh
source tools/setup.sh

ready=true
install_packages "${game_packages[@]}" "${virtual_display_packages[@]}" "${test_packages[@]}" \
  "${bench_packages[@]}" "${analysis_packages[@]}" "${fuzz_packages[@]}" || ready=false
install_packages "${windows_packages[@]}" "${wine_packages[@]}" || echo "Without them the game for Windows is not tested."
$ready  # only now, so that all that is missing has been named
for preset in release sanitize fuzz bench; do build_preset "$preset"; done
if (($# == 0)); then tools/analyse.sh; fi
exec ctest --preset sanitize --parallel "$(nproc)" "$@"
