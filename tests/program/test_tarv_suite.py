"""`tarv suite` from outside: solved or not, the table, and lines that are refused; and the completion of the
command line."""

import re
import subprocess

import pytest
from conftest import DATA, PROJECT, engine_environment
from tarv_runs import START, complains, says, tarv  # noqa: F401  (fixtures)

BRATKO_KOPEC = PROJECT / "data" / "bratko-kopec.epd"
MATE_IN_ONE = "6k1/5ppp/8/8/8/8/8/R3K3 w Q -"
COMPLETION = PROJECT / "packaging" / "completions" / "tarv"


def solved(answer: str) -> list[str]:
    """The column "ok" of a table."""
    return re.findall(r" (yes|no) ", answer)


@pytest.mark.parametrize("asked, ok", [
    ("bm Ra8#", "yes"), ("bm Ra8", "yes"), ("bm a1a8", "yes"), ("bm Ra7 Ra8+!", "yes"), ("bm R1xa8", "yes"),
    ("bm Ra7", "no"), ("bm Kd1 O-O-O", "no"), ("am Ra8", "no"), ("am Ra7 0-0-0", "yes"), ("bm Ra8; am Ra7", "yes"),
    ("bm Ra8; am Ra8", "no"),
])
def test_best_moves_and_moves_to_avoid(says, asked, ok):
    answer = says("suite", "-", "--depth", 4, text=f'{MATE_IN_ONE} {asked}; id "x;y";\n')
    assert solved(answer) == [ok]
    assert f"x;y          {asked} " in answer and " Ra8# " in answer and " #1 " in answer
    assert answer.endswith(f"solved {int(ok == 'yes')} of 1\n")


@pytest.mark.parametrize("position, asked", [
    ("k7/8/8/8/8/8/8/K1N3N1 w - -", "Ne2"), ("k7/8/8/8/8/8/8/K5N1 w - -", "Qe2"), ("k7/8/8/8/8/8/8/K5N1 w - -", "Ng3"),
    (START, "e5"), (START, "O-O"), (START, "nonsense"), ("7k/P7/8/8/8/8/8/K7 w - -", "a8=K"),
])
def test_moves_that_are_not_there(complains, position, asked):
    assert complains("suite", "-", "--depth", 2, text=f"{START} bm e4;\n{position} bm {asked};\n") == (
        f"tarv: -: line 2: no legal move there: {asked}\n")


def table_of(answer: str) -> list[list[str]]:
    """Found moves and the column "ok"."""
    return [re.search(r"(\S+) +(yes|no) ", line).groups() for line in answer.splitlines()[1:-1]]


def test_moves_in_algebraic_notation(says):
    """The move that a table tells is understood as the same move when a suite asks for it."""
    rows = [line.split("\t") for line in (DATA / "movelists.tsv").read_text().splitlines() if line[0] != "#"]
    positions = [(row[0].rsplit(" ", 2)[0] if row[0].count(" ") > 3 else row[0], row[-1].split()) for row in rows if row[-1]]
    some = [(fen, moves[0]) for fen, moves in positions if moves][:150]
    found = table_of(says("suite", "-", "--depth", 2, text="".join(f"{fen} am {move};\n" for fen, move in some)))
    assert len(found) == 150 and {ok for _, ok in found} == {"yes", "no"}
    for code, ok in (("bm", "yes"), ("am", "no")):
        text = "".join(f"{fen} {code} {san};\n" for (fen, _), (san, _) in zip(some, found))
        assert table_of(says("suite", "-", "--depth", 2, text=text)) == [(san, ok) for san, _ in found]


def test_the_same_table_every_time(says):
    first, second = (says("suite", BRATKO_KOPEC, "--depth", 4) for _ in range(2))
    strip = lambda answer: re.sub(r"[\d.]+ s$", "", answer, flags=re.MULTILINE)
    assert strip(first) == strip(second)
    assert first.count(" bm ") == 24 and "BK.24" in first
    assert int(re.search(r"solved (\d+) of 24\n$", first)[1]) == solved(first).count("yes") >= 4


def test_a_clock(says):
    assert says("suite", "-", "--seconds", 0.1, text=f"{MATE_IN_ONE} bm Ra8;\n").endswith("solved 1 of 1\n")


