"""Plays a short match in a virtual display and saves a picture of every screen in build/demonstration/.

    demonstration.py [program]"""

import itertools
import os
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools" / "driver"))

from game_driver import Display, Game, save_picture, wait_until  # noqa: E402
from game_pages import check_end, choose, pause, wait_for_main_menu, wait_for_match  # noqa: E402
from game_screens import (BIG, BLACK, DARK, PLAYER_1, PLAYER_2, WHITE, clock, fighter_box, land_punch,  # noqa: E402
                          shows)

FOLDER = ROOT / "build" / "demonstration"
SOUND = os.environ.get("PUGNADO_SOUND")  # where SDL's disk driver is to write what it would play, if it is to be heard
RESTING_COLUMNS = 19  # blocks that a fighter covers across with both gloves drawn in


def keep(picture, name):
    print(f"  {save_picture(picture, name, FOLDER).relative_to(ROOT)}", flush=True)


def keep_when(game, name, condition, seconds=10):
    """Waits until the picture meets the condition, and saves it."""
    keep(game.wait_until(name, lambda picture: condition(picture) and picture, seconds), name)


def choose_one_minute(game):
    """From the main menu to the options and back."""
    choose(game, "Options")
    keep_when(game, "options", lambda picture: shows(picture, "Time: 02:00", 320, DARK))
    game.press("Down", "Down", "Return")
    game.wait_until("a minute", lambda picture: shows(picture, "Time: 01:00", 320, DARK))
    game.press("Escape")
    wait_for_main_menu(game)


def land_visible_punch(game):
    """Punches until a picture of a hit is quick enough to show the glove still out; returns it."""
    for _ in range(10):
        _, picture = land_punch(game, PLAYER_1, 1, WHITE)
        left, _, right, _ = fighter_box(picture, WHITE)
        if right - left > RESTING_COLUMNS:
            break
    return picture


def spar(game):
    """Punches until 99 points or the clock end the match. Player 1 is the better one."""
    better, other = (PLAYER_1, 1, WHITE), (PLAYER_2, 2, BLACK)
    for boxer in itertools.cycle((better, better, better, other)):
        points, picture = land_punch(game, *boxer)
        if points >= 99 or (clock(picture) or 0) < 10:
            return


def play(game):
    keep(wait_for_main_menu(game), "main_menu")
    choose_one_minute(game)
    choose(game, "2 Player")
    keep(wait_for_match(game, 60), "game")
    keep(land_visible_punch(game), "punch")
    if SOUND:
        wait_until("a punch is heard", lambda: any(Path(SOUND).read_bytes()))
    keep(pause(game), "pause_menu")
    game.press("Escape")
    print("  (the match goes on to its end, less than a minute)", flush=True)
    spar(game)
    keep_when(game, "end_screen", lambda picture: shows(picture, "Game Over", 32, DARK, points=BIG), 20)
    choose(game, "Main Menu", first=448)
    choose(game, "Exit")
    check_end(game)


def main():
    environment = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": SOUND} if SOUND else None
    with Display() as display, Game(display, *sys.argv[1:], environment=environment) as game:
        game.open_window()
        print("Pictures:", flush=True)
        play(game)


if __name__ == "__main__":
    main()
