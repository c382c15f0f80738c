"""Quantity codes and units, as a script reads and writes them."""

from __future__ import annotations

from dataclasses import replace
from pathlib import Path

import pytest
from support.flat import Flat, get_axis, get_run, get_variable
from support.output import output, time, write
from support.run_files import RunFiles
from support.scenarios import group_1d


def units(folder: Path, **written: str) -> dict[str, tuple[str, str]]:
    """Write a variable for each unit, and return the codes and units that are read back."""
    group = output(folder / "o.%07", "float32", time())
    for name, unit in written.items():
        group._add_variable_with_data_native_array(name, unit, [1.0])
    assert write(group) is True
    run = get_run(folder, "o")
    variables = {name: Flat("Variable", run._get_variable(name)) for name in written}
    return {name: (v.get_quantity_code(), v.get_siunit()) for name, v in variables.items()}


def header_line(folder: Path, label: bytes) -> bytes:
    lines = folder.joinpath("o.%07").read_bytes().splitlines()
    return next(line for line in lines if line.startswith(label + b"\t"))


def test_unit_with_a_code_comes_back(tmp_path: Path) -> None:
    assert units(tmp_path, a="m", b="J", c="rad", d="A") == {
        "a": ("L", "m"),
        "b": ("PT", "J"),
        "c": ("A", "rad"),
        "d": ("I", "A"),
    }
    assert header_line(tmp_path, b"VARUNIT") == b"VARUNIT\tL PT A I"


def test_unit_without_a_code_is_written_as_given_and_read_as_none(tmp_path: Path) -> None:
    assert units(tmp_path, a="furlong", b="l", c="Unitless", d="Unquantifiable") == {
        "a": ("furlong", ""),
        "b": ("l", ""),
        "c": ("Unitless", ""),
        "d": ("Unquantifiable", ""),
    }
    assert header_line(tmp_path, b"VARUNIT") == b"VARUNIT\tfurlong l Unitless Unquantifiable"


def test_dimensionless_unit_is_read_as_none(tmp_path: Path) -> None:
    assert units(tmp_path, a=".") == {"a": ("Unquantifiable", "")}


@pytest.mark.parametrize(
    ("unit", "line", "read"),
    [
        # The raised two of the table is one byte, which is no UTF-8.
        ("kgm\udcb2", b"VARUNIT\tMLL", ("MLL", "kgm\udcb2")),
        ("kgm\u00b2", "VARUNIT\tkgm\u00b2".encode(), ("kgm\u00b2", "")),
    ],
)
def test_raised_two(unit: str, line: bytes, read: tuple[str, str], tmp_path: Path) -> None:
    assert units(tmp_path, a=unit) == {"a": read}
    assert header_line(tmp_path, b"VARUNIT") == line


def test_codes_of_a_header(tmp_path: Path) -> None:
    group = group_1d()
    codes = ("N", "MLL", "l")
    variables = [replace(v, quantity=q) for v, q in zip(group.variables, codes, strict=True)]
    RunFiles([replace(group, variables=variables)]).write(tmp_path)
    run = get_run(tmp_path)
    read = [Flat("Variable", run._get_variable(variable.name)) for variable in variables]
    assert [(v.get_quantity_code(), v.get_siunit()) for v in read] == [
        ("N", "Unitless"),
        ("MLL", "kgm\udcb2"),
        ("l", ""),
    ]


def test_units_of_axes(tmp_path: Path) -> None:
    units(tmp_path, a="m")
    assert header_line(tmp_path, b"AXIUNIT") == b"AXIUNIT\tT"
    axis = get_axis(get_variable(get_run(tmp_path, "o"), "a", "float32"))
    assert axis.get_siunit() == "s"
