"""Results of wind-turbine simulation runs.

A run has groups, a group has variables, and a variable has values over one or two axes::

    import tabulon as tb

    run = tb.open_run("results/powprod_12ms")
    run["Rotor speed"].to("rpm").plot()
    run.to_pandas(["Rotor speed", "Electrical power"])

Nothing is set for the process, and nothing is changed in place: arrays are read-only, and what is
told of a file is what stands there. The library word for word is ``tabulon.api``.
"""

from importlib import import_module
from typing import TYPE_CHECKING

from tabulon._campaign import Campaign, Unreadable, open_campaign
from tabulon._errors import (
    AmbiguousNameError,
    DataError,
    NameNotFoundError,
    RunNotFoundError,
    TabulonError,
)
from tabulon._group import Group, Variable
from tabulon._native import Rows
from tabulon._results import Results
from tabulon._run import Run, open_run
from tabulon._sample import sample
from tabulon._shapes import Axis, Problem
from tabulon._vocabulary import CalculationType, CompletionState

if TYPE_CHECKING:
    from types import ModuleType

    from tabulon import api as api

__all__ = [
    "AmbiguousNameError",
    "Axis",
    "CalculationType",
    "Campaign",
    "CompletionState",
    "DataError",
    "Group",
    "NameNotFoundError",
    "Problem",
    "Results",
    "Rows",
    "Run",
    "RunNotFoundError",
    "TabulonError",
    "Unreadable",
    "Variable",
    "__version__",
    "api",
    "open_campaign",
    "open_run",
    "sample",
]

__version__: str

# Tracebacks and pickles say where a name is found, not where it is written.
for _name in __all__:
    if isinstance(globals().get(_name), type) or callable(globals().get(_name)):
        globals()[_name].__module__ = __name__
del _name


def __getattr__(name: str) -> "ModuleType | str":
    """Import what most scripts do not use when it is asked for."""
    if name == "api":
        return import_module("tabulon.api")
    if name == "__version__":
        from importlib.metadata import PackageNotFoundError, version

        try:
            return version("tabulon")
        except PackageNotFoundError:  # a build tree
            return "0+unknown"
    raise AttributeError(f"module 'tabulon' has no attribute {name!r}")


def __dir__() -> list[str]:
    return sorted(__all__)
