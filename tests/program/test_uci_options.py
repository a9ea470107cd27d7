"""Options of `tarv uci`, the book, and what it learns."""

import pathlib
import re
import struct
import time

import learn_records
import pytest
from positions import CLOSED_GAME, START_TEXT
from uci_engine import SLOW, centipawns

# --- options ----------------------------------------------------------------------------------------------


def test_hash_sizes(uci):
    answers = {size: uci.ask(f"setoption name Hash value {size}")[0] for size in (1, 7, 16, 100, 52)}
    taken = {size: int(re.fullmatch(r"info string the tables take (\d+) MB", answer)[1])
             for size, answer in answers.items()}
    assert all(taken[size] <= size < 4 * taken[size] for size in (16, 52, 100))
    assert taken[1] == taken[7] <= 7
    for size in (1, 100, 16):
        uci.ask(f"setoption name Hash value {size}", "ucinewgame")
        assert uci.go("depth 5", "startpos").lines[-1].depth == 5


def resident_megabytes(uci) -> float:
    """How much memory the process has at hand."""
    status = pathlib.Path(f"/proc/{uci.process.pid}/status").read_text()
    return int(re.search(r"VmRSS:\s+(\d+) kB", status)[1]) / 1024


def test_the_memory_is_there_before_readyok(uci):
    """No search has to wait for it: neither the first one, nor that after a game, nor the one at which the numbers of
    the searches are used up."""
    uci.send("setoption name Hash value 128")
    assert uci.ask() == ["info string the tables take 128 MB"]
    assert resident_megabytes(uci) > 128
    uci.send("setoption name Hash value 256", "ucinewgame", "d")
    uci.until("text:")
    assert resident_megabytes(uci) > 256
    for _ in range(300):
        uci.go("nodes 10", "startpos")
        assert resident_megabytes(uci) > 256


def test_a_refused_hash_size_changes_nothing(uci):
    before = uci.ask("setoption name Hash value 16")[0]
    most = max(re.search(r"name Hash .* max (\d+)", line)[1] for line in uci.ask("uci") if "name Hash" in line)
    answer = uci.ask(f"setoption name Hash value {most}")[0]
    assert answer == before.replace("the tables take", "not enough memory: the tables stay at")
    assert uci.go("depth 5", "startpos").lines[-1].depth == 5


@pytest.mark.parametrize("words, complaint", [
    ("", "setoption : name was expected"),
    ("name", "setoption : name was expected"),
    ("name Nonsense value 3", "setoption Nonsense: there is no such option"),
    ("name Hash", "setoption Hash: a number from 1 to "),
    ("name Hash value", "setoption Hash: a number from 1 to "),
    ("name Hash value x", "setoption Hash: a number from 1 to "),
    ("name Hash value 0", "setoption Hash: a number from 1 to "),
    ("name Threads value 2", "setoption Threads: a number from 1 to 1 was expected"),
    ("name Style value knowledge4", "setoption Style: knowledge1, knowledge2 or knowledge3 was expected"),
    ("name Random Search value maybe", "setoption Random Search: true or false was expected"),
    ("name OwnBook value", "setoption OwnBook: true or false was expected"),
    ("name Move Overhead value -1", "setoption Move Overhead: a number from 0 to 5000 was expected"),
    ("name Seed value 99999999999999999999", "setoption Seed: a number from 0 to 2147483647 was expected"),
])
def test_bad_options_are_reported(uci, words, complaint):
    answer = uci.ask(f"setoption {words}".strip())
    assert len(answer) == 1 and answer[0].startswith(f"info string {complaint}")


def test_option_names_know_no_case(uci):
    assert uci.ask("setoption name move overhead value 10", "setoption name STYLE value Knowledge1") == []


def test_styles_differ(uci):
    found = set()
    for style in ("knowledge1", "knowledge2", "knowledge3"):
        uci.ask("ucinewgame", f"setoption name Style value {style}")
        found.add(uci.go("depth 5", "startpos").nodes)
    assert len(found) == 3


def test_clear_hash_forgets_the_line_of_the_last_search(uci):
    first = uci.go("depth 5", f"fen {CLOSED_GAME}").signature()
    assert uci.go("depth 5").signature() != first, "it begins with the line it knows"
    uci.ask("setoption name Clear Hash", "ucinewgame")
    assert uci.go("depth 5", f"fen {CLOSED_GAME}").signature() == first


