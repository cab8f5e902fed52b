#!/bin/bash
# run.sh [MINUTES]: builds the fuzz target and runs it for so long (60). The corpus grows in build/fuzz/corpus. An
# input that fails is left in build/fuzz; given to the target as an argument it plays again.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/../.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

install_packages "${game_packages[@]}" "${fuzz_packages[@]}"
build_preset fuzz
exec build/fuzz/game_fuzzer -max_total_time=$((${1:-60} * 60)) -max_len=200 -timeout=10 -print_funcs=0 \
  -print_final_stats=1 -artifact_prefix=build/fuzz/game- build/fuzz/corpus/game tests/fuzz/corpus/game
