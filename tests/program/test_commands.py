"""The command loop from outside: each command, the order in which they are tried, and strange input."""

import os
import signal
import time

import pytest
from engine_folder import BOOK_INSTEAD, GREETING
from game_files import with_scores
from positions import AFTER_E4_TEXT, BEFORE_ONE_REPLY, CHECKMATE, MATE_IN_ONE, ONE_REPLY, STALEMATE, START_TEXT

SHUFFLE = ["b1c3", "b8c6", "c3b1", "c6b8"]
MAX_GAME_MOVES = 400

FEATURES = "feature setboard=1\nfeature done=1\nfeature sigint=0\nfeature sigterm=0\n"

BOARD_AFTER_ONE_REPLY = """\
8  -   -   -   - k 
7    -   -   -   - 
6  -   -   -   -   
5    -   -   -   - 
4  -   -   -   -   
3    -   -   -   - 
2  - K -   -   -   
1    -   -   -   - 

   a b c d e f g h 
moves: 1
side:  black
"""


def position(text: str) -> str:
    return f"position {text}\n"


def unknown(*words: str) -> str:
    return "".join(f"# unknow: {word}\n" for word in words)


def assert_says(run, said: str = "", complaints: str = "") -> None:
    assert run.said == said
    assert run.complaints == complaints
    assert run.status == 0


# --- commands of the protocol -----------------------------------------------------------------------------


def test_xboard_and_protover(folder):
    assert_says(folder.run("xboard", "protover 2", "protover"), FEATURES + "feature done=1\n" * 2)


def test_st_messages(folder):
    expected = "----> error: expected <st second's>\n"
    four = "# warning:  time = 4 sec \n"
    hundred = "# warning:  time = 100 sec \n"
    run = folder.run("st 0", "st abc", "st", "st nan", "st 2.5", "st -3", "st 30", "st 101", "st 1e400", "st inf")
    assert_says(run, "", expected * 4 + four * 2 + hundred * 3)


def test_time_is_silent(folder):
    assert_says(folder.run("time 6000", "time", "time x", "time -1", "time 999999999999999999999", "time 100000"))


@pytest.mark.parametrize("command, allowance", [
    ("st 0", 700), ("st 2.5", 400), ("st 30", 3000), ("st 1000", 10000), ("time 6000", 700), ("time", 700),
    ("time -5", 700), ("time 40000", 1000), ("time 99999999999", 3000),
])
def test_time_allowances(folder, command, allowance):
    """The randomised search tells the half of the allowance that its first stage may take."""
    run = folder.run("rnd on", command, "xboard", "go", step_ms=60_000)
    assert f"#------> stage1 - search best move, time = {allowance / 200:f} \n" in run.stdout


def test_force_new_and_go(folder):
    run = folder.run("xboard", "force", "e2e4", "getboard", "new", "getboard", f"setboard {ONE_REPLY}", "force", "go")
    assert_says(run, FEATURES + position(AFTER_E4_TEXT) + position(START_TEXT) + "move a1b2\n")


def test_a_move_is_answered(folder):
    run = folder.run("setboard 7k/8/8/8/8/8/1r6/1K6 b - -", "b2b1")
    assert run.said == "" and run.complaints == unknown("b2b1"), "occupied by the king"
    run = folder.run(f"setboard {BEFORE_ONE_REPLY}", "b3b2")
    assert_says(run, BOARD_AFTER_ONE_REPLY + "move a1b2\n")


def test_new_leaves_force_mode(folder):
    run = folder.run("force", "new", "glintview", f"setboard {BEFORE_ONE_REPLY}", "b3b2")
    assert "move a1b2\n" in run.said


def test_glintview_announcements(folder):
    run = folder.run("glintview", "force", "style", "e2e4", "getboard", "undo", "redo", "new", "quit")
    assert_says(run, position(START_TEXT) + "# knowledge3 \n" + position(AFTER_E4_TEXT) * 2 + position(START_TEXT)
                + position(AFTER_E4_TEXT) + position(START_TEXT))


