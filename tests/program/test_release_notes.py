"""packaging/release-notes: a release's entry of the changelog, for the version that is built."""

import pytest
from conftest import PROJECT
from git_repository import Repository

SCRIPT = "packaging/release-notes"

CHANGELOG = """\
# Changelog

## [Unreleased]

### Added

- Not yet.

## [1.2.0] - 2027-01-31

### Fixed

- A fault,
  in two lines.

### Added

- ## no heading

## [1.1.10] - 2026-12-01

- Newer than 1.1.1.

## [1.1.1] - 2026-11-30

- Old.
"""

NOTES = "### Fixed\n\n- A fault,\n  in two lines.\n\n### Added\n\n- ## no heading\n"


@pytest.fixture
def project(tmp_path):
    tree = Repository(tmp_path)
    tree.take_over(SCRIPT, "packaging/install-missing.sh")
    tree.write("CHANGELOG.md", CHANGELOG)
    set_version(tree, "1.2.0")
    return tree


def set_version(tree, version: str) -> None:
    tree.write("CMakeLists.txt",
               f"cmake_minimum_required(VERSION 3.21)\nproject(tarvyle VERSION {version} LANGUAGES CXX)\n")


def assert_refuses(tree, why: str, *arguments: str) -> None:
    done = tree.run(SCRIPT, *arguments)
    assert (done.stdout, done.stderr, done.returncode) == ("", f"release-notes: {why}\n", 1)


@pytest.mark.parametrize("arguments", [[], ["v1.2.0"]])
def test_the_entry_of_the_version_without_its_heading(project, arguments):
    done = project.run(SCRIPT, *arguments)
    assert (done.stdout, done.stderr, done.returncode) == (NOTES, "", 0)


@pytest.mark.parametrize("version, notes", [("1.1.10", "- Newer than 1.1.1.\n"), ("1.1.1", "- Old.\n")])
def test_versions_are_taken_whole(project, version, notes):
    set_version(project, version)
    assert project.run(SCRIPT).stdout == notes


@pytest.mark.parametrize("tag", ["v1.1.1", "1.2.0", "v1.2", "v1.2.0-rc1", ""])
def test_a_tag_of_another_version_is_refused(project, tag):
    assert_refuses(project, f"the tag is {tag}, the version of CMakeLists.txt 1.2.0", tag)


@pytest.mark.parametrize("before, after", [
    ("## [1.2.0] - 2027-01-31", "## [1.2.0]"),
    ("## [1.2.0] - 2027-01-31", "## [1.2.0] - soon"),
    ("## [1.2.0] - 2027-01-31", "## [1x2.0] - 2027-01-31"),
    (NOTES, ""),
])
def test_without_a_dated_entry_there_are_no_notes(project, before, after):
    assert before in CHANGELOG
    project.write("CHANGELOG.md", CHANGELOG.replace(before, after))
    assert_refuses(project, "CHANGELOG.md has no entry for 1.2.0 with its date")


def test_without_a_version_there_are_no_notes(project):
    project.write("CMakeLists.txt", "project(tarvyle)\n")
    assert_refuses(project, "CMakeLists.txt names no version")


def test_the_first_release_of_this_project_has_notes(project):
    project.take_over("CHANGELOG.md")
    set_version(project, "1.0.0")
    assert project.run(SCRIPT).stdout.startswith("### Added\n\n- The engine: xboard protocol and console")


def test_releases_are_made_with_these_notes():
    workflow = (PROJECT / ".github/workflows/release.yml").read_text()
    assert 'tags: ["v*"]' in workflow and f'{SCRIPT} "$GITHUB_REF_NAME"' in workflow
