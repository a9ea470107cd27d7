"""The sources as such: scripts and pages under the linters of their languages, files as editors are told to write them,
includes without a circle, globals with a lifetime."""

import configparser
import graphlib
import pathlib
import re
import subprocess

import pytest
from conftest import PROJECT, require
from source_files import files

PYTHON_COLUMNS = 120


def begins_as(path: pathlib.Path, start: bytes) -> bool:
    """Whether the first line says so."""
    with (PROJECT / path).open("rb") as file:
        return re.match(start, file.readline()) is not None


def complaints(*command) -> str:
    done = subprocess.run([*map(str, command)], cwd=PROJECT, capture_output=True, text=True, check=False)
    return done.stdout + done.stderr


def test_shell_scripts_have_no_faults():
    require("shellcheck")
    scripts = [path for path in files() if begins_as(path, rb"#!.*sh$|# shellcheck shell=")]
    assert pathlib.Path("check") in scripts and pathlib.Path("packaging/install-missing.sh") in scripts
    assert complaints("shellcheck", *scripts) == ""


def test_python_files_have_no_faults():
    require("pyflakes3")
    scripts = [path for path in files() if path.suffix == ".py" or begins_as(path, rb"#!.*python")]
    assert len(scripts) > 40
    assert complaints("pyflakes3", *scripts) == ""


def test_python_lines_fit():
    scripts = [path for path in files() if path.suffix == ".py"]
    assert [f"{path}:{number}" for path in scripts
            for number, line in enumerate((PROJECT / path).read_text().splitlines(), 1)
            if len(line) > PYTHON_COLUMNS] == []


def editor_sections() -> dict[str, dict[str, str]]:
    """What .editorconfig says, by the names of the files that it is for."""
    settings = configparser.ConfigParser()
    settings.read_string("[of all sections]\n" + (PROJECT / ".editorconfig").read_text())
    return {name: dict(settings[name]) for name in settings.sections()}


def test_editors_are_told_the_columns_of_the_linters():
    sections = editor_sections()
    assert f"ColumnLimit: {sections['*.{h,cpp}']['max_line_length']}\n" in (PROJECT / ".clang-format").read_text()
    assert sections["*.py"]["max_line_length"] == str(PYTHON_COLUMNS)


def test_files_are_as_editors_are_told():
    assert editor_sections()["*"].items() >= {"end_of_line": "lf", "insert_final_newline": "true",
                                              "indent_style": "space", "charset": "utf-8"}.items()
    recorded = ("tests/data/", "fuzz/corpus/")  # as the last section says
    looked_at = [path for path in files() if path.suffix != ".png" and not str(path).startswith(recorded)]
    assert len(looked_at) > 400
    for path in looked_at:
        text = (PROJECT / path).read_bytes().decode()
        assert text.endswith("\n") and "\r" not in text and not re.search(r"^ *\t", text, re.MULTILINE), path


def test_no_files_include_each_other():
    # A header and the source of its name are one.
    needs: dict[str, set[str]] = {}
    for path in files():
        if path.suffix in (".h", ".cpp"):
            included = re.findall(r'^#include "(.+)\.h"$', (PROJECT / path).read_text(), re.MULTILINE)
            needs.setdefault(str(path.with_suffix("")), set()).update(included)
    for one, others in needs.items():
        others.discard(one)
    assert len(needs) > 200
    list(graphlib.TopologicalSorter(needs).static_order())  # raises CycleError, which names them


# What prints on standard output by its name, or names that stream.
ON_STANDARD_OUTPUT = re.compile(r"(?<!format\()\b(?:v?printf|puts|putchar|putwchar|cout|stdout|STDOUT_FILENO|clog)\b")


def test_the_engine_tells_all_through_one_door():
    """Whoever holds the engine hears its messages there; past it go the procedures that are there to print."""
    printing = {}
    for path in files():
        folders = ("base", "position", "eval", "book", "pv", "search", "host", "polyglot", "uci")
        if path.parts[0] in folders and path.suffix in (".cpp", ".h"):
            code = re.sub(r"//.*", "", (PROJECT / path).read_text())
            found = ON_STANDARD_OUTPUT.findall(code)
            if found:
                printing[str(path)] = found
    assert printing == {
        "base/message.cpp": ["vprintf"],  # the door
        "pv/line.cpp": ["printf", "putchar"],  # LinePrint
        "search/status.cpp": ["printf", "putchar"],  # debug_print_moves_and_score
        "uci/dialogue.cpp": ["STDOUT_FILENO"],  # where the GUI listens
        "uci/output.cpp": ["STDOUT_FILENO"],
    }


