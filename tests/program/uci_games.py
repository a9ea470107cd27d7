"""Games at a clock between engines that speak the Universal Chess Interface, under an independent referee."""

import dataclasses
import random

from referee import Referee
from uci_engine import Thought, UciEngine

LONGEST = 400  # half-moves; then it is called a draw


@dataclasses.dataclass
class Clock:
    """What is left to each side, in seconds, and what it gets for each move."""

    left: list[float]
    increment: float
    least: float = float("inf")  # that was ever left
    flags: int = 0  # that fell

    def limits(self) -> str:
        white, black = (int(left * 1000) for left in self.left)
        increment = int(self.increment * 1000)
        return f"wtime {white} btime {black} winc {increment} binc {increment}"

    def press(self, side: int, seconds: float) -> None:
        self.left[side] -= seconds
        self.least = min(self.least, self.left[side])
        if self.left[side] < 0:
            self.flags += 1
            self.left[side] = 0
        self.left[side] += self.increment


@dataclasses.dataclass
class Game:
    moves: list[str]
    over: str
    clock: Clock


def opening(referee: Referee, dice: random.Random, half_moves: int) -> tuple[list[str], dict]:
    """Random moves to begin with, and what the referee says then."""
    state, moves = referee.ask("new"), []
    while len(moves) < half_moves and not state["over"]:
        moves.append(dice.choice(state["legal"]))
        state = referee.play(moves[-1])
    return moves, state


def check_line(referee: Referee, line: str) -> None:
    """Every move of a line of thinking is legal."""
    moves = line.split()
    for move in moves:
        referee.play(move)
    for _ in moves:
        referee.ask("undo")


def play(players: list[UciEngine], referee: Referee, dice: random.Random, clock: Clock,
         note=lambda side, thought: None) -> Game:
    """One game from a random opening; `note` is told of every thought."""
    moves, state = opening(referee, dice, 8)
    for player in players:
        player.ask("ucinewgame")
    while not state["over"] and len(moves) < LONGEST:
        side = len(moves) % 2
        thought: Thought = players[side].go(clock.limits(), f"startpos moves {' '.join(moves)}".removesuffix(" moves "))
        clock.press(side, thought.seconds)
        note(side, thought)
        if dice.random() < 0.05:
            for line in thought.lines:
                check_line(referee, line.pv)
        state = referee.play(thought.move)
        moves.append(thought.move)
    return Game(moves, state["over"] or "too long", clock)
