"""Packs the game from a clean copy of the tree, has Debian's own tools look at the package, then installs it into
an empty root of its own, plays it from there and removes it. Ends with status 0 when all was as it should be, with
77 where there is no Debian."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools" / "driver"))

from game_driver import Display, Game, save_picture  # noqa: E402
from game_pages import check, check_end, choose, wait_for_main_menu  # noqa: E402

SKIPPED = 77  # exit status of a test that cannot be run here
METAINFO = "usr/share/metainfo/example.vantaro_pugnado.vantaro_pugnado.metainfo.xml"
NO_SOUND = {"SDL_AUDIODRIVER": None, "PULSE_SERVER": None}


def run(*command, **variables):
    """Runs a command that must succeed; returns its standard output."""
    done = subprocess.run(command, capture_output=True, text=True, env={**os.environ, **variables})
    check(f"{command[0]} succeeds, status {done.returncode}:\n{done.stdout}{done.stderr}", done.returncode == 0)
    return done.stdout


def check_versions(tree):
    """The release's version is plain, and every commit after it has one of its own."""
    git = ("git", "-C", tree, "-c", "user.name=nobody", "-c", "user.email=nobody")
    release = run(tree / "packaging" / "version.sh").strip()
    run(*git, "init", "-q")
    run(*git, "add", ".")
    for expected in (release, f"{release}+git1", f"{release}+git2"):
        run(*git, "commit", "-q", "--allow-empty", "-m", expected)
        version = run(tree / "packaging" / "version.sh").strip()
        check(f"the version is {expected}, not {version}", version == expected)


def build_package(folder):
    """Packs a copy of the tree, which is gone before the package is used: nothing of it may be needed then."""
    tree = folder / "a tree"
    shutil.copytree(ROOT, tree, ignore=shutil.ignore_patterns("build", ".git"))
    package = Path(run(tree / "packaging" / "make_package.sh").splitlines()[-1])
    check_versions(tree)
    kept = shutil.move(package, folder / package.name)
    shutil.rmtree(tree)
    return kept


def check_with_tools(package, content):
    run("desktop-file-validate", content / "usr/share/applications/vantaro-pugnado.desktop")
    run("appstreamcli", "validate", "--no-net", content / METAINFO)
    page = content / "usr/share/man/man6/vantaro-pugnado.6.gz"
    warnings = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page], text=True,
                              capture_output=True, env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"}).stderr
    check(f"the manual page is set without a warning, not with {warnings}", not warnings)
    tags = run("lintian", "--allow-root", "--tag-display-limit", "0", package)
    check(f"lintian has nothing to say, not {tags}", not tags)


def check_words(package, content):
    """One version everywhere, and a picture behind every screenshot."""
    version = run("dpkg-deb", "-f", package, "Version").strip()
    metainfo = (content / METAINFO).read_text()
    changelog, page = (run("zcat", content / "usr/share" / name)
                       for name in ("doc/vantaro-pugnado/changelog.gz", "man/man6/vantaro-pugnado.6.gz"))
    places = (re.search(r"\((.*?)\)", changelog)[1], re.search(r'<release version="(.*?)"', metainfo)[1],
              re.search(r"Vantaro Pugnado ([\d.]+)", page)[1],
              re.search(r"^## \[(\d.*?)\]", (ROOT / "CHANGELOG.md").read_text(), re.M)[1])
    check(f"changelogs, metainfo and manual page name version {version}, not {places}", set(places) == {version})
    for name in re.findall("<image>https://vantaro-pugnado.example/(.*?)</image>", metainfo):
        check(f"the screenshot {name} is there", (ROOT / name).is_file())


def files(root):
    return {str(path.relative_to(root)) for path in root.rglob("*") if "dpkg" not in path.parts}


def dpkg(root, *arguments):
    run("dpkg", f"--root={root}", "--force-not-root", "--force-script-chrootless", "--log=/dev/null", *arguments,
        PATH="/usr/sbin:/usr/bin:/sbin:/bin")


def install_play_remove(package, content, folder):
    root = folder / "root"
    for name in ("updates", "info"):
        (root / "var/lib/dpkg" / name).mkdir(parents=True)
    # This system's packages are those that the package may depend on.
    shutil.copy("/var/lib/dpkg/status", root / "var/lib/dpkg")
    before = files(root)
    dpkg(root, "--install", package)
    entry = (content / "usr/share/applications/vantaro-pugnado.desktop").read_text()
    command, *arguments = re.search("^Exec=(.*)$", entry, re.M)[1].split()
    environment = {**NO_SOUND, "XDG_RUNTIME_DIR": str(folder), "PATH": f"{root}/usr/games:{os.environ['PATH']}"}
    with Display() as display, Game(display, command, arguments, root=folder, environment=environment) as game:
        game.open_window()
        wait_for_main_menu(game)
        save_picture(game.screenshot(), "installed_main_menu")
        choose(game, "Exit")
        check_end(game)
    dpkg(root, "--purge", "vantaro-pugnado")
    check(f"nothing is left behind, not {files(root) - before}", files(root) == before)


def main():
    if not shutil.which("dpkg"):
        print("skipped: the package is Debian's, and there is no dpkg here")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        package = build_package(folder)
        content = folder / "content"
        run("dpkg-deb", "--extract", package, content)
        check_with_tools(package, content)
        check_words(package, content)
        install_play_remove(package, content, folder)


if __name__ == "__main__":
    main()
