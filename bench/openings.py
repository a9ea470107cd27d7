"""Openings for matches: the lines of a book, cut after some half-moves, each position once.

    bench/openings.py [--plies N] [--seed N] [--book FILE] > openings.epd

The same seed gives the same order on every machine.
"""

import argparse
import pathlib
import random

from rules import Illegal, Position

BOOK = pathlib.Path(__file__).resolve().parents[1] / "data" / "tarvyle.bk"
PLIES = 8


def openings(book: pathlib.Path = BOOK, plies: int = PLIES, seed: int = 1) -> list[str]:
    """Positions (FEN) after so many half-moves, shuffled. Shorter lines are left out; raises ValueError."""
    lines = [line.split() for line in book.read_text(encoding="utf-8").splitlines()]
    beginnings = sorted({tuple(line[:plies]) for line in lines if line and line[0][0] != "#" and len(line) >= plies})
    found: dict[str, str] = {}
    reached = {(): Position()}
    for moves in beginnings:
        for count in range(1, plies + 1):  # lines begin alike: no beginning is played twice
            if moves[:count] not in reached:
                try:
                    reached[moves[:count]] = reached[moves[:count - 1]].take(moves[count - 1])
                except Illegal:
                    raise ValueError(f"{book}: {' '.join(moves[:count])}: the last move is not legal") from None
        position = reached[moves]
        found.setdefault(position.placement(), position.fen())
    if not found:
        raise ValueError(f"{book}: no line has {plies} half-moves")
    fens = list(found.values())
    random.Random(seed).shuffle(fens)
    return fens


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--plies", type=int, default=PLIES)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--book", type=pathlib.Path, default=BOOK)
    wanted = parser.parse_args()
    print("\n".join(openings(wanted.book, wanted.plies, wanted.seed)))


if __name__ == "__main__":
    main()
