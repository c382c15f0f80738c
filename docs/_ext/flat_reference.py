"""Makes the page of the flat module from its type stub: the one list of its functions."""

from __future__ import annotations

import ast
from collections import defaultdict
from pathlib import Path
from typing import TYPE_CHECKING

from pages import write_page

if TYPE_CHECKING:
    from sphinx.application import Sphinx

STUBS = (
    "python/_TabulonAPI_Python-stubs/__init__.pyi",
    "python/_TabulonAPI_Python.pyi",
)
FAMILIES = (
    "TabulonApi", "RunsIterator", "Run", "Group", "IndependentVariable", "Variable1D",
    "Variable2D", "Variable", "OutputGroup1D", "OutputGroup2D", "OutputGroup", "ArrayOf",
)  # fmt: skip


def family_of(name: str) -> str:
    """Return the family that a function belongs to."""
    bare = name.removeprefix("new_").removeprefix("delete_")
    return next((family for family in FAMILIES if bare.startswith(family)), "Others")


def signatures(stub: Path) -> dict[str, list[str]]:
    """Return the functions of the stub by family, as they are called."""
    found: dict[str, list[str]] = defaultdict(list)
    for node in ast.parse(stub.read_text()).body:
        if isinstance(node, ast.FunctionDef):
            returned = f" -> {ast.unparse(node.returns)}" if node.returns else ""
            found[family_of(node.name)].append(f"{node.name}({ast.unparse(node.args)}){returned}")
    return found


def page(source: Path) -> str:
    """Return the text of the page."""
    stub = next(path for name in STUBS if (path := source.parent / name).exists())
    lines = ["# Functions of the flat module\n"]
    for family, calls in sorted(signatures(stub).items()):
        lines += [f"## `{family}`\n", "```python", *calls, "```\n"]
    return "\n".join(lines)


def write(app: Sphinx) -> None:
    """Write the page where it has changed."""
    write_page(Path(app.srcdir), "flat", page(Path(app.srcdir)))


def setup(app: Sphinx) -> dict[str, bool]:
    """Have the page written before it is read."""
    app.connect("builder-inited", write)
    return {"parallel_read_safe": True}
