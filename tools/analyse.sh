#!/bin/bash
# Looks through the sources: tools/analyse.sh [STEP...]
#   check-format   nothing differs from what .clang-format asks for
#   analysis       clang-tidy, by .clang-tidy, and cppcheck have nothing to say of the game
#   format         formats all sources in place
# Without a step, the first two. A file is analysed again only when it, any header or the rules have changed since
# it was clean.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

mapfile -t rooms < <(tools/check_floors.py --list)
stamps=build/analysis/stamps

# format OPTION...: runs clang-format on every C++ file, those of tests and benchmarks included.
format() {
  find "${rooms[@]}" tests bench \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 -n 12 -P "$(nproc)" clang-format "$@"
}

# newer_rules STAMP: a header or a rule that has changed since.
newer_rules() {
  find "${rooms[@]}" .clang-tidy CMakeLists.txt tools/analyse.sh -newer "$1" -type f ! -name '*.cpp' -print -quit
}

# changed_sources: the game's sources without a stamp as new as they, the headers and the rules are.
changed_sources() {
  local source stamp
  find "${rooms[@]}" -name '*.cpp' -print0 | while IFS= read -r -d '' source; do
    stamp=$stamps/$source
    if [[ ! -e $stamp || $source -nt $stamp || -n $(newer_rules "$stamp") ]]; then printf '%s\0' "$source"; fi
  done
}

# tidy SOURCE: stamps it with the time before it was read, if it is clean.
tidy() {
  local stamp=build/analysis/stamps/$1
  mkdir -p "${stamp%/*}"
  touch "$stamp.begun"
  if ! clang-tidy -p build/analysis --quiet "$1" 2>"$stamp.log"; then
    cat "$stamp.log" >&2
    return 1
  fi
  mv "$stamp.begun" "$stamp"
}
export -f tidy

analyse() {
  mkdir -p "$stamps/cppcheck"
  cppcheck --quiet -j "$(nproc)" --std=c++20 --enable=warning,performance,portability -I. \
    --error-exitcode=1 --cppcheck-build-dir="$stamps/cppcheck" "${rooms[@]}"
  cmake --preset debug -B build/analysis -DPUGNADO_TESTS=OFF >/dev/null  # for its compile_commands.json
  # shellcheck disable=SC2016
  changed_sources | xargs -0 -r -n 1 -P "$(nproc)" bash -c 'tidy "$1"' tidy
}

install_packages "${game_packages[@]}" "${analysis_packages[@]}"
if (($# == 0)); then set -- check-format analysis; fi
for step in "$@"; do
  case $step in
    format) format -i ;;
    check-format) format --dry-run -Werror ;;
    analysis) analyse ;;
    *) echo "There is no step $step." >&2; exit 2 ;;
  esac
done
