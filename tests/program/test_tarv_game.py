"""`tarv game` from outside: saved games as moves, PGN and page, and files that are none."""

import html
import json
import re
import subprocess

import pytest
from conftest import PROJECT, SEARCH_PATH, engine_environment, require
from game_files import CASTLING, GAME_LEN, MOVES, PROMOTION, SCHOLAR, SIZE, played_game, typed_game, with_scores

PAGE = PROJECT / "tools" / "game" / "page"


def movetext(pgn: str) -> str:
    return " ".join(pgn.split("\n\n", 1)[1].split())


def tags(pgn: str) -> dict[str, str]:
    return dict(re.findall(r'^\[(\w+) "(.*)"\]$', pgn, re.MULTILINE))


def page_game(page: str) -> dict:
    return json.loads(re.search(r'<script type="application/json" id="game">(.*?)</script>', page, re.DOTALL)[1])


# --- show and pgn -----------------------------------------------------------------------------------------


def test_show(says, folder):
    path = typed_game(folder, *SCHOLAR)
    with_scores(path, {1: 20, 3: -30, 5: -999996})
    head, moves, board = says("game", "show", path).split("\n\n", 2)
    assert head == "White   Player\nBlack   Tarvyle\nResult  1-0, checkmate"
    assert [line.split() for line in moves.splitlines()] == [
        ["1.", "e4", "e5", "-0.02"], ["2.", "Qh5", "Nc6", "+0.03"], ["3.", "Bc4", "Nf6", "#1"], ["4.", "Qxf7#"]]
    assert board == folder.run("load game.dat", "pos").said.removeprefix("\n")


def test_pgn(says, folder):
    path = typed_game(folder, *SCHOLAR)
    with_scores(path, {0: 123, 2: 0, 4: 999996, 6: 999998})
    pgn = says("game", "pgn", path)
    assert tags(pgn) | {"Date": ""} == {
        "Event": "Saved game", "Site": "?", "Date": "", "Round": "-", "White": "Tarvyle", "Black": "Player",
        "Result": "1-0"}
    assert re.fullmatch(r"\d{4}\.\d\d\.\d\d", tags(pgn)["Date"])
    assert movetext(pgn) == "1. e4 { [%eval 0.12] } 1... e5 2. Qh5 Nc6 3. Bc4 { [%eval #1] } 3... Nf6 4. Qxf7# 1-0"
    assert max(len(line) for line in pgn.splitlines()) < 80


def test_names(says, folder, tmp_path):
    path = typed_game(folder, *SCHOLAR)
    assert says("game", "pgn", path, "--white", 'A "B" \\ C', "-o", "out.pgn") == ""
    assert tags((tmp_path / "out.pgn").read_text())["White"] == r"A \"B\" \\ C"
    assert "Black   José\n" in says("game", "show", path, "--black", "José")


def test_castling_and_ambiguous_moves(says, folder):
    pgn = says("game", "pgn", typed_game(folder, *CASTLING))
    assert movetext(pgn) == (
        "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Bxc6 dxc6 5. O-O Bg4 6. h3 Qf6 7. d3 O-O-O 8. Nbd2 Bh5 9. Re1 g5 10. Nf1 g4 "
        "11. hxg4 Bxg4 *")


def test_promotions_from_a_position(says, folder):
    pgn = says("game", "pgn", typed_game(folder, *PROMOTION))
    assert tags(pgn)["FEN"] == "1n5k/P1P5/8/8/8/8/6p1/K4N1N w - - 0 1" and tags(pgn)["SetUp"] == "1"
    assert movetext(pgn) == "1. axb8=N gxf1=Q+ 2. Kb2 Qf4 3. c8=B *"


def test_black_begins(says, folder):
    path = typed_game(folder, "setboard 6k1/8/8/3pP3/8/8/8/K7 b - -", "g8g7", "e5e6")
    assert movetext(says("game", "pgn", path)) == "1... Kg7 2. e6 *"
    assert re.search(r"^ +1\. +\.\.\. +Kg7", says("game", "show", path), re.MULTILINE)


