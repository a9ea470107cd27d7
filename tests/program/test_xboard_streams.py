"""What xboard really sent, sent again: the engine answers as it did then, byte for byte.

The recordings are made by record_xboard.py: xboard under a person's hands, "> " before the lines that it sent, "< "
before those of the engine, whose standard output and standard error are one to xboard.
"""

import re
import signal
import subprocess

import pytest
from conftest import DATA
from engine_folder import TIMEOUT_SECONDS

STREAMS = sorted((DATA / "xboard_streams").glob("*.txt"))
ABORTED = ("step_back_and_move", "two_machines")
KILLED = "quit_thinking"
THINKING_MS = 700  # of real time at each reading of the clock, where the engine is killed meanwhile


class Stream:
    """One recording."""

    def __init__(self, name: str):
        lines = (DATA / "xboard_streams" / f"{name}.txt").read_text("latin-1").splitlines()
        self.sent = "".join(line[2:] + "\n" for line in lines if line.startswith("> ")).encode()
        self.answer = "".join(line[2:] + "\n" for line in lines if line.startswith("< ")).encode()
        steps = [match[1] for match in map(re.compile(r"# step (\d+) ms").fullmatch, lines) if match]
        self.step_ms = int(steps[0])


def start(folder, stream: Stream, **options) -> subprocess.Popen:
    return folder.start(step_ms=stream.step_ms, stderr=subprocess.STDOUT, **options)


def test_every_recording_is_there():
    assert [path.stem for path in STREAMS] == [
        "hint_and_analysis", "move_now", "new_game", "position", "quit_thinking", "retract", "retract_and_paste",
        "start_up", "step_back_and_move", "step_back_and_paste", "two_machines", "two_machines_and_paste"]


@pytest.mark.parametrize("name", [path.stem for path in STREAMS if path.stem != KILLED])
def test_stream(folder, name):
    stream = Stream(name)
    with start(folder, stream) as process:
        answer, _ = process.communicate(stream.sent, timeout=TIMEOUT_SECONDS)
    assert answer.decode("latin-1") == stream.answer.decode("latin-1")
    assert process.returncode == (-signal.SIGABRT if name in ABORTED else 0)


def test_killed_while_thinking(folder, monkeypatch):
    """The learn file of before is untouched, and nothing lies beside it."""
    folder.configure(learn_file_write="enable")
    folder.run("quit")
    before = folder.file("tarvyle.lrn").read_bytes()
    monkeypatch.setenv("FIXED_TIME_PAUSE_MS", str(THINKING_MS))
    stream = Stream(KILLED)
    answer = stream.answer.replace(b"#  learn file notfound, load book-file \n", b"")
    with start(folder, stream) as process:
        process.stdin.write(stream.sent)
        process.stdin.flush()
        assert process.stdout.read(len(answer)).decode("latin-1") == answer.decode("latin-1")
        process.kill()
    assert process.returncode == -signal.SIGKILL
    assert folder.names() == ["tarvyle.lrn"]
    assert folder.file("tarvyle.lrn").read_bytes() == before


def test_given_the_time_to_end(folder):
    """The same stream without the kill: the move comes, what was learned is kept."""
    folder.configure(learn_file_write="enable")
    stream = Stream(KILLED)
    with start(folder, stream) as process:
        answer, _ = process.communicate(stream.sent, timeout=TIMEOUT_SECONDS)
    assert answer.startswith(stream.answer)
    assert re.search(rb"^move \w+\n", answer[len(stream.answer):], re.MULTILINE)
    assert b"write learn file ./tarvyle.lrn " in answer
    assert folder.names() == ["tarvyle.lrn"]
