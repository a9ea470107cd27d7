#!/usr/bin/env python3
"""Time from starting the engine to its first answer, and the memory that it takes.

    bench/startup.py [ENGINE]       default: build/release/bin/tarvyle

Each run begins in a folder with the shipped configuration and a learn file that the book was read
into, sends "pos" and waits for the board. Medians of 30 runs, with the machine's own process list
and with an empty one in its place. Memory is the resident set after the answer, with the smallest
tables ("hash size" 32: 4 MB), and after a search of the start position without the book.
"""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RUNS = 30


def start(folder, environment):
    return subprocess.Popen([os.path.join(folder, "tarvyle")], cwd=folder, env=environment, text=True,
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)


def answer(engine, command, mark):
    engine.stdin.write(command + "\n")
    engine.stdin.flush()
    for line in engine.stdout:
        if mark in line:
            return
    raise SystemExit(f"no answer to {command!r}")


def stop(engine):
    engine.stdin.close()
    engine.stdout.read()
    engine.wait()


def milliseconds(folder, environment):
    taken = []
    for _ in range(RUNS):
        begin = time.perf_counter()
        engine = start(folder, environment)
        answer(engine, "pos", "a b c")
        taken.append((time.perf_counter() - begin) * 1000)
        engine.kill()
        engine.wait()
    return statistics.median(taken)


def resident_kilobytes(engine):
    with open(f"/proc/{engine.pid}/status") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("VmRSS"))


def main():
    program = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else
                              os.path.join(ROOT, "build/release/bin/tarvyle"))
    with tempfile.TemporaryDirectory() as folder:
        for path in (program, os.path.join(ROOT, "data/tarvyle.cfg"), os.path.join(ROOT, "data/tarvyle.bk")):
            shutil.copy(path, folder)
        empty = os.path.join(folder, "bin")
        os.mkdir(empty)
        with open(os.path.join(empty, "ps"), "w") as file:
            file.write("#!/bin/sh\n")
        os.chmod(os.path.join(empty, "ps"), 0o755)
        quiet = dict(os.environ, PATH=empty + ":" + os.environ["PATH"])
        stop(start(folder, quiet))  # reads the book, leaves the learn file
        size = os.path.getsize(os.path.join(folder, "tarvyle.lrn"))
        print(f"learn file: {size} bytes")
        print(f"to the first answer: {milliseconds(folder, quiet):.1f} ms")
        print(f"with the machine's process list: {milliseconds(folder, dict(os.environ)):.1f} ms")
        with open(os.path.join(folder, "tarvyle.cfg")) as file:
            configuration = file.read()
        with open(os.path.join(folder, "tarvyle.cfg"), "w") as file:
            file.write(configuration.replace('"38"', '"32"').replace('"auto"', '"never"'))
        engine = start(folder, quiet)
        answer(engine, "pos", "a b c")
        print(f"memory after the start: {resident_kilobytes(engine)} kB, tables included")
        answer(engine, "st 5\ngo", "move ")
        print(f"memory after a search: {resident_kilobytes(engine)} kB, tables included")
        engine.kill()


if __name__ == "__main__":
    main()
