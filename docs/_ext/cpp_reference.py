"""Makes the pages of the C++ library from its public headers: what they declare, and what they say.

The headers are written for readers: a comment of `///` lines before a declaration, or before the
first of several that belong together. Nothing else is taken from them.
"""

from __future__ import annotations

import re
from collections.abc import Iterator
from dataclasses import dataclass, field
from pathlib import Path
from typing import TYPE_CHECKING

from pages import write_page

if TYPE_CHECKING:
    from sphinx.application import Sphinx

#: Page, its heading, and the headers that it is made of.
PAGES = {
    "cpp_api": (
        "Runs, groups and variables",
        "tabulon_api run group variable variable1d variable2d independent_variable "
        "runs_iterator runs_iterator_regex cache_settings search_settings "
        "output_group output_group1d output_group2d output_specification types",
        "api",
    ),
    "cpp_tables": (
        "Tables",
        "group_table selection reduction stored_figures run_list natural_order table_error",
        "tables",
    ),
    "cpp_core": ("Exceptions and enumerations", "core/exceptions vocabulary/enumerations", ""),
}
SCOPE = re.compile(r"^\s*(?:template <[^>]*>\s*)?(class|struct|enum class) (\w+)(?: final)?[^;]*\{")
SECTION = re.compile(r"^\s*(public|protected|private):")


@dataclass
class Entry:
    """Declarations that one comment is about."""

    comment: list[str]
    declarations: list[str] = field(default_factory=list)


@dataclass
class Scope:
    """A class, structure or enumeration with what it shows."""

    kind: str
    name: str
    comment: list[str]
    entries: list[Entry] = field(default_factory=list)
    shown: bool = True


class Reader:
    """Goes through the lines of a header."""

    def __init__(self, text: str) -> None:
        self.scopes: list[Scope] = []
        self.free = Scope("", "Functions and aliases", [])
        self._stack: list[tuple[Scope | None, int]] = []
        self._depth = 0
        self._comment: list[str] = []
        self._pending = ""
        self._gap = False
        for line in text.splitlines():
            self._take(line)

    def _take(self, line: str) -> None:
        bare = line.strip()
        if bare.startswith("///") and not bare.startswith("///<"):
            self._comment.append(bare[3:].removeprefix(" "))
            return
        if not bare:
            if not self._pending:
                self._comment = []
            self._gap = True
            return
        if bare.startswith(("//", "#", "}  // namespace")):
            return
        self._code(line, bare)

    def _code(self, line: str, bare: str) -> None:
        section = SECTION.match(line)
        if section and self._stack and self._stack[-1][0]:
            self._stack[-1][0].shown = section[1] == "public"  # type: ignore[union-attr]
            return
        before = self._depth
        joined = f"{self._pending} {bare}".strip()
        opened = SCOPE.match(joined)
        self._depth += bare.count("{") - bare.count("}")
        if opened and self._depth > before:
            self._open(opened, joined)
        elif bare.startswith("namespace"):
            self._depth = before
        elif self._depth < before and self._stack and self._depth < self._stack[-1][1]:
            self._close(bare)
        elif self._inside(before):
            self._declare(joined, before)

    def _inside(self, depth: int) -> bool:
        return depth == (self._stack[-1][1] if self._stack else 0)

    def _open(self, opened: re.Match[str], joined: str) -> None:
        kind, name = ("class" if opened[1] == "class" else opened[1]), opened[2]
        hidden = bool(self._stack) and not all(s is None or s.shown for s, _ in self._stack)
        scope = Scope(kind, name, self._comment, shown=kind != "class")
        if not hidden:
            self.scopes.append(scope)
        self._stack.append((scope, self._depth))
        self._comment, self._pending = [], ""

    def _close(self, bare: str) -> None:
        scope, _ = self._stack.pop()
        if scope and scope.kind == "enum class" and self._pending:
            self._keep(self._pending, scope)
        self._comment, self._pending = [], ""

    def _declare(self, joined: str, before: int) -> None:
        scope = self._stack[-1][0] if self._stack else self.free
        end = "," if scope and scope.kind == "enum class" else ";"
        text = joined.split("///<")[0].strip()
        if not (text.endswith((end, "}", ";")) and text.count("(") == text.count(")")):
            self._pending = joined
            return
        if scope is not None:
            self._keep(joined, scope)
        self._comment, self._pending = [], ""

    def _keep(self, joined: str, scope: Scope) -> None:
        declaration, _, remark = (part.strip() for part in joined.partition("///<"))
        is_alias = scope is self.free and declaration.startswith("using ") and "=" in declaration
        ignored = ("friend ", "class ", "struct ", "template class", "extern template")
        if not scope.shown or declaration.startswith(ignored) or "= delete" in declaration:
            return
        if declaration.startswith("using ") and not is_alias:
            return
        if re.match(r"template <[^>]*> (class|struct) \w+;", declaration):
            return
        if not declaration.startswith("enum class"):
            declaration = re.sub(r"\s*\{.*\}$", ";", declaration)
        if self._comment or self._gap or not scope.entries:
            scope.entries.append(Entry(self._comment))
        self._gap = False
        scope.entries[-1].declarations.append(
            f"{declaration}  // {remark}" if remark else declaration
        )


def prose(comment: list[str]) -> str:
    """Return a comment as text: parameters and errors stand on lines of their own."""
    text = "\n".join(comment)
    text = re.sub(r"\s*\\throws ", "\n\n**Throws** ", text)
    text = re.sub(r"\s*\\return ", "\n\n**Returns** ", text)
    text = re.sub(r"\s*\\param (\w+) ", r"\n\n**\1:** ", text)
    lines = (line if line.startswith("    ") else _quoted(line) for line in text.splitlines())
    return "\n".join(lines)


def _quoted(line: str) -> str:
    """Return a line with its types as code: `Series<float>` is no tag."""
    return re.sub(r"(?<!`)\b(\w+<\w+(?:, \w+)*>)(?!`)", r"`\1`", line)


def page(heading: str, headers: list[tuple[str, Path]]) -> Iterator[str]:
    """Give the lines of a page."""
    yield f"# {heading}\n"
    for name, path in headers:
        reader = Reader(path.read_text())
        scopes = [scope for scope in [*reader.scopes, reader.free] if scope.entries]
        if not scopes:
            continue
        yield f"## `{name}.h`\n"
        for scope in scopes:
            title = f"{scope.kind} {scope.name}".strip()
            yield f"### {title}\n"
            yield prose(scope.comment) + "\n"
            for entry in scope.entries:
                yield "```cpp\n" + "\n".join(entry.declarations) + "\n```\n"
                yield prose(entry.comment) + "\n"


def write_pages(app: Sphinx) -> None:
    """Write the pages where they have changed."""
    source = Path(app.srcdir)
    for name, (heading, headers, folder) in PAGES.items():
        found = [
            (stem, path)
            for stem in (f"{folder}/{h}" if folder else h for h in headers.split())
            if (path := source.parent / f"{stem}.h").exists()
        ]
        write_page(source, name, "\n".join(page(heading, found)))


def setup(app: Sphinx) -> dict[str, bool]:
    """Have the pages written before they are read."""
    app.connect("builder-inited", write_pages)
    return {"parallel_read_safe": True}
