"""Commands that give numbers: stats, extremes."""

from __future__ import annotations

from typing import Annotated

import typer

from tabulon._cli.show import (
    Json,
    Name,
    PathOfRuns,
    names_of,
    plain_name,
    records_of,
    runs_of,
    show,
    tell_failures,
    without_warnings,
)
from tabulon._names import did_you_mean

__all__ = ["extremes", "stats"]

Variables = Annotated[
    list[str], typer.Argument(help="Names of variables; GROUP::NAME where a name is not enough.")
]
Verify = Annotated[bool, typer.Option(help="Look at the size of each data file first.")]

_FIGURES = ("min", "max", "mean", "std")


def stats(
    path: PathOfRuns,
    variables: Variables,
    figures: Annotated[str, typer.Option(help="Which figures.")] = "min,max,mean,std",
    name: Name = "*",
    verify: Verify = True,
    as_json: Json = False,
) -> None:
    """Tell figures of variables of all runs."""
    names, wanted = names_of(variables), [one.strip() for one in figures.split(",")]
    for figure in wanted:
        if figure not in _FIGURES:
            hint = did_you_mean(figure, _FIGURES) or f"; there are {', '.join(_FIGURES)}"
            raise typer.BadParameter(f"no figure {figure!r}{hint}")
    with without_warnings():
        table = runs_of([path], name).stats(names, wanted, verify=verify)
    records = records_of(table)
    show(records, as_json)
    told = {str(one).casefold() for one in table["variable"]}
    tell_failures(table.attrs["failures"], {plain_name(one).casefold() for one in names} - told)


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
    names, others = names_of(variables), names_of(also or [])
    with without_warnings():
        table = runs_of([path], name).extremes(names, others, verify=verify)
    records = records_of(table)
    show(records, as_json)
    told = {str(one).casefold() for one in table["variable"]}
    unanswered = {plain_name(one).casefold() for one in names} - told
    unanswered |= {plain_name(one) for one in others if table[one].isna().all()}
    tell_failures(table.attrs["failures"], unanswered)
