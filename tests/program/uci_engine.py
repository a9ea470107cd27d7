"""An engine behind pipes that speaks the Universal Chess Interface: lines out, lines in, and how long they took."""

import dataclasses
import queue
import re
import subprocess
import threading
import time

from conftest import engine_environment, sanitized

PATIENCE = 60.0  # seconds for any answer: sanitizers on a busy machine are slow
SLOW = 10 if sanitized() else 1  # how much longer things may take than with a release

INFO = re.compile(r"info depth (\d+) score (cp -?\d+|mate -?\d+) nodes (\d+) nps \d+ time (\d+) "
                  r"hashfull (\d+) pv((?: [a-h][1-8][a-h][1-8][nbrq]?)+)")
EFFORT = re.compile(r"info nodes (\d+) nps \d+ time (\d+) hashfull \d+")
PROGRESS = re.compile(r"info depth \d+(?: currmove [a-h][1-8][a-h][1-8][nbrq]? currmovenumber \d+)? nodes \d+ nps \d+ "
                      r"time \d+ hashfull \d+")


@dataclasses.dataclass
class Line:
    """One line of thinking."""

    depth: int
    score: str
    nodes: int
    time: int
    hashfull: int
    pv: str


@dataclasses.dataclass
class Thought:
    """What one "go" brought."""

    move: str
    lines: list[Line]
    strings: list[str]  # of "info string"
    seconds: float
    nodes: int  # of the whole search; 0 when there was none
    progress: int  # lines that tell how far it is

    def signature(self) -> list[tuple]:
        """What a search that is repeated gives again."""
        return [(line.depth, line.score, line.nodes, line.pv) for line in self.lines]


def centipawns(score: int) -> str:
    """A score of the engine (1/1000 pawn, no mate) in the protocol's words."""
    return f"cp {abs(score) // 10 * (1 if score > 0 else -1)}"


class UciEngine:
    def __init__(self, command, **options):
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        options = {"env": engine_environment()} | options
        self.process = subprocess.Popen([str(word) for word in command], text=True, bufsize=1, **pipes, **options)
        self.heard: queue.Queue = queue.Queue()
        self.said: list[str] = []
        self.listener = threading.Thread(target=self._listen, daemon=True)
        self.listener.start()

    def _listen(self) -> None:
        for line in self.process.stdout:
            self.heard.put((line.rstrip("\n"), time.monotonic()))
        self.heard.put((None, time.monotonic()))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        for pipe in (self.process.stdin, self.process.stdout, self.process.stderr):
            try:
                pipe.close()
            except BrokenPipeError:
                pass

    def send(self, *lines: str) -> float:
        """Sends the lines at once; when."""
        when = time.monotonic()
        self.process.stdin.write("".join(f"{line}\n" for line in lines))
        self.process.stdin.flush()
        return when

    def hear(self, patience: float = PATIENCE) -> tuple[str | None, float]:
        """The next line and when it came; None at the end of the output."""
        line, when = self.heard.get(timeout=patience)
        if line is not None:
            self.said.append(line)
        return line, when

    def silent(self, seconds: float) -> bool:
        """Whether nothing comes for so long."""
        try:
            self.hear(seconds)
        except queue.Empty:
            return True
        return False

    def until(self, start: str, patience: float = PATIENCE) -> tuple[list[str], float]:
        """The lines up to the one that begins so, and when that came."""
        lines = []
        while True:
            line, when = self.hear(patience)
            assert line is not None, f"the engine ended: {lines[-5:]}"
            lines.append(line)
            if line.split(" ")[0] == start:
                return lines, when

    def ask(self, *lines: str) -> list[str]:
        """What is answered to these lines before the answer to "isready"."""
        self.send(*lines, "isready")
        return self.until("readyok")[0][:-1]

    def position(self) -> str:
        """The engine's text of the position on its board."""
        return self.ask("d")[-1].removeprefix("text:  ")

    def thought(self, began: float) -> Thought:
        """Waits for the best move."""
        lines, when = self.until("bestmove")
        parsed = [Line(int(m[1]), m[2], int(m[3]), int(m[4]), int(m[5]), m[6].strip())
                  for m in map(INFO.fullmatch, lines) if m]
        strings = [line.removeprefix("info string ") for line in lines if line.startswith("info string ")]
        efforts = [int(m[1]) for m in map(EFFORT.fullmatch, lines) if m]
        assert len(efforts) == 1 or (not parsed and not efforts), lines
        progress = [line for line in lines if PROGRESS.fullmatch(line)]
        rest = [line for line in lines[:-1] if not INFO.fullmatch(line) and not EFFORT.fullmatch(line)
                and not PROGRESS.fullmatch(line) and not line.startswith("info string ")]
        assert rest in ([], ["info depth 0 score mate 0"], ["info depth 0 score cp 0"]), rest
        move = re.fullmatch(r"bestmove ([a-h][1-8][a-h][1-8][nq]?|0000)", lines[-1])
        assert move, lines[-1]
        return Thought(move[1], parsed, strings, when - began, sum(efforts), len(progress))

    def go(self, limits: str, position: str = "") -> Thought:
        """Searches the position, if one is given, within the limits."""
        if position:
            self.send(f"position {position}")
        return self.thought(self.send(f"go {limits}".strip()))

    def quit(self, *lines: str) -> tuple[int, str]:
        """Sends the lines and "quit"; exit status and standard error."""
        self.send(*lines, "quit")
        return self.end()

    def end(self) -> tuple[int, str]:
        """Closes the input and waits for the end; exit status and standard error."""
        self.process.stdin.close()
        status = self.process.wait(PATIENCE)
        return status, self.process.stderr.read()
