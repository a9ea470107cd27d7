"""The balance of the shipped book: the last position of every line, searched to depth 8."""

import re

from conftest import PROJECT


def test_every_line_ends_in_balance_or_in_a_named_gambit(says):
    answer = says("book", "check", "--depth", 8, PROJECT / "data" / "tarvyle.bk")
    assert re.search(r"^depth 8: 0 unbalanced by more than 1.20, ", answer, re.MULTILINE)
    document = (PROJECT / "docs" / "BOOK.md").read_text()
    gambits = re.findall(r"^gambit: .*: (\S+) after (.*)$", answer, re.MULTILINE)
    assert gambits and all(f"{score}  {moves}" in document for score, moves in gambits), "docs/BOOK.md lists them"
    assert len(gambits) == len(re.findall(r"^    [+-]\d\.\d\d  ", document, re.MULTILINE))
