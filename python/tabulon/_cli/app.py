"""The commands: what each is called, and what becomes of its errors."""

from __future__ import annotations

import sys
from typing import NoReturn

import typer

from tabulon._cli.exits import BROKEN, WRONG_USE
from tabulon._cli.files import catalogue, export, plot
from tabulon._cli.numbers import extremes, stats
from tabulon._cli.runs import check, info, ls, watch
from tabulon._cli.show import tell
from tabulon._errors import DataError, TabulonError

__all__ = ["app", "run"]

app = typer.Typer(
    name="tabulon",
    help="Results of wind-turbine simulation runs.",
    no_args_is_help=True,
    pretty_exceptions_enable=False,
    rich_markup_mode=None,  # help and errors as plain text: boxes cost 0.15 s, and break names
    context_settings={"help_option_names": ["-h", "--help"]},
)

for command in (ls, info, stats, extremes, plot, export, check, catalogue, watch):
    app.command()(command)


def run() -> NoReturn:
    """Run a command. An error of the package is one line on standard error."""
    try:
        app()
    except TabulonError as error:
        fail(str(error), BROKEN if isinstance(error, DataError) else WRONG_USE)
    except ModuleNotFoundError as error:
        if "tabulon[" not in str(error):
            raise
        fail(str(error), WRONG_USE)
    except BrokenPipeError:  # the reader of a pipe has seen enough
        sys.stderr.close()
        sys.exit(0)
    except OSError as error:  # a file that cannot be written
        fail(str(error), WRONG_USE)
    sys.exit(0)


def fail(text: str, status: int) -> NoReturn:
    """End with a line on standard error."""
    tell(text)
    sys.exit(status)
