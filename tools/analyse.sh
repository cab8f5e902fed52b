#!/bin/bash
# Looks through the sources: tools/analyse.sh [STEP...]
#   check-format   nothing differs from what .clang-format asks for
#   analysis       clang-tidy, by .clang-tidy, and cppcheck have nothing to say of the game. They look at every file
#                  that the preset `analysis` compiles, so again only at what has changed or failed, headers included
#   format         formats all sources in place
# Without a step, the first two.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

# format OPTION...: runs clang-format on every C++ file, those of tests and benchmarks included.
format() {
  git -c safe.directory="$PWD" ls-files -z --cached --others --exclude-standard '*.cpp' '*.h' |
    xargs -0 -n 12 -P "$(nproc)" clang-format "$@"
}

install_packages "${game_packages[@]}" "${analysis_packages[@]}"
if (($# == 0)); then set -- check-format analysis; fi
for step in "$@"; do
  case $step in
    format) format -i ;;
    check-format) format --dry-run -Werror ;;
    analysis) build_preset analysis ;;
    *) echo "There is no step $step." >&2; exit 2 ;;
  esac
done
