"""A terminal for what a program shows only to a person."""

import os


class Terminal:
    def __init__(self):
        self._outside, self.inside = os.openpty()

    def __enter__(self) -> "Terminal":
        return self

    def __exit__(self, *_) -> None:
        os.close(self._outside)

    def shown(self) -> str:
        """Everything that was written to it; nothing more can be."""
        os.close(self.inside)
        shown = b""
        while True:
            try:
                shown += os.read(self._outside, 1000)
            except OSError:
                return shown.decode()
