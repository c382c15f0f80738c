"""Checks the links within a site that was built: each leads to a file and a place that are there.

usage: python check_links.py DIRECTORY
"""

from __future__ import annotations

import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    """The places and the links of a page."""

    def __init__(self, path: Path) -> None:
        super().__init__()
        self.places: set[str] = {""}
        self.links: list[str] = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        """Take what a tag links to, and the place that it is."""
        for name, value in attrs:
            if name in ("id", "name") and value:
                self.places.add(value)
            elif name in ("href", "src") and value and tag != "form":
                self.links.append(value)


def broken(root: Path) -> list[str]:
    """Return what is wrong with the links of a site."""
    found = (path for path in root.rglob("*.html") if "_static" not in path.parts)
    pages = {path.resolve(): Page(path) for path in found}
    problems = []
    for path, page in pages.items():
        for link in page.links:
            parts = urlsplit(link)
            if parts.scheme or parts.netloc:
                continue
            target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
            where = f"{path.relative_to(root.resolve())}: {link}"
            if target.is_dir():
                target /= "index.html"
            if not target.exists():
                problems.append(f"{where}: no such file")
            elif target in pages and unquote(parts.fragment) not in pages[target].places:
                problems.append(f"{where}: no such place")
    return problems


def main() -> int:
    """Tell the problems of the site that is named."""
    problems = broken(Path(sys.argv[1]))
    print("\n".join(problems) or "all links lead somewhere")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
