"""Commands that look at runs: ls, info, check, watch."""

from __future__ import annotations

import sys
import time
from typing import Annotated, Any

import typer

import tabulon as tb
from tabulon._cli.show import Json, Name, OneRun, Paths, end, runs_of, show, tell_unreadable
from tabulon._names import did_you_mean

__all__ = ["check", "info", "ls", "watch"]


def ls(
    paths: Paths,
    name: Name = "*",
    state: Annotated[str, typer.Option(help="Only runs that ended so.")] = "",
    as_json: Json = False,
) -> None:
    """List runs: how they ended, and what they calculate."""
    campaign = runs_of(paths, name)
    if state:
        known = {one.name.casefold(): one for one in tb.CompletionState if one >= -1}
        if state.casefold() not in known:
            hint = did_you_mean(state, [one.name for one in known.values()])
            raise typer.BadParameter(f"no state {state!r}{hint}")
        campaign = campaign.filter(state=known[state.casefold()])
    show(campaign.summary(), as_json)
    tell_unreadable(campaign)
    end(campaign.unreadable)


def info(run: OneRun, as_json: Json = False) -> None:
    """Tell what a run is, and list its groups and variables."""
    opened = tb.open_run(run)
    contents = opened._read()
    if as_json:
        show(_variables_of(opened), as_json=True)
    else:
        print(opened)
    end(contents.damaged)


def _variables_of(run: tb.Run) -> list[dict[str, Any]]:
    return [
        {
            "run": run.name,
            "group": group.name,
            "number": group.number,
            "variable": variable.name,
            "unit": variable.unit,
            "dims": list(group.dims),
            "rows": group._expected,
        }
        for group in run.groups.values()
        for variable in group.values()
    ]


def check(paths: Paths, name: Name = "*", as_json: Json = False) -> None:
    """Check files: what is missing, cut off, or contradicts itself."""
    campaign = runs_of(paths, name)
    found = campaign.map(tb.Run.check)
    records: list[dict[str, Any]] = []
    for run, problems in found.items():
        records += [{"run": run.name, **problem._asdict()} for problem in problems]
    for run, failure in found._failures.items():
        records.append(
            {"run": run.name, "kind": failure.error, "path": run.path, "text": failure.text}
        )
    show(records, as_json)
    tell_unreadable(campaign)
    if not as_json:
        bad = len({record["run"] for record in records})
        print(f"{len(campaign):,} runs, {bad:,} with problems", file=sys.stderr)
    end(records or campaign.unreadable)


def watch(
    run: OneRun,
    interval: Annotated[float, typer.Option(help="Seconds between two looks.")] = 2.0,
    looks: Annotated[int, typer.Option(help="End after so many looks; 0 goes on.")] = 0,
    as_json: Json = False,
) -> None:
    """Watch a run in progress: rows, rows a second, time left. Ends when the run does."""
    first: tuple[float, int] | None = None
    count = 0
    while True:
        opened = tb.open_run(run, partial=True)
        record, rows = _look(opened, first)
        first = first or (time.monotonic(), rows)
        if as_json:
            show([record], as_json=True)
        else:
            left = record["left"]
            print(
                f"{record['run']}: {record['rows']:,} of {record['expected']:,} rows"
                f", {record['rate']:.1f} rows/s{'' if left is None else f', {left:.0f} s left'}",
                flush=True,
            )
        count += 1
        if opened.state != tb.CompletionState.InProgress or count == looks:
            return
        time.sleep(interval)


def _look(run: tb.Run, first: tuple[float, int] | None) -> tuple[dict[str, Any], int]:
    """Return what is told of a run now, and its rows."""
    groups = list(run.groups.values())
    if not groups:
        raise tb.DataError(f"{run.path} has no groups yet", path=run.path)
    # The longest group, and of these the one that has come least far.
    rows = max((group.rows for group in groups), key=lambda one: (one.expected, -one.found))
    rate = 0.0
    if first is not None and time.monotonic() > first[0]:
        rate = (rows.found - first[1]) / (time.monotonic() - first[0])
    left = (rows.expected - rows.found) / rate if rate > 0 else None
    record = {
        "run": run.name,
        "state": str(run.state),
        "rows": rows.found,
        "expected": rows.expected,
        "rate": rate,
        "left": left,
    }
    return record, rows.found
