"""packaging/bench-line: commits that touch the search say its signature."""

import shutil

import pytest
from conftest import DATA, PROJECT, require
from git_repository import Repository
from signatures import default_nodes

SCRIPT = "packaging/bench-line"
SIGNATURE = "tests/data/signature.tsv"
FIRST, SECOND = 18426580, 17000001


@pytest.fixture
def project(tmp_path):
    """A history in which the rule came with the second commit; the first one touches the search."""
    require("git")
    repository = Repository(tmp_path / "project")
    repository.git("init", "--quiet", "--initial-branch=main")
    repository.write("search/node.cpp", "old")
    sign(repository, FIRST)
    repository.commit("Search")
    repository.take_over(SCRIPT, "packaging/install-missing.sh")
    repository.commit("Ask for the signature")
    return repository


def sign(repository, nodes: int) -> None:
    repository.write(SIGNATURE, f"# Style, depth, nodes\nknowledge3\t6\t77\nknowledge3\t8\t{nodes}\n")


def touch(repository, message: str, name: str = "search/node.cpp") -> str:
    """A commit that changes this file."""
    repository.write(name, message)
    return repository.commit(message)


def assert_passes(repository, commits: int, *arguments: str) -> None:
    done = repository.run(SCRIPT, *arguments)
    assert (done.stderr, done.returncode) == (
        f"bench-line: commits that touch the search: {commits}, and each says its signature\n", 0)


def assert_complains(repository, commits: int, *lines: str) -> None:
    done = repository.run(SCRIPT)
    end = f"commits that touch the search without saying its signature: {len(lines) // 2} of {commits}"
    assert (done.stderr.splitlines(), done.returncode) == ([f"bench-line: {line}" for line in (*lines, end)], 1)


def test_history_before_the_rule_passes(project):
    assert_passes(project, 0)


@pytest.mark.parametrize("folder", ["position", "eval", "search", "pv", "book"])
def test_a_commit_that_touches_the_search_says_the_signature(project, folder):
    touch(project, f"Faster\n\nBench: {FIRST}\n", f"{folder}/one.cpp")
    assert_passes(project, 1)
    silent = touch(project, "Faster still", f"{folder}/one.cpp")
    assert_complains(project, 2, f"{silent} Faster still", f"  says nothing, where the signature is {FIRST}")


@pytest.mark.parametrize("name", ["frontend/loop.cpp", "tests/search/node_test.cpp", "search/README.md", "README.md"])
def test_other_commits_need_not(project, name):
    touch(project, "Say it better", name)
    assert_passes(project, 0)


def test_a_deleted_file_counts(project):
    project.git("rm", "--quiet", "search/node.cpp")
    silent = project.commit("Drop it")
    assert_complains(project, 1, f"{silent} Drop it", f"  says nothing, where the signature is {FIRST}")


def test_the_number_is_that_of_the_commit_itself(project):
    touch(project, f"Faster\n\nBench: {FIRST}")
    sign(project, SECOND)
    touch(project, f"Play better\n\nBench: {SECOND}")
    touch(project, f"Faster still\n\nWith a reason.\n\nBench: {SECOND}\nAcked-by: nobody")
    assert_passes(project, 3)
    stale = touch(project, f"Stale\n\nBench: {FIRST}")
    assert_complains(project, 4, f"{stale} Stale", f"  says {FIRST}, where the signature is {SECOND}")


@pytest.mark.parametrize("line, said", [
    (f"bench: {FIRST}", "nothing"),
    (f"The line Bench: {FIRST}", "nothing"),
    (f"Bench: {FIRST}0", f"{FIRST}0"),
    (f"Bench: {FIRST} nodes", f"{FIRST} nodes"),
    (f"Bench: {SECOND}\nBench: {FIRST}", f"{SECOND} {FIRST}"),
])
def test_only_one_line_with_the_number_alone_counts(project, line, said):
    wrong = touch(project, f"Faster\n\n{line}")
    assert_complains(project, 1, f"{wrong} Faster", f"  says {said}, where the signature is {FIRST}")


