"""Runs of the workbench in a folder of its own: fixtures of the tests of its commands."""

import subprocess

import pytest
from conftest import engine_environment

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"


@pytest.fixture
def tarv(workbench, tmp_path):
    """Runs the workbench; its output, errors and exit status."""

    def run(*arguments, text: str = "", **options) -> subprocess.CompletedProcess:
        defaults = {"cwd": tmp_path, "env": engine_environment(), "check": False}
        return subprocess.run([workbench, *map(str, arguments)], input=text, text=True, capture_output=True,
                              **(defaults | options))

    return run


@pytest.fixture
def says(tarv):
    """Runs the workbench, which must succeed without a complaint; its output."""

    def run(*arguments, **options) -> str:
        done = tarv(*arguments, **options)
        assert (done.stderr, done.returncode) == ("", 0)
        return done.stdout

    return run


@pytest.fixture
def complains(tarv):
    """Runs the workbench, which must end with this status and one line of complaint, and say nothing else; the
    line."""

    def run(*arguments, status: int = 2, **options) -> str:
        done = tarv(*arguments, **options)
        assert (done.stdout, done.returncode) == ("", status), done
        assert done.stderr.startswith("tarv: ") and done.stderr.count("\n") == 1, done.stderr
        return done.stderr

    return run
