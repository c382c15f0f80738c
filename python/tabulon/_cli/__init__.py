"""The command line, as far as it needs nothing but Python."""

from __future__ import annotations

import sys
from typing import NoReturn

from tabulon._cli.exits import WRONG_USE

__all__ = ["main"]


def main() -> NoReturn:
    """Run the command line, or say what it needs."""
    try:
        from tabulon._cli.app import run
    except ModuleNotFoundError as error:
        if error.name not in ("typer", "rich", "click"):
            raise
        print(f'{error.name} is missing: pip install "tabulon[cli]"', file=sys.stderr)
        sys.exit(WRONG_USE)
    run()
