"""Packs the game from a clean copy of the tree, has Debian's own tools look at the package, then plays what it
installs. Ends with status 0 when all was as it should be."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools" / "driver"))

from game_driver import Display, Game  # noqa: E402
from game_pages import check, check_end, choose  # noqa: E402


def run(*command):
    """Runs a command that must succeed; returns its standard output."""
    done = subprocess.run(command, capture_output=True, text=True)
    check(f"{command} succeeds, status {done.returncode}:\n{done.stdout}{done.stderr}", done.returncode == 0)
    return done.stdout.strip()


def check_versions(tree):
    """The release's version is plain, and every commit after it has one of its own."""
    git = ("git", "-C", tree, "-c", "user.name=nobody", "-c", "user.email=nobody")
    release = run(tree / "packaging" / "version.sh")
    run(*git, "init", "-q")
    run(*git, "add", ".")
    for expected in (release, f"{release}+git1", f"{release}+git2"):
        run(*git, "commit", "-q", "--allow-empty", "-m", expected)
        version = run(tree / "packaging" / "version.sh")
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


def check_content(package, share):
    """By Debian's tools; and one version everywhere, a picture behind every screenshot."""
    metainfo = share / "metainfo" / "example.vantaro_pugnado.vantaro_pugnado.metainfo.xml"
    run("desktop-file-validate", share / "applications" / "vantaro-pugnado.desktop")
    run("appstreamcli", "validate", "--no-net", metainfo)
    tags = run("lintian", "--allow-root", "--tag-display-limit", "0", package)
    check(f"lintian has nothing to say, not {tags}", not tags)
    version = run("dpkg-deb", "-f", package, "Version")
    for place, pattern in ((share / "doc/vantaro-pugnado/changelog.gz", r"\((.*?)\)"),
                           (share / "man/man6/vantaro-pugnado.6.gz", r"Vantaro Pugnado ([\d.]+)"),
                           (metainfo, r'<release version="(.*?)"'), (ROOT / "CHANGELOG.md", r"\n## \[(\d.*?)\]")):
        found = re.search(pattern, run("zcat", "-f", place))[1]
        check(f"{place} names version {version}, not {found}", found == version)
    for name in re.findall("<image>https://vantaro-pugnado.example/(.*?)</image>", metainfo.read_text()):
        check(f"the screenshot {name} is there", (ROOT / name).is_file())


def play(root, folder):
    """From where it was unpacked, as the menu starts it, and without a sound device."""
    entry = root / "usr/share/applications/vantaro-pugnado.desktop"
    command, *arguments = re.search("^Exec=(.*)$", entry.read_text(), re.M)[1].split()
    environment = {"SDL_AUDIODRIVER": None, "PULSE_SERVER": None, "XDG_RUNTIME_DIR": str(folder),
                   "PATH": f"{root}/usr/games:{os.environ['PATH']}"}
    with Display() as display, Game(display, command, arguments, root=folder, environment=environment) as game:
        game.open_window()
        choose(game, "Exit")
        check_end(game)


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        package = build_package(folder)
        run("apt-get", "install", "--simulate", package)  # which fails where it depends on what cannot be had
        run("dpkg-deb", "--extract", package, folder / "content")
        check_content(package, folder / "content" / "usr" / "share")
        play(folder / "content", folder)


if __name__ == "__main__":
    main()
