"""Modules of the package import one way: no circle, not even for types or within a function."""

from __future__ import annotations

import ast
from graphlib import TopologicalSorter
from importlib.util import resolve_name
from pathlib import Path

from tabulon import api

PACKAGE = Path(api.__file__).resolve().parents[1]


def module_of(path: Path) -> str:
    parts = path.relative_to(PACKAGE.parent).with_suffix("").parts
    return ".".join(parts[:-1] if parts[-1] == "__init__" else parts)


SOURCES = {module_of(path): path for path in PACKAGE.rglob("*.py")}


def imported_by(module: str) -> set[str]:
    """Return the modules of the package that a module imports anywhere in its text."""
    path = SOURCES[module]
    package = module if path.name == "__init__.py" else module.rpartition(".")[0]
    found = set()
    for node in ast.walk(ast.parse(path.read_text(encoding="utf-8"))):
        if isinstance(node, ast.Import):
            found |= {alias.name for alias in node.names}
        elif isinstance(node, ast.ImportFrom):
            source = resolve_name("." * node.level + (node.module or ""), package)
            # a name of a package is a module of it, or what the package itself has
            names = {f"{source}.{alias.name}" for alias in node.names}
            found |= names & SOURCES.keys() or {source}
    return found & SOURCES.keys() - {module}


def test_modules_import_in_no_circle() -> None:
    assert {"tabulon", "tabulon.api._run", "tabulon.api._variables"} <= SOURCES.keys()
    TopologicalSorter({module: imported_by(module) for module in SOURCES}).prepare()
