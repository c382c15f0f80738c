"""Rounds of the same work with the library; what each leaves behind must be nothing."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np

from support.flat import SUFFIXES, Flat, get_run, get_variable
from support.memory import growth
from support.run_files import RunFiles
from support.scenarios import group_1d, group_2d

#: Group, variable, type and number of axes; each in a file of another form.
FORMS = [
    ("Summary", "Rotor speed", "float32", 1),
    ("Blade loads", "Blade moment", "float64", 2),
    ("State", "Rotor speed", "int32", 1),
]
WHOLE = "_get_data_for_all_independent_variable_values_native_array"


def write_run(folder: Path) -> None:
    state = group_1d("I*4", name="State", number=3, text=True)
    RunFiles([group_1d(), group_2d("R*8", number=2), state]).write(folder)


def refused(call: Callable[..., object], *arguments: object) -> None:
    try:
        call(*arguments)
    except (RuntimeError, TypeError, ValueError, OverflowError):
        return
    raise AssertionError(arguments)


def _variable(folder: Path, form: int) -> Flat:
    group, name, kind, axes = FORMS[form]
    return get_variable(get_run(folder), name, kind, axes, group)


def _all_data(variable: Flat) -> object:
    if variable.family.startswith("Variable1D"):
        return variable._get_data_native_array()
    return getattr(variable, WHOLE)()


def run_variable_and_data(folder: Path, count: int) -> None:
    native.TabulonApi_clear_runs()
    variable = _variable(folder, count % 3)
    if count % 3 != 1:
        array, values = variable._get_data_numpy_from_vector(), variable._get_data_native_array()
    else:
        array = variable._get_data_at_index_numpy_from_vector(count % 2)
        values = variable._get_data_at_index_native_array(count % 2)
    assert array.tolist() == list(values)


def one_run_read_and_unloaded(folder: Path, _count: int) -> None:
    run = get_run(folder)
    for form, (group, name, _, _) in enumerate(FORMS):
        assert _all_data(_variable(folder, form))
        assert run.unload_variable_from_specific_group(name, group) is True


def groups_axes_and_figures(folder: Path, count: int) -> None:
    native.TabulonApi_clear_runs()
    for pointer in get_run(folder)._get_all_groups_native_array():
        group = Flat("Group", pointer)
        assert group._get_variable_names_native_array()
        for each in group._get_independent_variables_native_array():
            axis = Flat("IndependentVariable", each)
            assert len(axis._get_values_as_number_numpy_from_vector())
            assert axis._get_values_as_string_native_array()
    one, two = _variable(folder, 2 * (count % 2)), _variable(folder, 1)
    assert one.get_mean() != one.get_maximum_contemporaneous("Tower moment")
    assert two.get_mean_at_index(1) != two.get_maximum_at_value(20.5)


def searches(folder: Path, _count: int) -> None:
    native.TabulonApi_clear_runs()
    find = native.TabulonApi__get_runs_matching_name_regex_native_array
    assert len(find(str(folder), "r.n")) == 1
    walk = native.new_RunsIterator(str(folder))
    assert native.RunsIterator_get_next_run(walk)
    assert native.RunsIterator_get_next_run(walk) is None


def the_package(folder: Path, count: int) -> None:
    from tabulon import api

    api.clear_runs()
    run = api.get_run(folder, "run")
    group, name, _, axes = FORMS[count % 3]
    if axes == 1:
        variable = run.get_group(group).get_variable_1d(name)
        assert variable.get_data().max() == variable.get_maximum()
    else:
        table = run.get_variable_2d(name)
        assert table.get_data_for_all_independent_variable_values().shape == (3, 5)
        assert table.get_mean_at_index(0)


def output_groups(folder: Path, count: int) -> None:
    axes = [
        native.new_IndependentVariable("Time", "s", 0.0, 0.5),
        native.new_IndependentVariable("Case", "N", ["a", "b"]),
    ][: 1 + count % 2]
    kind = list(SUFFIXES)[count % 3]
    family = f"OutputGroup{len(axes)}D_{SUFFIXES[kind]}"
    given = (str(folder / "out.%01"), "Out", "UserDefined", "TABLE", *axes, count // 6 % 2)
    group = Flat(family, getattr(native, f"new_{family}")(*given))
    data: list[object] = [1, 2, 3] if len(axes) == 1 else [[1, 2, 3], [4, 5, 6]]
    group._add_variable_with_data_native_array("x", "m", data)
    group._append_data_native_array("x", np.array(data, kind))
    assert native.TabulonApi_write_output(group.pointer) is True


def containers(_folder: Path, _count: int) -> None:
    for element in ("Int", "Double", "ArrayOfFloat"):
        values = [[1.0, 2.0]] * 9 if element == "ArrayOfFloat" else range(9)
        family = f"ArrayOf{element}"
        array = Flat(family, getattr(native, f"new_{family}")(values))
        part = Flat(family, array.__getattr__("__getitem__")(slice(1, 4)))
        array.__getattr__("__setitem__")(slice(0, 2), part.pointer)
        walk = array.iterator()
        assert native.SwigPyIterator_next(walk) == array.__getattr__("__getitem__")(0)
        native.SwigPyIterator_copy(walk)


def refusals(folder: Path, _count: int) -> None:
    native.TabulonApi_clear_runs()
    run = get_run(folder)
    refused(get_run, folder / "nowhere")
    refused(get_run, folder, "none")
    for name in ("none", "Rotor speed", 5, None):
        refused(run._get_variable, name)
    refused(run.get_group, "none")
    refused(native.Run_get_name, None)
    refused(_variable(folder, 0).get_maximum_contemporaneous, "none")
    deep = _variable(folder, 1)
    for index in (99, -1, 0.5):
        refused(deep._get_data_at_index_numpy_from_vector, index)
    refused(deep._get_data_at_value_native_array, "none")
    refused(native.new_IndependentVariable, "", "m", [1.0])
    refused(native.new_IndependentVariable, "x", "m", [1.0, "a"])


def data_that_cannot_be_read(folder: Path, count: int) -> None:
    def read() -> object:
        native.TabulonApi_clear_runs()
        return _all_data(_variable(folder, count % 3))

    path = folder / f"run.$0{count % 3 + 1}"
    content = path.read_bytes()
    path.write_bytes(content[: len(content) // 2])
    refused(read)
    path.unlink()
    refused(read)
    path.write_bytes(content)
    assert read()


#: Work, and how many rounds of it.
ROUNDS: dict[Callable[[Path, int], None], int] = {
    run_variable_and_data: 10_000,
    one_run_read_and_unloaded: 3_000,
    groups_axes_and_figures: 1_500,
    searches: 1_500,
    the_package: 1_500,
    output_groups: 1_500,
    containers: 3_000,
    refusals: 2_000,
    data_that_cannot_be_read: 1_500,
}


def growth_over_rounds(folder: str, work: str, rounds: int) -> int:
    """Return by how many bytes the process grows over four fifths of the rounds."""
    write_run(Path(folder))
    step: Callable[[Path, int], None] = globals()[work]
    return growth(lambda count: step(Path(folder), count), rounds // 5, rounds)


def growth_with_held_arrays(folder: str, rounds: int) -> int:
    """Return by how many bytes the process grows if all arrays are held."""
    write_run(Path(folder))
    held = []

    def step(_count: int) -> None:
        native.TabulonApi_clear_runs()
        held.append((_variable(Path(folder), 0)._get_data_numpy_from_vector(), bytes(2048)))

    return growth(step, rounds // 5, rounds)
