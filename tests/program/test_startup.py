"""Start-up: where files are looked up, other instances, the configuration, and the data that is shipped."""

import os
import re
import resource
import shutil

import pytest
from conftest import PROJECT, sanitized
from engine_folder import BOOK_INSTEAD, GREETING, THINKING
from game_files import SIZE
from learn_records import NOT_OPEN
from positions import ONE_REPLY, START_TEXT

SHIPPED = PROJECT / "data"

# For configurations written out in full, before the lines in question.
LEAST = 'hash size="32"\ntime search default seconds="7"\nlearn file write="disable"\n'


# --- the program's own folder -----------------------------------------------------------------------------


def test_a_name_without_a_folder_means_the_current_one(folder):
    run = folder.run("save", name="tarvyle")
    assert run.said == "" and run.status == 0
    assert folder.file("tarvyle_save_game.dat").stat().st_size == SIZE


def test_files_stand_beside_the_program(folder, tmp_path):
    run = folder.run("load", cwd=tmp_path, name=str(folder.path / "tarvyle"))
    assert run.stdout == GREETING
    assert run.complaints == f"# error open file {folder.path}/tarvyle_save_game.dat \n"


def test_a_path_is_cut_after_its_last_slash(folder, tmp_path):
    (tmp_path / "C:").mkdir()
    run = folder.run("load", cwd=tmp_path / "C:", name="../run/a\\b")
    assert run.complaints == "# error open file ../run/tarvyle_save_game.dat \n"


def test_a_path_of_backslashes_is_cut_after_the_last(folder):
    for name in ("tarvyle.cfg", "tarvyle.bk"):
        folder.file(name).rename(folder.file("C:\\Games\\" + name))
    run = folder.run("load", name="C:\\Games\\x.exe")
    assert run.stdout == GREETING
    assert run.complaints == "# error open file C:\\Games\\tarvyle_save_game.dat \n"


def test_no_name_at_all_means_the_current_folder(folder):
    assert folder.run("getboard", name="").said == f"position {START_TEXT}\n"


def test_other_arguments_are_not_looked_at(folder):
    assert folder.run("style", arguments=["--help", "quit"]).said == "# knowledge3 \n"


# --- other instances --------------------------------------------------------------------------------------


@pytest.mark.parametrize("count, warning", [
    (0, ""), (1, ""), (2, "# warning: tarvyle(2): learn file write disable \n"),
    (5, "# warning: tarvyle(2): learn file write disable \n"),
])
def test_instances_listed(learning, count, warning):
    learning.list_instances(count)
    banner, rest = GREETING.split("\n", 1)
    run = learning.run("quit")
    assert run.stdout.startswith(banner + "\n" + warning + rest)
    assert learning.file("tarvyle.lrn").exists() == (count < 2)


def assert_unknown_instances(folder, run, complaint: str) -> None:
    banner, rest = GREETING.split("\n", 1)
    assert run.stdout == banner + "\n# warning: learn file write disable \n" + rest
    assert re.fullmatch(complaint + re.escape(BOOK_INSTEAD), run.stderr)
    assert run.status == 0
    assert folder.names() == []


def test_a_missing_lister(learning):
    learning.without_lister()
    assert_unknown_instances(learning, learning.run("quit"), r"sh: .*not found\n")


def test_a_lister_that_cannot_be_run(learning):
    learning.search_path = [str(learning.lister)]
    (learning.lister / "ps").chmod(0o644)
    assert_unknown_instances(learning, learning.run("quit"), r"sh: .*\n")


def test_a_pipe_that_cannot_be_opened(learning):
    """Room for one more open file is enough for everything but the pipe to the lister."""
    run = learning.run("quit", preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (4, 4)))
    assert_unknown_instances(learning, run, r"# pre_inst_detect: Problems with pipe: Too many open files\n")


def test_a_lister_that_says_nothing(folder):
    folder.write_lister("exit 0\n")
    assert folder.run("quit").stdout == GREETING


def test_a_lister_with_long_lines_and_zeros(folder):
    folder.write_lister("printf '%05000d\\n\\0tarvyle\\n' 0\necho tarvyle\n")
    assert folder.run("quit").stdout == GREETING


