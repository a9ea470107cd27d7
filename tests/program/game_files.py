"""Saved games for tests: played by the engine, with moves typed for one side or both; and the layout of their files."""

import pathlib
import struct

from engine_folder import EngineFolder

SIZE = 19192  # of the file, in bytes
GAME_LEN, GAME_MAX = 1180, 1184  # where the number of moves stands, and that with those taken back
MOVES, SCORES = 1192, 17192  # where the moves and their scores stand, a word of four bytes each
TYPED = 1000001  # the score of a move that was typed

# Games to type: moves of both sides, or a position and moves.
SCHOLAR = ["e2e4", "e7e5", "d1h5", "b8c6", "f1c4", "g8f6", "h5f7"]
CASTLING = ("e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5c6 d7c6 e1g1 c8g4 h2h3 d8f6 d2d3 e8c8 b1d2 g4h5 f1e1 g7g5 d2f1 g5g4 "
            "h3g4 h5g4").split()
PROMOTION = ["setboard 1n5k/P1P5/8/8/8/8/6p1/K4N1N w - -", "a7b8n", "g2f1q", "a1b2", "f1f4", "c7c8b"]


def typed_game(folder: EngineFolder, *lines: str) -> pathlib.Path:
    """A game all of whose moves were typed."""
    run = folder.run("force", *lines, "save game.dat")
    assert run.complaints == "" and "unknow" not in run.stdout, run
    return folder.file("game.dat")


def played_game(folder: EngineFolder, moves: int) -> pathlib.Path:
    """A game that the engine played against itself."""
    run = folder.run(*["go"] * moves, "save game.dat", step_ms=1000)
    assert run.complaints == "", run
    return folder.file("game.dat")


def with_scores(path: pathlib.Path, scores: dict[int, int]) -> None:
    """Writes these scores beside the moves of a saved game, by the number of the move from 0."""
    image = bytearray(path.read_bytes())
    for number, score in scores.items():
        struct.pack_into("<i", image, SCORES + 4 * number, score)
    path.write_bytes(image)
