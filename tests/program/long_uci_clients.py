"""Whole games of `tarv uci` behind the programs that people use it with: polyglot, and xboard on a virtual display.

polyglot is asked in the xboard protocol, also to take moves back; its opponent is stockfish at its lowest skill.
"""

import random
import re
import shutil
import subprocess

import pytest
from conftest import SEARCH_PATH, engine_environment, require
from referee import Referee
from test_xboard import FAIRYMAX, XBOARD
from uci_engine import UciEngine

LONGEST = 300  # half-moves
TAKE_BACK_EVERY = 9  # moves of the opponent

OVER = re.compile(r"(?:1-0|0-1|1/2-1/2)")
COMPLAINT = re.compile(r".*(?:illegal move|invalid move|forfeit|exited unexpectedly|on time|bestmove 0000).*",
                       re.IGNORECASE)


@pytest.fixture
def environment(tmp_path):
    return engine_environment() | {"HOME": str(tmp_path), "PATH": SEARCH_PATH}


@pytest.fixture
def stockfish(environment):
    require("stockfish")
    with UciEngine([shutil.which("stockfish", path=environment["PATH"])], env=environment) as engine:
        engine.ask("setoption name Skill Level value 0")
        yield engine


class Xboard:
    """An engine that is asked as xboard asks it."""

    def __init__(self, engine: UciEngine):
        self.engine = engine
        engine.send("xboard", "protover 2")
        while engine.hear()[0] != "feature done=1":
            pass
        engine.send("new", "level 0 0:05 0", "easy")

    def move(self, *lines: str) -> str:
        """What it moves after these lines, with two seconds left on both clocks."""
        self.engine.send("time 200", "otim 200", *lines)
        return self.engine.until("move")[0][-1].removeprefix("move ")


class Board:
    """The game as the referee sees it."""

    def __init__(self, referee: Referee):
        self.referee = referee
        self.state = referee.ask("new")
        self.moves: list[str] = []

    def play(self, move: str) -> None:
        self.state = self.referee.play(move)
        self.moves.append(move)

    def take_back(self, count: int) -> None:
        for _ in range(count):
            self.state = self.referee.ask("undo")
            self.moves.pop()

    def goes_on(self) -> bool:
        return not self.state["over"] and len(self.moves) < LONGEST


def opponents_move(stockfish: UciEngine, board: Board) -> str:
    moves = f" moves {' '.join(board.moves)}" if board.moves else ""
    stockfish.send(f"position startpos{moves}", "go depth 1")
    return stockfish.until("bestmove")[0][-1].split()[1]


def play(xboard: Xboard, stockfish: UciEngine, board: Board, dice: random.Random) -> int:
    """A game in which the opponent takes a move back now and then and plays another; how often."""
    taken_back = turn = 0
    while board.goes_on():
        turn += 1
        board.play(opponents_move(stockfish, board))
        if not board.goes_on():
            break
        board.play(xboard.move(f"usermove {board.moves[-1]}"))
        if turn % TAKE_BACK_EVERY == 0 and board.goes_on():
            before = board.moves[-2]
            xboard.engine.send(*dice.choice([["remove"], ["force", "undo", "undo"]]))
            board.take_back(2)
            other = dice.choice([move for move in board.state["legal"] if move != before] or [before])
            board.play(other)
            if board.goes_on():
                board.play(xboard.move("force", f"usermove {other}", "go"))
            taken_back += 1
    return taken_back


def test_polyglot_with_moves_taken_back(workbench, environment, stockfish, referee, tmp_path):
    require("polyglot")
    dice = random.Random(3)
    command = ["polyglot", "-noini", "-ec", f"{workbench} uci", "-ed", str(tmp_path)]
    ends, taken_back = [], 0
    for _ in range(3):
        with UciEngine(command, env=environment, cwd=tmp_path) as engine:
            board = Board(referee)
            taken_back += play(Xboard(engine), stockfish, board, dice)
            ends.append(board.state["over"])
            assert not [line for line in engine.said if COMPLAINT.match(line)]
            assert engine.quit()[0] == 0
    print(f"polyglot: 3 games to the end ({', '.join(ends)}), {taken_back} moves taken back")
    assert all(ends) and taken_back > 3


def xboard_plays(options: list[str], environment: dict[str, str], tmp_path) -> tuple[str, str]:
    """One game; the saved game, and all that was said."""
    command = [*XBOARD, "-tc", "0:05", "-inc", "0.05", "-saveGameFile", "game.pgn", "-debug", "-nameOfDebugFile",
               "debug.log", *options]
    command[command.index("-delayAfterQuit") + 1] = "4"
    done = subprocess.run(command, cwd=tmp_path, env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, errors="replace", timeout=240, check=False)
    said = done.stdout + done.stderr + (tmp_path / "debug.log").read_text(errors="replace")
    assert (tmp_path / "game.pgn").exists(), said[-3000:]
    return (tmp_path / "game.pgn").read_text(errors="replace"), said


@pytest.mark.parametrize("opponent", [
    ["-scp", "stockfish", "-sUCI", "-secondOptions", "Skill Level=0"],
    ["-scp", FAIRYMAX],
], ids=["stockfish", "fairymax"])
def test_xboard(workbench, environment, tmp_path, opponent):
    require("xvfb-run", "xboard", "polyglot", "stockfish", "fairymax", "setarch")
    game, said = xboard_plays(["-fcp", f"{workbench} uci", "-fUCI", *opponent], environment, tmp_path)
    result = re.search(r'\[Result "(.*)"\]', game)[1]
    half_moves = len(re.findall(r"\b[KQRBNa-hO][^ {}]* \{", game))
    print(f"xboard against {opponent[1]}: {result} {game.strip().splitlines()[-1]} ({half_moves} half-moves)")
    assert OVER.fullmatch(result), game
    assert COMPLAINT.findall(game) == []
    assert not [line for line in said.splitlines() if COMPLAINT.match(line) and "feature" not in line]
