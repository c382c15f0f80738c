"""Times the library against its peers and prints a table.

usage: python benchmarks/run.py [OPTION ...] [part ...]
"""

from __future__ import annotations

import argparse
import json
import sys
import tempfile
from collections.abc import Iterator
from pathlib import Path

import rows  # noqa: F401 declares the rows
from harness import ROWS, Place, Record, Row, line_of


def chosen(parts: list[str], text: str) -> list[Row]:
    """Return the rows of these parts (all if none is named) whose job holds a text."""
    return [row for row in ROWS if (not parts or row.part in parts) and text in row.job]


def measured(wanted: list[Row], place: Place) -> Iterator[Record]:
    """Measure rows one by one; one whose peer is not installed is told and left out."""
    for row in wanted:
        try:
            yield row.measure(row, place)
        except ModuleNotFoundError as missing:
            print(f"{row.job[:64]:64} left out: {missing.name} is not installed", flush=True)


def parse() -> argparse.Namespace:
    """Return what the command line asks for."""
    parts = list(dict.fromkeys(row.part for row in ROWS))
    parser = argparse.ArgumentParser(description=__doc__, usage=argparse.SUPPRESS)
    parser.add_argument("parts", nargs="*", metavar="part", help=f"some of: {' '.join(parts)}")
    parser.add_argument("--quick", action="store_true", help="small files: do the rows work?")
    parser.add_argument("--check", action="store_true", help="exit with 1 if a target is missed")
    parser.add_argument("--json", type=Path, help="write the records to this file")
    parser.add_argument("--directory", type=Path, help="where to put the files, and to keep them")
    parser.add_argument("--row", default="", help="only rows whose job holds this text")
    arguments = parser.parse_args()
    unknown = set(arguments.parts) - set(parts)
    if unknown:
        parser.error(f"no part {', '.join(sorted(unknown))}; there are: {' '.join(parts)}")
    return arguments


def main() -> int:
    """Run the rows that were asked for."""
    arguments = parse()
    records: list[Record] = []
    with tempfile.TemporaryDirectory() as temporary:
        place = Place(arguments.directory or Path(temporary), arguments.quick)
        for record in measured(chosen(arguments.parts, arguments.row), place):
            records.append(record)
            print(line_of(record), flush=True)
    if arguments.json:
        arguments.json.write_text(json.dumps([record.as_dict() for record in records], indent=1))
    missed = [record for record in records if not record.met]
    print(f"{len(records)} rows, {len(missed)} beyond their target")
    return 1 if arguments.check and missed else 0


if __name__ == "__main__":
    sys.exit(main())
