#!/usr/bin/env python3
"""Holds the dialogue of dialogue.uci with an engine and prints what it answers.

    tests/mutation/dialogue.py PROGRAM

Each search ends before the next line is sent, so that the engine says the same each time.
"""

import pathlib
import signal
import subprocess
import sys

PATIENCE = 20  # seconds for an answer, then the dialogue ends by a signal
LINES = pathlib.Path(__file__).with_suffix(".uci").read_text().splitlines()


def parts() -> list[tuple[str, str]]:
    """What is sent at once, and the first word of what ends the answer: a part ends with the search it asks for."""
    found = []
    text = ""
    for line in LINES:
        text += line + "\n"
        word = line.split(" ")[0]
        if word in ("go", "stop"):
            found.append((text, "info" if line == "go infinite" else "bestmove"))
            text = ""
    return [*found, (text + "isready\n", "readyok")]


def hold(engine: subprocess.Popen) -> None:
    for text, last in parts():
        engine.stdin.write(text)
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
