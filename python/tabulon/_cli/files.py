"""Commands that write files: plot, export, catalogue."""

from __future__ import annotations

import sys
from collections.abc import Iterator
from pathlib import Path
from typing import Annotated, Any

import typer

import tabulon as tb
from tabulon._cli.show import Name, OneRun, end, names_of, tell_unreadable
from tabulon._optional import require

__all__ = ["catalogue", "export", "plot"]

Some = Annotated[list[str] | None, typer.Argument(help="Names of variables; all if none is named.")]


def plot(
    run: OneRun,
    variables: Annotated[list[str], typer.Argument(help="Names of variables.")],
    output: Annotated[Path, typer.Option("-o", "--output", help="A .png or .svg file.")],
    unit: Annotated[str | None, typer.Option(help="The unit of all of them.")] = None,
) -> None:
    """Plot variables of a run into a picture."""
    if output.suffix.lower() not in (".png", ".svg"):
        raise typer.BadParameter(f"{output} is neither .png nor .svg")
    opened = tb.open_run(run)
    found = [opened[key] for key in names_of(variables)]
    try:
        found = found if unit is None else [variable.to(unit) for variable in found]
    except tb.DataError as error:
        raise typer.BadParameter(str(error)) from None
    matplotlib = require("matplotlib", "plot")
    matplotlib.use("Agg")
    pyplot = require("matplotlib.pyplot", "plot")
    figure, axes = pyplot.subplots(
        len(found), 1, figsize=(9, 2.6 * len(found) + 0.6), squeeze=False, layout="constrained"
    )
    for ax, variable in zip(axes[:, 0], found, strict=True):
        variable.plot(ax=ax)
    figure.savefig(output)
    pyplot.close(figure)


def export(
    run: OneRun,
    file: Annotated[Path, typer.Argument(help="A .parquet, .nc or .csv file.")],
    variables: Some = None,
) -> None:
    """Write variables of a run in another format."""
    opened = tb.open_run(run)
    write = {".parquet": _parquet, ".csv": _csv, ".nc": _netcdf}.get(file.suffix.lower())
    if write is None:
        raise typer.BadParameter(f"{file} is neither .parquet nor .nc nor .csv")
    write(opened, variables, file)


def _frame(run: tb.Run, variables: list[str] | None) -> Any:  # noqa: ANN401 - a DataFrame
    keys: list[Any] = names_of(variables) if variables else []
    if not keys:
        found = run.variables()
        names = [variable.name for variable in found]
        keys = [
            one.name if names.count(one.name) == 1 else (one.group.number, one.name)
            for one in found
        ]
    frame = run.to_pandas(keys)
    frame.columns = [" ".join(_words(name)) for name in frame.columns]
    return frame


def _words(name: object) -> Iterator[str]:
    """Give the words of a column: of a name, or of group, name and secondary value."""
    if isinstance(name, tuple):
        for part in name:
            yield from _words(part)
    elif name is not None and str(name):
        yield str(name)


def _parquet(run: tb.Run, variables: list[str] | None, file: Path) -> None:
    require("pyarrow", "parquet")
    frame = _frame(run, variables)
    frame.attrs = {}  # what Parquet cannot hold
    frame.to_parquet(file)


def _csv(run: tb.Run, variables: list[str] | None, file: Path) -> None:
    _frame(run, variables).to_csv(file)


def _netcdf(run: tb.Run, variables: list[str] | None, file: Path) -> None:
    require("h5netcdf", "netcdf")
    if variables:
        xarray = require("xarray", "xarray")
        found = [run[key].to_xarray() for key in names_of(variables)]
        xarray.merge(found).to_netcdf(file, engine="h5netcdf")
    else:
        run.to_xarray().to_netcdf(file, engine="h5netcdf")


def catalogue(
    directory: Annotated[Path, typer.Argument(help="Where the runs are.")],
    file: Annotated[Path, typer.Argument(help="The catalogue: a .parquet file.")],
    name: Name = "*",
    refresh: Annotated[
        bool, typer.Option("--refresh", help="Read only what has changed since the file was made.")
    ] = False,
) -> None:
    """Write a catalogue of the runs below a directory."""
    if refresh and file.exists():
        campaign = tb.open_campaign(file).refresh()
    else:
        campaign = tb.open_campaign(directory, name=name)
    campaign.save(file)
    print(f"{len(campaign):,} runs in {file}", file=sys.stderr)
    tell_unreadable(campaign)
    end(campaign.unreadable)
