"""Independent variables, and variables over one or two of them."""

# Classes have the names of the extension module.
# ruff: noqa: N801

from __future__ import annotations

from collections.abc import Callable, Iterable
from functools import partial
from typing import TYPE_CHECKING, Any, Generic, TypeAlias, TypeVar, overload

import numpy as np
from numpy.typing import NDArray

from tabulon._native import has_all_figures
from tabulon.api import _proxy
from tabulon.api._enumerations import AxisTypeId, VariableDataFormat, VariableDataType
from tabulon.api._found import FoundInRun, KeptRun
from tabulon.api._registration import described, registered
from tabulon.api._units import native, readable

__all__ = [
    "IndependentVariable",
    "Variable",
    "Variable1D",
    "Variable1D_Float32",
    "Variable1D_Float64",
    "Variable1D_Int32",
    "Variable2D",
    "Variable2D_Float32",
    "Variable2D_Float64",
    "Variable2D_Int32",
]

if TYPE_CHECKING:
    from tabulon.api._proxy import _Variable1D, _Variable2D
else:
    # The generated classes of a family have no base of their own: it is there for types only.
    _Variable1D = _Variable2D = Generic

ScalarT = TypeVar("ScalarT", bound=np.generic)
ElementT = TypeVar("ElementT", bound=float)
FigureT = TypeVar("FigureT", bound=float)
VariableT = TypeVar("VariableT", bound="Variable")


def of_data_type(owner: object, operation: str, data_type: int) -> Callable[..., Any]:
    """Return the form of a native operation for a type of values."""
    return getattr(owner, operation.format(VariableDataType(data_type).name.lower()))  # type: ignore[no-any-return]


@registered
class IndependentVariable(_proxy.IndependentVariable):
    """What variables are seen against: time, for example, or a position along a blade.

    One of a group has as many values as the group has points or labels along it. For an output
    group it is made from labels, numbers or texts, or from a start value and a step.

    Parameters
    ----------
    name
        The name.
    si_unit
        The unit, for example ``"s"``.
    *values
        The labels in one argument (a sequence of numbers, an array, or a sequence of strings), or
        the start value and the step.

    Raises
    ------
    RuntimeError
        If the name or the unit is empty, or there are no labels.

    Examples
    --------
    >>> time = api.IndependentVariable("Time", "s", 0.0, 0.05)
    >>> station = api.IndependentVariable("Distance along blade", "m", [0.0, 20.5, 41.0])
    """

    @overload
    def __init__(self, name: str, si_unit: str, labels: Iterable[float], /) -> None: ...
    @overload
    def __init__(self, name: str, si_unit: str, labels: Iterable[str], /) -> None: ...
    @overload
    def __init__(self, name: str, si_unit: str, start: float, step: float, /) -> None: ...
    def __init__(self, name: str, si_unit: str, /, *values: Any) -> None:
        plain: Any = map(_plain, values)
        super().__init__(name, native(si_unit), *plain)

    def __repr__(self) -> str:
        return described(self, lambda: repr(self.get_name()))

    def get_siunit(self) -> str:
        """Return the unit, for example ``"s"``; empty if the quantity in the header is unknown."""
        return readable(super().get_siunit())

    def get_axis_type(self) -> AxisTypeId:
        """Return the kind of values: at a fixed interval, labelled numbers or labelled texts."""
        return AxisTypeId(super().get_axis_type())

    def get_values_as_number(self) -> NDArray[np.float64]:
        """Return every value.

        Returns
        -------
        numpy.ndarray
            Shape ``(get_number_of_values(),)``, float64, in the unit of ``get_siunit()``. The
            array lies over the library's memory and keeps it alive.

        Raises
        ------
        RuntimeError
            If the labels are texts.
        """
        return self._get_values_as_number_numpy_from_vector()

    def get_values_as_number_as_tuple(self) -> tuple[float, ...]:
        """Return every value, as ``get_values_as_number`` does, in a tuple."""
        return self._get_values_as_number_native_array()

    def get_values_as_string(self) -> tuple[str, ...]:
        """Return the text of every value."""
        return self._get_values_as_string_native_array()


def _plain(value: object) -> object:
    """Return NumPy numbers and arrays as Python numbers, which the library takes."""
    return value.tolist() if isinstance(value, np.ndarray | np.generic) else value


