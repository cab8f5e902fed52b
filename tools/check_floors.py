#!/usr/bin/python3
"""Fails when something of the game runs upwards: a file that includes one of a floor above its own, or compiled code
that needs a function or a variable that is defined above. The floors are listed in cmake/floors.cmake.

    tools/check_floors.py OBJECTS     OBJECTS is where the compiled files lie, a folder to each floor
    tools/check_floors.py --list      prints the floors' folders"""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
FLOORS = re.search(r"^set\(floors (.*)\)$", (ROOT / "cmake/floors.cmake").read_text(), re.MULTILINE)[1].split()


def may_need(floor, other):
    return other in FLOORS[:FLOORS.index(floor) + 1]


def includes():
    """Pairs of a file and a file that it includes."""
    for floor in FLOORS:
        for path in sorted((ROOT / floor).glob("*.*")):
            for included in re.findall(r'^#include "(.*)"', path.read_text(), re.MULTILINE):
                yield str(path.relative_to(ROOT)), included


def symbols(compiled, kind):
    listing = subprocess.run(["nm", f"--{kind}-only", "--demangle", "--format=posix", compiled], check=True,
                             capture_output=True, text=True).stdout
    return {line.rsplit(" ", 3 if kind == "defined" else 1)[0].strip() for line in listing.splitlines()
            if re.search(r" [BCDRTUG]\b", line)}


def links(objects):
    """Triples of a file, a file that it cannot be linked without, and for what."""
    files = {path: str(path.relative_to(objects)).removesuffix(".o") for path in sorted(objects.glob("*/*.o"))}
    home = {symbol: name for path, name in files.items() for symbol in symbols(path, "defined")}
    for path, name in files.items():
        for symbol in symbols(path, "undefined") & home.keys():
            yield name, home[symbol], symbol


def main():
    if sys.argv[1:] == ["--list"]:
        return print("\n".join(FLOORS))
    objects = Path(sys.argv[1])
    if not any(objects.glob("*/*.o")):
        raise SystemExit(f"there is no compiled file in {objects}")
    needs = [(*pair, "includes it") for pair in includes()] + list(links(objects))
    upwards = [(name, other, why) for name, other, why in needs
               if not may_need(name.split("/")[0], other.split("/")[0])]
    for name, other, why in sorted(upwards):
        print(f"{name} must not need {other}: {why}")
    raise SystemExit(1 if upwards else 0)


main()
