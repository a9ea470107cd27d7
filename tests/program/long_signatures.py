"""What test_signature.py compares, at the depth of a bench that is asked for nothing."""

import pytest
from signatures import DEFAULT_DEPTH, default_nodes, rows


def test_bench_without_options(says):
    assert f"\nnodes {default_nodes()}\n" in says("bench")


@pytest.mark.parametrize("style, nodes", rows(DEFAULT_DEPTH))
def test_bench_visits_its_nodes(says, style, nodes):
    assert f"\nnodes {nodes}\n" in says("bench", "--depth", DEFAULT_DEPTH, "--style", style)
