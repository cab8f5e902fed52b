"""Plays the real program as a player does: it starts the game in a virtual display of its own, presses keys,
takes pictures of the window and waits until they show what they should.

Needs Xvfb, xdotool and Pillow. Every wait has a deadline and ends in GameError when it passes."""

import os
import signal
import subprocess
import time
from pathlib import Path

from PIL import ImageGrab

from wine import WINE, Windows

ROOT = Path(__file__).resolve().parents[2]  # the project's root, where the game finds its assets
RELEASE_PROGRAM = ROOT / "build" / "release" / "vantaro-pugnado"
WINDOW_TITLE = "Vantaro Pugnado"


class GameError(AssertionError):
    """The game did not do what it should; the text says what was missed."""


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

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self._server.terminate()
        self._server.wait()


class Game:
    """One running game. `root` is where it is started, `environment` is laid over the present one with None
    for a variable to take away."""

    def __init__(self, display, program=RELEASE_PROGRAM, arguments=(), *, root=ROOT, environment=None):
        self.display = display
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
        self.process.kill()
        if self._windows:
            self._windows.close()
        self.process.wait()

    def _xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], capture_output=True, text=True,
                              env={**os.environ, "DISPLAY": self.display.name}).stdout

    # The window

    def open_window(self):
        """Waits for the window and gives it the keyboard."""
        def find():
            self._check_running()
            window = self._xdotool("search", "--onlyvisible", "--name", f"^{WINDOW_TITLE}$").strip()
            lines = self._xdotool("getwindowgeometry", "--shell", window).split() if window else []
            return dict(line.split("=") for line in lines)
        found = wait_until("the game's window", find, 20)
        left, top, width, height = (int(found[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))
        self._box = (left, top, left + width, top + height)  # nothing moves it without a window manager
        self._xdotool("windowfocus", "--sync", found["WINDOW"])

    def screenshot(self):
        """What the window shows now, as a Pillow image."""
        return ImageGrab.grab(xdisplay=self.display.name).convert("RGB").crop(self._box)

    def wait_until(self, what, condition, seconds=10.0):
        """Polls pictures of the window until `condition(picture)` gives something true, and returns that. After a
        wait in vain, build/end_to_end/missed.png shows what was there instead."""
        def look():
            self._check_running()
            return condition(self.screenshot())
        try:
            return wait_until(what, look, seconds)
        except GameError:
            save_picture(self.screenshot(), "missed")
            raise

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

    def wait_exit(self):
        """Waits for the program to end by itself. Returns standard output, standard error and the exit status,
        which is negative for a signal."""
        return *self.process.communicate(timeout=15), self.process.returncode

    def _check_running(self):
        if self.process.poll() is not None:
            raise GameError(f"the game ended early: {self.wait_exit()}")


def save_picture(picture, name, folder=ROOT / "build" / "end_to_end"):
    """Saves the picture as PNG for a look; returns the path."""
    folder.mkdir(parents=True, exist_ok=True)
    path = folder / f"{name}.png"
    picture.save(path)
    return path
