"""Plays the real game in a virtual display, where the demonstration leaves something out: both players punch and are
heard until the sound is turned off, and the window ends the program. Ends with status 0 when all was as it should be.

    local_match.py [program]"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "driver"))

from game_driver import RELEASE_PROGRAM, ROOT, Display, Game, wait_until  # noqa: E402
from game_pages import check, check_end, choose, pause, wait_for_match  # noqa: E402
from game_screens import BLACK, DARK, PLAYER_1, PLAYER_2, WHITE, land_punch, places, shows  # noqa: E402

SOUND = ROOT / "build" / "end_to_end" / "sound.raw"  # which SDL's disk driver writes instead of playing it
QUARTER_SECOND = 44100 * 2 * 2 // 4


def punch_and_listen(game, controls, player, colour):
    """Returns the player's points, and whether anything but silence was played on the way to them."""
    before = SOUND.stat().st_size
    points, _ = land_punch(game, controls, player, colour)
    after = SOUND.stat().st_size
    wait_until("the latest sound", lambda: SOUND.stat().st_size >= after + QUARTER_SECOND)
    return points, any(SOUND.read_bytes()[before:])


def face_each_other(game):
    choose(game, "2 Player")
    wait_for_match(game, 120)
    for boxer in ((PLAYER_1, 1, WHITE), (PLAYER_2, 2, BLACK)):
        seen = punch_and_listen(game, *boxer)
        check(f"player {boxer[1]} scores 2 from nearby and is heard, not {seen}", seen == (2, True))
    pause(game)
    game.press("Return")
    game.wait_until("the sound is off", lambda picture: shows(picture, "Sound: Off", 256, DARK))
    game.press("Escape")
    game.wait_until("the match goes on", places)
    check("with the sound off nothing is heard", not punch_and_listen(game, PLAYER_1, 1, WHITE)[1])
    game.press("Escape", "Up", "Return")  # which ends at "Quit"


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else RELEASE_PROGRAM
    SOUND.parent.mkdir(parents=True, exist_ok=True)
    environment = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": str(SOUND)}
    with Display() as display, Game(display, program, environment=environment) as game:
        game.open_window()
        face_each_other(game)
        game.close_window()
        check_end(game)


if __name__ == "__main__":
    main()
