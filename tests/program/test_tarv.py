"""The workbench from outside: its answers in the form of the data files, its options and its complaints."""

import json
import re
import subprocess

import pytest
from conftest import DATA, engine_environment
from positions import ILLEGAL, MATE_IN_ONE, NO_KINGS, STALEMATE, START
from terminal import Terminal

SEARCH_NODES = 200_000
PERFT_LEAVES = 200_000


def lines_of(name: str) -> list[str]:
    return (DATA / name).read_text().splitlines()


def assert_same_lines(expected: list[str], found: str) -> None:
    found = found.splitlines()
    different = [(e, f) for e, f in zip(expected, found) if e != f]
    assert different[:1] == []
    assert len(found) == len(expected)


# --- listings ---------------------------------------------------------------------------------------------


@pytest.mark.parametrize("command", ["positions", "movelists"])
def test_listings_equal_the_data(says, command):
    """The file itself is the input: only its first column is read, comments are copied."""
    assert_same_lines(lines_of(f"{command}.tsv"), says(command, DATA / f"{command}.tsv"))


def test_perft_equals_the_data(says):
    lines = [line for line in lines_of("perft.tsv") if line[0] == "#" or int(line.split("\t")[2]) <= PERFT_LEAVES]
    assert len(lines) > 150
    questions = [line.rsplit("\t", 1)[0] if line[0] != "#" else line for line in lines]
    assert_same_lines(lines, says("perft", text="\n".join(questions)))


@pytest.mark.parametrize("command", ["positions", "movelists", "perft"])
def test_listings_from_standard_input(says, command):
    line = f"{START}\t1" if command == "perft" else START
    once = says(command, text=line + "\n")
    assert once.startswith(START + "\t") and once.count("\n") == 1
    assert says(command, "-", text=line) == once, "also without a newline at the end"
    assert says(command, text=f"{line}\r\n") == once, "and with a carriage return"


@pytest.mark.parametrize("command", ["positions", "movelists"])
def test_refused_positions(says, command):
    refused = ["foo", NO_KINGS, f"{START[:-1]}e5", "KK6/8/8/8/8/8/8/k7 w - -"]
    assert says(command, text="\n".join(refused)) == "".join(f"{fen}\trefused\n" for fen in refused)


def test_refused_positions_in_perft(says):
    assert says("perft", text="k7/8 w - -\t3\n") == "k7/8 w - -\trefused\n"


def test_comments_and_empty_lines_are_copied(says):
    text = f"# first\n\n#\t{START}\n{START}\n# last\n"
    answer = says("movelists", text=text)
    assert answer.startswith(f"# first\n\n#\t{START}\n{START}\t") and answer.endswith("\n# last\n")


def test_an_illegal_position_has_no_moves(says):
    assert says("movelists", text=ILLEGAL) == f"{ILLEGAL}\t\t\t\n"


# --- perft ------------------------------------------------------------------------------------------------


def test_perft_of_one_position(says):
    assert says("perft", "--fen", START, "--depth", 3) == "8902\n"
    assert says("perft", "--fen", START, "--depth", 0) == "1\n"


def test_perft_divided(says):
    *rows, total = says("perft", "--fen", START, "--depth", 3, "--divide").splitlines()
    leaves = dict(row.split(": ") for row in rows)
    assert len(leaves) == 20
    assert (leaves["e2e4"], leaves["b1c3"], leaves["a2a3"]) == ("600", "440", "380")
    assert total == "8902" and sum(map(int, leaves.values())) == 8902


# --- searches ---------------------------------------------------------------------------------------------


def cheap_lines(name: str, nodes: int, count: int) -> list[str]:
    """The first searches of a data file that take no more than this many nodes."""
    lines = [line for line in lines_of(name) if line[0] != "#"]
    return [line for line in lines if int(line.split("\t")[3].split(":")[-1]) <= nodes][:count]


def questions(lines: list[str]) -> str:
    return "".join("\t".join(line.split("\t")[:3]) + "\n" for line in lines)


@pytest.mark.parametrize("name", ["searches.tsv", "histories.tsv"])
def test_searches_equal_the_data(says, name):
    lines = cheap_lines(name, SEARCH_NODES, 9)
    assert len(lines) == 9
    assert {line.split("\t")[1] for line in lines} == {"knowledge1", "knowledge2", "knowledge3"}
    assert_same_lines(lines, says("search", text=questions(lines)))


