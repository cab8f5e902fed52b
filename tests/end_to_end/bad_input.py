"""Starts the real program in ways that are wrong - odd window sizes, spoilt assets, no display, renderer or
sound - and checks what it prints and how it ends. With a program that was built with sanitizers it checks as
well that nothing is leaked or read out of bounds. Ends with status 0 when all starts went as they should.

    bad_input.py [program [library to preload]]"""

import re
import shutil
import sys
import tempfile
from pathlib import Path
from typing import NamedTuple

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "driver"))

from game_driver import RELEASE_PROGRAM, ROOT, Display, Game, GameError  # noqa: E402
from game_screens import DARK, MENU_GREEN  # noqa: E402

SANITIZERS = {
    "ASAN_OPTIONS": "detect_leaks=1:verify_asan_link_order=0",
    "LSAN_OPTIONS": f"suppressions='{ROOT / 'tests' / 'lsan.supp'}':print_suppressions=0",
    "UBSAN_OPTIONS": "print_stacktrace=1",
}


class Start(NamedTuple):
    name: str
    output: str               # regular expression for all of standard output
    size: tuple = None        # of the window that opens; None when the program must end by itself
    arguments: tuple = ()
    environment: dict = {}
    spoil: tuple = None       # an asset's file name and a way of spoiling it


CLOSING = r"Closing\.\.\.\n"


def stops(reason, stage):
    """The output of a start that gives up: the reason, what did not start, and the end."""
    return rf"{reason}{re.escape(stage)}\n{CLOSING}"


def sizes():
    default = (800, 640)
    too_large = stops(r"Window could not be created! SDL ERROR: .+\n", "Failed to initialize!")
    for arguments, size in (
            (("wide", "high"), default),
            (("", ""), default),
            (("0", "0"), default),
            (("1024",), (1024, 640)),
            (("1000abc", "700.9"), (1000, 700)),
            ((" +300", "0x10"), (300, 640)),
            (("99999999999999999999", "-99999999999999999999"), default),
            (("2147483648", "-2147483649"), default),
            (("-5", "-7"), (1, 1)),
            (("1", "1"), (1, 1)),
            (("20", "700", "more", "than", "two"), (20, 700)),
            (("2147483647", "2147483647"), None),
            (("99999", "1"), None)):
        yield Start(f"window {' x '.join(arguments)}", CLOSING if size else too_large, size, arguments)


