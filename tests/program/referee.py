"""An independent referee: chess.js under Node.js, fetched by npm when it is first asked for."""

import json
import pathlib
import shutil
import subprocess

from conftest import PROJECT, require, skip_or_fail


class Referee:
    """To be used in a `with`; it works in this folder, which it makes."""

    def __init__(self, folder: pathlib.Path):
        folder.mkdir()
        for name in ("package.json", "package-lock.json", "referee.mjs"):
            shutil.copy(PROJECT / "tests" / "soak" / name, folder)
        require("node", "npm")
        done = subprocess.run(["npm", "ci", "--ignore-scripts", "--no-audit", "--no-fund"], cwd=folder,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            skip_or_fail("npm could not fetch the referee's rules")
        self.process = subprocess.Popen(["node", "referee.mjs"], cwd=folder, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def __enter__(self) -> "Referee":
        return self

    def __exit__(self, *_) -> None:
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()

    def ask(self, request: str) -> dict:
        self.process.stdin.write(request + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def play(self, move: str) -> dict:
        state = self.ask(f"move {move}")
        assert "refused" not in state, f"illegal move {move}"
        return state
