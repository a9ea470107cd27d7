"""The sources as such: scripts under the linters of their languages, includes without a circle."""

import graphlib
import os
import pathlib
import re
import subprocess

from conftest import PROJECT, require

FOLDERS_OF_OTHERS = {".git", "build", "node_modules"}


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
            for number, line in enumerate((PROJECT / path).read_text().splitlines(), 1) if len(line) > 120] == []


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
