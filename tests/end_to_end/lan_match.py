"""Plays LAN matches with the real program on two machines of a small network, each with its own display, by real
keys: names, a room, colours and time, ways out of a room, a fight, a pause and a machine that dies. Both pictures
must agree, and every datagram must be well-formed and go where it belongs. Before that, rooms are joined between
machines with two network cards. Ends with status 0 when all was as it should be, with 77 where no network can be made.
Leaves pictures in build/end_to_end/.

    lan_match.py [host's program [guest's program [step...]]]"""

import sys
import time
from pathlib import Path

from PIL import ImageChops

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "driver"))

from game_driver import save_picture, wait_until  # noqa: E402
from game_pages import (CORNERS, check, check_end, choose, pause, pick_pause_item, wait_for_main_menu,  # noqa: E402
                        wait_for_match)
from game_screens import (BIG, BLACK, DARK, FRAME, PLAYER_1, RED, WHITE, clock, land_punch, score,  # noqa: E402
                          shows)
from lan_games import (NAMES, create_room, enter_lobbies, enter_lobby, go_to_row, has_empty_room,  # noqa: E402
                       has_name_entry, has_text, join_room, marks_first_room, meet, open_room_list, run, running_game,
                       same_picture, tokens)
from network_lab import GAME_PORT  # noqa: E402

GROUP = "239.1.1.1"
PREVIEW = (280, 320, 520, 384)  # a room's small fighters, without the host's arrows
SILENT_AFTER, LOST_AFTER = 1, 5  # s without a message


# Datagrams

def message(letter, *values):
    """A datagram as it must be on the wire."""
    text = letter + " ".join(f"{len(str(value))} {value}" for value in values)
    return text.encode().ljust(150, b"\0")


def check_envelopes(play):
    lab = play.lab
    counts = dict(zip("abcdefghi", (6, 2, 3, 2, 22, 6, 2, 2, 2)))
    for one in lab.datagrams:
        letter, values = chr(one.payload[0]), tokens(one.payload)
        check(f"{one} is a message, padded to 150 bytes",
              one.payload == message(letter, *values) and len(values) == counts.get(letter))
        receiver = GROUP if letter in "ah" else lab["guest" if one.sender == "host" else "host"].address
        check(f"{one} goes from port to port, to {receiver}",
              (one.source, one.destination) == ((lab[one.sender].address, GAME_PORT), (receiver, GAME_PORT)))


# The way through

def set_up(play):
    """The guest's page follows the host's colours and time."""
    def follows():
        host, guest = (game.screenshot().crop(PREVIEW) for game in (play.host, play.guest))
        return ImageChops.difference(host, guest).getbbox() is None and host.tobytes()
    before = wait_until("the same first colours", follows)
    play.host.press("Return")
    wait_until("the same new colours", lambda: follows() not in (False, before))
    go_to_row(play.host, 2)
    play.host.press("Return", "Return", "Return")
    for name in NAMES:
        has_text(getattr(play, name), "Time: 01:30", 416)
        save_picture(getattr(play, name).screenshot(), f"lan_room_of_{name}")


def has_no_rooms(guest):
    guest.wait_until("an empty list", lambda picture: len(picture.crop((160, 192, 640, 640)).getcolors()) == 1)


def part_and_return(play):
    """The host kicks, the guest leaves, the host closes the room and opens another."""
    go_to_row(play.host, 4)
    for game, key in ((play.host, "Return"), (play.guest, "Escape")):
        game.press(key)
        has_text(play.guest, "ROOMS", 128)
        has_empty_room(play.host)
        join_room(play, play.first_room)
    play.host.press("Escape")
    has_name_entry(play.host, NAMES["host"])
    has_no_rooms(play.guest)
    play.room = create_room(play, "Return")
    join_room(play, play.room)


def fight(play):
    """Both land a punch; both machines show the same, and it is what was told."""
    go_to_row(play.host, 3)
    play.host.press("Return")
    for game in (play.host, play.guest):
        wait_for_match(game, 90, CORNERS[::-1])  # black is the host's colour now
    save_picture(same_picture(play), "lan_match")
    for player, game, colour in ((1, play.host, BLACK), (2, play.guest, WHITE)):
        points, picture = land_punch(game, PLAYER_1, player, colour)
        check(f"player {player} scores 1 or 2 with a punch, not {points}", points in (1, 2))
        save_picture(picture, f"lan_hit_by_player_{player}")


