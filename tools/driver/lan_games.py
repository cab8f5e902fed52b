"""Two machines on a small network, each with the game and its own display: the lobby's pages, the way into a room,
and what was sent."""

import sys
import time
from contextlib import ExitStack, contextmanager
from types import SimpleNamespace

from PIL import ImageChops

from game_driver import RELEASE_PROGRAM, Display, Game, save_picture, wait_until
from game_pages import check, choose, chosen, wait_for_main_menu
from game_screens import DARK, FRAME, HEIGHT, WIDTH, arrows_on, places, shows
from network_lab import SKIPPED, Lab, Unavailable

NAMES = {"host": "Anna", "guest": "Bob 2"}
DIMMED = (14, 135, 35)  # dark text at alpha 75 over the menus' green
COLUMNS = {"host": 200, "guest": 600}
HOST_ROWS = (332, 416, 480, 544)


@contextmanager
def running_game(lab, name, program):
    with Display(WIDTH, HEIGHT) as display:
        with lab[name].entered():
            game = Game(display, program)
        with game:
            game.open_window()
            yield game


def run(steps, other_machines=()):
    """Opens the game on both machines and takes the steps, or those of them that the command line names after the
    host's program and the guest's. Each step gets the network and the two games."""
    steps = chosen(steps, sys.argv[3:])
    if not steps:
        return
    programs = dict(zip(NAMES, (sys.argv[1:3] or [RELEASE_PROGRAM]) * 2))
    try:
        lab = Lab(tuple(NAMES), other_machines)
    except Unavailable as reason:
        print(f"skipped: {reason}")
        sys.exit(SKIPPED)
    with ExitStack() as stack:
        games = {name: stack.enter_context(running_game(lab, name, programs[name])) for name in NAMES}
        play = SimpleNamespace(lab=lab, stack=stack, programs=programs, **games)
        for step in steps:
            begin = time.monotonic()
            step(play)
            print(f"{step.__name__.replace('_', ' ')}: {time.monotonic() - begin:.1f} s", flush=True)


# The lobby

def has_text(game, text, top, colour=DARK, **where):
    game.wait_until(f'"{text}"', lambda picture: shows(picture, text, top, colour, **where))


def has_name_entry(game, name):
    has_text(game, name.rjust(10, "."), 256)
    has_text(game, "Create", 384, DARK if name else DIMMED)


def enter_lobby(game, name):
    """From the main menu to the name entry, where the name is typed."""
    wait_for_main_menu(game)
    choose(game, "LAN")
    has_name_entry(game, "")
    game.press(*[{" ": "space"}.get(letter, letter) for letter in name])
    has_name_entry(game, name)


def open_room_list(game):
    game.press("Down", "Return")
    has_text(game, "ROOMS", 128)


def has_empty_room(host):
    has_text(host, "?", 256, DIMMED, centre=COLUMNS["guest"])
    has_text(host, "Start Game", 480, DIMMED)
    has_text(host, "Kick", 544, DIMMED)


def create_room(play, *keys):
    """By these keys from the host's name entry. Returns the room's id as the first announcement has it."""
    start = time.time()
    play.host.press(*keys)
    room = tokens(wait_until("an announcement", lambda: play.lab.sent("a", start))[0].payload)[0]
    has_text(play.host, f"ROOM: {room}", 128)
    has_empty_room(play.host)
    return room


def marks_first_room(picture):
    return arrows_on(picture, (80, 680), (256, 320)) == [1]


def join_room(play, room):
    """From the guest's room list until both see each other. Between two announcements a second apart, and when
    the guest may speak again: the guest takes its own name from the next announcement, so the host must know it
    by then."""
    def announced_on_time():
        times = [one.time for one in play.lab.sent("a")]
        return times[-1] > silent and times[-1] - times[-2] > 0.5
    has_text(play.guest, f"{NAMES['host']} ({room})", 256)
    if not marks_first_room(play.guest.screenshot()):
        play.guest.press("Down")
    play.guest.wait_until("the cursor on row 1", marks_first_room)
    silent = max([one.time + 1 for one in play.lab.sent("b")] + [time.time()])
    wait_until("another announcement, on time", announced_on_time)
    time.sleep(3 * FRAME)
    play.guest.press("Return")
    for game in (play.host, play.guest):
        has_text(game, f"ROOM: {room}", 128)
        for role, column in COLUMNS.items():
            has_text(game, NAMES[role], 256, centre=column)
    has_text(play.host, "Start Game", 480)


def go_to_row(host, row):
    """Moves the host's arrows to a row of its room."""
    def marked(picture):
        return arrows_on(picture, (215, 545), HOST_ROWS)
    start = host.wait_until("a marked row", marked)[0]
    host.press(*["Down"] * ((row - start) % len(HOST_ROWS)))
    host.wait_until(f"row {row} marked", lambda picture: marked(picture) == [row])


def same_picture(play, truth=places):
    """Waits until both games show the very same, which also satisfies `truth`; returns it."""
    def same():
        host, guest = play.host.screenshot(), play.guest.screenshot()
        return ImageChops.difference(host, guest).getbbox() is None and truth(host) and host
    return wait_until("the same picture on both machines", same)


def enter_lobbies(play):
    enter_lobby(play.guest, NAMES["guest"])
    open_room_list(play.guest)
    enter_lobby(play.host, NAMES["host"])


def meet(play):
    """The room shows on the other machine within two seconds."""
    enter_lobbies(play)
    start = time.time()
    play.first_room = create_room(play, "Up", "Return")
    has_text(play.guest, f"{NAMES['host']} ({play.first_room})", 256)
    check(f"the room is listed within two seconds, not {time.time() - start:.1f} s", time.time() - start < 2)
    save_picture(play.guest.screenshot(), "lan_room_list")
    join_room(play, play.first_room)


# Datagrams

def tokens(payload):
    """The values of a message, as texts."""
    text, values = payload[1:].rstrip(b"\0").decode(), []
    while text:
        length, _, rest = text.partition(" ")
        values.append(rest[:int(length)])
        text = rest[int(length) + 1:]
    return values
