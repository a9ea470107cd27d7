"""`tarv suite` from outside: solved or not, the table, and lines that are refused."""

import re

import pytest
from conftest import DATA, PROJECT
from positions import MATE_IN_ONE, NO_KINGS, START

BRATKO_KOPEC = PROJECT / "data" / "bratko-kopec.epd"


def solved(answer: str) -> list[str]:
    """The column "ok" of a table."""
    return re.findall(r" (yes|no) ", answer)


@pytest.mark.parametrize("asked, ok", [
    ("bm Ra8#", "yes"), ("bm Ra8", "yes"), ("bm a1a8", "yes"), ("bm Ra7 Ra8+!", "yes"), ("bm R1xa8", "yes"),
    ("bm Ra7", "no"), ("bm Kd1 O-O-O", "no"), ("am Ra8", "no"), ("am Ra7 0-0-0", "yes"), ("bm Ra8; am Ra7", "yes"),
    ("bm Ra8; am Ra8", "no"),
])
def test_best_moves_and_moves_to_avoid(says, asked, ok):
    answer = says("suite", "-", "--depth", 4, text=f'{MATE_IN_ONE} {asked}; id "x;y";\n')
    assert solved(answer) == [ok]
    assert f"x;y          {asked} " in answer and " Ra8# " in answer and " #1 " in answer
    assert answer.endswith(f"solved {int(ok == 'yes')} of 1\n")


@pytest.mark.parametrize("position, asked", [
    ("k7/8/8/8/8/8/8/K1N3N1 w - -", "Ne2"), ("k7/8/8/8/8/8/8/K5N1 w - -", "Qe2"), ("k7/8/8/8/8/8/8/K5N1 w - -", "Ng3"),
    (START, "e5"), (START, "O-O"), (START, "nonsense"), ("7k/P7/8/8/8/8/8/K7 w - -", "a8=K"),
])
def test_moves_that_are_not_there(complains, position, asked):
    assert complains("suite", "-", "--depth", 2, text=f"{START} bm e4;\n{position} bm {asked};\n") == (
        f"tarv: -: line 2: no legal move there: {asked}\n")


def table_of(answer: str) -> list[list[str]]:
    """Found moves and the column "ok"."""
    return [re.search(r"(\S+) +(yes|no) ", line).groups() for line in answer.splitlines()[1:-1]]


def test_moves_in_algebraic_notation(says):
    """The move that a table tells is understood as the same move when a suite asks for it."""
    rows = [line.split("\t") for line in (DATA / "movelists.tsv").read_text().splitlines() if line[0] != "#"]
    some = [(" ".join(row[0].split()[:4]), row[-1].split()[0]) for row in rows if row[-1].strip()][:150]
    found = table_of(says("suite", "-", "--depth", 2, text="".join(f"{fen} am {move};\n" for fen, move in some)))
    assert len(found) == 150 and {ok for _, ok in found} == {"yes", "no"}
    for code, ok in (("bm", "yes"), ("am", "no")):
        text = "".join(f"{fen} {code} {san};\n" for (fen, _), (san, _) in zip(some, found))
        assert table_of(says("suite", "-", "--depth", 2, text=text)) == [(san, ok) for san, _ in found]


def test_the_same_table_every_time(says):
    first, second = (says("suite", BRATKO_KOPEC, "--depth", 4) for _ in range(2))
    first_rows, second_rows = (re.sub(r"[\d.]+ s$", "", answer, flags=re.MULTILINE) for answer in (first, second))
    assert first_rows == second_rows
    assert first.count(" bm ") == 24 and "BK.24" in first
    assert int(re.search(r"solved (\d+) of 24\n$", first)[1]) == solved(first).count("yes") >= 4


def test_a_clock(says):
    assert says("suite", "-", "--seconds", 0.1, text=f"{MATE_IN_ONE} bm Ra8;\n").endswith("solved 1 of 1\n")


def test_too_few_solved(tarv):
    line = f"{MATE_IN_ONE} bm Ra7;\n{MATE_IN_ONE} bm Ra8;\n"
    assert tarv("suite", "-", "--depth", 4, "--expect", 1, text=line).returncode == 0
    done = tarv("suite", "-", "--depth", 4, "--expect", 2, text=line)
    assert (done.stderr, done.returncode) == ("tarv: fewer than 2 solved\n", 1)


@pytest.mark.parametrize("line, words", [
    (START, "neither bm nor am"),
    (f"{START} bm;", "neither bm nor am"),
    ("nonsense bm e4;", "no side to move"),
    (f"{NO_KINGS} bm e4;", "no chess position"),
])
def test_refused_lines(complains, line, words):
    complaint = complains("suite", "-", "--depth", 2, text=f"# first\n{line}\n")
    assert complaint.startswith("tarv: -: line 2: ") and words in complaint


@pytest.mark.parametrize("arguments, words", [
    ([], "FILE"), (["a.epd"], "--seconds or --depth"), (["none.epd", "--depth", "3"], "none.epd"),
    (["a.epd", "--depth", "1"], "--depth"), (["a.epd", "--seconds", "x"], "--seconds"),
])
def test_bad_arguments(complains, arguments, words):
    assert words in complains("suite", *arguments)
