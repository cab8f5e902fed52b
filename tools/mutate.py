#!/usr/bin/python3
"""Shows what every test case is worth: puts faults into the game, one at a time - a comparison or a constant changed,
arguments swapped, a statement dropped -, builds, runs the C++ test cases that come by the changed line, each as its
own process, and records which of them notice; a crash or a hang is noticed too. Works on a copy of the tree in
build/mutants/ and leaves the tree itself alone. The table goes to build/mutants.json after every fault, and a summary
to the output.

The faults are a fixed list, tools/faults.txt: file, line, changed line and, for one that no test can notice, why;
with tabs between. A line is found by its words: in the file of that name (after "#": which of several equal ones), or
else where it is the only such line of the game. Faults whose line is gone are named and skipped; --make puts others
in their place."""

import argparse
import json
import random
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

SWAPS = ((r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "), (r" == ", " != "), (r" != ", " == "),
         (r" && ", " || "), (r" \|\| ", " && "), (r" \+ ", " - "), (r" - ", " + "), (r" \* (?=\w)", " / "),
         (r" / ", " * "), (r" \+= ", " -= "), (r" -= ", " += "), (r"\+\+", "--"), (r"--", "++"),
         (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"!(?=[a-z(])", ""), (r"(?<![\w.])-(?=\d)", ""),
         (r"(?<![\w.])\d+(?![\w.])", lambda match: str(int(match[0]) + 1)), (r" \| \w+", ""),
         (r"([(,] ?)(\w+), (\w+)(?=[,)])", r"\1\3, \2"))
STATEMENT = re.compile(r"(?!return|using|const|static|break|continue|default|case)[\w:>.*\[\]-]+"
                       r"(\(| [-+|&]?= |\+\+;|--;).*;$")
NOT_CODE = re.compile(r'(//|#|using |"|static_assert)')


def changes(line):
    """Every changed text of a line."""
    if NOT_CODE.match(line):
        return
    texts = [match.span() for match in re.finditer(r'"(\\.|[^"])*"|//.*', line)]
    for pattern, replacement in SWAPS:
        for match in re.finditer(pattern, line):
            if not any(start <= match.start() < end for start, end in texts):
                new = replacement(match) if callable(replacement) else match.expand(replacement)
                yield line[:match.start()] + new + line[match.end():]
    for start, _ in texts:
        if re.match(r'"[A-Z]', line[start:]):
            yield line[:start + 1] + "~" + line[start + 2:]
    if STATEMENT.match(line):
        yield ";"


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


def sources_and_objects():
    """The game's own files, headers too, and what the compiler makes of them."""
    commands = [command for command in json.loads((BUILD / "compile_commands.json").read_text())
                if not Path(command["file"]).is_relative_to(COPY / "tests")]
    folders = sorted({Path(command["file"]).parent for command in commands})
    return ([path for folder in folders for path in sorted(folder.iterdir()) if path.suffix in (".cpp", ".h")],
            [BUILD / re.search(r" -o (\S+)", command["command"])[1] for command in commands])


def compiled(objects):
    """What the compiler makes of the tree as it is; None where it does not compile."""
    built = build(BUILD, targets=[path.relative_to(BUILD) for path in objects])
    return [path.read_bytes() for path in objects] if built else None


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

def read_list():
    return [tuple(line.split("\t")) for line in LIST.read_text().splitlines()] if LIST.exists() else []


def place_of(fault, sources):
    """Path and number of the line that a fault changes; None when it is gone."""
    name, _, which = fault[0].partition("#")
    found = [(path, number) for path in sources for number, line in enumerate(path.read_text().splitlines())
             if line.strip() == fault[1]]
    here = [place for place in found if place[0].name == name]
    return here[int(which or 1) - 1] if len(here) >= int(which or 1) else found[0] if len(found) == 1 else None


@contextmanager
def changed(fault, place):
    path, number = place
    text = path.read_text()
    lines = text.splitlines()
    lines[number] = fault[2]
    path.write_text("\n".join(lines) + "\n")
    yield
    path.write_text(text)


def make_list(count, seed):
    """Fills the list up with changes of random lines, one in a line, that compile and make a difference."""
    sources, objects = sources_and_objects()
    faults = [fault for fault in read_list() if place_of(fault, sources)]
    original = compiled(objects)
    candidates = []
    for path in sources:
        lines = [line.strip() for line in path.read_text().splitlines()]
        for number, line in enumerate(lines):
            which = lines[:number].count(line)
            candidates += [(f"{path.name}#{which + 1}" if which else path.name, line, new) for new in changes(line)]
    random.Random(seed).shuffle(candidates)
    for fault in candidates:
        if len(faults) < count and not any(fault[:2] == other[:2] for other in faults):
            with changed(fault, place_of(fault, sources)):
                result = compiled(objects)
            if result not in (None, original):
                faults.append(fault)
    LIST.write_text("".join("\t".join(fault) + "\n" for fault in sorted(faults)))


def try_faults(faults, pattern):
    """Yields the table's rows."""
    sources, objects = sources_and_objects()
    cases = test_cases(BUILD, pattern)
    seconds = {name: work_of(name, command) for name, command in cases.items()}
    elsewhere = {name: lines_not_passed(COVERAGE, command) for name, command in test_cases(COVERAGE, pattern).items()}
    programs = {Path(command[0]).relative_to(BUILD) for command in cases.values()}
    for fault in faults:
        place = place_of(fault, sources)
        if not place:
            print(f"gone: {fault[0]}: {fault[1]}", flush=True)
            continue
        with changed(fault, place):
            if compiled(objects) and build(BUILD, targets=programs):
                noticed_by = [name for name, command in cases.items()
                              if place not in elsewhere[name] and not passes(command, seconds[name])]
                yield {"file": fault[0], "old": fault[1], "new": fault[2], "equal": fault[3:], "noticed_by": noticed_by}
            else:
                print(f"does not compile: {fault[0]}: {fault[2]}", flush=True)


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
    parser.add_argument("--make", type=int, metavar="COUNT", help="only fill the list up to so many faults")
    parser.add_argument("--seed", type=int, default=1, help="of the faults that are added")
    parser.add_argument("--tests", default="", metavar="REGEX", help="run only test cases with such a name")
    parser.add_argument("--flags", default="-O1", help="for the compiler: %(default)s")
    parser.add_argument("files", nargs="*", help="use only faults of these, such as net.cpp; of all by default")
    options = parser.parse_args()
    copy_tree()
    if not build(BUILD, options.flags) or not (options.make or build(COVERAGE, "-O0 --coverage")):
        raise SystemExit("the tree does not build")
    if options.make:
        make_list(options.make, options.seed)
        return
    table = []
    faults = [fault for fault in read_list() if fault[0].partition("#")[0] in options.files or not options.files]
    for row in try_faults(faults, options.tests):
        table.append(row)
        TABLE.write_text(json.dumps(table, indent=1))
    summarize(table)


if __name__ == "__main__":
    main()
