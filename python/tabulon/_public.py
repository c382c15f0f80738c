"""What the package hands on says that it is the package's, wherever it is written."""

from __future__ import annotations

from collections.abc import Callable
from typing import Any, TypeVar

__all__ = ["public"]

T = TypeVar("T", bound="type[Any] | Callable[..., Any]")


def public(thing: T) -> T:
    """Return a class or a function as one of ``tabulon``: so tracebacks and pickles name it."""
    thing.__module__ = "tabulon"
    return thing
