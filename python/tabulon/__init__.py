"""Results of wind-turbine simulation runs.

A run has groups, a group has variables, and a variable has values over one or two axes::

    import tabulon as tb

    run = tb.open_run("results/powprod_12ms")
    run["Rotor speed"].to("rpm").plot()
    run.to_pandas(["Rotor speed", "Electrical power"])

Nothing is set for the process, and nothing is changed in place: arrays are read-only, and what is
told of a file is what stands there. The library word for word is ``tabulon.api``.
"""

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from tabulon import api as api
    from tabulon._campaign import Campaign, open_campaign
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
    from tabulon._seek import Unreadable
    from tabulon._shapes import Axis, Problem
    from tabulon._vocabulary import CalculationType, CompletionState

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

# Where the names are written. What a module imports of these stands before it, so that looking for
# a name along the row costs what its own module does.
_ROW = (
    *("errors", "vocabulary", "sample", "shapes", "native", "group", "run"),
    *("results", "seek", "campaign"),
)

if not TYPE_CHECKING:  # which knows the names, and would believe any other

    def __getattr__(name: str) -> object:
        """Import a name when it is first asked for: `import tabulon` takes no time by itself."""
        if name not in __all__:
            raise AttributeError(f"module 'tabulon' has no attribute {name!r}")
        found = globals()[name] = _found(name)
        return found


def _found(name: str) -> object:
    from importlib import import_module

    if name == "api":
        return import_module("tabulon.api")
    if name == "__version__":
        return _version()
    modules = (import_module(f"tabulon._{module}") for module in _ROW)
    return next(getattr(module, name) for module in modules if name in module.__all__)


def _version() -> str:
    from importlib.metadata import PackageNotFoundError, version

    try:
        return version("tabulon")
    except PackageNotFoundError:  # a build tree
        return "0+unknown"


def __dir__() -> list[str]:
    return sorted(__all__)
