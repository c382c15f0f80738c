"""Runs."""

from __future__ import annotations

from typing import Any

from tabulon.api import _proxy
from tabulon.api._enumerations import CalculationType, CompletionState
from tabulon.api._group import Group
from tabulon.api._registration import described, registered
from tabulon.api._variables import AnyVariable1D, AnyVariable2D, Variable, of_data_type

__all__ = [
    "Run",
]


@registered
class Run(_proxy.Run):
    """A run of the simulator: what it is, how it ended, and its output groups.

    ``get_run`` and the searches give runs. Groups and variables that are got from a run keep it
    alive.

    Operations that take the name of a variable find it in any case of the name. A name that stands
    in several groups is an error, which the forms ``..._from_specific_output_group`` avoid.
    """

    def __repr__(self) -> str:
        return described(self, lambda: repr(self.get_name()))

    def get_completion_state(self) -> CompletionState:
        """Return how the run ended, as its termination file tells."""
        return CompletionState(super().get_completion_state())

    def get_calculation_type(self) -> CalculationType:
        """Return the calculation that produced the run."""
        return CalculationType(super().get_calculation_type())

    def get_all_groups(self) -> tuple[Group, ...]:
        """Return all output groups, in the order in which the directory lists their headers.

        Raises
        ------
        RuntimeError
            If a header is damaged, or the calculation is not supported.
        """
        return tuple(group._found_in(self) for group in self._get_all_groups_native_array())

    def get_group(self, group_name: str) -> Group:
        """Return an output group.

        Parameters
        ----------
        group_name
            The name, in any case.

        Raises
        ------
        RuntimeError
            If there is no such group, or the calculation is not supported.
        """
        return super().get_group(group_name)._found_in(self)

    def get_variable(self, variable_name: str) -> Variable:
        """Return a variable, for what can be told without its data.

        Raises
        ------
        RuntimeError
            If there is no such variable, or it stands in several groups.
        """
        return self._get_variable(variable_name)._found_in(self)

    def get_variable_from_specific_output_group(
        self, variable_name: str, group_name: str
    ) -> Variable:
        """Return a variable of one group, for what can be told without its data.

        Raises
        ------
        RuntimeError
            If the group has no such variable.
        """
        native = self._get_variable_from_specific_output_group
        return native(variable_name, group_name)._found_in(self)

    def get_variable_1d(self, variable_name: str) -> AnyVariable1D:
        """Return a variable over one independent variable.

        Returns
        -------
        Variable1D_Float32, Variable1D_Float64 or Variable1D_Int32
            The class for the type in which the variable is read.

        Raises
        ------
        RuntimeError
            If there is no such variable, it stands in several groups, or it has two independent
            variables.
        """
        variable: AnyVariable1D = self._typed("get_variable_1d", variable_name)
        return variable

    def get_variable_1d_from_specific_output_group(
        self, variable_name: str, group_name: str
    ) -> AnyVariable1D:
        """Return a variable of one group over one independent variable.

        Returns
        -------
        Variable1D_Float32, Variable1D_Float64 or Variable1D_Int32
            The class for the type in which the variable is read.

        Raises
        ------
        RuntimeError
            If the group has no such variable, or it has two independent variables.
        """
        variable: AnyVariable1D = self._typed("get_variable_1d", variable_name, group_name)
        return variable

    def get_variable_2d(self, variable_name: str) -> AnyVariable2D:
        """Return a variable over two independent variables.

        Returns
        -------
        Variable2D_Float32, Variable2D_Float64 or Variable2D_Int32
            The class for the type in which the variable is read.

        Raises
        ------
        RuntimeError
            If there is no such variable, it stands in several groups, or it has one independent
            variable.
        """
        variable: AnyVariable2D = self._typed("get_variable_2d", variable_name)
        return variable

    def get_variable_2d_from_specific_output_group(
        self, variable_name: str, group_name: str
    ) -> AnyVariable2D:
        """Return a variable of one group over two independent variables.

        Returns
        -------
        Variable2D_Float32, Variable2D_Float64 or Variable2D_Int32
            The class for the type in which the variable is read.

        Raises
        ------
        RuntimeError
            If the group has no such variable, or it has one independent variable.
        """
        variable: AnyVariable2D = self._typed("get_variable_2d", variable_name, group_name)
        return variable

    def _typed(self, operation: str, variable_name: str, *group_name: str) -> Any:  # noqa: ANN401
        """Return the result of a native operation, in its form for the variable's type."""
        if group_name:
            operation += "_from_specific_output_group"
            variable = self._get_variable_from_specific_output_group(variable_name, *group_name)
        else:
            variable = self._get_variable(variable_name)
        native = of_data_type(self, f"_RUNPREFIX_{operation}_{{}}", variable.get_data_type())
        return native(variable_name, *group_name)._found_in(self)
