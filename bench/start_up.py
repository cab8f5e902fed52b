#!/usr/bin/python3
"""Measures the start of the game, to its first frame, against a bare program that opens the same libraries, window,
renderer and audio device, and shows an empty frame or one texture: time from the launch, and the peak of resident
memory. They run by turns, in a virtual display, after one run of each that only warms the caches.

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
sys.path.insert(0, str(ROOT / "tools" / "driver"))

from game_driver import RELEASE_PROGRAM, Display  # noqa: E402

BENCH = ROOT / "build" / "bench" / "bench"
BARE_PROGRAMS = {"an empty frame": [BENCH / "bare_program"], "one texture": [BENCH / "bare_program", "textured"]}
GAME = [RELEASE_PROGRAM]
RUNS = 25


def launch(command, display):
    """Returns the time to the first frame in ms and the peak of memory in MiB."""
    variables = {**os.environ, "DISPLAY": display.name, "SDL_VIDEODRIVER": "x11", "SDL_AUDIODRIVER": "dummy",
                 "LD_PRELOAD": str(BENCH / "libfirst_frame.so")}
    start = time.monotonic_ns()
    done = subprocess.run(command, cwd=ROOT, env=variables, text=True, capture_output=True)
    shown, peak = re.search(r"first frame (\d+) (\d+)", done.stderr).groups()
    return (int(shown) - start) / 1e6, int(peak) / 1024


def main():
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else RUNS
    commands = {"game": GAME, **BARE_PROGRAMS}
    measured = {name: [] for name in commands}
    with Display() as display:
        for _ in range(runs + 1):
            for name, command in commands.items():
                measured[name].append(launch(command, display))
    for number, what in enumerate(("time to the first frame, ms", "peak of memory, MiB")):
        values = {name: [result[number] for result in results[1:]] for name, results in measured.items()}
        print(f"{what}: game {statistics.median(values['game']):.1f}")
        for name in BARE_PROGRAMS:
            ratio = statistics.median(game / bare for game, bare in zip(values["game"], values[name]))
            print(f"  bare program with {name}: {statistics.median(values[name]):.1f}, ratio {ratio:.2f}")
    print(f"Medians of {runs} runs by turns.")


if __name__ == "__main__":
    main()
