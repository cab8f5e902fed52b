#!/usr/bin/python3
"""Shows what every test case is worth: puts faults into the game, one at a time, builds, runs the C++ test cases that
come by the changed line, each as its own process, and records which of them notice; a crash or a hang is noticed too.
Works on a copy of the tree in build/mutants/ and leaves the tree itself alone. The table goes to build/mutants.json
after every fault, and a summary to the output.

The faults are a fixed list, tools/faults.txt: file, line, changed line and, for one that no test can notice, why;
with tabs between. They were drawn at random: comparisons and constants changed, arguments swapped, statements dropped.
A line is found by its words in the file of that name (after "#": which of several equal ones, or else the first).
Faults whose line is gone are named and skipped; write others in their place."""

import argparse
import json
import re
import resource
import shutil
import subprocess
from contextlib import contextmanager
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
COPY = ROOT / "build" / "mutants"
BUILD = COPY / "build"
COVERAGE = COPY / "coverage"  # a second build, which counts how often a line is passed
LIST = ROOT / "tools" / "faults.txt"
TABLE = ROOT / "build" / "mutants.json"


# The copy of the tree

def run(*command, **options):
    quiet = {name: subprocess.DEVNULL for name in ("stdin", "stdout", "stderr")}
    try:
        return subprocess.run([str(word) for word in command], **{**quiet, **options}).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def output(*command, **options):
    return subprocess.run([str(word) for word in command], **options, text=True, check=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def copy_tree():
    """Leaves a file that is the same already untouched, and dates one that is not as of now, so that it is built."""
    for path in sources():
        if not (ROOT / path.relative_to(COPY)).exists():
            path.unlink()
    for name in output("git", "ls-files", "--cached", "--others", "--exclude-standard", cwd=ROOT).splitlines():
        source, copy = ROOT / name, COPY / name
        if source.is_file() and not (copy.exists() and source.read_bytes() == copy.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
            copy.touch()


def build(folder, flags=None, targets=("all",)):
    ready = not flags or run("cmake", "-S", COPY, "-B", folder, "-G", "Ninja", "-DPUGNADO_TESTS=ON",
                             f"-DCMAKE_CXX_FLAGS=-w {flags}")
    return ready and run("cmake", "--build", folder, "--parallel", 2, "--target", *targets)


def sources():
    """The game's own files, headers too."""
    floors = output(ROOT / "tools" / "check_floors.py", "--list").splitlines()
    return [path for floor in floors for path in sorted((COPY / floor).glob("*.*"))]


# Test cases

def test_cases(folder, pattern):
    """The commands of all cases of GoogleTest programs with a name like that."""
    listed = json.loads(output("ctest", "--test-dir", folder, "--show-only=json-v1"))["tests"]
    return {test["name"]: [*test["command"], "--gtest_throw_on_failure"] for test in listed
            if re.search(pattern, test["name"]) and any("--gtest_filter" in word for word in test.get("command", ()))}


def passes(command, seconds=100):
    """Whether a test passes; it ends at its first failure, and when it takes far longer than these seconds of work."""
    def limit():
        for kind, most in ((resource.RLIMIT_CPU, int(2 + 3 * seconds)), (resource.RLIMIT_FSIZE, 1 << 28),
                           (resource.RLIMIT_AS, 1 << 33), (resource.RLIMIT_CORE, 0)):
            resource.setrlimit(kind, (most, most))
    return run(*command, cwd=COPY, preexec_fn=limit, timeout=60 + 20 * seconds)


def work_of(name, command):
    """Seconds of a processor that a test takes."""
    def spent():
        usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        return usage.ru_utime + usage.ru_stime
    before = spent()
    if not passes(command):
        raise SystemExit(f"{name} does not pass on the tree as it is")
    return spent() - before


def lines_not_passed(folder, command):
    """The lines of code that a test does not come by, by path and number."""
    for old in folder.rglob("*.gcda"):
        old.unlink()
    passes(command)
    counts = {}
    for document in output("gcov", "-t", "-j", *folder.rglob("*.gcda"), cwd=folder).splitlines():
        for file in json.loads(document)["files"]:
            for line in file["lines"]:
                place = Path(file["file"]), line["line_number"] - 1
                counts[place] = counts.get(place, 0) + line["count"]
    return {place for place, count in counts.items() if count == 0}


# Faults

def place_of(fault):
    """Path and number of the line that a fault changes; None when it is gone."""
    name, _, which = fault[0].partition("#")
    path = next((path for path in sources() if path.name == name), None)
    lines = path.read_text().splitlines() if path else []
    numbers = [number for number, line in enumerate(lines) if line.strip() == fault[1]]
    return (path, numbers[int(which or 1) - 1]) if len(numbers) >= int(which or 1) else None


@contextmanager
def changed(fault, place):
    path, number = place
    text = path.read_text()
    lines = text.splitlines()
    lines[number] = fault[2]
    path.write_text("\n".join(lines) + "\n")
    yield
    path.write_text(text)


def try_faults(faults, pattern):
    """Yields the table's rows."""
    cases = test_cases(BUILD, pattern)
    seconds = {name: work_of(name, command) for name, command in cases.items()}
    elsewhere = {name: lines_not_passed(COVERAGE, command) for name, command in test_cases(COVERAGE, pattern).items()}
    programs = {Path(command[0]).relative_to(BUILD) for command in cases.values()}
    if not programs or not faults:
        raise SystemExit("no test has such a name, or no fault is in such a file")
    for fault in faults:
        place = place_of(fault)
        if not place:
            print(f"gone: {fault[0]}: {fault[1]}", flush=True)
            continue
        with changed(fault, place):
            noticed_by = ["the build"]
            if build(BUILD, targets=programs):
                noticed_by = [name for name, command in cases.items()
                              if place not in elsewhere[name] and not passes(command, seconds[name])]
        yield {"file": fault[0], "old": fault[1], "new": fault[2], "equal": fault[3:], "noticed_by": noticed_by}


def summarize(table):
    missed = [row for row in table if not row["noticed_by"] and not row["equal"]]
    for row in missed:
        print(f"not noticed: {row['file']}\n  - {row['old']}\n  + {row['new']}")
    print(f"{'notices':>8}{'alone':>8}")
    for name in sorted({name for row in table for name in row["noticed_by"]}):
        noticed = [row["noticed_by"] for row in table if name in row["noticed_by"]]
        print(f"{len(noticed):8}{sum(len(names) == 1 for names in noticed):8}  {name}")
    equal = sum(bool(row["equal"]) for row in table)
    print(f"{len(table) - equal - len(missed)} of {len(table) - equal} faults noticed; {equal} more make no difference")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tests", default="", metavar="REGEX", help="run only test cases with such a name")
    parser.add_argument("--flags", default="-O1", help="for the compiler: %(default)s")
    parser.add_argument("files", nargs="*", help="use only faults of these, such as net.cpp; of all by default")
    options = parser.parse_args()
    copy_tree()
    if not build(BUILD, options.flags) or not build(COVERAGE, "-O0 --coverage"):
        raise SystemExit("the tree does not build")
    table = []
    faults = [fault for fault in (line.split("\t") for line in LIST.read_text().splitlines())
              if fault[0].partition("#")[0] in options.files or not options.files]
    for row in try_faults(faults, options.tests):
        table.append(row)
        TABLE.write_text(json.dumps(table, indent=1))
    summarize(table)


if __name__ == "__main__":
    main()
