"""Records on standard output: a table for people, or a JSON object a line for programs."""

from __future__ import annotations

import json
import math
import sys
import warnings
from collections.abc import Iterator, Mapping, Sequence
from contextlib import contextmanager
from pathlib import Path
from typing import TYPE_CHECKING, Annotated, Any

import typer

import tabulon as tb
from tabulon._cli.exits import BROKEN, WRONG_USE

if TYPE_CHECKING:
    import pandas as pd

    from tabulon._run import VariableName

__all__ = [
    "Json",
    "Name",
    "OneRun",
    "PathOfRuns",
    "Paths",
    "end",
    "names_of",
    "plain_name",
    "records_of",
    "runs_of",
    "show",
    "tell",
    "tell_failures",
    "tell_unreadable",
    "without_warnings",
]

PathOfRuns = Annotated[Path, typer.Argument(help="A directory, a run, or a catalogue.")]
Paths = Annotated[list[Path], typer.Argument(help="Directories, runs, or a catalogue.")]
OneRun = Annotated[Path, typer.Argument(help="A run: its path, or any of its files.")]
Name = Annotated[str, typer.Option(help="Only runs of names that match, such as 'dlc12*'.")]
Json = Annotated[bool, typer.Option("--json", help="A JSON object a line.")]


def runs_of(paths: Sequence[Path], name: str = "*") -> tb.Campaign:
    """Return the runs that paths stand for: directories, a catalogue, or single runs."""
    folders = [path for path in paths if path.is_dir()]
    if len(folders) == len(paths) or (len(paths) == 1 and path_of_catalogue(paths[0])):
        return tb.open_campaign(*paths, name=name)
    kept = [tb.open_run(path) for path in paths if path not in folders]
    single = tb.Campaign([(run.path, None) for run in kept])
    if not folders:
        return single
    more = tb.open_campaign(*folders, name=name)
    return tb.Campaign([*single._found, *more._found], more.unreadable)


def path_of_catalogue(path: Path) -> bool:
    """Return whether a path looks like that of a catalogue, and not of a file of a run."""
    return path.is_file() and not path.suffix.startswith((".$", ".%"))


def names_of(variables: Sequence[str]) -> list[VariableName]:
    """Return names of variables; ``GROUP::NAME`` is a pair."""
    found: list[VariableName] = []
    for text in variables:
        group, separator, name = text.partition("::")
        key: str | int = int(group) if group.isdigit() else group
        found.append((key, name) if separator else text)
    return found


def plain_name(variable: VariableName) -> str:
    """Return the name of a variable without its group."""
    return variable if isinstance(variable, str) else variable[1]


def show(records: Sequence[Mapping[str, Any]], as_json: bool, title: str = "") -> None:
    """Write records."""
    if as_json:
        for record in records:
            print(json.dumps({key: _plain(value) for key, value in record.items()}))
        return
    if not records:
        return
    from rich.console import Console
    from rich.table import Table
    from rich.text import Text

    columns = list(dict.fromkeys(key for record in records for key in record))
    table = Table(title=title or None, box=None, pad_edge=False, header_style="bold")
    for column in columns:
        numbers = all(isinstance(record.get(column), int | float) for record in records)
        table.add_column(column, justify="right" if numbers else "left", overflow="fold")
    for record in records:
        table.add_row(*(Text(_text(record.get(column))) for column in columns))
    # A pipe has no width: a record stays on its line.
    width = None if sys.stdout.isatty() else 10_000
    Console(width=width, highlight=False, soft_wrap=not sys.stdout.isatty()).print(table)


def records_of(frame: pd.DataFrame) -> list[dict[str, Any]]:
    """Return the rows of a table; what is missing is None."""
    return [
        {str(key): _plain(value) for key, value in record.items()}
        for record in frame.to_dict("records")
    ]


def tell(text: str) -> None:
    """Write a line to standard error."""
    print(f"tabulon: {' '.join(text.split())}", file=sys.stderr)


def tell_unreadable(campaign: tb.Campaign) -> None:
    """Write which directories could not be read to standard error."""
    for one in campaign.unreadable:
        tell(f"{one.path}: {one.text}")


def tell_failures(failures: Sequence[Mapping[str, str]], unanswered: object) -> None:
    """Write what failed to standard error, and end with its status.

    A variable that no run has, so that nothing is told of it, is wrong use; runs that cannot be
    read are broken.
    """
    for failure in failures[:20]:
        tell(f"{failure['run']}: {failure['text']}")
    if len(failures) > 20:
        tell(f"and {len(failures) - 20} more failures")
    if failures:
        unknown = all(failure["error"] == tb.NameNotFoundError.__name__ for failure in failures)
        raise typer.Exit(WRONG_USE if unknown and unanswered else BROKEN)


def end(broken: object) -> None:
    """End with the status of whether something is broken."""
    raise typer.Exit(BROKEN if broken else 0)


@contextmanager
def without_warnings() -> Iterator[None]:
    """Keep warnings back: failures are told line by line."""
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", UserWarning)
        yield


def _plain(value: Any) -> Any:  # noqa: ANN401 - whatever a record holds
    if hasattr(value, "item"):
        value = value.item()
    return None if isinstance(value, float) and not math.isfinite(value) else value


def _text(value: Any) -> str:  # noqa: ANN401 - whatever a record holds
    if value is None:
        return ""
    return f"{value:.6g}" if isinstance(value, float) else str(value).replace("\n", " ")
