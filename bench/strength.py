#!/usr/bin/env python3
"""Plays a match of `tarv uci` against another engine that speaks UCI, and prints the difference in Elo.

    bench/strength.py [--games N] [--clock [MOVES/]SECONDS[+INCREMENT]] [--option NAME=VALUE]... COMMAND...

Every opening, eight half-moves of the shipped book, is played twice with colours changed; --seed shuffles them.
A side that answers too late or with an illegal move has lost. Example:

    bench/strength.py --games 100 --option UCI_LimitStrength=true --option UCI_Elo=2200 stockfish
"""

import argparse
import contextlib
import os
import pathlib
import sys
import tempfile

from match_arguments import positive, setting, time_control
from match_log import Tally
from openings import openings
from uci_match import Broken, Side, pairs

TARV = pathlib.Path(__file__).resolve().parents[1] / "build" / "release" / "bin" / "tarv"


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--games", type=positive, default=100, help="an odd number means one more (100)")
    parser.add_argument("--clock", type=time_control, default="2+0.02", metavar="[MOVES/]SECONDS[+INCREMENT]")
    parser.add_argument("--option", action="append", type=setting, default=[], metavar="NAME=VALUE",
                        help="of the other engine")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("command", nargs=argparse.REMAINDER, metavar="COMMAND")
    wanted = parser.parse_args()
    if not wanted.command:
        parser.error("which engine?")
    return wanted


def command_of(words: list[str]) -> list[str]:
    """The other engine's command, to be run in another folder."""
    program = os.path.abspath(words[0]) if "/" in words[0] else words[0]
    return [program, *words[1:]]


def told(tally: Tally) -> str:
    """The match so far, with an interval that holds the true difference 19 times out of 20."""
    return f"{sum(tally.games.values())} games: {tally.score()}; Elo {tally.elo()}"


def main() -> int:
    wanted = arguments()
    fens, tally = openings(seed=wanted.seed), Tally()
    order = [(number, fens[number % len(fens)]) for number in range((wanted.games + 1) // 2)]
    with tempfile.TemporaryDirectory() as home:
        ours = Side("tarv", [str(TARV), "uci"], {}, home)
        theirs = Side("the other", command_of(wanted.command), dict(wanted.option), home)
        try:
            with contextlib.closing(pairs(order, ours, theirs, wanted.clock, 1)) as played:
                for pair in played:
                    tally.add(pair)
                    if sum(tally.counts) % 5 == 0:
                        print(told(tally), file=sys.stderr)
        except Broken as error:
            print(f"strength.py: {error}", file=sys.stderr)
            return 2
    print(f"{told(tally)}; {tally.told_faults('tarv', 'the other')}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
