"""Saved games from outside: the file's form, the names, and files that are refused."""

import os
import struct
import subprocess

import pytest
from conftest import no_file_beyond
from game_files import GAME_LEN, GAME_MAX, MOVES, SCORES, SIZE, TYPED
from positions import AFTER_D4_TEXT, BEFORE_ONE_REPLY, START_TEXT


def not_opened(name: str) -> str:
    return f"# error open file {name} \n"


def not_written(name: str) -> str:
    return f"# error write file {name} \n"


def word(image: bytes, at: int) -> int:
    return struct.unpack_from("<i", image, at)[0]


@pytest.fixture
def saved(folder):
    """A folder with the saved game 1. d2d4 in it."""
    assert folder.run("force", "d2d4", "save game.dat").complaints == ""
    return folder


def test_the_file_is_the_record(saved):
    image = saved.file("game.dat").read_bytes()
    assert len(image) == SIZE
    assert word(image, 0) == 11
    assert (word(image, GAME_LEN), word(image, GAME_MAX)) == (1, 1)
    origin, target = 51, 35  # d2, d4
    assert word(image, MOVES) == origin << 6 | target | 1 << 12
    assert word(image, SCORES) == TYPED
    assert saved.names() == ["game.dat"]


def test_saving_twice_gives_the_same_bytes(saved):
    saved.run("load game.dat", "save again.dat")
    assert saved.file("again.dat").read_bytes() == saved.file("game.dat").read_bytes()


def test_save_and_load_without_a_name(folder):
    run = folder.run("force", "d2d4", "save", "new", "load", "getboard")
    assert (run.said, run.complaints) == (f"position {AFTER_D4_TEXT}\n", "")
    assert folder.names() == ["tarvyle_save_game.dat"]


def test_the_last_name_is_remembered(folder):
    run = folder.run("save a.dat", "force", "d2d4", "save", "save b.dat", "new", "load", "getmoves", "load a.dat",
                     "getmoves", "force", "d7d5", "save", "new", "load", "getmoves")
    assert (run.said, run.complaints) == ("moves d2d4 \nmoves d2d4 \nmoves d2d4 d7d5 \n", "")
    assert folder.names() == ["a.dat", "b.dat"]


def test_a_failed_name_is_not_remembered(saved):
    run = saved.run("load game.dat", "load none.dat", "save no/where.dat", "new", "load", "getmoves")
    assert run.said == "moves d2d4 \n"
    assert run.complaints == not_opened("none.dat") + not_written("no/where.dat")


def test_taken_back_moves_are_saved_with_the_game(folder):
    run = folder.run("force", "e2e4", "e7e5", "undo", "save", "new", "load", "getmoves", "redo", "getmoves", "redo")
    assert (run.said, run.complaints) == ("moves e2e4 \nmoves e2e4 e7e5 \n", "")


def test_a_loaded_game_goes_on(saved):
    run = saved.run("load game.dat", "force", "d7d5", "up", "getboard", "end", "getmoves", "undo", "getboard")
    assert run.said == f"position {START_TEXT}\nmoves d2d4 d7d5 \nposition {AFTER_D4_TEXT}\n"


def test_the_machine_plays_on_in_a_loaded_game(folder):
    run = folder.run("force", f"setboard {BEFORE_ONE_REPLY}", "b3b2", "save", "new", "load", "xboard", "go")
    assert run.said.endswith("move a1b2\n")


@pytest.mark.parametrize("content", [
    lambda image: b"",
    lambda image: image[: SIZE - 1],
    lambda image: b"\x0a" + image[1:],
    lambda image: b"\0" * SIZE,
    lambda image: b"\x0b\0\0\0" + b"\0" * (SIZE - 4),
    lambda image: b"\x0b\0\0\0" + b"\xff" * (SIZE - 4),
    lambda image: image[:GAME_LEN] + b"\2" + image[GAME_LEN + 1 :],
    lambda image: image[:4] + b"\7" + image[5:],
], ids=["empty", "short", "tag 10", "zeros", "tag and zeros", "tag and ones", "length beyond", "piece 7"])
def test_refused_files_leave_the_game(saved, content):
    saved.file("bad.dat").write_bytes(content(saved.file("game.dat").read_bytes()))
    run = saved.run("force", "e2e4", "e7e5", "undo", "load bad.dat", "getmoves", "redo", "getmoves")
    assert run.said == "moves e2e4 \nmoves e2e4 e7e5 \n"
    assert run.complaints == not_opened("bad.dat")


def test_a_longer_file_is_accepted(saved):
    with saved.file("game.dat").open("ab") as file:
        file.write(b"more")
    assert saved.run("load game.dat", "getmoves").said == "moves d2d4 \n"


def test_a_missing_file_and_a_folder(folder):
    folder.file("inner").mkdir()
    run = folder.run("load none.dat", "load inner", "load", "save inner", "save inner/x/y")
    assert run.said == ""
    assert run.complaints == (not_opened("none.dat") + not_opened("inner") + not_opened("./tarvyle_save_game.dat")
                              + not_written("inner") + not_written("inner/x/y"))


def test_a_full_disk_leaves_no_half_file(folder):
    """A limit on file sizes stands for the full disk."""
    run = folder.run("save new.dat", "getboard", preexec_fn=no_file_beyond(SIZE - 1))
    assert (run.said, run.complaints) == (f"position {START_TEXT}\n", not_written("new.dat"))
    assert run.status == 0
    assert folder.names() == []


def test_a_full_disk_leaves_the_older_game(saved):
    before = saved.file("game.dat").read_bytes()
    run = saved.run("force", "e2e4", "save game.dat", "new", "load game.dat", "getmoves",
                    preexec_fn=no_file_beyond(SIZE - 1))
    assert (run.said, run.complaints) == ("moves d2d4 \n", not_written("game.dat"))
    assert saved.file("game.dat").read_bytes() == before
    assert saved.names() == ["game.dat"]


def test_a_full_device_is_reported(folder):
    folder.file("full.dat").symlink_to("/dev/full")
    run = folder.run("save full.dat")
    assert run.complaints == not_written("full.dat")
    assert folder.file("full.dat").is_symlink()


def test_a_killed_program_leaves_a_whole_game(saved):
    """Whenever the program is killed, the file is one of the two games that were saved under its name."""
    first = saved.file("game.dat").read_bytes()
    saved.run("force", "e2e4", "save other.dat")
    second = saved.file("other.dat").read_bytes()
    swap = b"load first.dat\nsave game.dat\nload second.dat\nsave game.dat\n"
    saved.file("first.dat").write_bytes(first)
    saved.file("second.dat").write_bytes(second)
    for kill_after in range(0, 40, 4):
        with saved.started(stderr=subprocess.DEVNULL, bufsize=0) as process:
            os.set_blocking(process.stdin.fileno(), False)
            process.stdin.write(swap * 200)
            try:
                process.wait(kill_after / 1000)
            except subprocess.TimeoutExpired:
                pass
            process.kill()
        assert saved.file("game.dat").read_bytes() in (first, second)
