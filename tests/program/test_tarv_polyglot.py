"""`tarv book to-polyglot` and `from-polyglot`: entries, weights, bounds, and the program polyglot on the other side."""

import re
import shutil
import struct
import subprocess

import pytest
from conftest import PROJECT, SEARCH_PATH, require

SHIPPED = PROJECT / "data" / "tarvyle.bk"
START = 0x463B96181691FC9C
E2E4, D2D4, G1F3 = 0o1434, 0o1333, 0o0625


def entries(content: bytes) -> list[tuple[int, int, int, int]]:
    assert len(content) % 16 == 0
    return list(struct.iter_unpack(">QHHI", content))


def book_of(*rows: tuple[int, int, int]) -> bytes:
    return b"".join(struct.pack(">QHHI", *row, 0) for row in rows)


# --- to-polyglot ------------------------------------------------------------------------------------------


def test_weights_are_numbers_of_lines(says, tmp_path):
    """By any order of moves, and once for a line that comes to the position twice."""
    there_and_back = "g1f3 g8f6 f3g1 f6g8 "
    (tmp_path / "a.bk").write_text(
        f"# A00\ne2e4 e7e5\ne2e4 c7c5\nd2d4\n{2 * there_and_back}g1f3\ng1f3 d7d5 d2d4\nd2d4 d7d5 g1f3\n")
    assert says("book", "to-polyglot", "a.bk", "a.bin") == "a.bin: 12 entries of 8 positions from 6 lines\n"
    rows = entries((tmp_path / "a.bin").read_bytes())
    assert rows == sorted(rows, key=lambda row: (row[0], -row[2], row[1]))
    assert [row[1:] for row in rows if row[0] == START] == [(G1F3, 2, 0), (D2D4, 2, 0), (E2E4, 2, 0)]
    assert [row[1:3] for row in rows if row[0] == 0x823C9B50FD114196] == [(0o6242, 1), (0o6444, 1)]


def test_weights_fit_into_an_entry(says, tmp_path):
    """More lines than a weight can tell: all moves of the position shrink alike, and none is lost."""
    (tmp_path / "a.bk").write_text("e2e4\n" * 70000 + "d2d4\n" * 35000 + "g1f3\n")
    says("book", "to-polyglot", "a.bk", "a.bin")
    assert [row[1:3] for row in entries((tmp_path / "a.bin").read_bytes())] == [(E2E4, 65535), (D2D4, 32767), (G1F3, 1)]


def test_standard_output_holds_the_book_alone(workbench, tmp_path):
    (tmp_path / "a.bk").write_text("e2e4\n")
    done = subprocess.run([workbench, "book", "to-polyglot", "a.bk", "-"], cwd=tmp_path, capture_output=True,
                          check=True)
    assert (entries(done.stdout), done.stderr) == ([(START, E2E4, 1, 0)], b"")
    (tmp_path / "a.bin").write_bytes(done.stdout)
    done = subprocess.run([workbench, "book", "from-polyglot", "a.bin", "-"], cwd=tmp_path, capture_output=True,
                          check=True)
    assert done.stdout == b"# 1 lines from 1 of 1 entries, at most 40 half-moves\ne2e4\n"


# --- from-polyglot ----------------------------------------------------------------------------------------


def test_the_shipped_book_there_and_back(says, tmp_path):
    """The same moves of the same positions, so the same book positions for the engine."""
    says("book", "to-polyglot", SHIPPED, "a.bin")
    says("book", "from-polyglot", "a.bin", "b.bk")
    assert re.fullmatch(r"b\.bk: \d+ lines, 0 errors, 0 that add nothing\n", says("book", "check", "b.bk"))
    says("book", "to-polyglot", "b.bk", "b.bin")
    first, second = (entries((tmp_path / name).read_bytes()) for name in ("a.bin", "b.bin"))
    assert sorted(row[:2] for row in first) == sorted(row[:2] for row in second)
    count = [re.search(r"^positions +(\d+)", says("book", "stats", book), re.M)[1] for book in (SHIPPED, "b.bk")]
    assert count[0] == count[1]