def test_searches_with_a_book_equal_the_data(says):
    lines = cheap_lines("booksearches.tsv", SEARCH_NODES, 2)
    assert len(lines) > 1
    answer = says("search", "--book", DATA / "book.bk", text=questions(lines))
    assert_same_lines(lines, answer)
    assert says("search", text=questions(lines)) != answer, "without the book they are others"


def test_chained_searches_equal_the_data(says, tmp_path):
    """The first searches of two processes; within each, nothing is reset in between."""
    lines = lines_of("chain.tsv")
    second = next(i for i, line in enumerate(lines) if line.startswith("# new process"))
    chain = lines[:8] + lines[second : second + 3]
    (tmp_path / "chain.tsv").write_text("\n".join(chain) + "\n")
    assert_same_lines(chain, says("search", "--chain", "chain.tsv"))
    assert says("search", "chain.tsv").splitlines() != chain, "without the chain they are others"


def test_searches_do_not_depend_on_those_before(says):
    line = f"{START}\tknowledge3\t5\n"
    once = says("search", text=line)
    assert says("search", text=line + line) == once + once
    chained = says("search", "--chain", text=line + line)
    assert chained.startswith(once) and chained != once + once
    assert says("search", "--chain", text=f"{line}# new process\n{line}") == f"{once}# new process\n{once}"


def test_the_seed_changes_the_search(says):
    line = f"{START}\tknowledge3\t5\n"
    assert says("search", "--seed", 1, text=line) == says("search", text=line)
    assert says("search", "--seed", 2, text=line) != says("search", text=line)


def test_no_move_and_refused_roots(says):
    text = f"{STALEMATE}\tknowledge3\t4\nfoo\tknowledge3\t4\n{START} moves e2e4 e7e4\tknowledge3\t4\n"
    assert says("search", text=text) == (f"{STALEMATE}\tknowledge3\t4\t\tnone\t\n"
                                         f"foo\trefused\n{START} moves e2e4 e7e4\trefused\n")


def test_pv_tree(says):
    """The answer, then the tree: each line of it begins with a root move or with columns left empty."""
    answer = says("search", "--pv-tree", text=f"{MATE_IN_ONE}\tknowledge3\t4\n")
    assert answer.startswith(says("search", text=f"{MATE_IN_ONE}\tknowledge3\t4\n"))
    tree = answer.splitlines()[1:]
    assert tree[0].startswith("a1a8 ")
    assert all(re.fullmatch(r"(?:(?:[a-h][1-8][a-h][1-8][nq]?|-) +)*", row) for row in tree)


# --- bench ------------------------------------------------------------------------------------------------


def test_bench_repeats_its_nodes(says):
    first, second = (says("bench", "--depth", 2) for _ in range(2))
    nodes = re.search(r"^nodes (\d+)$", first, re.MULTILINE)
    assert nodes[0] in second
    rows, totals = first.split("\n\n")
    assert sum(int(row.split()[-1]) for row in rows.splitlines()) == int(nodes[1])
    assert len(rows.splitlines()) >= 40
    assert rows == second.split("\n\n")[0]
    assert re.fullmatch(r"nodes (\d+)\nseconds \d+\.\d{3}\nnodes/second (\d+)\n\1 nodes \2 nps\n", totals)


def test_bench_as_json(says):
    bench = json.loads(says("bench", "--depth", 2, "--style", "knowledge1", "--json"))
    assert (bench["depth"], bench["style"]) == (2, "knowledge1")
    assert sum(position["nodes"] for position in bench["positions"]) == bench["nodes"]
    assert f"nodes {bench['nodes']}\n" in says("bench", "--depth", 2, "--style", "knowledge1")
    assert {"fen", "move", "score", "nodes", "seconds"} == set(bench["positions"][0])
    assert bench["seconds"] >= 0 and bench["nodes_per_second"] >= 0


def test_bench_styles_differ(says):
    totals = {style: json.loads(says("bench", "--depth", 2, "--style", style, "--json"))["nodes"]
              for style in ("knowledge1", "knowledge2", "knowledge3")}
    assert len(set(totals.values())) == 3


# --- tables -----------------------------------------------------------------------------------------------


def test_tables(says):
    answer = says("tables").splitlines()
    assert len(answer) == 12 * 9
    assert [answer[i] for i in range(0, 108, 9)] == [
        f"{colour} {piece}" for colour in ("white", "black")
        for piece in ("pawn", "knight", "bishop", "rook", "queen", "king")]
    assert all(re.fullmatch(r"(?: *-?\d+,){8}", row) for i, row in enumerate(answer) if i % 9)
    assert says("tables", "--fen", START).splitlines() == answer
    assert says("tables", "--fen", "8/8/4k3/8/8/4K3/4P3/8 w - -").splitlines() != answer


