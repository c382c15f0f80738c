"""Arguments at the boundary of the extension module: which are refused, and in which words."""

from __future__ import annotations

from collections.abc import Callable, Iterable
from functools import partial
from unittest.mock import MagicMock

import _TabulonAPI_Python as native
import pytest
from support.flat import message
from surface_table import FAMILY, FUNCTIONS, OVERLOADS, Parameter, overload_text


def bad_argument(name: str, position: int, parameter: Parameter) -> str:
    return f"in method '{name}', argument {position} of type '{parameter.type}'"


def check_each_argument(
    name: str,
    make: Callable[[str], object],
    values: Callable[[Parameter], Iterable[object]],
    kind: type[BaseException],
    prefix: str = "",
) -> None:
    """Call a function with fitting arguments but one, for each position and each value for it."""
    function, parameters = getattr(native, name), FUNCTIONS[name]
    good: list[object] = []
    for position, parameter in enumerate(parameters):
        # Those behind are wrong too: the first bad argument is the one that is reported.
        rest = [object()] * (len(parameters) - position - 1)
        for value in values(parameter):
            text = prefix + bad_argument(name, position + 1, parameter)
            call = partial(function, *good, value, *rest)
            assert message(call, kind) == text, (position, value)
        if position + 1 < len(parameters):
            good.append(make(parameter.object_of) if parameter.object_of else parameter.good)


def test_words_of_the_errors(make: Callable[[str], object]) -> None:
    """Some to the letter: all others are put together like them."""
    run, group, variable = (make(name) for name in ("Run", "Group", "Variable2D_Float64"))
    contains = native.Run_contains_variable_1d
    row = native.Variable2D_Float64__get_data_at_index_numpy_from_vector
    size = (
        "in method 'Variable2D_Float64__get_data_at_index_numpy_from_vector', argument 2 of type "
        "'size_t'"
    )
    name = "argument 2 of type 'std::string const &'"
    mean = "SumaraApi::Variable2D< double >::GetMeanAtValue"
    cases: list[tuple[Callable[[], object], type[Exception], str]] = [
        (
            lambda: contains(run, 5),
            TypeError,
            f"in method 'Run_contains_variable_1d', {name}",
        ),
        (
            lambda: contains(run, None),
            ValueError,
            f"invalid null reference in method 'Run_contains_variable_1d', {name}",
        ),
        (lambda: row(variable, 1.0), TypeError, size),
        (lambda: row(variable, -1), OverflowError, size),
        (
            lambda: row(variable, 0, 0),
            TypeError,
            "Variable2D_Float64__get_data_at_index_numpy_from_vector expected 2 arguments, got 3",
        ),
        (
            lambda: native.TabulonApi_CacheSettings_set_buffered_read_enabled(1),
            TypeError,
            "in method 'TabulonApi_CacheSettings_set_buffered_read_enabled', argument 1 of type "
            "'bool'",
        ),
        (
            lambda: native.TabulonApi_CacheSettings_set_data_type_for_reading("0"),
            TypeError,
            "in method 'TabulonApi_CacheSettings_set_data_type_for_reading', argument 1 of type "
            "'SumaraApi::DataTypeSpecifier'",
        ),
        (
            lambda: native.Variable2D_Float64_get_mean_at_value(variable, b"5"),
            TypeError,
            "Wrong number or type of arguments for overloaded function "
            "'Variable2D_Float64_get_mean_at_value'.\n  Possible C/C++ prototypes are:\n"
            f"    {mean}(double const)\n    {mean}(std::string const &)\n",
        ),
        (
            lambda: native.Group_get_independent_variable(group, 0, 0),
            TypeError,
            "Group_get_independent_variable expected at most 2 arguments, got 3\n"
            "Additional information:\n"
            "Wrong number or type of arguments for overloaded function "
            "'Group_get_independent_variable'.\n  Possible C/C++ prototypes are:\n"
            "    SumaraApi::Group::GetIndependentVariable(std::string const &) const\n"
            "    SumaraApi::Group::GetIndependentVariable"
            "(SumaraApi::IndependentVariableId const) const\n",
        ),
    ]
    for call, kind, text in cases:
        assert message(call, kind) == text


@pytest.mark.parametrize("name", FUNCTIONS)
def test_argument_of_the_wrong_type(name: str, make: Callable[[str], object]) -> None:
    check_each_argument(name, make, lambda parameter: parameter.wrong, TypeError)


@pytest.mark.parametrize("name", FUNCTIONS)
def test_none_where_an_object_is_needed(name: str, make: Callable[[str], object]) -> None:
    def null(parameter: Parameter) -> list[object]:
        return [None] * parameter.none_is_null

    check_each_argument(name, make, null, ValueError, "invalid null reference ")


@pytest.mark.parametrize(
    "name", [name for name, found in FUNCTIONS.items() if any(p.overflow for p in found)]
)
def test_number_that_does_not_fit(name: str, make: Callable[[str], object]) -> None:
    check_each_argument(name, make, lambda parameter: parameter.overflow, OverflowError)


