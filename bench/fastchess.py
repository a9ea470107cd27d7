"""Lets fastchess, a match runner of others, play the pairs of games that uci_match.py would play by itself.

Only its lines about games are used: what they add up to is for match_statistics.py to say, so that both runners end
in the same report, and either goes on where the other one stopped.
"""

import contextlib
import os
import pathlib
import re
import shlex
import signal
import subprocess
import tempfile
from collections.abc import Iterable, Iterator

from uci_match import LONGEST, Broken, Pair, Side, TimeControl

PATIENCE = 20.0  # seconds that it has to stop the engines
POINTS = {"1-0": 1.0, "1/2-1/2": 0.5, "0-1": 0.0}
FINISHED = re.compile(r"Finished game (\d+) \((.+) vs (.+)\): (1-0|0-1|1/2-1/2) \{(.*)\}")
ENDS = (("mates", "checkmate"), ("on time", "time"), ("illegal", "illegal"), ("disconnects", "crash"),
        ("stalls", "crash"), ("stalemate", "stalemate"), ("repetition", "repetition"), ("fifty", "fifty moves"),
        ("material", "material"), ("adjudication", "too long"))


def end_of(reason: str) -> str:
    """Its reason for the end of a game in the words of uci_match.py."""
    for part, end in ENDS:
        if part in reason:
            return end
    raise Broken(f"fastchess ended a game for a reason that is not known here: {reason}")


def engine(side: Side) -> list[str]:
    words = ["-engine", f"name={side.name}", "proto=uci", f"cmd={side.command[0]}"]
    if side.command[1:]:
        words.append(f"args={shlex.join(side.command[1:])}")
    return words + [f"option.{name}={value}" for name, value in side.options.items()]


def command(runner: str, openings: str, rounds: int, new: Side, old: Side, control: TimeControl,
            concurrency: int) -> list[str]:
    return [runner, *engine(new), *engine(old), "-each", f"tc={control}",
            "-openings", f"file={openings}", "format=epd", "order=sequential", "-rounds", str(rounds), "-repeat",
            "-maxmoves", str(LONGEST // 2), "-concurrency", str(concurrency), "-force-concurrency", "-recover",
            "-ratinginterval", "0"]


def stop(process: subprocess.Popen) -> None:
    """Lets it stop its engines; what is then left of its group is killed."""
    if process.poll() is None:
        process.send_signal(signal.SIGINT)
        try:
            process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            pass
    with contextlib.suppress(ProcessLookupError):
        os.killpg(process.pid, signal.SIGKILL)
    process.wait()
    process.stdout.close()


def games(lines: Iterable[str], numbers: list[int], new: Side) -> Iterator[Pair]:
    """The pairs that its lines tell, each when its second game has ended. Games 2k-1 and 2k are played from the
    opening k, and the new engine is white in the first."""
    ended: dict[int, tuple[float, str]] = {}
    for line in lines:
        found = FINISHED.search(line)
        if not found:
            continue
        game, white, points = int(found[1]), found[2], POINTS[found[4]]
        if (white == new.name) != (game % 2 == 1):
            raise Broken(f"fastchess has changed the order of games: {line.strip()}")
        ended[game] = (points if white == new.name else 1 - points), end_of(found[5])
        first = game - 1 + game % 2
        if first in ended and first + 1 in ended:
            (one, how), (other, then) = ended[first], ended[first + 1]
            yield Pair(numbers[first // 2], (one, other), (how, then))


def pairs(runner: str, openings: Iterable[tuple[int, str]], new: Side, old: Side, control: TimeControl,
          concurrency: int) -> Iterator[Pair]:
    """As `pairs` of uci_match.py."""
    rows = list(openings)
    with tempfile.TemporaryDirectory() as folder:  # it leaves files where it runs
        book = pathlib.Path(folder, "openings.epd")
        book.write_text("".join(f"{fen}\n" for _, fen in rows), encoding="utf-8")
        process = subprocess.Popen(command(runner, str(book), len(rows), new, old, control, concurrency),
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, cwd=folder,
                                   env=new.environment(), start_new_session=True)
        said: list[str] = []

        def lines() -> Iterator[str]:
            for line in process.stdout:
                said[:] = [*said[-4:], line]
                yield line

        count = 0
        try:
            for pair in games(lines(), [number for number, _ in rows], new):
                count += 1
                yield pair
            if count < len(rows):
                raise Broken(f"fastchess stopped early: {''.join(said).strip()}")
        finally:
            stop(process)
