"""Output groups through the extension module: the bytes they leave, over one axis and over two."""

from __future__ import annotations

import itertools
import struct
from collections.abc import Sequence
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from support.flat import SUFFIXES, Flat, error_of, get_run, get_variable, tables_error
from support.output import cases, output, radius, small, time, write

#: dtype -> FORMAT, RECL, code of the word, digits of the header, format of the text.
WORDS = {
    "float32": ("R*4", 4, "f", 7, ".7e"),
    "float64": ("R*8", 8, "d", 15, ".15e"),
    "int32": ("I*4", 4, "i", 7, "d"),
}
kinds = pytest.mark.parametrize("kind", WORDS)
both_forms = pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])


# Bytes, composed here


def interval_block(kind: str) -> list[str]:
    digits = WORDS[kind][3]
    return [
        "AXISLAB\t'Time'",
        "AXIUNIT\tT",
        "AXIMETH\t2",
        f"MIN \t{1.0:.{digits}E}",
        f"STEP\t{-0.25:.{digits}E}",
    ]


def radius_block(kind: str) -> list[str]:
    labels = " ".join(f"{value:.{WORDS[kind][3]}f}" for value in (1.5, 20.0, 41.25))
    return ["AXISLAB\t'Radius'", "AXIUNIT\tL", "AXIMETH\t3", f"AXIVAL\t{labels}"]


CASES_BLOCK = ["AXISLAB\t'Case'", "AXIUNIT\tnone", "AXIMETH\t1", "AXITICK\t'a' 'b c'"]


def header(
    kind: str, text: bool, sizes: Sequence[int], axes: list[list[str]], names: Sequence[str]
) -> bytes:
    word, size, *_ = WORDS[kind]
    units = {"x": "L", "y y": "'no unit'"}
    lines = [
        "FILE\to.$07",
        f"ACCESS\t{'S' if text else 'D'}",
        "FORM\tF",
        f"RECL\t{size}",
        f"FORMAT\t{word}",
        "CONTENT\t'UserDefined'",
        "CONFIG\t'TABLE'",
        f"NDIMENS\t{len(sizes)}",
        "DIMENS\t" + "\t".join(map(str, sizes)),
        "GENLAB\t'Out put'",
        "VARIAB\t" + " ".join(f"'{name}'" for name in names),
        "VARUNIT\t" + " ".join(units[name] for name in names),
        *itertools.chain.from_iterable(axes),
        "NVARS\t0",
    ]
    return "".join(f"{line}\n" for line in lines).encode()


def number(value: float, kind: str) -> str:
    text = format(value, WORDS[kind][4])
    return (" " if text.startswith("-") else "  ") + text


def data(lines: list[list[float]], kind: str, text: bool) -> bytes:
    if text:
        return "".join("".join(number(v, kind) for v in line) + "\n" for line in lines).encode()
    words = list(itertools.chain.from_iterable(lines))
    return struct.pack(f"<{len(words)}{WORDS[kind][2]}", *words)


def files(folder: Path) -> dict[str, bytes]:
    return {path.name: path.read_bytes() for path in folder.iterdir()}


def expected_files(head: bytes, values: bytes) -> dict[str, bytes]:
    ending = b"User-generated output group 'o.%07'\n"
    return {"o.%07": head, "o.$07": values, "o.$TE": ending}


