"""Ends of a run that nobody chose: a full disk, strange input, a reader that is gone, a second instance."""

import os
import shutil
import subprocess

import learn_records
import pytest
from engine_folder import BOOK_INSTEAD
from learn_records import NOT_WRITTEN, read
from positions import MIDDLE_GAME, START_TEXT

SET_MIDDLE_GAME = f"setboard {MIDDLE_GAME}"
SMALL_DISK_KB = 128


# --- a full disk ------------------------------------------------------------------------------------------


@pytest.fixture
def small_disk(learning):
    """The engine's folder on a disk of its own. Nobody but the superuser may mount one."""
    place = learning.path.with_name("disk")
    place.mkdir()
    mount = ["mount", "-t", "tmpfs", "-o", f"size={SMALL_DISK_KB}k", "none", place]
    if os.geteuid() != 0 or subprocess.run(mount, capture_output=True, check=False).returncode != 0:
        pytest.skip("a disk cannot be mounted here; limits on file sizes are tested elsewhere")
    try:
        for source in learning.path.iterdir():
            shutil.copy(source, place)
        learning.path = place
        yield learning
    finally:
        subprocess.run(["umount", "-l", place], check=True)


def fill(folder, leave: int = 0) -> None:
    """Fills the disk but for so many bytes."""
    with folder.file("filler").open("wb", buffering=0) as file:
        try:
            while True:
                file.write(bytes(4096))
        except OSError:
            pass
        file.truncate(max(file.tell() - leave, 0))


def test_a_full_disk_keeps_the_learn_file(small_disk):
    old = learn_records.many(300)
    small_disk.file("tarvyle.lrn").write_bytes(old)
    fill(small_disk, leave=8192)
    run = small_disk.run(SET_MIDDLE_GAME, "go", "quit")
    assert (run.status, run.complaints) == (0, NOT_WRITTEN)
    assert small_disk.file("tarvyle.lrn").read_bytes() == old
    assert small_disk.names() == ["filler", "tarvyle.lrn"]
    small_disk.file("filler").unlink()
    assert small_disk.run(SET_MIDDLE_GAME, "go", "quit").complaints == ""
    assert len(read(small_disk.file("tarvyle.lrn"))) == 301


@pytest.mark.parametrize("leave", [0, 8192])
def test_a_full_disk_keeps_the_older_game(small_disk, leave):
    small_disk.configure(learn_file_write="disable")
    small_disk.run("force", "d2d4", "save game.dat")
    older = small_disk.file("game.dat").read_bytes()
    fill(small_disk, leave)
    run = small_disk.run("force", "e2e4", "save game.dat", "save new.dat", "load new.dat", "load game.dat", "getmoves")
    assert run.said.startswith("moves d2d4 \n")
    assert run.complaints.splitlines() == [
        "# error write file game.dat ", "# error write file new.dat ", "# error open file new.dat "]
    assert small_disk.file("game.dat").read_bytes() == older
    assert not list(small_disk.path.glob("tarvyle_save_tmp*"))


# --- strange input, and what was learned ------------------------------------------------------------------


@pytest.mark.parametrize("raw", [
    b"\0" * 5000, b"\0quit\nquit\0\n", b"quit\r\n", b"style\r\ne7e5\r\n", b"\xff" * 3000 + b"\n",
    b"x" * (1 << 20), b"setboard " + b"8/" * (1 << 19) + b"\n", b"\n" * 100_000, b"style\n" * 2000 + b"sty",
], ids=["zeros", "zeros in words", "CR LF quit", "CR LF", "bytes", "megabyte", "megabyte of FEN", "empty lines",
        "half a line"])
def test_the_learn_file_is_written_after(learning, book_records, raw):
    assert learning.run(raw=raw).status == 0
    assert read(learning.file("tarvyle.lrn")) == book_records
    assert learning.names() == ["tarvyle.lrn"]


@pytest.mark.parametrize("streams", [("stdout",), ("stderr",), ("stdout", "stderr")], ids="-".join)
def test_the_learn_file_is_written_when_output_fails(learning, book_records, streams):
    """A device that is always full takes what the engine says while it thinks."""
    with open("/dev/full", "wb") as full:
        run = learning.run("xboard", SET_MIDDLE_GAME, "go", "nonsense", "quit", step_ms=100,
                           **dict.fromkeys(streams, full))
    assert run.status == 0
    assert len(read(learning.file("tarvyle.lrn"))) == len(book_records) + 1


# --- two instances on one folder --------------------------------------------------------------------------


def run_two(folder, *lines: str) -> list[str]:
    """Two runs that start and end together; what each complains of."""
    both = [folder.start() for _ in range(2)]
    for process in both:
        process.stdin.write("".join(f"{line}\n" for line in lines).encode())
        process.stdin.close()
    complaints = []
    for process in both:
        process.stdout.read()
        complaints.append(process.stderr.read().decode())
        assert process.wait() == 0
        process.stdout.close()
        process.stderr.close()
    return complaints


@pytest.mark.parametrize("before", ["none", "sound", "damaged"])
def test_two_instances_started_at_once(learning, book_records, before):
    """Neither sees the other in the list of processes, and both write."""
    sound = b"".join(book_records)
    for _ in range(10):
        learning.file("tarvyle.lrn").unlink(missing_ok=True)
        if before != "none":
            learning.file("tarvyle.lrn").write_bytes(sound if before == "sound" else sound[:-1])
        complaints = run_two(learning, "style", "quit")
        assert any(BOOK_INSTEAD in text for text in complaints) == (before != "sound")
        assert read(learning.file("tarvyle.lrn")) == book_records
        assert learning.names() == ["tarvyle.lrn"]


def test_two_instances_that_see_each_other_write_nothing(learning, book_records):
    learning.list_instances(2)
    learning.file("tarvyle.lrn").write_bytes(b"".join(book_records))
    assert run_two(learning, SET_MIDDLE_GAME, "go", "quit") == ["", ""]
    assert learning.file("tarvyle.lrn").read_bytes() == b"".join(book_records)
    assert learning.names() == ["tarvyle.lrn"]


# --- a learn file from elsewhere --------------------------------------------------------------------------


def test_duplicated_records_are_kept(learning, book_records):
    twice = b"".join(book_records) * 2
    learning.file("tarvyle.lrn").write_bytes(twice)
    run = learning.run("getboard", "quit")
    assert (run.complaints, run.status) == ("", 0) and START_TEXT in run.said
    assert read(learning.file("tarvyle.lrn")) == sorted(book_records * 2)
