"""A copy of the sources, builds of it, and what the checks say to them."""

import os
import re
import resource
import shutil
import subprocess
import sys
import time

from mutation.checks import Check
from mutation.places import PROJECT, Change

WORK = PROJECT / "build" / "mutation"
SOURCE = WORK / "source"

MOST_MEMORY = 4 << 30
SPEEDS = re.compile(rb"^(seconds|nodes/second|info string #search time) .*$| \d+ nps$| nps \d+ time \d+",
                    re.MULTILINE)
NICENESS = 5


def copy_sources() -> None:
    """Copies what differs, so that little is compiled again, and removes what is no longer there."""
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard"],
        cwd=PROJECT, stdout=subprocess.PIPE, text=True, check=True,
    )
    names = {name for name in listed.stdout.splitlines() if (PROJECT / name).is_file()}
    for copy in SOURCE.rglob("*"):
        if copy.is_file() and str(copy.relative_to(SOURCE)) not in names:
            copy.unlink()
    for name in names:
        original, copy = PROJECT / name, SOURCE / name
        if copy.is_file() and copy.read_bytes() == original.read_bytes():
            continue
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(original, copy)
        copy.touch()


def tool_options() -> list[str]:
    """With ccache, taking a change back costs no compiling; it must be told to look at precompiled headers."""
    options = []
    if shutil.which("ccache"):
        os.environ["CCACHE_SLOPPINESS"] = "pch_defines,time_macros"
        options += ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "-DCMAKE_CXX_FLAGS=-fpch-preprocess"]
    if shutil.which("ld.lld"):
        options += ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"]
    return options


class Build:
    """A build of the copied sources. Checks are timed before they are used, since a changed program
    may ask for any amount of time or memory."""

    def __init__(self, name: str, *options: str) -> None:
        self.folder = WORK / name
        self.options = options
        self.limited = not options  # sanitizers reserve more memory than any machine has
        self.seconds: dict[str, float] = {}  # of the processor
        self.printed: dict[str, bytes] = {}

    def configure(self) -> None:
        self.folder.mkdir(parents=True, exist_ok=True)
        done = subprocess.run(
            ["cmake", "-G", "Ninja", str(SOURCE), "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
             "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1", "-DTARVYLE_REQUIRE_ALL=ON", "-DTARVYLE_TOGETHER=tests",
             *tool_options(), *self.options],
            cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
        )
        if done.returncode != 0:
            sys.exit("mutate.py: the sources cannot be built\n" + done.stdout.decode())

    def built(self, check: Check) -> subprocess.CompletedProcess:
        command = ["nice", "-n", str(NICENESS), "cmake", "--build", ".", "--target", *check.targets]
        return subprocess.run(command, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def limit(self, seconds: int) -> None:
        os.nice(NICENESS)
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        if self.limited:
            resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))

    def run(self, check: Check) -> tuple[bool, bytes]:
        """Whether it succeeded in about its usual time, and what it printed."""
        seconds = int(3 * self.seconds.get(check.whole or check.name, 300) + 3)
        environment = os.environ | {
            "PYTHONDONTWRITEBYTECODE": "1", "LC_ALL": "C", "ENGINE_BIN_DIR": str(self.folder / "bin"),
            "FIXED_TIME_LIBRARY": str(self.folder / "tests" / "fixed_time.so"),
        }
        where = SOURCE / "tests" / "program" if check.in_tests else self.folder
        try:
            done = subprocess.run(
                check.command, cwd=where, stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=10 * seconds + 60, check=False,
                env=environment, preexec_fn=lambda: self.limit(seconds),
            )
        except subprocess.TimeoutExpired:
            return False, b""
        return done.returncode == 0, SPEEDS.sub(b"", done.stdout)

    def fails(self, check: Check) -> bool:
        succeeded, said = self.run(check)
        return not succeeded or (check.compared and self.printed[check.name] != said)

    def measure(self, checks: list[Check]) -> None:
        """Takes the time of these without a change, and what they print."""
        for check in checks:
            if check.whole or check.name in self.seconds:
                continue
            built = self.built(check)
            if built.returncode != 0:
                sys.exit("mutate.py: the unchanged sources do not build\n" + built.stdout.decode())
            before, began = resource.getrusage(resource.RUSAGE_CHILDREN), time.monotonic()
            succeeded, said = self.run(check)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            self.seconds[check.name] = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
            self.printed[check.name] = said
            if not succeeded or (check.compared and self.fails(check)):
                sys.exit(f"mutate.py: {check.name} fails without any change, or says something else each time\n"
                         + said.decode(errors="replace"))
            print(f"# {check.name}: {time.monotonic() - began:.1f} seconds", flush=True)

    def noticed_by(self, checks: list[Check]) -> str:
        """Who notices the change that stands in the copy: "" nobody, "-" it does not compile."""
        for check in checks:
            if self.built(check).returncode != 0:
                return "-"
            # Whole programs have clocks of their own: what fails once only is no proof.
            if self.fails(check) and (not check.in_tests or self.fails(check)):
                return check.name
        return ""

    def attempt(self, change: Change, checks: list[Check]) -> str:
        """As above, for a change that is made and taken back."""
        self.measure(checks)
        copy = SOURCE / change.path
        original = copy.read_text()
        lines = original.splitlines(keepends=True)
        lines[change.number - 1] = change.changed() + "\n"
        copy.write_text("".join(lines))
        try:
            return self.noticed_by(checks)
        finally:
            copy.write_text(original)


def plain_build() -> Build:
    return Build("build")


def checked_build() -> Build:
    """Like the presets debug and asan together. It is slow: for what nothing else notices."""
    return Build("checked", "-DTARVYLE_SANITIZE=ON", "-DTARVYLE_CHECK_RECORD=ON")