@registered
class Variable(FoundInRun, _proxy.Variable):
    """A variable of an output group, without its data.

    ``get_variable_1d`` and ``get_variable_2d`` of a run or group give one with data.
    """

    def __repr__(self) -> str:
        return described(self, lambda: f"{self.get_name()!r} of {self.get_parent_group_name()!r}")

    def get_siunit(self) -> str:
        """Return the unit, for example ``"Nm"``; empty if the quantity in the header is unknown."""
        return readable(super().get_siunit())

    def get_data_type(self) -> VariableDataType:
        """Return the type of the values as read, which a setting may change from the file's."""
        return VariableDataType(super().get_data_type())

    def get_data_format(self) -> VariableDataFormat:
        """Return the form of the data file."""
        return VariableDataFormat(super().get_data_format())

    def get_independent_variables(self) -> tuple[IndependentVariable, ...]:
        """Return the independent variables, the primary one first."""
        return self._get_independent_variables_native_array()

    def _has_header_statistics(self) -> bool:
        return has_all_figures(self.get_parent_group_header_file_full_path())

    def _figure(
        self,
        figure: Callable[..., FigureT],
        compute: Callable[[NDArray[Any]], Any],
        get_data: Callable[..., NDArray[Any]],
        *where: float | str,
    ) -> FigureT:
        """Return a figure as the library has it, or as the data gives it.

        The library tells figures from the header, without the data file. Where the header has
        none, what the library computes holds for wholly loaded groups only.
        """
        if not self._has_header_statistics():
            values = get_data(*where)
            if values.size:
                computed: FigureT = compute(values)
                return computed
        return figure(*where)

    def _sibling_of(self, find: Callable[[KeptRun], VariableT]) -> VariableT:
        """Return another variable of the group."""
        if self._run is None:
            raise RuntimeError(
                "The header has no statistics, and a second variable cannot be found without the"
                f" run: get '{self.get_name()}' from a Run or a Group"
            )
        other = find(self._run)
        if other.get_parent_group_number() != self.get_parent_group_number():
            raise RuntimeError(
                f"The output group of '{self.get_name()}' has no variable '{other.get_name()}';"
                " another group of the same name has"
            )
        return other


class Variable1D(Variable, _Variable1D[ScalarT, ElementT]):
    """A variable over one independent variable.

    Data is read when it is first asked for. Figures come from the header of the group where it
    has them, and the data file is not opened; else they are computed from the data. NaN among the
    data then gives NaN.
    """

    def get_data(self) -> NDArray[ScalarT]:
        """Return the values, in the order of the file.

        Returns
        -------
        numpy.ndarray
            Shape ``(get_data_point_count(),)``, of the type of the class, in the unit of
            ``get_siunit()``. The array lies over the library's memory and keeps it alive: what is
            written into it is seen by later requests.

        Raises
        ------
        RuntimeError
            If the data file is missing, or shorter than the header says.
        """
        return self._get_data_numpy_from_vector()

    def get_data_as_tuple(self) -> tuple[ElementT, ...]:
        """Return a copy of the values, as ``get_data`` does, in a tuple."""
        return self._get_data_native_array()

    def get_mean(self) -> float:
        """Return the mean, in the unit of ``get_siunit()``.

        Raises
        ------
        RuntimeError
            If there is no data.
        """
        return self._figure(super().get_mean, _mean, self.get_data)

    def get_maximum(self) -> ElementT:
        """Return the largest value, in the unit of ``get_siunit()``.

        Raises
        ------
        RuntimeError
            If there is no data.
        """
        return self._figure(super().get_maximum, _maximum, self.get_data)

    def get_minimum(self) -> ElementT:
        """Return the smallest value, in the unit of ``get_siunit()``.

        Raises
        ------
        RuntimeError
            If there is no data.
        """
        return self._figure(super().get_minimum, _minimum, self.get_data)

    def get_maximum_contemporaneous(self, variable_name: str) -> ElementT:
        """Return the value of another variable where this one has its maximum.

        Parameters
        ----------
        variable_name
            A variable of the same group, in any case.

        Returns
        -------
        int or float
            The value, in the unit of the other variable.

        Raises
        ------
        RuntimeError
            If the group has no such variable, or there is no data.
        """
        return self._figure(
            partial(super().get_maximum_contemporaneous, variable_name),
            lambda values: _element(self._sibling(variable_name).get_data(), values.argmax()),
            self.get_data,
        )

    def get_minimum_contemporaneous(self, variable_name: str) -> ElementT:
        """Return the value of another variable where this one has its minimum.

        Parameters and errors are those of ``get_maximum_contemporaneous``.
        """
        return self._figure(
            partial(super().get_minimum_contemporaneous, variable_name),
            lambda values: _element(self._sibling(variable_name).get_data(), values.argmin()),
            self.get_data,
        )

    def _sibling(self, name: str) -> Variable1D[Any, Any]:
        group = self.get_parent_group_name()
        return self._sibling_of(
            lambda run: run.get_variable_1d_from_specific_output_group(name, group)
        )


