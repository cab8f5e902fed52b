#!/bin/bash
# Builds and runs the measurements: the start against a bare program's, what a frame costs, what a match message
# costs, then whether ten minutes of play leave memory as it was. Without a display, the accelerated renderer is
# measured on a virtual one.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
# shellcheck source=tools/setup.sh
source tools/setup.sh

install_packages "${game_packages[@]}" "${virtual_display_packages[@]}" "${bench_packages[@]}"
build_preset release
build_preset bench
bench/start_up.py

if [[ -z ${DISPLAY:-} ]]; then
  coproc xvfb { exec Xvfb -displayfd 1 -screen 0 1024x768x24 2>/dev/null; }
  server=$!
  trap 'kill "$server"; wait "$server" || true' EXIT
  read -r display <&"${xvfb[0]}"
  export DISPLAY=:$display
fi
build/bench/bench/frame_benchmark
build/bench/bench/message_benchmark
build/bench/bench/soak
