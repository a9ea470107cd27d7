"""The judge, the clock and the openings of the matches that bench/ plays."""

import subprocess
import sys

import pytest
from conftest import PROJECT

sys.path.insert(0, str(PROJECT / "bench"))

# pylint: disable=wrong-import-position
from openings import openings  # noqa: E402
from rules import START, Board, Illegal, Position, written  # noqa: E402
from uci_match import Clock, TimeControl  # noqa: E402

# --- moves ------------------------------------------------------------------------------------------------

# Positions that hold what is rare, and how many lines of so many moves they have, as many programs have counted them.
COUNTED = [
    (START, [20, 400, 8902]),
    ("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", [48, 2039]),
    ("8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", [14, 191, 2812]),
    ("r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", [6, 264, 9467]),
    ("rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", [44, 1486]),
]


def lines(position: Position, length: int) -> int:
    return 1 if length == 0 else sum(lines(position.after(move), length - 1) for move in position.legal())


@pytest.mark.parametrize("fen, counts", COUNTED)
def test_as_many_lines_as_the_rules_allow(fen, counts):
    assert [lines(Position(fen), length) for length in range(1, len(counts) + 1)] == counts


@pytest.mark.parametrize("fen", [fen for fen, _ in COUNTED])
def test_a_position_is_written_as_it_was_read(fen):
    assert Position(fen).fen() == fen


@pytest.mark.parametrize("move", ["e2e5", "e7e5", "e1e2", "", "e2", "e2e4q", "0000", "(none)"])
def test_what_is_no_legal_move_is_refused(move):
    board = Board()
    with pytest.raises(Illegal):
        board.play(move)
    assert (board.moves, board.position.fen()) == ([], START)


@pytest.mark.parametrize("fen, moves, legal", [
    ("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1g1", True),
    ("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1", True),
    ("r3k2r/8/8/8/8/8/8/R3K2R w kq - 0 1", "e1g1", False),  # without the right
    ("4k3/4r3/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", False),  # out of check
    ("4k3/5r2/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", False),  # through it
    ("4k3/6r1/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", False),  # into it
    ("4k3/1r6/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1", True),  # only the rook passes there
    ("4k3/8/8/8/8/8/8/RN2K2R w KQ - 0 1", "e1c1", False),
    ("4k3/8/8/8/8/8/4r3/4K3 w - - 0 1", "e1d1", True),
    ("4k3/8/8/8/8/8/4r3/4K3 w - - 0 1", "e1f2", False),
    ("4k3/8/8/8/4r3/8/4B3/4K3 w - - 0 1", "e2d3", False),  # pinned
    ("4k3/8/8/8/4r3/8/P7/4K3 w - - 0 1", "a2a3", False),  # leaves the king in check
])
def test_castling_and_check(fen, moves, legal):
    board = Board(fen)
    *before, last = moves.split()
    for move in before:
        board.play(move)
    if legal:
        board.play(last)
    else:
        with pytest.raises(Illegal):
            board.play(last)


def test_a_captured_rook_takes_its_right_along():
    assert Position("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1").take("h1h8").fen() == "r3k2R/8/8/8/8/8/8/R3K3 b Qq - 0 1"


def test_promotions_name_their_piece():
    position = Position("8/P7/8/8/8/8/8/K1k5 w - - 0 1")
    assert sorted(move for move in map(written, position.legal()) if len(move) == 5) == [
        "a7a8b", "a7a8n", "a7a8q", "a7a8r"]
    with pytest.raises(Illegal):
        position.take("a7a8")
    assert position.take("a7a8n").fen() == "N7/8/8/8/8/8/8/K1k5 b - - 0 1"


def test_a_square_of_passing_is_written_where_a_pawn_can_take():
    assert Position(START).take("e2e4").fen() == "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"
    black = Position("4k3/8/8/8/3p4/8/4P3/4K3 w - - 0 1").take("e2e4")
    assert black.fen() == "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1"
    pinned = Position("8/8/8/8/R2p3k/8/4P3/4K3 w - - 0 1").take("e2e4")
    assert pinned.fen() == "8/8/8/8/R2pP2k/8/8/4K3 b - - 0 1", "both pawns would leave the rank, and the king in check"


# --- the end of a game ------------------------------------------------------------------------------------

SHUFFLE = "g1f3 g8f6 f3g1 f6g8"