# --- what is missing --------------------------------------------------------------------------------------


def test_without_a_configuration(folder):
    folder.file("tarvyle.cfg").unlink()
    run = folder.run("quit")
    assert (run.stdout, run.stderr, run.status) == ("# Chess, build Jul 22 2013 \n", "conf.file not found\n", 1)


def test_without_learn_file_and_book(folder):
    folder.file("tarvyle.bk").unlink()
    run = folder.run("quit")
    assert run.stderr == BOOK_INSTEAD + "book file notfound  \n"
    assert run.stdout == "".join(GREETING.splitlines(keepends=True)[:3])
    assert run.status == 1


def test_no_book_is_needed_beside_a_learn_file(folder):
    folder.file("tarvyle.bk").unlink()
    folder.file("tarvyle.lrn").write_bytes(b"")
    run = folder.run("quit")
    assert (run.stdout, run.stderr, run.status) == (GREETING, "", 0)


# --- the configuration ------------------------------------------------------------------------------------


def test_only_comments(folder):
    folder.configure("# hash size=\"38\"\n#\n")
    run = folder.run("quit")
    assert run.stdout == "# Chess, build Jul 22 2013 \n# hash table init: \n"
    assert run.stderr == '# error: "hash size"=   \n'
    assert run.status == 1


@pytest.mark.parametrize("size", ["31", "62", "63", "0", "-2", "abc", "30 "])
def test_refused_table_sizes(folder, size):
    folder.configure(hash_size=size)
    run = folder.run("quit")
    assert run.stderr == f'# error: "hash size"={size}   \n'
    assert run.status == 1


@pytest.mark.parametrize("size, bytes_shown", [("32", 6815744), ("33", 6815744), ("34", 13631488), ("96", 6815744)])
def test_table_sizes(folder, size, bytes_shown):
    """An odd number counts as the even one below it, and 64 more make no difference."""
    folder.configure(hash_size=size)
    assert folder.run("quit").stdout == GREETING.replace("6815744", str(bytes_shown))


def test_tables_beyond_the_machine(folder):
    memory = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGESIZE")
    if memory >= 64 << 30:
        pytest.skip("this machine has the memory for the largest tables")
    folder.configure(hash_size="60")
    run = folder.run("quit")
    assert run.stdout == "# Chess, build Jul 22 2013 \n# hash table init: \n"
    assert (run.stderr, run.status) == ("# error: HashInit: out of memory \n", 1)


@pytest.mark.skipif(sanitized(), reason="the sanitizers need more memory than the limit leaves")
def test_tables_that_cannot_be_allocated(folder):
    folder.configure(hash_size="42")
    run = folder.run("quit", preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (100 << 20, 100 << 20)))
    assert run.stdout == "# Chess, build Jul 22 2013 \n# hash table init: \n"
    assert (run.stderr, run.status) == ("# error: HashInit: out of memory \n", 1)


def test_a_zero_or_missing_time_is_warned_of(folder):
    warning = "#warning: limit time error in cfg file \n# load play style: \n"
    for seconds in ("0", "x"):
        folder.configure(**{"time_search_default_seconds": seconds})
        assert warning in folder.run("quit").stdout
    folder.configure('hash size="32"\n')
    assert warning in folder.run("quit").stdout


def test_an_unknown_style(folder):
    folder.configure(play_style="knowledge")
    run = folder.run("style")
    assert run.stdout.endswith("# load play style: \n# error \n# <help> - help \n# move: ? \n# knowledge3 \n")


def test_random_search_needs_quotes(folder):
    """Without them the value keeps its line end; the one reply shows which search is at work."""
    one_reply = ["xboard", f"setboard {ONE_REPLY}", "go"]
    folder.configure(LEAST + "random search?!=enable\n")
    assert "search move ... \n" not in folder.run(*one_reply).stdout
    folder.configure(LEAST + 'random search?!="enable"\n')
    assert folder.run(*one_reply).stdout.endswith("search move ... \n# one reply \nmove a1b2\n")


