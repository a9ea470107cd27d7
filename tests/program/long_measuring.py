"""The programs of bench/ that measure whole engines: they run, and print what the documents quote."""

import re
import subprocess
import sys

import pytest
from conftest import PROJECT, RELEASE, sanitized

pytestmark = pytest.mark.skipif(sanitized(), reason="they measure the release build")

WORKBENCH = RELEASE / "bin" / "tarv"
TIMEOUT_SECONDS = 300


def measured(script: str, *arguments) -> str:
    """What a script prints that ends well."""
    done = subprocess.run([sys.executable, "-B", PROJECT / "bench" / script, *map(str, arguments)], text=True,
                          capture_output=True, timeout=TIMEOUT_SECONDS, check=False)
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_a_match(referee):
    """The referee has been fetched, or the test is skipped."""
    said = measured("strength.py", "--games", 2, "--clock", "0.5+0.01", "--option", "Seed=1", WORKBENCH, "uci")
    assert re.match(r"2 games: \d won, \d drawn, \d lost; Elo [+-]\d+ \(", said), said


def test_nodes_beside_other_engines(tmp_path):
    rows = tmp_path / "rows.tsv"
    said = measured("peers.py", "--seconds", 0.5, "--tsv", rows, "tarv")
    assert re.search(r"^tarv +[\d,]+ +[\d,]+ +[\d,]+  \(12 positions\)$", said, re.MULTILINE), said
    assert len(rows.read_text().splitlines()) == 12


def test_the_first_answer_and_the_memory():
    said = measured("startup.py")
    assert re.search(r"^to the first answer: [\d.]+ ms$", said, re.MULTILINE), said
    assert re.search(r"^memory after a search: \d+ kB", said, re.MULTILINE), said
