"""Packages that some operations need, and the package itself does not."""

from __future__ import annotations

from importlib import import_module
from types import ModuleType

__all__ = ["require"]


def require(module: str, extra: str) -> ModuleType:
    """Return a module of an optional package.

    Parameters
    ----------
    module
        Its full name.
    extra
        The extra of this package that installs it.

    Raises
    ------
    ModuleNotFoundError
        If it is not installed; the text says what to install.
    """
    package = module.partition(".")[0]
    try:
        import_module(package)
    except ModuleNotFoundError as error:
        if error.name != package:
            raise  # it is there, and broken
        text = f'{package} is missing: pip install "tabulon[{extra}]"'
        raise ModuleNotFoundError(text, name=package) from None
    return import_module(module)
