"""The pages of the game at its default window size, as a player goes through them: what they show when they are
complete, and the keys that lead on. Who waits for a page gets its picture."""

from game_driver import GameError
from game_screens import BIG, DARK, HEIGHT, RED, RING_GREEN, WIDTH, Place, clock, ink, places, score, shows

CORNERS = (Place(10, 10, "Right"), Place(86, 54, "Left"))


def check(what, truth):
    if not truth:
        raise GameError(what)


def wait_for_main_menu(game):
    return game.wait_until("the main menu", lambda picture: shows(picture, "1 Player", 256, RED) and picture)


def choose(game, item, first=256):
    """Goes down a menu to the item that says this. `first` is the top of the first one."""
    for top in range(first, HEIGHT, 64):
        picture = game.wait_until(f"the item at {top} is marked", lambda picture: ink(picture, top, RED) and picture)
        if shows(picture, item, top, RED):
            return game.press("Return")
        game.press("Down")
    raise GameError(f'no item says "{item}"')


def wait_for_match(game, seconds, corners=CORNERS):
    """A fresh match: no points, a full clock, both fighters in their corners."""
    def fresh(picture):
        return (score(picture, 1) == 0 and score(picture, 2) == 0 and places(picture) == corners
                and clock(picture) in (seconds, seconds - 1)
                and picture.getpixel((WIDTH // 2, HEIGHT // 2)) == RING_GREEN and picture)
    return game.wait_until(f"a fresh match of {seconds} s", fresh)


def pause(game):
    def paused(picture):
        return (shows(picture, "Game Paused", 128, DARK, points=BIG) and shows(picture, "Quit", 384, DARK)
                and shows(picture, "Press ESC to resume", 512, RED) and picture)
    game.press("Escape")
    return game.wait_until("the pause menu", paused)


def check_end(game):
    ended = game.wait_exit()
    check(f'the game ends with "Closing..." and status 0, not {ended}', ended[::2] == ("Closing...\n", 0))
