"""Arguments, errors, lifetimes and NumPy arrays at the boundary of the extension module."""

from __future__ import annotations

import gc
import os
import struct
import subprocess
import sys
from collections.abc import Callable, Iterable
from functools import partial
from pathlib import Path
from unittest.mock import MagicMock

import _TabulonAPI_Python as native
import numpy as np
import pytest
from surface_table import (
    ARRAYS,
    FAMILY,
    FUNCTIONS,
    OVERLOADS,
    Parameter,
    overload_text,
)

# A run, written byte by byte

WORDS = {"float32": ("R*4", 4, "f"), "float64": ("R*8", 8, "d"), "int32": ("I*4", 4, "i")}
TIME = "AXISLAB\t'Time'\nAXIUNIT\tT\nAXIMETH\t2\nMIN \t0.0000000E+00\nSTEP\t5.0000000E-01\n"
RADIUS = "AXISLAB\t'Radius'\nAXIUNIT\tL\nAXIMETH\t3\nAXIVAL\t1.5 2.5\n"
TABLE_1D = [[1, 10], [3, 30], [2, 20]]
TABLE_2D = [[[1, 10], [4, 40]], [[2, 20], [6, 60]], [[3, 30], [5, 50]]]


def write_group(
    run: Path, number: int, name: str, axes: str, kind: str, table: list[object]
) -> None:
    word, size, code = WORDS[kind]
    values = np.array(table)
    shape = (values.shape[-1], *values.shape[1:-1], values.shape[0])
    header = (
        f"FILE\t{run.name}.${number:02}\nACCESS\tD\nFORM\tF\nRECL\t{size}\nFORMAT\t{word}\n"
        f"CONTENT\t'POWPROD'\nCONFIG\t'TRANSIENT'\nNDIMENS\t{len(shape)}\n"
        "DIMENS\t" + "\t".join(map(str, shape)) + f"\nGENLAB\t'{name}'\n"
        f"VARIAB\t'x {name}' 'y {name}'\nVARUNIT\tL L/T\n{axes}NVARS\t0\n"
    )
    run.with_name(f"{run.name}.%{number:02}").write_bytes(header.encode())
    numbers = values.ravel().tolist()
    run.with_name(f"{run.name}.${number:02}").write_bytes(
        struct.pack(f"<{len(numbers)}{code}", *numbers)
    )


def write_run(folder: Path, name: str = "run") -> Path:
    run = folder / name
    for ending, text in (("TE", "Run completed.\n"), ("VE", "verified\n"), ("ME", "no messages\n")):
        folder.joinpath(f"{name}.${ending}").write_bytes(text.encode())
    for n, kind in enumerate(WORDS):
        write_group(run, 1 + n, f"1d {kind}", TIME, kind, TABLE_1D)
        write_group(run, 4 + n, f"2d {kind}", RADIUS + TIME, kind, TABLE_2D)
    return run


@pytest.fixture
def run(tmp_path: Path) -> object:
    write_run(tmp_path)
    native.TabulonApi_clear_runs()
    return native.TabulonApi_get_run(str(tmp_path), "run")


def variable_1d(run: object, kind: str, axis: str = "x") -> object:
    return getattr(native, f"Run__RUNPREFIX_get_variable_1d_{kind}")(run, f"{axis} 1d {kind}")


def variable_2d(run: object, kind: str, axis: str = "x") -> object:
    return getattr(native, f"Run__RUNPREFIX_get_variable_2d_{kind}")(run, f"{axis} 2d {kind}")


