"""Plays the real game in a virtual display, from the first menu to the last line of its output: two players
score, pause, restart and quit, every option is changed, a match runs to its end and is played again. Ends with
status 0 when the pictures showed all of it; pictures of the way are left in build/end_to_end/.

    local_match.py [program [step...]]"""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "driver"))

from game_driver import RELEASE_PROGRAM, ROOT, Display, Game, save_picture, wait_until  # noqa: E402
from game_pages import (CORNERS, MAIN_ROWS, PAUSE_ROWS, check, check_end, choose, chosen, pause,  # noqa: E402
                        pick_pause_item, wait_for_main_menu, wait_for_match)
from game_screens import (BIG, BLACK, DARK, MENU_GREEN, PLAYER_1, PLAYER_2, RED, WHITE, arrows_on, clock,  # noqa: E402
                          fighter_box, land_punch, places, shows)

OPTION_ROWS = (192, 256, 320)


class Sound:
    """What the game sends to the loudspeaker, which SDL's disk driver writes to a file instead."""

    def __init__(self):
        self.path = ROOT / "build" / "end_to_end" / "sound.raw"
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.environment = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": str(self.path)}

    def length(self):
        return self.path.stat().st_size

    def heard_since(self, mark):
        """True when anything but silence was played since `mark`, an earlier length."""
        quarter_second = 44100 * 2 * 2 // 4
        now = self.length()
        wait_until("the latest sound", lambda: self.length() >= now + quarter_second)
        with self.path.open("rb") as file:
            file.seek(mark)
            return any(file.read())


# Main menu

def see_main_menu(game, sound):
    wait_for_main_menu(game)
    picture = game.screenshot()
    for word, row in (("Vantaro", 64), ("Pugnado", 128)):
        check(f"the title says {word}", shows(picture, word, row, DARK, points=BIG))
    check("the arrows stand at the first item", arrows_on(picture, (256, 504), MAIN_ROWS) == [1])
    save_picture(picture, "main_menu")


# Match

def play_until_score(game, sound):
    choose(game, "2 Player")
    wait_for_match(game, 120)
    save_picture(game.screenshot(), "match")
    for player, controls, colour in ((1, PLAYER_1, WHITE), (2, PLAYER_2, BLACK)):
        mark = sound.length()
        points, picture = land_punch(game, controls, player, colour)
        check(f"player {player} scores 2 from nearby, not {points}", points == 2)
        check(f"the punch of player {player} is heard", sound.heard_since(mark))
        save_picture(picture, f"hit_by_player_{player}")


def pause_and_resume(game, sound):
    pause(game)
    picture = game.screenshot()
    before = clock(picture)
    check("the fighters show only faintly", fighter_box(picture, WHITE) is None and fighter_box(picture, BLACK) is None)
    check("sound is marked", arrows_on(picture, (200, 560), PAUSE_ROWS) == [1])
    check("the pause menu says that sound is on", shows(picture, "Sound: On", 256, DARK))
    save_picture(picture, "pause_menu")
    end = time.monotonic() + 2.5
    while time.monotonic() < end:
        check("the clock stands still", clock(game.screenshot()) == before)
    pick_pause_item(game, 1)
    game.wait_until("the sound is off", lambda picture: shows(picture, "Sound: Off", 256, DARK))
    game.press("Escape")
    after = game.wait_until("the match goes on", lambda picture: places(picture) and clock(picture))
    check(f"the clock goes on from {before}, not from {after}", after in (before, before - 1))
    mark = sound.length()
    land_punch(game, PLAYER_1, 1, WHITE)
    check("with the sound off nothing is heard", not sound.heard_since(mark))


def restart(game, sound):
    pause(game)
    pick_pause_item(game, 2)
    wait_for_match(game, 120)


def quit_to_menu(game, sound):
    pause(game)
    pick_pause_item(game, 3)
    wait_for_main_menu(game)


# Options

def change_options(game, sound):
    """To a short match with the colours swapped, as play_to_the_end finds it."""
    def shows_options(*labels):
        game.wait_until(f"the options {labels}", lambda picture: all(
            shows(picture, label, row, DARK) for label, row in zip(labels, OPTION_ROWS)))
    choose(game, "Options")
    shows_options("Sound: Off", "Difficulty: Easy", "Time: 02:00")
    game.press("Return", "Down", "Return", "Down", "Return", "Down", "Return")
    shows_options("Sound: On", "Difficulty: Hard", "Time: 01:00")
    save_picture(game.screenshot(), "options")
    game.press("Escape")
    wait_for_main_menu(game)


# The end of a match

def play_to_the_end(game, sound):
    choose(game, "2 Player")
    wait_for_match(game, 60, CORNERS[::-1])  # the black fighter is player 1's now
    start = time.monotonic()
    points, _ = land_punch(game, PLAYER_1, 1, BLACK)
    game.wait_until("the clock at 00:03", lambda picture: clock(picture) == 3, 65)
    mark = sound.length()
    game.wait_until("the clock at 00:00", lambda picture: clock(picture) == 0)
    check("the match lasts a minute", 57.5 < time.monotonic() - start)
    check("the bell rings", sound.heard_since(mark))

    def over(picture):
        return (shows(picture, "Game Over", 32, DARK, points=BIG) and shows(picture, f"{points} - 0", 128, DARK)
                and shows(picture, "Restart Game", 448, RED) and shows(picture, "Main Menu", 512, DARK))
    game.wait_until(f"the end screen with {points} - 0", over)
    picture = game.screenshot()
    check("the background is that of a menu", picture.getpixel((0, 0)) == MENU_GREEN)
    tops = tuple(fighter_box(picture, colour)[1] for colour in (BLACK, WHITE))
    check(f"the winner stands at row 34, the loser at 22, not at {tops}", tops == (34, 22))
    save_picture(picture, "end_screen")


def take_rematch(game, sound):
    game.press("Return")
    wait_for_match(game, 60, CORNERS[::-1])
    quit_to_menu(game, sound)


def leave(game, sound):
    choose(game, "Exit")
    check_end(game)


def face_the_cpu(game, sound):
    """A match of one player: nobody presses a key, and the opponent leaves its corner. Closing the window ends
    the match and the program."""
    def walks(picture):
        seen = places(picture)
        return clock(picture) and seen and seen[0] == CORNERS[0] and seen[1] != CORNERS[1]
    wait_for_main_menu(game)
    choose(game, "1 Player")
    game.wait_until("the opponent walks", walks)
    game.close_window()
    check_end(game)


STEPS = (see_main_menu, play_until_score, pause_and_resume, restart, quit_to_menu, change_options, play_to_the_end,
         take_rematch, leave)
STEPS_OF_ONE_PLAYER = (face_the_cpu,)


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else RELEASE_PROGRAM
    sound = Sound()
    for steps in filter(None, (chosen(steps, sys.argv[2:]) for steps in (STEPS, STEPS_OF_ONE_PLAYER))):
        with Display() as display, Game(display, program, environment=sound.environment) as game:
            game.open_window()
            for step in steps:
                start = time.monotonic()
                step(game, sound)
                print(f"{step.__name__.replace('_', ' ')}: {time.monotonic() - start:.1f} s", flush=True)


if __name__ == "__main__":
    main()
