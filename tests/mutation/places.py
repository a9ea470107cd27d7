"""Which places of the sources can be changed, and to what: one comparison or constant of a line."""

import collections
import dataclasses
import hashlib
import pathlib
import re

PROJECT = pathlib.Path(__file__).resolve().parents[2]
# In the order in which they are tried.
FOLDERS = ("uci", "search", "position", "eval", "book", "pv", "frontend", "base", "host", "polyglot", "tools")

COMPARISONS = {" < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == "}
CANDIDATE = re.compile(r" (?:[<>]=?|[!=]=) |(?<![\w.'])(?:\d+\.\d+|\d+)(?![\w.'])")
# What is no code, or code that tells the compiler and not the program something.
NO_CODE = re.compile(r"//.*|\"(?:\\.|[^\"\\])*\"|'(?:\\.|[^'\\])'|static_assert.*|^\s*#.*")
# Text of several lines.
RAW_TEXT = re.compile(r'R"(\w*)\(.*?\)\1"', re.DOTALL)


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
        """The same as long as the line is."""
        return "\t".join((self.path, self.line.strip(), str(self.nth()), self.old.strip(), self.new.strip()))

    def short_key(self) -> str:
        return self.path + "\t" + rank(self.key())[:12]

    def nth(self) -> int:
        return self.copies * self.line.count(self.old) + self.line.count(self.old, 0, self.column)

    def changed(self) -> str:
        return self.line[: self.column] + self.new + self.line[self.column + len(self.old) :]

    def folder(self) -> str:
        return self.path.split("/")[0]

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


def without_text(code: str) -> str:
    """The same lines, those of long texts empty."""
    return RAW_TEXT.sub(lambda found: "\n" * found.group().count("\n"), code)


def changes_of_file(path: pathlib.Path) -> list[Change]:
    """One change for each line that has any."""
    name = str(path.relative_to(PROJECT))
    seen: collections.Counter[str] = collections.Counter()
    chosen = []
    for number, line in enumerate(without_text(path.read_text()).splitlines(), 1):
        code = NO_CODE.sub(lambda found: " " * len(found.group()), line)
        copies = seen[line.strip()]
        seen[line.strip()] += 1
        changes = [
            Change(name, number, line, found.start(), found.group(), replacement(found.group()), copies)
            for found in CANDIDATE.finditer(code)
        ]
        if changes:
            chosen.append(min(changes, key=lambda change: rank(change.key())))
    return chosen


def possible_changes() -> list[Change]:
    """Folder by folder, in an order that only the lines themselves decide."""
    chosen = []
    for folder in FOLDERS:
        found = [c for path in sorted((PROJECT / folder).rglob("*.[ch]*")) for c in changes_of_file(path)]
        chosen += sorted(found, key=lambda change: rank(change.key()))
    return chosen
