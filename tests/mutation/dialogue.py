#!/usr/bin/env python3
"""Holds the dialogue of dialogue.uci with an engine and prints what it answers.

    tests/mutation/dialogue.py PROGRAM

Each line is answered before the next is sent, so that the engine says the same each time.
"""

import pathlib
import signal
import subprocess
import sys

PATIENCE = 20  # seconds for an answer, then the dialogue ends by a signal
LINES = pathlib.Path(__file__).with_suffix(".uci").read_text().splitlines()


def last_answer(line: str) -> str:
    """The first word of what ends the answer to a line."""
    if line == "go infinite":
        return "info"
    return "bestmove" if line == "stop" or line.split(" ")[0] == "go" else "readyok"


def hold(engine: subprocess.Popen) -> None:
    for line in LINES:
        last = last_answer(line)
        engine.stdin.write(f"{line}\nisready\n" if last == "readyok" else f"{line}\n")
        engine.stdin.flush()
        signal.alarm(PATIENCE)
        for answer in engine.stdout:
            print(answer, end="")
            if answer.split(" ")[0].strip() == last:
                break
        else:
            return


def main() -> None:
    with subprocess.Popen([sys.argv[1]], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as engine:
        hold(engine)
        engine.stdin.close()
        signal.alarm(PATIENCE)
        print(engine.stdout.read(), end="")
    print("status", engine.returncode)


if __name__ == "__main__":
    main()