@pytest.mark.parametrize("name", FUNCTIONS)
def test_wrong_count(name: str) -> None:
    function, count = getattr(native, name), len(FUNCTIONS[name])
    for given in {*range(count), count + 1}:
        if count == 0:
            text = f"_TabulonAPI_Python.{name}() takes no arguments ({given} given)"
        elif count == 1:
            text = f"_TabulonAPI_Python.{name}() takes exactly one argument ({given} given)"
        else:
            text = f"{name} expected {count} arguments, got {given}"
        assert message(lambda g=given: function(*[None] * g), TypeError) == text


@pytest.mark.parametrize("name", OVERLOADS)
def test_wrong_count_for_every_form(name: str) -> None:
    function, forms = getattr(native, name), OVERLOADS[name]
    for given in range(forms.least):
        assert message(lambda g=given: function(*[None] * g), TypeError) == overload_text(name)
    most = forms.most
    text = f"{name} expected at most {most} arguments, got {most + 1}\nAdditional information:\n"
    assert message(lambda: function(*[None] * (most + 1)), TypeError) == text + overload_text(name)


@pytest.mark.parametrize("name", OVERLOADS)
def test_arguments_that_fit_no_form(name: str) -> None:
    function, forms = getattr(native, name), OVERLOADS[name]
    for given in range(max(forms.least, 1), forms.most + 1):
        for value in (object(), 1.5j, MagicMock(__iter__=None)):
            call = lambda g=given, v=value: function(*[v] * g)  # noqa: E731
            assert message(call, TypeError) == overload_text(name)


@pytest.mark.parametrize(
    ("name", "self_type"),
    [
        ("Group_get_independent_variable", "SumaraApi::Group const *"),
        *(
            (f"Variable2D_{suffix}_get_mean_at_value", f"SumaraApi::Variable2D< {element} > *")
            for suffix, _, element in FAMILY
        ),
        ("ArrayOfInt___getitem__", "std::vector< int > *"),
        ("ArrayOfInt___delitem__", "std::vector< int > *"),
        ("SwigPyIterator___sub__", "swig::SwigPyIterator const *"),
    ],
)
def test_none_as_self_of_an_overloaded_function(name: str, self_type: str) -> None:
    text = f"invalid null reference in method '{name}', argument 1 of type '{self_type}'"
    assert message(lambda: getattr(native, name)(None, 0), ValueError) == text


def test_none_as_a_reference_of_an_overloaded_function(make: Callable[[str], object]) -> None:
    null = "invalid null reference in method"
    axis = make("IndependentVariable")
    variable = make("Variable2D_Float64")
    string = "of type 'std::string const &'"
    for call, text in (
        (
            lambda: native.TabulonApi_write_output(None),
            "'TabulonApi_write_output', argument 1 of type "
            "'SumaraApi::IOutputSpecification const &'",
        ),
        (
            lambda: native.new_OutputGroup1D_Float32("a", "b", "c", "d", None),
            "'new_OutputGroup1D_Float32', argument 5 of type 'SumaraApi::IndependentVariable &'",
        ),
        (
            lambda: native.new_OutputGroup2D_Int32("a", "b", "c", "d", axis, None, 0),
            "'new_OutputGroup2D_Int32', argument 6 of type 'SumaraApi::IndependentVariable &'",
        ),
        (
            lambda: native.new_IndependentVariable("a", "b", None),
            "'new_IndependentVariable', argument 3 of type "
            "'std::vector< double,std::allocator< double > > const &'",
        ),
        (lambda: native.new_RunsIterator(None), f"'new_RunsIterator', argument 1 {string}"),
        (lambda: native.new_RunsIterator("a", None), f"'new_RunsIterator', argument 2 {string}"),
        (
            lambda: native.Variable2D_Float64_get_mean_at_value(variable, None),
            f"'Variable2D_Float64_get_mean_at_value', argument 2 {string}",
        ),
    ):
        assert message(call, ValueError) == f"{null} {text}"


@pytest.mark.parametrize(
    "name",
    [
        name
        for name, parameters in FUNCTIONS.items()
        if parameters and parameters[0].object_of not in ("", "TabulonApi")
    ],
)
def test_a_deleted_object_is_none(name: str, make: Callable[[str], object]) -> None:
    parameters = FUNCTIONS[name]
    gone = make(parameters[0].object_of)
    getattr(native, f"delete_{parameters[0].object_of}")(gone)
    rest = [make(p.object_of) if p.object_of else p.good for p in parameters[1:]]
    text = f"invalid null reference {bad_argument(name, 1, parameters[0])}"
    assert message(lambda: getattr(native, name)(gone, *rest), ValueError) == text


@pytest.mark.parametrize("name", [name for name in FUNCTIONS if FUNCTIONS[name]])
def test_a_mock_is_of_the_wrong_type(name: str) -> None:
    parameters = FUNCTIONS[name]
    call = lambda: getattr(native, name)(*[MagicMock()] * len(parameters))  # noqa: E731
    assert message(call, TypeError) == bad_argument(name, 1, parameters[0])
