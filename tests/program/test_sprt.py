"""bench/sprt: whole matches between engines that answer from a table, and what is left when one is interrupted."""

import os
import re
import shlex
import signal
import subprocess
import sys
import time

import pytest
from conftest import PROJECT

SPRT = PROJECT / "bench" / "sprt"
FAKE = PROJECT / "tests" / "program" / "fake_uci.py"
AFTER_E4_E5 = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"
PATIENCE = 60


def fake(character: str) -> str:
    return shlex.join([sys.executable, "-B", str(FAKE), character])


@pytest.fixture
def sprt(tmp_path):
    """The arguments of a match between two characters, in a folder whose book has one opening."""
    (tmp_path / "book").write_text("e2e4 e7e5 g1f3\n")

    def arguments(new: str, old: str, *options) -> dict:
        usual = ["--book", tmp_path / "book", "--plies", 2, "--tc", "0.3+0.1", "--runner", "own"]
        command = [sys.executable, "-B", SPRT, fake(new), fake(old), *usual, *options]
        return {"args": list(map(str, command)), "cwd": tmp_path, "text": True}

    return arguments


@pytest.fixture
def match(sprt):
    def run(*arguments) -> subprocess.CompletedProcess:
        return subprocess.run(**sprt(*arguments), capture_output=True, timeout=PATIENCE, check=False)

    return run


@pytest.fixture
def rows(tmp_path):
    """The pairs of the log, each as its fields."""
    return lambda: [line.split("\t") for line in (tmp_path / "sprt.tsv").read_text().splitlines()[1:]]


# --- the verdict ------------------------------------------------------------------------------------------


@pytest.mark.parametrize("new, old, status, said", [("wins", "loses", 0, "H1: NEW is better"),
                                                    ("loses", "wins", 1, "H0: NEW is not better")])
def test_a_match_ends_with_a_verdict(match, rows, new, old, status, said):
    done = match(new, old, "--elo1", 150)
    assert (done.returncode, done.stdout.splitlines()[-1]) == (status, f"verdict: {said}"), done.stderr
    points = {"wins": "1", "loses": "0"}[new]
    assert all(row[2:] == [points, "checkmate", points, "checkmate"] for row in rows())
    assert 2 <= len(rows()) < 50, "it stops when it knows"


def test_without_a_verdict_it_stops_after_the_last_game(match, rows):
    done = match("draws", "draws", "--games", 4)
    assert done.returncode == 3, done.stderr
    assert done.stdout == ("games: 4: 0 won, 4 drawn, 0 lost\n"
                           "pairs with 0, 1/2, 1, 3/2, 2 points: 0 0 2 0 0\n"
                           "time forfeits: new 0, old 0; illegal moves: new 0, old 0; crashes: new 0, old 0\n"
                           "Elo: +0.0 (+0.0 to +0.0); normalised +0.0\n"
                           "LLR: -0.00 (-2.94 to 2.94) for normalised Elo [0, 10]\n"
                           "verdict: none yet\n")
    assert rows() == [[str(number), AFTER_E4_E5, "0.5", "repetition", "0.5", "repetition"] for number in (1, 2)]


@pytest.mark.parametrize("character, end, told", [
    ("illegal", "illegal", "illegal moves"), ("crash", "crash", "crashes"), ("late", "time", "time forfeits"),
    ("hang", "time", "time forfeits")])
def test_a_fault_loses_the_game_and_the_match_goes_on(match, rows, character, end, told):
    done = match("draws", character, "--games", 4, "--concurrency", 2)
    assert done.returncode == 3, done.stderr
    assert f"{told}: new 0, old 4" in done.stdout
    assert "4 won, 0 drawn, 0 lost" in done.stdout
    assert sorted(rows()) == [[str(number), AFTER_E4_E5, "1", end, "1", end] for number in (1, 2)]


def test_faults_of_the_new_engine_are_told_as_such(match):
    done = match("illegal", "draws", "--games", 2)
    assert "illegal moves: new 2, old 0" in done.stdout and "0 won, 0 drawn, 2 lost" in done.stdout


# --- the log ----------------------------------------------------------------------------------------------


