"""The learn file from outside: read at the start, replaced at the end, never lost."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile

import pytest
from conftest import no_file_beyond, sanitized
from engine_folder import BOOK_INSTEAD, THINKING, EngineFolder
from learn_records import NOT_OPEN, NOT_WRITTEN, read, split, written
from positions import MATE_IN_ONE, MIDDLE_GAME

SET_MATE_IN_ONE = f"setboard {MATE_IN_ONE}"
SET_MIDDLE_GAME = f"setboard {MIDDLE_GAME}"

SMALLER = "---->  error write learn file(1), size new file less old file \n"
NOT_RENAMED = "----> error write learn file(2), ?rename() \n"

NOBODY = 65534
BOOK_POSITIONS = 5


@pytest.fixture
def booked(learning):
    """A folder with a learn file that holds the book."""
    learning.run("quit")
    assert learning.names() == ["tarvyle.lrn"]
    return learning


# --- writing ----------------------------------------------------------------------------------------------


@pytest.mark.parametrize("raw", [b"quit\n", b"", b"style", b"quit"], ids=["quit", "end", "half a line", "half quit"])
def test_written_however_the_input_ends(learning, raw):
    run = learning.run(raw=raw)
    content = learning.file("tarvyle.lrn").read_bytes()
    assert len(split(content)) == BOOK_POSITIONS
    assert run.said.removeprefix("# knowledge3 \n") == written(len(content))
    assert run.complaints == NOT_OPEN
    assert run.status == 0
    assert learning.names() == ["tarvyle.lrn"]


def test_read_again_in_place_of_the_book(booked):
    before = booked.file("tarvyle.lrn").read_bytes()
    booked.file("tarvyle.bk").unlink()
    run = booked.run("quit")
    assert run.stderr == ""
    assert run.said == written(len(before))
    assert read(booked.file("tarvyle.lrn")) == sorted(split(before))


def test_what_was_searched_is_kept(booked):
    before = read(booked.file("tarvyle.lrn"))
    run = booked.run(SET_MATE_IN_ONE, "go", "quit")
    after = read(booked.file("tarvyle.lrn"))
    assert run.said.endswith(f"move a1a8\nthe end\n{written(sum(map(len, after)))}")
    new = [record for record in after if record[24:] == b"6k1/5ppp/8/8/8/8/8/R3K3 w Q\0"]
    assert len(new) == 1 and len(after) == len(before) + 1
    assert int.from_bytes(new[0][12:16], "little", signed=True) > 999900


def test_disabled_by_the_configuration(learning):
    learning.configure(learn_file_write="disable")
    run = learning.run("quit")
    assert (run.said, run.complaints, learning.names()) == ("", "", [])


@pytest.mark.parametrize("line", ["learn file write=disable", 'learn file write="disabled"', ""])
def test_only_the_whole_word_disables(learning, line):
    learning.configure(learning.file("tarvyle.cfg").read_text().replace('learn file write="enable"', line))
    learning.run("quit")
    assert learning.names() == ["tarvyle.lrn"]


@pytest.mark.parametrize("instances", [0, 1, 2, 3])
def test_a_second_instance_never_writes(booked, instances):
    before = booked.file("tarvyle.lrn").read_bytes()
    booked.list_instances(instances)
    booked.run(SET_MATE_IN_ONE, "go", "quit")
    assert (booked.file("tarvyle.lrn").read_bytes() == before) == (instances >= 2)
    assert booked.names() == ["tarvyle.lrn"]


def test_nothing_is_written_without_a_list(booked):
    before = booked.file("tarvyle.lrn").read_bytes()
    booked.without_lister()
    booked.run(SET_MATE_IN_ONE, "go", "quit")
    assert booked.file("tarvyle.lrn").read_bytes() == before


def test_nothing_is_written_after_an_abort(booked):
    before = booked.file("tarvyle.lrn").read_bytes()
    run = booked.run(SET_MATE_IN_ONE, "go", "undo", "e1e2")
    assert run.status == -signal.SIGABRT
    assert booked.file("tarvyle.lrn").read_bytes() == before


# --- an old file that may not be replaced -----------------------------------------------------------------


def run_with_change(folder: EngineFolder, change) -> tuple[str, str]:
    """Runs the engine and changes the folder after its start; what it says at its end, and complains of."""
    with folder.started() as process:
        change()
        stdout, stderr = process.communicate(b"quit\n")
    assert process.returncode == 0
    return stdout.decode(), stderr.decode().removeprefix(BOOK_INSTEAD)


def test_a_larger_old_file_stays(booked):
    before = booked.file("tarvyle.lrn").read_bytes()

    def grow():
        with booked.file("tarvyle.lrn").open("ab") as file:
            file.write(before[: len(split(before)[0])])

    assert run_with_change(booked, grow) == ("", SMALLER)
    assert booked.file("tarvyle.lrn").read_bytes()[: len(before)] == before
    assert booked.names() == ["tarvyle.lrn", "tarvyle_tmp_lrnN.lrn"]


def test_an_old_file_of_the_same_size_is_replaced(booked):
    size = booked.file("tarvyle.lrn").stat().st_size
    old = booked.file("tarvyle.lrn").stat().st_ino

    def garble():
        booked.file("tarvyle.lrn").write_bytes(b"x" * size)
        os.link(booked.file("tarvyle.lrn"), booked.path / "kept.lrn")  # so that its number is not used again

    assert run_with_change(booked, garble) == (written(size), "")
    assert booked.file("tarvyle.lrn").stat().st_ino != old, "a new file takes its place"
    assert len(read(booked.file("tarvyle.lrn"))) == BOOK_POSITIONS


def test_a_folder_that_is_not_empty(learning):
    learning.file("tarvyle.lrn").mkdir()
    (learning.file("tarvyle.lrn") / "inside").touch()
    run = learning.run("quit")
    assert (run.said, run.stderr) == ("", BOOK_INSTEAD + NOT_OPEN + NOT_RENAMED)
    assert run.status == 0
    assert learning.names() == ["tarvyle.lrn"]
    assert (learning.file("tarvyle.lrn") / "inside").exists()


def test_an_empty_folder_is_left_alone_too(learning):
    learning.file("tarvyle.lrn").mkdir()
    run = learning.run("quit")
    assert (run.said, run.stderr) == ("", BOOK_INSTEAD + NOT_OPEN + NOT_RENAMED)
    assert learning.file("tarvyle.lrn").is_dir()


def test_a_pipe_in_its_place_is_not_waited_for(learning):
    os.mkfifo(learning.file("tarvyle.lrn"))
    run = learning.run("quit")
    assert (run.said, run.stderr) == ("", BOOK_INSTEAD + NOT_WRITTEN)
    assert learning.file("tarvyle.lrn").is_fifo()


def test_a_read_only_file_is_read_and_replaced(booked):
    booked.file("tarvyle.lrn").chmod(0o444)
    size = booked.file("tarvyle.lrn").stat().st_size
    run = booked.run("quit")
    assert (run.said, run.stderr) == (written(size), "")


def test_a_link_is_read_through(booked):
    booked.file("tarvyle.lrn").rename(booked.file("elsewhere.lrn"))
    booked.file("tarvyle.lrn").symlink_to("elsewhere.lrn")
    size = booked.file("elsewhere.lrn").stat().st_size
    run = booked.run("quit")
    assert (run.said, run.stderr) == (written(size), "")
    assert booked.file("elsewhere.lrn").stat().st_size == size


@pytest.mark.parametrize("target", ["nowhere", "/dev/null", "."])
def test_a_link_to_no_file_is_left_alone(learning, target):
    learning.file("tarvyle.lrn").symlink_to(target)
    run = learning.run("quit")
    assert (run.said, run.stderr) == ("", BOOK_INSTEAD + NOT_WRITTEN)
    assert os.readlink(learning.file("tarvyle.lrn")) == target
    assert learning.names() == ["tarvyle.lrn"]


# --- a damaged old file -----------------------------------------------------------------------------------


@pytest.mark.parametrize("damage", [
    lambda content: content[:-1],
    lambda content: content[:30],
    lambda content: content + b"\0",
    lambda content: bytes([content[23] ^ 1]).join([content[:23], content[24:]]),
    lambda content: content[:18] + b"\xff\xff" + content[20:],
    lambda content: content[:18] + b"\0\0" + content[20:],
    lambda content: content[:18] + b"\xff\x7f" + content[20:],
    lambda content: content.replace(b"\0", b"\1"),
], ids=["cut", "cut early", "longer", "check byte", "length -1", "length 0", "length huge", "no ends"])
def test_a_damaged_file_is_replaced_by_the_book(booked, damage):
    sound = booked.file("tarvyle.lrn").read_bytes()
    booked.file("tarvyle.lrn").write_bytes(damage(sound))
    run = booked.run("quit")
    assert run.stderr == BOOK_INSTEAD + NOT_OPEN
    assert run.said == written(len(sound))
    assert read(booked.file("tarvyle.lrn")) == sorted(split(sound))


def test_an_empty_file_is_a_learn_file(learning):
    learning.file("tarvyle.lrn").touch()
    run = learning.run("quit")
    assert (run.said, run.stderr) == (written(0), "")


# --- writing that fails -----------------------------------------------------------------------------------


def assert_not_written(folder: EngineFolder, run, old: bytes) -> None:
    assert (run.said, run.complaints, run.status) == ("", NOT_WRITTEN, 0)
    assert folder.file("tarvyle.lrn").read_bytes() == old
    assert folder.names() == ["tarvyle.lrn"]


def test_a_limit_on_file_sizes(booked):
    """As for a full disk; the signal that comes with it does not end the program."""
    old = booked.file("tarvyle.lrn").read_bytes()
    run = booked.run("quit", preexec_fn=no_file_beyond(100))
    assert_not_written(booked, run, old)


def test_a_folder_that_takes_no_file(booked):
    """Nobody may write there: not even the superuser, who runs the engine as somebody else."""
    old = booked.file("tarvyle.lrn").read_bytes()
    with tempfile.TemporaryDirectory() as name:
        place = pathlib.Path(name)
        for source in (booked.engine, booked.fixed_time, *booked.path.iterdir(), *booked.lister.iterdir()):
            shutil.copy(source, place)
        place.chmod(0o555)
        booked.engine, booked.fixed_time = place / booked.engine.name, place / booked.fixed_time.name
        booked.path, booked.search_path[0] = place, name
        run = booked.run("quit", **({"user": NOBODY, "group": NOBODY} if os.geteuid() == 0 else {}))
        place.chmod(0o755)
        assert (run.said, run.complaints, run.status) == ("", NOT_WRITTEN, 0)
        assert booked.file("tarvyle.lrn").read_bytes() == old
        assert not list(place.glob("tarvyle_tmp_lrn*"))


def test_a_folder_that_goes_away(learning):
    place, away = learning.path, learning.path.with_name("away")
    said, complaints = run_with_change(learning, lambda: None)
    assert said == written(learning.file("tarvyle.lrn").stat().st_size)
    learning.file("tarvyle.lrn").unlink()
    with learning.started(name=str(place / "tarvyle")) as process:
        place.rename(away)
        stdout, stderr = process.communicate(b"quit\n")
    away.rename(place)
    assert (stdout, stderr.decode(), process.returncode) == (b"", BOOK_INSTEAD + NOT_WRITTEN, 0)


# --- the other end goes away ------------------------------------------------------------------------------


def think_for_nobody(folder: EngineFolder, when: str) -> subprocess.Popen:
    """Lets the engine think after, or while, nobody reads its output any more."""
    process = folder.started(step_ms=100, bufsize=0)
    if when == "before":
        process.stdout.close()
    process.stdin.write(f"xboard\n{SET_MIDDLE_GAME}\ngo\n".encode())
    if when == "while":
        while not THINKING.match(process.stdout.readline().decode()):
            pass
        process.stdout.close()
    process.stdin.write(b"quit\n")
    process.stdin.close()
    process.stderr.read()
    process.wait()
    return process


@pytest.mark.parametrize("when", ["before", "while"])
def test_closed_output_while_thinking(booked, when):
    before = len(read(booked.file("tarvyle.lrn")))
    assert think_for_nobody(booked, when).returncode == 0
    assert len(read(booked.file("tarvyle.lrn"))) == before + 1, "the search's result is in it"
    assert booked.names() == ["tarvyle.lrn"]


def test_closed_input_while_thinking(booked):
    before = len(read(booked.file("tarvyle.lrn")))
    run = booked.run("xboard", SET_MIDDLE_GAME, "go", step_ms=100)
    assert run.said.count("move ") == 1
    assert len(read(booked.file("tarvyle.lrn"))) == before + 1


def test_streams_that_lead_nowhere(booked):
    nothing = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    sound = booked.file("tarvyle.lrn").read_bytes()
    with booked.start(**nothing) as process:
        process.wait()
    assert process.returncode == 0
    assert read(booked.file("tarvyle.lrn")) == sorted(split(sound))


@pytest.mark.skipif(sanitized(), reason="the sanitizers need an open standard error")
def test_without_any_open_stream(booked):
    """Files that the engine opens then take the streams' numbers; nothing it says may end up in them."""
    sound = booked.file("tarvyle.lrn").read_bytes()
    with booked.start(preexec_fn=lambda: [os.close(stream) for stream in (0, 1, 2)],
                       stdin=None, stdout=None, stderr=None) as process:
        process.wait()
    assert process.returncode == 0
    assert read(booked.file("tarvyle.lrn")) == sorted(split(sound))


def test_two_instances_end_at_the_same_time(booked):
    """Neither saw the other; whichever is last, a whole file stays."""
    sound = booked.file("tarvyle.lrn").read_bytes()
    for _ in range(5):
        both = [booked.started(), booked.started()]
        for process in both:
            process.stdin.close()
        for process in both:
            assert process.stderr.read() == b""
            process.wait()
            process.stdout.close()
            process.stderr.close()
            assert process.returncode == 0
        assert read(booked.file("tarvyle.lrn")) == sorted(split(sound))
        assert booked.names() == ["tarvyle.lrn"]
