"""Output groups for tests, made through the functions of the extension module."""

from __future__ import annotations

from pathlib import Path

import _TabulonAPI_Python as native

from support.flat import SUFFIXES, Flat


def time() -> object:
    return native.new_IndependentVariable("Time", "s", 1.0, -0.25)


def radius() -> object:
    return native.new_IndependentVariable("Radius", "m", [1.5, 20.0, 41.25])


def cases() -> object:
    return native.new_IndependentVariable("Case", "none", ["a", "b c"])


def output(path: Path | str, kind: str, *axes: object, text: bool = False, **names: str) -> Flat:
    family = f"OutputGroup{len(axes)}D_{SUFFIXES[kind]}"
    given = {"name": "Out put", "source": "UserDefined", "config": "TABLE"} | names
    make = getattr(native, f"new_{family}")
    return Flat(family, make(str(path), *given.values(), *axes, 0 if text else 1))


def write(group: Flat, *mode: int) -> bool:
    return native.TabulonApi_write_output(group.pointer, *mode)


def small(path: Path | str, *values: float, text: bool = False) -> Flat:
    group = output(path, "float32", time(), text=text)
    group._add_variable_with_data_native_array("x", "m", values or (1.0,))
    return group
