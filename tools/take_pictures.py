#!/usr/bin/python3
"""Plays the built game and takes the pictures of docs/ anew: every screen, those of a LAN match included, and a
moving picture of a match. Takes about a minute; needs what the end-to-end tests need."""

import sys
import threading
import time
from pathlib import Path

from PIL import Image

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools" / "driver"))

import demonstration  # noqa: E402
import lan_games  # noqa: E402
from game_driver import Display, Game  # noqa: E402
from game_screens import (BLACK, MENU_GREEN, PLAYER_1, PLAYER_2, RED, RING_GREEN, WHITE, land_punch,  # noqa: E402
                          shows)
from game_pages import choose, pause, wait_for_match  # noqa: E402

FOLDER = ROOT / "docs"
LOCAL = {"main_menu": "main_menu", "options": "options", "punch": "match", "pause_menu": "pause_menu",
         "end_screen": "end_screen"}  # names in the demonstration and in docs/
PERIOD = 1 / 15  # s between two frames of the moving picture
FRAMES = 105
COLOURS = 24     # of the moving picture


def keep(picture, name):
    """Saves the picture losslessly by a palette, since the game shows few colours."""
    path = FOLDER / f"{name}.png"
    if picture.getcolors(256):
        picture = picture.quantize(256, dither=Image.Dither.NONE)
    picture.save(path, optimize=True)
    print(f"  {path.relative_to(ROOT)}: {path.stat().st_size} bytes", flush=True)


# One machine

def take_local_pictures():
    demonstration.main()
    for source, name in LOCAL.items():
        keep(Image.open(demonstration.FOLDER / f"{source}.png").convert("RGB"), name)


def record(game, frames):
    """Takes half-size pictures of the window at an even pace until `frames` has them all."""
    due = time.monotonic()
    while len(frames) < FRAMES:
        frames.append(game.screenshot().reduce(2))
        due += PERIOD
        time.sleep(max(due - time.monotonic(), 0))


def take_moving_picture():
    with Display() as display, Game(display) as game:
        game.open_window()
        choose(game, "2 Player")
        wait_for_match(game, 120)
        for player, controls, colour in ((1, PLAYER_1, WHITE), (2, PLAYER_2, BLACK)):  # out of the corners
            land_punch(game, controls, player, colour)
        frames = []
        recorder = threading.Thread(target=record, args=[game, frames])
        recorder.start()
        while recorder.is_alive():
            land_punch(game, PLAYER_1, 1, WHITE)
            land_punch(game, PLAYER_2, 2, BLACK)
    palette = frames[FRAMES // 2].quantize(COLOURS, dither=Image.Dither.NONE)
    first, *others = [frame.quantize(palette=palette, dither=Image.Dither.NONE) for frame in frames]
    path = FOLDER / "match.gif"
    first.save(path, save_all=True, append_images=others, duration=round(1000 * PERIOD), loop=0, optimize=True)
    print(f"  {path.relative_to(ROOT)}: {path.stat().st_size} bytes", flush=True)


def take_full_screen():
    """A match on a wide display, both fighters on their way to each other."""
    with Display(1280, 720) as display, Game(display, arguments=["--fullscreen"]) as game:
        game.open_window()
        game.wait_until("the main menu", lambda picture: picture.getpixel((0, 0)) == MENU_GREEN)
        game.press("Down", "Return")
        game.wait_until("the ring", lambda picture: picture.getpixel((640, 360)) == RING_GREEN)
        game.hold_for(0.3, "Right")
        game.hold_for(0.3, "a")
        keep(game.screenshot(), "full_screen")


# Two machines

def take_lobby(play):
    lan_games.enter_lobby(play.guest, lan_games.NAMES["guest"])
    keep(play.guest.screenshot(), "lan_name")
    lan_games.open_room_list(play.guest)
    lan_games.enter_lobby(play.host, lan_games.NAMES["host"])
    room = lan_games.create_room(play, "Up", "Return")
    keep(lan_games.join_room(play, room), "lan_rooms")
    keep(play.host.screenshot(), "lan_host_room")
    keep(play.guest.screenshot(), "lan_joined_room")


def take_lan_match(play):
    play.host.press("Down", "Down", "Return")
    for game in (play.host, play.guest):
        wait_for_match(game, 120)
    land_punch(play.host, PLAYER_1, 1, WHITE)
    keep(lan_games.same_picture(play), "lan_match")
    pause(play.host)
    paused_by = f"Paused by {lan_games.NAMES['host']}"
    keep(play.guest.wait_until(paused_by, lambda picture: shows(picture, paused_by, 512, RED) and picture),
         "lan_paused")


if __name__ == "__main__":
    FOLDER.mkdir(exist_ok=True)
    take_local_pictures()
    take_moving_picture()
    take_full_screen()
    lan_games.run((take_lobby, take_lan_match))
