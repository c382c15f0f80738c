"""The benchmark runs, compares its sides, and tells what it measured."""

from __future__ import annotations

import json
import subprocess
import sys
from pathlib import Path

import pytest

BENCHMARKS = Path(__file__).parents[2] / "benchmarks"


def run(*arguments: str) -> subprocess.CompletedProcess[str]:
    """Run the benchmark with small files."""
    command = [sys.executable, str(BENCHMARKS / "run.py"), "--quick", *arguments]
    return subprocess.run(command, capture_output=True, text=True, check=False)


@pytest.mark.parametrize("part", ["read", "write", "directories"])
def test_each_row_of_a_part_gives_a_record(tmp_path: Path, part: str) -> None:
    told = tmp_path / "rows.json"
    done = run(part, "--json", str(told), "--directory", str(tmp_path / "files"))
    assert done.returncode == 0, done.stderr
    records = json.loads(told.read_text())
    assert {record["part"] for record in records} == {part}
    assert all(record["figure"] > 0 for record in records)
    assert f"{len(records)} rows, " in done.stdout.splitlines()[-1]


def test_a_missed_target_is_an_exit_status_of_one(tmp_path: Path) -> None:
    """The exponent of a quick look says nothing, so a figure that is always missed is declared."""
    script = (
        "import sys; sys.path.insert(0, sys.argv.pop(1))\n"
        "import harness, run\n"
        "harness.limit('read', 'never met', target=0.0, unit='us')(lambda place: 1.0)\n"
        "sys.exit(run.main())\n"
    )
    command = [sys.executable, "-c", script, str(BENCHMARKS), "--quick", "--row", "never met"]
    assert subprocess.run(command, check=False, capture_output=True).returncode == 0
    done = subprocess.run([*command, "--check"], check=False, capture_output=True, text=True)
    assert done.returncode == 1
    assert "MISSED" in done.stdout


def test_sides_that_differ_are_refused_before_they_are_timed() -> None:
    script = (
        "import sys; sys.path.insert(0, sys.argv.pop(1))\n"
        "import harness, run\n"
        "pair = harness.Pair(lambda: 1, lambda: 2, lambda mine, theirs: mine == theirs)\n"
        "harness.row('read', 'unlike', against='none', target=1.0)(lambda place: pair)\n"
        "sys.exit(run.main())\n"
    )
    command = [sys.executable, "-c", script, str(BENCHMARKS), "--quick", "--row", "unlike"]
    done = subprocess.run(command, check=False, capture_output=True, text=True)
    assert done.returncode != 0
    assert "do not give the same" in done.stderr


def test_an_unknown_part_is_told() -> None:
    done = run("reed")
    assert done.returncode == 2
    assert "no part reed; there are: " in done.stderr
