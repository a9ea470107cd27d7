#!/usr/bin/env python3
"""Plays a match of `tarv uci` against another engine that speaks UCI, and prints the difference in Elo.

    bench/strength.py [--games N] [--clock SECONDS+INCREMENT] [--option NAME=VALUE]... COMMAND...

Every opening, eight random half-moves, is played twice with colours changed; --seed chooses them. The
referee is chess.js under Node.js, fetched by npm; python3-pytest is needed as well. Example:

    bench/strength.py --games 100 --option UCI_LimitStrength=true --option UCI_Elo=2200 stockfish
"""

import argparse
import math
import os
import pathlib
import random
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "program"))

# pylint: disable=wrong-import-position
from referee import Referee  # noqa: E402
from uci_engine import Thought, UciEngine  # noqa: E402
from uci_games import Clock, Game, play  # noqa: E402


class AnyEngine(UciEngine):
    """Takes lines of thinking as they come: other engines word them otherwise."""

    def thought(self, began: float) -> Thought:
        lines, when = self.until("bestmove")
        return Thought(lines[-1].split()[1], [], [], when - began)


def points(game: Game, we_are_white: bool) -> float:
    """What a game brought us: the side that made the last move has won, if it was mate."""
    if game.over != "checkmate":
        return 0.5
    white_won = len(game.moves) % 2 == 1
    return 1.0 if white_won == we_are_white else 0.0


def elo(share: float) -> float:
    share = min(max(share, 0.001), 0.999)
    return 400 * math.log10(share / (1 - share))


def told(results: list[float]) -> str:
    """The match so far, with an interval that holds the true difference 19 times out of 20."""
    count = len(results)
    mean = sum(results) / count
    error = 1.96 * math.sqrt(sum((result - mean) ** 2 for result in results)) / count
    wins, draws = results.count(1.0), results.count(0.5)
    return (f"{count} games: {wins} won, {draws} drawn, {count - wins - draws} lost; "
            f"Elo {elo(mean):+.0f} ({elo(mean - error):+.0f} to {elo(mean + error):+.0f})")


def setting(text: str) -> tuple[str, str]:
    """NAME=VALUE as a pair."""
    name, equals, value = text.partition("=")
    if not name or not equals:
        raise argparse.ArgumentTypeError(f"{text} is not NAME=VALUE")
    return name, value


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--games", type=int, default=100)
    parser.add_argument("--clock", default="2+0.02", metavar="SECONDS+INCREMENT")
    parser.add_argument("--option", action="append", type=setting, default=[], metavar="NAME=VALUE",
                        help="of the other engine")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("command", nargs="+", metavar="COMMAND")
    return parser.parse_args()


def command_of(words: list[str]) -> list[str]:
    """The other engine's command, to be run in another folder."""
    program = os.path.abspath(words[0]) if "/" in words[0] else words[0]
    return [program, *words[1:]]


def main() -> None:
    wanted = arguments()
    seconds, increment = map(float, wanted.clock.split("+"))
    environment = os.environ | {"PATH": os.environ["PATH"] + ":/usr/games"}
    results, flags = [], 0
    with tempfile.TemporaryDirectory() as folder:
        quiet = environment | {"HOME": folder}
        ours = UciEngine([ROOT / "build" / "release" / "bin" / "tarv", "uci"], env=quiet)
        with (Referee(pathlib.Path(folder, "referee")) as referee, ours,
              AnyEngine(command_of(wanted.command), env=quiet, cwd=folder) as theirs):
            theirs.send("uci")
            theirs.until("uciok")
            for name, value in wanted.option:
                theirs.ask(f"setoption name {name} value {value}")
            for number in range(wanted.games):
                we_are_white = number % 2 == 0
                players = [ours, theirs] if we_are_white else [theirs, ours]
                dice = random.Random(wanted.seed * 100000 + number // 2)
                game = play(players, referee, dice, Clock([seconds, seconds], increment))
                results.append(points(game, we_are_white))
                flags += game.clock.flags
                if len(results) % 10 == 0:
                    print(told(results), file=sys.stderr)
    print(f"{told(results)}; clocks that ran out, not counted as a loss: {flags}")


if __name__ == "__main__":
    main()
