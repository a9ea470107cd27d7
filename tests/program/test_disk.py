"""What a program has written is on the disk itself before it counts: a crash of the system, a power cut, leaves the
old file or the new one, and of a long analysis every record that was told of.

No test can cut the power. A library is preloaded that logs what is brought to the disk, and the renaming of files.
"""

import dataclasses
import pathlib

import pytest
from conftest import engine_environment
from learn_records import FOUR, split
from positions import MATE_IN_ONE


@dataclasses.dataclass
class Entry:
    """One call, by the names of the files in their folders."""

    call: str
    size: int
    names: list[str]


class Disk:
    """Where the log goes, and what it holds."""

    def __init__(self, library: pathlib.Path, log: pathlib.Path):
        self.log = log
        self.environment = {"LD_PRELOAD": str(library), "DISK_LOG": str(log)}

    def entries(self) -> list[Entry]:
        found = []
        for line in self.log.read_text().splitlines():
            call, size, *paths = line.split(" ")
            found.append(Entry(call, int(size), [pathlib.Path(path).name for path in paths]))
        return found

    def check_replaced(self, name: str, size: int) -> list[Entry]:
        """One file got this name, and it was on the disk as it is now; what was logged after that."""
        entries = self.entries()
        renames = [i for i, entry in enumerate(entries) if entry.call == "rename" and entry.names[1] == name]
        assert len(renames) == 1, entries
        at = renames[0]
        temporary = entries[at].names[0]
        synced = [entry.size for entry in entries[:at] if entry.call == "fsync" and entry.names == [temporary]]
        assert entries[at].size == size
        assert synced[-1:] == [size], entries
        return entries[at + 1:]


@pytest.fixture
def disk(disk_log, tmp_path) -> Disk:
    return Disk(disk_log, tmp_path / "disk.log")


@pytest.fixture
def logged(disk, learning):
    """Runs the engine, watched."""

    def run(*lines: str):
        environment = learning.environment(step_ms=10_000)
        environment |= disk.environment | {
            "LD_PRELOAD": f"{environment['LD_PRELOAD']}:{disk.environment['LD_PRELOAD']}"}
        done = learning.run(*lines, env=environment)
        assert done.status == 0
        return done

    return run


def size_of(path: pathlib.Path) -> int:
    size = path.stat().st_size
    assert size > 0
    return size


@pytest.mark.parametrize("before", ["nothing", "a learn file"])
def test_the_learn_file_is_on_the_disk_before_it_replaces_the_old_one(disk, learning, logged, before):
    if before == "a learn file":
        learning.run("quit")
    logged(f"setboard {MATE_IN_ONE}", "go", "quit")
    disk.check_replaced("tarvyle.lrn", size_of(learning.file("tarvyle.lrn")))


@pytest.mark.parametrize("before", ["nothing", "a game"])
def test_a_saved_game_is_on_the_disk_before_it_replaces_the_old_one(disk, learning, logged, before):
    if before == "a game":
        learning.run("force", "d2d4", "save game.dat")
    logged("force", "e2e4", "save game.dat", "quit")
    disk.check_replaced("game.dat", size_of(learning.file("game.dat")))


@pytest.fixture
def watched(disk, tarv):
    """Runs the workbench, watched."""

    def run(*arguments, **options):
        done = tarv(*arguments, env=engine_environment() | disk.environment, **options)
        assert (done.stderr, done.returncode) == ("", 0)

    return run


def test_merged_learn_files_are_on_the_disk_before_they_replace_the_old_one(disk, watched, learned, write, tmp_path):
    write("a.lrn", *learned[:2])
    write("b.lrn", *learned[2:])
    watched("learn", "merge", "a.lrn", "b.lrn", "-o", "a.lrn")
    after = disk.check_replaced("a.lrn", size_of(tmp_path / "a.lrn"))
    assert [(entry.call, entry.names) for entry in after] == [("fsync", [tmp_path.name])], "the new name lasts too"


def test_each_record_of_an_analysis_is_on_the_disk_before_the_next_search(disk, watched, tmp_path):
    (tmp_path / "four.epd").write_text("\n".join(FOUR) + "\n")
    watched("learn", "analyse", "four.epd", "--depth", 2, "-o", "new.lrn")
    records = split((tmp_path / "new.lrn").read_bytes())
    grown = [sum(map(len, records[:count])) for count in range(1, len(FOUR) + 1)]
    assert len(records) == len(FOUR)
    assert [(entry.call, entry.size, entry.names) for entry in disk.entries()] == [
        ("fdatasync", size, ["new.lrn"]) for size in grown]


def test_an_analysis_that_improves_records_puts_them_together_on_the_disk(disk, watched, learned, write, tmp_path):
    write("four.lrn", *learned)
    watched("learn", "analyse", "four.epd", "--depth", 4)
    disk.check_replaced("four.lrn", size_of(tmp_path / "four.lrn"))
