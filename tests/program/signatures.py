"""The signatures of the search: how many nodes `tarv bench` visits by style and depth."""

from conftest import DATA

DEFAULT_DEPTH = 8


def rows(depth: int) -> list[tuple[str, int]]:
    """Style and nodes of each row with this depth."""
    lines = (DATA / "signature.tsv").read_text().splitlines()
    split = [line.split("\t") for line in lines if not line.startswith("#")]
    return [(style, int(nodes)) for style, row_depth, nodes in split if int(row_depth) == depth]


def default_nodes() -> int:
    """What a bench without an option visits."""
    return dict(rows(DEFAULT_DEPTH))["knowledge3"]
