"""Measures what hostile files cost; each function runs in an interpreter of its own."""

from __future__ import annotations

from pathlib import Path

from support.every_way import Reader
from support.hostile_files import MOST_BYTES, DamagedRuns, hostile_headers
from support.memory import growth, limit_growth, most_resident


def cost_of_small_headers(folder: str, some: int, limit: int) -> list[object]:
    """Return how many were read, what they gave and refused, and those that cost more memory."""
    place, reader = Path(folder), Reader()
    (place / "run.$TE").write_bytes(b"Run completed.\n")
    (place / "run.$01").write_bytes(b"1 2\n3 4\n5 6\n" * 20)
    texts = hostile_headers(1, some)
    (place / "run.%01").write_text(texts[0])
    reader.read(place, "a")
    before = most_resident()
    limit_growth(limit)
    greedy = []
    for text in texts:
        assert len(text) <= MOST_BYTES
        (place / "run.%01").write_text(text)
        try:
            reader.read(place, "a")
        except MemoryError:
            greedy.append(text)
        if most_resident() - before > limit:
            greedy.append(text)
            before = most_resident()
    return [len(texts), reader.given, reader.refused, greedy[:3]]


def cost_of_damaged_runs(folder: str, rounds: int) -> list[int]:
    """Return by how many bytes the process grows, and what the runs gave and refused."""
    place, reader = Path(folder), Reader()
    runs = DamagedRuns(place, 1, 60)
    grown = growth(lambda count: reader.read(place, runs.write(count)), rounds // 5, rounds)
    return [grown, reader.given, reader.refused]