def no_libraries():
    no_sdl = r"SDL could not init! SDL Error: .+\n"
    nowhere = {name: None for name in ("DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "SDL_VIDEODRIVER")}
    if not any(Path("/dev/dri").glob("card*")):  # with a graphics card SDL may well find a bare screen to use
        yield Start("no display", stops(no_sdl, "Failed to initialize!"), environment=nowhere)
    for name, reason, environment in (
            ("no X display", no_sdl, {"DISPLAY": None}),
            ("an X display that is not there", no_sdl, {"DISPLAY": ":987654"}),
            ("no such video driver", no_sdl, {"SDL_VIDEODRIVER": "nonesuch"})):
        yield Start(name, stops(reason, "Failed to initialize!"), environment=environment)
    silent = r"Sound driver .+ could not be opened! SDL Error: .+\n"
    for name, lines, environment in (
            ("no OpenGL", "", {"SDL_VIDEO_GL_DRIVER": "nonesuch", "SDL_VIDEO_EGL_DRIVER": "nonesuch"}),
            ("no sound driver found", "", {"SDL_AUDIODRIVER": None, "PULSE_SERVER": "unix:/nonesuch"}),
            ("no such audio driver", silent, {"SDL_AUDIODRIVER": "nonesuch"}),
            ("an audio device that does not open", silent,
             {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": "/dev/null/sound"})):
        yield Start(name, lines + CLOSING, (800, 640), environment=environment)


SPOIL = {
    "missing": lambda path: path.unlink(),
    "empty": lambda path: path.write_bytes(b""),
    "corrupt": lambda path: path.write_bytes(bytes(byte ^ 0x5A for byte in path.read_bytes())),
    "cut": lambda path: path.write_bytes(path.read_bytes()[:path.stat().st_size // 2]),
    "replaced": lambda path: (path.unlink(), path.mkdir()),
    "removed": shutil.rmtree,
}
NO_FILE = ("missing", "empty", "corrupt", "replaced")


def spoilt_assets():
    media, window = "Failed to load media!", (800, 640)
    fonts = "".join(rf"Failed to load {size} font! SDL_ttf Error: .+\n" for size in ("normal", "big", "small"))
    images = {file: rf"Unable to load image assets/{re.escape(file)}! SDL_image Error: .+\n"
                    rf"Failed to load texture image! {what}!\n"
              for file, what in (("to_right.png", "title"), ("to_left.png", "title"), ("down.png", "title"),
                                 ("up.png", "title"), ("dot.png", "black head"))}
    sound = r"Failed to load sound chunk! SDL_mixer Error: .+"  # the one line without a line break
    for file, lines in (("8bit_block.ttf", fonts), *images.items()):
        for way in NO_FILE:
            yield Start(f"{way} {file}", stops(lines, media), spoil=(file, way))
    for way in NO_FILE:
        yield Start(f"{way} hit.wav", stops(sound, "Failed to load sound!"), spoil=("hit.wav", way))
        yield Start(f"{way} miss.wav", sound + CLOSING, window, spoil=("miss.wav", way))
        yield Start(f"{way} end.wav", sound + CLOSING, window, spoil=("end.wav", way))
    for file, lines in images.items():
        yield Start(f"cut {file}", stops(lines, media), spoil=(file, "cut"))
    for file in ("8bit_block.ttf", "hit.wav"):  # the libraries make do with half of these
        yield Start(f"cut {file}", CLOSING, window, spoil=(file, "cut"))
    yield Start("assets elsewhere", CLOSING, window, spoil=("", "removed"))


def root_with_assets(folder, spoil):
    """A folder to start the game in: a copy of the assets, one of them spoilt."""
    shutil.copytree(ROOT / "assets", folder / "assets")
    if spoil:
        file, way = spoil
        SPOIL[way](folder / "assets" / file)
    return folder


def fault_in(start, ended):
    if ended.status != 0:
        return f"status {ended.status}"
    if not re.fullmatch(start.output, ended.stdout):
        return f"output {ended.stdout!r}"
    if re.search(r"Sanitizer|runtime error", ended.stderr):
        return "a sanitizer's report"
    return None


def run(display, program, start, environment):
    """Starts the program once; returns what was wrong, or None."""
    with tempfile.TemporaryDirectory() as folder:
        root = root_with_assets(Path(folder), start.spoil)
        with Game(display, program, start.arguments, root=root, environment=environment | start.environment) as game:
            try:
                if start.size:
                    game.open_window()
                    if game.size != start.size:
                        return f"window {game.size}"
                    game.wait_until("the main menu", lambda picture: picture.getpixel((0, 0)) in (MENU_GREEN, DARK))
                    game.close_window()
                ended = game.wait_exit()
            except GameError as error:
                return str(error)
        fault = fault_in(start, ended)
        return fault and f"{fault}\n{ended.stderr}"


def main():
    program, library = [*sys.argv[1:], None, None][:2]
    program = Path(program or RELEASE_PROGRAM).resolve()
    faults = 0
    with Display() as display, tempfile.TemporaryDirectory() as folder:
        link = Path(folder) / "library"  # what is preloaded may lie at no path with a blank
        if library:
            link.symlink_to(Path(library).resolve())
        environment = SANITIZERS | {"LD_PRELOAD": str(link) if library else None}
        for start in (*sizes(), *no_libraries(), *spoilt_assets()):
            fault = run(display, program, start, environment)
            print(f"{start.name}: {fault or 'as it should be'}", flush=True)
            faults += fault is not None
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
