"""What the tests of the whole program share: where it is, how skipping is told, and ways of running it.

ctest passes the folder of the programs in ENGINE_BIN_DIR, and what is preloaded into them in
FIXED_TIME_LIBRARY (a clock) and DISK_LOG_LIBRARY. By hand, `pytest tests/program` takes those of the release preset.
"""

import contextlib
import os
import pathlib
import resource
import shutil
import subprocess

import pytest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
DATA = PROJECT / "tests" / "data"
RELEASE = PROJECT / "build" / "release"

SEARCH_PATH = os.environ["PATH"] + os.pathsep + "/usr/games"  # where Debian puts games; not on every search path

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


def require(*programs: str) -> None:
    """Skips the running test unless all these programs are installed."""
    for program in programs:
        if shutil.which(program, path=SEARCH_PATH) is None:
            skip_or_fail(f"{program} is not installed")


def engine_environment() -> dict[str, str]:
    """The environment for a run of the engine, in the system's plain language."""
    environment = dict(os.environ, LC_ALL="C")
    if sanitized():
        environment["ASAN_OPTIONS"] = "verify_asan_link_order=0"
    return environment


def no_file_beyond(size: int):
    """For `preexec_fn`: writing behind so many bytes of a file fails, as on a full disk. The signal that comes with it
    is left to the program."""
    return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


@pytest.fixture(scope="session")
def engine() -> pathlib.Path:
    path = pathlib.Path(os.environ.get("ENGINE_BIN_DIR", RELEASE / "bin")) / "tarvyle"
    assert path.is_file(), f"{path} is not built"
    return path


def preloaded(name: str) -> pathlib.Path:
    path = pathlib.Path(os.environ.get(f"{name.upper()}_LIBRARY", RELEASE / "tests" / f"{name}.so"))
    assert path.is_file(), f"{path} is not built"
    return path


@pytest.fixture(scope="session")
def fixed_time() -> pathlib.Path:
    return preloaded("fixed_time")


@pytest.fixture(scope="session")
def disk_log() -> pathlib.Path:
    return preloaded("disk_log")


@pytest.fixture(scope="session")
def workbench(engine) -> pathlib.Path:
    path = engine.parent / "tarv"
    assert path.is_file(), f"{path} is not built"
    return path


# --- the engine in a folder of its own --------------------------------------------------------------------


@pytest.fixture
def folder(engine, fixed_time, tmp_path):
    """A fresh folder with a configuration and a small book, to run the engine in."""
    from engine_folder import EngineFolder

    return EngineFolder(engine, fixed_time, tmp_path)


@pytest.fixture
def learning(folder):
    """The same, and the engine writes its learn file."""
    folder.configure(learn_file_write="enable")
    return folder


@pytest.fixture
def book_records(learning) -> list[bytes]:
    """The records of a learn file that was made from the book alone, sorted. The folder is as before."""
    import learn_records

    learning.run("quit")
    found = learn_records.read(learning.file("tarvyle.lrn"))
    learning.file("tarvyle.lrn").unlink()
    assert found
    return found


# --- the workbench, run in an empty folder ----------------------------------------------------------------


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


@pytest.fixture
def learned(says, tmp_path):
    """The records of learn_records.FOUR; four.epd holds these positions, and four.lrn what was found at depth 3."""
    import learn_records

    (tmp_path / "four.epd").write_text("\n".join(learn_records.FOUR) + "\n")
    says("learn", "analyse", "four.epd", "--depth", 3)
    return learn_records.parse(tmp_path / "four.lrn")


@pytest.fixture
def write(tmp_path):
    """Writes records into a learn file of some name, and returns the name."""

    def write_records(name: str, *records) -> str:
        (tmp_path / name).write_bytes(b"".join(record.bytes() for record in records))
        return name

    return write_records


# --- tarv uci ---------------------------------------------------------------------------------------------


@pytest.fixture
def home(tmp_path) -> pathlib.Path:
    """A folder for the user's own files."""
    folder = tmp_path / "home"
    folder.mkdir()
    return folder


@pytest.fixture
def start(workbench, tmp_path, home):
    """Starts engines that know neither book nor learn file unless a test puts some there."""
    from uci_engine import UciEngine

    # Away from the files that the build puts beside the program.
    program = tmp_path / "program" / "tarv"
    program.parent.mkdir()
    shutil.copy(workbench, program)
    environment = {name: value for name, value in engine_environment().items() if name != "XDG_DATA_HOME"}
    with contextlib.ExitStack() as engines:

        def run(*options: str, **variables: str) -> UciEngine:
            uci = engines.enter_context(UciEngine(
                [program, "uci"], env=environment | {"HOME": str(home)} | variables, cwd=tmp_path))
            for option in options:
                name, value = option.split("=", 1)
                uci.send(f"setoption name {name} value {value}")
            assert [line for line in uci.ask() if not line.startswith("info string the tables take")] == []
            return uci

        yield run


@pytest.fixture
def uci(start):
    return start("Seed=1")


# --- a referee --------------------------------------------------------------------------------------------


@pytest.fixture
def referee(tmp_path):
    from referee import Referee

    with Referee(tmp_path / "referee") as judging:
        yield judging


# --- the end of a run -------------------------------------------------------------------------------------


def pytest_sessionfinish(session, exitstatus):
    """Tells ctest when every test of the run was skipped."""
    results = session.config.pluginmanager.get_plugin("terminalreporter").stats
    if results.get("skipped") and not any(results.get(kind) for kind in ("passed", "failed", "error")):
        session.exitstatus = ALL_SKIPPED
