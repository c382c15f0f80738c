"""Binds the classes of the package to the types of the extension module."""

from collections.abc import Callable
from typing import TypeVar

import _TabulonAPI_Python as _native

ClassT = TypeVar("ClassT", bound=type)


def registered(cls: ClassT) -> ClassT:
    """Have results of the extension module come as instances of a class.

    Parameters
    ----------
    cls
        A class derived from the generated class of its name.

    Returns
    -------
    type
        The class.
    """
    getattr(_native, f"{cls.__name__}_swigregister")(cls)
    return cls


def described(held: object, description: Callable[[], str]) -> str:
    """Return the text of an object for people, also of one that was deleted.

    Parameters
    ----------
    held
        An object of the library.
    description
        Tells what the text says of it.

    Returns
    -------
    str
        In angle brackets, behind the name of the class.
    """
    try:
        text = description()
    except ValueError:  # the library is given nothing to ask
        text = "that was deleted"
    return f"<{type(held).__name__} {text}>"
