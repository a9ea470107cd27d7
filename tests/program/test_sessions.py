"""Whole runs of the engine against recorded ones: what it writes, how it ends, what it leaves.

Each session of tests/data/sessions.json runs in a folder of its own. The engine sees a `ps` that lists the program as
often as the session says, and a clock that steps on at each reading (see fixed_time.cpp), so it plays the same on
every machine.
"""

import base64
import difflib
import hashlib
import json
import pathlib
import re

import learn_records
import pytest
from conftest import DATA
from engine_folder import EngineFolder

SESSIONS = json.loads((DATA / "sessions.json").read_text())
TIMEOUT_SECONDS = 240

# 4096 nodes between two readings of the clock, 10 ms a reading at speed 1: a machine of 410,000 nodes a second.
STEP_MS = 10


def prepare(session: dict, folder: EngineFolder) -> None:
    """Puts the session's configuration, book and other files beside the engine, and lists its instances."""
    for key, name in (("config", "tarvyle.cfg"), ("book", "tarvyle.bk")):
        if session[key] is None:
            folder.file(name).unlink()
        else:
            folder.file(name).write_bytes(session[key].encode())
    for name, content in session["files"].items():
        folder.file(name).write_bytes(base64.b64decode(content))
    if session["instances_listed_by_ps"] < 0:
        folder.without_lister()
    else:
        folder.list_instances(session["instances_listed_by_ps"])


def plain(text: str, folder: pathlib.Path) -> str:
    """The text without what differs from run to run: times, temporary numbers, the folder."""
    text = text.replace(str(folder), "DIR")
    text = re.sub(r"^([ \d]\d +-?\d+) +-?\d+ ( *\d+ )", r"\1 T \2", text, flags=re.M)
    text = re.sub(r"tarvyle_tmp_lrn\d+\.lrn", "tarvyle_tmp_lrnN.lrn", text)
    text = re.sub(r"^(#  about:.*\n)(?:#       .*\n){3}", r"\1CONTACT\n", text, flags=re.M)
    text = re.sub(r"^(#search time )\S+", r"\1T", text, flags=re.M)
    text = re.sub(r"^(#----> find best move .*depth )-?\d+", r"\1D", text, flags=re.M)
    return re.sub(r"^sh: .*not found\n", "", text, flags=re.M)


def describe(path: pathlib.Path):
    """Size and checksum of a file as the recording has them; None for a missing one."""
    if not path.exists():
        return None
    content = path.read_bytes()
    if path.suffix == ".lrn":
        content = b"".join(learn_records.split(content) or [content])  # with zero links: they mean nothing
    return {"size": len(content), "sha256": hashlib.sha256(content).hexdigest()}


def assert_same_text(expected: str, found: str, stream: str) -> None:
    if expected != found:
        lines = difflib.unified_diff(expected.splitlines(), found.splitlines(), f"recorded {stream}",
                                     f"{stream} of this run", lineterm="")
        pytest.fail("\n".join(lines) or f"{stream} differs in its line ends", pytrace=False)


@pytest.mark.parametrize("session", SESSIONS, ids=[session["name"] for session in SESSIONS])
def test_session(session, folder):
    prepare(session, folder)
    process = folder.start(session["program_name"], step_ms=round(STEP_MS * session["clock_speed"]))
    stdout, stderr = process.communicate(session["input"].encode(), timeout=TIMEOUT_SECONDS)
    assert_same_text(session["stdout"], plain(stdout.decode("latin-1"), folder.path), "standard output")
    assert_same_text(session["stderr"], plain(stderr.decode("latin-1"), folder.path), "standard error")
    assert process.returncode == session["exit"]
    assert {name: describe(folder.file(name)) for name in session["files_after"]} == session["files_after"]
    assert folder.names() == session["left_in_folder"]
