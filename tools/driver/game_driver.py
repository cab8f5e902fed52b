"""Plays the real program as a player does: it starts the game in a virtual display of its own, presses keys,
takes pictures of the window and waits until they show what they should.

Needs Xvfb, xdotool and Pillow. Every wait has a deadline and ends in GameError when it passes."""

import os
import signal
import subprocess
import time
from pathlib import Path
from typing import NamedTuple

from PIL import ImageGrab

from wine import WINE, Windows

ROOT = Path(__file__).resolve().parents[2]  # the project's root, where the game finds its assets
RELEASE_PROGRAM = ROOT / "build" / "release" / "vantaro-pugnado"
WINDOW_TITLE = "Vantaro Pugnado"


class GameError(AssertionError):
    """The game did not do what it should; the text says what was missed."""


class Ended(NamedTuple):
    status: int  # exit status, negative for a signal
    stdout: str
    stderr: str


def wait_until(what, condition, seconds=10.0):
    """Polls `condition` until it gives something true, and returns that."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise GameError(f"not within {seconds:g} s: {what}")
        time.sleep(0.03)


class Display:
    """A virtual display with OpenGL, no window manager and no pointer to disturb it. `name` is its DISPLAY."""

    def __init__(self, width=1024, height=768):
        readable, writable = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writable), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
             "-noreset"],  # which would break the next client's connection when the last one leaves
            pass_fds=[writable], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writable)
        with os.fdopen(readable) as number:  # the server writes the number it found free once it is ready
            self.name = ":" + number.readline().strip()
        if self.name == ":":
            raise GameError("Xvfb does not start")

    def close(self):
        self._server.terminate()
        self._server.wait()

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self.close()


class Game:
    """One running game. `root` is where it is started, `environment` is laid over the present one with None
    for a variable to take away."""

    def __init__(self, display, program=RELEASE_PROGRAM, arguments=(), *, root=ROOT, environment=None):
        self.display = display
        self.size = None  # of the window: width and height in pixels, once it is open
        self._windows = Windows() if str(program).endswith(".exe") else None
        variables = {**os.environ, "DISPLAY": display.name, "SDL_VIDEODRIVER": "x11", "SDL_AUDIODRIVER": "dummy",
                     **(self._windows.environment if self._windows else {}), **(environment or {})}
        self.process = subprocess.Popen(
            [*([WINE] if self._windows else []), str(program), *arguments], cwd=root, text=True, errors="replace",
            env={name: value for name, value in variables.items() if value is not None},
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def __enter__(self):
        return self

    def __exit__(self, *error):
        if self.process.returncode is None:
            self.process.kill()
        if self._windows:
            self._windows.close()
        if self.process.returncode is None:
            self.process.communicate()

    def _xdotool(self, *arguments):
        done = subprocess.run(["xdotool", *arguments], capture_output=True, text=True,
                              env={**os.environ, "DISPLAY": self.display.name})
        return done.stdout

    # The window

    def open_window(self, seconds=20.0):
        """Waits for the window and gives it the keyboard."""
        def find():
            self._check_running()
            window = self._xdotool("search", "--onlyvisible", "--name", f"^{WINDOW_TITLE}$").strip()
            lines = self._xdotool("getwindowgeometry", "--shell", window).split() if window else []
            return dict(line.split("=") for line in lines)
        found = wait_until("the game's window", find, seconds)
        left, top, width, height = (int(found[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))
        self.size = (width, height)
        self._box = (left, top, left + width, top + height)  # nothing moves it without a window manager
        self._xdotool("windowfocus", "--sync", found["WINDOW"])

    def screenshot(self):
        """What the window shows now, as a Pillow image."""
        return ImageGrab.grab(xdisplay=self.display.name).convert("RGB").crop(self._box)

    def pixel(self, x, y):
        return self.screenshot().getpixel((x, y))

    def wait_until(self, what, condition, seconds=10.0):
        """Polls pictures of the window until `condition(picture)` gives something true, and returns that. The
        last picture of a wait in vain is kept in build/end_to_end/."""
        latest = []

        def look():
            self._check_running()
            latest[:] = [self.screenshot()]
            return condition(latest[0])
        try:
            return wait_until(what, look, seconds)
        except GameError as error:
            path = save_picture(latest[0], "missed") if latest else "none"
            raise GameError(f"{error} (last picture: {path})") from None

    # The keyboard; keys are X key names such as Return, Up, space, w.

    def press(self, *keys):
        """Presses and releases the keys, one after the other."""
        self._xdotool("key", "--delay", "10", *keys)

    def hold_for(self, seconds, key):
        self._xdotool("keydown", "--delay", "0", key, "sleep", f"{seconds:.3f}", "keyup", "--delay", "0", key)

    # The end

    def close_window(self):
        """Asks the game to close, which SDL hands to it just as a click on the window's close button."""
        if self._windows:
            self.press("alt+F4")
        else:
            self.process.send_signal(signal.SIGTERM)

    def wait_exit(self, seconds=15.0):
        """Waits for the program to end by itself."""
        try:
            stdout, stderr = self.process.communicate(timeout=seconds)
        except subprocess.TimeoutExpired:
            raise GameError(f"the game still runs after {seconds:g} s") from None
        return Ended(self.process.returncode, stdout, stderr)

    def _check_running(self):
        if self.process.poll() is not None:
            ended = self.wait_exit()
            raise GameError(f"the game ended early, status {ended.status}:\n{ended.stdout}{ended.stderr}")


def save_picture(picture, name, folder=ROOT / "build" / "end_to_end"):
    """Saves the picture as PNG for a look; returns the path."""
    folder.mkdir(parents=True, exist_ok=True)
    path = folder / f"{name}.png"
    picture.save(path)
    return path
