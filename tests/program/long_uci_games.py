"""A hundred games of `tarv uci` at one second and a hundredth a move, and how soon it obeys while it thinks.

What is measured is printed: pytest shows it with -rA or -s. The games want two processors that are idle otherwise: a
player that waits for one for half a second has lost on time.
"""

import collections
import random
import statistics
import time

from conftest import engine_environment
from uci_engine import UciEngine
from uci_games import Clock, play

GAMES = 100
PAUSES = 100
OBEYED_WITHIN = 0.02  # seconds, as a rule; a busy machine takes longer now and then


def test_a_hundred_fast_games(workbench, referee, tmp_path):
    environment = engine_environment() | {"HOME": str(tmp_path)}
    dice = random.Random(1)
    ends, least, flags, half_moves, outside = collections.Counter(), [], 0, 0, []

    def note(_, thought):
        """What the engine does not see of its time: waiting for the processor, and on the way."""
        if thought.lines:
            outside.append(thought.seconds * 1000 - thought.lines[-1].time)

    with UciEngine([workbench, "uci"], env=environment) as one, UciEngine([workbench, "uci"], env=environment) as two:
        for number in range(GAMES):
            for player in (one, two):
                player.ask(f"setoption name Style value knowledge{number % 3 + 1}")
            players = [one, two] if number % 2 == 0 else [two, one]
            game = play(players, referee, dice, Clock([1.0, 1.0], 0.01), note)
            ends[game.over] += 1
            least.append(game.clock.least)
            flags += game.clock.flags
            half_moves += len(game.moves)
        assert one.quit() == two.quit() == (0, "")
    print(f"{GAMES} games, {half_moves} half-moves, no illegal one; losses on time: {flags}; "
          f"least time ever left: {min(least) * 1000:.0f} ms "
          f"(median of the games {statistics.median(least) * 1000:.0f})")
    print(f"ends: {dict(ends)}; on the way: median {statistics.median(outside):.1f} ms, worst {max(outside):.0f} ms")
    assert flags == 0
    assert ends["checkmate"] > GAMES / 4, "they play to win"


def told(name: str, seconds: list[float]) -> str:
    return f"{name}: median {statistics.median(seconds) * 1000:.2f} ms, worst {max(seconds) * 1000:.2f} ms"


def test_how_soon_it_obeys(workbench, tmp_path):
    stops, readies, dice = [], [], random.Random(2)
    with UciEngine([workbench, "uci"], env=engine_environment() | {"HOME": str(tmp_path)}) as uci:
        uci.ask("setoption name Hash value 100")
        for _ in range(PAUSES):
            uci.send("position startpos", "go infinite")
            time.sleep(dice.uniform(0.0, 0.2))
            asked = uci.send("isready")
            readies.append(uci.until("readyok")[1] - asked)
            time.sleep(dice.uniform(0.0, 0.05))
            stops.append(uci.thought(uci.send("stop")).seconds)
    print(told("from stop to bestmove", stops) + "; " + told("from isready to readyok while it thinks", readies))
    assert statistics.median(stops) < OBEYED_WITHIN
    assert statistics.median(readies) < OBEYED_WITHIN