def test_an_interrupted_match_goes_on(sprt, match, rows, tmp_path):
    match_of = ("slow", "slow", "--games", 12, "--concurrency", 2)
    with subprocess.Popen(**sprt(*match_of), stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
        until = time.monotonic() + PATIENCE
        while time.monotonic() < until and not ((tmp_path / "sprt.tsv").exists() and rows()):
            time.sleep(0.02)
        process.send_signal(signal.SIGINT)
        said, complained = process.communicate(timeout=PATIENCE)
    before = rows()
    assert process.returncode == 3 and "interrupted" in complained, complained
    assert f"games: {2 * len(before)}:" in said
    assert 1 <= len(before) < 6
    assert match(*match_of).returncode == 3
    assert rows()[:len(before)] == before
    assert sorted(int(row[0]) for row in rows()) == [1, 2, 3, 4, 5, 6]
    assert {row[3] for row in rows()} == {"repetition"}, "what was being played has left no result"


def test_no_engine_is_left_behind(sprt):
    with subprocess.Popen(**sprt("hang", "draws"), stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
        until, mark = time.monotonic() + PATIENCE, f"{process.pid}"
        while time.monotonic() < until and len(children(mark)) < 2:
            time.sleep(0.02)
        engines = children(mark)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=PATIENCE)
    assert len(engines) == 2
    assert not [engine for engine in engines if os.path.exists(f"/proc/{engine}")]


def children(parent: str) -> list[str]:
    """The processes that it has started."""
    found = []
    for name in filter(str.isdecimal, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/stat", encoding="utf-8") as file:
                if file.read().rpartition(")")[2].split()[1] == parent:
                    found.append(name)
        except (FileNotFoundError, ProcessLookupError):
            pass
    return found


def test_a_torn_line_is_played_again(match, rows, tmp_path):
    log = tmp_path / "sprt.tsv"
    match("draws", "draws", "--games", 4)
    whole = log.read_text()
    log.write_text(whole[:-9])
    match("draws", "draws", "--games", 4)
    assert log.read_text() == whole


def test_a_finished_match_is_told_again_without_a_game(match, rows):
    first, second = (match("wins", "loses", "--elo1", 150) for _ in range(2))
    assert (first.stdout, first.returncode) == (second.stdout, second.returncode)
    assert "own driver" in first.stderr and "own driver" not in second.stderr


@pytest.mark.parametrize("change, told", [
    (["--seed", 2], "seed"), (["--hash", 8], "new options, old options"), (["--new-option", "Hash=32"], "new options"),
    (["--tc", "1+1"], "time control")])
def test_another_match_is_not_mixed_in(match, tmp_path, change, told):
    match("draws", "draws", "--games", 2)
    before = (tmp_path / "sprt.tsv").read_text()
    done = match("draws", "draws", "--games", 4, *change)
    assert (done.returncode, done.stdout) == (2, "")
    assert f"is of another match ({told} differ)" in done.stderr
    assert (tmp_path / "sprt.tsv").read_text() == before


@pytest.mark.parametrize("text, told", [("My notes\n", "is no log"), ("My notes", "is no log"),
                                        ("# bench/sprt {\n", "the first line is spoilt")])
def test_a_file_that_is_no_log_stays(match, tmp_path, text, told):
    (tmp_path / "sprt.tsv").write_text(text)
    done = match("draws", "draws", "--games", 2)
    assert done.returncode == 2 and told in done.stderr
    assert (tmp_path / "sprt.tsv").read_text() == text


@pytest.mark.parametrize("line, told", [("2\tx\n", "3: is no pair"),
                                        ("2\tx\t3\tcheckmate\t1\tcheckmate\n", "3: is no pair"),
                                        ("1\tx\t1\tcheckmate\t1\tcheckmate\n", "3: pair 1 is there already")])
def test_a_spoilt_log_is_refused(match, tmp_path, line, told):
    match("draws", "draws", "--games", 2)
    with (tmp_path / "sprt.tsv").open("a") as log:
        log.write(line)
    done = match("draws", "draws", "--games", 4)
    assert done.returncode == 2 and told in done.stderr


# --- what is wrong with the command -----------------------------------------------------------------------


@pytest.mark.parametrize("options, told", [
    (["--elo0", 10], "--elo0 must be below --elo1"), (["--tc", "fast"], "fast is not"), (["--tc", "0/1"], "0/1 is not"),
    (["--elo1", 200], "200 is not a number between -200 and 200"), (["--elo1", "nan"], "nan is not"),
    (["--alpha", 0.5], "0.5 is not a number between"), (["--games", 0], "0 is not"),
    (["--uci-option", "Hash"], "NAME=VALUE"),
    (["--old-option", "Contempt=1"], "old: has no option Contempt"),
    (["--runner", "nothing-like-this"], "no such program"),
    (["--plies", 9], "no line has 9 half-moves"), (["--book", "none"], "none"),
])
def test_a_wrong_command_is_an_error(match, options, told):
    done = match("draws", "draws", *options)
    assert (done.returncode, done.stdout) == (2, ""), done
    assert told in done.stderr and "Traceback" not in done.stderr


def test_engines_must_be_there_and_answer(match, sprt, tmp_path):
    command = sprt("draws", "draws")
    command["args"][3] = "./nobody"
    done = subprocess.run(**command, capture_output=True, check=False)
    assert (done.returncode, done.stderr) == (2, "sprt: ./nobody: no such program\n")
    command["args"][3] = "/bin/true"
    done = subprocess.run(**command, capture_output=True, check=False)
    assert done.returncode == 2 and "does not answer as a UCI engine" in done.stderr


# --- fastchess as the runner ------------------------------------------------------------------------------

SAYS = """\
Started game 1 of 4 (new vs old)
Started game 2 of 4 (old vs new)
Finished game 2 (old vs new): 1-0 {White mates}
Finished game 3 (new vs old): 1/2-1/2 {Draw by 3-fold repetition}
Finished game 4 (old vs new): 0-1 {White loses on time}
Finished game 1 (new vs old): 0-1 {White makes an illegal move}
"""


@pytest.fixture
def runner(tmp_path):
    """Something that says these lines as fastchess would, and writes down how it was called."""
    folder = tmp_path / "bin"
    folder.mkdir()

    def write(says: str):
        program = folder / "fastchess"
        program.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$@\" >'{tmp_path}/called'\n"
                           f"cp \"$PWD\"/openings.epd '{tmp_path}/openings'\ncat <<'END'\n{says}END\n")
        program.chmod(0o755)
        return program

    return write


def test_another_runner_plays_the_games(match, rows, runner, tmp_path):
    done = match("draws", "draws", "--games", 4, "--runner", runner(SAYS), "--tc", "20/10", "--concurrency", 3)
    assert done.returncode == 3, done.stderr
    assert rows() == [["2", AFTER_E4_E5, "0.5", "repetition", "1", "time"],
                      ["1", AFTER_E4_E5, "0", "illegal", "0", "checkmate"]]
    assert "time forfeits: new 0, old 1; illegal moves: new 1, old 0" in done.stdout
    called = (tmp_path / "called").read_text().splitlines()
    assert called[:6] == ["-engine", "name=new", "proto=uci", f"cmd={sys.executable}", f"args=-B {FAKE} draws",
                          "option.Hash=16"]
    assert called[called.index("-rounds") + 1] == "2" and called[called.index("-concurrency") + 1] == "3"
    assert "tc=20/10+0" in called
    assert (tmp_path / "openings").read_text() == f"{AFTER_E4_E5}\n" * 2


def test_another_runner_goes_on_with_what_is_left(match, rows, runner, tmp_path):
    match("draws", "draws", "--games", 2)
    match("draws", "draws", "--games", 6, "--runner", runner(SAYS))
    assert [row[0] for row in rows()] == ["1", "3", "2"]
    assert (tmp_path / "openings").read_text() == f"{AFTER_E4_E5}\n" * 2


@pytest.mark.parametrize("says, told", [
    (SAYS.replace("Finished game 1", "Warning"), "stopped early"),
    (SAYS.replace("2 (old vs new): 1-0 {White mates}", "2 (old vs new): 1-0 {Black faints}"), "Black faints"),
    (SAYS.replace("2 (old vs new)", "2 (new vs old)"), "has changed the order"),
])
def test_another_runner_that_fails_is_an_error(match, runner, says, told):
    done = match("draws", "draws", "--games", 4, "--runner", runner(says))
    assert done.returncode == 2 and told in done.stderr


def test_another_runner_is_found_on_the_search_path(sprt, runner, tmp_path):
    command = sprt("draws", "draws", "--games", 4)
    at = command["args"].index("--runner")
    del command["args"][at:at + 2]
    command["env"] = os.environ | {"PATH": f"{runner(SAYS).parent}:{os.environ['PATH']}"}
    done = subprocess.run(**command, capture_output=True, check=False)
    assert re.match(rf"{tmp_path}/bin/fastchess; ", done.stderr)
    assert (tmp_path / "called").exists()


# --- what they need ---------------------------------------------------------------------------------------


@pytest.mark.parametrize("script", ["sprt", "strength.py", "openings.py"])
def test_matches_need_nothing_but_python(script):
    """Started without the packages that are installed."""
    done = subprocess.run([sys.executable, "-B", "-S", PROJECT / "bench" / script, "--help"], text=True,
                          capture_output=True, check=False)
    assert (done.returncode, done.stderr) == (0, "") and "usage: " in done.stdout
