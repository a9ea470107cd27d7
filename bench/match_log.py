"""The pairs of games of a match: counted, and kept in a file from which the match can go on.

The file is a table with tabs. Its first line says which match it is of; each other one is a pair, written in one piece
when its second game has ended:

    number, opening (FEN), points of the new engine as white, how that game ended, points as black, how that ended
"""

import json
import os
import pathlib
from collections.abc import Sequence

from match_statistics import SCORES, elo_interval
from uci_match import Pair

FAULTS = {"time": "time forfeits", "illegal": "illegal moves", "crash": "crashes"}
FIRST = "# bench/sprt "


class Unusable(Exception):
    """A log that this match cannot go on with."""


class Tally:
    """What the pairs so far add up to, seen from the new engine."""

    def __init__(self) -> None:
        self.counts = [0] * len(SCORES)  # of pairs, by points
        self.games = {1.0: 0, 0.5: 0, 0.0: 0}
        self.faults = {end: {"new": 0, "old": 0} for end in FAULTS}

    def add(self, pair: Pair) -> None:
        self.counts[SCORES.index(sum(pair.points) / 2)] += 1
        for points, end in zip(pair.points, pair.ends):
            self.games[points] += 1
            if end in FAULTS:
                self.faults[end]["old" if points else "new"] += 1

    def score(self) -> str:
        return f"{self.games[1.0]} won, {self.games[0.5]} drawn, {self.games[0.0]} lost"

    def told_faults(self, new: str, old: str) -> str:
        """How often each side lost by a fault of its own, under these names."""
        return "; ".join(f"{FAULTS[end]}: {new} {by['new']}, {old} {by['old']}" for end, by in self.faults.items())

    def elo(self) -> str:
        if not sum(self.counts):
            return "unknown"
        elo, low, high = elo_interval(self.counts)
        return f"{elo:+.1f} ({low:+.1f} to {high:+.1f})"


def row(pair: Pair, fen: str) -> str:
    (one, other), (how, then) = pair.points, pair.ends
    return f"{pair.number}\t{fen}\t{one:g}\t{how}\t{other:g}\t{then}\n"


def parsed(line: str) -> Pair:
    """Raises ValueError."""
    number, _, one, how, other, then = line.split("\t")
    points = (float(one), float(other))
    if not set(points) <= {0.0, 0.5, 1.0}:
        raise ValueError(points)
    return Pair(int(number), points, (how, then))


class MatchLog:
    """The file. What is in it is in `pairs`."""

    def __init__(self, path: pathlib.Path, match: dict):
        self.path = path
        self.pairs: dict[int, Pair] = {}
        text = path.read_bytes().decode("utf-8", "replace") if path.exists() else ""
        whole = text[:text.rfind("\n") + 1]  # a line that was being written when all ended has no end
        if whole:
            self._check(whole.splitlines()[0], match)
            self._read(whole.splitlines()[1:])
        elif text and not FIRST.startswith(text[:len(FIRST)]):
            raise Unusable(f"{path} is no log of a match")
        self.file = path.open("a", encoding="utf-8", newline="\n")
        os.truncate(path, len(whole.encode()))
        if not whole:
            self._write(FIRST + json.dumps(match, sort_keys=True) + "\n")

    def _check(self, line: str, match: dict) -> None:
        if not line.startswith(FIRST):
            raise Unusable(f"{self.path} is no log of a match")
        try:
            before = json.loads(line.removeprefix(FIRST))
        except json.JSONDecodeError:
            raise Unusable(f"{self.path}: the first line is spoilt") from None
        other = sorted(key for key in before.keys() | match.keys() if before.get(key) != match.get(key))
        if other:
            raise Unusable(f"{self.path} is of another match ({', '.join(other)} differ): name another --log")

    def _read(self, lines: Sequence[str]) -> None:
        for number, line in enumerate(lines, 2):
            try:
                pair = parsed(line)
            except ValueError:
                raise Unusable(f"{self.path}:{number}: is no pair of games") from None
            if pair.number in self.pairs:
                raise Unusable(f"{self.path}:{number}: pair {pair.number} is there already")
            self.pairs[pair.number] = pair

    def _write(self, text: str) -> None:
        self.file.write(text)
        self.file.flush()

    def add(self, pair: Pair, fen: str) -> None:
        self.pairs[pair.number] = pair
        self._write(row(pair, fen))
