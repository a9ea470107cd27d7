"""Every call of the system that writes the learn file, saves or loads a game fails once, or is the last one.

Whatever fails: the program ends in its usual way. Whenever it is killed: a whole file is there.
"""

import collections

import pytest
from engine_folder import BOOK_INSTEAD
from fault_injection import TracedEngine
from positions import MATE_IN_ONE

LEARN = [f"setboard {MATE_IN_ONE}", "go", "quit"]  # adds one record to the learn file

STAYS = "it stays as it is"  # said of a learn file that could not be read

AFTER_D4, AFTER_E4 = "moves d2d4 \n", "moves e2e4 \n"


@pytest.fixture
def traced(learning):
    learning.run("quit")
    return TracedEngine(learning)


def least_calls(moments, **least: int) -> None:
    """The sweep means nothing unless it sees what it is to spoil."""
    found = collections.Counter(moment.call for moment in moments)
    for call, count in least.items():
        assert found[call] >= count, found
    print(f"\n{len(moments)} calls: {dict(found)}")


class LearnFile:
    """The learn file before the run and after an undisturbed one."""

    def __init__(self, traced: TracedEngine):
        self.folder = traced.folder
        self.path = traced.folder.file("tarvyle.lrn")
        self.old = self.path.read_bytes()
        self.moments = traced.moments(LEARN, "quit")
        self.new = self.path.read_bytes()
        assert len(self.new) > len(self.old)
        least_calls(self.moments, openat=3, write=2, fsync=1, close=3, rename=1)

    def restore(self) -> None:
        for left in self.folder.path.glob("tarvyle_tmp_lrn*"):
            left.unlink()
        self.path.write_bytes(self.old)

    def temporaries(self) -> list[str]:
        return [path.name for path in self.folder.path.glob("tarvyle_tmp_lrn*")]


def test_writing_the_learn_file_with_one_call_failing(traced):
    learn_file = LearnFile(traced)
    replaced = 0
    for moment in learn_file.moments:
        learn_file.restore()
        run = traced.fail(LEARN, moment)
        assert run.status == 0, moment
        assert learn_file.path.read_bytes() in (learn_file.old, learn_file.new), moment
        is_new = learn_file.path.read_bytes() == learn_file.new
        replaced += is_new
        assert is_new or "error write learn file" in run.stderr, moment
        if "size new file less old file" not in run.stderr:
            assert learn_file.temporaries() == [], moment
    assert 0 < replaced < len(learn_file.moments)


@pytest.mark.parametrize("call, wrong", [("fsync", "error write learn file\n"), ("rename", "?rename() \n")])
def test_what_is_said_when_the_disk_fails(traced, call, wrong):
    learn_file = LearnFile(traced)
    learn_file.restore()
    run = traced.fail(LEARN, next(moment for moment in learn_file.moments if moment.call == call))
    assert run.stderr.endswith(wrong)
    assert learn_file.path.read_bytes() == learn_file.old


def test_writing_the_learn_file_until_killed(traced):
    learn_file = LearnFile(traced)
    seen = []
    for moment in learn_file.moments:
        learn_file.restore()
        traced.kill(LEARN, moment)
        seen.append(learn_file.path.read_bytes())
        assert seen[-1] in (learn_file.old, learn_file.new), moment
    assert seen == sorted(seen, key=learn_file.old.__ne__), "first the old file, from the rename on the new one"
    assert learn_file.new in seen


def test_reading_the_learn_file_with_one_call_failing(traced):
    """It is read, or the book in its place; what could not be read is neither deleted nor replaced."""
    learn_file = LearnFile(traced)
    moments = traced.moments_of_start(["quit"], since="tarvyle.lrn")
    least_calls(moments, openat=1, read=1, close=1)
    from_book = 0
    for moment in moments:
        learn_file.path.write_bytes(learn_file.new)
        run = traced.fail(["quit"], moment)
        assert run.status == 0, moment
        assert (BOOK_INSTEAD in run.stderr) == (STAYS in run.stderr), moment
        assert ("write learn file" in run.stdout) != (STAYS in run.stderr), moment
        from_book += BOOK_INSTEAD in run.stderr
        assert learn_file.path.read_bytes() == learn_file.new, moment
        assert learn_file.temporaries() == [], moment
    assert 0 < from_book < len(moments)


