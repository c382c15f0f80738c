"""Binds the classes of the package to the types of the extension module."""

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
