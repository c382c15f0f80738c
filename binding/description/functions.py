"""Functions in stubs."""

from __future__ import annotations

from collections.abc import Iterator

from .interface import Function
from .types import ScriptTypes


def _has_names(function: Function) -> bool:
    """Whether SWIG's class has a method with the parameters of the function, and not `*args`.

    It has where there is one form, whose defaults are numbers.
    """
    form, *others = function.forms
    numbers = all((parameter.default or "0").isdecimal() for parameter in form.parameters)
    return not [other for other in others if not (numbers and other.leaves_out)]


def definitions(
    function: Function,
    name: str,
    types: ScriptTypes,
    first: str = "",
    result: str | None = None,
    decorators: tuple[str, ...] = (),
    by_name: bool = False,
) -> Iterator[str]:
    """Give the lines of a function of a stub.

    Parameters
    ----------
    function
        The function.
    name
        Its name in the stub.
    types
        How types are written.
    first
        The parameter in front of the others.
    result
        The type of its result; by default that of the form.
    decorators
        What stands in front of it.
    by_name
        Whether parameters may be given by name, if there is one form.
    """
    forms = [form for form in function.forms if not form.leaves_out]
    for form in forms:
        parameters = [first] if first else []
        for parameter in form.parameters:
            default = " = ..." if parameter.default else ""
            parameters.append(f"{parameter.name}: {types.parameter(parameter.type)}{default}")
        if parameters and not (by_name and _has_names(function)):
            parameters.append("/")
        yield from (("@overload",) if len(forms) > 1 else ())
        yield from decorators
        returned = result or types.result(form.result)
        if function.name == "get_next_run":
            returned += " | None"
        yield f"def {name}({', '.join(parameters)}) -> {returned}: ..."
