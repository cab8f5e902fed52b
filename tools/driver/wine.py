"""Runs programs made for Windows: each gets a small Windows of its own, by Wine, which is made once and copied from
the user's cache folder. What the program opens belongs to the machine that it is started on."""

import fcntl
import os
import shutil
import subprocess
import tempfile
import zlib
from pathlib import Path

WINE, SERVER = Path("/usr/lib/wine/wine64"), Path("/usr/lib/wine/wineserver64")
LIBRARIES = Path("/usr/lib/x86_64-linux-gnu/wine/x86_64-windows")
CACHE = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "vantaro-pugnado"
KEPT = CACHE / f"wine-{WINE.stat().st_mtime_ns if WINE.exists() else 0}-{zlib.crc32(Path(__file__).read_bytes())}"
ENVIRONMENT = {"WINEARCH": "win64", "WINEDLLOVERRIDES": "mscoree,mshtml=", "WINEDEBUG": "-all",
               "LC_ALL": "C.UTF-8"}  # by which Wine reads the names of files
FOR_SDL = {"SDL_VIDEODRIVER": None, "SDL_RENDER_DRIVER": "opengl"}  # Direct3D takes ten times the work


def run(*command, folder):
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   env={**os.environ, **ENVIRONMENT, "WINEPREFIX": folder, "HOME": folder, "DISPLAY": ""})


def make(folder):
    """Returns the folder. Most of the 700 MB are Wine's own files again, which links replace."""
    run(WINE, "wineboot", "-i", folder=folder)
    run(SERVER, "-w", folder=folder)
    shutil.rmtree(f"{folder}/drive_c/windows/winsxs")
    for file in Path(folder).rglob("*.*"):
        if (LIBRARIES / file.name).is_file():
            file.unlink()
            file.symlink_to(LIBRARIES / file.name)
    return folder


class Windows:
    def __init__(self):
        CACHE.mkdir(parents=True, exist_ok=True)
        with (CACHE / "wine.lock").open("w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            if not KEPT.exists():
                with tempfile.TemporaryDirectory(dir=CACHE) as folder:
                    os.rename(make(f"{folder}/windows"), KEPT)
        self._folder = tempfile.TemporaryDirectory(prefix="windows-")
        shutil.copytree(KEPT, self._folder.name, symlinks=True, dirs_exist_ok=True)
        self.environment = {**ENVIRONMENT, **FOR_SDL, "WINEPREFIX": self._folder.name}

    def close(self):
        """Ends what still runs on it."""
        subprocess.run([SERVER, "-k"], env={**os.environ, "WINEPREFIX": self._folder.name})
        self._folder.cleanup()
