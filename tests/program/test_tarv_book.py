"""`tarv book` from outside: errors as the engine sees them, figures, and books made of games."""

import re
import shutil

import pytest
from conftest import PROJECT, engine_environment, require
from engine_folder import GREETING

SHIPPED = PROJECT / "data" / "tarvyle.bk"

BAD = """\
# A book with mistakes
e2e4 e7e5 g1f3!? b8c6, f1b5;
   # indented

  d2d4 d7d5 e2e4 e7e5 d4xe5
e2e4 e2e4
\t
e2e5
a2a4 # h7h5 z9
g1f3\r
"""


# --- check ------------------------------------------------------------------------------------------------


def test_the_shipped_book_is_sound(says):
    answer = says("book", "check", SHIPPED)
    assert re.fullmatch(r"\S+: 1\d\d\d lines, 0 errors, 0 that add nothing\n", answer)


def test_errors_are_those_of_the_engine(tarv, folder, tmp_path):
    """Line by line and move by move what the engine complains of when it reads the same book."""
    folder.file("tarvyle.bk").write_text(BAD)
    engine = re.findall(r"#error: line (\d+), lexem (.*)", folder.run("quit").stdout)
    (tmp_path / "bad.bk").write_text(BAD)
    done = tarv("book", "check", "bad.bk")
    found = re.findall(r"^error: line (\d+) \(line (\d+) of the file\): (.*) is no legal move there$", done.stdout,
                       re.MULTILINE)
    assert [(number, token) for number, _, token in found] == engine
    assert found == [("2", "5", "d4xe5"), ("3", "6", "e2e4"), ("4", "7", "\t"), ("5", "8", "e2e5"), ("6", "9", "z9")]
    assert done.stderr == "tarv: bad.bk does not pass\n"
    assert done.returncode == 1


def test_lines_that_add_nothing(says, tmp_path):
    (tmp_path / "a.bk").write_text("e2e4 e7e5\ne2e4 e7e5 g1f3\nd2d4\n\nd2d4\ng1f3 d7d5 d2d4\nd2d4 d7d5 g1f3\n")
    assert says("book", "check", "a.bk").splitlines() == [
        "warning: line 1 (line 1 of the file) adds nothing: e2e4 e7e5",
        "warning: line 3 (line 3 of the file) adds nothing: d2d4",
        "warning: line 4 (line 5 of the file) adds nothing: d2d4",
        "a.bk: 6 lines, 0 errors, 3 that add nothing"]


def test_balance_at_the_end_of_the_lines(tarv, tmp_path):
    """A piece given away for nothing, a gambit under its heading, one too expensive, one of the other side."""
    danish = "e2e4 e7e5 d2d4 e5d4 c2c3 d4c3 f1c4 c3b2"
    (tmp_path / "a.bk").write_text(
        "# A40 Sound\nd2d4 d7d5\n# C44 A gambit in words only\ne2e4 e7e5 g1f3 b8c6 f3e5 c6e5\n"
        f"# C21 Danish gambit (gambit by White)\n{danish}\ne2e4 d7d5 d1g4 c8g4\n"
        f"# C21 Danish gambit (gambit by Black)\n{danish} c1b2\n")
    done = tarv("book", "check", "--depth", 6, "--limit", 0.5, "a.bk")
    rows = [line.split(":")[:2] for line in done.stdout.splitlines()]
    assert rows[1:-2] == [
        ["unbalanced", " line 2 (line 4 of the file)"], ["gambit", " line 3 (line 6 of the file)"],
        ["unbalanced", " line 4 (line 7 of the file)"], ["unbalanced", " line 5 (line 9 of the file)"]]
    assert rows[0] == ["warning", " line 3 (line 6 of the file) adds nothing"]
    assert done.stdout.endswith("depth 6: 3 unbalanced by more than 0.50, 1 more are gambits within 2.50\n")
    assert done.returncode == 1
    assert tarv("book", "check", "--depth", 6, "--limit", 20, "a.bk").returncode == 0


# --- stats ------------------------------------------------------------------------------------------------


def figures(text: str) -> dict[str, str]:
    return dict(re.split(r"\s{2,}", line.strip(), maxsplit=1) for line in text.split("\n\n")[0].splitlines())


def test_stats(says, tmp_path):
    (tmp_path / "a.bk").write_text(
        "# A04-A05 Reti\ng1f3 d7d5 d2d4\n# D02 Queen's pawn\nd2d4 d7d5 g1f3 g8f6\n# E00 Empty\n")
    answer = says("book", "stats", "--openings", "a.bk")
    assert figures(answer) == {
        "book": "a.bk", "lines": "2", "half-moves in them": "7", "half-moves of a line, shortest": "3",
        "half-moves of a line, average": "3.5", "half-moves of a line, longest": "4", "positions": "6",
        "orders of moves that lead to them": "7", "positions with several orders of moves": "1",
        "lines with an error": "0"}
    assert [line.split() for line in answer.splitlines() if re.match(r"[AD] ", line)] == [
        ["A", "2", "1", "3", "3"], ["D", "1", "1", "4", "4"]]
    assert re.search(r"^A04-A05 +1 +3 +Reti$", answer, re.MULTILINE)
    assert re.search(r"^E00 +0 +0 +Empty$", answer, re.MULTILINE)


