"""Saved games spoilt at every byte: refused, with the game untouched, or usable in every way."""

import random
import struct

import pytest
from game_files import MOVES, SIZE
from talk import Talk

GAME = ["e2e4", "d7d5", "e4d5", "d8d5", "b1c3", "d5a5", "g1f3", "c8g4", "f1e2", "g4f3", "e2f3"]
NEXT = "e7e6"
SEARCHED = 20  # a search follows in one accepted game of so many
KEPT = 3  # taken back before saving
WORDS = [-1, 0, 1, 63, 64, 255, 0x7FFFFFFF, -0x80000000]
RANDOM_CHANGES = 5000
REFUSED = "# error open file bad.dat \n"


class Loader(Talk):
    """A running engine that is given one spoilt file after the other."""

    def __init__(self, folder):
        taken_back = ["undo"] * KEPT
        folder.run("force", *GAME, *taken_back, "save game.dat")
        self.good = folder.file("game.dat").read_bytes()
        self.bad = folder.file("bad.dat").open("wb", buffering=0)  # kept open: emptying it each time is slow
        super().__init__(folder, xboard=False)
        self.ask("force")
        self.accepted = 0
        self.moves = "moves " + " ".join(GAME[:-KEPT]) + " "

    def __exit__(self, *_) -> None:
        super().__exit__()
        self.bad.close()

    def load(self, content: bytes, what: object) -> bool:
        """Whether the file is accepted; an accepted game is taken back, replayed and gone on with."""
        self.bad.seek(0)
        self.bad.write(content)
        self.bad.truncate()
        said = self.ask("load game.dat", "load bad.dat", "getmoves")
        if REFUSED in self.complaints():
            assert self.moves in said, what
            return False
        self.accepted += 1
        search = ["go", "force"] if self.accepted % SEARCHED == 1 else []
        self.ask("redo", "undo", "up", "pos", "test", "end", "score", NEXT, *search)
        return True


@pytest.fixture
def loader(folder):
    with Loader(folder) as loader:
        assert loader.load(loader.good, "the sound file")
        yield loader
        loader.leave()


@pytest.mark.parametrize("mask", [0x01, 0xFF])
def test_every_byte_flipped_in_turn(loader, mask):
    accepted = 0
    for at in range(SIZE):
        content = bytearray(loader.good)
        content[at] ^= mask
        accepted += loader.load(bytes(content), at)
    print(f"\nmask {mask:02x}: {accepted} of {SIZE} accepted")
    assert 0 < accepted < SIZE


def test_every_word_replaced(loader):
    for at in range(0, SIZE, 4):
        for word in WORDS if at < MOVES + 4 * 40 else WORDS[:2]:  # the position and the moves played
            loader.load(loader.good[:at] + struct.pack("<i", word) + loader.good[at + 4:], (at, word))


def test_cut_at_every_byte(loader):
    for size in range(SIZE):
        assert not loader.load(loader.good[:size], size)


def test_several_changes_at_once(loader):
    dice = random.Random(7)
    for number in range(RANDOM_CHANGES):
        content = bytearray(loader.good)
        for _ in range(dice.randrange(1, 6)):
            at = dice.randrange(dice.choice([40, MOVES, SIZE]))
            content[at] = dice.choice([0, 1, dice.randrange(256), 255])
        loader.load(bytes(content), number)
