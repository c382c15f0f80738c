"""Peers that are programs: compiled when they are asked for."""

from __future__ import annotations

import os
import subprocess
from pathlib import Path

from harness import Place

PEERS = Path(__file__).parent / "peers"


def compiled(place: Place, name: str, *flags: str) -> Path:
    """Return a peer as a program, or with ``-shared`` as a library."""
    compiler = os.environ.get("CXX", "c++")

    def build(folder: Path) -> None:
        command = [compiler, "-std=c++20", "-O2", *flags, "-o", str(folder / name)]
        subprocess.run([*command, str(PEERS / f"{name}.cpp")], check=True)

    return place.fixture(f"peer_{name}", build) / name
