"""Which iterables serve as an argument of the extension module, and how they are read."""

from __future__ import annotations

import array
import gc
import re
import weakref
from collections import deque
from collections.abc import Callable, Iterable, Iterator
from pathlib import Path
from unittest.mock import Mock

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.arrays import INTS, Functions
from support.flat import message
from surface_table import overload_text


def shown(value: object) -> str:
    """The value as a name of its test, which is the same in each process."""
    return re.sub(r" at 0x[0-9a-f]+| id='[0-9]+'", "", repr(value))


class Countdown:
    """Iterable, and nothing else."""

    def __init__(self, start: int) -> None:
        self._start = start

    def __iter__(self) -> Iterator[int]:
        return iter(range(self._start, 0, -1))


@pytest.mark.parametrize(
    ("iterable", "elements"),
    [
        ([1, 2], [1, 2]),
        ((1, 2), [1, 2]),
        ({5: "a", 6: "b"}, [5, 6]),
        ({7}, [7]),
        (frozenset({7}), [7]),
        (range(3), [0, 1, 2]),
        (Countdown(3), [3, 2, 1]),
        (b"\x01\x02", [1, 2]),
        ([True, False], [1, 0]),
        (array.array("i", [1, -2]), [1, -2]),
        (array.array("h", [1, -2]), [1, -2]),
        (memoryview(array.array("i", [1, 2, 3]))[::2], [1, 3]),
        (np.array([1, -2], np.int32), [1, -2]),
        (np.arange(6, dtype=np.int32)[::-2], [5, 3, 1]),
        (np.array([], np.int32), []),
        ("", []),
    ],
    ids=shown,
)
def test_iterables(iterable: Iterable[int], elements: list[int]) -> None:
    assert INTS.elements(INTS.new(iterable)) == elements


@pytest.mark.parametrize(
    "iterable",
    [
        5.0,
        object(),
        [1, 2.0],
        [2**31],
        [None],
        "12",
        np.array([1, 2], np.int64),
        np.array([1.0], np.float64),
        np.array([[1, 2]], np.int32),
        np.array(1, np.int32),
        np.array([1, 2], ">i4"),
        Mock(),
    ],
    ids=shown,
)
def test_what_does_not_serve(iterable: object) -> None:
    assert message(lambda: INTS.new(iterable), TypeError) == overload_text("new_ArrayOfInt")


@pytest.mark.parametrize(("name", "dtype"), [("Float", np.float32), ("Double", np.float64)])
def test_numpy_arrays_of_the_element_type(name: str, dtype: type) -> None:
    functions = Functions(f"ArrayOf{name}")
    values = np.array([0.1, np.inf, np.nan, -0.0], dtype)
    np.testing.assert_array_equal(
        np.array(functions.elements(functions.new(values)), dtype), values
    )
    rows = np.arange(6, dtype=dtype).reshape(2, 3)
    table = Functions(f"ArrayOfArrayOf{name}")
    assert table.elements(table.new(rows)) == [(0.0, 1.0, 2.0), (3.0, 4.0, 5.0)]
    assert table.elements(table.new(rows.T)) == [(0.0, 3.0), (1.0, 4.0), (2.0, 5.0)]


def test_numbers_beyond_the_range_of_a_float() -> None:
    functions = Functions("ArrayOfFloat")
    largest = 3.4028234663852886e38
    assert functions.elements(functions.new([largest, float("inf")])) == [largest, float("inf")]
    assert message(lambda: functions.new([3.5e38]), TypeError) == overload_text("new_ArrayOfFloat")


def test_a_string_is_a_sequence_of_strings() -> None:
    functions = Functions("ArrayOfString")
    assert functions.elements(functions.new("aß")) == ["a", "ß"]


def test_bytes_that_are_no_text_survive() -> None:
    functions = Functions("ArrayOfString")
    name = b"r\xff\xc3".decode("utf-8", "surrogateescape")
    assert functions.elements(functions.new([name, "a\0b"])) == [name, "a\0b"]
    assert message(lambda: functions.new(["\ud800"]), TypeError) == overload_text(
        "new_ArrayOfString"
    )


def test_a_generator_is_not_used_up_by_choosing_an_overload() -> None:
    held = INTS.new(n * n for n in range(4))
    assert INTS.elements(held) == [0, 1, 4, 9]
    INTS.setitem(held, slice(1, 3), (n for n in (7, 8, 9)))
    assert INTS.elements(held) == [0, 7, 8, 9, 9]
    INTS.setslice(held, 0, 5, iter([1]))
    assert INTS.elements(held) == [1]
    table = Functions("ArrayOfArrayOfInt")
    rows = table.new(iter([(n for n in range(2)), iter([5]), [6]]))
    assert table.elements(rows) == [(0, 1), (5,), (6,)]
    axis = native.new_IndependentVariable("Name", "N", (word for word in ("a", "b")))
    assert native.IndependentVariable__get_values_as_string_native_array(axis) == ("a", "b")


def test_what_was_read_of_a_refused_generator_is_dropped() -> None:
    class Item:
        """Fits no array, and can be watched."""

    def give() -> Iterator[object]:
        item = Item()
        watched.append(weakref.ref(item))
        yield item

    watched: list[weakref.ref[Item]] = []
    for refuse in (
        lambda generator: INTS.new(generator),
        lambda generator: Functions("ArrayOfArrayOfInt").new([generator]),
    ):
        with pytest.raises(TypeError):
            refuse(give())
    gc.collect()
    assert [reference() for reference in watched] == [None, None]


