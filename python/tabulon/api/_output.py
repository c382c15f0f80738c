"""Output groups to be written."""

# Classes have the names of the extension module.
# ruff: noqa: N801

from __future__ import annotations

import os
from collections.abc import Iterable
from typing import TYPE_CHECKING, Any, ClassVar, Generic, TypeVar

import numpy as np
from numpy.typing import DTypeLike, NDArray

from tabulon.api import _proxy
from tabulon.api._enumerations import FileFormat, VariableDataFormat
from tabulon.api._registration import registered
from tabulon.api._search import StrPath
from tabulon.api._units import native
from tabulon.api._variables import IndependentVariable

__all__ = [
    "IOutputSpecification",
    "OutputGroup",
    "OutputGroup1D",
    "OutputGroup1D_Float32",
    "OutputGroup1D_Float64",
    "OutputGroup1D_Int32",
    "OutputGroup2D",
    "OutputGroup2D_Float32",
    "OutputGroup2D_Float64",
    "OutputGroup2D_Int32",
    "output_group_1d",
    "output_group_2d",
]

if TYPE_CHECKING:
    from tabulon.api._proxy import _OutputGroup1D, _OutputGroup2D, _OutputGroupOfVariables
else:
    # The generated classes of a family have no base of their own: it is there for types only.
    _OutputGroupOfVariables = object
    _OutputGroup1D = _OutputGroup2D = Generic

ElementT = TypeVar("ElementT", bound=float)


@registered
class IOutputSpecification(_proxy.IOutputSpecification):
    """What can be written."""

    def get_file_format(self) -> FileFormat:
        """Return the format in which it is written."""
        return FileFormat(super().get_file_format())


@registered
class OutputGroup(IOutputSpecification, _proxy.OutputGroup):
    """What output groups of all types have in common."""

    def get_variable_data_format(self) -> VariableDataFormat:
        """Return the form of the data file."""
        return VariableDataFormat(super().get_variable_data_format())


class _GroupOfVariables(OutputGroup, _OutputGroupOfVariables):
    """What output groups over one and over two independent variables have in common."""

    _dtype: ClassVar[type[np.generic]]

    def add_variable(self, variable_name: str, si_unit: str) -> None:
        """Add a variable without data.

        Parameters
        ----------
        variable_name
            The name; a name differs from all others by more than case.
        si_unit
            The unit of the values.

        Raises
        ------
        RuntimeError
            If there is such a variable, or a text is empty.
        """
        super().add_variable(variable_name, native(si_unit))


class OutputGroup1D(_GroupOfVariables, _OutputGroup1D[ElementT]):
    """An output group over one independent variable.

    ``write_output`` writes it, any number of times, and it may grow in between.

    Parameters
    ----------
    group_path
        The header file: the run's directory, its name, and an extension ``.%NN`` of digits.
    group_name
        The name of the group.
    data_source
        ``"UserDefined"``, or the short name of a calculation: what the run is known as.
    group_config
        Typically ``"TRANSIENT"``, ``"STATIONARY"``, ``"LIST"`` or ``"TABLE"``.
    independent_variable
        What the variables are seen against.
    variable_data_format
        A ``VariableDataFormat``: the form of the data file.

    Raises
    ------
    RuntimeError
        If a text is empty, or the path has no such extension.
    """

    def __init__(
        self,
        group_path: StrPath,
        group_name: str,
        data_source: str,
        group_config: str,
        independent_variable: IndependentVariable,
        variable_data_format: int = VariableDataFormat.Binary,
    ) -> None:
        super().__init__(
            os.fspath(group_path),
            group_name,
            data_source,
            group_config,
            independent_variable,
            variable_data_format,
        )

    def add_variable_with_data(
        self, variable_name: str, si_unit: str, data: Iterable[ElementT] | NDArray[Any]
    ) -> None:
        """Add a variable and its values.

        Parameters
        ----------
        variable_name
            The name; a name differs from all others by more than case.
        si_unit
            The unit of the values.
        data
            The values along the independent variable: any iterable of numbers, or an array of
            shape ``(points,)`` whose type converts without loss of kind.

        Raises
        ------
        TypeError
            If a value is no number, or not of the group's kind (a float for an integer group).
        OverflowError
            If a value of an array is beyond the group's type.
        ValueError
            If an array has another shape.
        RuntimeError
            If there is such a variable, there is no data, or there is more than labels.
        """
        values = _elements(data, self._dtype, (None,))
        self._add_variable_with_data_native_array(variable_name, native(si_unit), values)

    def append_data(self, variable_name: str, data: Iterable[ElementT] | NDArray[Any]) -> None:
        """Append values to a variable.

        Parameters
        ----------
        variable_name
            The name, in any case.
        data
            As of ``add_variable_with_data``, whose errors hold too.
        """
        self._append_data_native_array(variable_name, _elements(data, self._dtype, (None,)))