@pytest.fixture(scope="module")
def kept_folder(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Give a folder with a run that nobody changes."""
    folder = tmp_path_factory.mktemp("kept")
    write_run(folder)
    return folder


@pytest.fixture
def make(kept_folder: Path) -> Callable[[str], object]:
    """Make a fresh object of a class."""
    folder = str(kept_folder)
    run = native.TabulonApi_get_run(folder, "run")

    def axis() -> object:
        return native.new_IndependentVariable("Time", "s", 0.0, 0.5)

    def output(axes: int, suffix: str) -> object:
        constructor = getattr(native, f"new_OutputGroup{axes}D_{suffix}")
        path = str(kept_folder / "out.%01")
        return constructor(path, "Out", "UserDefined", "TABLE", *(axis() for _ in range(axes)))

    makers: dict[str, Callable[[], object]] = {
        "Run": lambda: native.TabulonApi_get_run(folder, "run"),
        "Group": lambda: native.Run_get_group(run, "1d float32"),
        "IndependentVariable": axis,
        "Variable": lambda: native.Run__get_variable(run, "x 1d float32"),
        "RunsIterator": lambda: native.new_RunsIterator(folder),
        "RunsIteratorRegex": lambda: native.new_RunsIteratorRegex(folder, ".*"),
        "IOutputSpecification": lambda: output(1, "Float32"),
        "OutputGroup": lambda: output(1, "Float32"),
        "TabulonApi_CacheSettings": native.new_TabulonApi_CacheSettings,
        "TabulonApi_SearchSettings": native.new_TabulonApi_SearchSettings,
        "SwigPyIterator": lambda: native.ArrayOfInt_iterator(native.new_ArrayOfInt(3)),
    }
    for suffix, small, _ in FAMILY:
        makers[f"Variable1D_{suffix}"] = lambda small=small: variable_1d(run, small)
        makers[f"Variable2D_{suffix}"] = lambda small=small: variable_2d(run, small)
        for axes in (1, 2):
            makers[f"OutputGroup{axes}D_{suffix}"] = lambda a=axes, s=suffix: output(a, s)
    for name in ARRAYS:
        makers[name] = lambda name=name: getattr(native, f"new_{name}")(3)
    return lambda name: makers[name]()


def message(call: Callable[[], object], kind: type[BaseException]) -> str:
    with pytest.raises(kind) as error:
        call()
    assert type(error.value) is kind
    return str(error.value)


# Arguments, from the table


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


# Choosing an overload


def test_numbers_and_texts_are_told_apart(run: object) -> None:
    variable = variable_2d(run, "float64")
    mean = native.Variable2D_Float64_get_mean_at_value
    native.Variable2D_Float64__get_data_for_all_independent_variable_values_native_array(variable)
    native.Variable2D_Float64__get_data_for_all_independent_variable_values_native_array(
        variable_2d(run, "float64", "y")
    )
    assert mean(variable, 1.5) == mean(variable, "1.5") == 2.0
    assert mean(variable, 2.5) == mean(variable, np.float64(2.5)) == 5.0
    group = native.Run_get_group(run, "2d float64")
    name = native.IndependentVariable_get_name
    for get, held in (
        (native.Group_get_independent_variable, group),
        (native.Variable2D_Float64_get_independent_variable, variable),
    ):
        assert name(get(held, native.IndependentVariableId_PrimaryIndependentVariable)) == "Time"
        assert name(get(held, True)) == "Radius"
        assert name(get(held, "radius")) == "Radius"
        assert "Independent variable was not found" in message(
            lambda g=get, h=held: g(h, "0"), RuntimeError
        )


def test_labels_are_numbers_first_then_strings() -> None:
    for labels, kind in (
        ([1, 2.5], native.AxisTypeId_LabelledValueAxis),
        (np.array([1.0, 2.5]), native.AxisTypeId_LabelledValueAxis),
        (["a", "b"], native.AxisTypeId_LabelledStringAxis),
        ("ab", native.AxisTypeId_LabelledStringAxis),
        (native.new_ArrayOfString(["a", "b"]), native.AxisTypeId_LabelledStringAxis),
    ):
        axis = native.new_IndependentVariable("Name", "N", labels)
        assert native.IndependentVariable_get_axis_type(axis) == kind
        assert native.IndependentVariable_get_number_of_values(axis) == 2
    interval = native.new_IndependentVariable("Time", "s", 0, 1)
    assert native.IndependentVariable_get_axis_type(interval) == native.AxisTypeId_IntervalAxis
    mixed = lambda: native.new_IndependentVariable("Name", "N", ["a", 1])  # noqa: E731
    assert message(mixed, TypeError) == overload_text("new_IndependentVariable")


def test_second_argument_of_a_runs_iterator(tmp_path: Path) -> None:
    write_run(tmp_path)
    write_run(tmp_path, "other")

    def names(*arguments: object) -> set[str]:
        iterator = native.new_RunsIterator(str(tmp_path), *arguments)
        found = iter(lambda: native.RunsIterator_get_next_run(iterator), None)
        return {native.Run_get_name(run) for run in found}

    assert names(native.SearchScope_RootDirectoryOnly) == {"run", "other"}
    assert names("other") == {"other"}
    assert names("other", native.SearchScope_RootDirectoryOnly) == {"other"}
    assert names() == {"run", "other"}


def test_next_run_is_none_at_the_end_and_from_then_on(tmp_path: Path) -> None:
    iterator = native.new_RunsIteratorRegex(str(tmp_path), ".*")
    assert native.RunsIterator_get_next_run(iterator) is None
    assert native.RunsIterator_get_next_run(iterator) is None


# Exceptions of the library


def test_library_failures_are_runtime_errors_with_their_text(tmp_path: Path) -> None:
    text = message(lambda: native.TabulonApi_get_run(str(tmp_path), "none"), RuntimeError)
    assert text.startswith("Sumara Tables error: ")
    assert f"{tmp_path}/none" in text


def test_a_text_with_undecodable_bytes_is_still_told(tmp_path: Path) -> None:
    folder = os.fsdecode(os.fsencode(tmp_path) + b"/r\xff\xc3")
    text = message(lambda: native.TabulonApi_get_run(folder, "none"), RuntimeError)
    assert folder in text
    Path(folder).mkdir()
    assert f"{folder}/none" in message(
        lambda: native.TabulonApi_get_run(folder, "none"), RuntimeError
    )


def test_names_with_undecodable_bytes_survive_the_round_trip(tmp_path: Path) -> None:
    name = b"run\xff".decode("utf-8", "surrogateescape")
    tmp_path.joinpath(f"{name}.$TE").write_bytes(b"Run completed.\n")
    run = native.TabulonApi_get_run(str(tmp_path), name)
    assert native.Run_get_name(run) == name
    again = native.TabulonApi_get_run(native.Run_get_directory(run), native.Run_get_name(run))
    assert native.Run_get_termination_file_path(again) == str(tmp_path / f"{name}.$TE")


# Data in and out


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_results_are_tuples_of_python_numbers(
    run: object, suffix: str, kind: str, element: str
) -> None:
    number = int if element == "int" else float
    data = getattr(native, f"Variable1D_{suffix}__get_data_native_array")(variable_1d(run, kind))
    assert data == (1, 3, 2)
    assert {type(value) for value in data} == {number}
    table = getattr(
        native, f"Variable2D_{suffix}__get_data_for_all_independent_variable_values_native_array"
    )(variable_2d(run, kind))
    assert table == ((1, 2, 3), (4, 6, 5))
    assert {type(value) for row in table for value in row} == {number}
    for key in (2.5, "2.5"):
        row = getattr(native, f"Variable2D_{suffix}__get_data_at_value_native_array")
        assert row(variable_2d(run, kind), key) == (4, 6, 5)
    row = getattr(native, f"Variable2D_{suffix}__get_data_at_index_native_array")
    assert row(variable_2d(run, kind), 1) == (4, 6, 5)


def test_statistics_have_the_type_of_the_data_and_means_are_floats(run: object) -> None:
    variable = variable_1d(run, "int32")
    for axis in "xy":
        native.Variable1D_Int32__get_data_native_array(variable_1d(run, "int32", axis))
    largest = native.Variable1D_Int32_get_maximum(variable)
    mean = native.Variable1D_Int32_get_mean(variable)
    assert (largest, type(largest)) == (3, int)
    assert (mean, type(mean)) == (2.0, float)


def test_results_of_objects_are_tuples(run: object) -> None:
    groups = native.Run__get_all_groups_native_array(run)
    assert type(groups) is tuple
    assert {native.Group_get_name(group) for group in groups} == {
        f"{axes}d {kind}" for axes in (1, 2) for kind in WORDS
    }
    group = native.Run_get_group(run, "2d float32")
    assert native.Group__get_variable_names_native_array(group) == ("x 2d float32", "y 2d float32")
    axes = native.Group__get_independent_variables_native_array(group)
    assert [native.IndependentVariable_get_name(axis) for axis in axes] == ["Time", "Radius"]
    variables = native.Group__GROUPPREFIX_get_all_variables_2d_float32_native_array(group)
    assert [native.Variable_get_name(variable) for variable in variables] == [
        "x 2d float32",
        "y 2d float32",
    ]


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_any_iterable_is_written(tmp_path: Path, suffix: str, kind: str, element: str) -> None:
    array_of = f"ArrayOf{element.title()}"
    inputs: dict[str, object] = {
        "list": [1, 2, 3],
        "tuple": (1, 2, 3),
        "generator": (n for n in (1, 2, 3)),
        "dict": {1: "a", 2: "b", 3: "c"},
        "range": range(1, 4),
        "numpy": np.array([1, 2, 3], kind),
        "strided": np.array([1, 0, 2, 0, 3], kind)[::2],
        "array": getattr(native, f"new_{array_of}")([1, 2, 3]),
    }
    axis = native.new_IndependentVariable("Time", "s", 0.0, 1.0)
    path = str(tmp_path / "out.%01")
    group = getattr(native, f"new_OutputGroup1D_{suffix}")(
        path, "Out", "UserDefined", "TABLE", axis
    )
    add = getattr(native, f"OutputGroup1D_{suffix}__add_variable_with_data_native_array")
    for name, data in inputs.items():
        assert add(group, name, "m", data) is None
    assert native.TabulonApi_write_output(group) is True
    keep = native.OverwriteBehaviour_DoNotOverwriteExistingOutput
    assert native.TabulonApi_write_output(group, keep) is False
    run = native.TabulonApi_get_run(str(tmp_path), "out")
    for name in inputs:
        variable = getattr(native, f"Run__RUNPREFIX_get_variable_1d_{kind}")(run, name)
        data = getattr(native, f"Variable1D_{suffix}__get_data_native_array")(variable)
        assert data == (1, 2, 3), name


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_any_iterable_of_iterables_is_written(
    tmp_path: Path, suffix: str, kind: str, element: str
) -> None:
    inputs: dict[str, object] = {
        "lists": [[1, 2, 3], [4, 5, 6]],
        "generators": ((3 * m + n for n in (1, 2, 3)) for m in (0, 1)),
        "numpy": np.array([[1, 2, 3], [4, 5, 6]], kind),
        "columns": np.array([[1, 4], [2, 5], [3, 6]], kind).T,
        "array": getattr(native, f"new_ArrayOfArrayOf{element.title()}")([[1, 2, 3], [4, 5, 6]]),
    }
    primary = native.new_IndependentVariable("Time", "s", 0.0, 1.0)
    secondary = native.new_IndependentVariable("Radius", "m", [1.5, 2.5])
    group = getattr(native, f"new_OutputGroup2D_{suffix}")(
        str(tmp_path / "out.%01"), "Out", "UserDefined", "TABLE", primary, secondary
    )
    add = getattr(native, f"OutputGroup2D_{suffix}__add_variable_with_data_native_array")
    for name, data in inputs.items():
        add(group, name, "m", data)
    assert native.TabulonApi_write_output(group) is True
    run = native.TabulonApi_get_run(str(tmp_path), "out")
    whole = getattr(
        native, f"Variable2D_{suffix}__get_data_for_all_independent_variable_values_native_array"
    )
    for name in inputs:
        variable = getattr(native, f"Run__RUNPREFIX_get_variable_2d_{kind}")(run, name)
        assert whole(variable) == ((1, 2, 3), (4, 5, 6)), name


# NumPy arrays


def numpy_array(run: object, suffix: str, kind: str) -> np.ndarray:
    return getattr(native, f"Variable1D_{suffix}__get_data_numpy_from_vector")(
        variable_1d(run, kind)
    )


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_an_array_is_a_plain_view(run: object, suffix: str, kind: str, element: str) -> None:
    rows = [
        getattr(native, f"Variable2D_{suffix}__get_data_at_{way}_numpy_from_vector")(
            variable_2d(run, kind), key
        )
        for way, key in (("value", 2.5), ("value", "2.5"), ("index", 1))
    ]
    for values, expected in (
        (numpy_array(run, suffix, kind), [1, 3, 2]),
        *((r, [4, 6, 5]) for r in rows),
    ):
        assert type(values) is np.ndarray
        assert values.dtype == np.dtype(kind)
        assert values.tolist() == expected
        flags = values.flags
        assert (flags.c_contiguous, flags.aligned, flags.writeable) == (True, True, True)
        assert not flags.owndata


def test_axis_values_are_float64(run: object) -> None:
    variable = variable_2d(run, "float32")
    for key, expected in ((0, [0.0, 0.5, 1.0]), (1, [1.5, 2.5])):
        axis = native.Variable2D_Float32_get_independent_variable(variable, key)
        values = native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)
        assert values.dtype == np.float64
        assert values.tolist() == expected
        assert native.IndependentVariable__get_values_as_number_native_array(axis) == tuple(
            expected
        )
    names = native.new_IndependentVariable("Name", "N", ["a"])
    as_tuple = native.IndependentVariable__get_values_as_number_native_array
    as_array = native.IndependentVariable__get_values_as_number_numpy_from_vector
    text = message(lambda: as_tuple(names), RuntimeError)
    assert message(lambda: as_array(names), RuntimeError) == text


def test_arrays_show_the_same_memory(run: object) -> None:
    first, second = (numpy_array(run, "Float32", "float32") for _ in range(2))
    assert first is not second
    first[1] = 7
    assert second[1] == 7
    read = native.Variable1D_Float32__get_data_native_array(variable_1d(run, "float32"))
    assert read == (1.0, 7.0, 2.0)


def test_an_array_holds_the_variable_and_the_data(run: object) -> None:
    variable = variable_1d(run, "float32")
    values = native.Variable1D_Float32__get_data_numpy_from_vector(variable)
    assert values.base[0] is variable


@pytest.mark.parametrize(
    "unload",
    [
        lambda run: native.Run_unload_variable(run, "x 1d float64"),
        lambda run: native.Run_unload_variable_from_specific_group(
            run, "x 1d float64", "1d float64"
        ),
    ],
)
def test_an_array_outlives_an_unload(run: object, unload: Callable[[object], bool]) -> None:
    values = numpy_array(run, "Float64", "float64")
    assert unload(run) is True
    again = numpy_array(run, "Float64", "float64")
    again[:] = 0
    assert values.tolist() == [1.0, 3.0, 2.0]


def test_an_array_outlives_everything(tmp_path: Path) -> None:
    write_run(tmp_path)
    run = native.TabulonApi_get_run(str(tmp_path), "run")
    variable = variable_1d(run, "float64")
    axis = native.Variable1D_Float64_get_independent_variable(variable)
    values = native.Variable1D_Float64__get_data_numpy_from_vector(variable)
    times = native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)
    native.delete_Variable1D_Float64(variable)
    native.delete_IndependentVariable(axis)
    native.delete_Run(run)
    native.TabulonApi_clear_runs()
    del run, variable, axis
    gc.collect()
    assert values.tolist() == [1.0, 3.0, 2.0]
    assert times.tolist() == [0.0, 0.5, 1.0]


def test_a_variable_without_points_gives_an_empty_array(tmp_path: Path) -> None:
    tmp_path.joinpath("run.$TE").write_bytes(b"Run completed.\n")
    for n, kind in enumerate(WORDS):
        write_group(tmp_path / "run", 1 + n, f"1d {kind}", TIME, kind, np.zeros((0, 2)).tolist())
        header = tmp_path / f"run.%{1 + n:02}"
        header.write_bytes(header.read_bytes().replace(b"DIMENS\t0\t0", b"DIMENS\t2\t0"))
    run = native.TabulonApi_get_run(str(tmp_path), "run")
    for suffix, kind, _ in FAMILY:
        values = numpy_array(run, suffix, kind)
        assert values.shape == (0,)
        assert values.dtype == np.dtype(kind)


def test_the_class_follows_the_type_for_reading(run: object) -> None:
    native.TabulonApi_CacheSettings_set_data_type_for_reading(
        native.DataTypeSpecifier_ReadAsFloat64
    )
    try:
        variable = native.Run__RUNPREFIX_get_variable_1d_float64(run, "x 1d float32")
        values = native.Variable1D_Float64__get_data_numpy_from_vector(variable)
    finally:
        native.TabulonApi_CacheSettings_set_data_type_for_reading(
            native.DataTypeSpecifier_ReadAsSerialisedType
        )
    assert values.dtype == np.float64
    assert values.tolist() == [1.0, 3.0, 2.0]


# Script objects


def run_python(code: str, *arguments: object) -> subprocess.CompletedProcess[str]:
    """Run code in an interpreter of its own: classes, once registered, stay."""
    folder = str(Path(native.__file__).parent)
    start = f"import gc, sys; sys.path.insert(0, {folder!r})\nimport _TabulonAPI_Python as native\n"
    return subprocess.run(
        [sys.executable, "-c", start + code, *map(str, arguments)],
        capture_output=True,
        text=True,
        check=False,
    )


def test_results_are_instances_of_registered_classes(tmp_path: Path) -> None:
    write_run(tmp_path)
    done = run_python(
        """
class Variable:
    __swig_destroy__ = native.delete_Variable
class Variable1D(Variable):
    __swig_destroy__ = native.delete_Variable1D_Float32
class Array:
    __swig_destroy__ = native.delete_ArrayOfInt
    def __init__(self, *arguments):
        native.ArrayOfInt_swiginit(self, native.new_ArrayOfInt(*arguments))
native.Variable_swigregister(Variable)
native.Variable1D_Float32_swigregister(Variable1D)
native.ArrayOfInt_swigregister(Array)
run = native.TabulonApi_get_run(sys.argv[1], "run")
variable = native.Run__RUNPREFIX_get_variable_1d_float32(run, "x 1d float32")
print(type(variable).__name__, native.Variable_get_name(variable))
print(type(native.Run__get_variable(run, "x 1d float32")).__name__)
array = Array(range(4))
print(type(native.ArrayOfInt___getitem__(array, slice(2))).__name__)
print(native.ArrayOfInt___getitem__(array, 3))
data = native.Variable1D_Float32__get_data_numpy_from_vector(variable)
del run, variable, array
gc.collect()
print(data.tolist())
""",
        tmp_path,
    )
    assert done.stderr == ""
    assert done.stdout.splitlines() == [
        "Variable1D x 1d float32",
        "Variable",
        "Array",
        "3",
        "[1.0, 3.0, 2.0]",
    ]


def test_bare_objects_go_without_a_word(tmp_path: Path) -> None:
    write_run(tmp_path)
    done = run_python(
        """
run = native.TabulonApi_get_run(sys.argv[1], "run")
objects = [run, native.Run__get_variable(run, "x 1d float32"), native.new_ArrayOfString("ab")]
objects += [native.new_RunsIterator(sys.argv[1]), native.new_TabulonApi_CacheSettings()]
objects += [native.ArrayOfString_iterator(objects[2])]
objects += [native.new_IndependentVariable("a", "N", "b")]
del run
objects.clear()
gc.collect()
""",
        tmp_path,
    )
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")


def test_a_typed_variable_can_be_deleted_as_a_variable(make: Callable[[str], object]) -> None:
    variable = make("Variable1D_Float32")
    native.delete_Variable(variable)
    text = (
        "invalid null reference in method 'Variable1D_Float32_get_mean', "
        "argument 1 of type 'SumaraApi::Variable1D< float > *'"
    )
    assert message(lambda: native.Variable1D_Float32_get_mean(variable), ValueError) == text


def test_a_deleted_object_is_none_for_everybody(make: Callable[[str], object]) -> None:
    variable, axis = make("Variable2D_Int32"), make("IndependentVariable")
    native.delete_Variable2D_Int32(variable)
    native.delete_IndependentVariable(axis)
    null = "invalid null reference in method"
    assert message(lambda: native.Variable_get_name(variable), ValueError) == (
        f"{null} 'Variable_get_name', argument 1 of type 'SumaraApi::Variable const *'"
    )
    output = lambda: native.new_OutputGroup1D_Int32("a", "b", "c", "d", axis)  # noqa: E731
    assert message(output, ValueError) == (
        f"{null} 'new_OutputGroup1D_Int32', argument 5 of type 'SumaraApi::IndependentVariable &'"
    )
    held = native.new_ArrayOfVariable([variable])
    assert native.ArrayOfVariable___getitem__(held, 0) is None


def test_a_variable_outlives_its_run(tmp_path: Path) -> None:
    write_run(tmp_path)
    native.TabulonApi_clear_runs()
    variable = variable_1d(native.TabulonApi_get_run(str(tmp_path), "run"), "float32")
    native.TabulonApi_clear_runs()
    gc.collect()
    assert native.Variable_get_name(variable) == "x 1d float32"
    assert native.Variable1D_Float32__get_data_native_array(variable) == (1.0, 3.0, 2.0)


def test_registration_takes_classes_and_initialisation_pointers() -> None:
    assert (
        message(lambda: native.ArrayOfInt_swigregister(5), TypeError)
        == "swigregister expected a class"
    )
    text = "swiginit expected an instance and the result of its constructor"
    bare = native.new_ArrayOfInt()
    for arguments in ((object(), 5), (bare, bare), (None, None)):
        assert message(lambda a=arguments: native.ArrayOfInt_swiginit(*a), TypeError) == text


def test_arguments_are_checked_before_numpy_is_imported() -> None:
    done = run_python(
        "sys.modules['numpy'] = None\n"
        "try:\n"
        "    native.IndependentVariable__get_values_as_number_numpy_from_vector(5)\n"
        "except TypeError as error:\n"
        "    print(error)\n"
    )
    text = (
        "in method 'IndependentVariable__get_values_as_number_numpy_from_vector', "
        "argument 1 of type 'SumaraApi::IndependentVariable *'"
    )
    assert (done.returncode, done.stdout, done.stderr) == (0, f"{text}\n", "")
