#!/usr/bin/python3
"""Measures LAN play with the real program on the small network in tools/driver: how long the guest's step
takes from key to picture, and what floods of junk cost. A frame sends one datagram, so the frames are counted, and
the time from one to the next is taken, at the network's switch. Needs root or user namespaces, and a quiet machine.

    bench/lan_measurements.py [program]"""

import multiprocessing
import re
import socket
import statistics
import subprocess
import sys
import time
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[1] / "tools" / "driver"))

from game_driver import wait_until  # noqa: E402
from game_pages import check, wait_for_match  # noqa: E402
from game_screens import FRAME, places  # noqa: E402
from lan_games import meet, run, same_picture, tokens  # noqa: E402
from network_lab import GAME_PORT  # noqa: E402

STEPS_MEASURED = 20
FLOOD_SECONDS = 10
LETTERS = {"host": "e", "guest": "f"}  # what each sends once a frame


def start_match(play):
    meet(play)
    play.host.press("Down", "Down", "Return")
    for game in (play.host, play.guest):
        wait_for_match(game, 120)


# From key to picture

def measure_step(play, keyboard, key):
    """Times in s from the key to the controls told, to the state that answers, to the guest's own picture."""
    def row():
        seen = places(play.guest.screenshot())
        return seen and seen[1].y

    def stands():
        return {int(tokens(one.payload)[12]) for one in play.lab.sent("e", time.time() - 0.3)} == {row()}
    wait_until("the guest stands", stands)
    stood, begin = row(), time.time()
    print("keydown --delay 0", key, file=keyboard.stdin, flush=True)
    while row() in (stood, None):
        check("the guest steps", time.time() < begin + 3)
    picture = time.time()
    print("keyup --delay 0", key, file=keyboard.stdin, flush=True)
    told = [wait_until("the step told", lambda: [one.time for one in play.lab.sent(letter, begin) if moves(one)])[0]
            for letter, moves in (("f", lambda controls: tokens(controls.payload)[3] != "0"),
                                  ("e", lambda state: tokens(state.payload)[12] != str(stood)))]
    return [moment - begin for moment in (*told, picture)]


def measure_delay(play):
    """The picture is polled, so its time is late by half a look on average."""
    keys = ("Down", "Up") if places(same_picture(play))[1].y < 32 else ("Up", "Down")
    with subprocess.Popen(["xdotool", "-"], stdin=subprocess.PIPE, text=True,
                          env={"DISPLAY": play.guest.display.name}) as keyboard:
        times = [measure_step(play, keyboard, keys[number % 2]) for number in range(STEPS_MEASURED)]
    for what, values in zip(("controls told", "state told", "guest's picture"), zip(*times)):
        median = statistics.median(values)
        print(f"  from the guest's key to the {what}: median {1000 * median:.0f} ms, {median / FRAME:.1f} frames; "
              f"at most {1000 * max(values):.0f} ms", flush=True)


# Floods

def send_junk(machine, address, rate):
    """Runs in a process of its own until it is killed."""
    with machine.entered():
        sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    start, sent = time.monotonic(), 0
    while True:
        for _ in range(int((time.monotonic() - start) * rate) - sent):
            sender.sendto(b"e8 junkjunk 3 999 ", (address, GAME_PORT))
            sent += 1
        time.sleep(0.001)


def resident(game):
    """KiB."""
    return int(re.search(r"VmRSS:\s+(\d+)", Path(f"/proc/{game.process.pid}/status").read_text())[1])


def report_frames(play, name, since, what):
    times = [one.time for one in play.lab.sent(LETTERS[name], since)]
    check(f"{name} plays on {what}", len(times) > 1)
    gaps = [after - before for before, after in zip(times, times[1:])]
    on_time = sum(gap <= 0.0345 for gap in gaps) / len(gaps)
    print(f"  {name}, {what}: {len(gaps) / (times[-1] - times[0]):.1f} frames/s, {on_time:.1%} within 34 ms, "
          f"longest {1000 * max(gaps):.0f} ms", flush=True)


def measure_floods(play):
    for rate in (0, 5_000, 50_000):
        for target in LETTERS:
            before, start = resident(getattr(play, target)), time.time()
            flood = multiprocessing.Process(target=send_junk, daemon=True,
                                            args=(play.lab["stranger"], play.lab[target].address, rate))
            flood.start()
            time.sleep(FLOOD_SECONDS)
            for name in LETTERS:
                report_frames(play, name, start + 0.5, f"{rate} a second to the {target}")
            flood.kill()
            time.sleep(1)
            after = time.time()
            time.sleep(2)
            report_frames(play, target, after, "a second later")
            print(f"  {target}: resident {resident(getattr(play, target)) - before:+d} KiB", flush=True)


if __name__ == "__main__":
    run((start_match, measure_delay, measure_floods), ("stranger",))