def lines_of(says, tmp_path, *options) -> tuple[list[str], str]:
    """The lines of a.bk in both formats, and what was told."""
    says("book", "to-polyglot", "a.bk", "a.bin")
    told = says("book", "from-polyglot", *options, "a.bin", "b.bk")
    head, *lines = (tmp_path / "b.bk").read_text().splitlines()
    assert told == f"b.bk: {head[2:]}\n"
    return lines, head[2:]


def test_a_line_ends_where_another_goes_on(says, tmp_path):
    """At a position that is reached by fewer moves, or by a heavier one."""
    (tmp_path / "a.bk").write_text("d2d4 d7d5 g1f3 g8f6 c2c4\ng1f3 d7d5 d2d4 g8f6 c2c4\nd2d4 d7d5 g1f3\n")
    lines, told = lines_of(says, tmp_path)
    assert lines == ["d2d4 d7d5 g1f3 g8f6 c2c4", "g1f3 d7d5 d2d4"]
    assert told == "2 lines from 8 of 8 entries, at most 40 half-moves"


def test_bounds_are_told(says, tmp_path):
    (tmp_path / "a.bk").write_text("e2e4 e7e5 g1f3\ne2e4 e7e5 f2f4 e5f4\nd2d4 d7d5 c2c4\nd2d4 g8f6\n")
    lines, told = lines_of(says, tmp_path, "--max-depth", 2)
    assert lines == ["d2d4 d7d5", "d2d4 g8f6", "e2e4 e7e5"]
    assert told == "3 lines from 5 of 9 entries, at most 2 half-moves; positions with more moves at that depth: 2"
    lines, told = lines_of(says, tmp_path, "--max-lines", 3)
    assert lines == ["d2d4 d7d5 c2c4", "d2d4 g8f6", "e2e4 e7e5"]
    assert told == "3 lines from 6 of 9 entries, at most 40 half-moves; positions with moves beyond 3 lines: 1"


def test_moves_without_weight_and_illegal_ones_are_left_out(says, tmp_path):
    (tmp_path / "a.bin").write_bytes(book_of((START, 0o1444, 9), (START, E2E4, 3), (START, D2D4, 0)))
    assert says("book", "from-polyglot", "a.bin", "-").splitlines() == [
        "# 1 lines from 1 of 3 entries, at most 40 half-moves; moves without weight left out: 1", "e2e4"]


def test_damaged_books(tarv, tmp_path):
    """What can be used is; what was wrong is told."""
    (tmp_path / "a.bin").write_bytes(book_of((~0 & (1 << 64) - 1, 1, 1), (START, E2E4, 3)) + b"\x01\x02\x03")
    done = tarv("book", "from-polyglot", "a.bin", "-")
    assert done.returncode == 0 and done.stdout.endswith("\ne2e4\n")
    assert "a.bin: 3 bytes behind the last whole entry are left out" in done.stderr
    assert "a.bin: the entries are out of order" in done.stderr


# --- the program polyglot ---------------------------------------------------------------------------------

GAMES = ["1. e4 e5 2. Nf3 Nc6 3. Bc4 Bc5 4. O-O Nf6 5. d3", "1. e4 d5 2. e5 f5 3. exf6 Nxf6 4. d4",
         "1. d4 d5 2. Nc3 Nc6 3. Bf4 Bf5 4. Qd2 Qd7 5. O-O-O O-O-O", "1. e4 d5 2. e5 f5 3. d4 e6 4. Nf3",
         "1. a4 b5 2. h4 b4 3. c4 bxc3 4. Ra3 cxb2 5. Rb3 bxc1=N 6. Rxb8 Rxb8 7. Qc2 Rb2"]
LINES = ["e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1g1 g8f6 d2d3", "e2e4 d7d5 e4e5 f7f5 e5f6 g8f6 d2d4",
         "d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 e1c1 e8c8", "e2e4 d7d5 e4e5 f7f5 d2d4 e7e6 g1f3",
         "a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3 c3b2 a3b3 b2c1n b3b8 a8b8 d1c2 b8b2"]


