"""Plays the real game in a virtual display, where the demonstration leaves something out: both players punch and are
heard, turn the sound off, restart and quit, every option is changed, the computer's fighter walks, and the program
ends from the menu and by its window. Ends with status 0 when the pictures showed all of it; pictures of the way are
left in build/end_to_end/.

    local_match.py [program [step...]]"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "driver"))

from game_driver import RELEASE_PROGRAM, ROOT, Display, Game, save_picture, wait_until  # noqa: E402
from game_pages import (CORNERS, check, check_end, choose, chosen, pause, pick_pause_item,  # noqa: E402
                        wait_for_main_menu, wait_for_match)
from game_screens import BLACK, DARK, PLAYER_1, PLAYER_2, WHITE, clock, land_punch, places, shows  # noqa: E402

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


def punch_and_listen(game, sound):
    wait_for_main_menu(game)
    choose(game, "2 Player")
    wait_for_match(game, 120)
    for player, controls, colour in ((1, PLAYER_1, WHITE), (2, PLAYER_2, BLACK)):
        mark = sound.length()
        points, picture = land_punch(game, controls, player, colour)
        check(f"player {player} scores 2 from nearby, not {points}", points == 2)
        check(f"the punch of player {player} is heard", sound.heard_since(mark))
        save_picture(picture, f"hit_by_player_{player}")


def turn_sound_off(game, sound):
    pause(game)
    pick_pause_item(game, 1)
    game.wait_until("the sound is off", lambda picture: shows(picture, "Sound: Off", 256, DARK))
    game.press("Escape")
    game.wait_until("the match goes on", places)
    mark = sound.length()
    land_punch(game, PLAYER_1, 1, WHITE)
    check("with the sound off nothing is heard", not sound.heard_since(mark))


def restart_and_quit(game, sound):
    pause(game)
    pick_pause_item(game, 2)
    wait_for_match(game, 120)
    pause(game)
    pick_pause_item(game, 3)
    wait_for_main_menu(game)


def change_options(game, sound):
    """The next match lasts a minute, and player 1 is black."""
    def shows_options(*labels):
        game.wait_until(f"the options {labels}", lambda picture: all(
            shows(picture, label, row, DARK) for label, row in zip(labels, OPTION_ROWS)))
    choose(game, "Options")
    shows_options("Sound: Off", "Difficulty: Easy", "Time: 02:00")
    game.press("Return", "Down", "Return", "Down", "Return", "Down", "Return")
    shows_options("Sound: On", "Difficulty: Hard", "Time: 01:00")
    game.press("Escape")
    wait_for_main_menu(game)
    choose(game, "2 Player")
    wait_for_match(game, 60, CORNERS[::-1])
    pause(game)
    pick_pause_item(game, 3)


def leave(game, sound):
    wait_for_main_menu(game)
    choose(game, "Exit")
    check_end(game)


def face_the_cpu(game, sound):
    """Nobody presses a key, and the opponent leaves its corner. Closing the window ends match and program."""
    def walks(picture):
        seen = places(picture)
        return clock(picture) and seen and seen[0] == CORNERS[0] and seen[1] != CORNERS[1]
    wait_for_main_menu(game)
    choose(game, "1 Player")
    game.wait_until("the opponent walks", walks)
    game.close_window()
    check_end(game)


STEPS = (punch_and_listen, turn_sound_off, restart_and_quit, change_options, leave)
STEPS_OF_ONE_PLAYER = (face_the_cpu,)


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else RELEASE_PROGRAM
    sound = Sound()
    for steps in filter(None, (chosen(steps, sys.argv[2:]) for steps in (STEPS, STEPS_OF_ONE_PLAYER))):
        with Display() as display, Game(display, program, environment=sound.environment) as game:
            game.open_window()
            for step in steps:
                step(game, sound)
                print(step.__name__.replace("_", " "), flush=True)


if __name__ == "__main__":
    main()
