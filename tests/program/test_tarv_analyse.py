"""`tarv learn analyse` from outside: what it records, where it goes on, several processes, full disks."""

import fcntl
import subprocess
import time

import pytest
from conftest import engine_environment, no_file_beyond
from learn_records import FOUR, ITALIAN, parse
from positions import ILLEGAL, MATE_IN_ONE, NO_KINGS, START, START_TEXT, STALEMATE
from terminal import Terminal


def test_analyse_records_what_a_search_finds(says, learned, tmp_path):
    assert {record.text for record in learned} == {
        START_TEXT, "6k1/5ppp/8/8/8/8/8/R3K3 w Q", "r1bqk1nr/pppp1ppp/2n5/2b1p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w QKqk",
        "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w QKqk d6"}
    assert says("learn", "verify", "four.lrn") == "four.lrn: 4 records, 0 problems\n"
    found = says("search", text=f"{ITALIAN}\tknowledge3\t3\n").split("\t")[4]
    record = next(record for record in learned if record.text.startswith("r1bqk1nr"))
    assert found.endswith(f" score {record.score} depth {record.depth}")
    assert (record.kind, record.book, record.depth) == (0, 0, 3)


def test_a_position_has_the_identity_that_it_has_in_a_game(says, learning, tmp_path):
    """Also where en passant is possible: then the engine's own text names the square."""
    learning.run("force", "e2e4", "g8f6", "e4e5", "d7d5", "go", "quit")
    game = {(record.text, record.key_lo, record.key_hi) for record in parse(learning.file("tarvyle.lrn"))
            if record.depth > 0}
    (tmp_path / "one.epd").write_text("rnbqkb1r/ppp1pppp/5n2/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6\n")
    says("learn", "analyse", "one.epd", "--depth", 2)
    assert {(record.text, record.key_lo, record.key_hi) for record in parse(tmp_path / "one.lrn")} == game


def test_analyse_goes_on_where_it_stopped(says, tmp_path):
    (tmp_path / "four.epd").write_text("\n".join(FOUR[:2]) + "\n")
    assert says("learn", "analyse", "four.epd", "--depth", 3) == (
        "four.lrn: 2 positions: 2 searched, 0 known before, 0 without a move; 2 records\n")
    (tmp_path / "four.epd").write_text("# all\n\n" + "\n".join(FOUR) + "\n" + START)
    assert says("learn", "analyse", "four.epd", "--depth", 3) == (
        "four.lrn: 5 positions: 2 searched, 3 known before, 0 without a move; 4 records\n")
    before = (tmp_path / "four.lrn").read_bytes()
    assert " 0 searched, 5 known " in says("learn", "analyse", "four.epd", "--seconds", 60)
    assert (tmp_path / "four.lrn").read_bytes() == before


def test_deeper_results_take_the_place_of_others(says, tmp_path):
    (tmp_path / "two.epd").write_text(f"{ITALIAN}\n{MATE_IN_ONE}\n")
    says("learn", "analyse", "two.epd", "--depth", 3)
    assert " 1 searched, 1 known " in says("learn", "analyse", "two.epd", "--depth", 4), "a mate is a mate"
    records = parse(tmp_path / "two.lrn")
    assert len(records) == 2 and max(record.depth for record in records) == 4


def test_analyse_keeps_the_book_flag(says, learned, write, tmp_path):
    write("four.lrn", *(record.but(book=1, kind=16, depth=0, score=0) for record in learned))
    assert " 4 searched, 0 known " in says("learn", "analyse", "four.epd", "--depth", 3)
    found = {record.text: record for record in parse(tmp_path / "four.lrn")}
    assert found == {record.text: record.but(book=1, kind=16) for record in learned}


def test_analyse_with_a_clock(says, tmp_path):
    begin = time.monotonic()
    assert " 1 searched," in says("learn", "analyse", "-", "--seconds", 0.2, "--output", "a.lrn", text=ITALIAN)
    assert time.monotonic() - begin < 10
    assert parse(tmp_path / "a.lrn")[0].depth >= 2


def test_positions_without_a_move(says):
    assert " 0 searched, 0 known before, 1 without a move; 0 records" in says(
        "learn", "analyse", "-", "--depth", 4, "-o", "a.lrn", text=f"{STALEMATE}\n")


@pytest.mark.parametrize("line, words", [
    ("nonsense", "no side to move"),
    (NO_KINGS, "no chess position"),
    ("rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", "no chess position"),
    ("rnbqkbnr/ppppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", "no chess position"),
    (ILLEGAL, "the side not to move is in check"),
    ("4k3/3p4/8/3pP3/8/8/8/4K3 w - d6", "no pawn can have passed over d6"),
])
def test_a_refused_position_stops_before_any_search(complains, tmp_path, line, words):
    (tmp_path / "bad.epd").write_text(f"{START}\n{line}\n")
    complaint = complains("learn", "analyse", "bad.epd", "--depth", 2)
    assert complaint.startswith("tarv: bad.epd: line 2: ") and words in complaint
    assert not (tmp_path / "bad.lrn").exists()


@pytest.mark.parametrize("arguments, words", [
    ([], "subcommand"),
    (["stats"], "FILE"),
    (["merge", "a.lrn"], "--output"),
    (["analyse", "a.epd"], "--seconds or --depth"),
    (["analyse", "a.epd", "--seconds", "0"], "--seconds"),
    (["analyse", "-", "--depth", "2"], "--output"),
    (["analyse", "none.epd", "--depth", "2"], "none.epd"),
    (["export", "--format", "xml", "a.lrn"], "--format"),
    (["list", "--min-depth", "91", "a.lrn"], "--min-depth"),
])
def test_bad_arguments(complains, arguments, words):
    assert words in complains("learn", *arguments)


