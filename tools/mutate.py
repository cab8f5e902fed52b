#!/usr/bin/python3
"""Shows which faults the tests would catch: changes the game at random places, one at a time - swaps a comparison,
a constant, a sign, drops a statement -, builds and runs the test programs, and lists the changes that none of
them noticed. Works on a copy of the tree in build/mutants/ and leaves the tree itself alone.

    tools/mutate.py [--count 50] [--seed 1] [--tests unit_tests ...] [folder ...]

Folders are those of the game, all of them by default. A change that does not compile, or that makes no difference
to the program the compiler makes, is replaced by another."""

import argparse
import random
import re
import shutil
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
COPY = ROOT / "build" / "mutants"
FOLDERS = subprocess.run([ROOT / "tools" / "check_floors.py", "--list"], check=True, capture_output=True, text=True).stdout.split()
TIMEOUT = 400  # s; a change that makes a test hang is noticed

SWAPS = ((r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "), (r" == ", " != "), (r" != ", " == "),
         (r" && ", " || "), (r" \|\| ", " && "), (r" \+ ", " - "), (r" - ", " + "), (r" \* (?=\w)", " / "),
         (r" / ", " * "), (r" \+= ", " -= "), (r" -= ", " += "), (r"\+\+", "--"), (r"--", "++"),
         (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"!(?=[a-z(])", ""),
         (r"(?<![\w.])\d+(?![\w.])", lambda match: str(int(match[0]) + 1)), (r"(?<![\w.])-(?=\d)", ""))
STATEMENT = re.compile(r"^ +(?!return|using|const|static|break|continue|default|case)[\w:>.*\[\]-]+"
                       r"(\(| [-+|&]?= |\+\+;|--;).*;$")
NOT_CODE = re.compile(r'^\s*(//|#|using |"|static_assert)')


def changes(path):
    """Every change of a file: line number, the new line and what was done."""
    for number, line in enumerate(path.read_text().splitlines()):
        if NOT_CODE.match(line):
            continue
        texts = [match.span() for match in re.finditer(r'"(\\.|[^"])*"|//.*', line)]
        for pattern, replacement in SWAPS:
            for match in re.finditer(pattern, line):
                if not any(start <= match.start() < end for start, end in texts):
                    yield number, line[:match.start()] + match.expand(replacement) + line[match.end():] \
                        if isinstance(replacement, str) else \
                        line[:match.start()] + replacement(match) + line[match.end():]
        if STATEMENT.match(line):
            yield number, "  ;"


def run(*command, timeout=None):
    try:
        return subprocess.run(command, cwd=COPY, capture_output=True, timeout=timeout).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def build(targets):
    return run("cmake", "--build", "build", "--target", *targets)


def programs(targets):
    return {target: next(path for path in (COPY / "build").rglob(target) if path.is_file()) for target in targets}


def caught_by(tests):
    """The name of the first test program that fails; None when all are content."""
    for name, program in programs(tests).items():
        if not run(str(program), "--gtest_fail_fast", "--gtest_brief=1", timeout=TIMEOUT):
            return name
    return None


def compiled():
    return (COPY / "build" / "libpugnado.a").read_bytes()


def copy_changed(source, copy):
    """Leaves a file that is the same already untouched, and dates one that is not as of now, so that it is built."""
    if not Path(copy).exists() or Path(source).read_bytes() != Path(copy).read_bytes():
        shutil.copyfile(source, copy)


def prepare(tests):
    COPY.mkdir(parents=True, exist_ok=True)
    for name in (*FOLDERS, "tests", "assets", "packaging"):
        shutil.copytree(ROOT / name, COPY / name, dirs_exist_ok=True, copy_function=copy_changed)
    copy_changed(ROOT / "CMakeLists.txt", COPY / "CMakeLists.txt")
    if not (run("cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DPUGNADO_TESTS=ON", "-DCMAKE_CXX_FLAGS=-w")
            and build(tests)) or caught_by(tests):
        raise SystemExit("the tests do not pass on the tree as it is")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=50)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--tests", nargs="+", default=["unit_tests"])
    parser.add_argument("folders", nargs="*", default=FOLDERS)
    options = parser.parse_args()
    prepare(options.tests)
    original = compiled()
    candidates = [(path, *change) for folder in options.folders for path in sorted((COPY / folder).glob("*.cpp"))
                  for change in changes(path)]
    random.Random(options.seed).shuffle(candidates)
    tried = missed = 0
    for path, number, line in candidates:
        if tried == options.count:
            break
        text = path.read_text()
        lines = text.splitlines()
        before, lines[number] = lines[number], line
        path.write_text("\n".join(lines) + "\n")
        if build(options.tests) and compiled() != original:
            tried += 1
            if not caught_by(options.tests):
                missed += 1
                print(f"not noticed: {path.relative_to(COPY)}:{number + 1}\n  - {before.strip()}\n  + {line.strip()}",
                      flush=True)
        path.write_text(text)
    print(f"{tried - missed} of {tried} changes in {', '.join(options.folders)} noticed")


if __name__ == "__main__":
    main()
