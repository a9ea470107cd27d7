"""Random lines of the protocol, right and wrong, in any order: `tarv uci` lives, answers, and ends well."""

import pathlib
import random

import pytest
from conftest import DATA, engine_environment
from uci_engine import UciEngine

SOUPS = range(20)
LINES = 60

FENS = [row.split("\t")[0] for row in (DATA / "positions.tsv").read_text().splitlines() if row[0] != "#"]
GAMES = [row.split("\t")[0].split(" moves ")[1].split()
         for row in (DATA / "histories.tsv").read_text().splitlines() if row[0] != "#" and " moves " in row]
WORDS = ("uci isready ucinewgame setoption position go stop quit ponderhit bench perft eval d name value startpos fen "
         "moves wtime btime winc binc movestogo movetime depth nodes mate infinite ponder searchmoves e2e4 a7a8q 0000 "
         "Hash Style -1 0 1 7 99999999999999999999 x true false <empty> \x00 \xff \t").split(" ")


def number(dice: random.Random) -> str:
    return str(dice.choice([-1, 0, 1, 2, 3, 5, 10, 50, 4096, 10**6, 2**31, 2**63, "x", ""]))


def position(dice: random.Random) -> str:
    fen = dice.choice(FENS)
    if dice.random() < 0.2:  # some letter of it goes wrong
        at = dice.randrange(len(fen))
        fen = fen[:at] + dice.choice("pnbrqkPNBRQK12345678/ w-") + fen[at + dice.randint(0, 2):]
    game = dice.choice(GAMES)
    moves = game[:dice.randint(0, len(game))]
    if dice.random() < 0.2:
        moves.insert(dice.randint(0, len(moves)), dice.choice(WORDS))
    start = dice.choice(["startpos", "startpos", f"fen {fen}"])
    return f"position {start}" + (f" moves {' '.join(moves)}" if moves else "")


def option(dice: random.Random, folder: pathlib.Path) -> str:
    files = ["<empty>", "/dev/null", folder, folder / "output.lrn", DATA / "book.bk", DATA / "searches.tsv"]
    name, value = dice.choice([
        ("Hash", dice.choice(["1", "8", "20", "-5", "999999999"])),
        ("Style", f"knowledge{dice.randint(0, 4)}"),
        ("Random Search", dice.choice(["true", "false", "perhaps"])),
        ("OwnBook", dice.choice(["true", "false"])),
        ("Book File", dice.choice(files)),
        ("Learn File", dice.choice(files)),
        ("Learn Output", folder / "output.lrn"),
        ("Clear Hash", ""),
        ("Move Overhead", number(dice)),
        ("Seed", number(dice)),
        ("Nonsense", number(dice)),
    ])
    return f"setoption name {name} value {value}"


def limits(dice: random.Random) -> str:
    kinds = ["wtime", "btime", "winc", "binc", "movestogo", "movetime", "depth", "nodes", "mate", "infinite",
             "searchmoves e2e4 a2a3", "ponder"]
    return "go " + " ".join(f"{kind} {number(dice)}" for kind in dice.sample(kinds, dice.randint(0, 4)))


def soup(dice: random.Random, folder: pathlib.Path) -> list[str]:
    """Lines in any order; every search is stopped sooner or later."""
    ladle = [position, position, position, limits, limits, limits, lambda d: option(d, folder),
             lambda d: option(d, folder), lambda _: "stop", lambda _: "isready", lambda _: "ucinewgame",
             lambda _: "uci", lambda _: "d", lambda _: "eval", lambda d: f"perft {d.randint(-1, 3)}",
             lambda d: " ".join(d.choice(WORDS) for _ in range(d.randint(0, 8))),
             lambda d: "".join(chr(d.randint(0, 255)) for _ in range(d.randint(0, 40)))]
    lines = [dice.choice(ladle)(dice).replace("\n", " ") for _ in range(LINES)]
    return [line for line in lines if line.split(" ")[0].strip("\r\t\x00") not in ("quit", "bench")]


@pytest.mark.parametrize("seed", SOUPS)
def test_soup(workbench, tmp_path, seed):
    dice = random.Random(seed)
    with UciEngine([workbench, "uci"], cwd=tmp_path, env=engine_environment() | {"HOME": str(tmp_path)},
                   encoding="latin-1") as uci:
        for line in soup(dice, tmp_path):
            uci.send(line)
            if dice.random() < 0.3:  # let it think for a moment
                uci.silent(0.02)
            uci.send("stop")
        assert uci.quit("go depth 2") == (0, "")
        while uci.hear()[0] is not None:
            pass
    assert sum(line.startswith("bestmove") for line in uci.said) >= 2, "it was asked for moves"
    written = {path.name for path in tmp_path.iterdir()}
    assert written <= {"output.lrn"}, "nothing is written but the learn output"
