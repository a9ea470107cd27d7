"""Scripts and styles of web pages under a linter, which npm fetches."""

import pathlib
import shutil
import subprocess

import pytest
from conftest import PROJECT, require, skip_or_fail
from source_files import files

LINT = PROJECT / "tests" / "lint"


@pytest.fixture(scope="module")
def linter(tmp_path_factory) -> pathlib.Path:
    require("node", "npm")
    folder = tmp_path_factory.mktemp("lint")
    for name in ("package.json", "package-lock.json", "biome.json"):
        shutil.copy(LINT / name, folder)
    # Not `npm ci`, which wants the linter's programs for all other systems in the lock file.
    done = subprocess.run(["npm", "install", "--ignore-scripts", "--no-audit", "--no-fund"], cwd=folder,
                          capture_output=True, text=True, check=False)
    if done.returncode != 0:
        skip_or_fail("npm could not fetch the linter")
    return folder


def test_scripts_and_styles_have_no_faults(linter):
    paths = [path for path in files() if path.suffix in (".js", ".mjs", ".css")]
    assert {".js", ".css"} <= {path.suffix for path in paths}
    done = subprocess.run([linter / "node_modules" / ".bin" / "biome", "lint", "--error-on-warnings",
                           f"--config-path={linter}", *paths], cwd=PROJECT, capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stdout + done.stderr
    assert f"Checked {len(paths)} files" in done.stdout + done.stderr
