"""The learn file under attack: the program killed at any moment of writing it, every byte of it spoilt."""

import random
import time

import learn_records
import pytest
from engine_folder import BOOK_INSTEAD, EngineFolder
from learn_records import NOT_OPEN

RECORDS = 100_000
KILLS = 300
LEAST_HALF_WRITTEN = 30


# --- killed while it writes -------------------------------------------------------------------------------


def start_and_leave(folder: EngineFolder):
    """A run that has just been told to quit."""
    process = folder.started()
    process.stdin.write(b"quit\n")
    process.stdin.flush()
    return process


def end(process) -> int:
    process.communicate()
    return process.returncode


def usual_time_to_leave(folder: EngineFolder) -> float:
    times = []
    for _ in range(5):
        process = start_and_leave(folder)
        begin = time.monotonic()
        assert end(process) == 0
        times.append(time.monotonic() - begin)
    return sorted(times)[2]


def test_killed_at_random_moments_of_writing(learning):
    """The file is always the one from before or the new one. Each save turns the order inside a bucket
    round, so that the two differ, and the next save gives the first again."""
    path = learning.file("tarvyle.lrn")
    path.write_bytes(learn_records.many(RECORDS))
    assert end(start_and_leave(learning)) == 0
    one = path.read_bytes()
    assert end(start_and_leave(learning)) == 0
    other = path.read_bytes()
    assert one != other and sorted(learn_records.split(one)) == sorted(learn_records.split(other))
    assert end(start_and_leave(learning)) == 0 and path.read_bytes() == one

    longest = 1.3 * usual_time_to_leave(learning)
    dice = random.Random(9)
    replaced = half_written = 0
    for _ in range(KILLS):
        before = path.read_bytes()
        process = start_and_leave(learning)
        time.sleep(dice.uniform(0, longest))
        process.kill()
        assert end(process) in (0, -9)
        after = path.read_bytes()
        assert after in (one, other)
        replaced += after != before
        for left in learning.path.glob("tarvyle_tmp_lrn*"):
            half_written += 0 < left.stat().st_size < len(one)
            left.unlink()
        assert learning.names() == ["tarvyle.lrn"]
    print(f"\n{KILLS} kills within {longest * 1000:.0f} ms: {replaced} after the rename, "
          f"{half_written} left half a file")
    assert 0 < replaced < KILLS
    assert half_written >= LEAST_HALF_WRITTEN
    assert end(start_and_leave(learning)) == 0


# --- every byte spoilt ------------------------------------------------------------------------------------


SOUND = [
    learn_records.record("k7/8/8/8/8/8/8/7K w", key=0x1234567800005678, score=-999123),
    learn_records.record("8/8", key=0x9ABCDEF0FFFF5678, book=0),
    learn_records.record("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk", key=7, score=55),
]
CONTENT = b"".join(SOUND)


def assert_survived(folder: EngineFolder, content: bytes, book: list[bytes], what: str) -> bool:
    """Runs the engine on this learn file: it takes the records, all of them, or else the book."""
    folder.file("tarvyle.lrn").write_bytes(content)
    records = learn_records.split(content)
    run = folder.run("getboard", "quit")
    assert run.status == 0, what
    assert run.stderr == ("" if records is not None else BOOK_INSTEAD + NOT_OPEN), what
    after = learn_records.split(folder.file("tarvyle.lrn").read_bytes())
    assert after is not None and sorted(after) == (book if records is None else sorted(records)), what
    assert folder.names() == ["tarvyle.lrn"], what
    return records is not None


def test_cut_at_every_byte(learning, book_records):
    read = [assert_survived(learning, CONTENT[:size], book_records, f"{size} bytes")
            for size in range(len(CONTENT) + 1)]
    assert sum(read) == 1 + len(SOUND), "nothing, and whole records"


@pytest.mark.parametrize("mask", [0x01, 0x80, 0xFF])
def test_every_byte_flipped_in_turn(learning, book_records, mask):
    read = 0
    for at in range(len(CONTENT)):
        spoilt = CONTENT[:at] + bytes([CONTENT[at] ^ mask]) + CONTENT[at + 1:]
        read += assert_survived(learning, spoilt, book_records, f"byte {at}")
    assert 0 < read < len(CONTENT) // 2, "a spoilt text, length or check byte is found"


@pytest.mark.parametrize("place", range(len(SOUND)))
def test_every_length(learning, book_records, place):
    """Negative, zero, too small, too large, and all around the true one."""
    at = sum(map(len, SOUND[:place])) + learn_records.LENGTH_AT
    near = range(len(SOUND[place]) - 40, len(SOUND[place]) + 40)
    for length in sorted({*near, -32768, -1, 0, 1, 24, 25, 26, len(CONTENT), len(CONTENT) + 1, 32767}):
        spoilt = CONTENT[:at] + length.to_bytes(2, "little", signed=True) + CONTENT[at + 2:]
        assert_survived(learning, spoilt, book_records, f"length {length}")


def test_texts_without_an_end(learning, book_records):
    for place in range(len(SOUND)):
        spoilt = [record if i != place else record[:-1] + b"w" for i, record in enumerate(SOUND)]
        assert not assert_survived(learning, b"".join(spoilt), book_records, f"record {place}")


def test_any_bytes(learning, book_records):
    dice = random.Random(27)
    for number in range(200):
        parts = [dice.choice([*SOUND, *(dice.randbytes(dice.randrange(40)) for _ in SOUND)])
                 for _ in range(dice.randrange(5))]
        assert_survived(learning, b"".join(parts), book_records, f"number {number}")
