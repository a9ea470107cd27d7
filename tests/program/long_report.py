"""The page of `tarv game report` in a browser: stepped through by keys, buttons and clicks, without an error."""

import pytest
from browser import Browser
from conftest import require
from game_files import CASTLING, SCHOLAR, played_game, typed_game

BOARD = """
    const letters = Array(64).fill(" ");
    document.querySelectorAll("#board use").forEach(use => { letters[use.dataset.square] = use.dataset.piece; });
    return letters.join("");"""
SHOWN = 'return document.getElementById("move").textContent;'
CURRENT = 'return [...document.querySelectorAll("#moves button[aria-current]")].map(b => b.firstChild.data);'
GAME = 'return JSON.parse(document.getElementById("game").textContent);'
OUTSIDE = 'return performance.getEntriesByType("resource").map(entry => entry.name);'
# Where the piece of a square is drawn: column and row from the upper left.
PLACE = """
    const box = document.querySelector(`#board [data-square="${arguments[0]}"]`).getBoundingClientRect();
    const board = document.getElementById("board").getBoundingClientRect();
    return [box.x + box.width / 2 - board.x, box.y + box.height / 2 - board.y]
        .map(v => Math.floor(v / board.width * 8));"""
MARKS = """
    return [...document.querySelectorAll("#board rect")]
        .filter(r => r.getAttribute("fill") === "var(--check)").map(r => [r.getAttribute("x"), r.getAttribute("y")]);"""
GLOBALS = "return Object.getOwnPropertyNames(window);"
FORWARD_ONLY = 'return document.getElementById("back").disabled && !document.getElementById("forward").disabled;'
BRIGHTNESS = """
    const rgb = getComputedStyle(document.body).backgroundColor.match(/\\d+/g).map(Number);
    return rgb[0] + rgb[1] + rgb[2];"""


@pytest.fixture
def browser(tmp_path):
    require("chromium", "chromedriver")
    with Browser(tmp_path / "profile") as running:
        yield running
        assert running.complaints() == []


@pytest.fixture
def page_of(says, tmp_path):
    def make(path):
        says("game", "report", path, "-o", "game.html")
        return tmp_path / "game.html"

    return make


def test_stepping_through_by_keys(browser, page_of, folder):
    """Every position of the game, forward and back, is the one of the record."""
    browser.open(page_of(played_game(folder, 24)))
    game = browser.run(GAME)
    boards = [game["start"]["board"]] + [move["board"] for move in game["moves"]]
    assert len(boards) == 25 and len(set(boards)) > 20
    assert browser.run(BOARD) == boards[-1], "it opens at the end"
    browser.press("home")
    assert (browser.run(BOARD), browser.run(SHOWN), browser.run(CURRENT)) == (boards[0], "Start position", [])
    for move, board in zip(game["moves"], boards[1:]):
        browser.press("right")
        assert browser.run(BOARD) == board
        assert browser.run(SHOWN).endswith(move["san"]) and browser.run(CURRENT) == [move["san"]]
    browser.press("right")
    assert browser.run(BOARD) == boards[-1], "there is nothing behind the end"
    for board in reversed(boards[:-1]):
        browser.press("left")
        assert browser.run(BOARD) == board
    browser.press("left", "end")
    assert browser.run(BOARD) == boards[-1]
    assert browser.run(OUTSIDE) == [], "nothing else is loaded"


def test_buttons_moves_and_graph(browser, page_of, folder):
    browser.open(page_of(typed_game(folder, *CASTLING)))
    moves = browser.run(GAME)["moves"]
    browser.click("#first")
    assert browser.run(FORWARD_ONLY)
    browser.click("#forward")
    browser.click("#forward")
    browser.click("#back")
    assert browser.run(SHOWN) == "1. e4"
    browser.click("#moves li:nth-child(7) button:nth-of-type(2)")
    assert browser.run(SHOWN) == "7 ... O-O-O" and browser.run(BOARD) == moves[13]["board"]
    browser.click("#last")
    assert browser.run(SHOWN) == "11 ... Bxg4"
    browser.click("#graph")
    middle = browser.run(SHOWN)
    assert middle.split()[0] in ("5.", "6.", "7."), middle


def test_turning_the_board(browser, page_of, folder):
    browser.open(page_of(typed_game(folder, "e2e4")))
    assert browser.run(PLACE, 60) == [4, 7], "White's king"
    browser.press("f")
    assert browser.run(PLACE, 60) == [3, 0]
    browser.click("#flip")
    assert browser.run(PLACE, 60) == [4, 7]


def test_check_and_mate(browser, page_of, folder):
    browser.open(page_of(typed_game(folder, *SCHOLAR)))
    assert browser.run('return document.getElementById("result").textContent;') == "1-0, checkmate"
    assert browser.run(MARKS) == [["400", "0"]]
    browser.press("left")
    assert browser.run(MARKS) == []


def test_light_and_dark(browser, page_of, folder):
    browser.open(page_of(typed_game(folder, "e2e4")))
    browser.dark(False)
    light = browser.run(BRIGHTNESS)
    browser.dark(True)
    assert light > 600 and browser.run(BRIGHTNESS) < 150


def test_the_script_keeps_its_names_to_itself(browser, page_of, folder, tmp_path):
    (tmp_path / "empty.html").write_text("<!DOCTYPE html><title>-</title>")
    browser.open(tmp_path / "empty.html")
    before = browser.run(GLOBALS)
    browser.open(page_of(typed_game(folder, "e2e4")))
    assert set(browser.run(GLOBALS)) == set(before)


def test_an_empty_game(browser, page_of, folder):
    browser.open(page_of(typed_game(folder)))
    browser.press("left", "right", "home", "end", "f")
    browser.click("#graph")
    assert browser.run(SHOWN) == "Start position"


def test_the_pgn_to_save(browser, page_of, folder, says):
    path = typed_game(folder, *SCHOLAR)
    browser.open(page_of(path))
    link = browser.run('return decodeURIComponent(document.getElementById("pgn").href.split(",").slice(1).join(","));')
    assert link == says("game", "pgn", path)
