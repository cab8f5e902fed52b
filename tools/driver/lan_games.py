"""Two machines on a small network, each with the game and its own display: the lobby's pages, the way into a room,
and what was sent."""

import sys
import time
from contextlib import ExitStack
from types import SimpleNamespace

from PIL import ImageChops

from game_driver import RELEASE_PROGRAM, Display, Game, wait_until
from game_pages import check, choose
from game_screens import DARK, HEIGHT, WIDTH, places, shows
from network_lab import Lab

NAMES = {"host": "Anna", "guest": "Bob 2"}
SKIPPED = 77  # exit status of a test that cannot be run here


def run(steps, other_machines=()):
    """Opens the game on both machines and takes the steps, or those of them that the command line names after the
    host's program and the guest's. Each step gets the network and the two games."""
    steps = [step for step in steps if step.__name__ in (sys.argv[3:] or [step.__name__])]
    if not steps:
        return
    try:
        play = SimpleNamespace(lab=Lab(tuple(NAMES), other_machines))
    except OSError as error:
        print(f"skipped: network namespaces cannot be used here: {error}")
        sys.exit(SKIPPED)
    with ExitStack() as stack:
        for name, program in zip(NAMES, (sys.argv[1:3] or [RELEASE_PROGRAM]) * 2):
            display = stack.enter_context(Display(WIDTH, HEIGHT))
            with play.lab[name].entered():
                game = stack.enter_context(Game(display, program))
            game.open_window()
            setattr(play, name, game)
        for step in steps:
            begin = time.monotonic()
            step(play)
            print(f"{step.__name__.replace('_', ' ')}: {time.monotonic() - begin:.1f} s", flush=True)


# The lobby

def has_text(game, text, top, colour=DARK, **where):
    game.wait_until(f'"{text}"', lambda picture: shows(picture, text, top, colour, **where))


def enter_lobby(game, name):
    """From the main menu to the name entry, where the name is typed."""
    choose(game, "LAN")
    has_text(game, 10 * ".", 256)
    game.press(*[{" ": "space"}.get(letter, letter) for letter in name])
    has_text(game, name.rjust(10, "."), 256)


def open_room_list(game):
    game.press("Down", "Return")
    has_text(game, "ROOMS", 128)


def create_room(play, *keys):
    """By these keys from the host's name entry. Returns the room's id as the first announcement has it."""
    start = time.time()
    play.host.press(*keys)
    room = tokens(wait_until("an announcement", lambda: play.lab.sent("a", start))[0].payload)[0]
    has_text(play.host, f"ROOM: {room}", 128)
    return room


def join_room(play, room):
    """From the guest's room list, where the room is the only one, until both see each other. Returns the picture of
    the list with the cursor on the room."""
    def marked(picture):
        return all(len(picture.crop((x, 256, x + 40, 280)).getcolors()) > 1 for x in (80, 680)) and picture
    has_text(play.guest, f"{NAMES['host']} ({room})", 256)
    play.guest.press("Down")
    picture = play.guest.wait_until("the cursor on the room", marked)
    play.guest.press("Return")
    for game in (play.host, play.guest):
        has_text(game, f"ROOM: {room}", 128)
        for name, column in zip(NAMES.values(), (200, 600)):
            has_text(game, name, 256, centre=column)
    has_text(play.host, "Start Game", 480)
    return picture


def same_picture(play):
    """Waits until both games show the very same moment of a match; returns the picture."""
    def same():
        host, guest = play.host.screenshot(), play.guest.screenshot()
        return ImageChops.difference(host, guest).getbbox() is None and places(host) and host
    return wait_until("the same picture on both machines", same)


def enter_lobbies(play):
    enter_lobby(play.guest, NAMES["guest"])
    open_room_list(play.guest)
    enter_lobby(play.host, NAMES["host"])


def meet(play):
    """The room shows on the other machine within two seconds."""
    enter_lobbies(play)
    start = time.time()
    room = create_room(play, "Up", "Return")
    has_text(play.guest, f"{NAMES['host']} ({room})", 256)
    check(f"the room is listed within two seconds, not {time.time() - start:.1f} s", time.time() - start < 2)
    join_room(play, room)


# Datagrams

def tokens(payload):
    """The values of a message, as texts."""
    text, values = payload[1:].rstrip(b"\0").decode(), []
    while text:
        length, _, rest = text.partition(" ")
        values.append(rest[:int(length)])
        text = rest[int(length) + 1:]
    return values