def test_glintview_during_play(folder):
    run = folder.run("glintview", f"setboard {BEFORE_ONE_REPLY}", "b3b2")
    assert_says(run, position(START_TEXT) + position("7k/8/8/8/8/1r6/8/K7 b") + position("7k/8/8/8/8/8/1r6/K7 w")
                + position("7k/8/8/8/8/8/1K6/8 b") + "move a1b2\n")


def test_glintview_must_begin_the_line(folder):
    assert_says(folder.run(" glintview", "glintviewer"), position(START_TEXT), unknown("glintview"))


def test_setboard_refused(folder):
    refused = ["setboard", "setboard x", "setboard 8/8/8/8/8/8/8/8 w - -", "setboard 4k3/8/8/8/8/8/8/4K3 z - -"]
    run = folder.run(*refused, "getboard")
    assert_says(run, position(START_TEXT), unknown(*["setboard"] * len(refused)))


# --- commands of the console ------------------------------------------------------------------------------


def test_help_is_found_in_any_line(folder):
    once = folder.run("help")
    assert once.said.count("\n") == 28
    assert once.said.startswith("#  move                                     \n#   <from><to>[promote_piece]")
    assert once.said.splitlines()[-4] == "#  about:                                   "
    assert_says(folder.run("helpme", "xhelp", "e2e4 help"), once.said * 3)


def test_undo_redo_up_end(folder):
    run = folder.run("undo", "up", "redo", "end", "force", "e2e4", "e7e5", "g1f3", "up", "getmoves", "redo", "getmoves",
                     "end", "undo", "getmoves", "redo", "redo", "getmoves")
    assert_says(run, "moves \nmoves e2e4 \nmoves e2e4 e7e5 \nmoves e2e4 e7e5 g1f3 \n")


def test_refused_text_after_undo_leaves_redo_working(folder):
    run = folder.run("force", "e2e4", "e7e5", "undo", "e7e4", "o-o-o", "redo", "getmoves")
    assert_says(run, "moves e2e4 e7e5 \n", unknown("e7e4", "o-o-o"))


@pytest.mark.parametrize("command", ["d2d4", "e2e4", "go"])
def test_a_new_move_after_undo_aborts(folder, command):
    run = folder.run("force", "e2e4", "undo", command, "getboard")
    assert run.status == -signal.SIGABRT
    assert run.said == ""
    assert run.complaints == "---> InsertMoveInGame: error control summ ?! \n"


def test_style(folder):
    run = folder.run("style", "style knowledge1", "style", "style best", "style knowledge2 x", "style")
    assert_says(run, "# knowledge3 \n# knowledge1 \n# knowledge2 \n", "# unknow style\n")


def test_rnd_arguments(folder):
    assert_says(folder.run("rnd", "rnd on", "rnd off", "rnd x"), "", "error: expected arg, [on] or [off]\n" * 2)


def test_deb(folder):
    run = folder.run("deb 11", "getboard", "deb 12", "deb", "deb x", "getboard")
    assert_says(run, position("3k4/8/2K1Q3/8/8/8/8/8 w") * 2, "#error\n" * 3)


def test_getboard_always_announces(folder):
    assert_says(folder.run("getboard", "getboard"), position(START_TEXT) * 2)


def test_pos(folder):
    run = folder.run("force", "d2d4", "pos")
    assert_says(run, """\
8  r n b q k b n r 
7  p p p p p p p p 
6  -   -   -   -   
5    -   -   -   - 
4  -   - P -   -   
3    -   -   -   - 
2  P P P   P P P P 
1  R N B Q K B N R 

   a b c d e f g h 
moves: 1
side:  black
""")