def test_one_process_holds_an_output(complains, learned, tmp_path):
    with (tmp_path / "four.lrn").open("ab") as file:
        fcntl.flock(file, fcntl.LOCK_EX)
        assert "another process writes four.lrn" in complains("learn", "analyse", "four.epd", "--depth", 4)


def test_a_held_file_is_neither_merged_nor_given_a_book(complains, learned, tmp_path):
    before = (tmp_path / "four.lrn").read_bytes()
    (tmp_path / "one.bk").write_text("e2e4\n")
    (tmp_path / "link.lrn").symlink_to("four.lrn")
    with (tmp_path / "four.lrn").open("rb") as file:
        fcntl.flock(file, fcntl.LOCK_EX)
        for name in ("four.lrn", "link.lrn"):
            words = f"another process writes {name}"
            assert words in complains("learn", "merge", "four.lrn", "-o", name)
            assert words in complains("learn", "merge", "--force", "four.lrn", "-o", name)
            assert words in complains("learn", "add-book", "one.bk", name)
            assert words in complains("learn", "export", "four.lrn", "-o", name)
    assert (tmp_path / "four.lrn").read_bytes() == before


@pytest.mark.parametrize("other", ["another file", "nothing"])
def test_a_file_that_was_replaced_meanwhile_is_not_written_on(workbench, tmp_path, other):
    """What would be added to the old one would be lost."""
    (tmp_path / "p.epd").write_text("\n".join([*FOUR[2:], START]) + "\n")
    command = [workbench, "learn", "analyse", "p.epd", "--seconds", "0.3"]
    with subprocess.Popen(command, cwd=tmp_path, env=engine_environment(), stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, text=True) as process:
        # A file that is replaced before it is held is opened again, and nothing is lost.
        while not (tmp_path / "p.lrn").exists() or (tmp_path / "p.lrn").stat().st_size == 0:
            time.sleep(0.01)
        if other == "nothing":
            (tmp_path / "p.lrn").unlink()
        else:
            (tmp_path / "other").write_bytes(b"")
            (tmp_path / "other").rename(tmp_path / "p.lrn")
        said, complaint = process.communicate()
    assert (said, complaint, process.returncode) == (
        "", "tarv: cannot write p.lrn: it has been removed, or another file put in its place\n", 2)


@pytest.mark.parametrize("room, reason", [(0, "File too large"), (1, "No space left on device"),
                                          (40, "No space left on device")])
@pytest.mark.parametrize("records", [0, 2])
def test_a_record_that_does_not_fit_is_taken_away_again(complains, learned, write, tmp_path, records, room, reason):
    """The system gives a reason only where not even a part was written; no earlier error may be told in its place."""
    before = b"".join(record.bytes() for record in learned[:records])
    write("a.lrn", *learned[:records])
    complaint = complains("learn", "analyse", "four.epd", "--depth", 3, "-o", "a.lrn",
                          preexec_fn=no_file_beyond(len(before) + room))
    assert complaint == f"tarv: cannot write a.lrn: {reason}\n"
    assert (tmp_path / "a.lrn").read_bytes() == before


def test_an_output_that_cannot_be_opened(complains, learned):
    assert complains("learn", "analyse", "four.epd", "--depth", 3, "-o", "none/a.lrn") == (
        "tarv: cannot write none/a.lrn: No such file or directory\n")
    assert complains("learn", "analyse", "four.epd", "--depth", 3, "-o", "/dev/full") == (
        "tarv: cannot read /dev/full: no plain file\n")


def test_a_killed_run_leaves_a_whole_file(says, workbench, tmp_path):
    (tmp_path / "p.epd").write_text("\n".join(FOUR[2:] + [START]) + "\n")
    command = [workbench, "learn", "analyse", "p.epd", "--depth", "30"]
    with subprocess.Popen(command, cwd=tmp_path, env=engine_environment(), stdout=subprocess.PIPE) as process:
        time.sleep(0.4)
        process.kill()
    assert says("learn", "verify", "p.lrn").endswith(", 0 problems\n")


def test_two_processes_and_a_merge_equal_one(says, workbench, tmp_path):
    lines = [f"{position}\n" for position in FOUR]
    (tmp_path / "all.epd").write_text("".join(lines))
    (tmp_path / "a.epd").write_text("".join(lines[:2]))
    (tmp_path / "b.epd").write_text("".join(lines[2:]))
    runs = [subprocess.Popen([workbench, "learn", "analyse", name, "--depth", "5"], cwd=tmp_path,
                             env=engine_environment(), stdout=subprocess.PIPE) for name in ("a.epd", "b.epd")]
    for run in runs:
        run.communicate()
        assert run.returncode == 0
    says("learn", "merge", "a.lrn", "b.lrn", "-o", "both.lrn")
    says("learn", "analyse", "all.epd", "--depth", 5)
    says("learn", "merge", "all.lrn", "-o", "all.lrn")
    assert (tmp_path / "both.lrn").read_bytes() == (tmp_path / "all.lrn").read_bytes()


def test_progress_is_shown_on_a_terminal_only(workbench, tmp_path):
    with Terminal() as terminal:
        subprocess.run([workbench, "learn", "analyse", "-", "--depth", "2", "-o", "a.lrn"], text=True,
                       input=f"{START}\n{ITALIAN}\n", cwd=tmp_path, stdout=subprocess.PIPE, stderr=terminal.inside,
                       env=engine_environment(), check=True)
        shown = terminal.shown()
    assert "0/2" in shown and "1/2" in shown and shown.endswith("\r\x1b[K")
