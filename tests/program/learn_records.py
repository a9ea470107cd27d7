"""Learn files made and read without the engine.

A record is 24 bytes of header, then a text that ends in a zero; the header holds, after the key's two halves, a link
that means nothing, the score and the kind, the record's length, then side, depth and book flag, and the sum of the
text's bytes modulo 256.
"""

import dataclasses
import pathlib
import struct

from positions import MATE_IN_ONE, START

HEADER = struct.Struct("<IIIihhbbBB")
LENGTH_AT = 18
LEAST_LENGTH = HEADER.size + 2
BOOK_KIND = 16

EN_PASSANT = "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6"
ITALIAN = "r1bqk1nr/pppp1ppp/2n5/2b1p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq -"
FOUR = [START, MATE_IN_ONE, EN_PASSANT, ITALIAN]  # what the fixture `learned` has searched

# What the engine says of its learn file when it ends.
NOT_OPEN = "------> error: file_size() - file ./tarvyle.lrn not open\n"
NOT_WRITTEN = "error write learn file\n"


def written(size: int) -> str:
    return f"write learn file ./tarvyle.lrn {size} bytes \n"


@dataclasses.dataclass
class Record:
    key_lo: int
    key_hi: int
    link: int
    score: int
    kind: int
    length: int
    side: int
    depth: int
    book: int
    check: int
    text: str

    def but(self, **changed) -> "Record":
        return dataclasses.replace(self, **changed)

    def bytes(self) -> bytes:
        """The record as the engine writes it: length and check byte are those of the text."""
        text = self.text.encode() + b"\0"
        return HEADER.pack(self.key_lo, self.key_hi, 0, self.score, self.kind, HEADER.size + len(text), self.side,
                           self.depth, self.book, sum(text.split(b"\0")[0]) % 256) + text


def record(text: str, key: int = 1, score: int = 0, book: int = 1) -> bytes:
    return Record(key & 0xFFFFFFFF, key >> 32, 0, score, BOOK_KIND, 0, 0, 0, book, 0, text).bytes()


def split(content: bytes) -> list[bytes] | None:
    """The records of a learn file with zero links, in file order; None for a damaged file."""
    found = []
    while content:
        if len(content) <= HEADER.size:
            return None
        length, check = HEADER.unpack_from(content)[5], content[HEADER.size - 1]
        text = content[HEADER.size : max(length, 0)]
        if not LEAST_LENGTH <= length <= len(content) or 0 not in text or sum(text[: text.index(0)]) & 0xFF != check:
            return None
        found.append(content[:8] + bytes(4) + content[12:length])
        content = content[length:]
    return found


def read(path: pathlib.Path) -> list[bytes]:
    """The records of a sound learn file, sorted: files with the same hold the same knowledge."""
    found = split(path.read_bytes())
    assert found is not None, f"{path} is damaged"
    return sorted(found)


def parse(path: pathlib.Path) -> list[Record]:
    """The records of a sound learn file, in file order."""
    found = split(path.read_bytes())
    assert found is not None, f"{path} is damaged"
    return [Record(*HEADER.unpack_from(one), one[HEADER.size : -1].decode()) for one in found]


def many(count: int) -> bytes:
    """A sound learn file of so many different positions, spread over the table."""
    return b"".join(
        record(f"8/8/8/8/{'pnbrqkPNBRQK'[i % 12] * 8}/8/8/8 w - - {i}", key=i * 0x9E3779B97F4A7C15 % 2**64)
        for i in range(count))