def is_constant(type_of: str) -> bool:
    return "constexpr" in type_of or type_of.endswith("const") or (type_of.startswith("const") and "*" not in type_of)


def globals_of_headers() -> set[str]:
    """The variables that the headers of the engine declare, constants aside, with the plain names of fields."""
    names = set()
    for folder in ("base", "position", "eval", "book", "pv", "search", "frontend", "host", "polyglot", "uci"):
        for header in (PROJECT / folder).glob("*.h"):
            text = header.read_text(encoding="utf-8")
            variables = re.findall(r"^(?:extern|inline) ([^(=;{]*?)\s*\b(\w+)(?:\[[^;]*)?(?: = [^;]*)?;", text, re.M)
            names.update(name for type_of, name in variables if not is_constant(type_of))
            names.update(re.findall(r"^extern \w+ \(\*(\w+)\)\(", text, re.M))  # pointers to functions
            names.update(re.findall(r"^inline constexpr auto& (\w+) =", text, re.M))
    return names


def test_every_global_has_a_lifetime():
    text = (PROJECT / "docs/ARCHITECTURE.md").read_text(encoding="utf-8")
    section = text.partition("## How long things live")[2].partition("\n## ")[0]
    rows = [line.split("|")[3] for line in section.splitlines() if line.startswith("| ")]
    told = [name for row in rows for name in re.findall(r"`(\w+)`", row)]
    assert len(told) > 60
    assert sorted(told) == sorted(globals_of_headers())


def test_clock_and_allowance_have_one_writer():
    writes = re.compile(r"\b(?:limit_time|(?:start|curr)_time|cnt_nodes|is_stop_search)\s*(?:[-+*/|&^]?=[^=]|\+\+|--)"
                        r"|(?:\+\+|--)(?:limit_time|cnt_nodes)\b")
    sources = [path for path in files() if path.suffix in (".cpp", ".h") and path.parts[0] != "tests"]
    writers = {str(path) for path in sources if writes.search((PROJECT / path).read_text(encoding="utf-8"))}
    assert writers == {"search/clock.cpp", "search/clock.h", "search/settings.h"}  # the headers declare them


# --- web pages --------------------------------------------------------------------------------------------

PAGES = [path for path in files() if path.suffix == ".html"]


def test_pages_have_no_faults():
    require("tidy")
    assert len(PAGES) > 0
    # What is empty is there for the script to fill.
    assert complaints("tidy", "-e", "-q", "--drop-empty-elements", "no", *PAGES) == ""


def test_scripts_of_pages_can_be_read():
    require("node")
    scripts = [path for path in files() if path.suffix in (".js", ".mjs")]
    assert len(scripts) > 1
    assert [complaints("node", "--check", path) for path in scripts] == [""] * len(scripts)


@pytest.mark.parametrize("page", PAGES, ids=str)
def test_page_script_and_styles_fit_together(page):
    """None of the three names what no other has: misspelt names do nothing at all, in every browser."""
    html, css, js = ((PROJECT / page).with_suffix(kind).read_text() for kind in (".html", ".css", ".js"))
    styles = re.sub(r"/\*.*?\*/", "", css, flags=re.DOTALL)
    selectors = " ".join(re.findall(r"([^{};]*)\{", styles))
    ids, pieces = set(re.findall(r'\bid="([\w-]+)"', html)), set(re.findall(r'\bid="(piece-\w)"', html))
    classes = set(" ".join(re.findall(r'\bclass="([^"]*)"', html)).split()) | set(
        re.findall(r'\.className = "([\w-]+)"', js))
    styled = set(re.findall(r"\.([A-Za-z][\w-]*)", selectors))
    sought = set(re.findall(r'\$\("([\w-]+)"\)', js))
    assert sought <= ids and len(sought) > 10
    assert set(re.findall(r"#([\w-]+)", selectors)) <= ids
    assert classes == styled
    assert pieces == {f"piece-{letter}" for letter in "kqrbnp"}
    given = set(re.findall(r"(--[\w-]+):", styles)) | set(re.findall(r'setProperty\("(--[\w-]+)"', js))
    assert given == set(re.findall(r"var\((--[\w-]+)\)", css + js + html))
