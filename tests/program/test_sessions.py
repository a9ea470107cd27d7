"""Whole runs of the engine against recorded ones: what it writes, how it ends, what it leaves.

Each session of tests/data/sessions.json runs in a folder of its own. The engine sees a `ps` that
lists the program as often as the session says, and a clock that steps on at each reading (see
fixed_time.cpp), so it plays the same on every machine.
"""

import base64
import difflib
import hashlib
import json
import os
import pathlib
import re
import subprocess

import pytest
from conftest import DATA, engine_environment

SESSIONS = json.loads((DATA / "sessions.json").read_text())
TIMEOUT_SECONDS = 240

# 4096 nodes between two readings of the clock, 10 ms a reading at speed 1: a machine of 410,000
# nodes a second.
STEP_MS = 10

LEARN_HEADER = 24  # bytes before a learn record's text
LEARN_LINK = slice(8, 12)
LEARN_LENGTH = slice(18, 20)


def write_inputs(session: dict, folder: pathlib.Path) -> None:
    """Puts the session's configuration, book and other files beside the engine."""
    for key, name in (("config", "tarvyle.cfg"), ("book", "tarvyle.bk")):
        if session[key] is not None:
            (folder / name).write_bytes(session[key].encode())
    for name, content in session["files"].items():
        (folder / name).write_bytes(base64.b64decode(content))


def write_lister(count: int, folder: pathlib.Path) -> None:
    """A `ps` that lists the engine `count` times; none at all when that is negative."""
    folder.mkdir()
    if count < 0:
        return
    rows = ["    PID TTY          TIME CMD"]
    rows += [f"  {1000 + row} pts/0    00:00:00 tarvyle" for row in range(count)]
    lister = folder / "ps"
    lister.write_text("#!/bin/sh\n" + "".join(f"echo '{row}'\n" for row in rows))
    lister.chmod(0o755)


def plain(text: str, folder: pathlib.Path) -> str:
    """The text without what differs from run to run: times, temporary numbers, the folder."""
    text = text.replace(str(folder), "DIR")
    text = re.sub(r"^([ \d]\d +-?\d+) +-?\d+ ( *\d+ )", r"\1 T \2", text, flags=re.M)
    text = re.sub(r"tarvyle_tmp_lrn\d+\.lrn", "tarvyle_tmp_lrnN.lrn", text)
    text = re.sub(r"^(#  about:.*\n)(?:#       .*\n){3}", r"\1CONTACT\n", text, flags=re.M)
    text = re.sub(r"^(#search time )\S+", r"\1T", text, flags=re.M)
    text = re.sub(r"^(#----> find best move .*depth )-?\d+", r"\1D", text, flags=re.M)
    return re.sub(r"^sh: .*not found\n", "", text, flags=re.M)


def without_links(records: bytes) -> bytes:
    """A learn file with each record's link zeroed: its value in the file means nothing."""
    cleaned = bytearray(records)
    start = 0
    while start + LEARN_HEADER < len(cleaned):
        record = cleaned[start:]
        length = int.from_bytes(record[LEARN_LENGTH], "little", signed=True)
        if length <= LEARN_HEADER:
            break
        cleaned[start + LEARN_LINK.start : start + LEARN_LINK.stop] = bytes(4)
        start += length
    return bytes(cleaned)


def describe(path: pathlib.Path):
    """Size and checksum of a file as the recording has them; None for a missing one."""
    if not path.exists():
        return None
    content = path.read_bytes()
    if path.suffix == ".lrn":
        content = without_links(content)
    return {"size": len(content), "sha256": hashlib.sha256(content).hexdigest()}


def left_in(folder: pathlib.Path) -> list[str]:
    names = (plain(path.name, folder) for path in folder.iterdir())
    return sorted(name for name in names if name not in ("tarvyle.cfg", "tarvyle.bk"))


def assert_same_text(expected: str, found: str, stream: str) -> None:
    if expected != found:
        lines = difflib.unified_diff(
            expected.splitlines(),
            found.splitlines(),
            f"recorded {stream}",
            f"{stream} of this run",
            lineterm="",
        )
        pytest.fail("\n".join(lines) or f"{stream} differs in its line ends", pytrace=False)


@pytest.mark.parametrize("session", SESSIONS, ids=[session["name"] for session in SESSIONS])
def test_session(session, engine, fixed_time, tmp_path):
    folder = tmp_path / "run"
    folder.mkdir()
    write_inputs(session, folder)
    write_lister(session["instances_listed_by_ps"], tmp_path / "lister")

    environment = engine_environment()
    missing = session["instances_listed_by_ps"] < 0
    environment["PATH"] = str(tmp_path / "lister") + (
        "" if missing else os.pathsep + environment["PATH"]
    )
    environment["LD_PRELOAD"] = str(fixed_time)
    environment["FIXED_TIME_STEP_MS"] = str(round(STEP_MS * session["clock_speed"]))

    run = subprocess.run(
        [session["program_name"]],
        executable=engine,
        cwd=folder,
        env=environment,
        input=session["input"].encode(),
        capture_output=True,
        timeout=TIMEOUT_SECONDS,
        check=False,
    )

    assert_same_text(
        session["stdout"], plain(run.stdout.decode("latin-1"), folder), "standard output"
    )
    assert_same_text(
        session["stderr"], plain(run.stderr.decode("latin-1"), folder), "standard error"
    )
    assert run.returncode == session["exit"]
    assert {name: describe(folder / name) for name in session["files_after"]} == session[
        "files_after"
    ]
    assert left_in(folder) == session["left_in_folder"]
