"""Games in a real GUI: xboard on a virtual display, from a few moves before mate to the end.

By the clock command the engine takes at least 7 seconds a move when it does not see a mate, so the games are short
and their clocks long.
"""

import os
import pathlib
import re
import shutil
import signal
import subprocess

from conftest import PROJECT, SEARCH_PATH, engine_environment, require

TIMEOUT_SECONDS = 120

# No dialog may wait for a click; the engines get time to write their files at the end. xboard goes on when the first
# engine has told its features for the second time, whether the second engine has told its own or not, so what it has
# to know before that is told here.
XBOARD = ["xvfb-run", "-a", "xboard", "-noGUI", "-xexit", "-xpopup", "-matchGames", "1"]
XBOARD += ["-saveSettingsOnExit", "false"]
XBOARD += ["-delayAfterQuit", "32", "-featureDefaults", "setboard=1 sigint=0 sigterm=0"]

# Fairy-Max crashes at some of the addresses that the kernel's randomisation gives it.
FAIRYMAX = "setarch -R fairymax"

BY_MOVE_TIME = ["-st", "0:08"]
BY_CLOCK = ["-tc", "5", "-mps", "40"]

# Two rooks against a bare king: mate in a handful of moves against any defence.
ROOKS_FOR_WHITE = "8/8/8/8/8/5k2/R7/1R4K1 w - - 0 1"
ROOKS_FOR_BLACK = "1r4k1/r7/5K2/8/8/8/8/8 b - - 0 1"

COMPLAINT = re.compile(r".*(?:illegal move|invalid move|forfeit|exited unexpectedly|on time|resigns).*", re.IGNORECASE)


def install_engine(engine: pathlib.Path, folder: pathlib.Path) -> str:
    """Puts the engine and its files into the folder; the command that starts it."""
    folder.mkdir()
    shutil.copy(engine, folder)
    for name in ("tarvyle.cfg", "tarvyle.bk"):
        shutil.copy(PROJECT / "data" / name, folder)
    return str(folder / engine.name)


def play(white: str, black: str, fen: str, clock: list[str], folder: pathlib.Path) -> tuple[str, str]:
    """Plays one game; the saved game, and all that xboard heard and said."""
    (folder / "position.fen").write_text(fen + "\n")
    command = [*XBOARD, *clock, "-fcp", white, "-scp", black]
    command += ["-loadPositionFile", "position.fen", "-loadPositionIndex", "1"]
    command += ["-saveGameFile", "game.pgn", "-debug", "-nameOfDebugFile", "debug.log"]
    # A home of its own for the engines. xboard takes its own settings from that of the user's account all
    # the same; it must not leave any there.
    environment = engine_environment() | {"HOME": str(folder), "PATH": SEARCH_PATH}

    with (folder / "xboard.out").open("wb") as output:
        run = subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                               stderr=subprocess.STDOUT, start_new_session=True)
        try:
            run.wait(TIMEOUT_SECONDS)
        except subprocess.TimeoutExpired:
            pass  # what was said until then tells more than the time
        finally:
            if run.poll() is None:
                os.killpg(run.pid, signal.SIGKILL)
                run.wait()

    def read(name: str) -> str:
        path = folder / name
        return path.read_text(errors="replace") if path.exists() else ""

    said = read("xboard.out") + read("debug.log")
    game = read("game.pgn")
    assert game, f"no game was saved:\n{said[-4000:]}"
    return game, said


def assert_mate(game: str, said: str, result: str) -> None:
    """The game ended in mate with this result, and nobody complained on the way."""
    assert f'[Result "{result}"]' in game, game
    assert re.search(r"#.*mate.*" + result + r"\s*\Z", game, re.IGNORECASE | re.DOTALL), game
    assert COMPLAINT.findall(game + said) == []


def test_white_mates_fairymax(engine, tmp_path):
    require("xvfb-run", "xboard", "fairymax", "setarch")
    white = install_engine(engine, tmp_path / "engine")
    game, said = play(white, FAIRYMAX, ROOKS_FOR_WHITE, BY_MOVE_TIME, tmp_path)
    assert_mate(game, said, "1-0")


def test_black_mates_itself_by_the_clock(engine, tmp_path):
    require("xvfb-run", "xboard")
    white = install_engine(engine, tmp_path / "white")
    black = install_engine(engine, tmp_path / "black")
    game, said = play(white, black, ROOKS_FOR_BLACK, BY_CLOCK, tmp_path)
    assert_mate(game, said, "0-1")
