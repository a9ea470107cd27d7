"""The programs of bench/ that measure whole engines: they run, and print what the documents quote. The judge of their
matches is compared with another one."""

import random
import re
import shutil
import subprocess
import sys

import pytest
from conftest import PROJECT, RELEASE, sanitized

sys.path.insert(0, str(PROJECT / "bench"))

# pylint: disable=wrong-import-position
from rules import Board, written  # noqa: E402

pytestmark = pytest.mark.skipif(sanitized(), reason="they measure the release build")

WORKBENCH = RELEASE / "bin" / "tarv"
UCI = RELEASE / "bin" / "tarv-uci"
TIMEOUT_SECONDS = 300
RUNNERS = ["own", *filter(None, [shutil.which("fastchess")])]
GAMES_BETWEEN_JUDGES = 20


def measured(script: str, *arguments, status: int = 0, **options) -> str:
    """What a script prints that ends with this status, well by default."""
    done = subprocess.run([sys.executable, "-B", PROJECT / "bench" / script, *map(str, arguments)], text=True,
                          capture_output=True, timeout=TIMEOUT_SECONDS, check=False, **options)
    assert done.returncode == status, done.stderr
    return done.stdout


def test_a_match():
    said = measured("strength.py", "--games", 2, "--clock", "0.5+0.01", "--option", "Seed=1", WORKBENCH, "uci")
    assert re.match(r"2 games: \d won, \d drawn, \d lost; Elo [+-]\d+\.\d \(", said), said


@pytest.mark.parametrize("runner", RUNNERS)
@pytest.mark.parametrize("control", ["0.5+0.01", "20/1"])
def test_a_match_of_two_styles(tmp_path, runner, control):
    match = ["sprt", UCI, f"{WORKBENCH} uci", "--runner", runner, "--tc", control, "--old-option", "Style=knowledge1"]
    said = measured(*match, "--games", 4, "--concurrency", 2, status=3, cwd=tmp_path)
    assert re.match(r"games: 4: \d won, \d drawn, \d lost\n", said), said
    assert "illegal moves: new 0, old 0; crashes: new 0, old 0" in said
    assert len((tmp_path / "sprt.tsv").read_text().splitlines()) == 1 + 2


def test_the_judge_of_matches_agrees_with_another(referee):
    """Random games, move by move: the same moves are legal, and the game ends for the same reason."""
    dice = random.Random(1)
    ends = set()
    for _ in range(GAMES_BETWEEN_JUDGES):
        board, state = Board(), referee.ask("new")
        while True:
            assert board.over() == state["over"], board.moves
            if board.over():
                break
            assert sorted(map(written, board.position.legal())) == sorted(state["legal"]), board.moves
            board.play(dice.choice(sorted(state["legal"])))
            state = referee.play(board.moves[-1])
        ends.add(board.over())
    assert len(ends) >= 3, ends


def test_nodes_beside_other_engines(tmp_path):
    rows = tmp_path / "rows.tsv"
    said = measured("peers.py", "--seconds", 0.5, "--tsv", rows, "tarv")
    assert re.search(r"^tarv +[\d,]+ +[\d,]+ +[\d,]+  \(12 positions\)$", said, re.MULTILINE), said
    assert len(rows.read_text().splitlines()) == 12


def test_the_first_answer_and_the_memory():
    said = measured("startup.py")
    assert re.search(r"^to the first answer: [\d.]+ ms$", said, re.MULTILINE), said
    assert re.search(r"^memory after a search: \d+ kB", said, re.MULTILINE), said
