"""The Debian package in a throw-away system: installed, played by an ordinary user, upgraded, removed.

The system holds nothing but what every Debian has and what the package depends on. It needs root to be made (by
mmdebstrap, with the machine's own apt configuration) and is gone afterwards.
"""

import os
import pathlib
import re
import shutil
import subprocess

import pytest
from conftest import PROJECT, require, skip_or_fail
from positions import OUT_OF_BOOK, OUT_OF_BOOK_TEXT, START

USER = 1000
HOME = "/home/player"
FOLDER = HOME + "/.local/share/tarvyle"
TIMEOUT_SECONDS = 600

LEARNED = OUT_OF_BOOK_TEXT.encode()


def run(*command, **options) -> str:
    """Standard output of a command that succeeds."""
    done = subprocess.run([str(word) for word in command], text=True, capture_output=True, check=False,
                          timeout=TIMEOUT_SECONDS, **options)
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


def field(package: pathlib.Path, name: str) -> str:
    return run("dpkg-deb", "-f", package, name).strip()


@pytest.fixture(scope="module")
def package() -> pathlib.Path:
    """The package, looked over by lintian."""
    require("dpkg-deb")
    return PROJECT / run(PROJECT / "packaging" / "deb").strip()


@pytest.fixture(scope="module")
def newer(package, tmp_path_factory) -> pathlib.Path:
    """The next version, with another book and another configuration."""
    root = tmp_path_factory.mktemp("newer")
    run("dpkg-deb", "-R", package, root / "tree")
    for name, line in (("DEBIAN/control", None), ("usr/lib/tarvyle/tarvyle.bk", "a2a3 a7a6 a3a4 a6a5\n"),
                       ("usr/lib/tarvyle/tarvyle.cfg", 'play style="knowledge2"\n')):
        file = root / "tree" / name
        text = file.read_text()
        file.write_text(text + line if line else re.sub(r"(?m)^(Version: .*)$", r"\1+next", text))
    (root / "tree/DEBIAN/md5sums").unlink()
    run("dpkg-deb", "--root-owner-group", "-b", root / "tree", root / "newer.deb")
    return root / "newer.deb"


class System:
    """A small Debian below a folder, with processes and a user of its own."""

    def __init__(self, root: pathlib.Path):
        self.root = root

    def path(self, name: str) -> pathlib.Path:
        return self.root / name.lstrip("/")

    def inside(self, *command: str, user: int = 0) -> list[str]:
        return ["unshare", "--mount", "--pid", "--fork", "--kill-child", f"--mount-proc={self.root}/proc",
                "chroot", f"--userspec={user}:{user}", str(self.root),
                "env", "-i", f"HOME={HOME}", "PATH=/usr/sbin:/usr/bin:/sbin:/bin:/usr/games", "LC_ALL=C", *command]

    def install(self, package: pathlib.Path) -> None:
        shutil.copy(package, self.root / "package.deb")
        run(*self.inside("dpkg", "-i", "/package.deb"))

    def play(self, *lines: str) -> str:
        """What the engine says to the user who enters these lines."""
        return run(*self.inside("sh", "-c", "cd && exec tarvyle", user=USER),
                   input="".join(f"{line}\n" for line in lines))

    def learn_file(self) -> bytes:
        return self.path(f"{FOLDER}/tarvyle.lrn").read_bytes()


@pytest.fixture(scope="module")
def system(package, tmp_path_factory) -> System:
    if os.geteuid() != 0:
        skip_or_fail("only root can make a system to install in")
    require("mmdebstrap", "unshare")
    root = tmp_path_factory.mktemp("system") / "root"
    release = dict(re.findall(r'(?m)^(\w+)="?([^"\n]*)', pathlib.Path("/etc/os-release").read_text()))
    depends = [re.match(r"[^ ]+", one.strip())[0] for one in field(package, "Depends").split(",")]
    assert "procps" in depends
    run("mmdebstrap", "--mode=root", "--variant=essential", "--include=" + ",".join(depends),
        release["VERSION_CODENAME"], root)
    system = System(root)
    home = system.path(HOME)
    home.mkdir(parents=True)
    os.chown(home, USER, USER)
    yield system
    shutil.rmtree(root)


# One after the other: a package's life.


def test_the_package_is_installed(system, package):
    system.install(package)
    assert run(*system.inside("dpkg", "--audit")) == ""
    listed = run(*system.inside("dpkg", "-L", "tarvyle")).split()
    assert {"/usr/games/tarvyle", "/usr/games/tarv", "/usr/lib/tarvyle/tarvyle", "/usr/share/man/man6/tarvyle.6.gz",
            "/usr/share/games/plugins/xboard/tarvyle.eng"} <= set(listed)


def test_the_workbench_runs(system):
    assert run(*system.inside("tarv", "perft", "--fen", START, "--depth", "3", user=USER)) == "8902\n"


def test_an_ordinary_user_plays(system):
    assert "write learn file" in system.play("quit")
    before = system.learn_file()
    said = system.play("xboard", "st 4", f"setboard {OUT_OF_BOOK}", "go", "save", "quit")
    assert "# warning" not in said
    assert re.search(r"(?m)^move \w+$", said)
    assert LEARNED not in before
    assert LEARNED in system.learn_file()
    names = {path.name: path.lstat().st_uid for path in system.path(FOLDER).iterdir()}
    assert set(names) == {"tarvyle", "tarvyle.cfg", "tarvyle.bk", "tarvyle.lrn", "tarvyle_save_game.dat"}
    assert set(names.values()) == {USER}


def test_of_two_at_once_only_one_writes(system):
    said = run(*system.inside("sh", "-c", "cd || exit\n{ sleep 3; echo quit; } | tarvyle >first &\nsleep 1\n"
                              "echo quit | tarvyle >second; wait; cat first; echo ---; cat second", user=USER))
    first, second = said.split("---\n")
    assert "write learn file" in first and "# warning" not in first
    assert "# warning: tarvyle(2): learn file write disable" in second and "write learn file" not in second


def test_an_upgrade_leaves_what_is_the_users(system, newer):
    own = system.path(f"{FOLDER}/tarvyle.cfg")
    own.write_text(own.read_text().replace('seconds="10"', 'seconds="8"'))
    kept = {path.name: path.read_bytes() for path in system.path(FOLDER).iterdir() if not path.is_symlink()}
    system.install(newer)
    assert field(newer, "Version") in run(*system.inside("dpkg-query", "-W", "tarvyle"))
    assert {path.name: path.read_bytes() for path in system.path(FOLDER).iterdir() if not path.is_symlink()} == kept
    said = system.play("style", "quit")
    assert "# knowledge3 \n" in said and "write learn file" in said
    assert LEARNED in system.learn_file()


def test_removed_without_a_trace_but_the_users(system):
    listed = run(*system.inside("dpkg", "-L", "tarvyle")).split()
    run(*system.inside("dpkg", "-P", "tarvyle"))
    left = [name for name in listed if os.path.lexists(system.path(name)) and not system.path(name).is_dir()]
    assert left == []
    assert not system.path("/usr/lib/tarvyle").exists()
    assert LEARNED in system.learn_file()
