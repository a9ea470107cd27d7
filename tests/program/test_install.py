"""What `cmake --install` puts in place: the files, the script that starts the engine in a folder of the user's
own, the manuals and the plugin file. The Debian package made of the same has its own, long test.
"""

import os
import pathlib
import re
import shutil
import subprocess

import pytest
from conftest import PROJECT, engine_environment, require
from engine_folder import BOOK
from positions import OUT_OF_BOOK

PREFIX = "opt/chess"
TIMEOUT_SECONDS = 60

# Lists the processes from the lister itself up to the test that started them all: what `ps -e` lists, without
# the rest of the machine.
LISTER = """\
#!/bin/sh
pid=$$
while [ "$pid" -gt 1 ] && [ "$pid" != {top} ]; do
  echo "$pid ? 00:00:00 $(cat /proc/$pid/comm)"
  pid=$(sed -n 's/^PPid:[[:space:]]*//p' /proc/$pid/status)
done
"""


def build_folder(engine: pathlib.Path) -> pathlib.Path:
    return engine.parent.parent


@pytest.fixture(scope="module")
def installed(engine, tmp_path_factory) -> pathlib.Path:
    """The prefix of an installation below another root, as packagers make it."""
    root = tmp_path_factory.mktemp("root")
    subprocess.run(["cmake", "--install", build_folder(engine), "--prefix", "/" + PREFIX],
                   env=os.environ | {"DESTDIR": str(root)}, check=True, stdout=subprocess.DEVNULL)
    return root / PREFIX


class User:
    """A user of the installation, with a home, who sees nobody else's processes."""

    def __init__(self, installed: pathlib.Path, fixed_time: pathlib.Path, root: pathlib.Path):
        self.start = installed / "games" / "tarvyle"
        self.home = root / "home"
        self.home.mkdir()
        self.folder = self.home / ".local/share/tarvyle"
        self.give_small_book(self.folder)
        lister = root / "lister"
        lister.mkdir()
        (lister / "ps").write_text(LISTER.format(top=os.getpid()))
        (lister / "ps").chmod(0o755)
        self.environment = engine_environment() | {
            "HOME": str(self.home), "PATH": f"{lister}:{os.environ['PATH']}", "LD_PRELOAD": str(fixed_time),
            "FIXED_TIME_STEP_MS": "10000"}
        self.environment.pop("XDG_DATA_HOME", None)

    def give_small_book(self, folder: pathlib.Path) -> None:
        """Puts a book there that is read in no time, before the shipped one is copied."""
        folder.mkdir(parents=True)
        (folder / "tarvyle.bk").write_text(BOOK)

    def run(self, *lines: str, **environment: str | None) -> subprocess.CompletedProcess:
        """A session of these lines. A variable of the environment that is None is not there."""
        changed = {key: value for key, value in (self.environment | environment).items() if value is not None}
        return subprocess.run([self.start], input="".join(f"{line}\n" for line in lines), text=True,
                              capture_output=True, env=changed, cwd=self.home, timeout=TIMEOUT_SECONDS, check=False)

    def file(self, name: str) -> pathlib.Path:
        return self.folder / name


@pytest.fixture
def user(installed, fixed_time, tmp_path) -> User:
    return User(installed, fixed_time, tmp_path)


# --- what is installed ------------------------------------------------------------------------------------


def test_the_program_and_its_data_stand_together(installed):
    data = {path.name: path.read_bytes() for path in (PROJECT / "data").iterdir() if path.name != "README.md"}
    found = {path.name: path.read_bytes() for path in (installed / "lib/tarvyle").iterdir()}
    assert {"tarvyle.cfg", "tarvyle.bk"} <= set(data)
    assert set(found) == {"tarvyle", "tarv", "tarv-uci"} | set(data)
    assert {name: found[name] for name in data} == data


def help_text(installed: pathlib.Path) -> str:
    """What the installed workbench says of itself."""
    return subprocess.run([installed / "games/tarv", "--help"], env=engine_environment(), check=True,
                          capture_output=True, text=True).stdout


