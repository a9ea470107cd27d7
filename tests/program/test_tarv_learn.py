"""`tarv learn` from outside: what learn files hold, damaged ones, merging, adding a book."""

import json
import os
import pathlib
import time

import pytest
from conftest import no_file_beyond
from engine_folder import BOOK_INSTEAD
from learn_records import EN_PASSANT, HEADER, ITALIAN, parse, split
from positions import MATE_IN_ONE, START, START_TEXT

# --- stats, list, export ----------------------------------------------------------------------------------


def test_stats(says, learned, write):
    write("a.lrn", learned[0].but(book=1, depth=0, score=0), learned[1], learned[3].but(book=1))
    rows = dict(line.rsplit(None, 1) for line in says("learn", "stats", "a.lrn").splitlines()[1:9])
    assert {key.strip(): int(value) for key, value in rows.items()} == {
        "records": 3, "bytes": sum(len(learned[i].bytes()) for i in (0, 1, 3)),
        "of the book": 2, "learned": 2, "of the book and learned": 1, "learned with a mate": 1, "White to move": 3,
        "Black to move": 0}


def test_stats_of_several_files(says, learned, write):
    answer = says("learn", "stats", write("a.lrn", learned[0]), write("b.lrn", *learned[1:]))
    assert answer.count("records ") == 3
    assert "all files\n  records                               4\n" in answer


def test_list_prints_epd(says, learned, write):
    write("a.lrn", learned[0].but(score=-1234, depth=9), learned[1].but(book=1), learned[2].but(score=999992, depth=7),
          learned[3].but(score=0, depth=0, book=1), learned[0].but(score=-999995))
    assert says("learn", "list", "a.lrn").splitlines() == [
        f"{START} acd 9; ce -123;",
        f'{MATE_IN_ONE} acd {learned[1].depth}; ce 32766; c0 "book";',
        f"{EN_PASSANT} acd 7; ce 32760;",
        f'{ITALIAN} c0 "book";',
        f"{START} acd 3; ce -32763;"]


@pytest.mark.parametrize("options, rows", [
    ([], [0, 1, 2]), (["--book"], [1, 2]), (["--learned"], [0, 2]), (["--book", "--learned"], [2]),
    (["--min-depth", "4"], [0]), (["--min-depth", "90"], [])])
def test_list_of_some(says, learned, write, options, rows):
    write("a.lrn", learned[0].but(depth=9), learned[2].but(depth=0, book=1), learned[3].but(book=1))
    positions = [START, EN_PASSANT, ITALIAN]
    found = [" ".join(line.split()[:4]) for line in says("learn", "list", *options, "a.lrn").splitlines()]
    assert found == [positions[row] for row in rows]


def test_export(says, learned, write, tmp_path):
    write("a.lrn", learned[0].but(score=345, depth=9), learned[3].but(book=1, depth=0, score=0))
    assert says("learn", "export", "--format", "csv", "a.lrn").splitlines() == [
        "epd,depth,centipawns,score,book", f"{START},9,34,345,0", f"{ITALIAN},0,0,0,1"]
    objects = [json.loads(line) for line in says("learn", "export", "--format", "json", "a.lrn").splitlines()]
    assert objects[0] == {"epd": START, "depth": 9, "centipawns": 34, "score": 345, "book": False}
    assert objects[1]["book"] is True
    assert says("learn", "export", "a.lrn") == says("learn", "list", "a.lrn")
    assert says("learn", "export", "--output", "out.epd", "a.lrn") == ""
    assert (tmp_path / "out.epd").read_text() == says("learn", "list", "a.lrn")


def test_an_empty_file(says, tmp_path):
    (tmp_path / "empty.lrn").write_bytes(b"")
    assert says("learn", "list", "empty.lrn") == ""
    assert says("learn", "verify", "empty.lrn") == "empty.lrn: 0 records, 0 problems\n"
    assert "records                               0\n" in says("learn", "stats", "empty.lrn")


# --- damage -----------------------------------------------------------------------------------------------

