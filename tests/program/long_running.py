"""Five hundred games in one process: its memory stays flat, no file stays open, and it answers as at first."""

import contextlib
import re

import pytest
from conftest import DATA, PROJECT, sanitized
from engine_folder import EngineFolder
from positions import START
from talk import Talk

GAMES = 500
SETTLED = 100  # games after which the memory counts
GROWTH_KB = 256  # what the learn table takes for the positions searched since, and the system's rounding
PROBES = [
    "new", "getboard", "pos", "getmoves", "test", "force", "e2e4", "e7e5", "getboard", "up", "getmoves", "end",
    "getmoves", "undo", "undo", "undo", "redo", "getboard", "style", "e2e5", "setboard 8/8/8/8/8/8/8/8 w - -",
    "deb 3", "pos", "deb 12",
    "setboard r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", "e1g1", "e8c8", "getboard", "up", "load none.dat", "st 0", "rnd maybe",
    "new", "force", "b1c3", "b8c6", "c3b1", "c6b8", "b1c3", "b8c6", "getmoves", "getboard", "new",
]


def games() -> list[list[str]]:
    """Different games of 8 to some 70 half-moves."""
    histories = [line.split("\t")[0].split(" moves ") for line in (DATA / "histories.tsv").read_text().splitlines()]
    found = {root[1] for root in histories if len(root) == 2 and root[0] == START}
    openings = (PROJECT / "data" / "tarvyle.bk").read_text().splitlines()
    found |= {line.strip() for line in openings if re.fullmatch(r" *(?:[a-h][1-8][a-h][1-8] *){8,}", line)}
    return [game.split() for game in sorted(found)]


class Session(Talk):
    """One process, and what it had open at first."""

    def __init__(self, folder: EngineFolder):
        super().__init__(folder)
        self.open_at_first = self.open_files()

    def probe(self) -> tuple[list[str], str]:
        """What is said to the probes, and complained of."""
        self.complaints()
        return self.ask(*PROBES), self.complaints()


def play(session: Session, moves: list[str]) -> list[str]:
    """Plays, saves, takes back, replays and loads a game, and lets the engine go on with it."""
    said = session.ask("new", "force", *moves, "getmoves", "save game.dat", "up", "getboard", "end", "getboard")
    assert said[0] == "moves " + " ".join(moves) + " "
    loaded = session.ask("new", "load game.dat", "getmoves moves.txt", "load none.dat", "save no/where.dat", "getboard")
    assert said[-len(loaded):] == loaded
    return said + session.ask("go", "force", "getmoves") + session.ask(*["undo"] * (len(moves) + 1), "getboard")


def test_a_million_lines_without_a_pause(folder):
    run = folder.run("force", *["style", "", "undo", "nonsense"] * 250_000, "e2e4", "getmoves")
    assert run.said == "# knowledge3 \n" * 250_000 + "moves e2e4 \n"
    assert run.complaints == "# unknow: nonsense\n" * 250_000
    assert run.status == 0


@pytest.fixture
def sessions(learning):
    """A fresh process each time it is called."""
    with contextlib.ExitStack() as found:

        def start() -> Session:
            learning.file("tarvyle.lrn").unlink(missing_ok=True)
            return found.enter_context(Session(learning))

        yield start


def play_all(session: Session) -> tuple[list[list[str]], list[int]]:
    """What was said in each game, and the memory after each in kB."""
    said, memory = [], []
    chosen = games()
    assert len(chosen) > 100
    for number in range(GAMES):
        said.append(play(session, chosen[number % len(chosen)]))
        memory.append(session.memory_kb())
        assert session.open_files() == session.open_at_first, number
    return said, memory


def test_five_hundred_games_in_one_process(sessions):
    session = sessions()
    at_first = session.probe()
    said, memory = play_all(session)
    half_moves = sum(lines[0].count(" ") - 1 for lines in said)
    print(f"\n{GAMES} games, {half_moves} half-moves, memory after 1, {SETTLED}, {GAMES} games: "
          f"{memory[0]}, {memory[SETTLED - 1]}, {memory[-1]} kB")
    assert session.probe() == at_first
    session.leave()
    assert sessions().probe() == at_first
    if not sanitized():  # which keep what is freed for a while
        assert max(memory[SETTLED:]) - memory[SETTLED - 1] <= GROWTH_KB


def test_the_same_games_in_two_processes(sessions):
    """Nothing depends on where the memory of a process lies or what was in it before: thinking lines too."""
    first, second = play_all(sessions())[0], play_all(sessions())[0]

    def without_speed(lines: list[str]) -> list[str]:
        return [re.sub(r"^([ \d]\d +-?\d+) +-?\d+ ", r"\1 ", line) for line in lines]

    for number, (one, other) in enumerate(zip(first, second)):
        assert without_speed(one) == without_speed(other), number
