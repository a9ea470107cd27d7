"""`tarv uci` through pipes: the protocol, positions, and the customary extras."""

import re
import subprocess
import time

import pytest
from conftest import DATA, engine_environment
from positions import ILLEGAL, MATE_IN_ONE, NO_KINGS, STALEMATE, START_TEXT

# --- the protocol -----------------------------------------------------------------------------------------


def test_uci_declares_itself_and_its_options(uci):
    lines = uci.ask("uci")
    assert re.fullmatch(r"id name Tarvyle \d+\.\d+\.\d+", lines[0])
    assert lines[1] == "id author Tarvyle developers"
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
    uci.send(f"position fen {MATE_IN_ONE}", "go infinite")
    uci.until("info")
    assert uci.end() == (0, ""), "while it waits for stop"


def test_a_reader_that_has_gone_is_no_error(workbench):
    process = subprocess.Popen([workbench, "uci"], env=engine_environment(), stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    process.stdout.close()
    _, complaints = process.communicate(b"uci\nisready\ngo depth 4\nisready\n")
    assert (process.returncode, complaints) == (0, b"")


# --- positions --------------------------------------------------------------------------------------------


def test_positions(uci):
    assert uci.position() == START_TEXT
    assert uci.ask("position startpos moves e2e4 e7e5 g1f3") == []
    assert uci.position() == "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b QKqk"
    assert uci.ask("position fen 8/P7/8/8/8/8/k7/2K5 w - - 0 1 moves a7a8n") == []
    assert uci.position() == "N7/8/8/8/8/8/k7/2K5 b"
    assert uci.ask("position fen 8/P7/8/8/8/8/k7/2K5 w moves a7a8") == [], "without a letter it is a queen"
    assert uci.position() == "Q7/8/8/8/8/8/k7/2K5 b"
    assert uci.ask("ucinewgame") == [] and uci.position() == START_TEXT


@pytest.mark.parametrize("words, complaint", [
    ("", "startpos or fen expected"),
    ("nonsense", "startpos or fen expected"),
    ("startpos e2e4", "moves expected, not e2e4"),
    ("fen", "a FEN was expected"),
    ("fen moves e2e4", "a FEN was expected"),
    (f"fen {NO_KINGS}", f"illegal position: {NO_KINGS} "),
    (f"fen {ILLEGAL} 0 1", f"illegal position: {ILLEGAL} 0 1 "),
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
    first = uci.go("depth 4").signature()
    assert uci.ask("ucinewgame", before) == []
    assert uci.go("depth 4").signature() == first


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
    assert uci.position() == after[count % 4]
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
    assert uci.position().split()[0] == short.split()[1]
    assert [(i.score, i.pv) for i in uci.go("depth 4").lines][-1] == (long_lines[-1].score, long_lines[-1].pv)


# --- customary extras -------------------------------------------------------------------------------------


def test_perft(uci):
    *rows, total = uci.ask("position startpos", "perft 3")
    assert total == "nodes 8902" and len(rows) == 20 and "e2e4: 600" in rows
    assert uci.ask("perft 0") == ["nodes 1"]
    assert uci.ask("perft")[-1] == "nodes 20"
    assert uci.ask(f"position fen {STALEMATE}", "perft 4") == ["nodes 0"]
    assert uci.ask("perft x", "perft 91") == ["info string a depth from 0 to 90 was expected"] * 2


def test_perft_can_be_stopped(uci):
    uci.send("position startpos", "perft 20")
    time.sleep(0.1)
    uci.send("stop")
    assert uci.until("info")[0][-1] == "info string perft was stopped"
    assert uci.position() == START_TEXT


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
    assert uci.position().startswith("rnbqkbnr/pppppppp/8/8/4P3"), "the position is as before"


def test_bench_can_be_stopped(uci):
    uci.send("bench 20")
    time.sleep(0.1)
    uci.send("isready")
    uci.until("readyok")
    uci.send("stop")
    assert uci.until("info")[0][-1] == "info string the bench was stopped"
    assert uci.go("depth 3", "startpos").lines


def test_perft_in_the_words_of_scripts(uci):
    lines = uci.ask("position startpos", "go perft 3")
    assert len(lines) == 21 and "a2a3: 380" in lines and lines[-1] == "Nodes searched: 8902"
    assert uci.ask("go perft 1")[-1] == "Nodes searched: 20"
    assert uci.go("depth 2").lines