DAMAGES = {
    "cut in a text": (lambda content: content[:-5], "are left in the file"),
    "cut in a header": (lambda content: content[: len(content) - len_of_last(content) + 10], "cut short"),
    "length too small": (lambda content: patched(content, 18, b"\x19\0"), "cannot be 25"),
    "length negative": (lambda content: patched(content, 18, b"\xff\xff"), "cannot be -1"),
    "length beyond the end": (lambda content: patched(content, 18, b"\xff\x7f"), "are left in the file"),
    "letter changed": (lambda content: patched(content, 30, b"\x01"), "check byte"),
    "check byte changed": (lambda content: patched(content, 23, bytes([content[start_of_last(content) + 23] ^ 1])),
                           "check byte"),
    "text without end": (lambda content: content[:-1] + b"x", "no end"),
}


def len_of_last(content: bytes) -> int:
    return len(split(content)[-1])


def start_of_last(content: bytes) -> int:
    return len(content) - len_of_last(content)


def patched(content: bytes, offset: int, new: bytes) -> bytes:
    """The content with some bytes of its last record changed."""
    at = start_of_last(content) + offset
    return content[:at] + new + content[at + len(new) :]


@pytest.fixture(params=DAMAGES)
def damaged(request, learned, tmp_path):
    """A learn file whose fourth record is damaged, and words that tell how."""
    content = (tmp_path / "four.lrn").read_bytes()
    change, words = DAMAGES[request.param]
    (tmp_path / "bad.lrn").write_bytes(change(content))
    return start_of_last(content), words


def test_damage_is_told_and_nothing_is_lost(complains, tarv, damaged, tmp_path):
    offset, words = damaged
    told = f"bad.lrn: record 4 (byte {offset}) is damaged: "
    before = (tmp_path / "bad.lrn").read_bytes()
    good = (tmp_path / "four.lrn").read_bytes()
    (tmp_path / "new.bk").write_text("e2e4\n")
    for arguments in (["stats", "bad.lrn"], ["list", "bad.lrn"], ["export", "bad.lrn"],
                      ["export", "-o", "four.lrn", "bad.lrn"], ["merge", "bad.lrn", "four.lrn", "-o", "four.lrn"],
                      ["merge", "four.lrn", "bad.lrn", "-o", "bad.lrn"],
                      ["add-book", "new.bk", "bad.lrn"], ["analyse", "four.epd", "--depth", "2", "-o", "bad.lrn"]):
        complaint = complains("learn", *arguments)
        assert told in complaint and words in complaint
    assert (tmp_path / "bad.lrn").read_bytes() == before
    assert (tmp_path / "four.lrn").read_bytes() == good
    done = tarv("learn", "verify", "bad.lrn")
    assert done.returncode == 1
    assert told in done.stdout and done.stdout.endswith("bad.lrn: 3 records, 1 problems\n")


def test_salvage(tarv, damaged, tmp_path):
    done = tarv("learn", "merge", "--salvage", "bad.lrn", "-o", "saved.lrn")
    assert done.returncode == 0
    assert "3 records before it are taken" in done.stderr
    assert len(parse(tmp_path / "saved.lrn")) == 3


def test_the_engine_refuses_the_same_files(damaged, folder, tmp_path):
    folder.file("tarvyle.lrn").write_bytes((tmp_path / "bad.lrn").read_bytes())
    assert BOOK_INSTEAD.strip() in folder.run("quit").stderr


@pytest.mark.parametrize("path", ["none.lrn", ".", "/dev/null"])
@pytest.mark.parametrize("command", ["stats", "list", "export", "verify"])
def test_no_file(complains, command, path):
    assert f"cannot read {path}" in complains("learn", command, path)


def test_a_file_that_ends_before_its_size_says(complains):
    """As the kernel's own do; no earlier error may be told as the reason."""
    path = pathlib.Path("/sys/devices/system/cpu/online")
    if not path.is_file() or path.stat().st_size == len(path.read_bytes()):
        pytest.skip("the system shows no such file")
    told = f"tarv: cannot read {path}: it is shorter than its size says\n"
    assert complains("learn", "list", path) == told
    assert complains("learn", "merge", path, "-o", "new.lrn") == told


# --- verify -----------------------------------------------------------------------------------------------


