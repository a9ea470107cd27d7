"""Nothing that the engine tells in its own words reaches a GUI but as "info string", nor anything else past the
protocol: neither under `tarv uci` nor under `tarv-uci`."""

import re
import shutil

import pytest
from conftest import engine_environment
from positions import MATE_IN_ONE, STALEMATE
from uci_engine import UciEngine

PROTOCOL = re.compile(r"id (name|author) .+|uciok|readyok|option name .+|bestmove ([a-h][1-8][a-h][1-8][nq]?|0000)"
                      r"|info (nodes \d+ .+|depth \d+ .+|string [ -~]*)")
ONE_REPLY = "7k/8/8/8/8/8/1r6/K7 w - - 0 1"


@pytest.fixture(params=["tarv uci", "tarv-uci"])
def speak(request, workbench, tmp_path):
    """Sends lines to the program, and what is said up to its end; all of that is protocol."""
    # Away from the files that the build puts beside the program.
    words = request.param.split(" ")
    program = tmp_path / "program" / words[0]
    program.parent.mkdir()
    shutil.copy(workbench.parent / words[0], program)
    environment = engine_environment() | {"HOME": str(tmp_path / "home"), "XDG_DATA_HOME": str(tmp_path / "data")}

    def run(*lines: str) -> list[str]:
        with UciEngine([program, *words[1:]], env=environment, cwd=tmp_path) as uci:
            for line in lines:
                uci.send(line)
                if line.startswith("go "):
                    uci.until("bestmove")
            uci.ask()
            assert uci.quit() == (0, "")
            while (line := uci.hear()[0]) is not None:
                assert line == ""
            assert [line for line in uci.said if not PROTOCOL.fullmatch(line)] == []
            return [line.removeprefix("info string ") for line in uci.said if line.startswith("info string ")]

    return run


def options(**values) -> list[str]:
    return [f"setoption name {name.replace('_', ' ')} value {value}" for name, value in values.items()]


def test_the_stages_of_the_randomised_search(speak):
    said = speak(*options(Random_Search="true", Seed=1), "position startpos", "go movetime 300")
    for start in ("search move ... ", "#------> stage1 ", "#----> find best move ", "# select move: ", "#search time "):
        assert any(line.startswith(start) for line in said), start


def test_ends_of_the_randomised_search(speak, tmp_path):
    (tmp_path / "one.bk").write_text("e2e4\n" * 3)
    random = options(Random_Search="true", Seed=1, OwnBook="true", Book_File=tmp_path / "one.bk")
    said = speak(*random, f"position fen {ONE_REPLY}", "go depth 2", f"position fen {MATE_IN_ONE}", "go depth 2",
                 f"position fen {STALEMATE}", "go depth 2",
                 *(line for seed in range(1, 9) for line in (*options(Seed=seed), "position startpos", "go depth 2")))
    for line in ("# one reply ", "not searched: the only move", "the book's move"):
        assert line in said


def test_wrong_lines_of_a_book(speak, tmp_path):
    (tmp_path / "bad.bk").write_text("e2e4 e2e4\nd2d4 d7d5 xyz\n")
    said = speak(*options(Book_File=tmp_path / "bad.bk", OwnBook="true"), "isready", "ucinewgame", "go depth 2")
    assert [line for line in said if line.startswith("#")] == ["#error: line 1, lexem e2e4",
                                                               "#error: line 2, lexem xyz"] * 2


@pytest.mark.parametrize("content", [None, b"", b"no learn file at all", bytes(1000)], ids=repr)
def test_files_that_are_missing_or_damaged(speak, tmp_path, content):
    if content is not None:
        (tmp_path / "x.lrn").write_bytes(content)
    said = speak(*options(OwnBook="true", Book_File=tmp_path / "no.bk", Learn_File=tmp_path / "x.lrn",
                          Learn_Output=tmp_path / "no" / "out.lrn"),
                 "isready", "position startpos", "go depth 3", "ucinewgame", "go depth 2")
    assert f"cannot read the book file {tmp_path / 'no.bk'}" in said
    assert (f"cannot read the learn file {tmp_path / 'x.lrn'}" in said) == (content != b"")


def test_what_makes_no_sense(speak):
    speak("uci", *options(Hash=1, Style="knowledge1", Nothing=1), "setoption name Clear Hash",
          "position fen k7/8/8/8/8/8/8/K6R b - - 0 1 moves a8a7", "position fen kK6/8/8/8/8/8/8/8 w - - 0 1",
          "go depth 3", "position startpos moves e2e5", "go nodes 1", "nonsense", "stop", "go mate 1 depth 2")
