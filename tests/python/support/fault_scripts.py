"""What a script does with the library, for tests in which the system fails."""

from __future__ import annotations

import shutil
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

import numpy as np
from tabulon import _tables

from support.fault_session import Script, Session, run_with_faults
from support.faults import FAULTS, Shim
from support.run_files import RunFiles
from support.scenarios import CASES, group_1d, group_2d

GROUPS = [
    group_1d(),
    group_2d("R*8", number=2),
    group_1d("I*4", name="Text", number=3, text=True, statistics_blocks=0, primary=CASES),
    group_2d("R*4", name="Text loads", number=4, text=True),
]
SPEED, MOMENT = "Rotor speed", "Blade moment"


def write_runs(folder: Path) -> None:
    """Write three runs, one of them in a folder below."""
    RunFiles(GROUPS).write(folder)
    RunFiles(GROUPS[:1], "other").write(folder)
    RunFiles(GROUPS[:1], "below").write(folder / "deeper")


def listing(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    call("Run_get_name", run)
    call("Run_contains_variable_1d", run, SPEED)
    groups = call("Run__get_all_groups_native_array", run)
    for group in groups:
        for name in ("get_name", "get_number", "get_header_file_path", "get_data_point_count"):
            call(f"Group_{name}", group)
        call("Group_get_calculation_descriptive_name", group)
        call("Group__get_variable_names_native_array", group)
        call("Group__get_independent_variables_native_array", group)
    call.refused("Run__get_variable", run, "Electrical power")
    call("Run__get_variable_from_specific_output_group", run, SPEED, "Summary")


def lookup(call: Session, folder: Path) -> None:
    """Ask for names before anything else, and for one that stands in several groups."""
    run = call("TabulonApi_get_run", str(folder), "run")
    one = call("Run__get_variable_from_specific_output_group", run, SPEED, "Text")
    call("Variable_get_name", one)
    call("Variable_get_siunit", one)
    call("Variable_get_parent_group_name", one)
    call("Variable_get_parent_group_header_file_full_path", one)
    group = call("Run_get_group", run, "Blade loads")
    call("Group_get_variable", group, MOMENT)
    call("Group__GROUPPREFIX_get_all_variables_2d_float64_native_array", group)
    call("Run_contains_variable_2d", run, "Blade deflection")
    call("Run__get_all_groups_native_array", run)


def axes(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    for name in ("Summary", "Blade loads", "Text"):
        group = call("Run_get_group", run, name)
        for axis in call("Group__get_independent_variables_native_array", group):
            call("IndependentVariable_get_name", axis)
            call("IndependentVariable_get_siunit", axis)
            call("IndependentVariable_get_number_of_values", axis)
            call("IndependentVariable__get_values_as_string_native_array", axis)
            if name != "Text":
                call("IndependentVariable__get_values_as_number_native_array", axis)
                call("IndependentVariable__get_values_as_number_numpy_from_vector", axis)


def reading(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    find = "Run__RUNPREFIX_get_variable_1d_from_specific_output_group"
    for kind, suffix, group in (("float32", "Float32", "Summary"), ("int32", "Int32", "Text")):
        variable = call(f"{find}_{kind}", run, SPEED, group)
        call(f"Variable1D_{suffix}__get_data_numpy_from_vector", variable)
        call(f"Variable1D_{suffix}__get_data_native_array", variable)
        call("Run_unload_variable_from_specific_group", run, SPEED, group)
        variable = call(f"{find}_{kind}", run, "Tower moment", group)
        call(f"Variable1D_{suffix}__get_data_native_array", variable)
        call("Run_contains_variable_1d", run, "Electrical power")


def tables(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    find = "Run__RUNPREFIX_get_variable_2d_from_specific_output_group"
    for kind, suffix, group in (
        ("float64", "Float64", "Blade loads"),
        ("float32", "Float32", "Text loads"),
    ):
        variable = call(f"{find}_{kind}", run, MOMENT, group)
        get = f"Variable2D_{suffix}__get_data"
        call(f"{get}_at_index_numpy_from_vector", variable, 1)
        call(f"{get}_at_index_native_array", variable, 0)
        call(f"{get}_at_value_native_array", variable, 20.5)
        call(f"{get}_at_value_native_array", variable, "41")
        call(f"{get}_for_all_independent_variable_values_native_array", variable)
        call("Run_unload_variable_from_specific_group", run, MOMENT, group)
        call("Run_contains_variable_2d", run, MOMENT)


def unloading(call: Session, folder: Path) -> None:
    """Unload and read again, in another type and without buffers."""
    call("TabulonApi_CacheSettings_set_data_type_for_reading", 2)
    call("TabulonApi_CacheSettings_set_buffered_read_enabled", False)
    run = call("TabulonApi_get_run", str(folder), "other")
    for _ in range(2):
        variable = call("Run__RUNPREFIX_get_variable_1d_float64", run, SPEED)
        call("Variable1D_Float64__get_data_native_array", variable)
        call.once("Run_unload_variable", run, SPEED)
    call("TabulonApi_CacheSettings_set_buffered_read_enabled", True)
    call("TabulonApi_CacheSettings_set_data_type_for_reading", 0)


def statistics(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    find = "Run__RUNPREFIX_get_variable_1d_from_specific_output_group"
    for kind, suffix, group in (("float32", "Float32", "Summary"), ("int32", "Int32", "Text")):
        for name in ("Electrical power", SPEED, "Tower moment"):
            variable = call(f"{find}_{kind}", run, name, group)
            if group == "Text":  # without figures in its header
                call(f"Variable1D_{suffix}__get_data_native_array", variable)
                continue
            _figures(call, variable, suffix)
            call(f"Variable1D_{suffix}__get_data_native_array", variable)
        variable = call(f"{find}_{kind}", run, SPEED, group)
        _figures(call, variable, suffix)


def _figures(call: Session, variable: object, suffix: str) -> None:
    for figure in ("mean", "maximum", "minimum"):
        call(f"Variable1D_{suffix}_get_{figure}", variable)
    call(f"Variable1D_{suffix}_get_maximum_contemporaneous", variable, "Electrical power")
    call(f"Variable1D_{suffix}_get_minimum_contemporaneous", variable, "Tower moment")


def table_statistics(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    find = "Run__RUNPREFIX_get_variable_2d_from_specific_output_group_float64"
    for name in (MOMENT, "Blade shear force", "Blade deflection"):
        variable = call(find, run, name, "Blade loads")
        for figure in ("mean", "maximum", "minimum"):
            call(f"Variable2D_Float64_get_{figure}_at_index", variable, 1)
            call(f"Variable2D_Float64_get_{figure}_at_value", variable, 20.5)
        figure = "maximum_contemporaneous"
        call(f"Variable2D_Float64_get_{figure}_at_index", variable, MOMENT, 2)
        call(f"Variable2D_Float64_get_{figure}_at_value", variable, MOMENT, "41")
        call(
            "Variable2D_Float64__get_data_for_all_independent_variable_values_native_array",
            variable,
        )


def stateless(call: Session, folder: Path) -> None:
    """Read groups as tables; of what a call of these allocates, most is the interpreter's."""
    for number in range(1, len(GROUPS) + 1):
        table = call(_table, str(folder / f"run.%{number:02}"))
        call(_rows, table)
        call(_columns, table)
        call(_reduced, table)
        call(_stored, table)
    call(_listed, str(folder))
    call(_ending, str(folder / "run.%01"))


@contextmanager
def _told_as_the_flat_functions_do() -> Iterator[None]:
    try:
        yield
    except _tables.TableError as error:
        raise RuntimeError(error.text) from None


@_told_as_the_flat_functions_do()
def _table(path: str) -> _tables.GroupTable:
    return _tables.GroupTable.open(path)


@_told_as_the_flat_functions_do()
def _rows(table: _tables.GroupTable) -> list[object]:
    rows = table.rows()
    return [rows.expected, rows.found, rows.torn]


@_told_as_the_flat_functions_do()
def _columns(table: _tables.GroupTable) -> np.ndarray:
    return table.read(_tables.Selection(range(len(table.variables))))


@_told_as_the_flat_functions_do()
def _reduced(table: _tables.GroupTable) -> list[np.ndarray]:
    figures = table.reduce(_tables.Selection([1, 0]))
    return [figures.minimum, figures.maximum_row, figures.mean, figures.deviation]


@_told_as_the_flat_functions_do()
def _stored(table: _tables.GroupTable) -> list[np.ndarray] | None:
    figures = table.stored_figures([0, 1], 1)
    return figures and [figures.maximum, figures.mean, figures.at_minimum]


@_told_as_the_flat_functions_do()
def _listed(root: str) -> list[list[str]]:
    found = _tables.list_runs(root)
    for directory in found.unreadable:
        raise RuntimeError(directory.text)
    return [[run.path, *(header.name for header in run.headers)] for run in found.runs]


@_told_as_the_flat_functions_do()
def _ending(path: str) -> int:
    run = _tables.find_run(path)
    return _tables.completion_state(run.directory + run.termination)


def searching(call: Session, folder: Path) -> None:
    root = str(folder)
    call("TabulonApi__get_runs_native_array", root)
    call("TabulonApi__get_runs_matching_name_native_array", root, "below")
    call("TabulonApi__get_runs_matching_name_regex_native_array", root, "o.*r|be(l)ow")
    for walk in (
        call("new_RunsIterator", root),
        call("new_RunsIterator", root, "other"),
        call("new_RunsIteratorRegex", root, ".*e.*"),
    ):
        names = []
        while (run := call.once("RunsIterator_get_next_run", walk)) is not None:
            names.append(call("Run_get_name", run))
        call.expect("the names", sorted(names))


def endings(call: Session, folder: Path) -> None:
    run = call("TabulonApi_get_run", str(folder), "run")
    for name in (
        "termination_file_content",
        "message_file_content",
        "verification_file_content",
        "timestamp",
        "execution_duration_seconds",
        "completion_state",
        "calculation_type",
        "calculation_descriptive_name",
        "directory",
    ):
        call(f"Run_get_{name}", run)
    call("Run_was_successful", run)
    call("Run_is_calculation_type_supported", run)


def writing(call: Session, folder: Path) -> None:
    for text in (0, 1):
        new = folder / f"new{text}"
        shutil.rmtree(new, ignore_errors=True)
        path = str(new / "deep" / "out.%01")
        time = call("new_IndependentVariable", "Time", "s", 0.0, 0.5)
        given = ("Out put", "UserDefined", "TABLE")
        group = call("new_OutputGroup1D_Float64", path, *given, time, text)
        call.once("OutputGroup1D_Float64_add_variable", group, "x", "m")
        for data in ([1.5, -2.5], np.array([3.5, 4.5]), range(2)):
            call.once("OutputGroup1D_Float64__append_data_native_array", group, "x", data)
        add = "OutputGroup1D_Float64__add_variable_with_data_native_array"
        call.once(add, group, "y", "m/s", (1, 2, 3, 4, 5, 6))
        call("TabulonApi_write_output", group)
        _compare_files(call, new)
        call("IndependentVariable__get_values_as_number_native_array", time)


def table_writing(call: Session, folder: Path) -> None:
    new = folder / "table"
    shutil.rmtree(new, ignore_errors=True)
    path = str(new / "out.%07")
    radius = call("new_IndependentVariable", "Radius", "m", [1.5, 20.0, 41.25])
    cases = call("new_IndependentVariable", "Case", "none", ["a", "b c"])
    given = ("Out put", "UserDefined", "TABLE")
    group = call("new_OutputGroup2D_Int32", path, *given, radius, cases, 0)
    add = "OutputGroup2D_Int32__add_variable_with_data_native_array"
    call.once(add, group, "x", "m", [[1, 2], (3, 4)])
    call.once("OutputGroup2D_Int32__append_data_native_array", group, "x", [[5], [6]])
    call.once(add, group, "y", "m", [[1, 2, 3], [4, 5, 6]])
    call("TabulonApi_write_output", group)
    _compare_files(call, new)
    for name in ("path", "group_name", "data_source", "group_config", "data_file_path"):
        call(f"OutputGroup_get_{name}", group)


def _compare_files(call: Session, folder: Path) -> None:
    for path in sorted(folder.rglob("*.*")):
        call.expect(path.name, path.read_bytes())


def arrays(call: Session, _folder: Path) -> None:
    for name, values in (
        ("Int", [1, 2, 3, 4]),
        ("String", ["a", "long enough to be held outside", "c"]),
        ("ArrayOfDouble", [[1.0, 2.0], [3.0]]),
    ):
        array = call(f"new_ArrayOf{name}", values)
        call(f"ArrayOf{name}___getitem__", array, 1)
        part = call(f"ArrayOf{name}___getitem__", array, slice(0, 2))
        call(f"ArrayOf{name}___getslice__", array, 0, 2)
        call.once(f"ArrayOf{name}___setitem__", array, slice(1, 2), part)
        call.once(f"ArrayOf{name}___setitem__", array, 0, values[-1])
        call.once(f"ArrayOf{name}___setslice__", array, 0, 1, values)
        call.once(f"ArrayOf{name}___delitem__", array, 0)
        walk = call(f"ArrayOf{name}_iterator", array)
        for _ in range(call(f"ArrayOf{name}___len__", array)):
            call.once("SwigPyIterator_next", walk)
        call("SwigPyIterator_copy", walk)


SCRIPTS: dict[str, Script] = {
    script.__name__: script
    for script in (
        *(listing, lookup, axes, reading, tables, unloading, statistics, table_statistics),
        *(stateless, searching, endings, writing, table_writing, arrays),
    )
}


def findings_of(script: str, fault: str, folder: str, most: int | None) -> list[object]:
    """Run a script with one fault after another; return how many, and what they found."""
    session = Session(Shim(FAULTS[fault]), most)
    write_runs(Path(folder))
    run_with_faults(session, SCRIPTS[script], Path(folder))
    return [session.tried, session.findings]
