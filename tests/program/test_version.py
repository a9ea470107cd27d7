"""The version has one source, project(VERSION) of CMakeLists.txt, and all that tell it tell the same."""

import datetime
import re
import subprocess

import pytest
from conftest import PROJECT, engine_environment, require

DATE_FORMAT = {"changelog": "%Y-%m-%d", "manual": "%B %d, %Y", "package": "%a, %d %b %Y"}


def text_of(name: str) -> str:
    return (PROJECT / name).read_text()


def version() -> str:
    return re.search(r"^project\(tarvyle VERSION (\d+\.\d+\.\d+) ", text_of("CMakeLists.txt"), re.MULTILINE)[1]


def numbers(text: str) -> tuple[int, ...]:
    return tuple(map(int, text.split(".")))


def date(text: str, kind: str) -> datetime.date:
    return datetime.datetime.strptime(text, DATE_FORMAT[kind]).date()


# --- the programs -----------------------------------------------------------------------------------------


def test_the_workbench_tells_the_version(tarv):
    done = tarv("--version")
    assert (done.stdout, done.stderr, done.returncode) == (f"tarv {version()}\n", "", 0)


@pytest.mark.parametrize("command", [["tarv", "uci"], ["tarv-uci"]])
def test_a_uci_client_is_told_the_version(engine, tmp_path, command):
    done = subprocess.run([engine.parent / command[0], *command[1:]], input="uci\nquit\n", text=True,
                          capture_output=True, check=True, cwd=tmp_path, env=engine_environment())
    assert done.stdout.splitlines()[0] == f"id name Tarvyle {version()}"


def test_the_console_greets_as_ever(folder):
    assert folder.run("quit").stdout.startswith("# Chess, build Jul 22 2013 \n")


# --- the manuals and the package --------------------------------------------------------------------------


@pytest.mark.parametrize("name", ["tarvyle.6", "tarv.6", "tarv-uci.6"])
def test_manuals_tell_the_version_and_its_day(engine, name):
    require("mandoc")
    manual = engine.parent.parent / "packaging" / "man" / name
    page = subprocess.run(["mandoc", "-T", "ascii", manual], text=True, capture_output=True, check=True).stdout
    left, day, right = re.split(r" {2,}", page.rstrip().splitlines()[-1])
    assert left == right == f"Tarvyle {version()}"
    assert date(day, "manual") == package_entry()[1]


def package_entry() -> tuple[str, datetime.date]:
    """Version and day of the newest entry of the package's changelog."""
    entry = text_of("packaging/debian/changelog")
    told = re.match(r"tarvyle \(([^)]+)\)", entry)[1]
    return told, date(re.search(r"^ -- .*>  (\w+, \d+ \w+ \d+) ", entry, re.MULTILINE)[1], "package")


def test_the_package_has_the_version(engine):
    cpack = (engine.parent.parent / "CPackConfig.cmake").read_text()
    assert re.search(r'^set\(CPACK_PACKAGE_VERSION "(.*)"\)', cpack, re.MULTILINE)[1] == version()
    assert package_entry()[0] == version()


# --- the changelog ----------------------------------------------------------------------------------------


def test_the_changelog_ends_with_the_version_or_prepares_it():
    """The newest release is this version, or an older one with changes above it."""
    unreleased, *entries = re.split(r"^## ", text_of("CHANGELOG.md"), flags=re.MULTILINE)[1:]
    heading, _, changes = unreleased.partition("\n")
    assert heading == "[Unreleased]"
    releases = [re.match(r"\[(\d+\.\d+\.\d+)\] - (\d{4}-\d{2}-\d{2})\n", entry) for entry in entries]
    assert all(releases)
    assert [r[1] for r in releases] == sorted((r[1] for r in releases), key=numbers, reverse=True)
    if releases[0][1] == version():
        assert date(releases[0][2], "changelog") == package_entry()[1]
    else:
        assert numbers(releases[0][1]) < numbers(version())
        assert changes.strip()
