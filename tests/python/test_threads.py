"""Calls of several threads at once: the interpreter may change threads while script code runs."""

from __future__ import annotations

from pathlib import Path

from support.flat import run_script
from support.small_runs import write_run

START = """
import sys, threading
sys.setswitchinterval(1e-6)

def in_threads(work, count=4):
    failures = []
    def guarded(number):
        try:
            work(number)
        except BaseException as error:
            failures.append(repr(error))
    threads = [threading.Thread(target=guarded, args=(number,)) for number in range(count)]
    for thread in threads: thread.start()
    for thread in threads: thread.join()
    answer(failures)
"""


def test_generators_of_several_threads() -> None:
    work = """
def work(number):
    values = [float(number * 1000 + n) for n in range(50)]
    for _ in range(300):
        axis = native.new_IndependentVariable("x", "m", (v for v in values))
        read = native.IndependentVariable__get_values_as_number_native_array(axis)
        assert list(read) == values, read
        texts = native.new_IndependentVariable("x", "m", (f"{v}" for v in values))
        read = native.IndependentVariable__get_values_as_string_native_array(texts)
        assert list(read) == [f"{v}" for v in values], read
in_threads(work)
"""
    assert run_script(START + work) == []


def test_generators_of_generators_of_several_threads() -> None:
    work = """
def work(number):
    held = native.new_ArrayOfArrayOfInt()
    for turn in range(300):
        rows = [[number, turn, n] for n in range(5)]
        native.ArrayOfArrayOfInt___setslice__(held, 0, 9, ((v for v in row) for row in rows))
        try:
            native.ArrayOfArrayOfInt___setslice__(None, 0, 9, (iter(row) for row in rows))
        except (TypeError, ValueError):
            pass
        read = [native.ArrayOfArrayOfInt___getitem__(held, n) for n in range(5)]
        assert read == [tuple(row) for row in rows], read
in_threads(work)
"""
    assert run_script(START + work) == []


def test_a_generator_that_calls_the_function_that_reads_it() -> None:
    work = """
def nested(depth):
    yield float(depth)
    if depth:
        axis = native.new_IndependentVariable("x", "m", nested(depth - 1))
        yield from native.IndependentVariable__get_values_as_number_native_array(axis)
def work(number):
    for _ in range(20):
        axis = native.new_IndependentVariable("x", "m", nested(20))
        read = native.IndependentVariable__get_values_as_number_native_array(axis)
        assert list(read) == [float(n) for n in range(20, -1, -1)], read
in_threads(work)
"""
    assert run_script(START + work) == []


def test_reading_and_writing_in_several_threads(tmp_path: Path) -> None:
    write_run(tmp_path)
    work = """
from support.small_runs import ROW, TABLE, variable_1d, variable_2d
folder = Path(sys.argv[1])
def work(number):
    for turn in range(30):
        run = native.TabulonApi_get_run(str(folder), "run")
        read = native.Variable1D_Float64__get_data_native_array(variable_1d(run, "float64"))
        assert list(read) == ROW, read
        table = variable_2d(run, "int32")
        name = "get_data_for_all_independent_variable_values_native_array"
        read = getattr(native, f"Variable2D_Int32__{name}")(table)
        assert [list(row) for row in read] == TABLE, read
        axis = native.new_IndependentVariable("x", "m", (float(n) for n in range(3)))
        output = native.new_OutputGroup1D_Float64(
            str(folder / f"out{number}.%01"), "G", "UserDefined", "LIST", axis)
        native.OutputGroup1D_Float64__add_variable_with_data_native_array(
            output, "v", "m", (float(number + n) for n in range(3)))
        assert native.TabulonApi_write_output(output)
        if turn % 7 == number:
            native.TabulonApi_clear_runs()
in_threads(work)
"""
    assert run_script(START + work, tmp_path) == []
