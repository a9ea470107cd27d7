"""The search visits the nodes that it has always visited, and the documents quote the same number."""

import re

import pytest
from conftest import PROJECT, sanitized
from signatures import default_nodes, rows

DEPTH = 6


@pytest.mark.parametrize("style, nodes", rows(DEPTH)[-1:] if sanitized() else rows(DEPTH))
def test_bench_visits_its_nodes(says, style, nodes):
    assert f"\nnodes {nodes}\n" in says("bench", "--depth", DEPTH, "--style", style)


@pytest.mark.parametrize("document", ["CONTRIBUTING.md", "docs/SCALING.md"])
def test_documents_quote_the_signature(document):
    quoted = re.findall(r"\b\d{8}\b", (PROJECT / document).read_text())
    assert quoted and set(quoted) == {str(default_nodes())}