class Variable2D(Variable, _Variable2D[ScalarT, ElementT]):
    """A variable over two independent variables, such as time and a position along a blade.

    One secondary value at a time is read, when it is first asked for. Operations *at value* take
    the secondary value, a number or its text, and take the first of equal ones. Operations *at
    index* take its index from 0, and serve values that are duplicated, or not exact (5.0 that was
    written as 5.0000001).

    Figures come from the header of the group where it has them, and the data file is not opened;
    else they are computed from the data. NaN among the data then gives NaN.
    """

    def get_data_at_value(self, value: float | str) -> NDArray[ScalarT]:
        """Return the values along the primary independent variable at a secondary value.

        Parameters
        ----------
        value
            The secondary value, in its unit, or its text.

        Returns
        -------
        numpy.ndarray
            Shape ``(get_data_point_count(),)``, of the type of the class, in the unit of
            ``get_siunit()``. The array lies over the library's memory and keeps it alive: what is
            written into it is seen by later requests.

        Raises
        ------
        RuntimeError
            If there is no such value, or the data file is missing or too short.
        """
        return self._get_data_at_value_numpy_from_vector(value)

    def get_data_at_value_as_tuple(self, value: float | str) -> tuple[ElementT, ...]:
        """Return a copy of the values, as ``get_data_at_value`` does, in a tuple."""
        return self._get_data_at_value_native_array(value)

    def get_data_at_index(self, index: int) -> NDArray[ScalarT]:
        """Return the values along the primary independent variable at a secondary index.

        Parameters
        ----------
        index
            The index of the secondary value, from 0.

        Returns
        -------
        numpy.ndarray
            As of ``get_data_at_value``.

        Raises
        ------
        OverflowError
            If the index is negative.
        RuntimeError
            If there is no such index, or the data file is missing or too short.
        """
        return self._get_data_at_index_numpy_from_vector(index)

    def get_data_at_index_as_tuple(self, index: int) -> tuple[ElementT, ...]:
        """Return a copy of the values, as ``get_data_at_index`` does, in a tuple."""
        return self._get_data_at_index_native_array(index)

    def get_data_for_all_independent_variable_values(self) -> NDArray[ScalarT]:
        """Return a copy of all values.

        Returns
        -------
        numpy.ndarray
            Shape ``(secondary values, get_data_point_count())``, of the type of the class, in the
            unit of ``get_siunit()``.

        Raises
        ------
        RuntimeError
            If the data file is missing, or shorter than the header says.
        """
        rows: Iterable[Iterable[ElementT]]
        if self.get_data_format() == VariableDataFormat.ASCII:
            # A text file is read from its start for each request: one is enough.
            rows = self.get_data_for_all_independent_variable_values_as_tuple()
        else:
            count = self.get_independent_variables()[1].get_number_of_values()
            rows = [self.get_data_at_index(index) for index in range(count)]
        return np.array(rows, dtype=self.get_data_type().name.lower())

    def get_data_for_all_independent_variable_values_as_tuple(
        self,
    ) -> tuple[tuple[ElementT, ...], ...]:
        """Return a copy of all values: a tuple for each secondary value."""
        return self._get_data_for_all_independent_variable_values_native_array()

    def get_mean_at_value(self, value: float | str) -> float:
        """Return the mean at a secondary value; errors as of ``get_data_at_value``."""
        return self._figure(super().get_mean_at_value, _mean, self.get_data_at_value, value)

    def get_mean_at_index(self, index: int) -> float:
        """Return the mean at a secondary index; errors as of ``get_data_at_index``."""
        return self._figure(super().get_mean_at_index, _mean, self.get_data_at_index, index)

    def get_maximum_at_value(self, value: float | str) -> ElementT:
        """Return the largest value at a secondary value; errors as of ``get_data_at_value``."""
        return self._figure(super().get_maximum_at_value, _maximum, self.get_data_at_value, value)

    def get_maximum_at_index(self, index: int) -> ElementT:
        """Return the largest value at a secondary index; errors as of ``get_data_at_index``."""
        return self._figure(super().get_maximum_at_index, _maximum, self.get_data_at_index, index)

    def get_minimum_at_value(self, value: float | str) -> ElementT:
        """Return the smallest value at a secondary value; errors as of ``get_data_at_value``."""
        return self._figure(super().get_minimum_at_value, _minimum, self.get_data_at_value, value)

    def get_minimum_at_index(self, index: int) -> ElementT:
        """Return the smallest value at a secondary index; errors as of ``get_data_at_index``."""
        return self._figure(super().get_minimum_at_index, _minimum, self.get_data_at_index, index)

    def get_maximum_contemporaneous_at_value(
        self, variable_name: str, value: float | str
    ) -> ElementT:
        """Return the value of another variable where this one has its maximum at a secondary value.

        Parameters
        ----------
        variable_name
            A variable of the same group, in any case.
        value
            The secondary value, in its unit, or its text; it holds for both variables.

        Returns
        -------
        int or float
            The value, in the unit of the other variable.

        Raises
        ------
        RuntimeError
            If the group has no such variable, or there is no such value or no data.
        """
        return self._figure(
            partial(super().get_maximum_contemporaneous_at_value, variable_name),
            lambda values: _element(
                self._sibling(variable_name).get_data_at_value(value), values.argmax()
            ),
            self.get_data_at_value,
            value,
        )

    def get_maximum_contemporaneous_at_index(self, variable_name: str, index: int) -> ElementT:
        """Return the same as ``get_maximum_contemporaneous_at_value`` for a secondary index."""
        return self._figure(
            partial(super().get_maximum_contemporaneous_at_index, variable_name),
            lambda values: _element(
                self._sibling(variable_name).get_data_at_index(index), values.argmax()
            ),
            self.get_data_at_index,
            index,
        )

    def get_minimum_contemporaneous_at_value(
        self, variable_name: str, value: float | str
    ) -> ElementT:
        """Return the value of another variable where this one has its minimum at a secondary value.

        Parameters and errors are those of ``get_maximum_contemporaneous_at_value``.
        """
        return self._figure(
            partial(super().get_minimum_contemporaneous_at_value, variable_name),
            lambda values: _element(
                self._sibling(variable_name).get_data_at_value(value), values.argmin()
            ),
            self.get_data_at_value,
            value,
        )

    def get_minimum_contemporaneous_at_index(self, variable_name: str, index: int) -> ElementT:
        """Return the same as ``get_minimum_contemporaneous_at_value`` for a secondary index."""
        return self._figure(
            partial(super().get_minimum_contemporaneous_at_index, variable_name),
            lambda values: _element(
                self._sibling(variable_name).get_data_at_index(index), values.argmin()
            ),
            self.get_data_at_index,
            index,
        )

    def _sibling(self, name: str) -> Variable2D[Any, Any]:
        group = self.get_parent_group_name()
        return self._sibling_of(
            lambda run: run.get_variable_2d_from_specific_output_group(name, group)
        )