class OutputGroup2D(_GroupOfVariables, _OutputGroup2D[ElementT]):
    """An output group over two independent variables.

    Parameters and errors are those of ``OutputGroup1D``, but for the two independent variables.

    Parameters
    ----------
    group_path, group_name, data_source, group_config
        As of ``OutputGroup1D``.
    primary_independent_variable
        What the values of a row are seen against, for example time.
    secondary_independent_variable
        What the rows are seen against, for example a position along a blade.
    variable_data_format
        A ``VariableDataFormat``: the form of the data file.
    """

    def __init__(
        self,
        group_path: StrPath,
        group_name: str,
        data_source: str,
        group_config: str,
        primary_independent_variable: IndependentVariable,
        secondary_independent_variable: IndependentVariable,
        variable_data_format: int = VariableDataFormat.Binary,
    ) -> None:
        super().__init__(
            os.fspath(group_path),
            group_name,
            data_source,
            group_config,
            primary_independent_variable,
            secondary_independent_variable,
            variable_data_format,
        )
        labels = secondary_independent_variable.get_number_of_values()
        self._shape = (labels or None, None)

    def add_variable_with_data(
        self,
        variable_name: str,
        si_unit: str,
        data: Iterable[Iterable[ElementT]] | NDArray[Any],
    ) -> None:
        """Add a variable and its values.

        Parameters
        ----------
        variable_name
            The name; a name differs from all others by more than case.
        si_unit
            The unit of the values.
        data
            The values: for each secondary value, in order, an iterable of numbers along the
            primary independent variable; or an array of shape ``(secondary values, points)``
            whose type converts without loss of kind.

        Raises
        ------
        TypeError
            If a value is no number, or not of the group's kind (a float for an integer group).
        OverflowError
            If a value of an array is beyond the group's type.
        ValueError
            If an array has another shape.
        RuntimeError
            If there is such a variable, there is no data, rows differ in number from the secondary
            values or in length from each other, or there is more than primary labels.
        """
        values = _elements(data, self._dtype, self._shape)
        self._add_variable_with_data_native_array(variable_name, native(si_unit), values)

    def append_data(
        self, variable_name: str, data: Iterable[Iterable[ElementT]] | NDArray[Any]
    ) -> None:
        """Append values to a variable.

        Parameters
        ----------
        variable_name
            The name, in any case.
        data
            As of ``add_variable_with_data``, whose errors hold too.
        """
        self._append_data_native_array(variable_name, _elements(data, self._dtype, self._shape))


def _elements(data: object, dtype: type[np.generic], shape: tuple[int | None, ...]) -> Any:  # noqa: ANN401
    """Return data as the library takes it: an array as one of its elements, all else as it is."""
    if not hasattr(data, "__array__"):
        return data
    array = np.asarray(data)
    free = all(length is None for length in shape)
    if len(array.shape) != len(shape) or not (free or array.shape[0] == shape[0]):
        raise ValueError(f"data must be an array of shape {_words(shape)}, not {array.shape}")
    elements = _converted(array, dtype)
    return elements if len(shape) == 1 else list(elements)


def _words(shape: tuple[int | None, ...]) -> str:
    if len(shape) == 1:
        return "(points,)"
    return f"({shape[0] or 'secondary values'}, points)"


def _converted(array: NDArray[Any], dtype: type[np.generic]) -> NDArray[Any]:
    with np.errstate(over="ignore"):
        elements = array.astype(dtype, casting="same_kind", copy=False)
    whole = np.issubdtype(dtype, np.integer)
    lost = elements != array if whole else np.isinf(elements) & ~np.isinf(array)
    if lost.any():
        raise OverflowError(f"data holds values beyond the range of {np.dtype(dtype)}")
    return elements


