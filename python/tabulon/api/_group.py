"""Output groups of a run."""

from __future__ import annotations

from collections.abc import Callable
from typing import Any

from tabulon.api import _proxy
from tabulon.api._enumerations import CalculationType, VariableDataFormat, VariableDataType
from tabulon.api._found import FoundInRun
from tabulon.api._registration import described, registered
from tabulon.api._variables import (
    AnyVariable1D,
    AnyVariable2D,
    IndependentVariable,
    Variable,
    of_data_type,
)

__all__ = [
    "Group",
]


@registered
class Group(FoundInRun, _proxy.Group):
    """An output group: a table of variables over one or two independent variables."""

    def __repr__(self) -> str:
        return described(self, lambda: repr(self.get_name()))

    def get_calculation_type(self) -> CalculationType:
        """Return the calculation that the header names as its source."""
        return CalculationType(super().get_calculation_type())

    def get_variable_data_type(self) -> VariableDataType:
        """Return the type of the values as read, which a setting may change from the file's."""
        return VariableDataType(super().get_variable_data_type())

    def get_variable_data_format(self) -> VariableDataFormat:
        """Return the form of the data file."""
        return VariableDataFormat(super().get_variable_data_format())

    def get_independent_variables(self) -> tuple[IndependentVariable, ...]:
        """Return the independent variables, the primary one first."""
        return self._get_independent_variables_native_array()

    def get_variable_names(self) -> tuple[str, ...]:
        """Return the names of the variables, in the order of the header."""
        return self._get_variable_names_native_array()

    def get_variable(self, variable_name: str) -> Variable:
        """Return a variable, for what can be told without its data.

        Parameters
        ----------
        variable_name
            The name, in any case.

        Raises
        ------
        RuntimeError
            If there is no such variable.
        """
        return super().get_variable(variable_name)._found_in(self._run)

    def get_variable_1d(self, variable_name: str) -> AnyVariable1D:
        """Return a variable over one independent variable.

        Parameters
        ----------
        variable_name
            The name, in any case.

        Returns
        -------
        Variable1D_Float32, Variable1D_Float64 or Variable1D_Int32
            The class for the type in which the group is read.

        Raises
        ------
        RuntimeError
            If there is no such variable, or the group has two independent variables.
        """
        variable: AnyVariable1D = self._typed("_GROUPPREFIX_get_variable_1d_{}", variable_name)
        return variable

    def get_variable_2d(self, variable_name: str) -> AnyVariable2D:
        """Return a variable over two independent variables.

        Parameters
        ----------
        variable_name
            The name, in any case.

        Returns
        -------
        Variable2D_Float32, Variable2D_Float64 or Variable2D_Int32
            The class for the type in which the group is read.

        Raises
        ------
        RuntimeError
            If there is no such variable, or the group has one independent variable.
        """
        variable: AnyVariable2D = self._typed("_GROUPPREFIX_get_variable_2d_{}", variable_name)
        return variable

    def get_all_variables_1d(self) -> tuple[AnyVariable1D, ...]:
        """Return all variables, in the order of the header.

        Raises
        ------
        RuntimeError
            If the group has two independent variables.
        """
        return self._all_typed("_GROUPPREFIX_get_all_variables_1d_{}_native_array")

    def get_all_variables_2d(self) -> tuple[AnyVariable2D, ...]:
        """Return all variables, in the order of the header.

        Raises
        ------
        RuntimeError
            If the group has one independent variable.
        """
        return self._all_typed("_GROUPPREFIX_get_all_variables_2d_{}_native_array")

    def _native(self, operation: str) -> Callable[..., Any]:
        return of_data_type(self, operation, self.get_variable_data_type())

    def _typed(self, operation: str, variable_name: str) -> Any:  # noqa: ANN401 - the class depends
        return self._native(operation)(variable_name)._found_in(self._run)

    def _all_typed(self, operation: str) -> tuple[Any, ...]:
        return tuple(variable._found_in(self._run) for variable in self._native(operation)())