def test_the_last_line_of_a_key_counts(folder):
    folder.configure(LEAST + 'play style="knowledge1"\nplay style="knowledge2"\n')
    assert folder.run("style").stdout.endswith("# knowledge2 \n")


def test_a_longer_name_answers_too(folder):
    folder.configure(LEAST + 'hash size="30"\nhash size in entries="32"\nmy play style!="knowledge1"\n')
    assert folder.run("style").stdout.endswith("# knowledge1 \n")


@pytest.mark.parametrize("line, plays_from_book", [
    ('book move="auto"', True), ("book move=auto", False), ('book move="Auto"', False), ("", False),
])
def test_book_move_needs_the_whole_word(folder, line, plays_from_book):
    """A move without a thinking line comes from the book; not every draw takes one."""
    folder.configure(LEAST + line + "\n")
    folder.file("tarvyle.bk").write_text("e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5a4 g8f6 e1g1 f8e7\n")
    moves = folder.file("tarvyle.bk").read_text().split()
    answers = []
    for count in range(len(moves)):
        run = folder.run("xboard", "force", *moves[:count], "go")
        assert len(re.findall("^move ", run.stdout, re.MULTILINE)) == 1
        answers.append(bool(THINKING.search(run.stdout)))
    assert (False in answers) == plays_from_book
    assert True in answers


def test_what_stands_after_the_value_is_ignored(folder):
    folder.configure(LEAST + 'hash size="32" # "38"\n"play style"="knowledge1"="knowledge2"\nno value\n=\n\n')
    assert folder.run("style").stdout.endswith("# knowledge1 \n")


def test_long_configuration_lines_are_read_in_pieces(folder):
    """The rest after 255 characters is a line of its own, even of a comment."""
    folder.configure(LEAST + "#" * 255 + 'play style="knowledge1"\n')
    assert folder.run("style").stdout.endswith("# knowledge1 \n")


def test_blanks_before_a_comment_sign_make_no_comment(folder):
    folder.configure(' #hash size="32"\n')
    assert folder.run("quit").status == 0


# --- what is shipped --------------------------------------------------------------------------------------


def shipped_settings() -> dict[str, str]:
    lines = (SHIPPED / "tarvyle.cfg").read_text().splitlines()
    return dict(re.fullmatch(r'([^="]+)="([^"]*)"', line).groups() for line in lines if line and line[0] != "#")


def test_the_shipped_configuration_has_every_key():
    assert shipped_settings() == {
        "hash size": "38",
        "time search default seconds": "10",
        "play style": "knowledge3",
        "random search?!": "disable",
        "book move": "auto",
        "learn file write": "enable",
    }


def test_each_shipped_setting_is_explained():
    lines = (SHIPPED / "tarvyle.cfg").read_text().splitlines()
    for key in shipped_settings():
        at = next(i for i, line in enumerate(lines) if line.startswith(key))
        assert lines[at - 1].startswith("# "), key


def test_shipped_lines_fit_the_reader():
    assert max(map(len, (SHIPPED / "tarvyle.cfg").read_text().splitlines())) < 255


def opening_lines() -> list[str]:
    lines = (line.lstrip(" ") for line in (SHIPPED / "tarvyle.bk").read_text().splitlines())
    return [line for line in lines if line and not line.startswith("#")]


def test_the_shipped_book_is_read_without_an_error(folder):
    for name in ("tarvyle.cfg", "tarvyle.bk"):
        shutil.copy(SHIPPED / name, folder.path)
    run = folder.run("quit")
    assert run.stdout.startswith(GREETING.replace("6815744", str(104 << 19)))
    assert "#error" not in run.stdout
    assert run.stderr == BOOK_INSTEAD + NOT_OPEN
    assert run.status == 0


def test_the_shipped_book_holds_300_openings():
    lines = [line.split("#")[0] for line in opening_lines()]
    assert len(lines) >= 300
    assert len(set(lines)) == len(lines), "no line stands twice"


def test_shipped_openings_are_8_to_16_half_moves_deep():
    for line in opening_lines():
        moves = re.split(r"[ !?#,;]+", line.strip(" !?#,;"))
        assert 8 <= len(moves) <= 16, line
