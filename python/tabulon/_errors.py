"""What goes wrong, as exceptions that can be caught by kind."""

from __future__ import annotations

from tabulon._public import public

__all__ = [
    "AmbiguousNameError",
    "DataError",
    "NameNotFoundError",
    "RunNotFoundError",
    "TabulonError",
]


@public
class TabulonError(RuntimeError):
    """What the package refuses, or cannot read.

    Parameters
    ----------
    text
        What went wrong.
    code
        The number of the error where the library has one.
    path
        The file or the run that it is about.

    Examples
    --------
    >>> import tabulon as tb
    >>> try:
    ...     tb.open_run(tb.sample("power_curve"))["Rotor sped"]
    ... except tb.TabulonError as error:
    ...     print(type(error).__name__, error.code)
    NameNotFoundError None
    """

    code: int | None
    path: str | None

    def __init__(self, text: str, *, code: int | None = None, path: str | None = None) -> None:
        # One argument, and the rest attributes: so it can be pickled.
        super().__init__(text)
        self.code = code
        self.path = path

    def __str__(self) -> str:
        return str(self.args[0])  # a KeyError would print it in quotes


@public
class RunNotFoundError(TabulonError, FileNotFoundError):
    """There is no such run, or no such directory. Also a ``FileNotFoundError``."""

    # An `OSError` has more to it than a `RuntimeError`, and is made by its own `__new__`. Packages
    # that send exceptions to other processes look for it here.
    def __new__(cls, *texts: object, **_: object) -> RunNotFoundError:
        return FileNotFoundError.__new__(cls, *texts)


@public
class NameNotFoundError(TabulonError, KeyError):
    """There is no group, variable, label or axis value of that name. Also a ``KeyError``."""


@public
class AmbiguousNameError(TabulonError, KeyError):
    """A name stands for more than one thing; the text tells how to say which. A ``KeyError``."""


@public
class DataError(TabulonError, ValueError):
    """Files or data that are damaged, cut off, or do not go together. Also a ``ValueError``."""
