"""How runs, groups and variables are shown: as a table of text, and as HTML in a notebook."""

from __future__ import annotations

from collections.abc import Sequence
from functools import lru_cache
from html import escape
from itertools import zip_longest
from pathlib import Path

from tabulon._shapes import Description, Section

__all__ = ["html_of", "text_of"]

# What a page or a screen bears; the rest is counted.
_LINES = 120
_SECTIONS = 60
_LONGEST = 200


def text_of(shown: Description) -> str:
    """Return a table of text."""
    width = max((len(name) for name, _ in shown.facts), default=0)
    lines = [f"{shown.kind} {_short(shown.title)}"]
    lines += [f"  {name:<{width}}  {_short(value)}".rstrip() for name, value in shown.facts]
    for section in shown.sections[:_SECTIONS]:
        note = f"  ({section.note})" if section.note else ""
        lines += ["", f"  {_short(section.title)}{note}"]
        lines += _columns(section.lines[:_LINES])
        lines += _more(len(section.lines), _LINES, "    ")
    lines += _more(len(shown.sections), _SECTIONS, "  ")
    return "\n".join(lines)


def html_of(shown: Description) -> str:
    """Return HTML for a notebook: escaped, with a style of its own, sections that fold."""
    facts = "".join(
        f"<tr><th>{_safe(name)}</th><td>{_safe(value)}</td></tr>" for name, value in shown.facts
    )
    left = _LINES
    sections = []
    for section in shown.sections[:_SECTIONS]:
        sections.append(_section(section, left))
        left = max(left - len(section.lines), 0)
    more = "".join(f"<p>{line}</p>" for line in _more(len(shown.sections), _SECTIONS, ""))
    return (
        f"<div class='tabulon'><style>{_style()}</style>"
        f"<p><span>{_safe(shown.kind)}</span> <b>{_safe(shown.title)}</b></p>"
        f"<table class='facts'>{facts}</table>{''.join(sections)}{more}</div>"
    )


def _section(section: Section, room: int) -> str:
    heads = "".join(f"<th>{_safe(head)}</th>" for head in section.heads)
    rows = "".join(
        f"<tr>{''.join(f'<td>{_safe(cell)}</td>' for cell in line)}</tr>"
        for line in section.lines[:room]
    )
    more = "".join(f"<p>{line}</p>" for line in _more(len(section.lines), room, ""))
    note = f"<span>{_safe(section.note)}</span>" if section.note else ""
    return (
        f"<details{' open' if section.opened else ''}>"
        f"<summary>{_safe(section.title)} {note}</summary>"
        f"<table><tr>{heads}</tr>{rows}</table>{more}</details>"
    )


def _columns(lines: Sequence[tuple[str, ...]]) -> list[str]:
    cells = [[_short(cell) for cell in line] for line in lines]
    widths = [max(map(len, column)) for column in zip_longest(*cells, fillvalue="")]
    return [
        "    " + "  ".join(f"{c:<{w}}" for c, w in zip(line, widths, strict=False)).rstrip()
        for line in cells
    ]


def _more(count: int, shown: int, indent: str) -> list[str]:
    return [f"{indent}and {count - shown:,} more"] if count > shown else []


def _safe(text: str) -> str:
    return escape(_short(text))


def _short(text: str) -> str:
    """Return text that fits a line and can be printed."""
    plain = "".join(c if c.isprintable() else "\N{REPLACEMENT CHARACTER}" for c in text[:_LONGEST])
    return plain if len(text) <= _LONGEST else f"{plain}…"


@lru_cache(maxsize=1)
def _style() -> str:
    return Path(__file__).with_name("style.css").read_text(encoding="utf-8")
