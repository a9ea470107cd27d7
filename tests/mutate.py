#!/usr/bin/env python3
"""Changes one comparison or constant of the engine at a time and looks whether a test notices.

    tests/mutate.py [--count N] [--seconds N] [--again]

Takes --count (200) of the changes that are possible in eval/, search/ and position/, always the same
ones, and tries those that have no result yet; after --seconds it stops, and the next run goes on from
there. --again tries those once more that no test noticed. Results are kept in
build/mutation/results.tsv. Fails when fewer than 95 % of those tried are caught, survivors that
tests/mutants_explained.tsv gives a reason for left out.

All of it happens in a copy of the sources in build/mutation/. A change counts as caught when `tarv
bench --depth 4` prints something else, or when a unit test fails, crashes or takes ten times as long:
those of the changed folder and of the folders of the search above it. What goes unnoticed is tried
once more with sanitizers and the record checker. A change that does not compile is passed over.
"""

import argparse
import collections
import dataclasses
import hashlib
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys
import time

PROJECT = pathlib.Path(__file__).resolve().parents[1]
WORK = PROJECT / "build" / "mutation"
SOURCE = WORK / "source"
RESULTS = WORK / "results.tsv"
EXPLAINED = PROJECT / "tests" / "mutants_explained.tsv"

WANTED = 0.95
MOST_MEMORY = 4 << 30
BENCH = "bench_only"
SPEEDS = re.compile(rb"^(seconds|nodes/second) .*$| \d+ nps$", re.MULTILINE)
TESTS = {
    "eval": ["test_eval", "test_search"],
    "position": ["test_position", "test_eval", "test_search"],
    "search": ["test_search"],
}
PROGRAMS = [BENCH, *TESTS["position"]]

COMPARISONS = {" < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == "}
CANDIDATE = re.compile(r" (?:[<>]=?|[!=]=) |(?<![\w.'])(?:\d+\.\d+|\d+)(?![\w.'])")
# What is no code, or code that tells the compiler and not the engine something.
NO_CODE = re.compile(r"//.*|\"(?:\\.|[^\"\\])*\"|'(?:\\.|[^'\\])'|static_assert.*|^\s*#.*")


@dataclasses.dataclass(frozen=True)
class Change:
    path: str
    number: int  # of the line, from 1
    line: str
    column: int
    old: str
    new: str
    copies: int  # of the line that stand before it in the file

    def key(self) -> str:
        """The same as long as the line is: what results are kept by."""
        return "\t".join((self.path, self.line.strip(), str(self.nth()), self.old.strip(), self.new.strip()))

    def nth(self) -> int:
        return self.copies * self.line.count(self.old) + self.line.count(self.old, 0, self.column)

    def changed(self) -> str:
        return self.line[: self.column] + self.new + self.line[self.column + len(self.old) :]

    def __str__(self) -> str:
        return f"{self.path}:{self.number}: {self.line.strip()}  =>  {self.changed().strip()}"


def replacement(found: str) -> str:
    """The neighbour of a comparison or of a constant, in its last digit."""
    if found in COMPARISONS:
        return COMPARISONS[found]
    whole, point, part = found.partition(".")
    return whole + point + str(int(part) + 1).zfill(len(part)) if point else str(int(whole) + 1)


def rank(text: str) -> str:
    return hashlib.sha256(b"1" + text.encode()).hexdigest()


def possible_changes() -> list[Change]:
    """One change for each line that has any, in an order that only the lines themselves decide."""
    chosen = []
    for folder in TESTS:
        for path in sorted((PROJECT / folder).glob("*.[ch]*")):
            name = str(path.relative_to(PROJECT))
            seen = collections.Counter()
            for number, line in enumerate(path.read_text().splitlines(), 1):
                code = NO_CODE.sub(lambda found: " " * len(found.group()), line)
                copies = seen[line.strip()]
                seen[line.strip()] += 1
                changes = [
                    Change(name, number, line, found.start(), found.group(), replacement(found.group()), copies)
                    for found in CANDIDATE.finditer(code)
                ]
                if changes:
                    chosen.append(min(changes, key=lambda change: rank(change.key())))
    return sorted(chosen, key=lambda change: rank(change.key()))


def limit_memory() -> None:
    """A changed engine may ask for any amount."""
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))


def ccache_options() -> list[str]:
    """With ccache, taking a change back costs no compiling; it must be told to look at precompiled headers."""
    if not shutil.which("ccache"):
        return []
    os.environ["CCACHE_SLOPPINESS"] = "pch_defines,time_macros"
    return ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "-DCMAKE_CXX_FLAGS=-fpch-preprocess"]


def command_of(program: str) -> list[str]:
    return [f"bin/{BENCH}"] if program == BENCH else [f"tests/{program}", "--gtest_brief=1", "--gtest_fail_fast"]


