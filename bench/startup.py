#!/usr/bin/env python3
"""Time from starting the engine to its first answer, and the memory that it takes.

    bench/startup.py [ENGINE]       default: build/release/bin/tarvyle

Each run begins in a folder with the shipped configuration and a learn file that the book was read
into, sends "pos" and waits for the board. Medians of 30 runs, with the machine's own process list
and with an empty one in its place. Memory is the resident set after the answer, with the smallest
tables ("hash size" 32: 4 MB), and after a search of the start position without the book.
"""

import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
RUNS = 30


def start(folder: pathlib.Path, environment: dict[str, str]) -> subprocess.Popen:
    return subprocess.Popen([folder / "tarvyle"], cwd=folder, env=environment, text=True,
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)


def answer(engine: subprocess.Popen, command: str, mark: str) -> None:
    """Waits for a line with this mark in it."""
    engine.stdin.write(command + "\n")
    engine.stdin.flush()
    for line in engine.stdout:
        if mark in line:
            return
    raise SystemExit(f"no answer to {command!r}")


def stop(engine: subprocess.Popen) -> None:
    engine.stdin.close()
    engine.stdout.read()
    engine.wait()


def milliseconds(folder: pathlib.Path, environment: dict[str, str]) -> float:
    taken = []
    for _ in range(RUNS):
        begin = time.perf_counter()
        engine = start(folder, environment)
        answer(engine, "pos", "a b c")
        taken.append((time.perf_counter() - begin) * 1000)
        engine.kill()
        engine.wait()
    return statistics.median(taken)


def resident_kilobytes(engine: subprocess.Popen) -> int:
    status = pathlib.Path(f"/proc/{engine.pid}/status").read_text()
    return next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmRSS"))


def prepare(folder: pathlib.Path, program: pathlib.Path) -> dict[str, str]:
    """Puts the engine and its files there, the learn file too; an environment with an empty process list."""
    for path in (program, ROOT / "data/tarvyle.cfg", ROOT / "data/tarvyle.bk"):
        shutil.copy(path, folder)
    lister = folder / "bin" / "ps"
    lister.parent.mkdir()
    lister.write_text("#!/bin/sh\n")
    lister.chmod(0o755)
    quiet = os.environ | {"PATH": f"{lister.parent}:{os.environ['PATH']}"}
    stop(start(folder, quiet))  # reads the book, leaves the learn file
    return quiet


def measure(folder: pathlib.Path, program: pathlib.Path) -> None:
    quiet = prepare(folder, program)
    print(f"learn file: {(folder / 'tarvyle.lrn').stat().st_size} bytes")
    print(f"to the first answer: {milliseconds(folder, quiet):.1f} ms")
    print(f"with the machine's process list: {milliseconds(folder, dict(os.environ)):.1f} ms")
    settings = folder / "tarvyle.cfg"
    settings.write_text(settings.read_text().replace('"38"', '"32"').replace('"auto"', '"never"'))
    engine = start(folder, quiet)
    answer(engine, "pos", "a b c")
    print(f"memory after the start: {resident_kilobytes(engine)} kB, tables included")
    answer(engine, "st 5\ngo", "move ")
    print(f"memory after a search: {resident_kilobytes(engine)} kB, tables included")
    engine.kill()
    engine.wait()


def main() -> None:
    program = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else ROOT / "build/release/bin/tarvyle"
    with tempfile.TemporaryDirectory() as folder:
        measure(pathlib.Path(folder), program)


if __name__ == "__main__":
    main()
