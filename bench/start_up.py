#!/usr/bin/python3
"""Measures the start of the game, to its first frame, against a bare program that opens the same libraries, window,
renderer and audio device: time from the launch, and the peak of resident memory. Both run by turns, in a virtual
display, after one run of each that only warms the caches.

    start_up.py [runs]

Needs the presets release and bench built; bench/run.sh builds both and runs this."""

import os
import re
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "end_to_end"))

from game_driver import RELEASE_PROGRAM, Display  # noqa: E402

BENCH = ROOT / "build" / "bench" / "bench"
PROGRAMS = {"bare program": BENCH / "bare_program", "game": RELEASE_PROGRAM}
RUNS = 25


def launch(program, display):
    """Returns the time to the first frame in ms and the peak of memory in MiB."""
    variables = {**os.environ, "DISPLAY": display.name, "SDL_VIDEODRIVER": "x11", "SDL_AUDIODRIVER": "dummy",
                 "LD_PRELOAD": str(BENCH / "libfirst_frame.so")}
    start = time.monotonic_ns()
    done = subprocess.run([program], cwd=ROOT, env=variables, text=True, capture_output=True)
    shown, peak = re.search(r"first frame (\d+) (\d+)", done.stderr).groups()
    return (int(shown) - start) / 1e6, int(peak) / 1024


def main():
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else RUNS
    measured = {name: [] for name in PROGRAMS}
    with Display() as display:
        for number in range(runs + 1):
            for name, program in PROGRAMS.items():
                result = launch(program, display)
                if number > 0:
                    measured[name].append(result)
    for number, (what, unit) in enumerate((("time to the first frame", "ms"), ("peak of memory", "MiB"))):
        bare, game = ([result[number] for result in measured[name]] for name in PROGRAMS)
        ratio = statistics.median(after / before for before, after in zip(bare, game))
        print(f"{what}: bare program {statistics.median(bare):.1f} {unit}, game {statistics.median(game):.1f} {unit}, "
              f"ratio {ratio:.2f} (medians of {runs} runs by turns)")


if __name__ == "__main__":
    main()