@registered
class OutputGroup1D_Float32(OutputGroup1D[float], _proxy.OutputGroup1D_Float32):
    """An output group of 4-byte floats over one independent variable."""

    _dtype: ClassVar[type[np.generic]] = np.float32


@registered
class OutputGroup1D_Float64(OutputGroup1D[float], _proxy.OutputGroup1D_Float64):
    """An output group of 8-byte floats over one independent variable."""

    _dtype: ClassVar[type[np.generic]] = np.float64


@registered
class OutputGroup1D_Int32(OutputGroup1D[int], _proxy.OutputGroup1D_Int32):
    """An output group of 4-byte integers over one independent variable."""

    _dtype: ClassVar[type[np.generic]] = np.int32


@registered
class OutputGroup2D_Float32(OutputGroup2D[float], _proxy.OutputGroup2D_Float32):
    """An output group of 4-byte floats over two independent variables."""

    _dtype: ClassVar[type[np.generic]] = np.float32


@registered
class OutputGroup2D_Float64(OutputGroup2D[float], _proxy.OutputGroup2D_Float64):
    """An output group of 8-byte floats over two independent variables."""

    _dtype: ClassVar[type[np.generic]] = np.float64


@registered
class OutputGroup2D_Int32(OutputGroup2D[int], _proxy.OutputGroup2D_Int32):
    """An output group of 4-byte integers over two independent variables."""

    _dtype: ClassVar[type[np.generic]] = np.int32


_CLASSES_1D: dict[str, type[OutputGroup1D[Any]]] = {
    "float32": OutputGroup1D_Float32,
    "float64": OutputGroup1D_Float64,
    "int32": OutputGroup1D_Int32,
}
_CLASSES_2D: dict[str, type[OutputGroup2D[Any]]] = {
    "float32": OutputGroup2D_Float32,
    "float64": OutputGroup2D_Float64,
    "int32": OutputGroup2D_Int32,
}
ClassT = TypeVar("ClassT")


def output_group_1d(
    group_path: StrPath,
    group_name: str,
    independent_variable: IndependentVariable,
    *,
    dtype: DTypeLike = np.float32,
    data_source: str = "UserDefined",
    group_config: str = "TABLE",
    variable_data_format: int = VariableDataFormat.Binary,
) -> OutputGroup1D[Any]:
    """Make an output group over one independent variable, for values of a NumPy type.

    Parameters
    ----------
    dtype
        float32, float64 or int32.
    group_path, group_name, independent_variable, data_source, group_config, variable_data_format
        As of ``OutputGroup1D``.

    Raises
    ------
    ValueError
        If the library does not write the type.
    RuntimeError
        As ``OutputGroup1D`` does.

    Examples
    --------
    >>> wind = api.IndependentVariable("Hub wind speed", "m/s", [4.0, 8.0, 12.0])
    >>> group = api.output_group_1d("results/curve.%01", "Power curve", wind)
    >>> group.add_variable_with_data("Electrical power", "W", np.array([0.1e6, 1.2e6, 3.0e6]))
    >>> api.write_output(group)
    True
    """
    return _class_for(dtype, _CLASSES_1D)(
        group_path,
        group_name,
        data_source,
        group_config,
        independent_variable,
        variable_data_format,
    )


def output_group_2d(
    group_path: StrPath,
    group_name: str,
    primary_independent_variable: IndependentVariable,
    secondary_independent_variable: IndependentVariable,
    *,
    dtype: DTypeLike = np.float32,
    data_source: str = "UserDefined",
    group_config: str = "TABLE",
    variable_data_format: int = VariableDataFormat.Binary,
) -> OutputGroup2D[Any]:
    """Make an output group over two independent variables, for values of a NumPy type.

    Parameters and errors are those of ``output_group_1d`` and ``OutputGroup2D``.
    """
    return _class_for(dtype, _CLASSES_2D)(
        group_path,
        group_name,
        data_source,
        group_config,
        primary_independent_variable,
        secondary_independent_variable,
        variable_data_format,
    )


def _class_for(dtype: DTypeLike, classes: dict[str, ClassT]) -> ClassT:
    name = np.dtype(dtype).name
    if name not in classes:
        raise ValueError(f"dtype must be {', '.join(classes)}, not {name}")
    return classes[name]
