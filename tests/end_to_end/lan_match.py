"""Plays LAN matches with the real program on two machines of a small network, each with its own display, by real
keys: names, a room, colours and time, a fight and closed windows. Both pictures must agree. Before that, rooms are
joined between machines with two network cards, and a guest dies in a match. Ends with status 0 when all was as it
should be, with 77 where no network can be made.

    lan_match.py [host's program [guest's program [step...]]]"""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "driver"))

from game_driver import wait_until  # noqa: E402
from game_pages import CORNERS, check, check_end, choose, wait_for_match  # noqa: E402
from game_screens import BLACK, PLAYER_1, RED, WHITE, land_punch, shows  # noqa: E402
from lan_games import NAMES, create_room, enter_lobbies, has_text, join_room, meet, run, same_picture  # noqa: E402


# The way through

def set_up_and_start(play):
    """The host changes the colours and the time, which are those of the match for both."""
    play.host.press("Return", "Down", "Return", "Return", "Return")
    for game in (play.host, play.guest):
        has_text(game, "Time: 01:30", 416)
    play.host.press("Down", "Return")
    for game in (play.host, play.guest):
        wait_for_match(game, 90, CORNERS[::-1])  # black is the host's colour now
    same_picture(play)


def fight(play):
    for player, game, colour in ((1, play.host, BLACK), (2, play.guest, WHITE)):
        points, _ = land_punch(game, PLAYER_1, player, colour)
        check(f"player {player} scores 1 or 2 with a punch, not {points}", points in (1, 2))
    same_picture(play)


def close_windows(play):
    play.host.close_window()
    check_end(play.host)
    play.guest.wait_until("the end, of which it is told", lambda picture: shows(picture, "LAN Games", 448, RED), 4)
    play.guest.close_window()
    check_end(play.guest)


# Two network cards

def join_over(play, routed, *addresses, keys=("Return",)):
    """A room is announced from these addresses alone, whichever card the group's route leads over, and is listed once;
    host and guest hear each other. The keys go to "Create" and to "Kick", where the cursors stay."""
    for name in NAMES:
        play.lab.route_group(name, routed)
    start = time.time()
    room = create_room(play, *keys)
    expected = sorted(2 * addresses)
    wait_until("another announcement", lambda: len(play.lab.sent("a", start)) >= len(expected))
    sources = sorted(one.source for one in play.lab.sent("a", start)[:len(expected)])
    check(f"announcements come from {expected}, not {sources}", sources == expected)
    check("one room is listed", len(join_room(play, room).crop((160, 320, 640, 640)).getcolors()) == 1)
    play.host.press(*keys)
    has_text(play.guest, "ROOMS", 128)
    play.host.press("Escape")
    play.guest.wait_until("an empty list", lambda picture: len(picture.crop((160, 192, 640, 640)).getcolors()) == 1)


def join_over_two_cards(play):
    """The second comes while the game runs, into a network of its own; then either cable is pulled at the host."""
    enter_lobbies(play)
    for name in NAMES:
        play.lab.add_card(name, 1)
    join_over(play, 0, "10.55.0.1", "10.56.1.1", keys=("Up", "Return"))
    for pulled, address in ((0, "10.56.1.1"), (1, "10.55.0.1")):
        play.lab.put_cable("host", pulled, "down")
        join_over(play, pulled, address)
        play.lab.put_cable("host", pulled, "up")


def lose_guest(play):
    """A guest that dies is waited for, then the match ends and another may be set up."""
    join_room(play, create_room(play, "Return"))
    play.host.press("Up", "Return")
    for game in (play.host, play.guest):
        wait_for_match(game, 120)
    play.guest.process.kill()
    has_text(play.host, "Disconnecting", 320, RED)
    has_text(play.host, "Disconnected", 128)
    choose(play.host, "LAN Games", first=448)
    has_text(play.host, NAMES["host"].rjust(10, "."), 256)


if __name__ == "__main__":
    run((join_over_two_cards, lose_guest))
    run((meet, set_up_and_start, fight, close_windows))
