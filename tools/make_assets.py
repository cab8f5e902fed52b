#!/usr/bin/python3
"""Makes everything in assets/ from its source.

Without an option the files are written anew; with --check they are compared,
byte for byte, with what would be written, and a difference ends with status 1.
The font needs Debian's package python3-fonttools.
"""

import argparse
import sys
from pathlib import Path

sys.dont_write_bytecode = True  # leave no caches beside the sources

from make_font import build_font
from make_images import build_images
from make_sounds import build_sounds

ASSETS = Path(__file__).resolve().parent.parent / "assets"


def build_assets():
    """Returns {file name: bytes} of all assets."""
    return {"8bit_block.ttf": build_font(), **build_images(), **build_sounds()}


def check(assets):
    """Names every file that differs; returns whether all are the same."""
    differing = [
        name
        for name, data in assets.items()
        if not (ASSETS / name).is_file() or (ASSETS / name).read_bytes() != data
    ]
    for name in differing:
        print(f"{ASSETS / name} differs from its source")
    return not differing


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="compare, write nothing")
    options = parser.parse_args()
    assets = build_assets()
    if options.check:
        return 0 if check(assets) else 1
    ASSETS.mkdir(exist_ok=True)
    for name, data in assets.items():
        (ASSETS / name).write_bytes(data)
    return 0


if __name__ == "__main__":
    sys.exit(main())
