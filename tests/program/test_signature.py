"""The search visits the nodes that it has always visited, and the documents quote the same number."""

import re

import pytest
from conftest import PROJECT, sanitized
from signatures import default_nodes, rows
from uci_engine import UciEngine

DEPTH = 6
NODES_IN_A_SMALL_TABLE = 2490011


@pytest.mark.parametrize("style, nodes", rows(DEPTH)[-1:] if sanitized() else rows(DEPTH))
def test_bench_visits_its_nodes(says, style, nodes):
    assert f"\nnodes {nodes}\n" in says("bench", "--depth", DEPTH, "--style", style)


@pytest.mark.skipif(sanitized(), reason="it takes minutes there")
def test_a_table_too_small_for_its_tree_leads_to_the_same_nodes(workbench):
    """There the entry of a probe is refused now and then, and its verification begins without a move to try."""
    with UciEngine([workbench, "uci"]) as engine:
        engine.ask("setoption name Hash value 1", "setoption name Style value knowledge2",
                   "setoption name Seed value 1")
        thought = engine.go("depth 8", "fen r1b2rk1/2q1b1pp/p2ppn2/1p6/3QP3/1BN1B3/PPP3PP/R4RK1 w - -")
    assert thought.nodes == NODES_IN_A_SMALL_TABLE


@pytest.mark.parametrize("document", ["CONTRIBUTING.md", "docs/SCALING.md"])
def test_documents_quote_the_signature(document):
    quoted = re.findall(r"\b\d{8}\b", (PROJECT / document).read_text())
    assert quoted and set(quoted) == {str(default_nodes())}
