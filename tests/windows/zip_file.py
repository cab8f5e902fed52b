"""Packs the game for Windows twice, under different circumstances, looks after the zip and the program in it, and
plays it where little is at hand: in a folder of odd letters, from another one, without a network and without a
sound device. Ends with status 0 when all was as it should be."""

import re
import subprocess
import sys
import tempfile
import zipfile
from contextlib import nullcontext
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools" / "driver"))

from game_driver import Display, Game  # noqa: E402
from game_pages import check, check_end, choose, pause, wait_for_match  # noqa: E402
from game_screens import BLACK, PLAYER_1, PLAYER_2, WHITE, land_punch  # noqa: E402
from network_lab import Machine, become_root_of_own  # noqa: E402

SYSTEM = {"ADVAPI32", "GDI32", "IMM32", "IPHLPAPI", "KERNEL32", "OLEAUT32", "SETUPAPI", "SHELL32", "USER32", "VERSION",
          "WINMM", "WS2_32", "msvcrt", "ole32"}
LICENCES = {"freetype", "gcc", "mingw-w64", "sdl2", "sdl2-image", "sdl2-mixer", "sdl2-ttf", "stb_image"}


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def pack(zone, mask):
    return Path(output("sh", "-c", f"umask {mask}; TZ={zone} {ROOT}/packaging/windows/make_zip.sh").splitlines()[-1])


def check_zip(path, first):
    check("the same sources make the same zip", path.read_bytes() == first)
    check(f"the zip takes 2 MB at most, not {len(first)} bytes", len(first) <= 2_000_000)
    with zipfile.ZipFile(path) as file:
        names = {name.partition("/")[2] for name in file.namelist()}
    expected = {"vantaro-pugnado.exe", "README.txt", "LICENSE", *(f"licences/{name}.txt" for name in LICENCES),
                *(f"assets/{asset.name}" for asset in (ROOT / "assets").iterdir())}
    check(f"nothing is missing or too much: {names ^ expected}", names == expected)


def check_program(path, version):
    imports = set(re.findall(r"DLL Name: (.*)\.dll", output("x86_64-w64-mingw32-objdump", "-p", path), re.I))
    check(f"the program needs the system's libraries alone, not {imports - SYSTEM}", imports and imports <= SYSTEM)
    check("it tells its version", f"ProductVersion\0{version}\0".encode("utf-16-le") in path.read_bytes())
    icon = (ROOT / "packaging" / "icons" / "vantaro-pugnado.ico").read_bytes()
    check("it has the icon", icon[-2000:] in path.read_bytes())


def lonely():
    """A machine without a network, where one can be made."""
    try:
        become_root_of_own()
        machine = Machine()
        machine.ip("link set lo up")  # as it always is on Windows
        return machine.entered()
    except OSError:
        return nullcontext()


def play(program, folder):
    silent = {"SDL_AUDIODRIVER": None}
    with Display() as display, lonely(), Game(display, program, root=folder, environment=silent) as game:
        game.open_window()
        choose(game, "2 Player")
        wait_for_match(game, 120)
        for boxer in ((PLAYER_1, 1, WHITE), (PLAYER_2, 2, BLACK)):
            land_punch(game, *boxer)
        pause(game)
        game.close_window()
        check_end(game)


def main():
    first = pack("UTC", "022").read_bytes()
    path = pack("Asia/Tokyo", "077")
    check_zip(path, first)
    with tempfile.TemporaryDirectory() as folder:
        with zipfile.ZipFile(path) as file:
            file.extractall(Path(folder) / "Kämpfe & 拳")
        program = next(Path(folder).rglob("*.exe"))
        check_program(program, re.search(r"pugnado-(.*)-windows", path.name)[1])
        play(program, folder)


if __name__ == "__main__":
    main()
