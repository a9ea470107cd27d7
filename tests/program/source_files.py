"""The files of the tree, for tests that look at sources."""

import os
import pathlib

from conftest import PROJECT

FOLDERS_OF_OTHERS = {".git", "build", "node_modules"}


def files() -> list[pathlib.Path]:
    """Every file of the tree but what was built or fetched, as seen from its root."""
    found = []
    for folder, folders, names in os.walk(PROJECT):
        folders[:] = [name for name in folders if name not in FOLDERS_OF_OTHERS]
        found += [pathlib.Path(folder, name).relative_to(PROJECT) for name in names]
    return sorted(found)