@pytest.mark.parametrize("changed, words", [
    ({"key_lo": 1}, "key and text do not agree"),
    ({"side": 1}, "side to move and text do not agree"),
    ({"side": 2}, "side to move is 2"),
    ({"depth": -1}, "depth is -1"),
    ({"depth": 91}, "depth is 91"),
    ({"book": 2}, "book flag is 2"),
    ({"score": 1000001}, "score is 1000001"),
    ({"text": START}, f'would write the position as "{START_TEXT}"'),
    ({"text": START_TEXT + "\0x"}, "bytes behind the end"),
    ({"text": "8/8/8/8/8/8/8/8 w"}, "no chess position"),
    ({"text": "k7/9/8/8/8/8/8/K7 w"}, "no chess position"),
    ({"text": "nonsense"}, "no side to move"),
    ({"text": "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b QKqk d6"}, "would write"),
])
def test_verify_finds(tarv, learned, write, changed, words):
    write("a.lrn", learned[1], learned[0].but(**changed), learned[3])
    done = tarv("learn", "verify", "a.lrn")
    first, last = done.stdout.splitlines()
    assert first.startswith("a.lrn: record 2: ") and words in first
    assert (last, done.returncode) == ("a.lrn: 3 records, 1 problems", 1)
    assert done.stderr == "tarv: the learn files have problems\n"


def test_verify_finds_a_position_twice(tarv, learned, write):
    done = tarv("learn", "verify", write("a.lrn", learned[0], learned[1], learned[0].but(depth=9)), write("b.lrn"))
    assert done.stdout == ("a.lrn: record 3: its position was there before\na.lrn: 3 records, 1 problems\n"
                           "b.lrn: 0 records, 0 problems\n")
    assert done.returncode == 1


def test_what_the_engine_writes_is_sound(says, learning, tmp_path):
    learning.run("st 1", "e2e4", "e7e6", "force", "new", "d2d4", "go", "quit")
    path = learning.file("tarvyle.lrn")
    assert says("learn", "verify", path).endswith(" records, 0 problems\n")
    assert len(parse(path)) > 5


# --- merge ------------------------------------------------------------------------------------------------


def test_the_deepest_search_wins_and_the_book_stays(says, learned, write, tmp_path):
    one, two, three, four = learned
    write("a.lrn", one.but(depth=5, score=10), two.but(book=1, kind=16, depth=0, score=0), three.but(depth=4, score=1))
    write("b.lrn", one.but(depth=7, score=20), two.but(depth=6, score=30), three.but(depth=4, score=2), four)
    answer = says("learn", "merge", "a.lrn", "b.lrn", "--output", "all.lrn")
    assert answer == "all.lrn: 4 records, 1 of the book, from 2 files\n"
    merged = {record.text: record for record in parse(tmp_path / "all.lrn")}
    assert merged[one.text] == one.but(depth=7, score=20)
    assert merged[two.text] == two.but(depth=6, score=30, book=1, kind=16)
    assert merged[three.text] == three.but(depth=4, score=1), "of equal depths the first file's"
    assert merged[four.text] == four
    says("learn", "merge", "b.lrn", "a.lrn", "--output", "other.lrn")
    other = {record.text: record for record in parse(tmp_path / "other.lrn")}
    assert other == merged | {three.text: three.but(depth=4, score=2)}


def test_one_key_and_two_texts_stay_two(says, learned, write, tmp_path):
    write("a.lrn", learned[0], learned[0].but(text=learned[0].text.replace("QKqk", "QK")))
    says("learn", "merge", "a.lrn", "-o", "a.lrn")
    assert len(parse(tmp_path / "a.lrn")) == 2


def test_the_order_is_the_engines(says, learned, write, tmp_path):
    """Bucket by bucket, whatever order the files were in."""
    says("learn", "merge", write("a.lrn", *learned), "-o", "one.lrn")
    says("learn", "merge", write("b.lrn", *learned[2:]), write("c.lrn", *reversed(learned)), "-o", "two.lrn")
    assert (tmp_path / "one.lrn").read_bytes() == (tmp_path / "two.lrn").read_bytes()
    buckets = [record.key_lo & 0xFFFF for record in parse(tmp_path / "one.lrn")]
    assert buckets == sorted(buckets)


