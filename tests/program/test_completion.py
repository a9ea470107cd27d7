"""The completion of `tarv` on bash's command line, and the help texts that it asks for what it offers."""

import re
import subprocess

from conftest import PROJECT, engine_environment

COMPLETION = PROJECT / "packaging" / "completions" / "tarv"


def complete(workbench, folder, *words: str) -> list[str]:
    """What bash offers for the last of these words."""
    script = f"""
        source '{COMPLETION}'
        COMP_WORDS=("$@")
        COMP_CWORD=$(($# - 1))
        _tarv
        printf '%s\\n' "${{COMPREPLY[@]}}"
    """
    done = subprocess.run(["bash", "-c", script, "bash", str(workbench), *words], cwd=folder, text=True,
                          capture_output=True, env=engine_environment(), check=True)
    assert done.stderr == ""
    return sorted(done.stdout.split())


def commands_of(says, *words: str) -> list[str]:
    """The subcommands that a help text lists."""
    _, _, rows = says(*words, "--help").partition("\nSubcommands:\n")
    return sorted(re.findall(r"^  (\S+)", rows.split("\n\n")[0], re.MULTILINE))


def test_every_subcommand_has_help_with_an_example_and_is_completed(says, workbench, tmp_path):
    groups = {"learn", "book", "game"}
    assert complete(workbench, tmp_path, "") == commands_of(says)
    for command in commands_of(says):
        inner = commands_of(says, command)
        assert bool(inner) == (command in groups)
        if inner:
            assert complete(workbench, tmp_path, command, "") == inner
        for words in [[command, name] for name in inner] or [[command]]:
            text = says(*words, "--help")
            options = sorted(set(re.findall(r"(?<![\w-])--[a-z-]+", text.split("\nOptions:\n")[1].split("\n\n")[0])))
            assert set(complete(workbench, tmp_path, *words, "--")) <= set(options)
            assert "--help" in complete(workbench, tmp_path, *words, "--")
            if command in groups or command == "suite":
                assert f"Example:\n  tarv {' '.join(words)} " in text


def test_completion_of_values_and_files(workbench, tmp_path):
    for name in ("a.lrn", "b.epd", "c.dat", "d.bk", "e.pgn", "f.txt", "g.bin"):
        (tmp_path / name).touch()
    (tmp_path / "folder").mkdir()
    assert complete(workbench, tmp_path, "learn", "st") == ["stats"]
    assert complete(workbench, tmp_path, "learn", "stats", "") == ["a.lrn", "folder"]
    assert complete(workbench, tmp_path, "learn", "analyse", "") == ["b.epd", "folder"]
    assert complete(workbench, tmp_path, "learn", "add-book", "") == ["a.lrn", "d.bk", "folder"]
    assert complete(workbench, tmp_path, "book", "from-pgn", "") == ["e.pgn", "folder"]
    for command in ("to-polyglot", "from-polyglot"):
        assert complete(workbench, tmp_path, "book", command, "") == ["d.bk", "folder", "g.bin"]
    assert complete(workbench, tmp_path, "game", "show", "") == ["c.dat", "folder"]
    assert complete(workbench, tmp_path, "suite", "b") == ["b.epd"]
    assert complete(workbench, tmp_path, "learn", "export", "--format", "") == ["csv", "epd", "json"]
    assert complete(workbench, tmp_path, "bench", "--style", "knowledge") == ["knowledge1", "knowledge2", "knowledge3"]
    assert complete(workbench, tmp_path, "learn", "merge", "a.lrn", "--o") == ["--output"]
