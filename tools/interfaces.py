#!/usr/bin/env python3
"""Makes docs/INTERFACES.md from the comments in the engine's headers.

    python3 tools/interfaces.py           writes the document
    python3 tools/interfaces.py --check   writes nothing; fails when the document is stale, when a
                                          declaration that needs a comment has none, or when a
                                          name of tests/data/interface_names.txt is declared in no
                                          header of its folder

The comment of a declaration stands behind it or above it; above, it holds up to the next blank line
or comment. Constants, aliases, enumerations and functions defined in the header may go without one
(their definition says it all) and are then left out of the document. A name for a field of a record,
`inline constexpr auto& field = record.field;`, has the comment of the field.
"""

import re
import sys
from pathlib import Path
from typing import Iterator, NamedTuple

ROOT = Path(__file__).resolve().parent.parent
FOLDERS = ("base", "position", "eval", "book", "pv", "search", "frontend", "host", "polyglot", "uci")
DOCUMENT = ROOT / "docs" / "INTERFACES.md"
NAMES = ROOT / "tests" / "data" / "interface_names.txt"
HEAD = """# Interfaces

What each folder offers to the others, by the comments in its headers. Made by
`python3 tools/interfaces.py`; change the comments, not this file.
"""


class Declaration(NamedTuple):
    folder: str
    header: str
    name: str
    comment: str
    needs_comment: bool


def name_of(code: str) -> str | None:
    """Name that a declaration at namespace level introduces; None when it introduces none."""
    if re.match(r"static_assert\b|(struct|class)\s+\w+\s*;|namespace\b|}", code):
        return None
    if match := re.match(r"(?:struct|class|enum(?: class| struct)?|using)\s+(\w+)", code):
        return match[1]
    code = re.sub(r"^\[\[[^\]]+\]\]\s*", "", code)
    code = re.sub(r"^template\s*<[^>]*>\s*|\b(?:alignas|__attribute__)\s*\([^)]*\)+", "", code)
    # A pointer to functions, a name in brackets, a function, a variable.
    for pattern in (r"^[^=(]*\(\*\s*(\w+)\)\s*\(", r"^void\s*\((\w+)\)\s*\(", r"^[^=\[({]*?(\w+)\s*\(",
                    r"^[^=\[{]*?(\w+)\s*[=\[{;]"):
        if match := re.search(pattern, code):
            return match[1]
    raise ValueError(f"cannot read this declaration: {code}")


def is_complete(code: str) -> bool:
    """Whether the lines read so far end a declaration."""
    if any(code.count(opening) != code.count(closing) for opening, closing in ("{}", "()", "[]")):
        return False
    is_function_body = re.match(r"[^{=]*\)[\w\s]*{", code) and code.endswith("}")
    return code.endswith(";") or bool(is_function_body)


def needs_comment(code: str) -> bool:
    """Records, and whatever is defined elsewhere, cannot speak for themselves."""
    if re.match(r"struct|class", code):
        return True
    return not re.match(r"using|enum|(template\s*<[^>]*>\s*)?(inline|constexpr)\b", code)


def field_comments(text: str) -> dict[str, str]:
    """The comments of the fields of all records, by the names of the fields."""
    found = {}
    above: list[str] = []
    for line in text.splitlines():
        code, _, comment = (part.strip() for part in line.partition("//"))
        if not code:
            above = [*above, comment] if comment else []
        elif match := re.match(r"\s+[\w:<>]+ (\w+)[\[ ;]", line):
            found[match[1]] = comment or " ".join(above)
            above = []
        else:
            above = []
    return found


def declarations(path: Path) -> Iterator[Declaration]:
    """The declarations of one header, in its order."""
    text = re.sub(r".*?^namespace tarvyle(?:::\w+)? {$", "", path.read_text(encoding="utf-8"), count=1,
                  flags=re.DOTALL | re.MULTILINE)
    fields = field_comments(text)
    above: list[str] = []
    above_is_open = False  # the line before was part of the comment
    code = ""
    for line in text.splitlines():
        line, _, behind = (part.strip() for part in line.partition("//"))
        if not code and not line:
            if not behind:
                above = []
            elif above_is_open:
                above.append(behind)
            else:
                above = [behind]
            above_is_open = bool(behind)
            continue
        above_is_open = False
        if line.startswith("#") or (not code and line.startswith("}")):
            continue
        code = f"{code} {line}".strip()
        if not is_complete(code):
            continue
        if name := name_of(code):
            own = "" if "{" in code or behind.startswith("NOLINT") else behind
            if re.match(rf"inline constexpr auto& {name} =", code):
                own = fields[name]
            yield Declaration(path.parent.name, path.name, name, own or " ".join(above),
                              needs_comment(code))
        code = ""
    if code:
        raise ValueError(f"{path.parent.name}/{path.name}: no end of this declaration: {code}")


def document(found: list[Declaration]) -> str:
    """The text of docs/INTERFACES.md."""
    lines = [HEAD]
    for folder in FOLDERS:
        lines += [f"## {folder}/", "", "| Name | Header | What it does |", "| --- | --- | --- |"]
        for item in found:
            if item.folder == folder and item.comment:
                comment = item.comment.replace("\\", "\\\\").replace("|", "\\|")
                lines.append(f"| `{item.name}` | {item.header} | {comment} |")
        lines.append("")
    return "\n".join(lines)


def complaints(found: list[Declaration]) -> Iterator[str]:
    """Everything that --check finds wrong, one line each."""
    for item in found:
        if item.needs_comment and not item.comment:
            yield f"{item.folder}/{item.header}: {item.name} has no comment"
    declared = {(item.folder, item.name) for item in found}
    for line in NAMES.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            folder, name = line.split()
            if (folder, name) not in declared:
                yield f"{name} is declared in no header of {folder}/, but other code relies upon it"
    if not DOCUMENT.exists() or DOCUMENT.read_text(encoding="utf-8") != document(found):
        yield "docs/INTERFACES.md is stale: run python3 tools/interfaces.py"


def main(arguments: list[str]) -> int:
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    found = [item for folder in FOLDERS for path in sorted((ROOT / folder).glob("*.h"))
             for item in declarations(path)]
    if not arguments:
        DOCUMENT.write_text(document(found), encoding="utf-8")
        return 0
    wrong = list(complaints(found))
    for line in wrong:
        print(line, file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