def test_the_random_search_reports_in_info_strings(start):
    uci = start("Random Search=true", "Seed=1")
    thought = uci.go("movetime 400", "startpos")
    assert any("stage1" in text for text in thought.strings)
    assert thought.lines[-1].pv == thought.move
    assert thought.seconds < 0.5 + SLOW
    assert uci.go("depth 3").lines[-1].depth >= 2
    assert uci.go("nodes 5000").move != "0000"
    uci.send("go infinite")
    time.sleep(0.1)
    assert uci.thought(uci.send("stop")).seconds < 0.2 * SLOW
    assert uci.go("depth 3", "fen 7k/8/8/8/8/8/8/K6r w - - 0 1").move in ("a1a2", "a1b2")


# --- book and learning ------------------------------------------------------------------------------------


def test_the_own_book_answers(start, tmp_path):
    (tmp_path / "my book.bk").write_text("h2h4 h7h5\n")
    uci = start(f"Book File={tmp_path / 'my book.bk'}", "OwnBook=true")
    for seed in range(1, 12):
        uci.ask(f"setoption name Seed value {seed}")
        thought = uci.go("wtime 60000 btime 60000", "startpos")
        assert (thought.lines, thought.strings, thought.move) == ([], ["the book's move"], "h2h4")
    for limits in ("mate 1 depth 2", "depth 2 searchmoves h2h4"):
        assert uci.go(limits, "startpos").lines, "an analysis"
    uci.send("go infinite")
    time.sleep(0.1)
    assert uci.thought(uci.send("stop")).lines, "an analysis"
    uci.ask("setoption name OwnBook value false")
    for seed in range(1, 12):
        uci.ask(f"setoption name Seed value {seed}")
        assert uci.go("depth 2").lines


def polyglot_book(*rows: tuple[int, int]) -> bytes:
    """Moves and weights for the start position."""
    return b"".join(struct.pack(">QHHI", 0x463B96181691FC9C, *row, 0) for row in rows)


H2H4, A2A3, E2E5 = 0o1737, 0o1020, 0o1444


def test_a_polyglot_book_answers_by_weight(start, tmp_path):
    (tmp_path / "my book").write_bytes(polyglot_book((E2E5, 90), (H2H4, 30), (A2A3, 10)))
    uci = start(f"Book File={tmp_path / 'my book'}", "OwnBook=true")
    counts = {"h2h4": 0, "a2a3": 0}
    for seed in range(1, 201):
        uci.send(f"setoption name Seed value {seed}")
        thought = uci.go("depth 9", "startpos")
        assert thought.strings == ["the book's move"] and thought.lines == []
        counts[thought.move] += 1
    assert 120 < counts["h2h4"] < 180  # 150 are expected, give or take 6
    assert uci.go("depth 3 searchmoves e2e4 d2d4", "startpos").lines[-1].depth == 3
    assert uci.go("depth 3", "startpos moves h2h4").lines[-1].depth == 3
    uci.ask("setoption name OwnBook value false", "ucinewgame")
    assert uci.go("depth 3", "startpos").lines[-1].depth == 3


def test_a_polyglot_book_leaves_analysis_alone(start, tmp_path):
    (tmp_path / "a.bin").write_bytes(polyglot_book((H2H4, 1)))
    uci = start(f"Book File={tmp_path / 'a.bin'}", "OwnBook=true")
    assert uci.go("depth 3", "startpos").lines == []
    began = uci.send("go infinite")
    time.sleep(0.2)
    uci.send("stop")
    assert uci.thought(began).lines[-1].depth > 3


@pytest.mark.parametrize("content, complaint", [
    (b"", "cannot read the book file {}: it is empty"),
    (b"\0" * 15, "cannot read the book file {}: it is shorter than an entry of a Polyglot book"),
    (polyglot_book((H2H4, 1)) + b"123", "the book file {} is damaged: what can be used of it is"),
    (b"\xff" * 10 + b"\0" * 6 + polyglot_book((H2H4, 1)), "the book file {} is damaged: what can be used of it is"),
])
def test_damaged_polyglot_books_are_reported(start, tmp_path, content, complaint):
    book = tmp_path / "a.bin"
    book.write_bytes(content)
    uci = start()
    uci.send(f"setoption name Book File value {book}", "setoption name OwnBook value true")
    assert uci.ask() == ["info string " + complaint.format(book)]
    assert uci.go("depth 3", "startpos").move == "h2h4" or len(content) < 16


def test_a_learned_book_does_not_keep_a_polyglot_one_out(start, says, tmp_path):
    (tmp_path / "a.bin").write_bytes(polyglot_book((H2H4, 1)))
    (tmp_path / "b.bk").write_text("a2a3\n")
    (tmp_path / "b.lrn").touch()
    says("learn", "add-book", "b.bk", "b.lrn")
    uci = start(f"Learn File={tmp_path / 'b.lrn'}", f"Book File={tmp_path / 'a.bin'}", "OwnBook=true")
    assert {uci.go("depth 2", "startpos").move for _ in range(10)} == {"h2h4"}


