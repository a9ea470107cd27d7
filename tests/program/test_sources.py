"""The sources as such: scripts under the linters of their languages, files as editors are told to write them, includes
without a circle."""

import configparser
import graphlib
import os
import pathlib
import re
import subprocess

from conftest import PROJECT, require

FOLDERS_OF_OTHERS = {".git", "build", "node_modules"}

PYTHON_COLUMNS = 120


def files() -> list[pathlib.Path]:
    """Every file of the tree but what was built or fetched."""
    found = []
    for folder, folders, names in os.walk(PROJECT):
        folders[:] = [name for name in folders if name not in FOLDERS_OF_OTHERS]
        found += [pathlib.Path(folder, name).relative_to(PROJECT) for name in names]
    return sorted(found)


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