@pytest.mark.parametrize("fen, moves, over", [
    (START, "", ""),
    (START, "f2f3 e7e5 g2g4 d8h4", "checkmate"),
    ("7k/5Q2/8/8/8/8/8/K7 w - - 0 1", "f7g6", "stalemate"),
    ("7k/8/6Q1/8/8/8/8/K7 b - - 0 1", "", "stalemate"),
    (START, f"{SHUFFLE} {SHUFFLE}", "repetition"),
    (START, f"{SHUFFLE} g1f3 g8f6 f3g1", ""),
    (START, f"e2e4 e7e5 {SHUFFLE} {SHUFFLE}", "repetition"),  # nobody could take in passing
    ("4k3/8/8/8/3p4/8/4P3/4K3 w - - 0 1", "e2e4 " + "e8e7 e1e2 e7e8 e2e1 " * 2, ""),  # d4e3 was possible once
    ("4k2r/8/8/8/8/8/8/4K3 w k - 0 1", "e1e2 h8h7 e2e1 h7h8 " * 2, ""),  # castling was possible once
    ("4k2r/8/8/8/8/8/8/4K3 w k - 0 1", "e1e2 h8h7 e2e1 h7h8 " * 2 + "e1e2 h8h7", "repetition"),
    ("4k3/8/8/8/8/8/4P3/4K2R w - - 98 90", "h1h2 e8e7", "fifty moves"),
    ("4k3/8/8/8/8/8/4P3/4K2R w - - 98 90", "h1h2", ""),
    ("4k3/8/8/8/8/8/4P3/4K2R w - - 99 90", "e2e3", ""),
    ("k7/2Q5/1K6/8/8/8/8/8 w - - 99 90", "c7b7", "checkmate"),  # comes before the fifty moves
    ("4k3/8/8/8/8/8/4p3/4K3 w - - 0 1", "e1e2", "material"),
    ("4k3/8/8/8/8/8/4p3/3NK3 w - - 0 1", "e1e2", "material"),
    ("4k3/8/8/8/8/8/4p3/2B1K3 w - - 0 1", "e1e2", "material"),
    ("4k1b1/8/8/8/8/8/4p3/2B1K3 w - - 0 1", "e1e2", ""),  # g8 is light, c1 dark
    ("4kb2/8/8/8/8/8/4p3/2B1K3 w - - 0 1", "e1e2", "material"),
    ("4kn2/8/8/8/8/8/4p3/2B1K3 w - - 0 1", "e1e2", ""),
    ("4k3/8/8/8/8/8/4p3/2NNK3 w - - 0 1", "e1e2", ""),
    ("4k3/8/8/8/8/8/4p3/3RK3 w - - 0 1", "e1e2", ""),
    ("4k3/8/8/8/8/4P3/4p3/4K3 w - - 0 1", "e1e2", ""),
])
def test_when_a_game_is_over(fen, moves, over):
    board = Board(fen)
    for move in moves.split():
        assert board.over() == ""
        board.play(move)
    assert board.over() == over


# --- the clock --------------------------------------------------------------------------------------------


@pytest.mark.parametrize("text, control", [
    ("1+0.01", (0, 1, 0.01)), ("20/10", (20, 10, 0)), ("40/60.5+1", (40, 60.5, 1)), ("5", (0, 5, 0))])
def test_time_controls(text, control):
    assert TimeControl.parse(text) == TimeControl(*control)
    assert TimeControl.parse(str(TimeControl.parse(text))) == TimeControl(*control)


@pytest.mark.parametrize("text", ["", "0", "-1", "1+", "/5", "0/5", "1:00", "20/10+0.1s", "nan"])
def test_what_is_no_time_control(text):
    with pytest.raises(ValueError):
        TimeControl.parse(text)


def test_a_clock_with_an_increment():
    clock = Clock(TimeControl(0, 1, 0.5))
    assert clock.limits(0) == clock.limits(1) == "wtime 1000 btime 1000 winc 500 binc 500"
    assert clock.press(0, 0.25) and clock.press(1, 1.0)
    assert clock.limits(0) == "wtime 1250 btime 500 winc 500 binc 500"
    assert not clock.press(1, 0.501), "the increment comes after the move"


def test_a_clock_that_is_filled_again():
    clock = Clock(TimeControl(2, 10, 0))
    assert clock.limits(0) == "wtime 10000 btime 10000 winc 0 binc 0 movestogo 2"
    assert clock.press(0, 4)
    assert clock.limits(0) == "wtime 6000 btime 10000 winc 0 binc 0 movestogo 1"
    assert clock.limits(1).endswith("movestogo 2")
    assert clock.press(0, 5)
    assert clock.limits(0) == "wtime 11000 btime 10000 winc 0 binc 0 movestogo 2"


# --- openings ---------------------------------------------------------------------------------------------


def test_openings_of_the_shipped_book_are_the_same_everywhere():
    fens = openings()
    assert len(fens) > 500 and len({fen.rsplit(" ", 2)[0] for fen in fens}) == len(fens)
    assert all(fen.endswith(" 5") and " w " in fen for fen in fens), "four moves have been made"
    assert fens == openings() and fens != openings(seed=2) and sorted(fens) == sorted(openings(seed=2))
    done = subprocess.run([sys.executable, "-B", PROJECT / "bench" / "openings.py", "--seed", "2"], text=True,
                          capture_output=True, check=True)
    assert done.stdout.splitlines() == openings(seed=2)


def test_lines_are_cut_and_positions_come_once(tmp_path):
    book = tmp_path / "book"
    book.write_text("# a comment\ne2e4 e7e5 g1f3\n\nd2d4 d7d5 c2c4\ne2e4 e7e5 f1c4\nc2c4\ng1f3 g8f6 f3g1 f6g8\n"
                    "g1f3 b8c6 f3g1 c6b8\n")
    lines_of_two = ("e2e4 e7e5", "d2d4 d7d5", "g1f3 g8f6", "g1f3 b8c6")
    assert sorted(openings(book, 2)) == sorted(map(position_after, lines_of_two))
    assert len(openings(book, 4)) == 1, "both lines end where they began"


def position_after(moves: str) -> str:
    board = Board()
    for move in moves.split():
        board.play(move)
    return board.position.fen()


def test_a_book_with_an_illegal_move_is_named(tmp_path):
    book = tmp_path / "book"
    book.write_text("e2e4 e7e5\ne2e4 e4e5\n")
    with pytest.raises(ValueError, match="book: e2e4 e4e5: the last move is not legal"):
        openings(book, 2)