@kinds
@both_forms
def test_bytes_over_one_axis(kind: str, text: bool, tmp_path: Path) -> None:
    folder = tmp_path / "a" / "b"
    group = output(folder / "o.%07", kind, time(), text=text)
    group._add_variable_with_data_native_array("x", "m", [1, -2, 3])
    group._add_variable_with_data_native_array("y y", "no unit", [10, 0, -30])
    assert write(group) is True
    lines: list[list[float]] = [[1, 10], [-2, 0], [3, -30]]
    names = ("x", "y y")
    assert files(folder) == expected_files(
        header(kind, text, (2, 3), [interval_block(kind)], names), data(lines, kind, text)
    )
    # More data, and the whole is written anew.
    group._append_data_native_array("X", [4])
    group._append_data_native_array("y y", (40,))
    assert write(group, native.OverwriteBehaviour_OverwriteExistingOutput) is True
    assert files(folder) == expected_files(
        header(kind, text, (2, 4), [interval_block(kind)], names),
        data([*lines, [4, 40]], kind, text),
    )
    run = get_run(folder, "o")
    assert get_variable(run, "x", kind)._get_data_native_array() == (1, -2, 3, 4)


@kinds
@both_forms
@pytest.mark.parametrize("count", [1, 2])
def test_bytes_over_two_axes(kind: str, text: bool, count: int, tmp_path: Path) -> None:
    group = output(tmp_path / "o.%07", kind, cases(), radius(), text=text)
    x, y = [[1, -2], [3, 4], [-5, 6]], [[10, 20], [30, 40], [50, 60]]
    group._add_variable_with_data_native_array("x", "m", x)
    if count == 2:
        group._add_variable_with_data_native_array("y y", "no unit", y)
    assert write(group) is True
    pairs = [(x[s][p], y[s][p])[:count] for p in range(2) for s in range(3)]
    # With one variable, a line holds all values of a point.
    lines = [list(pair) for pair in pairs] if count == 2 else [[1, 3, -5], [-2, 4, 6]]
    assert files(tmp_path) == expected_files(
        header(kind, text, (count, 3, 2), [radius_block(kind), CASES_BLOCK], ("x", "y y")[:count]),
        data(lines, kind, text),
    )
    whole = (
        f"Variable2D_{SUFFIXES[kind]}__get_data_for_all_independent_variable_values_native_array"
    )
    variable = get_variable(get_run(tmp_path, "o"), "x", kind, 2)
    assert getattr(native, whole)(variable.pointer) == tuple(map(tuple, x))


@kinds
@both_forms
def test_a_secondary_interval(kind: str, text: bool, tmp_path: Path) -> None:
    height = native.new_IndependentVariable("Time", "s", 1.0, -0.25)
    group = output(tmp_path / "o.%07", kind, radius(), height, text=text)
    group._add_variable_with_data_native_array("x", "m", [[1, 2, 3], [4, 5, 6]])
    assert write(group) is True
    assert files(tmp_path) == expected_files(
        header(kind, text, (1, 2, 3), [interval_block(kind), radius_block(kind)], ("x",)),
        data([[1, 4], [2, 5], [3, 6]], kind, text),
    )


@pytest.mark.parametrize("points", [2047, 2048, 2049, 4096])
def test_block_boundaries(points: int, tmp_path: Path) -> None:
    group = output(tmp_path / "o.%07", "float32", time())
    group._add_variable_with_data_native_array("x", "m", range(points))
    assert write(group) is True
    expected = struct.pack(f"<{points}f", *range(points))
    assert tmp_path.joinpath("o.$07").read_bytes() == expected


def test_special_values_as_text(tmp_path: Path) -> None:
    group = output(tmp_path / "o.%07", "float64", time(), text=True)
    group._add_variable_with_data_native_array("x", "m", [-0.0, 1e300, float("inf"), -1.5])
    assert write(group) is True
    assert tmp_path.joinpath("o.$07").read_bytes() == (
        b" -0.000000000000000e+00\n  1.000000000000000e+300\n  inf\n -1.500000000000000e+00\n"
    )


# Modes


