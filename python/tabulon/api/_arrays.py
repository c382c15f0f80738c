"""The arrays of the library as sequences.

The library takes any iterable where it takes an array, and gives tuples: these serve to build an
array once and pass it on many times.
"""

# Classes have the names of the extension module.
# ruff: noqa: N801

from __future__ import annotations

from collections.abc import Sequence

from tabulon.api import _proxy
from tabulon.api._group import Group
from tabulon.api._registration import registered
from tabulon.api._run import Run
from tabulon.api._variables import (
    IndependentVariable,
    Variable,
    Variable1D_Float32,
    Variable1D_Float64,
    Variable1D_Int32,
    Variable2D_Float32,
    Variable2D_Float64,
    Variable2D_Int32,
)

__all__ = [
    "ArrayOfArrayOfDouble",
    "ArrayOfArrayOfFloat",
    "ArrayOfArrayOfInt",
    "ArrayOfArrayOfString",
    "ArrayOfDouble",
    "ArrayOfFloat",
    "ArrayOfGroup",
    "ArrayOfIndependentVariable",
    "ArrayOfInt",
    "ArrayOfRun",
    "ArrayOfString",
    "ArrayOfVariable",
    "ArrayOfVariable1D_Float32",
    "ArrayOfVariable1D_Float64",
    "ArrayOfVariable1D_Int32",
    "ArrayOfVariable2D_Float32",
    "ArrayOfVariable2D_Float64",
    "ArrayOfVariable2D_Int32",
]

# Slices follow the rules of the extension: one that starts past the end starts over at the first
# element, and assigning to a slice of step 1 is how an array grows.


@registered
class ArrayOfInt(_proxy.ArrayOfInt, Sequence[int]):
    """An array whose elements are each an ``int``."""


@registered
class ArrayOfFloat(_proxy.ArrayOfFloat, Sequence[float]):
    """An array whose elements are each a ``float`` of 4 bytes."""


@registered
class ArrayOfDouble(_proxy.ArrayOfDouble, Sequence[float]):
    """An array whose elements are each a ``float`` of 8 bytes."""


@registered
class ArrayOfString(_proxy.ArrayOfString, Sequence[str]):
    """An array whose elements are each a ``str``."""


@registered
class ArrayOfArrayOfInt(_proxy.ArrayOfArrayOfInt, Sequence[tuple[int, ...]]):
    """An array of arrays; an element comes out as a tuple."""


@registered
class ArrayOfArrayOfFloat(_proxy.ArrayOfArrayOfFloat, Sequence[tuple[float, ...]]):
    """An array of arrays; an element comes out as a tuple."""


@registered
class ArrayOfArrayOfDouble(_proxy.ArrayOfArrayOfDouble, Sequence[tuple[float, ...]]):
    """An array of arrays; an element comes out as a tuple."""


@registered
class ArrayOfArrayOfString(_proxy.ArrayOfArrayOfString, Sequence[tuple[str, ...]]):
    """An array of arrays; an element comes out as a tuple."""


@registered
class ArrayOfVariable(_proxy.ArrayOfVariable, Sequence[Variable]):
    """An array that shares its elements: each is a ``Variable``."""


@registered
class ArrayOfVariable1D_Float32(_proxy.ArrayOfVariable1D_Float32, Sequence[Variable1D_Float32]):
    """An array that shares its elements: each is a ``Variable1D_Float32``."""


@registered
class ArrayOfVariable1D_Float64(_proxy.ArrayOfVariable1D_Float64, Sequence[Variable1D_Float64]):
    """An array that shares its elements: each is a ``Variable1D_Float64``."""


@registered
class ArrayOfVariable1D_Int32(_proxy.ArrayOfVariable1D_Int32, Sequence[Variable1D_Int32]):
    """An array that shares its elements: each is a ``Variable1D_Int32``."""


@registered
class ArrayOfVariable2D_Float32(_proxy.ArrayOfVariable2D_Float32, Sequence[Variable2D_Float32]):
    """An array that shares its elements: each is a ``Variable2D_Float32``."""


@registered
class ArrayOfVariable2D_Float64(_proxy.ArrayOfVariable2D_Float64, Sequence[Variable2D_Float64]):
    """An array that shares its elements: each is a ``Variable2D_Float64``."""


@registered
class ArrayOfVariable2D_Int32(_proxy.ArrayOfVariable2D_Int32, Sequence[Variable2D_Int32]):
    """An array that shares its elements: each is a ``Variable2D_Int32``."""


@registered
class ArrayOfIndependentVariable(_proxy.ArrayOfIndependentVariable, Sequence[IndependentVariable]):
    """An array that shares its elements: each is an ``IndependentVariable``."""


@registered
class ArrayOfGroup(_proxy.ArrayOfGroup, Sequence[Group]):
    """An array that shares its elements: each is a ``Group``."""


@registered
class ArrayOfRun(_proxy.ArrayOfRun, Sequence[Run]):
    """An array that shares its elements: each is a ``Run``."""
