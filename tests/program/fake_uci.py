"""An engine without any chess in it, for tests of programs that let engines play: `fake_uci.py CHARACTER`.

Its games begin with 1. e4 e5 (the book of `test_sprt.py`), and it answers from a table. CHARACTER: "wins" mates one
that "loses" with its second move; "draws" moves a knight to and fro; "illegal", "crash", "late" and "hang" do so
at their first move; "slow" draws, and takes its time.
"""

import sys
import time

# By the side and the character: the move of each turn, over and over.
ANSWERS = {
    "wins": (["d1h5", "h5e5"], ["d8h4", "h4e4"]),
    "loses": (["e1e2", "a2a3"], ["e8e7", "a7a6"]),
    "draws": (["b1c3", "c3b1"], ["b8c6", "c6b8"]),
}
ANSWERS["slow"] = ANSWERS["draws"]


def say(text: str) -> None:
    print(text, flush=True)


def answer(character: str, moves: list[str]) -> None:
    if character == "crash":
        sys.exit(1)
    if character == "illegal":
        say("bestmove e4e6")
        return
    if character == "hang":
        time.sleep(1000)
    if character in ("late", "slow"):
        time.sleep(0.6 if character == "late" else 0.02)
    turns = ANSWERS.get(character, ANSWERS["draws"])[len(moves) % 2]
    say("info depth 1 score cp 0")
    say(f"bestmove {turns[len(moves) // 2 % len(turns)]} ponder a1a1")


def main() -> None:
    character, moves = sys.argv[1], []
    for line in sys.stdin:
        words = line.split()
        if not words:
            continue
        if words[0] == "uci":
            say("id name fake\noption name Hash type spin default 1 min 1 max 1024\nuciok")
        elif words[0] == "isready":
            say("readyok")
        elif words[0] == "position":
            moves = words[words.index("moves") + 1:] if "moves" in words else []
        elif words[0] == "go":
            answer(character, moves)
        elif words[0] == "quit":
            break


if __name__ == "__main__":
    main()