def test_too_few_solved(tarv):
    line = f"{MATE_IN_ONE} bm Ra7;\n{MATE_IN_ONE} bm Ra8;\n"
    assert tarv("suite", "-", "--depth", 4, "--expect", 1, text=line).returncode == 0
    done = tarv("suite", "-", "--depth", 4, "--expect", 2, text=line)
    assert (done.stderr, done.returncode) == ("tarv: fewer than 2 solved\n", 1)


@pytest.mark.parametrize("line, words", [
    (START, "neither bm nor am"),
    (f"{START} bm;", "neither bm nor am"),
    ("nonsense bm e4;", "no side to move"),
    ("8/8/8/8/8/8/8/8 w - - bm e4;", "no chess position"),
])
def test_refused_lines(complains, line, words):
    complaint = complains("suite", "-", "--depth", 2, text=f"# first\n{line}\n")
    assert complaint.startswith("tarv: -: line 2: ") and words in complaint


@pytest.mark.parametrize("arguments, words", [
    ([], "FILE"), (["a.epd"], "--seconds or --depth"), (["none.epd", "--depth", "3"], "none.epd"),
    (["a.epd", "--depth", "1"], "--depth"), (["a.epd", "--seconds", "x"], "--seconds"),
])
def test_bad_arguments(complains, arguments, words):
    assert words in complains("suite", *arguments)


# --- the command line -------------------------------------------------------------------------------------


def complete(workbench, folder, *words: str) -> list[str]:
    """What bash offers for the last of these words."""
    script = f"""
        source '{COMPLETION}'
        COMP_WORDS=("$@")
        COMP_CWORD=$(($# - 1))
        _tarv
        printf '%s\\n' "${{COMPREPLY[@]}}"
    """
    done = subprocess.run(["bash", "-c", script, "bash", str(workbench), *words], cwd=folder, text=True,
                          capture_output=True, env=engine_environment(), check=True)
    assert done.stderr == ""
    return sorted(done.stdout.split())


def commands_of(says, *words: str) -> list[str]:
    """The subcommands that a help text lists."""
    _, _, rows = says(*words, "--help").partition("\nSubcommands:\n")
    return sorted(re.findall(r"^  (\S+)", rows.split("\n\n")[0], re.MULTILINE))


def test_every_subcommand_has_help_with_an_example_and_is_completed(says, workbench, tmp_path):
    groups = {"learn", "book", "game"}
    assert complete(workbench, tmp_path, "") == commands_of(says)
    for command in commands_of(says):
        inner = commands_of(says, command)
        assert bool(inner) == (command in groups)
        if inner:
            assert complete(workbench, tmp_path, command, "") == inner
        for words in [[command, name] for name in inner] or [[command]]:
            text = says(*words, "--help")
            options = sorted(set(re.findall(r"(?<![\w-])--[a-z-]+", text.split("\nOptions:\n")[1].split("\n\n")[0])))
            assert set(complete(workbench, tmp_path, *words, "--")) <= set(options)
            assert "--help" in complete(workbench, tmp_path, *words, "--")
            if command in groups or command == "suite":
                assert f"Example:\n  tarv {' '.join(words)} " in text


def test_completion_of_values_and_files(workbench, tmp_path):
    for name in ("a.lrn", "b.epd", "c.dat", "d.bk", "e.pgn", "f.txt"):
        (tmp_path / name).touch()
    (tmp_path / "folder").mkdir()
    assert complete(workbench, tmp_path, "learn", "st") == ["stats"]
    assert complete(workbench, tmp_path, "learn", "stats", "") == ["a.lrn", "folder"]
    assert complete(workbench, tmp_path, "learn", "analyse", "") == ["b.epd", "folder"]
    assert complete(workbench, tmp_path, "learn", "add-book", "") == ["a.lrn", "d.bk", "folder"]
    assert complete(workbench, tmp_path, "book", "from-pgn", "") == ["e.pgn", "folder"]
    assert complete(workbench, tmp_path, "game", "show", "") == ["c.dat", "folder"]
    assert complete(workbench, tmp_path, "suite", "b") == ["b.epd"]
    assert complete(workbench, tmp_path, "learn", "export", "--format", "") == ["csv", "epd", "json"]
    assert complete(workbench, tmp_path, "bench", "--style", "knowledge") == ["knowledge1", "knowledge2", "knowledge3"]
    assert complete(workbench, tmp_path, "learn", "merge", "a.lrn", "--o") == ["--output"]
