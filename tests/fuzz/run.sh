#!/bin/bash
# run.sh [MINUTES]: builds both fuzz targets and runs them side by side for so long (60). Corpora grow in
# build/fuzz/corpus. An input that fails is left in build/fuzz; given to its target as an argument it plays again.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/../.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

install_packages "${game_packages[@]}" "${fuzz_packages[@]}"
build_preset fuzz
trap 'kill $(jobs -p) 2>/dev/null || true' EXIT
for name in token game; do
  "build/fuzz/${name}_fuzzer" -max_total_time=$((${1:-60} * 60)) -max_len=200 -timeout=10 -print_funcs=0 \
    -print_final_stats=1 "-artifact_prefix=build/fuzz/$name-" "build/fuzz/corpus/$name" "tests/fuzz/corpus/$name" &
done
wait -n && wait -n