class Refused(BaseException):
    """No ``Exception``, as an interrupt is none."""


def failing(error: BaseException, first: object) -> Iterator[object]:
    yield first
    raise error


class FailingList(list[object]):
    """A list that iterates in a way of its own."""

    def __init__(self, error: BaseException, first: object) -> None:
        super().__init__([first])
        self._error = error

    def __iter__(self) -> Iterator[object]:
        return failing(self._error, super().__getitem__(0))


class NoIterator:
    """Fails before the first item."""

    def __init__(self, error: BaseException) -> None:
        self._error = error

    def __iter__(self) -> Iterator[object]:
        raise self._error


def calls_with(make: Callable[[object], object], output: object) -> dict[str, Callable[[], object]]:
    """Functions that take an iterable, called with one whose first item fits."""
    table, words = Functions("ArrayOfArrayOfInt"), Functions("ArrayOfString")
    append = native.OutputGroup1D_Float64__append_data_native_array
    return {
        "copy": lambda: INTS.new(make(1)),
        "slice": lambda: INTS.setitem(INTS.new(3), slice(1), make(1)),
        "range": lambda: INTS.setslice(INTS.new(3), 0, 1, make(1)),
        "words": lambda: words.new(make("a")),
        "rows": lambda: table.new(make([1])),
        "row": lambda: table.new([make(1)]),
        "element": lambda: table.setitem(table.new(1), 0, make(1)),
        "numbers": lambda: native.new_IndependentVariable("x", "m", make(1.0)),
        "labels": lambda: native.new_IndependentVariable("x", "m", make("a")),
        "data": lambda: append(output, "v", make(1.0)),
    }


CALLS = tuple(calls_with(list, None))


@pytest.fixture
def output(tmp_path: Path) -> object:
    axis = native.new_IndependentVariable("Time", "s", 0.0, 0.5)
    held = native.new_OutputGroup1D_Float64(str(tmp_path / "run.%01"), "G", "UserDefined", "", axis)
    native.OutputGroup1D_Float64_add_variable(held, "v", "m")
    return held


@pytest.mark.parametrize("call", CALLS)
@pytest.mark.parametrize("error", [RuntimeError("no more"), TypeError("odd"), Refused("stop")])
@pytest.mark.parametrize("iterable", [lambda e, first: failing(e, first), FailingList])
def test_what_an_iterator_raises_passes_through(
    call: str,
    error: BaseException,
    iterable: Callable[[BaseException, object], object],
    output: object,
) -> None:
    with pytest.raises(type(error)) as raised:
        calls_with(lambda first: iterable(error, first), output)[call]()
    assert raised.value is error


@pytest.mark.parametrize("call", CALLS)
def test_what_gives_no_iterator_is_of_the_wrong_type(call: str, output: object) -> None:
    with pytest.raises(TypeError, match=r"in method|Wrong number or type of arguments"):
        calls_with(lambda _: NoIterator(RuntimeError("not now")), output)[call]()
    with pytest.raises(Refused):
        calls_with(lambda _: NoIterator(Refused()), output)[call]()


def test_a_refused_call_leaves_nothing_behind() -> None:
    """What was read of an iterable for one call does not serve the next."""
    held = INTS.new(2)
    queue = deque([1.0, 2.0])
    rows = Functions("ArrayOfArrayOfInt")
    text = r"invalid null reference|Wrong number or type|in method"
    for refuse in (
        lambda: native.new_IndependentVariable(None, "m", queue),
        lambda: INTS.setitem(None, slice(2), queue),
        lambda: INTS.setitem(rows.new(), slice(2), queue),
        lambda: INTS.setslice(None, 0, 2, queue),
        lambda: rows.new([queue, None]),
    ):
        queue.clear()
        queue.extend([1, 2])
        with pytest.raises((TypeError, ValueError), match=text):
            refuse()
        queue[0] = 7
        axis = native.new_IndependentVariable("x", "m", queue)
        assert native.IndependentVariable__get_values_as_number_native_array(axis) == (7.0, 2.0)
        INTS.setitem(held, slice(2), queue)
        assert INTS.elements(held) == [7, 2]


def test_a_refused_generator_is_released() -> None:
    def give() -> Iterator[int]:
        yield 1

    for refuse in (
        lambda generator: native.new_IndependentVariable(None, "m", generator),
        lambda generator: INTS.setslice(None, 0, 2, generator),
        lambda generator: INTS.setitem(INTS.new(4), slice(None, None, 2), generator),
    ):
        generator = give()
        watched = weakref.ref(generator)
        with pytest.raises((TypeError, ValueError)):
            refuse(generator)
        del generator
        gc.collect()
        assert watched() is None


def test_deleting_an_array_while_its_new_elements_are_read() -> None:
    def delete() -> Iterator[int]:
        native.delete_ArrayOfInt(held)
        yield 1

    held = INTS.new(3)
    text = (
        "invalid null reference in method 'ArrayOfInt___setslice__', argument 1 of type "
        "'std::vector< int > *'"
    )
    assert message(lambda: INTS.setslice(held, 0, 1, delete()), ValueError) == text
