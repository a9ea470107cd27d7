"""`tarv uci` through pipes: every command, every option, the limits, and searches that equal those of `tarv search`."""

import os
import pathlib
import re
import statistics
import struct
import subprocess
import time

import pytest
from conftest import DATA, engine_environment, sanitized
from uci_engine import Thought, UciEngine

MATE_IN_ONE = "fen 6k1/5ppp/8/8/8/8/8/R3K3 w Q - 0 1"
MATED_IN_ONE = "fen 4k3/R7/8/8/8/8/1R6/4K3 b - - 0 1"
MATE_IN_TWO = "fen 8/8/8/8/8/2k5/1q6/K7 w - - 0 1"
STALEMATE = "fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"
CHECKMATE = "fen R5k1/5ppp/8/8/8/8/8/4K3 b - - 0 1"
MIDDLE_GAME = "fen r2q1rk1/1ppnbppp/p2p1nb1/3Pp3/2P1P1P1/2N2N1P/PPB1QP2/R1B2RK1 b - - 0 1"
START_TEXT = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk"


@pytest.fixture
def home(tmp_path):
    """A folder for the user's own files."""
    folder = tmp_path / "home"
    folder.mkdir()
    return folder


@pytest.fixture
def start(workbench, tmp_path, home):
    """Starts engines that know neither book nor learn file unless a test puts some there."""
    engines = []
    # Away from the files that the build puts beside the program.
    program = tmp_path / "program" / "tarv"
    program.parent.mkdir()
    os.link(workbench, program) if same_device(workbench, tmp_path) else copy(workbench, program)

    def run(*options: str, **variables: str) -> UciEngine:
        environment = {k: v for k, v in engine_environment().items() if k != "XDG_DATA_HOME"}
        uci = UciEngine([program, "uci"], env=environment | {"HOME": str(home)} | variables, cwd=tmp_path)
        engines.append(uci)
        for option in options:
            name, value = option.split("=", 1)
            uci.send(f"setoption name {name} value {value}")
        assert [line for line in uci.ask() if not line.startswith("info string the tables take")] == []
        return uci

    yield run
    for uci in engines:
        uci.__exit__()


def same_device(one: pathlib.Path, other: pathlib.Path) -> bool:
    return one.stat().st_dev == other.stat().st_dev


def copy(source: pathlib.Path, target: pathlib.Path) -> None:
    target.write_bytes(source.read_bytes())
    target.chmod(0o755)


@pytest.fixture
def uci(start):
    return start("Seed=1")


# --- the protocol -----------------------------------------------------------------------------------------


def test_uci_declares_itself_and_its_options(uci):
    lines = uci.ask("uci")
    assert lines[:2] == ["id name Tarvyle", "id author Tarvyle developers"]
    assert lines[-1] == "uciok"
    types = r"check default (?:true|false)|spin default \d+ min \d+ max \d+|combo default \S+(?: var \S+)+|button" \
            r"|string default .+"
    options = [re.fullmatch(rf"option name (.+) type (?:{types})", line) for line in lines[2:-1]]
    assert all(options), lines
    assert [option[1] for option in options] == [
        "Hash", "Clear Hash", "Threads", "Style", "Random Search", "OwnBook", "Book File", "Learn File",
        "Learn Output", "Move Overhead", "Seed"]


def test_every_default_can_be_set(uci):
    """A GUI may send back what it was told."""
    for line in uci.ask("uci"):
        option = re.fullmatch(r"option name (.+) type (check|spin|combo|string) default (\S+).*", line)
        if option:
            answer = uci.ask(f"setoption name {option[1]} value {option[3]}")
            assert option[1] == "Hash" or answer == [], answer


def test_unknown_words_are_reported_and_ignored(uci):
    assert uci.ask("hello", "", "   ", "xyz go depth 3") == ["info string unknown command: hello",
                                                               "info string unknown command: xyz"]
    assert uci.ask("\x01\xe4\t\x7f") [0].startswith("info string unknown command: ")
    assert uci.go("depth 2 nonsense 7").strings == ["unknown in go: nonsense", "unknown in go: 7"]
    assert uci.go("depth x depth 3").strings == ["a number was expected after depth", "unknown in go: x"]
    assert uci.ask("stop", "ponderhit") == []


