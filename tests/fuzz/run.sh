#!/bin/bash
# run.sh [MINUTES]: builds both fuzz targets and runs them side by side for so long (60). Corpora grow in
# build/fuzz/corpus. An input that fails is left in build/fuzz; given to its target as an argument it plays again.
cd "$(dirname "$0")/../.." && cmake --preset fuzz && cmake --build --preset fuzz || exit 1
for name in token game; do
  "build/fuzz/${name}_fuzzer" -max_total_time=$((${1:-60} * 60)) -max_len=200 -timeout=10 -print_funcs=0 \
    -print_final_stats=1 "-artifact_prefix=build/fuzz/$name-" "build/fuzz/corpus/$name" "tests/fuzz/corpus/$name" &
done && wait -n && wait -n