def test_merging_into_one_of_the_files(says, learned, write, tmp_path):
    write("a.lrn", learned[0])
    (tmp_path / "link.lrn").symlink_to("a.lrn")
    says("learn", "merge", "a.lrn", write("b.lrn", learned[1]), "-o", "link.lrn")
    assert (tmp_path / "link.lrn").is_symlink()
    assert len(parse(tmp_path / "a.lrn")) == 2


def test_an_output_that_is_none_of_the_files(complains, says, learned, write, tmp_path):
    write("old.lrn", learned[3])
    assert "is there already" in complains("learn", "merge", write("a.lrn", *learned[:2]), "-o", "old.lrn")
    assert parse(tmp_path / "old.lrn") == [learned[3]]
    says("learn", "merge", "--force", "a.lrn", "-o", "old.lrn")
    assert len(parse(tmp_path / "old.lrn")) == 2


def test_a_full_disk_leaves_the_older_file(complains, learned, write, tmp_path):
    write("a.lrn", learned[0])
    before = (tmp_path / "a.lrn").read_bytes()
    complaint = complains("learn", "merge", "a.lrn", write("b.lrn", *learned[1:]), "-o", "a.lrn",
                          preexec_fn=no_file_beyond(100))
    assert complaint == "tarv: cannot write a.lrn: File too large\n".replace("a.lrn", str(tmp_path / "a.lrn"))
    assert (tmp_path / "a.lrn").read_bytes() == before
    assert sorted(path.name for path in tmp_path.iterdir()) == ["a.lrn", "b.lrn", "four.epd", "four.lrn"]


def test_a_new_file_that_could_not_be_written_is_named_with_its_folder(complains, learned, tmp_path):
    (tmp_path / "inner").mkdir()
    complaint = complains("learn", "merge", "four.lrn", "-o", "inner/out.lrn", preexec_fn=no_file_beyond(100))
    assert complaint == f"tarv: cannot write {tmp_path}/inner/out.lrn: File too large\n"
    assert not list((tmp_path / "inner").iterdir())


@pytest.mark.parametrize("make", [
    pathlib.Path.mkdir, os.mkfifo, lambda path: path.symlink_to("/dev/null"), lambda path: path.symlink_to("."),
], ids=["folder", "pipe", "device", "link to a folder"])
def test_an_output_that_is_no_plain_file_is_left_alone(complains, learned, tmp_path, make):
    place = tmp_path / "out.lrn"
    make(place)
    before = place.lstat()
    complaint = complains("learn", "merge", "--force", "four.lrn", "-o", "out.lrn")
    assert complaint == "tarv: cannot write out.lrn: no plain file\n"
    assert (place.lstat().st_ino, place.lstat().st_mode) == (before.st_ino, before.st_mode)


def test_a_link_to_nowhere_gives_way_to_the_output(says, learned, tmp_path):
    (tmp_path / "out.lrn").symlink_to("nowhere.lrn")
    says("learn", "merge", "--force", "four.lrn", "-o", "out.lrn")
    assert not (tmp_path / "out.lrn").is_symlink() and not (tmp_path / "nowhere.lrn").exists()
    assert len(parse(tmp_path / "out.lrn")) == len(learned)


def test_the_mode_of_an_older_file_stays(says, write, learned, tmp_path):
    write("a.lrn", learned[0])
    (tmp_path / "a.lrn").chmod(0o640)
    says("learn", "merge", "a.lrn", "four.lrn", "-o", "a.lrn")
    assert (tmp_path / "a.lrn").stat().st_mode & 0o7777 == 0o640


def test_no_folder_for_the_output(complains, learned, tmp_path):
    for name in ("none/out.lrn", "none/../out.lrn"):
        assert complains("learn", "merge", "four.lrn", "-o", name) == (
            f"tarv: cannot write {name}: No such file or directory\n")
    assert not list(tmp_path.glob("out.lrn*"))