def test_blanks_and_carriage_returns_do_not_matter(uci):
    assert uci.ask("  position \t startpos   moves  e2e4 \r", "d\r")[-1].startswith("text:  rnbqkbnr/pppppppp/8/8/4P3")
    assert uci.go(" depth  3 \r").lines[-1].depth == 3


def test_a_line_without_end_is_given_up(uci):
    assert uci.ask("x" * 3_000_000) == ["info string a line of more than a million characters was ignored"]


def test_quit_and_the_end_of_input(start):
    assert start().quit() == (0, "")
    assert start().end() == (0, "")
    uci = start()
    uci.send("go infinite")
    time.sleep(0.05)
    assert uci.quit() == (0, ""), "while it thinks"
    uci = start()
    uci.send("position startpos", "go infinite")
    time.sleep(0.05)
    assert uci.end() == (0, ""), "while it thinks"
    uci = start()
    uci.send(f"position {MATE_IN_ONE}", "go infinite")
    uci.until("info")
    assert uci.end() == (0, ""), "while it waits for stop"


def test_a_reader_that_has_gone_is_no_error(workbench):
    process = subprocess.Popen([workbench, "uci"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               env=engine_environment())
    process.stdout.close()
    _, complaints = process.communicate(b"uci\nisready\ngo depth 4\nisready\n")
    assert (process.returncode, complaints) == (0, b"")


# --- positions --------------------------------------------------------------------------------------------


def text_of(uci) -> str:
    return uci.ask("d")[-1].removeprefix("text:  ")


def test_positions(uci):
    assert text_of(uci) == START_TEXT
    assert uci.ask("position startpos moves e2e4 e7e5 g1f3") == []
    assert text_of(uci) == "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b QKqk"
    assert uci.ask("position fen 8/P7/8/8/8/8/k7/2K5 w - - 0 1 moves a7a8n") == []
    assert text_of(uci) == "N7/8/8/8/8/8/k7/2K5 b"
    assert uci.ask("position fen 8/P7/8/8/8/8/k7/2K5 w moves a7a8") == [], "without a letter it is a queen"
    assert text_of(uci) == "Q7/8/8/8/8/8/k7/2K5 b"
    assert uci.ask("ucinewgame") == [] and text_of(uci) == START_TEXT


@pytest.mark.parametrize("words, complaint", [
    ("", "startpos or fen expected"),
    ("nonsense", "startpos or fen expected"),
    ("startpos e2e4", "moves expected, not e2e4"),
    ("fen", "a FEN was expected"),
    ("fen moves e2e4", "a FEN was expected"),
    ("fen 8/8/8/8/8/8/8/8 w - -", "illegal position: 8/8/8/8/8/8/8/8 w - - "),
    ("fen 4k3/4R3/8/8/8/8/8/4K3 w - - 0 1", "illegal position: 4k3/4R3/8/8/8/8/8/4K3 w - - 0 1 "),
    ("fen P3k3/8/8/8/8/8/8/4K3 w - - 0 1", "illegal position: P3k3/8/8/8/8/8/8/4K3 w - - 0 1 "),
    ("fen 4k3/8/8/8/8/8/8/4K2p w - - 0 1", "illegal position: 4k3/8/8/8/8/8/8/4K2p w - - 0 1 "),
    ("startpos moves e2e5", "illegal move: e2e5"),
    ("startpos moves e2e4 e7e5 e1e3 d7d5", "illegal move: e1e3"),
    ("startpos moves e2e4q", "illegal move: e2e4q"),
    ("startpos moves E2E4", "illegal move: E2E4"),
    ("startpos moves e2e4 0000", "illegal move: 0000"),
    ("fen 8/P7/8/8/8/8/k7/2K5 w - - 0 1 moves a7a8k", "illegal move: a7a8k"),
])
def test_a_bad_position_leaves_the_last_good_one(uci, words, complaint):
    before = "position startpos moves d2d4 g8f6"
    good = uci.ask(before, "d")
    assert uci.ask(f"position {words}".strip()) == [f"info string {complaint} (the position before stays)"]
    assert uci.ask("d") == good
    first = signature(uci.go("depth 4"))
    assert uci.ask("ucinewgame", before) == []
    assert signature(uci.go("depth 4")) == first


def shuffles(count: int) -> str:
    """So many half-moves that lead nowhere."""
    return " ".join(["g1f3", "g8f6", "f3g1", "f6g8"][i % 4] for i in range(count))


@pytest.mark.parametrize("count", [399, 400, 401, 403, 1000])
def test_games_longer_than_the_record(uci, count):
    assert uci.ask(f"position startpos moves e2e4 e7e5 {shuffles(count)}") == []
    board = "rnbqkb1r/pppp1ppp/5n2/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w QKqk"
    quiet = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w QKqk"
    after = {0: quiet, 1: quiet.replace("NR w", "1R b").replace("4P3/8", "4P3/5N2"), 2: board,
             3: board.replace("5N2", "8").replace("KB1R w", "KBNR b")}
    assert text_of(uci) == after[count % 4]
    assert uci.go("depth 3").move != "0000"


def test_a_long_game_keeps_what_a_repetition_needs(uci):
    """White, a queen down, repeats: the search sees it in the long game as in the same one without its beginning."""
    ending = "fen 6k1/5ppp/8/8/8/q7/5PPP/3Q2K1 w - - 0 1"
    checks = "d1d8 a3f8 d8d1 f8a3 " * 2
    idle = " ".join(["h2h3", "h7h6"] + ["g1h2", "g8h7", "h2g1", "h7g8"] * 100 + ["g2g3", "g7g6"])
    short = "fen 6k1/5p2/6pp/8/8/q5PP/5P2/3Q2K1 w - - 0 1"
    uci.ask(f"position {ending} moves {idle} {checks}")
    long_lines = uci.go("depth 4").lines
    uci.ask("ucinewgame", f"position {short} moves {checks}")
    assert text_of(uci).split()[0] == short.split()[1]
    assert [(i.score, i.pv) for i in uci.go("depth 4").lines][-1] == (long_lines[-1].score, long_lines[-1].pv)


# --- searches ---------------------------------------------------------------------------------------------


def expected_lines(row: str) -> list[tuple]:
    """What "go depth" says to a row of the data files: each iteration's lines, then its result."""
    iterations = [tuple(map(int, part.split(":"))) for part in row.split("\t")[3].split()]
    lines = [line.split(" ", 3) for line in row.split("\t")[5].split(" | ")]
    expected = []
    for depth, score, nodes in iterations:
        best = [(depth, int(line[2]), line[3]) for line in lines if int(line[0]) == depth]
        expected += best + [(depth, nodes, best[-1][2])] if best else [(depth, nodes, None)]
    return expected


def cheap_rows(name: str, count: int, nodes: int = 200_000) -> list[str]:
    rows = [row for row in (DATA / name).read_text().splitlines() if row[0] != "#"]
    return [row for row in rows if int(row.split("\t")[3].split(":")[-1]) <= nodes][:count]


def position_of(root: str) -> str:
    return f"fen {root}"


def centipawns(score: int) -> str:
    return f"cp {abs(score) // 10 * (1 if score > 0 else -1)}"


def shown(line: str) -> str:
    """At most fourteen moves, as the data have them."""
    return " ".join(line.split()[:14])


@pytest.mark.parametrize("name", ["searches.tsv", "histories.tsv"])
def test_searches_equal_those_of_the_workbench(uci, name):
    rows = cheap_rows(name, 9)
    assert len(rows) == 9
    for row in rows:
        root, style, depth, _, best, _ = row.split("\t")
        uci.ask("ucinewgame", f"setoption name Style value {style}")
        thought = uci.go(f"depth {depth}", position_of(root))
        assert thought.move == best.split()[0]
        *lines, last = thought.lines
        assert [(i.depth, i.nodes, shown(i.pv)) for i in lines] == expected_lines(row)
        assert (last.score, last.pv, last.nodes) == (lines[-1].score, lines[-1].pv, lines[-1].nodes)
        score = int(best.split()[2])
        if abs(score) < 999900:
            assert last.score == centipawns(score)


def test_searches_with_a_book_equal_those_of_the_workbench(start, workbench):
    """With a seed for which the book does not answer."""
    book = DATA / "book.bk"
    uci = start(f"Book File={book}", "OwnBook=true")
    for row in cheap_rows("booksearches.tsv", 2):
        root, style, depth, *_ = row.split("\t")
        for seed in range(1, 20):
            uci.ask("ucinewgame", f"setoption name Style value {style}", f"setoption name Seed value {seed}")
            thought = uci.go(f"depth {depth}", f"fen {root}")
            if thought.lines:
                break
        with_book, without = (subprocess.run([workbench, "search", "--seed", str(seed), *option], text=True,
                                             input=f"{root}\t{style}\t{depth}\n", env=engine_environment(),
                                             capture_output=True, check=True).stdout.rstrip("\n")
                              for option in (["--book", book], []))
        found = [(line.depth, line.nodes, shown(line.pv)) for line in thought.lines[:-1]]
        assert found == expected_lines(with_book) != expected_lines(without)


def test_the_seed_makes_searches_repeatable(start):
    uci = start("Seed=3")
    first, second = (fresh_signature(uci) for _ in range(2))
    assert first == second
    uci.ask("setoption name Seed value 4")
    assert fresh_signature(uci) != first


def signature(thought: Thought) -> list[tuple]:
    return [(line.depth, line.score, line.nodes, line.pv) for line in thought.lines]


def fresh_signature(uci: UciEngine) -> list[tuple]:
    uci.ask("ucinewgame")
    return signature(uci.go("depth 5", "startpos"))


def test_depths_below_the_first_iteration_are_the_first(uci):
    assert {i.depth for i in uci.go("depth 1").lines} == {2}
    assert uci.go("depth 1000", MATE_IN_ONE).move == "a1a8"


@pytest.mark.parametrize("nodes", [1, 7, 100, 4095, 4096, 4097, 10_000, 50_000])
def test_node_limits_are_exact(uci, nodes):
    """The search is the same as far as it goes, and ends when exactly so many nodes have been visited."""
    whole = uci.go("depth 6", MIDDLE_GAME).lines
    assert whole[-1].nodes > 50_000
    uci.ask("ucinewgame")
    thought = uci.go(f"nodes {nodes}", MIDDLE_GAME)
    expected = [(i.depth, i.nodes, i.pv) for i in whole if i.nodes <= nodes]
    assert [(i.depth, i.nodes, i.pv) for i in thought.lines[:len(expected)]] == expected
    if thought.lines:
        assert thought.lines[-1].nodes == nodes
        assert len(thought.lines) == len(expected) + 1
        assert thought.move == thought.lines[-1].pv.split()[0]
    else:
        assert thought.strings == ["no move was searched in time: the first legal one"]


def test_mates_are_counted_in_moves(uci):
    assert uci.go("depth 6", MATE_IN_ONE).lines[-1].score == "mate 1"
    assert uci.go("depth 7", MATED_IN_ONE).lines[-1].score == "mate -1"
    longer = uci.go("depth 9", "fen 8/8/8/8/8/5k2/R7/1R4K1 w - - 0 1").lines[-1]
    moves = int(longer.score.removeprefix("mate "))
    assert len(longer.pv.split()) == 2 * moves - 1


def test_go_mate_ends_with_a_short_enough_mate(uci):
    thought = uci.go("mate 6", "fen 8/8/8/8/8/5k2/R7/1R4K1 w - - 0 1")
    assert re.fullmatch("mate [1-6]", thought.lines[-1].score)


def test_over_is_over(uci):
    assert uci.go("depth 5", STALEMATE).move == "0000"
    assert uci.go("movetime 1000", CHECKMATE).move == "0000"
    assert "info depth 0 score mate 0" in uci.said and "info depth 0 score cp 0" in uci.said
    uci.send(f"position {CHECKMATE}", "go infinite")
    uci.until("info")
    assert uci.silent(0.2)
    assert uci.thought(uci.send("stop")).move == "0000"


@pytest.mark.parametrize("limits", ["infinite", "", "depth 3 infinite", "ponder wtime 100 btime 100"])
def test_an_infinite_search_waits_for_stop(uci, limits):
    uci.send(f"position {MATE_IN_ONE}", f"go {limits}".strip())
    uci.until("info")
    while not uci.silent(0.3):
        assert not uci.said[-1].startswith("bestmove")
    assert uci.ask() == [], "and answers isready meanwhile"
    assert uci.thought(uci.send("stop")).move == "a1a8"


def test_what_comes_while_it_thinks_is_done_afterwards(uci):
    uci.send("position startpos", "go infinite", "position startpos moves e2e4 e7e5", "d", "isready")
    uci.until("readyok")
    assert not any(line.startswith("text") for line in uci.said)
    uci.send("stop")
    uci.until("bestmove")
    assert uci.until("text:")[0][-1] == "text:  rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w QKqk"


def test_each_stop_ends_one_search(uci):
    """All the lines are there at once: the second stop is not for the first search."""
    uci.send(*["position startpos", "go infinite", "stop", "go infinite", "stop"] * 5, "go depth 2", "isready")
    uci.until("readyok")
    assert len([line for line in uci.said if line.startswith("bestmove")]) == 11


def test_all_lines_are_obeyed_before_the_end(uci):
    uci.send("go infinite", "d", "go infinite", "position startpos moves e2e4", "d")
    assert uci.end() == (0, "")
    while uci.hear()[0] is not None:
        pass
    assert [line.split()[1] for line in uci.said if line.startswith("text")] == [
        START_TEXT.split()[0], "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR"]
    assert len([line for line in uci.said if line.startswith("bestmove")]) == 2


def test_searchmoves(start, tmp_path):
    output = tmp_path / "results.lrn"
    uci = start("Seed=1", f"Learn Output={output}")
    thought = uci.go("depth 4 searchmoves a2a3 h2h3 h2h5 nonsense", "startpos")
    assert thought.strings == ["not a move to search: h2h5", "not a move to search: nonsense"]
    assert {i.pv.split()[0] for i in thought.lines} <= {"a2a3", "h2h3"}
    assert uci.go("searchmoves h2h3 depth 3").move == "h2h3"
    assert uci.go("nodes 1 searchmoves h2h3").move == "h2h3"
    assert not output.exists(), "what some of the moves score is not learned"
    uci.ask("ucinewgame")
    alone = signature(uci.go("depth 4", "startpos"))
    uci.ask("ucinewgame")
    uci.go("depth 4 searchmoves a2a3", "startpos")
    uci.ask("ucinewgame")
    assert signature(uci.go("depth 4", "startpos")) == alone


# --- time -------------------------------------------------------------------------------------------------

SLOW = 10 if sanitized() else 1


@pytest.mark.parametrize("limits, least, most", [
    ("movetime 300", 0.2, 0.35),
    ("movetime 5", 0.0, 0.05),
    ("movetime 0", 0.0, 0.05),
    ("wtime 4000 btime 4000", 0.0, 0.3),
    ("wtime 1000 btime 1000 movestogo 1", 0.2, 0.95),
    ("wtime 1 btime 100000", 0.0, 0.05),
    ("wtime 0 btime 100000 winc 10", 0.0, 0.05),
    ("wtime -50 btime 100000", 0.0, 0.05),
    ("wtime 100 btime 100000 winc 100000", 0.0, 0.1),
    ("wtime 100000 btime 10 movetime 20", 0.0, 0.07),
])
def test_time_limits(uci, limits, least, most):
    uci.go("depth 2", "fen r2q1rk1/1ppnbppp/p2p1nb1/3Pp3/2P1P1P1/2N2N1P/PPB1QP2/R1B2RK1 w - - 0 1")
    thought = uci.go(limits)
    assert least <= thought.seconds < most + 0.5 * SLOW
    assert thought.move != "0000"


def test_a_single_reply_needs_no_thought(uci):
    thought = uci.go("wtime 1000000 btime 1000000", "fen 8/8/8/8/8/1k6/7q/K7 w - - 0 1")
    assert thought.move == "a1b1" and thought.seconds < 2


def test_stop_and_isready_are_obeyed_at_once(uci):
    stops, readies = [], []
    for _ in range(10):
        uci.send(f"position {MIDDLE_GAME}", "go infinite")
        time.sleep(0.03)
        asked = uci.send("isready")
        readies.append(uci.until("readyok")[1] - asked)
        stops.append(uci.thought(uci.send("stop")).seconds)
    # A build with checks visits few nodes between two looks at the input; long_uci_games.py is stricter.
    assert statistics.median(stops) < 0.25
    assert statistics.median(readies) < 0.25


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
        found.add(uci.go("depth 5", "startpos").lines[-1].nodes)
    assert len(found) == 3


def test_clear_hash_forgets_the_line_of_the_last_search(uci):
    first = signature(uci.go("depth 5", MIDDLE_GAME))
    assert signature(uci.go("depth 5")) != first, "it begins with the line it knows"
    uci.ask("setoption name Clear Hash", "ucinewgame")
    assert signature(uci.go("depth 5", MIDDLE_GAME)) == first


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
    moves = []
    for seed in range(1, 12):
        uci.ask(f"setoption name Seed value {seed}")
        thought = uci.go("depth 2", "startpos")
        if not thought.lines:
            assert thought.strings == ["not searched: the book's move, or the only one"]
            moves.append(thought.move)
    assert 2 <= len(moves) <= 10 and set(moves) == {"h2h4"}
    uci.ask("setoption name OwnBook value false")
    for seed in range(1, 12):
        uci.ask(f"setoption name Seed value {seed}")
        assert uci.go("depth 2").lines


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
    data, found = path.read_bytes(), []
    while data:
        _, _, link, score, kind, length, side, depth, book, check = struct.unpack_from("<IIIihhbbBB", data)
        text = data[24:length - 1]
        assert (link, kind, data[length - 1]) == (0, 0, 0)
        assert check == sum(text) % 256
        found.append((score, depth, side, book, text.decode()))
        data = data[length:]
    return found


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
    alone = signature(writer.go("depth 6", "startpos"))
    expected = alone[-1][3].split()
    writer.go("depth 6", f"startpos moves {' '.join(expected[:5])}")
    size = output.stat().st_size
    reader = start("Seed=1", f"Learn File={output}")
    assert signature(reader.go("depth 6", "startpos")) != alone
    assert reader.quit() == (0, "") and output.stat().st_size == size, "reading does not write"


@pytest.mark.parametrize("path", ["/dev/null", "missing/folder/file", "."])
def test_an_output_that_cannot_be_written_is_reported(start, path):
    uci = start("Seed=1", f"Learn Output={path}")
    assert uci.go("depth 2", "startpos").strings == [f"cannot write to the learn output {path}"]


# --- customary extras -------------------------------------------------------------------------------------


def test_perft(uci):
    *rows, total = uci.ask("position startpos", "perft 3")
    assert total == "nodes 8902" and len(rows) == 20 and "e2e4: 600" in rows
    assert uci.ask("perft 0") == ["nodes 1"]
    assert uci.ask("perft")[-1] == "nodes 20"
    assert uci.ask(f"position {STALEMATE}", "perft 4") == ["nodes 0"]
    assert uci.ask("perft x", "perft 91") == ["info string a depth from 0 to 90 was expected"] * 2


def test_perft_can_be_stopped(uci):
    uci.send("position startpos", "perft 20")
    time.sleep(0.1)
    uci.send("stop")
    assert uci.until("info")[0][-1] == "info string perft was stopped"
    assert text_of(uci) == START_TEXT


def test_eval(uci):
    rows = [row.split("\t") for row in (DATA / "positions.tsv").read_text().splitlines() if row[0] != "#"]
    legal = [row for row in rows if row[1] != "refused"][:20]
    compared = 0
    for fen, score, *_ in legal:
        if uci.ask(f"position fen {fen}"):
            continue
        side = 1 if fen.split()[1] == "w" else -1
        assert uci.ask("eval") == [f"evaluation {side * int(score) / 1000:+.3f} (White's side)"]
        compared += 1
    assert compared > 10


def test_d_shows_the_board(uci):
    lines = uci.ask("position startpos moves e2e4", "d")
    assert lines[0] == "8  r n b q k b n r " and lines[4].startswith("4  ") and "P" in lines[4]
    assert "side:  black" in lines


def test_bench(uci, workbench):
    uci.send("position startpos moves e2e4", "bench 2")
    told = []
    while not told or not told[-1].endswith("nps"):
        told.append(uci.hear()[0])
    alone = subprocess.run([workbench, "bench", "--depth", "2"], text=True, capture_output=True, check=True,
                           env=engine_environment()).stdout.splitlines()
    assert re.fullmatch(r"\d+ nodes \d+ nps", told[-1])
    assert told[:-4] == alone[:-4]
    assert told[-1].split()[0] == alone[-1].split()[0]
    assert text_of(uci).startswith("rnbqkbnr/pppppppp/8/8/4P3"), "the position is as before"


def test_bench_can_be_stopped(uci):
    uci.send("bench 20")
    time.sleep(0.1)
    uci.send("isready")
    uci.until("readyok")
    uci.send("stop")
    assert uci.until("info")[0][-1] == "info string the bench was stopped"
    assert uci.go("depth 3", "startpos").lines