class Build:
    """A build of the copied sources. Programs that have not been timed get a quarter of an hour."""

    def __init__(self, name: str, *options: str) -> None:
        self.folder = WORK / name
        self.options = options
        self.limited = not options  # sanitizers reserve more memory than any machine has
        self.seconds: dict[str, float] = {}
        self.bench: bytes | None = None

    def run(self, command: list[str], timeout: float | None = None) -> tuple[int | None, bytes]:
        """Status (None: out of time) and output of a program."""
        try:
            done = subprocess.run(
                command, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=timeout,
                check=False, preexec_fn=limit_memory if self.limited else None,
            )
        except subprocess.TimeoutExpired:
            return None, b""
        return done.returncode, SPEEDS.sub(b"", done.stdout)

    def configure(self) -> None:
        self.folder.mkdir(parents=True, exist_ok=True)
        status, said = self.run(
            ["cmake", "-G", "Ninja", str(SOURCE), "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
             "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1", "-DTARVYLE_REQUIRE_ALL=ON", *ccache_options(), *self.options]
        )
        if status != 0:
            sys.exit("mutate.py: the sources cannot be built\n" + said.decode())

    def build(self, program: str) -> bool:
        return self.run(["cmake", "--build", ".", "--target", program])[0] == 0

    def fails(self, program: str) -> bool:
        seconds = 10 * self.seconds.get(program, 90) + 10
        status, said = self.run(command_of(program), timeout=seconds)
        return status != 0 or (program == BENCH and self.bench not in (None, said))

    def measure(self) -> None:
        """Takes the time of all programs without a change, and what the bench prints."""
        for program in PROGRAMS:
            if not self.build(program):
                sys.exit("mutate.py: the unchanged sources do not build")
            started = time.monotonic()
            self.expect_success(program)
            self.seconds[program] = time.monotonic() - started
        self.bench = self.run(command_of(BENCH))[1]
        self.expect_success(BENCH)

    def expect_success(self, program: str) -> None:
        if not self.build(program) or self.fails(program):
            sys.exit(f"mutate.py: {program} fails without any change, or does something else each time")

    def noticed_by(self, change: Change) -> str:
        """Who notices the change that stands in the copy: "" nobody, "-" it does not compile."""
        for program in (BENCH, *TESTS[change.path.split("/")[0]]):
            if not self.build(program):
                return "-"
            if self.fails(program):
                return program
        return ""


PLAIN = Build("build")
# Like the presets debug and asan together. It is slow: for what nothing else notices.
CHECKED = Build("checked", "-DTARVYLE_SANITIZE=ON", "-DTARVYLE_CHECK_RECORD=ON")


def copy_sources() -> None:
    """Copies what differs, so that little is compiled again, and removes what is no longer there."""
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard"],
        cwd=PROJECT, stdout=subprocess.PIPE, text=True, check=True,
    )
    names = [name for name in listed.stdout.splitlines() if (PROJECT / name).is_file()]
    for copy in SOURCE.rglob("*"):
        if copy.is_file() and str(copy.relative_to(SOURCE)) not in names:
            copy.unlink()
    for name in names:
        original, copy = PROJECT / name, SOURCE / name
        if copy.is_file() and copy.read_bytes() == original.read_bytes():
            continue
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(original, copy)


def attempt(change: Change, build: Build) -> str:
    copy = SOURCE / change.path
    original = copy.read_text()
    lines = original.splitlines(keepends=True)
    lines[change.number - 1] = change.changed() + "\n"
    copy.write_text("".join(lines))
    try:
        return build.noticed_by(change)
    finally:
        copy.write_text(original)


def attempt_checked(change: Change) -> str:
    by = attempt(change, CHECKED)
    if by in PROGRAMS:
        CHECKED.expect_success(by)
        return f"{by}, checked"
    return by


def read_rows(path: pathlib.Path) -> dict[str, str]:
    """The last column of each line by the others; comments begin with #."""
    if not path.is_file():
        return {}
    rows = [line for line in path.read_text().splitlines() if line and not line.startswith("#")]
    return dict(line.rsplit("\t", 1) for line in rows)


def report(changes: list[Change], results: dict[str, str]) -> bool:
    """Prints what came out; whether enough was caught."""
    explained = read_rows(EXPLAINED)
    tried = [change for change in changes if results.get(change.key(), "-") != "-"]
    survivors = [change for change in tried if not results[change.key()]]
    gaps = [change for change in survivors if change.key() not in explained]
    for change in survivors:
        print(f"survived: {change}\n    key: {change.key()}\n    {explained.get(change.key(), 'NOT EXPLAINED')}")
    caught = len(tried) - len(survivors)
    counted = caught + len(gaps)
    share = caught / counted if counted else 1.0
    print(f"{len(tried)} changes tried of {len(changes)}, {caught} caught, {len(survivors)} survived,")
    print(f"{len(survivors) - len(gaps)} of them explained; without these, {100 * share:.1f} % are caught")
    return share >= WANTED


def select(count: int, results: dict[str, str]) -> list[Change]:
    """The first `count` that compile, as far as that is known."""
    usable = [change for change in possible_changes() if results.get(change.key()) != "-"]
    return usable[:count]


def keep(change: Change, by: str, results: dict[str, str]) -> None:
    results[change.key()] = by
    with RESULTS.open("a") as kept:
        kept.write(f"{change.key()}\t{by}\n")
    print(f"{ {'': 'SURVIVED', '-': 'does not compile'}.get(by, by) }: {change}", flush=True)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=200, help="changes to try in all (200)")
    parser.add_argument("--seconds", type=float, help="begin no further change after so long")
    parser.add_argument("--again", action="store_true", help="try the survivors once more")
    options = parser.parse_args()

    end = time.monotonic() + (options.seconds or float("inf"))
    results = read_rows(RESULTS)
    if options.again:
        results = {key: by for key, by in results.items() if by}
    copy_sources()
    PLAIN.configure()
    while time.monotonic() < end:
        left = [c for c in select(options.count, results) if c.key() not in results]
        if not left:
            break
        if not PLAIN.seconds:
            PLAIN.measure()
        keep(left[0], attempt(left[0], PLAIN), results)
    explained = read_rows(EXPLAINED)
    gaps = [c for c in select(options.count, results) if not results.get(c.key(), "-") and c.key() not in explained]
    for change in gaps:
        if time.monotonic() < end:
            CHECKED.configure()
            keep(change, attempt_checked(change), results)
    sys.exit(0 if report(select(options.count, results), results) else 1)


if __name__ == "__main__":
    main()