def test_the_workbench_is_a_link_to_where_its_data_is(installed):
    assert os.readlink(installed / "games/tarv") == "../lib/tarvyle/tarv"
    assert "Usage: tarv" in help_text(installed)


def test_the_second_front_end_is_a_link_to_where_its_data_is(installed):
    assert os.readlink(installed / "games/tarv-uci") == "../lib/tarvyle/tarv-uci"
    done = subprocess.run([installed / "games/tarv-uci"], input="setoption name OwnBook value true\nisready\nquit\n",
                          env=engine_environment(), capture_output=True, text=True, check=True)
    assert done.stdout == "readyok\n", "the book beside the program is read"


def test_plugins_name_installed_commands(installed):
    """Three lines each: the version of the format, the command, the variants of chess."""
    files = sorted((installed / "share/games/plugins").glob("*/*.eng"))
    assert "xboard/tarvyle.eng" in [f"{path.parent.name}/{path.name}" for path in files]
    for path in files:
        version, command, variants = path.read_text().splitlines()
        assert (version, variants) == ("plugin spec 0.0", "chess")
        assert (installed / "games" / command.split()[0]).is_file(), path


def test_nothing_else_is_installed(installed):
    folders = {str(path.parent.relative_to(installed)) for path in installed.rglob("*") if not path.is_dir()}
    assert folders <= {"games", "lib/tarvyle", "share/man/man6", "share/doc/tarvyle",
                       "share/doc/tarvyle/docs", "share/games/plugins/xboard",
                       "share/games/plugins/uci", "share/bash-completion/completions"}


# --- the folder of a user ---------------------------------------------------------------------------------


def test_the_first_start_makes_the_folder(user, installed):
    shutil.rmtree(user.home / ".local")
    done = user.run("save", "quit")
    assert done.returncode == 0 and "# move: ? \n" in done.stdout
    assert {path.name for path in user.folder.iterdir()} == {
        "tarvyle", "tarvyle.cfg", "tarvyle.bk", "tarvyle.lrn", "tarvyle_save_game.dat"}
    assert os.readlink(user.file("tarvyle")) == str(installed / "lib/tarvyle/tarvyle")
    assert {path.name for path in user.home.iterdir()} == {".local"}
    for name in ("tarvyle.cfg", "tarvyle.bk"):
        assert user.file(name).read_bytes() == (PROJECT / "data" / name).read_bytes()


def test_a_second_start_writes_what_was_learned(user):
    """The script must be gone by then: a second process of that name keeps the engine from writing."""
    user.run("quit")
    before = user.file("tarvyle.lrn").read_bytes()
    done = user.run("xboard", f"setboard {OUT_OF_BOOK}", "go", "quit")
    assert "learn file write disable" not in done.stdout
    assert re.search(r"^move \w+$", done.stdout, re.MULTILINE)
    assert f"write learn file {user.folder}/tarvyle.lrn" in done.stdout
    assert user.file("tarvyle.lrn").stat().st_size > len(before)


def test_a_waiting_script_would_be_a_second_instance(user, tmp_path):
    """What the test before looks for can be seen: here the same script waits for the engine."""
    waiting = tmp_path / "games" / "tarvyle"
    waiting.parent.mkdir()
    (tmp_path / "lib").symlink_to(user.start.parent.parent / "lib")
    text = user.start.read_text()
    waiting.write_text(text.replace('exec "$program" "$@"\n', '"$program" "$@"\nexit\n'))
    assert waiting.read_text() != text
    waiting.chmod(0o755)
    user.start = waiting
    assert "# warning: tarvyle(2): learn file write disable \n" in user.run("quit").stdout


def test_files_of_the_user_stay(user):
    user.run("quit")
    settings = user.file("tarvyle.cfg").read_text().replace('style="knowledge3"', 'style="knowledge1"')
    user.file("tarvyle.cfg").write_text(settings)
    user.file("tarvyle.bk").write_text("e2e4 c7c5\n")
    assert user.run("style", "quit").stdout.count("# knowledge1 \n") == 2
    assert user.file("tarvyle.cfg").read_text() == settings
    assert user.file("tarvyle.bk").read_text() == "e2e4 c7c5\n"


