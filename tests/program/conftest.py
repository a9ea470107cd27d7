"""What the tests of the whole program share: where it is, and how skipping is told.

ctest passes the folder of the programs in ENGINE_BIN_DIR and the preloaded clock in
FIXED_TIME_LIBRARY. By hand, `pytest tests/program` takes those of the release preset.
"""

import os
import pathlib

import pytest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
DATA = PROJECT / "tests" / "data"
RELEASE = PROJECT / "build" / "release"

ALL_SKIPPED = 77  # ctest's SKIP_RETURN_CODE for these tests


def strict() -> bool:
    """True where nothing may be skipped."""
    return os.environ.get("CI") == "true"


def sanitized() -> bool:
    """True when the programs were built with the sanitizers."""
    return os.environ.get("ENGINE_SANITIZED") == "1"


def skip_or_fail(reason: str) -> None:
    """Skips the running test for want of a program; fails it where nothing may be skipped."""
    if strict():
        pytest.fail(reason)
    pytest.skip(reason)


def engine_environment() -> dict[str, str]:
    """The environment for a run of the engine, in the system's plain language."""
    environment = dict(os.environ, LC_ALL="C")
    if sanitized():
        environment["ASAN_OPTIONS"] = "verify_asan_link_order=0"
    return environment


@pytest.fixture(scope="session")
def engine() -> pathlib.Path:
    path = pathlib.Path(os.environ.get("ENGINE_BIN_DIR", RELEASE / "bin")) / "tarvyle"
    assert path.is_file(), f"{path} is not built"
    return path


@pytest.fixture(scope="session")
def fixed_time() -> pathlib.Path:
    path = pathlib.Path(os.environ.get("FIXED_TIME_LIBRARY", RELEASE / "tests" / "fixed_time.so"))
    assert path.is_file(), f"{path} is not built"
    return path


def pytest_sessionfinish(session, exitstatus):
    """Tells ctest when every test of the run was skipped."""
    results = session.config.pluginmanager.get_plugin("terminalreporter").stats
    if results.get("skipped") and not any(
        results.get(kind) for kind in ("passed", "failed", "error")
    ):
        session.exitstatus = ALL_SKIPPED


@pytest.fixture(scope="session")
def workbench(engine) -> pathlib.Path:
    path = engine.parent / "tarv"
    assert path.is_file(), f"{path} is not built"
    return path


@pytest.fixture
def folder(engine, fixed_time, tmp_path):
    """A fresh folder with a configuration and a small book, to run the engine in."""
    from engine_folder import EngineFolder

    return EngineFolder(engine, fixed_time, tmp_path)
