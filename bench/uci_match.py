"""Plays games between two engines that speak UCI, by pipes: a pair of games from each opening, with colours changed.

The judge is rules.py. A side that answers too late, with an illegal move or not at all has lost, and is started again
for the next game.
"""

from __future__ import annotations

import dataclasses
import os
import queue
import re
import subprocess
import threading
import time
from collections.abc import Iterable, Iterator

from rules import Board, Illegal

LONGEST = 400  # half-moves after the opening; then the game is drawn, "too long"
PATIENCE = 20.0  # seconds for an answer that is not a move
LOST = {"time", "illegal", "crash"}  # ends of a game by a fault of the side that lost


class Broken(Exception):
    """An engine that does not do what a match needs: nothing to be counted as a result."""


class Gone(Exception):
    """The engine has ended."""


class Late(Exception):
    """The engine has not answered in time."""


@dataclasses.dataclass(frozen=True)
class TimeControl:
    """So many seconds for so many moves (0: for the game), and so many more after each move."""

    moves: int
    seconds: float
    increment: float

    @staticmethod
    def parse(text: str) -> TimeControl:
        """[MOVES/]SECONDS[+INCREMENT]; raises ValueError."""
        found = re.fullmatch(r"(?:(\d+)/)?(\d+(?:\.\d+)?)(?:\+(\d+(?:\.\d+)?))?", text)
        if not found or float(found[2]) <= 0 or found[1] is not None and int(found[1]) == 0:
            raise ValueError(f"{text} is not [MOVES/]SECONDS[+INCREMENT]")
        return TimeControl(int(found[1] or 0), float(found[2]), float(found[3] or 0))

    def __str__(self) -> str:
        return (f"{self.moves}/" if self.moves else "") + f"{self.seconds:g}+{self.increment:g}"


@dataclasses.dataclass
class Side:
    """An engine as it is to be started: a name, a command, options by name, and the folder to work in. It finds no
    files of the user's, and programs also where Debian puts games."""

    name: str
    command: list[str]
    options: dict[str, str]
    folder: str

    def environment(self) -> dict[str, str]:
        kept = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
        return kept | {"HOME": self.folder, "PATH": os.environ.get("PATH", "") + ":/usr/games"}


@dataclasses.dataclass
class Pair:
    """Two games from one opening: what they brought the new engine, white first, and how they ended."""

    number: int
    points: tuple[float, float]
    ends: tuple[str, str]


class Clock:
    """What is left to white and black, in seconds."""

    def __init__(self, control: TimeControl):
        self.control = control
        self.left = [control.seconds] * 2
        self.made = [0, 0]

    def limits(self, side: int) -> str:
        white, black = (max(int(left * 1000), 1) for left in self.left)
        increment = int(self.control.increment * 1000)
        text = f"wtime {white} btime {black} winc {increment} binc {increment}"
        if self.control.moves:
            text += f" movestogo {self.control.moves - self.made[side] % self.control.moves}"
        return text

    def press(self, side: int, seconds: float) -> bool:
        """Whether the move came in time."""
        self.left[side] -= seconds
        if self.left[side] < 0:
            return False
        self.made[side] += 1
        self.left[side] += self.control.increment
        if self.control.moves and self.made[side] % self.control.moves == 0:
            self.left[side] += self.control.seconds
        return True