def _mean(values: NDArray[Any]) -> float:
    return float(values.mean(dtype=np.float64))


def _maximum(values: NDArray[Any]) -> float:
    return _element(values, values.argmax())


def _minimum(values: NDArray[Any]) -> float:
    return _element(values, values.argmin())


def _element(values: NDArray[Any], index: np.intp) -> float:
    element: float = values[index].item()
    return element


@registered
class Variable1D_Float32(Variable1D[np.float32, float], _proxy.Variable1D_Float32):
    """A variable of 4-byte floats over one independent variable."""


@registered
class Variable1D_Float64(Variable1D[np.float64, float], _proxy.Variable1D_Float64):
    """A variable of 8-byte floats over one independent variable."""


@registered
class Variable1D_Int32(Variable1D[np.int32, int], _proxy.Variable1D_Int32):
    """A variable of 4-byte integers over one independent variable."""


@registered
class Variable2D_Float32(Variable2D[np.float32, float], _proxy.Variable2D_Float32):
    """A variable of 4-byte floats over two independent variables."""


@registered
class Variable2D_Float64(Variable2D[np.float64, float], _proxy.Variable2D_Float64):
    """A variable of 8-byte floats over two independent variables."""


@registered
class Variable2D_Int32(Variable2D[np.int32, int], _proxy.Variable2D_Int32):
    """A variable of 4-byte integers over two independent variables."""


AnyVariable1D: TypeAlias = Variable1D[Any, Any]
AnyVariable2D: TypeAlias = Variable2D[Any, Any]
