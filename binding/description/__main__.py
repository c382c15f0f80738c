"""Writes what follows from the interface files, or tells that it does not follow any longer."""

from __future__ import annotations

import argparse
import subprocess
import sys

from .flat_stub import flat_stub
from .interface import BINDING, read_interface
from .proxy_stub import proxy_stub
from .surface_list import surface_list

ROOT = BINDING.parent
FILES = {
    "python/_TabulonAPI_Python.pyi": flat_stub,
    "python/tabulon/api/_proxy.pyi": proxy_stub,
    "tests/python/surface.json": surface_list,
}


def _formatted(ruff: str, name: str, text: str) -> str:
    if not name.endswith(".pyi"):
        return text
    done = subprocess.run(
        [ruff, "format", "--stdin-filename", str(ROOT / name), "-"],
        input=text,
        capture_output=True,
        text=True,
        check=True,
        cwd=ROOT,
    )
    return done.stdout


def main() -> int:
    """Return the exit status."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument(
        "--check", action="store_true", help="write nothing, and fail if it differs"
    )
    parser.add_argument("--swig", default="swig")
    parser.add_argument("--ruff", default="ruff")
    options = parser.parse_args()
    interface = read_interface(options.swig)
    stale = []
    for name, make in FILES.items():
        path = ROOT / name
        text = _formatted(options.ruff, name, make(interface))
        if not path.exists() or path.read_text() != text:
            stale.append(name)
            if not options.check:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
    for name in stale:
        print(f"{name} {'differs: run scripts/describe-binding' if options.check else 'written'}")
    return 1 if stale and options.check else 0


sys.exit(main())
