"""Learn files made and read without the engine.

A record is 24 bytes of header, then a text that ends in a zero; the header holds, after the key's two
halves, a link, the score and the kind, the record's length, then side, depth and book flag, and the sum of
the text's bytes modulo 256.
"""

import struct

HEADER = struct.Struct("<IIIihhbbBB")
LENGTH_AT = 18
LEAST_LENGTH = HEADER.size + 2


def record(text: str, key: int = 1, score: int = 0, book: int = 1) -> bytes:
    letters = text.encode()
    return HEADER.pack(key & 0xFFFFFFFF, key >> 32, 0, score, 16, HEADER.size + len(letters) + 1, 0, 0, book,
                       sum(letters) & 0xFF) + letters + b"\0"


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


def many(count: int) -> bytes:
    """A sound learn file of so many different positions, spread over the table."""
    return b"".join(
        record(f"8/8/8/8/{'pnbrqkPNBRQK'[i % 12] * 8}/8/8/8 w - - {i}", key=i * 0x9E3779B97F4A7C15 % 2**64)
        for i in range(count))
