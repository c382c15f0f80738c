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
#: Those that are built have a stub.
MODULES = SOURCES.keys() | {module_of(path) for path in PACKAGE.rglob("*.pyi")}


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
            found |= names & MODULES or {source}
    return found & MODULES - {module}


def test_modules_import_in_no_circle() -> None:
    assert {"tabulon", "tabulon.api._run", "tabulon.api._variables"} <= SOURCES.keys()
    TopologicalSorter({module: imported_by(module) for module in SOURCES}).prepare()


def importers_of(*modules: str) -> set[str]:
    return {source for source in SOURCES if imported_by(source) & set(modules)}


def test_one_module_knows_the_native_readers() -> None:
    assert importers_of("tabulon._tables") == {"tabulon._native"}


def test_exporters_know_none_of_the_nouns() -> None:
    nouns = importers_of("tabulon._group", "tabulon._run")
    knowing = {name for name in nouns if name.startswith(("tabulon._export", "tabulon._html"))}
    assert knowing <= {"tabulon._export.campaign"}  # which puts runs beside each other


def test_both_roads_meet_where_groups_are_written() -> None:
    outside = {name for name in importers_of("tabulon.api") if not name.startswith("tabulon.api")}
    assert outside == {"tabulon", "tabulon._write"}
