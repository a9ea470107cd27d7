"""`tarv-uci`, the program for GUIs that start an engine without arguments: what `tarv uci` says, it says."""

import pathlib
import subprocess

import pytest
from conftest import engine_environment, no_file_beyond, sanitized
from uci_engine import UciEngine


@pytest.fixture
def alone(workbench) -> pathlib.Path:
    path = workbench.parent / "tarv-uci"
    assert path.is_file(), f"{path} is not built"
    return path


def test_it_speaks_like_the_workbench(alone, workbench):
    said = []
    for command in [[alone], [workbench, "uci"]]:
        with UciEngine(command) as engine:
            lines = engine.ask("uci", "setoption name Seed value 1")
            thought = engine.go("depth 5", "startpos moves e2e4")
            said.append((lines, thought.signature(), thought.move, engine.position(), engine.quit()))
    assert said[0] == said[1]
    assert said[0][0][-1] == "uciok" and said[0][-1] == (0, "")


def test_a_full_disk_is_reported(alone, tmp_path):
    much = 1 << 20
    (tmp_path / "results.lrn").write_bytes(bytes(much))
    with UciEngine([alone], cwd=tmp_path, preexec_fn=no_file_beyond(much + 100)) as engine:
        engine.ask("setoption name Learn Output value results.lrn")
        assert engine.go("depth 2", "startpos").strings == []
        for _ in range(2):  # first a part of the record fits, then nothing
            assert engine.go("depth 2").strings == ["cannot write to the learn output results.lrn"]
        assert engine.quit() == (0, "")


@pytest.mark.skipif(sanitized(), reason="the sanitizers need much more memory than the engine")
def test_without_memory_it_does_not_start(alone):
    done = subprocess.run(["sh", "-c", 'ulimit -v 40000; exec "$0"', alone], input="uci\n", text=True,
                          capture_output=True, env=engine_environment(), check=False)
    assert (done.returncode, done.stdout, done.stderr) == (2, "", "tarv-uci: out of memory\n")