def test_the_engine_reads_what_was_merged(says, learning, tmp_path):
    """Two runs in two folders come together, and the engine goes on with both."""
    learning.run("e2e4", "quit")
    learning.file("tarvyle.lrn").rename(tmp_path / "first.lrn")
    learning.run("d2d4", "quit")
    learning.file("tarvyle.lrn").rename(tmp_path / "second.lrn")
    says("learn", "merge", "first.lrn", "second.lrn", "-o", learning.file("tarvyle.lrn"))
    merged = {record.text for record in parse(learning.file("tarvyle.lrn"))}
    first, second = ({record.text for record in parse(tmp_path / name)}
                     for name in ("first.lrn", "second.lrn"))
    assert merged == first | second and len(first & second) < min(len(first), len(second)) + 1
    run = learning.run("quit")
    assert BOOK_INSTEAD not in run.stderr
    assert {record.text for record in parse(learning.file("tarvyle.lrn"))} == merged


def test_many_records_are_fast(says, learned, tmp_path):
    count = 200_000
    text = learned[0].text.encode() + b"\0"
    header = list(HEADER.unpack(learned[0].bytes()[: HEADER.size]))
    with (tmp_path / "many.lrn").open("wb") as file:
        for i in range(count):
            header[0:2] = (i * 2654435761) & 0xFFFFFFFF, i
            file.write(HEADER.pack(*header) + text)
    begin = time.monotonic()
    assert f"{count} records" in says("learn", "merge", "many.lrn", "four.lrn", "-o", "all.lrn").replace(
        str(count + len(learned)), str(count))
    assert time.monotonic() - begin < 20


# --- add-book ---------------------------------------------------------------------------------------------


def test_add_book(says, learning, tmp_path):
    learning.run("e2e4", "quit")  # the engine answers: the position after e2e4 is learned, and of the book
    path = learning.file("tarvyle.lrn")
    before = {record.text: record for record in parse(path)}
    (tmp_path / "new.bk").write_text("# new\ne2e4 c7c5\nd2d4 d7d5 c2c4\n")
    says("learn", "add-book", "new.bk", path)
    after = {record.text: record for record in parse(path)}
    assert len(after) == len(before) + 2
    for text, record in before.items():
        assert after[text] == record
    assert {record.book for text, record in after.items() if text not in before} == {1}
    assert BOOK_INSTEAD not in learning.run("quit").stderr


def test_a_searched_position_becomes_a_book_position(says, learned, write, tmp_path):
    (tmp_path / "new.bk").write_text("e2e4 e7e5 g1f3 b8c6 f1c4 f8c5\n")
    write("a.lrn", *learned)
    says("learn", "add-book", "new.bk", "a.lrn")
    after = {record.text: record for record in parse(tmp_path / "a.lrn")}
    assert after[learned[3].text] == learned[3].but(book=1, kind=16)
    assert after[learned[0].text] == learned[0]


def test_replacing_the_book(says, learned, write, tmp_path):
    one, two, three, _ = learned
    write("a.lrn", one.but(book=1), two.but(book=1, depth=0, score=0), three)
    (tmp_path / "new.bk").write_text("e2e4\n")
    assert says("learn", "add-book", "--replace", "new.bk", "a.lrn") == (
        "a.lrn: 3 records before, 3 now, 1 of the book (2 before)\n")
    after = {record.text: record for record in parse(tmp_path / "a.lrn")}
    assert after[one.text] == one.but(book=0) and after[three.text] == three and two.text not in after


def test_a_bad_book_changes_nothing(complains, learned, tmp_path):
    before = (tmp_path / "four.lrn").read_bytes()
    (tmp_path / "bad.bk").write_text("# one\ne2e4\ne2e4 e2e4\n")
    complaint = complains("learn", "add-book", "bad.bk", "four.lrn")
    assert "bad.bk: line 2 (line 3 of the file): e2e4 is no legal move there" in complaint
    assert "none.bk" in complains("learn", "add-book", "none.bk", "four.lrn")
    (tmp_path / "good.bk").write_text("e2e4\n")
    assert "none.lrn" in complains("learn", "add-book", "good.bk", "none.lrn")
    assert (tmp_path / "four.lrn").read_bytes() == before
