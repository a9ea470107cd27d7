#!/usr/bin/env python3
"""Records what xboard sends to the engine, and what the engine answers, while somebody plays with it.

    cmake --preset release && cmake --build --preset release
    tests/program/record_xboard.py [NAME...]     # all, or those named: to tests/data/xboard_streams/NAME.txt

Each scenario below starts xboard on a virtual display of its own (Xvfb) and works it with mouse and keyboard
(xdotool). The engine runs with the clock of fixed_time.cpp, so that it answers the same to the same stream on
every machine; the real time that it takes is only waited for, and shows in nothing but the "time" lines of xboard.
A recording holds the lines in the order in which xboard saw them: "> " before those it sent, "< " before those of
the engine. The lines are taken from the pipes byte for byte, xboard's log only tells their order; what the engine
said when xboard listened no more stands at the end.
"""

import os
import pathlib
import pwd
import re
import subprocess
import sys
import tempfile
import time

from conftest import DATA, RELEASE
from engine_folder import EngineFolder

STREAMS = DATA / "xboard_streams"

STEP_MS = 1000  # of the engine's clock at each reading: a move takes seven, some 28,000 nodes
QUICK_MS = 0  # of real time at each reading
SLOW_MS = 400  # the same, where something is to happen while the engine thinks
SLOW_SECONDS = 7 * SLOW_MS / 1000 + 0.5
START_SECONDS = 3.0
ANSWER_SECONDS = 1.5

# Where the squares of the board are with "-size medium" and no window manager.
LEFT, TOP, SQUARE = 3, 103, 65
HINT, BOOK = 189, 210  # in the menu Engine


def wait(seconds: float) -> None:
    time.sleep(seconds)


class Player:
    """Mouse and keyboard of the person in front of xboard."""

    def __init__(self, environment: dict[str, str]):
        self.environment = environment

    def tool(self, *arguments) -> None:
        subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True)

    def press(self, square: str) -> None:
        x = LEFT + SQUARE * (ord(square[0]) - ord("a")) + SQUARE // 2
        y = TOP + SQUARE * (8 - int(square[1])) + SQUARE // 2
        self.tool("mousemove", x, y, "sleep", 0.1, "click", 1, "sleep", 0.1)

    def move(self, text: str, seconds: float = ANSWER_SECONDS) -> None:
        """Clicks on the two squares, and waits for the answer."""
        self.press(text[:2])
        self.press(text[2:])
        wait(seconds)

    def key(self, name: str, seconds: float = 0.7) -> None:
        """A key of the main window, without a window manager to give it the focus."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "xboard"], env=self.environment,
                               capture_output=True, text=True, check=True).stdout.split()
        self.tool("windowfocus", found[0], "sleep", 0.2, "key", name)
        wait(seconds)

    def engine_menu(self, y: int) -> None:
        """An entry of the menu Engine, for those that have no key."""
        self.tool("mousemove", 268, 14, "click", 1, "sleep", 0.7, "mousemove", 280, y, "click", 1)
        wait(0.7)

    def copy_and_paste(self) -> None:
        """Copy Position and Paste Position."""
        self.key("ctrl+shift+c")
        self.key("ctrl+shift+v")

    def quit(self) -> None:
        self.key("ctrl+q", 2.5)


# --- scenarios --------------------------------------------------------------------------------------------


def start_up(player: Player) -> None:
    """xboard is started and closed again."""
    player.quit()


def new_game(player: Player) -> None:
    """Two moves, then New Game and a move with the other pawn."""
    player.move("e2e4")
    player.move("g1f3")
    player.key("ctrl+n")
    player.move("d2d4")
    player.quit()


def retract(player: Player) -> None:
    """Retract Move, then another move: the engine never hears of the first in words that it knows."""
    player.move("e2e4")
    player.key("ctrl+x")
    player.move("d2d4")
    player.quit()


def retract_and_paste(player: Player) -> None:
    """Retract Move, then Copy Position and Paste Position: the board is set anew and the game goes on."""
    player.move("e2e4")
    player.key("ctrl+x")
    player.copy_and_paste()
    player.move("d2d4")
    player.key("ctrl+b")
    wait(ANSWER_SECONDS)
    player.quit()


def step_back_and_move(player: Player) -> None:
    """Edit Game, one step backward, and another move there."""
    player.move("e2e4")
    player.key("ctrl+e")
    player.key("alt+Left")
    player.move("c7c5")
    player.quit()


def step_back_and_paste(player: Player) -> None:
    """The same with Copy Position and Paste Position in between; the engine then goes on with White."""
    player.move("e2e4")
    player.key("ctrl+e")
    player.key("alt+Left")
    player.copy_and_paste()
    player.move("c7c5")
    player.key("ctrl+w", ANSWER_SECONDS)
    player.quit()


def two_machines(player: Player) -> None:
    """Two Machines on, off while the engine thinks, and on again: its move comes late and is undone."""
    player.key("ctrl+t", 1)
    player.key("ctrl+e", SLOW_SECONDS)
    player.key("ctrl+t", SLOW_SECONDS + 1)
    player.quit()


def two_machines_and_paste(player: Player) -> None:
    """The same with Copy Position and Paste Position in between."""
    player.key("ctrl+t", 1)
    player.key("ctrl+e", SLOW_SECONDS)
    player.copy_and_paste()
    player.key("ctrl+t", SLOW_SECONDS + 1)
    player.key("ctrl+e", SLOW_SECONDS)
    player.quit()


def move_now(player: Player) -> None:
    """Move Now while the engine thinks."""
    player.move("e2e4", 1)
    player.key("ctrl+m", SLOW_SECONDS)
    player.quit()


def hint_and_analysis(player: Player) -> None:
    """Hint and Book, then Analysis Mode, left again by Edit Game."""
    player.move("e2e4")
    player.engine_menu(HINT)
    player.engine_menu(BOOK)
    player.key("ctrl+a", 1.5)
    player.key("ctrl+e")
    player.quit()


def position(player: Player) -> None:
    """Edit Position: two pieces are moved, then the engine has White."""
    player.key("ctrl+shift+e")
    player.move("d1d3", 0.3)
    player.move("e7e5", 0.3)
    player.key("ctrl+w", 2)
    player.move("g8f6")
    player.quit()


def quit_thinking(player: Player) -> None:
    """xboard is closed while the engine thinks, and kills it a second later."""
    player.move("e2e4", 0.7)
    player.key("ctrl+q", 4)


SCENARIOS = {
    "start_up": (start_up, QUICK_MS, []),
    "new_game": (new_game, QUICK_MS, []),
    "retract": (retract, QUICK_MS, []),
    "retract_and_paste": (retract_and_paste, QUICK_MS, []),
    "step_back_and_move": (step_back_and_move, QUICK_MS, []),
    "step_back_and_paste": (step_back_and_paste, QUICK_MS, []),
    "two_machines": (two_machines, SLOW_MS, ["-scp"]),
    "two_machines_and_paste": (two_machines_and_paste, SLOW_MS, ["-scp"]),
    "move_now": (move_now, SLOW_MS, []),
    "hint_and_analysis": (hint_and_analysis, QUICK_MS, []),
    "position": (position, QUICK_MS, []),
    "quit_thinking": (quit_thinking, SLOW_MS, []),
}


# --- one recording ----------------------------------------------------------------------------------------


def engine_folder(root: pathlib.Path) -> EngineFolder:
    root.mkdir()
    return EngineFolder(RELEASE / "bin" / "tarvyle", RELEASE / "tests" / "fixed_time.so", root)


def engine_command(folder: EngineFolder, pause_ms: int) -> str:
    """A script that becomes the engine, so that xboard's signals reach it; `tee` keeps both streams."""
    settings = folder.environment(STEP_MS)
    script = folder.file("start")
    script.write_text(f"""#!/bin/bash
exec < <(exec tee {folder.file("sent")}) > >(exec tee -p {folder.file("heard")}) 2>&1
export PATH={settings["PATH"]} FIXED_TIME_STEP_MS={STEP_MS} FIXED_TIME_PAUSE_MS={pause_ms}
export LD_PRELOAD={settings["LD_PRELOAD"]}
cd {folder.path} && exec -a ./tarvyle {folder.engine}
""")
    script.chmod(0o755)
    return str(script)


