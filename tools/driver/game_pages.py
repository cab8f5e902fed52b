"""The pages of the game at its default window size, as a player goes through them: what they show when they are
complete, and the keys that lead on."""

from game_driver import GameError
from game_screens import (BIG, DARK, HEIGHT, RED, RING_GREEN, WIDTH, Place, arrows_on, clock, places, score, shows)

MAIN_ITEMS = ("1 Player", "2 Player", "LAN", "Options", "Exit")
MAIN_ROWS = (256, 320, 384, 448, 512)
PAUSE_ROWS = (256, 320, 384)
CORNERS = (Place(10, 10, "Right"), Place(86, 54, "Left"))


def check(what, truth):
    if not truth:
        raise GameError(what)


def chosen(steps, names):
    """The steps of these names; all of them when none is named."""
    return [step for step in steps if step.__name__ in (names or [step.__name__])]


# Main menu

def wait_for_main_menu(game, selected="1 Player"):
    def complete(picture):
        return all(shows(picture, item, row, RED if item == selected else DARK)
                   for item, row in zip(MAIN_ITEMS, MAIN_ROWS))
    game.wait_until(f"the main menu with {selected} selected", complete)


def choose(game, item):
    number = MAIN_ITEMS.index(item)
    game.press(*["Down"] * number)
    wait_for_main_menu(game, item)
    game.press("Return")


# Match

def wait_for_match(game, seconds, corners=CORNERS):
    """A fresh match: no points, a full clock, both fighters in their corners."""
    def fresh(picture):
        return (score(picture, 1) == 0 and score(picture, 2) == 0 and places(picture) == corners
                and clock(picture) in (seconds, seconds - 1))
    game.wait_until(f"a fresh match of {seconds} s", fresh)
    check("the ring is green", game.pixel(WIDTH // 2, HEIGHT // 2) == RING_GREEN)


def pause(game):
    def paused(picture):
        return (shows(picture, "Game Paused", 128, DARK, points=BIG) and shows(picture, "Quit", 384, DARK)
                and shows(picture, "Press ESC to resume", 512, RED))
    game.press("Escape")
    game.wait_until("the pause menu", paused)


def pick_pause_item(game, number):
    for row in range(2, number + 1):
        game.press("Down")
        game.wait_until(f"pause item {row} is marked",
                        lambda picture: arrows_on(picture, (200, 560), PAUSE_ROWS) == [row])
    game.press("Return")


# The end of the program

def check_end(game):
    ended = game.wait_exit()
    check(f"the exit status is 0, not {ended.status}: {ended.stderr}", ended.status == 0)
    check(f'the output is "Closing...", not {ended.stdout!r}', ended.stdout == "Closing...\n")
