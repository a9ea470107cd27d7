"""Runs of the engine in which one chosen system call fails, or in which it is killed at one: by strace.

A plain run is recorded first; its calls between two moments of the input are the ones to spoil.
"""

import collections
import dataclasses
import re
import shutil
import signal
import subprocess

from conftest import engine_environment, require, sanitized, skip_or_fail
from engine_folder import TIMEOUT_SECONDS, EngineFolder, Run

CALLS = "openat,access,write,fsync,close,rename,unlink,newfstatat,lseek,read,readlink,fcntl"
CALL = re.compile(r"(\w+)\(")

# What each call may fail with on a disk that is full, broken, or not ours.
ERRORS = collections.defaultdict(lambda: "EIO", openat="EACCES", write="ENOSPC", rename="EACCES", unlink="EACCES",
                                 newfstatat="EACCES", access="EACCES", readlink="EACCES")


@dataclasses.dataclass(frozen=True)
class Moment:
    """One call of a run: the n-th of its name."""

    call: str
    number: int
    text: str  # the call as strace shows it

    def __str__(self) -> str:
        return f"{self.call} {self.number}: {self.text}"


class TracedEngine:
    def __init__(self, folder: EngineFolder):
        self.folder = folder
        shutil.copy(folder.engine, folder.file("tarvyle"))
        # In one piece: how often a pipe is read must not depend on who is faster.
        folder.write_lister(r"printf '    PID TTY          TIME CMD\n   1000 pts/0    00:00:00 tarvyle\n'")
        self.log = folder.path.parent / "calls.log"
        require("strace")
        self.strace = shutil.which("strace")
        if subprocess.run([self.strace, "-o", self.log, "true"], capture_output=True, check=False).returncode != 0:
            skip_or_fail("strace may not trace")

    def run(self, lines: list[str], *options: str) -> Run:
        environment = self.folder.environment(step_ms=10_000)
        if sanitized():
            environment["ASAN_OPTIONS"] += ":detect_leaks=0"  # finding leaks is itself a kind of tracing
        given = [argument for name in ("LD_PRELOAD", "FIXED_TIME_STEP_MS", "ASAN_OPTIONS") if name in environment
                 for argument in ("-E", f"{name}={environment[name]}")]
        done = subprocess.run(
            [self.strace, "-o", self.log, "-e", f"trace={CALLS}", "-e", "signal=none", *options, *given, "./tarvyle"],
            cwd=self.folder.path, env=engine_environment() | {"PATH": environment["PATH"]},
            input="".join(f"{line}\n" for line in lines), capture_output=True, text=True, encoding="latin-1",
            timeout=TIMEOUT_SECONDS, check=False)
        return Run(done.stdout, done.stderr, done.returncode)

    def calls(self, lines: list[str]) -> list[Moment]:
        """All calls of a plain run."""
        assert self.run(lines).status == 0
        counts: collections.Counter[str] = collections.Counter()
        found = []
        for entry in self.log.read_text(errors="replace").splitlines():
            if match := CALL.match(entry):
                counts[match[1]] += 1
                found.append(Moment(match[1], counts[match[1]], entry))
        return found

    def moments(self, lines: list[str], after: str) -> list[Moment]:
        """The calls of a plain run between its reading of the line `after` and of the next one."""
        found = []
        typed = ""
        for moment in self.calls(lines):
            if letter := re.match(r'read\(0, "(\\n|.)"', moment.text):
                typed = ("" if typed.endswith("\\n") else typed) + letter[1]
            elif typed == after + "\\n" and not moment.text.startswith("read(0,"):
                found.append(moment)
        assert found, "nothing was called after that line"
        return found

    def moments_of_start(self, lines: list[str], since: str) -> list[Moment]:
        """The calls of a plain run from the first that names the file `since` to the reading of a line."""
        calls = self.calls(lines)
        first = next(i for i, moment in enumerate(calls) if since in moment.text)
        last = next(i for i, moment in enumerate(calls) if moment.text.startswith("read(0,"))
        return calls[first:last]

    def fail(self, lines: list[str], moment: Moment) -> Run:
        return self.run(lines, "-e", f"inject={moment.call}:error={ERRORS[moment.call]}:when={moment.number}")

    def kill(self, lines: list[str], moment: Moment) -> Run:
        run = self.run(lines, "-e", f"inject={moment.call}:signal=KILL:when={moment.number}")
        assert run.status == -signal.SIGKILL, moment
        return run