@pytest.fixture
def polyglot(tmp_path):
    """Runs the program polyglot, which makes and prints such books."""
    require("polyglot")
    program = shutil.which("polyglot", path=SEARCH_PATH)
    return lambda *words: subprocess.run([program, *words], cwd=tmp_path, check=True, capture_output=True, timeout=60)


def test_books_that_polyglot_makes(says, polyglot, tmp_path):
    """Draws count one for both sides: entry by entry what this program makes of the same lines."""
    (tmp_path / "a.pgn").write_text("".join(f'[Result "1/2-1/2"]\n\n{game} 1/2-1/2\n\n' for game in GAMES))
    polyglot("make-book", "-pgn", "a.pgn", "-bin", "theirs.bin", "-max-ply", "30", "-min-game", "1")
    (tmp_path / "a.bk").write_text("\n".join(LINES) + "\n")
    says("book", "to-polyglot", "a.bk", "ours.bin")
    theirs, ours = (entries((tmp_path / name).read_bytes()) for name in ("theirs.bin", "ours.bin"))
    assert len(ours) == 42 and sorted(ours) == sorted(theirs)
    assert sorted(says("book", "from-polyglot", "theirs.bin", "-").splitlines()[1:]) == sorted(LINES)


def test_polyglot_reads_our_books(says, polyglot, tmp_path):
    (tmp_path / "a.bk").write_text("\n".join(LINES) + "\n")
    says("book", "to-polyglot", "a.bk", "a.bin")
    polyglot("dump-book", "-bin", "a.bin", "-color", "white", "-out", "a.txt")
    printed = (tmp_path / "a.txt").read_text()
    assert "1. e4{60%} d5 2. e5{100%} f5 3. exf6{50%} Nxf6 4. d4{100%}" in printed
    assert "1. d4{20%} d5 2. Nc3{100%} Nc6 3. Bf4{100%} Bf5 4. Qd2{100%} Qd7 5. O-O-O{100%}" in printed
    assert "4. O-O{100%}" in printed and "5. Rb3{100%} bxc1=N 6. Rxb8{100%}" in printed


# --- complaints -------------------------------------------------------------------------------------------


@pytest.mark.parametrize("arguments, words", [
    (["to-polyglot", "good.bk"], "OUTPUT"),
    (["to-polyglot", "none.bk", "new"], "cannot read none.bk"),
    (["to-polyglot", "empty", "new"], "empty has no line"),
    (["to-polyglot", "bad.bk", "new"], "line 1 (line 2 of the file): e2e5 is no legal move there"),
    (["to-polyglot", "good.bk", "./good.bk"], "is the book that is read"),
    (["to-polyglot", "good.bk", "none/new"], "cannot write none/new"),
    (["from-polyglot", "none.bin", "new"], "cannot read none.bin: No such file or directory"),
    (["from-polyglot", "empty", "new"], "cannot read empty: it is empty"),
    (["from-polyglot", ".", "new"], "cannot read .: it is no plain file"),
    (["from-polyglot", "short.bin", "new"], "shorter than an entry"),
    (["from-polyglot", "good.bk", "new"], "has no move to play in the start position"),
    (["from-polyglot", "link.bin", "good.bin"], "is the book that is read"),
    (["from-polyglot", "--max-depth", "0", "good.bin", "new"], "--max-depth"),
    (["from-polyglot", "--max-lines", "0", "good.bin", "new"], "--max-lines"),
])
def test_bad_arguments_write_nothing(tarv, tmp_path, arguments, words):
    (tmp_path / "good.bk").write_text("e2e4 e7e5 g1f3 b8c6\n")
    (tmp_path / "bad.bk").write_text("# bad\ne2e5\n")
    (tmp_path / "empty").touch()
    (tmp_path / "short.bin").write_bytes(b"\x01" * 15)
    (tmp_path / "good.bin").write_bytes(book_of((START, E2E4, 3)))
    (tmp_path / "link.bin").symlink_to("good.bin")
    before = {path.name: path.read_bytes() for path in tmp_path.iterdir()}
    done = tarv("book", *arguments)
    assert done.returncode == 2 and words in done.stderr
    assert {path.name: path.read_bytes() for path in tmp_path.iterdir()} == before