def test_reading_the_book_with_one_call_failing(traced):
    """It is read as a whole, or missing: nothing is learned from a part of it."""
    learn_file = traced.folder.file("tarvyle.lrn")
    book = traced.folder.file("tarvyle.bk")
    content = book.read_bytes()
    learn_file.unlink()
    moments = traced.moments_of_start(["quit"], since="tarvyle.bk")
    whole = learn_file.read_bytes()
    least_calls(moments, openat=1, read=1, close=1)
    missing = 0
    for moment in moments:
        learn_file.unlink(missing_ok=True)
        run = traced.fail(["quit"], moment)
        missing += run.status == 1
        assert (run.status, "book file notfound  \n" in run.stderr) in ((0, False), (1, True)), moment
        assert book.read_bytes() == content, moment
        if run.status == 0:
            assert learn_file.read_bytes() == whole, moment
        else:
            assert not learn_file.exists(), moment
    assert 0 < missing < len(moments)


def test_reading_the_learn_file_until_killed(traced):
    learn_file = LearnFile(traced)
    for moment in traced.moments_of_start(["quit"], since="tarvyle.lrn"):
        learn_file.path.write_bytes(learn_file.new)
        traced.kill(["quit"], moment)
        assert learn_file.path.read_bytes() == learn_file.new, moment


# --- saved games ------------------------------------------------------------------------------------------


@pytest.fixture
def games(traced):
    """The saved games 1. d2d4, at its place, and 1. e2e4 as bytes, the run that saves it and its calls."""
    folder = traced.folder
    folder.run("force", "d2d4", "save game.dat")
    folder.run("force", "e2e4", "save other.dat")
    lines = ["force", "e2e4", "save game.dat", "getmoves", "quit"]
    old, new = folder.file("game.dat").read_bytes(), folder.file("other.dat").read_bytes()
    moments = traced.moments(lines, "save game.dat")
    assert folder.file("game.dat").read_bytes() == new
    least_calls(moments, openat=1, write=2, fsync=1, close=1, rename=1)
    return folder.file("game.dat"), old, new, lines, moments


def test_saving_with_one_call_failing(traced, games):
    path, old, new, lines, moments = games
    saved = 0
    for moment in moments:
        path.write_bytes(old)
        run = traced.fail(lines, moment)
        assert run.status == 0 and AFTER_E4 in run.stdout, moment
        saved += path.read_bytes() == new
        assert path.read_bytes() == (old if "# error write file game.dat \n" in run.stderr else new), moment
        assert not list(traced.folder.path.glob("tarvyle_save_tmp*")), moment
    assert 0 < saved < len(moments)


def test_saving_until_killed(traced, games):
    path, old, new, lines, moments = games
    seen = []
    for moment in moments:
        path.write_bytes(old)
        traced.kill(lines, moment)
        seen.append(path.read_bytes())
        assert seen[-1] in (old, new), moment
    assert old in seen


def test_loading_with_one_call_failing(traced, games):
    path, old, _, _, _ = games
    path.write_bytes(old)
    lines = ["force", "e2e4", "load game.dat", "getmoves", "quit"]
    moments = traced.moments(lines, "load game.dat")
    least_calls(moments, openat=1, read=2, close=1)
    for moment in moments:
        run = traced.fail(lines, moment)
        assert run.status == 0, moment
        assert (AFTER_E4 if "# error open file game.dat \n" in run.stderr else AFTER_D4) in run.stdout, moment
        assert path.read_bytes() == old
