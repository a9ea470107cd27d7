"""A git repository of a few files, for tests of the scripts that look at the project's history."""

import os
import pathlib
import shutil
import subprocess

from conftest import PROJECT

NOBODY = {f"GIT_{role}_{what}": value for role in ("AUTHOR", "COMMITTER")
          for what, value in (("NAME", "nobody"), ("EMAIL", "nobody@example.org"))}


class Repository:
    """The repository below a folder; no setting of the user's or the machine's has a say in it."""

    def __init__(self, root: pathlib.Path):
        self.root = root
        self.environment = {key: value for key, value in os.environ.items() if not key.startswith("GIT_")}
        self.environment |= NOBODY | {"GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_SYSTEM": "/dev/null",
                                      "GIT_CEILING_DIRECTORIES": str(root.parent), "LC_ALL": "C"}
        root.mkdir(parents=True, exist_ok=True)

    def git(self, *words: str) -> str:
        done = subprocess.run(["git", *words], cwd=self.root, env=self.environment, text=True, capture_output=True,
                              check=False)
        assert done.returncode == 0, done.stderr
        return done.stdout.strip()

    def write(self, name: str, text: str) -> None:
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def take_over(self, *names: str) -> None:
        """Brings files of the project into the working tree."""
        for name in names:
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / name, self.root / name)

    def commit(self, message: str) -> str:
        """Commits all that has changed. Its short name."""
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "-m", message)
        return self.git("rev-parse", "--short", "HEAD")

    def run(self, script: str, *arguments: str) -> subprocess.CompletedProcess:
        return subprocess.run([self.root / script, *arguments], env=self.environment, text=True, capture_output=True,
                              check=False)
