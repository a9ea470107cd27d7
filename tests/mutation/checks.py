"""Which programs are run to notice a change of a file, the likeliest to notice it first."""

import dataclasses
import functools
import importlib.util
import pathlib
import re
import sys

TESTS = pathlib.Path(__file__).resolve().parents[1]
# Unit tests that take longer than all the others of their folder together.
SLOW_TESTS = {
    "search": ("Reference", "QuiescenceTwin", "RandomisedSearch", "InTurn", "PlayoutLimits", "AnyPosition"),
    "eval": ("Terms", "KingTerms", "ManyPositions"),
}
# Those of them that look at one file.
SLOW_TESTS_OF_FILE = {"search/quies.cpp": "QuiescenceTwin", "search/randomroot.cpp": "RandomisedSearch"}


@dataclasses.dataclass(frozen=True)
class Check:
    name: str
    targets: tuple[str, ...]  # to build
    command: tuple[str, ...]
    compared: bool = False  # what it prints has to stay the same
    in_tests: bool = False  # runs in the folder tests/program
    whole: str = ""  # the name of the check that this is a part of


def bench(depth: int) -> Check:
    return Check(f"bench {depth}", ("bench_only",), ("bin/bench_only", str(depth)), compared=True)


TALK = Check("dialogue", ("tarv_uci", "engine_files"),
             (sys.executable, str(TESTS / "mutation" / "dialogue.py"), "bin/tarv-uci"), compared=True)


def unit(folder: str, wanted: str = "", name: str = "") -> Check:
    """The unit tests of a folder, or those of them that a filter takes."""
    program = f"test_{folder}"
    filters = (f"--gtest_filter={wanted}",) if wanted else ()
    return Check(name or program, (program,), (f"tests/{program}", "--gtest_brief=1", "--gtest_fail_fast", *filters))


def unit_of_file(path: str) -> list[Check]:
    """The tests of that file alone."""
    folder, stem = path.split("/")[0], pathlib.Path(path).stem
    files = [*(TESTS / folder).glob(f"{stem}_test.cpp"), *(TESTS / folder).glob(f"{stem}_*_test.cpp")]
    suites = sorted({s for file in files for s in re.findall(r"^TEST(?:_[FP])?\((\w+),", file.read_text(), re.M)})
    if not suites:
        return []
    wanted = ":".join(f"*{suite}.*" for suite in suites)
    return [dataclasses.replace(unit(folder, wanted, f"test_{folder} {stem}"), whole=f"test_{folder}")]


def units(*folders: str) -> list[Check]:
    """All but the slow ones."""
    slow = {folder: "-" + ":".join(f"{suite}.*" for suite in suites) for folder, suites in SLOW_TESTS.items()}
    return [unit(folder, slow.get(folder, "")) for folder in folders if list((TESTS / folder).glob("*_test.cpp"))]


def slow_units(*folders: str) -> list[Check]:
    return [unit(folder, f"{suite}.*", f"test_{folder} {suite}") for folder in folders for suite in SLOW_TESTS[folder]]


@functools.cache
def python_with_pytest() -> str:
    """The system's packages belong to the system's Python, which another one may hide on the search path."""
    return sys.executable if importlib.util.find_spec("pytest") else "/usr/bin/python3"


def programs(*names: str) -> list[Check]:
    """The tests of whole programs in tests/program/test_<name>.py."""
    targets = ("tarvyle", "tarv", "tarv_uci", "fixed_time", "engine_files")
    pytest = (python_with_pytest(), "-m", "pytest", "-q", "-x", "-p", "no:cacheprovider")
    return [Check(f"test_{n}.py", targets, (*pytest, f"test_{n}.py"), in_tests=True) for n in names]


TOOLS = ("tarv", "tarv_analyse", "tarv_book", "tarv_game", "tarv_learn", "tarv_suite")
UCI = ("uci_alone", "uci_search", "uci_options", "uci", "uci_messages", "uci_soup")
ENGINE = ("sessions", "startup", "commands", "savedgame", "lost_and_full", "learnfile")
# What is run for any change.
QUICK = {
    "uci": [TALK, *units("uci", "host")],
    "search": [bench(4), *units("search"), bench(6)],
    "position": [bench(4), *units("position", "eval", "search")],
    "eval": [bench(4), *units("eval", "search"), bench(6)],
    "book": units("book", "search", "frontend"),
    "pv": [bench(4), *units("pv", "search", "frontend")],
    "frontend": [*units("frontend"), *programs("sessions")],
    "base": units("base", "book", "frontend"),
    "polyglot": units("polyglot"),
    "host": [bench(4), TALK, *units("host", "uci"), *programs("tarv")],
}
# What is run besides for a change that has gone unnoticed.
SLOW = {
    "uci": programs(*UCI),
    "search": [bench(8), *slow_units("search"), *programs("sessions", "signature")],
    "position": [bench(8), *slow_units("eval", "search"), *programs("sessions", "signature", "savedgame")],
    "eval": [bench(8), *slow_units("eval", "search")],
    "book": programs("learnfile", "tarv_learn", "tarv_book", "tarv_analyse", "sessions", "lost_and_full"),
    "pv": programs("sessions", "uci_search"),
    "frontend": programs(*ENGINE[1:], "faults", "xboard_streams", "tarv_game"),
    "base": programs(*ENGINE, *TOOLS, "uci_options", "faults"),
    "polyglot": programs("tarv_polyglot", "uci_options"),
    "host": programs(*TOOLS, *UCI),
}
OF_TOOLS = {"book": ("tarv_book", "tarv_polyglot"), "game": ("tarv_game",), "learn": ("tarv_learn", "tarv_analyse"),
            "suite": ("tarv_suite",), "uci": UCI}


def tools_below(path: str) -> tuple[str, ...]:
    """The program tests of a folder of the workbench; of what all of it shares, none."""
    return OF_TOOLS.get(path.split("/")[1], ())


def quick_checks(path: str) -> list[Check]:
    folder = path.split("/")[0]
    if folder == "tools":
        return programs(*(tools_below(path) or TOOLS))
    # Comparing what a whole program prints is quicker than any test.
    first = [check for check in QUICK[folder][:2] if check.compared]
    return [*first, *unit_of_file(path), *QUICK[folder][len(first):]]


def slow_checks(path: str) -> list[Check]:
    folder = path.split("/")[0]
    if folder == "tools":
        return programs(*TOOLS) if tools_below(path) else []
    likely = SLOW_TESTS_OF_FILE.get(path, path)
    return sorted(SLOW[folder], key=lambda check: not check.name.endswith(likely))


def checked_checks(path: str) -> list[Check]:
    """With sanitizers, which are slow, just the unit tests."""
    return [check for check in quick_checks(path) if not check.in_tests]
