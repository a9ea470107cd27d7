"""A hundred games of the engine against itself, every move judged by a referee that knows nothing of it.

Two processes play all games, at a clock that runs fast (each look at it takes a second), from random
openings, in changing styles; one game in five with the randomised search. The referee is chess.js under
Node.js, fetched by npm when this test first runs.
"""

import collections
import json
import pathlib
import random
import re
import shutil
import subprocess

import pytest
from conftest import PROJECT, skip_or_fail
from engine_folder import START, EngineFolder

GAMES = 100
OPENING = 8  # random half-moves
LONGEST = 300  # half-moves; then it is called a draw
STEP_MS = 1000  # a search of four seconds looks at the clock four times: some 16,000 nodes
NORMAL = ("rnd off", "st 4")
RANDOMISED = ("rnd on", "st 20")  # each of its stages has half of that
STYLES = ["knowledge1", "knowledge2", "knowledge3"]


class Referee:
    def __init__(self, folder: pathlib.Path):
        for name in ("package.json", "package-lock.json", "referee.mjs"):
            shutil.copy(PROJECT / "tests" / "soak" / name, folder)
        if not all(map(shutil.which, ("node", "npm"))):
            skip_or_fail("node or npm is not installed")
        done = subprocess.run(["npm", "ci", "--ignore-scripts", "--no-audit", "--no-fund"], cwd=folder,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            skip_or_fail("npm could not fetch the referee's rules")
        self.process = subprocess.Popen(["node", "referee.mjs"], cwd=folder, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def ask(self, request: str) -> dict:
        self.process.stdin.write(request + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def play(self, move: str) -> dict:
        state = self.ask(f"move {move}")
        assert "refused" not in state, f"illegal move {move}"
        return state


class Player:
    """An engine process that plays one side of all games."""

    def __init__(self, folder: EngineFolder):
        self.folder = folder
        self.complaints = (folder.path / "complaints").open("w+")
        self.process = folder.start(step_ms=STEP_MS, stderr=self.complaints, text=True, encoding="latin-1")
        assert "".join(self.process.stdout.readline() for _ in START.splitlines()) == START
        self.say("xboard")

    def say(self, *lines: str) -> list[str]:
        """What the engine answers to these lines, without the position asked for to see the end of it."""
        self.process.stdin.write("".join(f"{line}\n" for line in (*lines, "getboard")))
        self.process.stdin.flush()
        said = []
        for line in self.process.stdout:
            if line.startswith("position "):
                self.board = line.removeprefix("position ").rstrip("\n")
                return said
            said.append(line.rstrip("\n"))
        raise AssertionError(f"the engine ended: {self.process.wait()}")

    def go(self) -> tuple[str, list[str]]:
        """Its move, "" for none, and what it says after it."""
        said = self.say("go", "force")
        at = next((i for i, line in enumerate(said) if line.startswith("move ")), None)
        return ("", said) if at is None else (said[at].removeprefix("move "), said[at + 1:])

    def memory_kb(self) -> int:
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s+(\d+)", status)[1])

    def leave(self) -> str:
        """Ends the process in its usual way; what it complained of in its whole life."""
        self.process.stdin.close()
        self.process.stdout.read()
        assert self.process.wait() == 0
        self.complaints.seek(0)
        return self.complaints.read()


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
    found = []
    for name in ("white", "black"):
        (tmp_path / name).mkdir()
        folder = EngineFolder(engine, fixed_time, tmp_path / name)
        folder.configure(learn_file_write="enable", book_move="auto")
        shutil.copy(PROJECT / "data" / "tarvyle.bk", folder.path)
        found.append(Player(folder))
    yield found
    for player in found:
        player.process.kill()
        player.process.wait()


def test_a_hundred_games(players, tmp_path):
    dice = random.Random(64)
    (tmp_path / "referee").mkdir()
    referee = Referee(tmp_path / "referee")
    endings: collections.Counter[str] = collections.Counter()
    half_moves = 0
    for game in range(GAMES):
        for player in players:
            player.say(f"style {dice.choice(STYLES)}", *(RANDOMISED if game % 5 == 4 else NORMAL))
        ending, moves = play_game(referee, players[:: 1 if game % 2 == 0 else -1], dice)
        endings[ending] += 1
        half_moves += len(moves)
    referee.process.stdin.close()
    referee.process.wait()
    memory = [player.memory_kb() for player in players]
    print(f"\n{GAMES} games, {half_moves} half-moves, memory {memory} kB, endings {dict(endings)}")
    for player in players:
        assert player.leave().splitlines()[1:] == ["------> error: file_size() - file ./tarvyle.lrn not open"]
        assert player.folder.names() == ["complaints", "tarvyle.lrn"]
    assert not [ending for ending in endings if ending.startswith("no move")]
    assert endings["checkmate"] > 0
