"""A folder with the engine's files in it, and runs of the engine there.

The engine sees a `ps` that lists it as often as the test says and a clock that makes each search end soon (see
fixed_time.cpp), so every run says the same on every machine.
"""

import dataclasses
import os
import pathlib
import re
import subprocess

from conftest import engine_environment

TIMEOUT_SECONDS = 60

SETTINGS = {
    "hash size": "32",
    "time search default seconds": "7",
    "play style": "knowledge3",
    "random search?!": "disable",
    "book move": "disable",
    "learn file write": "disable",
}
BOOK = "# two openings\ne2e4 e7e5 g1f3\nd2d4 d7d5\n"

# What every start with these settings says.
GREETING = """\
# Chess, build Jul 22 2013 
# hash table init: 
# get mem 6815744 byte(s) 
# load play style: 
# knowledge3 
# ok 
# <help> - help 
# move: ? 
"""
BOOK_INSTEAD = "#  learn file notfound, load book-file \n"

THINKING = re.compile(r"^[ \d]\d +-?\d+ +-?\d+ +\d+ .*\n", re.MULTILINE)


@dataclasses.dataclass
class Run:
    """What one run of the engine said, and its exit status (negative: the signal that ended it)."""

    stdout: str
    stderr: str
    status: int

    @property
    def said(self) -> str:
        """Standard output after the start, without the thinking lines."""
        assert self.stdout.startswith(GREETING), self.stdout
        return THINKING.sub("", self.stdout[len(GREETING):])

    @property
    def complaints(self) -> str:
        """Standard error after the start."""
        return self.stderr.removeprefix(BOOK_INSTEAD)


class EngineFolder:
    def __init__(self, engine: pathlib.Path, fixed_time: pathlib.Path, root: pathlib.Path):
        self.engine = engine
        self.fixed_time = fixed_time
        self.path = root / "run"
        self.path.mkdir()
        self.lister = root / "lister"
        self.lister.mkdir()
        self.search_path = [str(self.lister), os.environ["PATH"]]
        self.list_instances(1)
        self.configure()
        self.file("tarvyle.bk").write_text(BOOK)

    def file(self, name: str) -> pathlib.Path:
        return self.path / name

    def names(self) -> list[str]:
        """The files here but configuration and book; the number of a temporary learn file as N."""
        names = (re.sub(r"^(tarvyle_tmp_lrn)\d+", r"\1N", path.name) for path in self.path.iterdir())
        return sorted(name for name in names if name not in ("tarvyle.cfg", "tarvyle.bk"))

    def configure(self, text: str | None = None, **changed: str) -> None:
        """Writes the configuration: whole, or the usual one with some changes (spaces of a key as _)."""
        if text is None:
            settings = SETTINGS | {key.replace("_", " "): value for key, value in changed.items()}
            text = "".join(f'{key}="{value}"\n' for key, value in settings.items())
        self.file("tarvyle.cfg").write_bytes(text.encode())

    def write_lister(self, script: str) -> None:
        """Makes this shell script the process lister that the engine starts."""
        lister = self.lister / "ps"
        lister.write_text("#!/bin/sh\n" + script)
        lister.chmod(0o755)

    def list_instances(self, count: int) -> None:
        """Makes the process lister list the engine `count` times."""
        rows = [f"  {1000 + row} pts/0    00:00:00 tarvyle" for row in range(count)]
        self.write_lister("".join(f"echo '{row}'\n" for row in ["    PID TTY          TIME CMD", *rows]))

    def without_lister(self) -> None:
        """Leaves no `ps` on the search path at all."""
        (self.lister / "ps").unlink()
        self.search_path = [str(self.lister)]

    def environment(self, step_ms: int) -> dict[str, str]:
        return engine_environment() | {
            "PATH": os.pathsep.join(self.search_path),
            "LD_PRELOAD": str(self.fixed_time),
            "FIXED_TIME_STEP_MS": str(step_ms),
        }

    def start(self, name: str = "./tarvyle", arguments: tuple[str, ...] | list[str] = (), step_ms: int = 10_000,
              **options) -> subprocess.Popen:
        """Starts the engine under this name. Each look at its clock takes `step_ms`: by default a search ends
        at the first one, after 4096 nodes."""
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        defaults = pipes | {"cwd": self.path, "env": self.environment(step_ms)}
        return subprocess.Popen([name, *arguments], executable=self.engine, **(defaults | options))

    def started(self, **options) -> subprocess.Popen:
        """The same, once it waits for its first line."""
        process = self.start(**options)
        lines = [process.stdout.readline() for _ in GREETING.splitlines()]
        assert "".join(line if isinstance(line, str) else line.decode() for line in lines) == GREETING
        return process

    def run(self, *lines: str, raw: bytes | None = None, **options) -> Run:
        """Runs the engine with these lines as its whole input, or with `raw` as it is."""
        if raw is None:
            raw = "".join(f"{line}\n" for line in lines).encode()
        with self.start(**options) as process:
            try:
                stdout, stderr = process.communicate(raw, timeout=TIMEOUT_SECONDS)
            except subprocess.TimeoutExpired:
                process.kill()
                raise
        return Run((stdout or b"").decode("latin-1"), (stderr or b"").decode("latin-1"), process.returncode)