def test_existing_output_is_kept_when_asked_for(tmp_path: Path) -> None:
    keep = native.OverwriteBehaviour_DoNotOverwriteExistingOutput
    assert write(small(tmp_path / "o.%07", 1), keep) is True
    before = files(tmp_path)
    assert write(small(tmp_path / "o.%07", 2, 3), keep) is False
    assert files(tmp_path) == before
    # Only the header counts; a termination file that is there stays.
    tmp_path.joinpath("o.%07").unlink()
    tmp_path.joinpath("o.$TE").write_bytes(b"mine")
    assert write(small(tmp_path / "o.%07", 2, 3), keep) is True
    assert tmp_path.joinpath("o.$TE").read_bytes() == b"mine"
    assert tmp_path.joinpath("o.$07").read_bytes() == struct.pack("<2f", 2, 3)
    assert write(small(tmp_path / "o.%07", 4)) is True
    assert files(tmp_path) == before | {"o.$07": struct.pack("<f", 4)}


def test_output_without_termination_file(tmp_path: Path) -> None:
    group = small(tmp_path / "o.%07")
    assert native.OutputGroup_set_tefile_creation(group.pointer, 1) is None
    assert write(group) is True
    assert set(files(tmp_path)) == {"o.%07", "o.$07"}
    assert native.TabulonApi__get_runs_native_array(str(tmp_path)) == ()
    assert error_of(lambda: get_run(tmp_path, "o")) == tables_error(
        "Run was not found - run termination file (.$TE) missing or invalid",
        f"File path: {tmp_path}/o.$TE",
    )
    native.OutputGroup_set_tefile_creation(group.pointer, native.TEFileCreation_Create)
    assert write(group) is True
    assert len(native.TabulonApi__get_runs_native_array(str(tmp_path))) == 1


def test_what_was_written_is_a_run_of_the_user(tmp_path: Path) -> None:
    for suffix, value in ((7, 1.0), (12, 2.0)):
        group = output(tmp_path / f"o.%{suffix:02}", "float32", time(), name=f"G{suffix}")
        group._add_variable_with_data_native_array("x", "m", [value])
        assert write(group) is True
    run = get_run(tmp_path, "o")
    assert run.get_calculation_type() == 1000
    assert run.get_calculation_descriptive_name() == "User-defined output"
    assert run.get_termination_file_content() == "User-generated output group 'o.%12'"
    assert run.get_completion_state() == native.CompletionState_Unknown
    assert (run.has_finished(), run.was_successful(), run.was_unsuccessful()) == (
        True,
        False,
        False,
    )
    for name, value in (("G7", 1.0), ("g12", 2.0)):
        variable = get_variable(run, "x", "float32", 1, name)
        assert variable._get_data_native_array() == (value,)
        assert Flat("Variable", variable.pointer).get_siunit() == "m"


def test_facts_of_an_output_group(tmp_path: Path) -> None:
    group = small(tmp_path / "o.%07", text=True)
    whole, base = Flat("OutputGroup", group.pointer), Flat("IOutputSpecification", group.pointer)
    for owner in (whole, base):
        assert owner.get_path() == f"{tmp_path}/o.%07"
        assert owner.get_file_format() == native.FileFormat_Tolvan
    assert whole.get_group_name() == "Out put"
    assert whole.get_data_source() == "UserDefined"
    assert whole.get_group_config() == "TABLE"
    assert whole.get_variable_data_format() == native.VariableDataFormat_ASCII
    assert whole.get_data_file_path() == f"{tmp_path}/o.$07"


def test_number_of_values_is_counted_in_the_group(tmp_path: Path) -> None:
    axis, labels = Flat("IndependentVariable", time()), Flat("IndependentVariable", radius())
    assert (axis.get_number_of_values(), labels.get_number_of_values()) == (0, 3)
    group = output(tmp_path / "o.%07", "int32", axis.pointer)
    group._add_variable_with_data_native_array("x", "m", [1, 2])
    assert axis.get_number_of_values() == 2
    assert axis._get_values_as_number_native_array() == (1.0, 0.75)
    # Labels count whether there is data at them or not.
    group = output(tmp_path / "o.%07", "int32", labels.pointer)
    group._add_variable_with_data_native_array("x", "m", [1, 2])
    assert labels.get_number_of_values() == 3
