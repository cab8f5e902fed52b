#!/usr/bin/python3
"""Makes all that is in assets/ and packaging/icons/ from its source: font, images, sounds and icons.

Only files that hold something else than their source says are written. What counts are pixels and samples, and
the bytes of all other files: how a picture is packed depends on the packer at hand. With --check nothing is
written; a difference is named and ends with status 1. Needs Debian's python3-fonttools and python3-pil."""

import argparse
import shutil
import sys
import tempfile
import wave
from pathlib import Path

from PIL import Image

sys.dont_write_bytecode = True  # leave no caches beside the sources

from make_font import make_font  # noqa: E402
from make_icons import make_icons, make_window_icon  # noqa: E402
from make_images import make_images  # noqa: E402
from make_sounds import make_sounds  # noqa: E402

ROOT = Path(__file__).resolve().parents[1]
MAKERS = {"assets": (make_font, make_images, make_sounds, make_window_icon), "packaging/icons": (make_icons,)}


def content(path):
    """What a player sees or hears of a file; None if there is none, or a spoilt one."""
    try:
        if path.suffix in (".png", ".ico"):  # of the latter the largest
            with Image.open(path) as image:
                return image.size, image.convert("RGBA").tobytes()
        if path.suffix == ".wav":
            with wave.open(str(path)) as sound:
                return sound.getparams(), sound.readframes(sound.getnframes())
        return path.read_bytes()
    except (OSError, EOFError, wave.Error):
        return None


def names(root):
    return {path.relative_to(root) for folder in MAKERS for path in (root / folder).rglob("*.*")}


def make_all(root):
    for folder, makers in MAKERS.items():
        (root / folder).mkdir(parents=True)
        for make in makers:
            make(root / folder)


def take_over(made, name):
    (ROOT / name).parent.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(made / name, ROOT / name)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    check = parser.parse_args().check
    with tempfile.TemporaryDirectory() as folder:
        made = Path(folder)
        make_all(made)
        wrong = {name for name in names(made) | names(ROOT) if content(made / name) != content(ROOT / name)}
        if not check:
            for name in wrong & names(made):
                take_over(made, name)
            wrong -= names(made)  # leaves those without a source
    for name in sorted(wrong):
        print(f"{name} is not what its source makes")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