class Engine:
    """A process of an engine, ready to play. To be closed."""

    def __init__(self, side: Side):
        self.side = side
        try:
            self.process = subprocess.Popen(side.command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=1,
                                            stderr=subprocess.DEVNULL, text=True, errors="replace",
                                            env=side.environment(), cwd=side.folder, start_new_session=True)
        except OSError as error:
            raise Broken(f"{side.command[0]}: {error.strerror}") from None
        self.heard: queue.Queue = queue.Queue()
        threading.Thread(target=self._listen, daemon=True).start()
        try:
            self.say("uci")
            offered = self.until("uciok", PATIENCE)
            self.offered = {found[1] for found in (re.match(r"option name (.+?) type ", line) for line in offered)
                            if found}
            for name, value in side.options.items():
                self.say(f"setoption name {name} value {value}")
            self.ready()
        except (Gone, Late):
            self.close()
            raise Broken(f"{side.name} ({' '.join(side.command)}) does not answer as a UCI engine") from None

    def _listen(self) -> None:
        for line in self.process.stdout:
            self.heard.put((line.strip(), time.monotonic()))
        self.heard.put((None, time.monotonic()))

    def say(self, line: str) -> float:
        """Sends a line; when."""
        when = time.monotonic()
        try:
            self.process.stdin.write(line + "\n")
            self.process.stdin.flush()
        except (BrokenPipeError, ValueError):
            raise Gone from None
        return when

    def hear(self, deadline: float) -> tuple[str, float]:
        try:
            line, when = self.heard.get(timeout=max(deadline - time.monotonic(), 0.001))
        except queue.Empty:
            raise Late from None
        if line is None:
            raise Gone
        return line, when

    def until(self, word: str, seconds: float) -> list[str]:
        """The lines up to the one that begins so."""
        lines, deadline = [], time.monotonic() + seconds
        while not lines or lines[-1].split(" ")[0] != word:
            lines.append(self.hear(deadline)[0])
        return lines

    def ready(self) -> None:
        self.say("isready")
        self.until("readyok", PATIENCE)

    def move(self, position: str, limits: str, seconds: float) -> tuple[str, float]:
        """The move it answers with, and after how many seconds. Raises Late soon after the time it has."""
        self.say(position)
        began = self.say(f"go {limits}")
        while True:
            line, when = self.hear(began + seconds + 0.1)
            words = line.split()
            if words[:1] == ["bestmove"]:
                return " ".join(words[1:2]), when - began

    def close(self) -> None:
        try:
            self.process.stdin.write("quit\n")
            self.process.stdin.close()
        except (OSError, ValueError):
            pass
        try:
            self.process.wait(0.5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()


def play(players: tuple[Engine, Engine], fen: str, control: TimeControl) -> tuple[float, str]:
    """One game, white first: white's points, and how it ended."""
    board, clock, side = Board(fen), Clock(control), 0
    try:
        for side, player in enumerate(players):
            player.say("ucinewgame")
            player.ready()
        side = 0 if board.position.white else 1
        while not (end := board.over()):
            if len(board.moves) >= LONGEST:
                return 0.5, "too long"
            moves = " moves " + " ".join(board.moves) if board.moves else ""
            text, seconds = players[side].move(f"position fen {fen}{moves}", clock.limits(side), clock.left[side])
            if not clock.press(side, seconds):
                raise Late
            board.play(text)
            side = 1 - side
    except (Late, Illegal, Gone) as fault:
        return float(side), {Late: "time", Illegal: "illegal", Gone: "crash"}[type(fault)]
    return (float(side) if end == "checkmate" else 0.5), end


class Table:
    """Where the two engines meet, again and again. To be closed, by whichever thread."""

    def __init__(self, new: Side, old: Side):
        self.sides = (new, old)
        self.engines: list[Engine | None] = [None, None]
        self.closed = False
        self.lock = threading.Lock()  # starting engines, and closing

    def seated(self) -> list[Engine]:
        """Both engines, started again where one has left."""
        with self.lock:
            for which, side in enumerate(self.sides):
                if self.closed:
                    raise Broken("the match has been stopped")
                self.engines[which] = self.engines[which] or Engine(side)
            return list(self.engines)

    def game(self, fen: str, control: TimeControl, new_is_white: bool) -> tuple[float, str]:
        """The new engine's points, and how it ended."""
        new, old = self.seated()
        points, end = play((new, old) if new_is_white else (old, new), fen, control)
        points = points if new_is_white else 1 - points
        if end in LOST:
            self.leave(0 if points == 0 else 1)
        return points, end

    def leave(self, which: int) -> None:
        engine, self.engines[which] = self.engines[which], None
        if engine:
            engine.close()

    def close(self) -> None:
        with self.lock:
            self.closed = True
            for which in range(2):
                self.leave(which)

    def pair(self, number: int, fen: str, control: TimeControl) -> Pair:
        (first, one), (second, other) = self.game(fen, control, True), self.game(fen, control, False)
        return Pair(number, (first, second), (one, other))


def offered(side: Side) -> set[str]:
    """The names of the options that an engine offers; raises Broken when it does not speak UCI."""
    engine = Engine(dataclasses.replace(side, options={}))
    engine.close()
    return engine.offered


def pairs(openings: Iterable[tuple[int, str]], new: Side, old: Side, control: TimeControl,
          concurrency: int) -> Iterator[Pair]:
    """Plays a pair from each opening (with its number), several at once, and gives each when it has ended. Closing the
    iterator stops all; what was being played is lost. Raises Broken."""
    waiting, lock, done = iter(openings), threading.Lock(), queue.Queue()
    tables = [Table(new, old) for _ in range(concurrency)]
    stopped = threading.Event()

    def work(table: Table) -> None:
        try:
            while not stopped.is_set():
                with lock:
                    number, fen = next(waiting, (None, ""))
                if number is None:
                    break
                done.put(table.pair(number, fen, control))
            done.put(None)
        except BaseException as error:  # told to whoever waits
            done.put(error)

    workers = [threading.Thread(target=work, args=[table], daemon=True) for table in tables]
    for worker in workers:
        worker.start()
    try:
        ended = 0
        while ended < len(workers):
            result = done.get()
            if isinstance(result, BaseException):
                raise result
            if result is None:
                ended += 1
            else:
                yield result
    finally:
        stopped.set()
        for table in tables:
            table.close()
        for worker in workers:
            worker.join(PATIENCE)
