"""Writes pages that are made of sources."""

from __future__ import annotations

from pathlib import Path


def write_page(source: Path, name: str, text: str) -> None:
    """Write a generated page of the reference where it has changed."""
    target = source / "reference" / "generated" / f"{name}.md"
    target.parent.mkdir(parents=True, exist_ok=True)
    if not target.exists() or target.read_text(encoding="utf-8") != text:
        target.write_text(text, encoding="utf-8")
