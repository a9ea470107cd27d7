"""Searches of `tarv uci`: they equal those of `tarv search`, keep every limit, and end when they are told."""

import re
import statistics
import subprocess
import time

import pytest
from conftest import DATA, engine_environment
from positions import CHECKMATE, CLOSED_GAME, MATE_IN_ONE, MATED_IN_ONE, STALEMATE, START_TEXT
from uci_engine import SLOW, UciEngine, centipawns

# --- what is searched -------------------------------------------------------------------------------------


def expected_lines(row: str) -> list[tuple]:
    """What "go depth" says to a row of the data files: each line once, but for those of a mate whose length is still
    to be found."""
    lines = [line.split(" ", 3) for line in row.split("\t")[5].split(" | ")]
    return [(int(line[0]), int(line[2]), line[3]) for line in lines if int(line[1]) != shown_score(999900)]


def shown_score(score: int) -> int:
    return score // 10 + score % 10


def all_nodes(row: str) -> int:
    """Of its last iteration."""
    return int(row.split("\t")[3].split(":")[-1])


def cheap_rows(name: str, count: int, nodes: int = 200_000) -> list[str]:
    rows = [row for row in (DATA / name).read_text().splitlines() if row[0] != "#"]
    return [row for row in rows if int(row.split("\t")[3].split(":")[-1]) <= nodes][:count]


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
        thought = uci.go(f"depth {depth}", f"fen {root}")
        assert thought.move == best.split()[0]
        assert [(i.depth, i.nodes, shown(i.pv)) for i in thought.lines] == expected_lines(row)
        assert thought.nodes == all_nodes(row)
        last = thought.lines[-1]
        score = int(best.split()[2])
        if abs(score) < 999900:
            assert last.score == centipawns(score)


def test_searches_with_a_book_equal_those_of_the_workbench(start, workbench):
    """Where the book does not answer: in a search for a mate, of which there is none."""
    book = DATA / "book.bk"
    uci = start(f"Book File={book}", "OwnBook=true")
    for row in cheap_rows("booksearches.tsv", 2):
        root, style, depth, *_ = row.split("\t")
        seed = 7
        uci.ask("ucinewgame", f"setoption name Style value {style}", f"setoption name Seed value {seed}")
        thought = uci.go(f"depth {depth} mate 1", f"fen {root}")
        with_book, without = (subprocess.run([workbench, "search", "--seed", str(seed), *option], text=True,
                                             input=f"{root}\t{style}\t{depth}\n", env=engine_environment(),
                                             capture_output=True, check=True).stdout.rstrip("\n")
                              for option in (["--book", book], []))
        found = [(line.depth, line.nodes, shown(line.pv)) for line in thought.lines]
        assert found == expected_lines(with_book) != expected_lines(without)


def test_the_seed_makes_searches_repeatable(start):
    uci = start("Seed=3")
    first, second = (fresh_signature(uci) for _ in range(2))
    assert first == second
    uci.ask("setoption name Seed value 4")
    assert fresh_signature(uci) != first


def fresh_signature(uci: UciEngine) -> list[tuple]:
    uci.ask("ucinewgame")
    return uci.go("depth 5", "startpos").signature()


def test_depths_out_of_the_ordinary(uci):
    assert {i.depth for i in uci.go("depth 1").lines} == {1}
    assert uci.go("depth 1").nodes < uci.go("depth 2").nodes
    assert uci.go("depth 1000", f"fen {MATE_IN_ONE}").move == "a1a8"


@pytest.mark.parametrize("nodes", [1, 7, 100, 4095, 4096, 4097, 10_000, 50_000])
def test_node_limits_are_exact(uci, nodes):
    """The search is the same as far as it goes, and ends when exactly so many nodes have been visited."""
    all_of_it = uci.go("depth 6", f"fen {CLOSED_GAME}")
    whole = all_of_it.lines
    assert all_of_it.nodes > 50_000
    uci.ask("ucinewgame")
    thought = uci.go(f"nodes {nodes}", f"fen {CLOSED_GAME}")
    expected = [(i.depth, i.nodes, i.pv) for i in whole if i.nodes <= nodes]
    assert [(i.depth, i.nodes, i.pv) for i in thought.lines] == expected
    if thought.lines:
        assert thought.nodes == nodes
        assert thought.move == thought.lines[-1].pv.split()[0]
    else:
        assert thought.strings == ["no move was searched in time: the best at first sight"]


def test_mates_are_counted_in_moves(uci):
    assert uci.go("depth 6", f"fen {MATE_IN_ONE}").lines[-1].score == "mate 1"
    assert uci.go("depth 7", f"fen {MATED_IN_ONE}").lines[-1].score == "mate -1"
    longer = uci.go("depth 9", "fen 8/8/8/8/8/5k2/R7/1R4K1 w - - 0 1").lines[-1]
    moves = int(longer.score.removeprefix("mate "))
    assert len(longer.pv.split()) == 2 * moves - 1


def test_go_mate_ends_with_a_short_enough_mate(uci):
    thought = uci.go("mate 6", "fen 8/8/8/8/8/5k2/R7/1R4K1 w - - 0 1")
    assert re.fullmatch("mate [1-6]", thought.lines[-1].score)


def test_over_is_over(uci):
    assert uci.go("depth 5", f"fen {STALEMATE}").move == "0000"
    assert uci.go("movetime 1000", f"fen {CHECKMATE}").move == "0000"
    assert "info depth 0 score mate 0" in uci.said and "info depth 0 score cp 0" in uci.said
    uci.send(f"position fen {CHECKMATE}", "go infinite")
    uci.until("info")
    assert uci.silent(0.2)
    assert uci.thought(uci.send("stop")).move == "0000"


@pytest.mark.parametrize("limits", ["infinite", "", "depth 3 infinite", "ponder wtime 100 btime 100"])
def test_an_infinite_search_waits_for_stop(uci, limits):
    uci.send(f"position fen {MATE_IN_ONE}", f"go {limits}".strip())
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
    alone = uci.go("depth 4", "startpos").signature()
    uci.ask("ucinewgame")
    uci.go("depth 4 searchmoves a2a3", "startpos")
    uci.ask("ucinewgame")
    assert uci.go("depth 4", "startpos").signature() == alone


# --- time -------------------------------------------------------------------------------------------------


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
    uci.go("depth 2", f"fen {CLOSED_GAME.replace(' b ', ' w ')}")
    thought = uci.go(limits)
    assert least <= thought.seconds < most + 0.5 * SLOW
    assert thought.move != "0000"


def test_a_single_reply_needs_no_thought(uci):
    thought = uci.go("wtime 1000000 btime 1000000", "fen 8/8/8/8/8/1k6/7q/K7 w - - 0 1")
    assert thought.move == "a1b1" and thought.seconds < 2


def test_stop_and_isready_are_obeyed_at_once(uci):
    stops, readies = [], []
    for _ in range(10):
        uci.send(f"position fen {CLOSED_GAME}", "go infinite")
        time.sleep(0.03)
        asked = uci.send("isready")
        readies.append(uci.until("readyok")[1] - asked)
        stops.append(uci.thought(uci.send("stop")).seconds)
    # A build with checks visits few nodes between two looks at the input; long_uci_games.py is stricter.
    assert statistics.median(stops) < 0.25
    assert statistics.median(readies) < 0.25


def test_a_sign_of_life_each_second(uci):
    assert uci.go("movetime 2500", f"fen {CLOSED_GAME}").progress == 2
