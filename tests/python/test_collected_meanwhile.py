"""Script code that runs in the midst of a call: finalizers, attributes, iterators."""

from __future__ import annotations

import gc
from collections.abc import Iterator
from pathlib import Path

import _TabulonAPI_Python as native
from support.arrays import INTS, Functions
from support.flat import message, run_script
from support.small_runs import write_run

#: A collection at nearly each new container, and garbage whose end runs `act`.
START = """
from functools import partial

class Trap:
    def __init__(self, act):
        self.act, self.itself = act, self
    def __del__(self):
        gc.disable()
        self.act()
        gc.enable()

def sprung(act, function, *arguments):
    call = partial(function, *arguments)
    gc.collect()
    gc.disable()
    Trap(act)
    gc.set_threshold(1, 1, 1)
    gc.enable()
    try:
        return call()
    finally:
        gc.set_threshold(700, 10, 10)
"""


def test_a_tuple_of_an_array_that_is_emptied_while_it_is_made() -> None:
    code = """
import itertools
seen = []
for _ in range(20):
    held = native.new_ArrayOfArrayOfDouble([[float(n) for n in range(2000)]] * 3)
    def act():
        native.ArrayOfArrayOfDouble___delslice__(held, 0, 3)
        for n in range(50): native.new_ArrayOfDouble(2000, -1.0)
    read = sprung(act, native.ArrayOfArrayOfDouble___getitem__, held, 1)
    seen.append(read == tuple(float(n) for n in range(2000)))
    seen.append(native.ArrayOfArrayOfDouble___len__(held))
answer(seen)
"""
    assert run_script(START + code) == [True, 0] * 20


def test_a_tuple_of_data_that_is_unloaded_while_it_is_made(tmp_path: Path) -> None:
    write_run(tmp_path)
    code = """
from support.small_runs import ROW, TABLE, variable_1d, variable_2d
run = native.TabulonApi_get_run(sys.argv[1], "run")
seen = []
for _ in range(20):
    one, two = variable_1d(run, "float64"), variable_2d(run, "float64")
    def act():
        native.Run_unload_variable(run, "x 1d float64")
        native.Run_unload_variable(run, "x 2d float64")
        for n in range(50): native.new_ArrayOfDouble(3, -1.0)
    read = sprung(act, native.Variable1D_Float64__get_data_native_array, one)
    seen.append(list(read) == ROW)
    name = "get_data_for_all_independent_variable_values_native_array"
    read = sprung(act, getattr(native, f"Variable2D_Float64__{name}"), two)
    seen.append([list(row) for row in read] == TABLE)
answer(seen)
"""
    assert run_script(START + code, tmp_path) == [True] * 40


def test_an_iterator_element_that_is_removed_while_it_is_made() -> None:
    code = """
seen = []
for _ in range(20):
    held = native.new_ArrayOfArrayOfInt([range(500)] * 2)
    iterator = native.ArrayOfArrayOfInt_iterator(held)
    def act():
        native.ArrayOfArrayOfInt___delslice__(held, 0, 2)
        for n in range(50): native.new_ArrayOfInt(500, -1)
    read = sprung(act, native.SwigPyIterator_value, iterator)
    seen.append(read == tuple(range(500)))
answer(seen)
"""
    assert run_script(START + code) == [True] * 20


class Proxy:
    """An instance as the script layer has them."""

    def __init__(self, pointer: object) -> None:
        self.this = pointer


def output_group(folder: Path) -> Proxy:
    axis = native.new_IndependentVariable("x", "m", 0.0, 0.5)
    path = str(folder / "out.%01")
    group = Proxy(native.new_OutputGroup1D_Float64(path, "G", "UserDefined", "LIST", axis))
    native.OutputGroup1D_Float64_add_variable(group, "v", "m")
    return group


def test_taking_the_pointer_away_while_an_argument_is_read(tmp_path: Path) -> None:
    group = output_group(tmp_path)

    def take_away() -> Iterator[float]:
        del group.this
        gc.collect()
        yield 7.0

    native.OutputGroup1D_Float64__append_data_native_array(group, "v", take_away())
    assert not hasattr(group, "this")

    held = Proxy(INTS.new(3))

    def take_array_away() -> Iterator[int]:
        del held.this
        yield 7

    text = "in method 'ArrayOfInt___setslice__', argument 1 of type 'std::vector< int > *'"
    assert message(lambda: INTS.setslice(held, 0, 1, take_array_away()), TypeError) == text


def test_changing_the_pointer_while_an_argument_is_read(tmp_path: Path) -> None:
    group, other = output_group(tmp_path), output_group(tmp_path).this
    pointer = group.this

    def swap() -> Iterator[float]:
        group.this = other
        yield 7.0

    def write(held: object) -> tuple[float, ...]:
        native.TabulonApi_clear_runs()
        assert native.TabulonApi_write_output(held)
        run = native.TabulonApi_get_run(str(tmp_path), "out")
        variable = native.Run__RUNPREFIX_get_variable_1d_float64(run, "v")
        return native.Variable1D_Float64__get_data_native_array(variable)

    native.OutputGroup1D_Float64__append_data_native_array(group, "v", swap())
    assert write(pointer) == (7.0,)
    native.OutputGroup1D_Float64__append_data_native_array(group, "v", [8.0])
    assert write(other) == (8.0,)


def test_an_attribute_this_that_is_made_on_demand() -> None:
    class Fleeting:
        @property
        def this(self) -> object:
            return INTS.new(2)

    assert INTS.elements(Fleeting()) == [0, 0]
    INTS.setslice(Fleeting(), 0, 2, iter([1]))


def test_an_interrupt_in_the_attribute_this_passes_through() -> None:
    class Interrupted:
        @property
        def this(self) -> object:
            raise KeyboardInterrupt("now")

    runs = Functions("ArrayOfRun")
    for call in (
        lambda: INTS.len(Interrupted()),
        lambda: INTS.getitem(Interrupted(), 0),
        lambda: INTS.setslice(INTS.new(), 0, 1, Interrupted()),
        lambda: runs.new([Interrupted()]),
        lambda: runs.setitem(runs.new(1), 0, Interrupted()),
    ):
        assert message(call, KeyboardInterrupt) == "now"