def start_display() -> tuple[subprocess.Popen, str]:
    reader, writer = os.pipe()
    display = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1024x768x24"],
                               pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as number:
        return display, ":" + number.readline().strip()


def interleave(log: str, sent: list[str], heard: list[str]) -> list[str]:
    """The lines of both directions in the order of xboard's log, which runs some of what it sent together with
    remarks of its own."""
    lines = []
    sending = False
    for line in log.splitlines():
        direction, text = re.fullmatch(r"(?:\d+ ([<>])first : )?(.*)", line).groups()
        if direction == "<":
            if text != heard.pop(0):
                raise ValueError(f"not on the pipe: {line}")
            lines.append("< " + text)
            sending = False
        elif (direction == ">" or sending) and sent and text == sent[0]:
            lines.append("> " + sent.pop(0))
            sending = True
        elif direction == ">":
            raise ValueError(f"not on the pipe: {line}")
    if sent:
        raise ValueError(f"not in the log of xboard: {sent}")
    return lines + ["< " + text for text in heard]


def record(name: str, root: pathlib.Path) -> list[str]:
    play, pause_ms, options = SCENARIOS[name]
    first = engine_folder(root / "first")
    command = ["xboard", "-saveSettingsOnExit", "false", "-size", "medium", "-autoFlipView", "false", "-xpopup",
               "-delayAfterQuit", "0", "-st", "0:08", "-ponderNextMove", "false",
               "-fcp", engine_command(first, pause_ms)]
    for option in options:
        command += [option, engine_command(engine_folder(root / "second"), QUICK_MS)]
    command += ["-debug", "-nameOfDebugFile", str(root / "log")]

    display, number = start_display()
    environment = os.environ | {"DISPLAY": number, "HOME": str(root), "LC_ALL": "C",
                                "PATH": os.environ["PATH"] + ":/usr/games"}
    try:
        with (root / "said").open("wb") as said:
            xboard = subprocess.Popen(command, cwd=root, env=environment, stdout=said, stderr=said)
        try:
            wait(START_SECONDS)
            play(Player(environment))
        finally:
            xboard.kill()
            xboard.wait()
    finally:
        display.terminate()
        display.wait()
    sent, heard = (first.file(name).read_text("latin-1").splitlines() for name in ("sent", "heard"))
    return interleave((root / "log").read_text("latin-1"), sent, heard)


def main() -> None:
    settings = pathlib.Path(pwd.getpwuid(os.getuid()).pw_dir) / ".xboardrc"
    if settings.exists():
        sys.exit(f"xboard reads its settings from {settings}, whatever HOME says: move that away first")
    STREAMS.mkdir(exist_ok=True)
    for name in sys.argv[1:] or SCENARIOS:
        with tempfile.TemporaryDirectory() as root:
            lines = record(name, pathlib.Path(root))
        head = [f"# {SCENARIOS[name][0].__doc__}", f"# step {STEP_MS} ms"]
        (STREAMS / f"{name}.txt").write_text("\n".join([*head, *lines]) + "\n", "latin-1")
        print(f"{name}: {len(lines)} lines")


if __name__ == "__main__":
    main()