def test_en_passant_at_the_start(says, folder):
    path = typed_game(folder, "setboard 6k1/8/8/3pP3/8/8/8/K7 w - d6", "e5d6")
    pgn = says("game", "pgn", path)
    assert tags(pgn)["FEN"] == "6k1/8/8/3pP3/8/8/8/K7 w - d6 0 1" and movetext(pgn) == "1. exd6 *"


def test_taken_back_moves_are_told(says, folder):
    path = typed_game(folder, "e2e4", "e7e5", "g1f3", "undo", "undo")
    assert movetext(says("game", "pgn", path)) == "1. e4 { taken back: e5 Nf3 } *"
    assert "\ntaken back: e5 Nf3\n" in says("game", "show", path)
    assert page_game(report(says, path))["takenBack"] == ["e5", "Nf3"]


def test_an_empty_game(says, folder):
    path = typed_game(folder)
    assert movetext(says("game", "pgn", path)) == "*"
    assert tags(says("game", "pgn", path))["White"] == "?"
    assert page_game(report(says, path))["moves"] == []


@pytest.mark.parametrize("lines, result, reason", [
    (["setboard 7k/5Q2/8/6K1/8/8/8/8 w - -", "g5g6"], "1/2-1/2", "stalemate"),
    (["setboard 7k/8/8/8/8/8/1q6/K7 w - -", "a1b2"], "1/2-1/2", "too few pieces to mate"),
    (["f2f3", "e7e5", "g2g4", "d8h4"], "0-1", "checkmate"),
    (["g1f3", "g8f6", "f3g1", "f6g8"] * 2, "1/2-1/2", "threefold repetition"),
    (["g1f3", "g8f6", "f3g1", "f6g8"], "*", ""),
])
def test_results(says, folder, lines, result, reason):
    path = typed_game(folder, *lines)
    assert tags(says("game", "pgn", path))["Result"] == result
    assert f"Result  {result}{', ' if reason else ''}{reason}\n" in says("game", "show", path)


def test_other_programs_read_the_same_moves(says, folder, tmp_path):
    """pgn-extract turns the PGN of a whole game back into the moves that the engine lists."""
    require("pgn-extract")
    path = played_game(folder, 60)
    (tmp_path / "game.pgn").write_text(says("game", "pgn", path))
    done = subprocess.run(["pgn-extract", "-s", "-C", "-Wuci", "-w", "9999", "--notags", "game.pgn"], cwd=tmp_path,
                          env=engine_environment() | {"PATH": SEARCH_PATH}, text=True, capture_output=True, check=True)
    moves = folder.run("load game.dat", "getmoves").said.split()[1:]
    assert len(moves) >= 50 and done.stderr == ""
    assert done.stdout.split()[:-1] == moves
    assert (tmp_path / "game.pgn").read_text().count("[%eval ") > 40


# --- report -----------------------------------------------------------------------------------------------


def report(says, path) -> str:
    assert says("game", "report", path, "-o", "game.html") == "game.html\n"
    return (path.parent.parent / "game.html").read_text()


def test_the_page_needs_nothing_else(says, folder):
    page = report(says, typed_game(folder, *SCHOLAR))
    assert set(re.findall(r"https?://[^\"' ]+", page)) == {"http://www.w3.org/2000/svg"}, "but the name of SVG itself"
    assert not re.search(r"<(?:img|iframe|object|embed|audio|video)\b|<script[^>]* src|@import|url\((?!#)", page)
    assert re.findall(r"<link [^>]*>", page) == ['<link rel="icon" href="data:,">']


def test_the_page_holds_the_game(says, folder):
    path = typed_game(folder, *SCHOLAR)
    with_scores(path, {0: 123, 2: 0, 4: 999996})
    game = page_game(report(says, path))
    assert [move["san"] for move in game["moves"]] == ["e4", "e5", "Qh5", "Nc6", "Bc4", "Nf6", "Qxf7#"]
    assert [move.get("scoreText") for move in game["moves"]] == ["+0.12", None, None, None, "#1", None, None]
    assert game["start"]["board"].startswith("rnbqkbnrpppppppp ")
    last = game["moves"][-1]
    assert last["board"] == "r bqkb r" "pppp Qpp" "  n  n  " "    p   " "  B P   " + " " * 8 + "PPPP PPP" "RNB K NR"
    assert last["check"] and (last["from"], last["to"]) == (31, 13)