def test_getmoves(folder):
    run = folder.run("getmoves", "force", "e2e4", "e7e5", "getmoves", " getmoves", "getmoves game.txt",
                     "getmoves final.txt Final", "getmoves no/where.txt")
    assert_says(run, "moves \nmoves e2e4 e7e5 \ne2e4 e7e5 \n", "error open file\n")
    assert folder.file("game.txt").read_text() == '[Event  "player - chess"] \ne2e4 e7e5 \n'
    assert folder.file("final.txt").read_text() == '[Event  "Final"] \ne2e4 e7e5 \n'


def test_score_says_nothing(folder):
    assert_says(folder.run("score", "deb 2", "score"))


def test_test_tells_a_draw_by_rule(folder):
    shuffle = ["g1f3", "g8f6", "f3g1", "f6g8"]
    run = folder.run("test", "force", *shuffle, "test", *shuffle, "g1f3", "test", "e7e5", "test")
    assert_says(run, "Repetition - 0 \nRepetition - 0 \nRepetition - 1 \nRepetition - 0 \n")


def test_unknown_words(folder):
    assert_says(folder.run("foo bar", "e2e5", "quitx", "Go"), "", unknown("foo", "e2e5", "quitx", "Go"))


# --- the machine's move -----------------------------------------------------------------------------------


def test_mate_ends_the_game(folder):
    run = folder.run("xboard", f"setboard {MATE_IN_ONE}", "go", "go")
    assert run.said.endswith("sigterm=0\nmove a1a8\nthe end\nthe end\n")


def test_stalemate_ends_the_game(folder):
    run = folder.run("xboard", "setboard 7k/5P2/6qK/8/8/8/8/8 w - -", "go")
    assert run.said.endswith("sigterm=0\nmove h6g6\nthe end\n")


def test_check_is_told_in_the_console_only(folder):
    check = "setboard k7/2Q5/3p4/8/4K3/8/8/1R6 b - -"
    assert folder.run(check, "go").said.endswith("side:  white\nmove d6d5\ncheck\n")
    assert folder.run("xboard", check, "go").said.endswith("sigterm=0\nmove d6d5\n")


def test_no_move_at_all(folder):
    run = folder.run(f"setboard {STALEMATE}", "go", f"setboard {CHECKMATE}", "go", "style")
    assert_says(run, "the end\nthe end\n# knowledge3 \n")


def saved_game_with_scores(folder, moves: list[str], scores: list[int]) -> None:
    """Saves a game of these moves and puts the scores beside those of the second side."""
    folder.run("force", "setboard k7/8/3p4/8/4K3/8/8/1RQ4R w - -", *moves, "save scores.dat")
    with_scores(folder.file("scores.dat"), {2 * index + 1: score for index, score in enumerate(scores)})


@pytest.mark.parametrize("scores, last", [
    ([0, -500, -12000, -13000, -14000, -15000], "computer resigns\n"),
    ([0, 0, -500, -12000, -13000, -14000], "check\n"),
    ([-500, -12000, -13000, -14000, -15000, -16000], "check\n"),
    ([0, 0, -9999, -12000, -13000, -14000], "check\n"),
], ids=["four falls", "three falls", "five falls", "from -9999"])
def test_resignation(folder, scores, last):
    saved_game_with_scores(folder, ["b1b2", "a8a7", "b2b1", "a7a8"] * 3 + ["c1c7"], scores)
    run = folder.run("load scores.dat", "go")
    assert run.said.endswith("side:  white\nmove d6d5\n" + last)