def pause_and_resume(play):
    """A pause crosses over, names its maker, stops the clock, offers no restart and is ended by its maker alone."""
    pause(play.guest)
    has_text(play.host, f"Paused by {NAMES['guest']}", 512, RED)
    save_picture(play.host.screenshot(), "lan_paused_by_guest")
    before = clock(play.host.screenshot())
    play.host.press("Escape")
    pick_pause_item(play.guest, 2)
    time.sleep(2)
    for game, line in ((play.guest, "Press ESC to resume"), (play.host, f"Paused by {NAMES['guest']}")):
        picture = game.screenshot()
        check("the pause lasts", shows(picture, line, 512, RED) and clock(picture) == before)
        check("Restart is dimmed", not shows(picture, "Restart", 320, DARK))
    play.guest.press("Escape")
    picture = same_picture(play)
    check("nothing was restarted", min(score(picture, 1), score(picture, 2)) > 0)


def lose_guest(play):
    """A guest that dies is waited for, then the match ends; the next one starts without a restart of the host."""
    play.guest.process.kill()
    start = time.monotonic()
    for text, top, colour, after in (("Disconnecting", 320, RED, SILENT_AFTER),
                                     ("Disconnected", 128, DARK, LOST_AFTER)):
        has_text(play.host, text, top, colour)
        passed = time.monotonic() - start
        check(f'"{text}" does not come after {passed:.2f} s', passed > after - 3 * FRAME)
    has_text(play.host, "LAN Games", 448, RED)
    save_picture(play.host.screenshot(), "lan_end_screen")
    play.host.press("Return")
    has_name_entry(play.host, NAMES["host"])
    play.guest = play.stack.enter_context(running_game(play.lab, "guest", play.programs["guest"]))
    enter_lobby(play.guest, NAMES["guest"])
    open_room_list(play.guest)
    play.room = create_room(play, "Up", "Return")
    join_room(play, play.room)
    play.host.press("Down", "Down", "Return")
    for game in (play.host, play.guest):
        wait_for_match(game, 90, CORNERS[::-1])


def quit_match(play):
    pause(play.guest)
    pick_pause_item(play.guest, 3)
    wait_for_main_menu(play.guest)
    has_text(play.host, "Game Over", 32, points=BIG)
    play.host.close_window()
    check_end(play.host)
    choose(play.guest, "Exit")
    check_end(play.guest)


# Two network cards

def join_over(play, routed, *addresses, keys=("Return",)):
    """A room is announced from these addresses alone, whichever card the group's route leads over, and is listed once;
    host and guest hear each other. The keys go to "Create" and to "Kick", where the cursors stay."""
    for name in NAMES:
        play.lab.route_group(name, routed)
    start = time.time()
    room = create_room(play, *keys)
    has_text(play.guest, f"{NAMES['host']} ({room})", 256)
    expected = sorted(2 * addresses)
    wait_until("another announcement", lambda: len(play.lab.sent("a", start)) >= len(expected))
    sources = sorted(one.source[0] for one in play.lab.sent("a", start)[:len(expected)])
    check(f"announcements come from {expected}, not {sources}", sources == expected)
    check("one room is listed", len(play.guest.screenshot().crop((160, 320, 640, 640)).getcolors()) == 1)
    play.guest.press("Down")
    play.guest.wait_until("the cursor on row 1", marks_first_room)
    play.guest.press("Return")
    has_text(play.host, "Start Game", 480)
    play.host.press(*keys)
    has_text(play.guest, "ROOMS", 128)
    play.host.press("Escape")
    has_no_rooms(play.guest)


def join_over_two_cards(play):
    """The second comes while the game runs, into a network of its own; one host's cable is pulled; both cards are in
    one network."""
    enter_lobbies(play)
    for name in NAMES:
        play.lab.add_card(name, 1)
    join_over(play, 0, "10.55.0.1", "10.56.1.1", keys=("Up", "Return"))
    for pulled, address in ((0, "10.56.1.1"), (1, "10.55.0.1")):
        play.lab.pull_cable("host", pulled)
        join_over(play, pulled, address)
        play.lab.plug_cable("host", pulled)
    for name in NAMES:
        play.lab.connect(name, 1, network=0)
    join_over(play, 1, "10.55.0.1")


STEPS = (meet, set_up, part_and_return, fight, pause_and_resume, lose_guest, quit_match, check_envelopes)


if __name__ == "__main__":
    run([join_over_two_cards])
    run(STEPS)
