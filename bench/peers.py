#!/usr/bin/env python3
"""Nodes per second of tarv and of other engines, each from its own thinking lines.

    bench/peers.py [--seconds N] [--positions FILE] [--tsv FILE] [ENGINE...]

Every engine searches every position of the file (FEN, then a tab and anything) for the given time
in a process of its own; those that speak UCI are given 64 MB of hash. Engines that are not
installed are left out. Counts of different engines do not mean the same thing: some count a node
for each move made, some for each position entered.
"""

import argparse
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
ENGINES = {
    "tarv": (["tarv", "uci"], "uci"),
    "tarv-pgo": (["tarv-pgo", "uci"], "uci"),
    "hoichess": (["hoichess", "--xboard"], "xboard"),
    "phalanx": (["phalanx", "-b+", "-l-"], "xboard"),
    "fairymax": (["setarch", "-R", "fairymax"], "xboard"),
    "gnuchess": (["gnuchess", "--uci"], "uci"),
    "stockfish": (["stockfish"], "uci"),
}
BUILDS = {"tarv": ROOT / "build/release/bin/tarv", "tarv-pgo": ROOT / "build/pgo/bin/tarv"}


def program(name: str) -> str | None:
    """Where it is, if it is there."""
    if name in BUILDS:
        return str(BUILDS[name]) if BUILDS[name].is_file() else None
    return shutil.which(name, path=os.environ["PATH"] + ":/usr/games")


def command(name: str) -> list[str] | None:
    words = list(ENGINES[name][0])
    at = words.index(name) if name in words else 0
    words[at] = program(name) or ""
    return words if words[at] else None


def uci_lines(fen: str, seconds: float) -> list[str]:
    return ["uci", "setoption name Hash value 64", "ucinewgame", "isready",
            f"position fen {full_fen(fen)}", f"go movetime {int(seconds * 1000)}"]


def xboard_lines(fen: str, seconds: float) -> list[str]:
    return ["xboard", "protover 2", "new", "post", "easy", "force",
            f"setboard {full_fen(fen)}", f"st {int(seconds)}", "go"]


def full_fen(fen: str) -> str:
    words = fen.split()
    return " ".join(words[:4] + ["-"] * (4 - len(words[:4])) + ["0", "1"])


def uci_rate(line: str) -> tuple[int, float] | None:
    """Nodes and seconds that a line tells, in either order."""
    found = re.search(r"^info .*\bnodes (\d+) .*\btime (\d+)|^info .*\btime (\d+).*\bnodes (\d+)", line)
    if not found:
        return None
    nodes = int(found[1] or found[4])
    return nodes, int(found[2] or found[3]) / 1000


def xboard_rate(line: str) -> tuple[int, float] | None:
    found = re.match(r"\s*\d+[.+&]?\s+-?\d+\s+(\d+)\s+(\d+)(\s|$)", line)
    return (int(found[2]), int(found[1]) / 100) if found else None


def measure(name: str, fen: str, seconds: float) -> tuple[int, float] | None:
    """Nodes and seconds of the last thinking line, or None."""
    protocol = ENGINES[name][1]
    lines = (uci_lines if protocol == "uci" else xboard_lines)(fen, seconds)
    engine = subprocess.Popen(command(name), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True, bufsize=1)
    rate = uci_rate if protocol == "uci" else xboard_rate
    ends = ("bestmove",) if protocol == "uci" else ("move ", "1-0", "0-1", "1/2")
    best = None
    late = threading.Timer(4 * seconds + 5, engine.kill)
    late.start()
    try:
        for line in lines:
            engine.stdin.write(line + "\n")
            engine.stdin.flush()
            time.sleep(0.05)
        for line in engine.stdout:
            best = rate(line) or best
            if line.startswith(ends):
                break
    except BrokenPipeError:
        return None
    finally:
        late.cancel()
        engine.kill()
        engine.wait()
    return best if best and best[1] > 0 else None


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--seconds", type=float, default=3)
    parser.add_argument("--positions", type=pathlib.Path, default=ROOT / "bench" / "middlegames.tsv")
    parser.add_argument("--tsv", type=pathlib.Path, help="writes nodes per second by engine and position here")
    parser.add_argument("engines", nargs="*", metavar="ENGINE", default=list(ENGINES))
    options = parser.parse_args()
    fens = [line.split("\t")[0].strip() for line in options.positions.read_text().splitlines() if line.strip()]
    rows = []
    print(f"{'engine':12} {'median':>12} {'least':>12} {'most':>12}  nodes per second")
    for name in options.engines:
        if command(name) is None:
            print(f"{name:12} not installed", file=sys.stderr)
            continue
        rates = []
        for number, fen in enumerate(fens, 1):
            found = measure(name, fen, options.seconds)
            if found:
                rates.append(found[0] / found[1])
                rows.append((name, number, rates[-1]))
        if rates:
            print(f"{name:12} {statistics.median(rates):12,.0f} {min(rates):12,.0f} {max(rates):12,.0f}"
                  f"  ({len(rates)} positions)", flush=True)
        else:
            print(f"{name:12} gave no thinking lines", flush=True)
    if options.tsv:
        options.tsv.write_text("".join(f"{name}\t{number}\t{rate:.0f}\n" for name, number, rate in rows))


if __name__ == "__main__":
    main()