def test_another_book_takes_the_place_of_a_polyglot_one(start, tmp_path):
    (tmp_path / "a.bin").write_bytes(polyglot_book((H2H4, 1)))
    (tmp_path / "b.bk").write_text("a2a3\n")
    uci = start(f"Book File={tmp_path / 'a.bin'}", "OwnBook=true")
    assert uci.go("depth 3", "startpos").move == "h2h4"
    uci.ask(f"setoption name Book File value {tmp_path / 'b.bk'}", "ucinewgame")
    assert "h2h4" not in {uci.go("depth 2", "startpos").move for _ in range(5)}


def test_wrong_moves_in_a_book_are_reported(start, tmp_path):
    (tmp_path / "bad.bk").write_text("e2e4 e2e4\n")
    uci = start()
    uci.send(f"setoption name Book File value {tmp_path / 'bad.bk'}", "setoption name OwnBook value true")
    assert uci.ask() == ["info string #error: line 1, lexem e2e4"]


@pytest.mark.parametrize("option, complaint", [
    ("Learn File", "cannot read the learn file"),
    ("Book File", "cannot read the book file"),
])
def test_files_that_cannot_be_read_are_reported(start, tmp_path, option, complaint):
    uci = start()
    uci.send("setoption name OwnBook value true", f"setoption name {option} value {tmp_path}")
    assert f"info string {complaint} {tmp_path}" in uci.ask()
    assert uci.ask() == [], "once"


@pytest.mark.parametrize("place", ["program", "data", "home"])
def test_default_files_are_found(start, tmp_path, home, place):
    folders = {"program": tmp_path / "program", "data": tmp_path / "data" / "tarvyle",
               "home": home / ".local" / "share" / "tarvyle"}
    folders[place].mkdir(parents=True, exist_ok=True)
    (folders[place] / "tarvyle.bk").write_text("h2h4\n")
    (folders[place] / "tarvyle.lrn").write_bytes(b"")
    uci = start(**({"XDG_DATA_HOME": str(tmp_path / "data")} if place == "data" else {}))
    lines = uci.ask("uci")
    assert f"option name Book File type string default {folders[place] / 'tarvyle.bk'}" in lines
    assert f"option name Learn File type string default {folders[place] / 'tarvyle.lrn'}" in lines


def records_of(path: pathlib.Path) -> list[tuple]:
    """Score, depth, side, book flag and text of each record of a learn file."""
    found = learn_records.parse(path)
    assert all(record.kind == 0 for record in found)
    return [(record.score, record.depth, record.side, record.book, record.text) for record in found]


def test_results_are_put_down_where_the_user_says(start, tmp_path):
    output = tmp_path / "results.lrn"
    before = {path for path in tmp_path.rglob("*")}
    uci = start("Seed=1")
    uci.go("depth 4", "startpos")
    assert {path for path in tmp_path.rglob("*")} == before, "nothing is written unasked"
    uci.ask(f"setoption name Learn Output value {output}")
    first = uci.go("depth 4")
    second = uci.go("depth 3", "startpos moves e2e4")
    assert uci.quit() == (0, "")
    (score1, *one), (score2, *two) = records_of(output)
    assert one == [4, 0, 0, START_TEXT]
    assert two == [3, 1, 0, "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk"]
    assert (first.lines[-1].score, second.lines[-1].score) == (centipawns(score1), centipawns(score2))
    assert {path for path in tmp_path.rglob("*")} == before | {output}
    again = start("Seed=1", f"Learn Output={output}")
    again.go("depth 2", "startpos")
    assert len(records_of(output)) == 3, "the file grows"


def test_learned_results_are_used(start, tmp_path):
    """What one process put down is a learn file that another one reads: its searches differ then."""
    output = tmp_path / "results.lrn"
    writer = start("Seed=1", f"Learn Output={output}")
    alone = writer.go("depth 6", "startpos").signature()
    expected = alone[-1][3].split()
    writer.go("depth 6", f"startpos moves {' '.join(expected[:5])}")
    size = output.stat().st_size
    reader = start("Seed=1", f"Learn File={output}")
    assert reader.go("depth 6", "startpos").signature() != alone
    assert reader.quit() == (0, "") and output.stat().st_size == size, "reading does not write"


@pytest.mark.parametrize("path", ["/dev/null", "missing/folder/file", "."])
def test_an_output_that_cannot_be_written_is_reported(start, path):
    uci = start("Seed=1", f"Learn Output={path}")
    assert uci.go("depth 2", "startpos").strings == [f"cannot write to the learn output {path}"]