def test_without_the_table_no_number_is_right(project):
    project.git("rm", "--quiet", SIGNATURE)
    silent = touch(project, "Faster")
    assert_complains(project, 1, f"{silent} Faster", "  says nothing, where the signature is unknown")


def test_a_range_is_looked_at_alone(project):
    touch(project, "Silent")
    touch(project, f"Faster\n\nBench: {FIRST}")
    assert_passes(project, 1, "HEAD~1..HEAD")
    assert project.run(SCRIPT, "HEAD~2..HEAD").returncode == 1
    unknown = project.run(SCRIPT, "nowhere..HEAD")
    assert unknown.returncode == 1 and "bench-line: no range of commits: nowhere..HEAD\n" in unknown.stderr


def test_a_branch_from_before_the_rule_is_free_of_it_and_one_from_after_is_not(project):
    project.git("checkout", "--quiet", "-b", "older", "HEAD~1")
    touch(project, "From before", "eval/one.cpp")
    project.git("checkout", "--quiet", "main")
    project.git("merge", "--quiet", "--no-edit", "older")
    assert_passes(project, 0)
    project.git("checkout", "--quiet", "-b", "newer")
    silent = touch(project, "From after", "pv/one.cpp")
    project.git("checkout", "--quiet", "main")
    touch(project, "Say it better", "README.md")
    project.git("merge", "--quiet", "--no-edit", "newer")
    assert_complains(project, 1, f"{silent} From after", f"  says nothing, where the signature is {FIRST}")


def test_a_change_that_its_branch_took_back_counts(project):
    """What is merged then has the same files."""
    project.git("checkout", "--quiet", "-b", "there-and-back")
    silent = touch(project, "There")
    project.write("search/node.cpp", "old")
    project.commit(f"Back\n\nBench: {FIRST}")
    project.git("checkout", "--quiet", "main")
    project.git("merge", "--quiet", "--no-ff", "--no-edit", "there-and-back")
    assert_complains(project, 2, f"{silent} There", f"  says nothing, where the signature is {FIRST}")


def test_a_shallow_clone_is_looked_at_as_far_as_it_goes(project, tmp_path):
    touch(project, "Silent")
    touch(project, f"Faster\n\nBench: {FIRST}")
    clone = Repository(tmp_path / "clone")
    for depth, looked in ((1, 0), (2, 1)):
        shutil.rmtree(clone.root)
        project.git("clone", "--quiet", "--depth", str(depth), f"file://{project.root}", str(clone.root))
        done = clone.run(SCRIPT)
        assert done.stderr.splitlines() == [
            "bench-line: a shallow clone: older commits are not looked at",
            f"bench-line: commits that touch the search: {looked}, and each says its signature"]
        assert done.returncode == 0


def test_without_git_nothing_is_looked_at(project):
    touch(project, "Silent")
    shutil.rmtree(project.root / ".git")
    said = ("bench-line: no git repository of this project: nothing is looked at\n", 0)
    done = project.run(SCRIPT)
    assert (done.stderr, done.returncode) == said
    project.environment["GIT_CEILING_DIRECTORIES"] = ""
    Repository(project.root.parent).git("init", "--quiet")
    done = project.run(SCRIPT)
    assert (done.stderr, done.returncode) == said, "in a repository of something else"
    project.environment["PATH"] = str(bare_path(project.root.parent))
    done = project.run(SCRIPT)
    assert (done.stderr, done.returncode) == said, "git is not installed"


def bare_path(folder):
    """A search path without git."""
    path = folder / "bin"
    path.mkdir()
    for program in ("bash", "env", "dirname"):
        (path / program).symlink_to(shutil.which(program))
    return path


def test_the_number_is_what_a_bench_visits(project):
    project.write(SIGNATURE, (DATA / "signature.tsv").read_text())
    touch(project, f"Faster\n\nBench: {default_nodes()}")
    assert_passes(project, 1)


def test_the_documents_name_the_line():
    assert f'"Bench: {default_nodes()}"' in (PROJECT / "CONTRIBUTING.md").read_text()