def test_the_401st_move(folder):
    run = folder.run("force", *SHUFFLE * (MAX_GAME_MOVES // 4), "b1c3", "e2e4", "go", "undo", "redo", "getmoves")
    moves = " ".join(SHUFFLE * (MAX_GAME_MOVES // 4))
    assert_says(run, f"the end\nmoves {moves} \n", unknown("b1c3", "e2e4"))


# --- strange input ----------------------------------------------------------------------------------------


def test_empty_lines(folder):
    assert_says(folder.run("", "   ", " ", "quit"))


def test_carriage_returns_belong_to_the_word(folder):
    run = folder.run(raw=b"force\r\nforce\ne2e4\r\nquit\r\ngetboard\nsetboard 4k3/8/8/8/8/8/8/4K3 w - -\r\nquit\n")
    assert_says(run, position(AFTER_E4_TEXT), unknown("force\r", "quit\r", "setboard"))


def test_tabs_belong_to_the_word(folder):
    assert_says(folder.run("\tgetboard", "get\tboard"), "", unknown("\tgetboard", "get\tboard"))


def test_a_line_ends_at_its_first_zero(folder):
    run = folder.run(raw=b"force\0xyz\ne2e4\n\0quit\ngetboard\0help\nqu\0it\n")
    assert_says(run, position(AFTER_E4_TEXT), unknown("qu"))


def test_bytes_beyond_ascii(folder):
    run = folder.run(raw=bytes(range(128, 256)) + b"\nquit\n")
    assert run.complaints.encode("latin-1") == b"# unknow: " + bytes(range(128, 256)) + b"\n"


def test_long_lines_are_read_in_pieces(folder):
    piece = "x" * 1023
    run = folder.run(piece + "getboard", piece + piece + "y", "z" * 1022)
    assert_says(run, position(START_TEXT), unknown(piece, piece, piece, "y", "z" * 1022))


def test_a_line_of_exactly_one_buffer(folder):
    """The newline alone is left over: an empty line."""
    assert_says(folder.run("x" * 1023, "style"), "# knowledge3 \n", unknown("x" * 1023))


def test_a_line_of_a_megabyte(folder):
    size = 1 << 20
    run = folder.run("x" * size, "getboard")
    assert run.said == position(START_TEXT)
    assert run.complaints == unknown(*["x" * 1023] * (size // 1023), "x" * (size % 1023))


def test_many_lines_without_a_pause(folder):
    run = folder.run(raw=b"\n" * 300_000 + b"force\n" * 20_000 + b"getboard\n")
    assert_says(run, position(START_TEXT))


def test_half_a_line_then_the_end(folder):
    assert_says(folder.run(raw=b"force\ne2e4\ngetboard"), position(AFTER_E4_TEXT))
    assert_says(folder.run(raw=b"force\ne2e"), "", unknown("e2e"))
    assert_says(folder.run(raw=b"quit"))


def test_input_that_ends_while_thinking(folder):
    run = folder.run("xboard", f"setboard {MATE_IN_ONE}", "go")
    assert run.said.endswith("move a1a8\nthe end\n")
    assert run.status == 0


def test_every_line_is_out_at_once(folder):
    """An answer is there before the next command is read."""
    with folder.start() as process:
        for line in GREETING.splitlines(keepends=True):
            assert process.stdout.readline().decode() == line
        for _ in range(3):
            process.stdin.write(b"style\n")
            process.stdin.flush()
            assert process.stdout.readline() == b"# knowledge3 \n"
        process.stdin.write(b"foo\n")
        process.stdin.flush()
        assert process.stderr.readline().decode() == BOOK_INSTEAD
        assert process.stderr.readline() == b"# unknow: foo\n"
        process.stdin.close()
    assert process.returncode == 0


def test_an_input_that_does_not_block_is_waited_for(folder):
    """Whoever shares a pipe or a terminal may have set that. Lines come in pieces."""
    read_end, write_end = os.pipe()
    os.set_blocking(read_end, False)
    with folder.started(stdin=read_end) as engine:
        os.close(read_end)
        for piece in (b"pro", b"tover 2\nst", b"yle\nprotover"):
            time.sleep(0.1)
            assert engine.poll() is None
            os.write(write_end, piece)
        os.close(write_end)
        out, err = engine.communicate(timeout=60)
    assert (out, err) == (b"feature done=1\n# knowledge3 \nfeature done=1\n", BOOK_INSTEAD.encode())
    assert engine.returncode == 0