STYLE_MARK, SCRIPT_MARK = '<link rel="stylesheet" href="report.css">', '<script src="report.js"></script>'


@pytest.mark.parametrize("white, black", [
    ('</script><script>alert("x")</script>', "@GAME@"), ("</title>&lt;", "@TITLE@"), ("José & 'Co'", "</style>"),
    (STYLE_MARK, SCRIPT_MARK), ("a\\b\t\x7f", "$& \\1"),
])
def test_names_cannot_break_the_page(says, folder, tmp_path, white, black):
    plain = report(says, typed_game(folder))
    path = folder.file("game.dat")
    says("game", "report", path, "-o", "game.html", "--white", white, "--black", black)
    page = (tmp_path / "game.html").read_text()
    assert (page_game(page)["white"], page_game(page)["black"]) == (white, black)
    title, data = r"<title>(.*?)</title>", r"<script type=\"application/json\"[^>]*>.*?</script>"
    assert html.unescape(re.search(title, page)[1]) == f"{white} - {black}, *"
    assert re.sub(title, "", re.sub(data, "", page, flags=re.DOTALL)) == re.sub(
        title, "", re.sub(data, "", plain, flags=re.DOTALL)), "nothing else depends on the names"


def test_the_page_is_its_three_files(says, folder):
    page = report(says, typed_game(folder))
    template, css, js = ((PAGE / f"report.{kind}").read_text() for kind in ("html", "css", "js"))
    assert f"<style>\n{css}</style>" in page and f"<script>\n{js}</script>" in page
    for mark in STYLE_MARK, SCRIPT_MARK, "@GAME@", "@TITLE@":
        assert template.count(mark) == 1 and mark not in page


def test_the_page_has_no_faults(tarv, folder, tmp_path):
    require("tidy")
    path = typed_game(folder, *SCHOLAR)
    tarv("game", "report", path, "-o", "game.html", "--white", '</title><b a="&', "--black", "</script>")
    done = subprocess.run(["tidy", "-e", "-q", "--drop-empty-elements", "no", "game.html"], cwd=tmp_path, text=True,
                          capture_output=True, check=False)
    assert (done.stdout, done.stderr) == ("", "")


def test_the_page_beside_the_game(says, folder):
    path = typed_game(folder, "e2e4")
    assert says("game", "report", "game.dat", cwd=path.parent) == "game.html\n"
    assert (path.parent / "game.html").is_file()


# --- files that are no saved games ------------------------------------------------------------------------


@pytest.mark.parametrize("change, words", [
    (lambda image: b"", f"it has 0 bytes, a saved game has {SIZE}"),
    (lambda image: image[:-1], f"it has {SIZE - 1} bytes"),
    (lambda image: b"\x0a" + image[1:], "does not begin as one"),
    (lambda image: image[:GAME_LEN] + b"\xff" + image[GAME_LEN + 1 :], "record is damaged"),
    (lambda image: image[:MOVES] + b"\xff" + image[MOVES + 1 :], "record is damaged"),
    (lambda image: image[:4] + b"\7" + image[5:], "record is damaged"),
])
@pytest.mark.parametrize("command", ["show", "pgn", "report"])
def test_refused_files(complains, folder, command, change, words):
    path = typed_game(folder, "e2e4")
    path.write_bytes(change(path.read_bytes()))
    complaint = complains("game", command, path)
    assert f"{path} is no saved game: " in complaint and words in complaint
    assert not path.with_suffix(".html").exists()


@pytest.mark.parametrize("arguments, words", [
    ([], "subcommand"), (["show"], "FILE"), (["show", "none.dat"], "cannot read none.dat"),
    (["pgn", "."], "cannot read ."), (["show", "a", "b"], "b"),
])
def test_bad_arguments(complains, arguments, words):
    assert words in complains("game", *arguments)


def test_an_output_that_cannot_be_written(complains, folder):
    path = typed_game(folder)
    assert "none/a.html" in complains("game", "report", path, "-o", "none/a.html")
    assert "none/a.pgn" in complains("game", "pgn", path, "-o", "none/a.pgn")