def test_the_link_follows_the_installation(user, installed, tmp_path):
    user.run("quit")
    moved = tmp_path / "moved"
    shutil.copytree(installed, moved, symlinks=True)
    user.start = moved / "games" / "tarvyle"
    assert user.run("quit").returncode == 0
    assert os.readlink(user.file("tarvyle")) == str(moved / "lib/tarvyle/tarvyle")


def test_the_script_may_be_reached_by_a_link(user, tmp_path):
    (tmp_path / "chess").symlink_to(user.start)
    user.start = tmp_path / "chess"
    assert user.run("quit").returncode == 0


def test_a_data_folder_of_the_users_choice(user, tmp_path):
    shutil.rmtree(user.folder)
    chosen = tmp_path / "my data"
    user.give_small_book(chosen / "tarvyle")
    assert user.run("quit", XDG_DATA_HOME=str(chosen)).returncode == 0
    assert (chosen / "tarvyle/tarvyle.lrn").is_file()
    assert not user.folder.exists()


def test_a_relative_data_folder_does_not_count(user):
    assert user.run("quit", XDG_DATA_HOME="data").returncode == 0
    assert user.file("tarvyle.lrn").is_file()


def test_no_home_at_all(user):
    done = user.run("quit", HOME=None)
    assert (done.stdout, done.returncode) == ("", 1)
    assert done.stderr == "tarvyle: HOME is not set, so there is no folder for the learn file\n"


def test_a_folder_that_cannot_be_made(user):
    shutil.rmtree(user.home / ".local")
    (user.home / ".local").write_text("in the way")
    done = user.run("quit")
    assert (done.stdout, done.returncode) == ("", 1)
    assert done.stderr.endswith(f"tarvyle: cannot make the folder {user.folder}\n")


def test_a_link_that_cannot_be_made(user):
    user.file("tarvyle").mkdir()
    done = user.run("quit")
    assert (done.stdout, done.returncode) == ("", 1)
    assert done.stderr.endswith(f"tarvyle: cannot make the link {user.folder}/tarvyle\n")


# --- manuals ----------------------------------------------------------------------------------


@pytest.mark.parametrize("name", ["tarvyle.6", "tarv.6", "tarv-uci.6"])
def test_manuals_have_no_faults(installed, name):
    require("mandoc")
    done = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", installed / "share/man/man6" / name],
                          capture_output=True, text=True, check=False)
    assert (done.stdout, done.returncode) == ("", 0)


def test_the_manual_has_every_console_command(user, installed):
    help_text = user.run("help", "quit").stdout
    commands = set(re.findall(r"<([a-z]{2,})>", help_text)) - {"from", "to", "second"}
    assert {"undo", "setboard", "rnd", "load"} <= commands
    manual = (installed / "share/man/man6/tarvyle.6").read_text()
    described = set(re.findall(r"\b[a-z]+\b", " ".join(re.findall(r"^\.It Ic (.*)$", manual, re.MULTILINE))))
    assert commands - described == set()


def test_the_manual_has_every_setting(installed):
    settings = re.findall(r"^([^#=\n]+)=", (installed / "lib/tarvyle/tarvyle.cfg").read_text(), re.MULTILINE)
    manual = (installed / "share/man/man6/tarvyle.6").read_text().replace("\\&", "")
    assert len(settings) == 6
    assert [key for key in settings if f".It Li {key}\n" not in manual] == []


def test_the_manual_has_every_subcommand(installed):
    subcommands = re.findall(r"^  ([a-z]+) ", help_text(installed).split("Subcommands:")[1], re.MULTILINE)
    assert "bench" in subcommands
    manual = (installed / "share/man/man6/tarv.6").read_text()
    assert [name for name in subcommands if not re.search(rf"^\.It Cm {name}\b", manual, re.MULTILINE)] == []
