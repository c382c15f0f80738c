"""Numbers of a header that size memory: checked before memory is taken."""

from __future__ import annotations

import json
from pathlib import Path

import pytest
from support.damage import Header, stream_end, without_system_word
from support.flat import error_of, get_axis, io_error, run_script, tables_error

AXIS_SIZE = "Axis dimensions invalid (DIMENS)"


@pytest.mark.parametrize("number", ["9223372036854775808", "18446744073709551615", "3000000000"])
def test_huge_number_of_named_parameters(number: str, tmp_path: Path) -> None:
    header = Header(tmp_path, named_parameters=("one",), statistics_blocks=0)
    header.set("NVARS", f"NVARS\t{number}")
    assert without_system_word(error_of(header.data)) == header.text(
        "Header does not specify number of optional variables (NVARS)",
        io_error(5008, "Data requested past end of file", stream_end(header.path)),
    )


@pytest.mark.parametrize("number", ["-1", "many", "99999999999999999999", ""])
def test_bad_number_of_named_parameters(number: str, tmp_path: Path) -> None:
    header = Header(tmp_path, named_parameters=("one",)).set("NVARS", f"NVARS\t{number}")
    message = "Header does not specify number of optional variables (NVARS)"
    assert error_of(header.data).split("\nInner")[0] == header.text(message)


@pytest.mark.parametrize("number", ["9223372036854775808", "18446744073709551615", "3000000000"])
@pytest.mark.parametrize("place", ["points", "variables"])
@pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])
def test_huge_dimensions(number: str, place: str, text: bool, tmp_path: Path) -> None:
    header = Header(tmp_path, text=text)
    header.set("DIMENS", f"DIMENS\t3\t{number}" if place == "points" else f"DIMENS\t{number}\t5")
    message = error_of(header.data)
    assert message.startswith(
        tables_error(
            "Getting data for 1D variable failed",
            f"Series name: 'Rotor speed'; File path: {tmp_path}/Summary",
            tables_error("Error reading series data"),
        )
    )
    axis = get_axis(header.variable())
    if place == "points":
        too_big = tables_error(AXIS_SIZE, f"File path: {tmp_path}/Summary")
        for ask in (
            axis._get_values_as_number_native_array,
            axis._get_values_as_number_numpy_from_vector,
            axis._get_values_as_string_native_array,
        ):
            assert error_of(ask) == too_big
    else:
        assert axis._get_values_as_number_native_array() == (10.0, 10.5, 11.0, 11.5, 12.0)


MEMORY = """
from support.run_files import *
from support.scenarios import *
def peak():
    status = Path("/proc/self/status").read_text()
    return next(int(row.split()[1]) for row in status.splitlines() if row.startswith("VmHWM"))
def damage(header, line):
    label = line.split("\\t")[0]
    lines = header.read_text().splitlines()
    header.write_text("".join((line if old.startswith(label + "\\t") else old) + "\\n"
                              for old in lines))
WHOLE = "_get_data_for_all_independent_variable_values_native_array"
ASK = {
    1: [lambda v: v.get_mean(), lambda v: v._get_data_native_array(),
        lambda v: get_axis(v)._get_values_as_string_native_array()],
    2: [lambda v: v.get_mean_at_index(0), lambda v: v._get_data_at_index_native_array(0),
        lambda v: getattr(v, WHOLE)(),
        lambda v: get_axis(v, 0)._get_values_as_string_native_array()],
}
before, errors = peak(), {}
for place, (axes, line) in enumerate(json.loads(sys.argv[2])):
    for text in (False, True):
        group = (group_1d if axes == 1 else group_2d)(
            text=text, named_parameters=("a",), head_records=("b",))
        folder = RunFiles([group]).write(Path(sys.argv[1]) / f"{place} {text}")
        damage(folder / "run.%01", line)
        for ask in ASK[axes]:
            native.TabulonApi_clear_runs()
            try:
                ask(get_variable(get_run(folder), group.variables[0].name, "float32", axes))
            except RuntimeError:
                errors[line] = errors.get(line, 0) + 1
answer([peak() - before, errors])
"""


def test_a_small_header_takes_little_memory(tmp_path: Path) -> None:
    lines = [
        (1, "DIMENS\t3\t1000000000000"),
        (1, "DIMENS\t4000000000\t5"),
        (2, "DIMENS\t3\t1000000000\t1000000000"),
        (2, "DIMENS\t1000000000\t3\t5"),
        (1, "NVARS\t100000000000"),
        (1, "HEADREC\t100000000000"),
    ]
    kilobytes, errors = run_script(MEMORY, tmp_path, json.dumps(lines))
    assert kilobytes < 64 * 1024
    assert set(errors) == {line for _, line in lines}
