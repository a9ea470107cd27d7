#!/usr/bin/env python3
"""Changes one comparison or constant of the sources at a time and looks whether a test notices.

    tests/mutate.py [--count N] [--folder NAME] [--seconds N] [--again] [--quick]

Takes the next --count (200) changes of engine and workbench, or of one folder, that have not been
tried; there is one change for each line that allows any, in an order that only the lines decide.
tests/mutants_tried.tsv holds what has been tried and what came out, so each run goes on where the last
one ended, on whatever machine that was; keep the file with the sources. What is tried again, when
nothing new is left, is what was tried longest ago. A line that is changed or removed drops out.

--seconds begins no further change after so long. --again tries those once more that no test noticed and
nobody explained, instead of new ones. --quick leaves out what is slow: see below.

Fails when fewer than 97 % of all that were tried are caught, survivors that
tests/mutants_explained.tsv gives a reason for left out.

All of it happens in a copy of the sources in build/mutation/. A change counts as caught when a bench or
a dialogue prints something else, or when a test of the folder, of a folder above it or of the programs
fails, crashes or takes three times as long. What goes unnoticed is tried once more with the slow tests,
and then with sanitizers and the record checker. A change that does not compile is passed over.
"""

import argparse
import pathlib
import sys
import time
from collections.abc import Callable

from mutation.build import Build, checked_build, copy_sources, plain_build
from mutation.checks import Check, checked_checks, quick_checks, slow_checks
from mutation.places import FOLDERS, PROJECT, Change, possible_changes

TRIED = PROJECT / "tests" / "mutants_tried.tsv"
EXPLAINED = PROJECT / "tests" / "mutants_explained.tsv"
HEAD = """\
# What tests/mutate.py has tried, the longest ago first: file, what the line and its change come to, who
# noticed ("" nobody, "-" it does not compile); separated by tabs.
"""

WANTED = 0.97
NO_CODE = "-"


def read_rows(path: pathlib.Path) -> dict[str, str]:
    """The last column of each line by the others; comments begin with #."""
    if not path.is_file():
        return {}
    rows = [line for line in path.read_text().splitlines() if line and not line.startswith("#")]
    return dict(line.rsplit("\t", 1) for line in rows)


class Tried:
    """What came out so far, in the order of trying."""

    def __init__(self, possible: list[Change]) -> None:
        self.results = read_rows(TRIED)
        known = {change.short_key() for change in possible}
        self.results = {key: by for key, by in self.results.items() if key in known}

    def __contains__(self, change: Change) -> bool:
        return change.short_key() in self.results

    def of(self, change: Change) -> str:
        return self.results.get(change.short_key(), NO_CODE)

    def keep(self, change: Change, by: str) -> None:
        self.results.pop(change.short_key(), None)
        self.results[change.short_key()] = by
        TRIED.write_text(HEAD + "".join(f"{key}\t{value}\n" for key, value in self.results.items()))
        print(f"{ {'': 'SURVIVED', NO_CODE: 'does not compile'}.get(by, by) }: {change}", flush=True)

    def next_ones(self, possible: list[Change]) -> list[Change]:
        """Those never tried, then those tried longest ago."""
        order = {key: number for number, key in enumerate(self.results)}
        old = [change for change in possible if change in self and self.of(change) != NO_CODE]
        return [change for change in possible if change not in self] + sorted(
            old, key=lambda change: order[change.short_key()])


def try_all(build: Build, checks: Callable[[str], list[Check]], changes: list[Change], tried: Tried,
            end: float, count: int) -> list[Change]:
    """Tries `count` of the changes that compile; those that nobody noticed."""
    survivors = []
    for number, change in enumerate(changes):
        if count == 0 or time.monotonic() >= end:
            break
        if number == 0:
            build.configure()
        by = build.attempt(change, checks(change.path))
        tried.keep(change, by)
        count -= by != NO_CODE
        if not by:
            survivors.append(change)
    return survivors


def share(caught: int, gaps: int) -> float:
    return 100 * caught / (caught + gaps) if caught + gaps else 100.0


def report(possible: list[Change], tried: Tried) -> bool:
    """Prints what came out; whether enough was caught."""
    explained = read_rows(EXPLAINED)
    for change in possible:
        if tried.of(change) == "" and change.key() not in explained:
            print(f"survived: {change}\n    key: {change.key()}")
    keys = {change.key() for change in possible}
    for key in explained:
        if key not in keys:
            print(f"explained, but no longer there: {key}")
    print(f"{'folder':9} {'places':>6} {'tried':>6} {'caught':>6} {'explained':>9} {'survived':>8} {'%':>6}")
    sums = [0] * 5
    for folder in FOLDERS:
        changes = [change for change in possible if change.folder() == folder]
        done = [change for change in changes if tried.of(change) != NO_CODE]
        survivors = [change for change in done if tried.of(change) == ""]
        reasons = sum(change.key() in explained for change in survivors)
        row = [len(changes), len(done), len(done) - len(survivors), reasons, len(survivors) - reasons]
        sums = [a + b for a, b in zip(sums, row)]
        print("{:9} {:6} {:6} {:6} {:9} {:8} {:6.1f}".format(folder, *row, share(row[2], row[4])))
    print("{:9} {:6} {:6} {:6} {:9} {:8} {:6.1f}".format("all", *sums, share(sums[2], sums[4])))
    return share(sums[2], sums[4]) >= 100 * WANTED


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=200, help="changes to try (200)")
    parser.add_argument("--folder", choices=FOLDERS, help="changes of this folder alone")
    parser.add_argument("--seconds", type=float, help="begin no further change after so long")
    parser.add_argument("--again", action="store_true", help="try the survivors once more, and nothing else")
    parser.add_argument("--quick", action="store_true", help="without the slow tests and the sanitizers")
    options = parser.parse_args()

    end = time.monotonic() + (options.seconds or float("inf"))
    possible = possible_changes()
    tried = Tried(possible)
    explained = read_rows(EXPLAINED)
    wanted = [change for change in possible if options.folder in (None, change.folder())]
    if options.again:
        wanted = [c for c in wanted if tried.of(c) == "" and c.key() not in explained]
    else:
        wanted = tried.next_ones(wanted)
    copy_sources()
    plain = plain_build()
    survivors = try_all(plain, quick_checks, wanted, tried, end, options.count)
    if not options.quick:
        survivors = [change for change in survivors if change.key() not in explained]
        survivors = try_all(plain, slow_checks, survivors, tried, end, -1)
        try_all(checked_build(), checked_checks, survivors, tried, end, -1)
    sys.exit(0 if report(possible, tried) else 1)


if __name__ == "__main__":
    main()
