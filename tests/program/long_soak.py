"""A hundred games of the engine against itself, every move judged by a referee that knows nothing of it.

Two processes play all games, at a clock that runs fast (each look at it takes a second), from random
openings, in changing styles; one game in five with the randomised search.
"""

import collections
import contextlib
import random
import shutil

import pytest
from conftest import PROJECT
from engine_folder import EngineFolder
from learn_records import NOT_OPEN
from referee import Referee
from talk import Talk

GAMES = 100
OPENING = 8  # random half-moves
LONGEST = 300  # half-moves; then it is called a draw
STEP_MS = 1000  # a search of four seconds looks at the clock four times: some 16,000 nodes
NORMAL = ("rnd off", "st 4")
RANDOMISED = ("rnd on", "st 20")  # each of its stages has half of that
STYLES = ["knowledge1", "knowledge2", "knowledge3"]


class Player(Talk):
    """An engine process that plays one side of all games."""

    board = ""  # its position text, as of the last question

    def say(self, *lines: str) -> list[str]:
        """What the engine answers to these lines; then it tells its position."""
        *said, board = self.ask(*lines, "getboard")
        self.board = board.removeprefix("position ")
        return said

    def go(self) -> tuple[str, list[str]]:
        """Its move, "" for none, and what it says after it."""
        said = self.say("go", "force")
        at = next((i for i, line in enumerate(said) if line.startswith("move ")), None)
        return ("", said) if at is None else (said[at].removeprefix("move "), said[at + 1:])


def same_board(board: str, position: str) -> bool:
    """Whether a FEN and an engine's position text agree in pieces, side and castling rights."""
    pieces, side, rights = board.split(" ")
    text = (position + " ").split(" ")
    return [pieces, side, sorted(rights.strip("-"))] == [text[0], text[1], sorted(text[2].strip("-"))]


def play_game(referee: Referee, players: list[Player], dice: random.Random) -> tuple[str, list[str]]:
    """Why the game ended, and its moves."""
    state = referee.ask("new")
    for player in players:
        player.say("new", "force")
    moves: list[str] = []
    while not state["over"] and len(moves) < LONGEST:
        mover, other = players[len(moves) % 2], players[1 - len(moves) % 2]
        if len(moves) < OPENING:
            move, rest = dice.choice(state["legal"]), []
            assert mover.say(move) == []
        else:
            move, rest = mover.go()
            if move == "":
                return f"no move ({' | '.join(rest)})", moves
        moves.append(move)
        state = referee.play(move)
        assert other.say(move) == [], moves
        for player in players:
            assert same_board(state["board"], player.board), moves
        assert ("the end" in rest) == (state["legal"] == [] and len(moves) > OPENING), moves
        if "computer resigns" in rest:
            return "resigned", moves
    return state["over"] or "length", moves


@pytest.fixture
def players(engine, fixed_time, tmp_path):
    with contextlib.ExitStack() as found:
        playing = []
        for name in ("white", "black"):
            (tmp_path / name).mkdir()
            folder = EngineFolder(engine, fixed_time, tmp_path / name)
            folder.configure(learn_file_write="enable", book_move="auto")
            shutil.copy(PROJECT / "data" / "tarvyle.bk", folder.path)
            playing.append(found.enter_context(Player(folder, step_ms=STEP_MS)))
        yield playing


def test_a_hundred_games(players, referee):
    dice = random.Random(64)
    endings: collections.Counter[str] = collections.Counter()
    half_moves = 0
    for game in range(GAMES):
        for player in players:
            player.say(f"style {dice.choice(STYLES)}", *(RANDOMISED if game % 5 == 4 else NORMAL))
        ending, moves = play_game(referee, players[:: 1 if game % 2 == 0 else -1], dice)
        endings[ending] += 1
        half_moves += len(moves)
    memory = [player.memory_kb() for player in players]
    print(f"\n{GAMES} games, {half_moves} half-moves, memory {memory} kB, endings {dict(endings)}")
    for player in players:
        player.leave()
        assert player.complaints().splitlines()[1:] == [NOT_OPEN.rstrip("\n")]
        assert player.folder.names() == ["complaints", "tarvyle.lrn"]
    assert not [ending for ending in endings if ending.startswith("no move")]
    assert endings["checkmate"] > 0
