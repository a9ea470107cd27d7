"""An engine process that is asked and answers, for tests that go on with one for long."""

import os
import pathlib
import re

from engine_folder import EngineFolder

QUESTION, ANSWER = "protover", "feature done=1"
ANSWERS_TO_XBOARD = 4  # lines, ANSWER among them


class Talk:
    def __init__(self, folder: EngineFolder, xboard: bool = True, **options):
        self.folder = folder
        with folder.file("complaints").open("wb") as complaints:
            self.process = folder.started(stderr=complaints, text=True, encoding="latin-1", **options)
        self._complaints = folder.file("complaints").open(encoding="latin-1")
        if xboard:
            self._send("xboard")
            for _ in range(ANSWERS_TO_XBOARD):
                self.process.stdout.readline()

    def __enter__(self):
        return self

    def __exit__(self, *_) -> None:
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()
        self._complaints.close()

    def _send(self, *lines: str) -> None:
        self.process.stdin.write("".join(f"{line}\n" for line in lines))
        self.process.stdin.flush()

    def ask(self, *lines: str) -> list[str]:
        """What is said to these lines on standard output; a question after them makes the end of it known."""
        self._send(*lines, QUESTION)
        said = []
        while (line := self.process.stdout.readline()) != f"{ANSWER}\n":
            assert line, f"the engine ended: {self.process.wait()}"
            said.append(line.rstrip("\n"))
        return said

    def complaints(self) -> str:
        """What came on standard error since the last call."""
        return self._complaints.read()

    def memory_kb(self) -> int:
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s+(\d+)", status)[1])

    def open_files(self) -> list[str]:
        numbers = pathlib.Path(f"/proc/{self.process.pid}/fd")
        return sorted(f"{number.name} {os.readlink(number)}" for number in numbers.iterdir())

    def leave(self) -> None:
        """Ends the process in its usual way, by the end of its input."""
        self.process.stdin.close()
        self.process.stdout.read()
        assert self.process.wait() == 0
