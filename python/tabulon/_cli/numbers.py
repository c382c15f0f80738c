"""Commands that give numbers: stats, extremes."""

from __future__ import annotations

from pathlib import Path
from typing import Annotated

import typer

from tabulon._cli.show import (
    Json,
    names_of,
    records_of,
    runs_of,
    show,
    tell_failures,
    without_warnings,
)

__all__ = ["extremes", "stats"]

PathOfRuns = Annotated[Path, typer.Argument(help="A directory, a run, or a catalogue.")]
Variables = Annotated[
    list[str], typer.Argument(help="Names of variables; GROUP::NAME where a name is not enough.")
]
Name = Annotated[str, typer.Option(help="Only runs of names that match, such as 'dlc12*'.")]
Verify = Annotated[bool, typer.Option(help="Look at the size of each data file first.")]


def stats(
    path: PathOfRuns,
    variables: Variables,
    figures: Annotated[str, typer.Option(help="Which figures.")] = "min,max,mean,std",
    name: Name = "*",
    verify: Verify = True,
    as_json: Json = False,
) -> None:
    """Tell figures of variables of all runs."""
    with without_warnings():
        table = runs_of([path], name).stats(
            names_of(variables), [one.strip() for one in figures.split(",")], verify=verify
        )
    records = records_of(table)
    show(records, as_json)
    tell_failures(table.attrs["failures"], records)


def extremes(
    path: PathOfRuns,
    variables: Variables,
    also: Annotated[
        list[str] | None, typer.Option(help="A variable whose value at that time is told too.")
    ] = None,
    name: Name = "*",
    verify: Verify = True,
    as_json: Json = False,
) -> None:
    """Tell the extremes over all runs, and where they stand."""
    with without_warnings():
        table = runs_of([path], name).extremes(
            names_of(variables), names_of(also or []), verify=verify
        )
    records = records_of(table)
    show(records, as_json)
    tell_failures(table.attrs["failures"], records)