# --- help and complaints ----------------------------------------------------------------------------------


@pytest.mark.parametrize("arguments", [["--help"], ["search", "--help"]])
def test_help(says, arguments):
    assert "Usage: tarv" in says(*arguments)


@pytest.mark.parametrize("arguments", [
    ["--help"], ["--version"], ["learn", "merge", "--help"], ["bench", "--depth", "2"], ["tables"],
    ["perft", "--fen", START, "--depth", "3"], ["positions", "-"]], ids=" ".join)
def test_output_that_cannot_be_written_is_no_success(workbench, arguments):
    with open("/dev/full", "wb") as full:
        done = subprocess.run([workbench, *arguments], stdin=subprocess.DEVNULL, stdout=full, stderr=subprocess.PIPE,
                              env=engine_environment(), check=False)
    if arguments[0] == "positions":  # no lines, no answers
        assert (done.stderr, done.returncode) == (b"", 0)
    else:
        assert re.fullmatch(rb"tarv: cannot write to standard output(: No space left on device)?\n", done.stderr)
        assert done.returncode == 2


@pytest.mark.parametrize("arguments, words", [
    ([], "subcommand"),
    (["nonsense"], ""),
    (["positions", "missing.tsv"], "missing.tsv"),
    (["positions", "."], "cannot read ."),
    (["positions", "a", "b"], "b"),
    (["positions", "--nonsense"], "--nonsense"),
    (["perft", "--depth", "3"], "--fen"),
    (["perft", "--divide"], "--fen"),
    (["perft", "--fen", START], "--depth"),
    (["perft", "--fen", START, "--depth", "91"], "--depth"),
    (["perft", "--fen", START, "--depth", "-1"], "--depth"),
    (["perft", "--fen", START, "--depth", "x"], "--depth"),
    (["perft", "--fen", "nonsense", "--depth", "1"], "nonsense"),
    (["perft", "--fen", "", "--depth", "1"], "refused"),
    (["perft", "--fen", START, "--depth", "1", "a.tsv"], "FILE"),
    (["search", "--seed", "x"], "--seed"),
    (["search", "--book", "missing.bk"], "missing.bk"),
    (["search", "--chain", "--book", "missing.bk"], "missing.bk"),
    (["bench", "--depth", "1"], "--depth"),
    (["bench", "--depth", "91"], "--depth"),
    (["bench", "--style", "knowledge4"], "knowledge4"),
    (["tables", "--fen", "nonsense"], "nonsense"),
    (["tables", "--fen", ""], "refused"),
])
def test_bad_arguments(tarv, arguments, words):
    """One clear line, and status 2."""
    done = tarv(*arguments)
    assert re.fullmatch(r"tarv: .+\n", done.stderr), done.stderr
    assert words in done.stderr
    assert (done.stdout, done.returncode) == ("", 2)


@pytest.mark.parametrize("command, line, words", [
    ("perft", START, "depth expected"),
    ("perft", f"{START}\tx", '"x"'),
    ("perft", f"{START}\t-1", '"-1"'),
    ("perft", f"{START}\t2 ", '"2 "'),
    ("search", START, "depth expected"),
    ("search", f"{START}\tknowledge3", "depth expected"),
    ("search", f"{START}\tknowledge3\t1", '"1"'),
    ("search", f"{START}\tknowledge3\t91", '"91"'),
    ("search", f"{START}\tknowledge9\t3", "knowledge9"),
])
def test_bad_lines(tarv, command, line, words):
    """What was answered before is there; the complaint names the line."""
    done = tarv(command, text=f"# comment\n{line}\n# never reached\n")
    assert done.stdout == "# comment\n"
    assert re.fullmatch(r"tarv: line 2: .+\n", done.stderr), done.stderr
    assert words in done.stderr
    assert done.returncode == 2


def test_progress_is_shown_on_a_terminal_only(workbench):
    with Terminal() as terminal:
        done = subprocess.run([workbench, "positions"], input=f"{START}\n{START}\n", text=True, stdout=subprocess.PIPE,
                              stderr=terminal.inside, env=engine_environment(), check=True)
        assert terminal.shown().startswith("\r1 lines\r2 lines\r")
    assert done.stdout.count("\n") == 2