def test_positions_are_those_that_the_engine_enters(says, tmp_path):
    (tmp_path / "empty.lrn").write_bytes(b"")
    entered = re.search(r"(\d+) now", says("learn", "add-book", SHIPPED, "empty.lrn"))[1]
    assert figures(says("book", "stats", SHIPPED))["positions"] == entered


def test_stats_in_markdown(says):
    lines = says("book", "stats", "--markdown", "--openings", SHIPPED).splitlines()
    assert all(line.startswith("|") and line.endswith("|") for line in lines if line)


def test_every_volume_is_covered(says):
    volumes = re.findall(r"^([A-E]) +(\d+) +(\d+)", says("book", "stats", SHIPPED), re.MULTILINE)
    assert [name for name, _, _ in volumes] == list("ABCDE")
    assert all(int(codes) >= 80 and int(lines) >= 200 for _, codes, lines in volumes)


def test_the_document_holds_the_figures(says):
    """docs/BOOK.md is what the command prints today."""
    document = (PROJECT / "docs" / "BOOK.md").read_text()
    tables = says("book", "stats", "--markdown", "--openings", "data/tarvyle.bk", cwd=PROJECT)
    for table in tables.strip().split("\n\n"):
        assert table in document, "run: tarv book stats --markdown --openings data/tarvyle.bk"


# --- from-pgn ---------------------------------------------------------------------------------------------

GAMES = """\
[Event "one"]
[ECO "C50"]
[Opening "Italian game"]
[Result "1-0"]

1. e4 e5 2. Nf3 Nc6 3. Bc4 {quiet} Bc5 (3... Nf6 4. d3) 4. O-O $1 Nf6 5. d3 1-0

[Event "two"]
[ECO "C50"]
[Opening "Italian game"]
[Variation "Giuoco Pianissimo"]

1. e4 e5 2. Nf3 Nc6 3. Bc4 Bc5 4. O-O d6 *

[Event "three"]

1. Nf3 Nc6 2. e4 e5 3. Bc4 Bc5 4. c3 *

[Event "four"]
[SetUp "1"]
[FEN "8/P6k/8/8/8/8/8/K7 w - - 0 1"]

1. a8=N *
"""
ITALIAN = "e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1g1"


@pytest.fixture
def games(tmp_path):
    require("pgn-extract")
    (tmp_path / "games.pgn").write_text(GAMES)
    return "games.pgn"


def test_lines_of_games(says, games, tmp_path):
    """Every line up to the last position that enough games reach, by any order of moves."""
    assert says("book", "from-pgn", games).splitlines() == [
        "# 1 lines from 3 games: positions of at least 2 games, at most 20 half-moves", "# C50 Italian game", ITALIAN]
    answer = says("book", "from-pgn", "--min-games", 1, games)
    assert answer.splitlines()[1:] == [
        "g1f3 b8c6 e2e4 e7e5 f1c4 f8c5 c2c3", "# C50 Italian game", f"{ITALIAN} g8f6 d2d3",
        "# C50 Italian game, Giuoco Pianissimo", f"{ITALIAN} d7d6"]
    assert says("book", "from-pgn", "--min-games", 3, "--max-depth", 4, games, games).splitlines()[1:] == [
        "# C50 Italian game", "e2e4 e7e5 g1f3 b8c6"]


def test_the_book_of_games_is_one(says, folder, games, tmp_path):
    assert says("book", "from-pgn", "--min-games", 1, "-o", "new.bk", games) == ""
    assert says("book", "check", "new.bk") == "new.bk: 3 lines, 0 errors, 0 that add nothing\n"
    folder.file("tarvyle.bk").write_bytes((tmp_path / "new.bk").read_bytes())
    assert folder.run("quit").stdout == GREETING


def test_wrong_games_are_told(tarv, games, tmp_path):
    (tmp_path / "wrong.pgn").write_text('[Event "wrong"]\n\n1. e4 e5 2. Ke3 *\n\n' + GAMES)
    done = tarv("book", "from-pgn", "wrong.pgn")
    assert done.returncode == 0 and done.stdout.endswith(ITALIAN + "\n")
    assert "Ke3" in done.stderr


def test_nothing_left(complains, games):
    assert "no first move is in 4 of the 3 games" in complains("book", "from-pgn", "--min-games", 4, games)
    assert "none.pgn" in complains("book", "from-pgn", games, "none.pgn")


def test_without_pgn_extract(complains, tmp_path, monkeypatch):
    if shutil.which("/usr/games/pgn-extract"):
        pytest.skip("pgn-extract is found wherever the search path leads")
    (tmp_path / "games.pgn").write_text(GAMES)
    complaint = complains("book", "from-pgn", "games.pgn", env=engine_environment() | {"PATH": str(tmp_path)})
    assert "pgn-extract is not installed; it is the Debian package pgn-extract" in complaint


# --- complaints -------------------------------------------------------------------------------------------


@pytest.mark.parametrize("arguments, words", [
    ([], "subcommand"),
    (["check"], "FILE"),
    (["check", "none.bk"], "none.bk"),
    (["check", "."], "cannot read ."),
    (["check", "--depth", "1", "a.bk"], "--depth"),
    (["check", "--limit", "1", "a.bk"], "--depth"),
    (["stats", "none.bk"], "none.bk"),
    (["from-pgn", "--min-games", "0", "a.pgn"], "--min-games"),
    (["from-pgn", "--max-depth", "0", "a.pgn"], "--max-depth"),
])
def test_bad_arguments(complains, arguments, words):
    assert words in complains("book", *arguments)
