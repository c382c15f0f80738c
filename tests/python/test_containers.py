"""The arrays and their iterator, against a model that knows nothing of them."""

from __future__ import annotations

import array
import gc
import itertools
import sys
import weakref
from collections.abc import Callable, Iterable, Iterator
from pathlib import Path
from unittest.mock import Mock

import _TabulonAPI_Python as native
import numpy as np
import pytest
from surface_table import ARRAYS, overload_text

#: Bounds and steps of the slices that are tried on arrays of 0 to 8 elements.
BOUNDS = (None, *range(-10, 11))
STEPS = (None, -9, -3, -1, 1, 2, 3, 9)
SIZES = range(9)

VALUES: dict[str, tuple[object, object]] = {
    "ArrayOfInt": (3, -4),
    "ArrayOfFloat": (0.5, -1.25),
    "ArrayOfDouble": (0.1, 1e300),
    "ArrayOfString": ("one", "zwö"),
    "ArrayOfArrayOfInt": ((1, 2), ()),
    "ArrayOfArrayOfFloat": ((0.5,), (1.0, 2.0)),
    "ArrayOfArrayOfDouble": ((0.1,), (1.0, 2.0)),
    "ArrayOfArrayOfString": (("a", "b"), ("",)),
}
DEFAULTS: dict[str, object] = {
    "ArrayOfInt": 0,
    "ArrayOfFloat": 0.0,
    "ArrayOfDouble": 0.0,
    "ArrayOfString": "",
}


class Functions:
    """The functions of one array class, without its name."""

    def __init__(self, name: str) -> None:
        self.name = name
        self.new = getattr(native, f"new_{name}")
        self.delete = getattr(native, f"delete_{name}")
        self.iterator = getattr(native, f"{name}_iterator")
        for operation in (
            *("len", "bool", "nonzero", "getitem", "setitem", "delitem"),
            *("getslice", "setslice", "delslice"),
        ):
            setattr(self, operation, getattr(native, f"{name}___{operation}__"))

    def elements(self, held: object) -> list[object]:
        return [self.getitem(held, i) for i in range(self.len(held))]


INTS = Functions("ArrayOfInt")


def message(call: Callable[[], object], kind: type[BaseException]) -> str:
    with pytest.raises(kind) as error:
        call()
    assert type(error.value) is kind
    return str(error.value)


# A model of the slice rules


def figures(bounds: slice, size: int) -> tuple[int, int, int]:
    """What a slice object says of an array, before anything is cut to its size."""
    step = 1 if bounds.step is None else bounds.step

    def bound(value: int | None, default: int) -> int:
        if value is None:
            return default
        return value + size if value < 0 else value

    if step < 0:
        return bound(bounds.start, size - 1), bound(bounds.stop, -1), step
    return bound(bounds.start, 0), bound(bounds.stop, size), step


def places(i: int, j: int, step: int, size: int, *, get: bool) -> tuple[int, list[int]]:
    """Where elements are inserted for step 1, and which elements the slice reaches."""
    if step > 0:
        first = 0 if i < 0 else i
        if first >= size:
            first = 0 if get else size
        last = max(first, min(max(j, 0), size))
        return first, list(range(first, last, step))
    first = min(max(i, -1), size - 1)
    last = min(max(j, -1), size - 1)
    return first, list(range(max(first, last), last, step))


def slices() -> Iterator[slice]:
    return itertools.starmap(slice, itertools.product(BOUNDS, BOUNDS, STEPS))


# Slices and elements


@pytest.mark.parametrize("size", SIZES)
def test_get_slice(size: int) -> None:
    model = list(range(size))
    held = INTS.new(model)
    for bounds in slices():
        _, reached = places(*figures(bounds, size), size, get=True)
        assert INTS.elements(INTS.getitem(held, bounds)) == [model[i] for i in reached], bounds


@pytest.mark.parametrize("size", SIZES)
def test_delete_slice(size: int) -> None:
    for bounds in slices():
        _, reached = places(*figures(bounds, size), size, get=False)
        expected = [i for i in range(size) if i not in reached]
        for delete in (INTS.delitem, INTS.setitem):
            held = INTS.new(range(size))
            assert delete(held, bounds) is None
            assert INTS.elements(held) == expected, bounds


@pytest.mark.parametrize("size", SIZES)
def test_assign_to_slice(size: int) -> None:
    for bounds, count in itertools.product(slices(), (0, 1, 2, 5)):
        values = [100 + i for i in range(count)]
        first, reached = places(*figures(bounds, size), size, get=False)
        held = INTS.new(range(size))
        expected = list(range(size))
        if bounds.step in (None, 1):
            expected[first : first + len(reached)] = values
        elif len(reached) == count:
            for place, value in zip(reached, values, strict=True):
                expected[place] = value
        else:
            text = (
                f"attempt to assign sequence of size {count} "
                f"to extended slice of size {len(reached)}"
            )
            assert message(lambda: INTS.setitem(held, bounds, values), ValueError) == text  # noqa: B023
            assert INTS.elements(held) == expected
            continue
        INTS.setitem(held, bounds, values)
        assert INTS.elements(held) == expected, (bounds, count)


@pytest.mark.parametrize("size", SIZES)
def test_ranges_take_their_bounds_as_given(size: int) -> None:
    model = list(range(size))
    for i, j in itertools.product(range(-11, 12), repeat=2):
        _, got = places(i, j, 1, size, get=True)
        assert INTS.elements(INTS.getslice(INTS.new(model), i, j)) == got, (i, j)
        first, reached = places(i, j, 1, size, get=False)
        expected = [*model[:first], *model[first + len(reached) :]]
        for delete in (INTS.delslice, INTS.setslice):
            held = INTS.new(model)
            delete(held, i, j)
            assert INTS.elements(held) == expected, (i, j)
        held = INTS.new(model)
        INTS.setslice(held, i, j, (7, 8, 9))
        expected[first:first] = [7, 8, 9]
        assert INTS.elements(held) == expected, (i, j)


@pytest.mark.parametrize("size", SIZES)
def test_one_element(size: int) -> None:
    for i in range(-11, 12):
        held = INTS.new(range(size))
        if -size <= i < size:
            assert INTS.getitem(held, i) == i % size
            INTS.setitem(held, i, 50)
            assert INTS.getitem(held, i) == 50
            INTS.delitem(held, i)
            assert INTS.elements(held) == [n for n in range(size) if n != i % size]
        else:
            for call in (
                lambda: INTS.getitem(held, i),  # noqa: B023
                lambda: INTS.setitem(held, i, 50),  # noqa: B023
                lambda: INTS.delitem(held, i),  # noqa: B023
            ):
                assert message(call, IndexError) == "index out of range"
            assert INTS.len(held) == size


def test_slices_told_as_scripts_write_them() -> None:
    ten = INTS.new(range(10))
    assert INTS.elements(INTS.getitem(ten, slice(5, 2))) == []
    assert INTS.elements(INTS.getitem(ten, slice(None, None, -1))) == list(range(9, -1, -1))
    assert INTS.elements(INTS.getitem(ten, slice(20, 25))) == list(range(10))
    INTS.delitem(ten, slice(20, 25))
    assert INTS.len(ten) == 10
    INTS.setitem(ten, slice(5, 2), [1, 2])
    assert INTS.elements(ten) == [0, 1, 2, 3, 4, 1, 2, 5, 6, 7, 8, 9]
    five = INTS.new(range(5))
    INTS.delitem(five, slice(None, None, 2))
    assert INTS.elements(five) == [1, 3]


def test_zero_step() -> None:
    held = INTS.new([1])
    for call in (
        lambda: INTS.getitem(held, slice(None, None, 0)),
        lambda: INTS.setitem(held, slice(None, None, 0), [1]),
        lambda: INTS.setitem(held, slice(None, None, 0)),
        lambda: INTS.delitem(held, slice(None, None, 0)),
    ):
        assert message(call, ValueError) == "slice step cannot be zero"


def test_extreme_slices_stay_within_the_array() -> None:
    held = INTS.new(range(4))
    most, least = sys.maxsize, -sys.maxsize - 1
    assert INTS.elements(INTS.getitem(held, slice(None, None, most))) == [0]
    assert INTS.elements(INTS.getitem(held, slice(None, None, least))) == [3]
    assert INTS.elements(INTS.getitem(held, slice(least, most))) == [0, 1, 2, 3]
    INTS.delitem(held, slice(most, least, least))
    assert INTS.elements(held) == [0, 1, 2]
    assert message(lambda: INTS.getitem(held, slice(0, 2**70)), OverflowError)
    assert (
        message(lambda: INTS.getitem(held, slice("a", None)), TypeError)
        == "slice indices must be integers or None"
    )


def test_a_huge_index_does_not_fit() -> None:
    held = INTS.new([1])
    text = (
        "in method 'ArrayOfInt___getslice__', argument 2 of type "
        "'std::vector< int >::difference_type'"
    )
    assert message(lambda: INTS.getslice(held, 2**70, 1), OverflowError) == text


def test_an_array_may_be_assigned_to_a_slice_of_itself() -> None:
    held = INTS.new(range(4))
    INTS.setitem(held, slice(1, 2), held)
    assert INTS.elements(held) == [0, 0, 1, 2, 3, 2, 3]
    INTS.setitem(held, slice(None, None, -1), held)
    assert INTS.elements(held) == [3, 2, 3, 2, 1, 0, 0]


# Construction


@pytest.mark.parametrize("name", ARRAYS)
def test_empty_array_is_false(name: str) -> None:
    functions = Functions(name)
    held = functions.new()
    assert (functions.len(held), functions.bool(held), functions.nonzero(held)) == (0, False, False)
    filled = functions.new(2)
    assert (functions.len(filled), functions.bool(filled), functions.nonzero(filled)) == (
        2,
        True,
        True,
    )


@pytest.mark.parametrize("name", ARRAYS)
def test_default_elements(name: str) -> None:
    functions = Functions(name)
    default = DEFAULTS.get(name, () if name.startswith("ArrayOfArray") else None)
    assert functions.elements(functions.new(3)) == [default] * 3


@pytest.mark.parametrize(("name", "values"), VALUES.items())
def test_elements_come_back_as_they_went_in(name: str, values: tuple[object, object]) -> None:
    functions = Functions(name)
    held = functions.new(2, values[0])
    assert functions.elements(held) == [values[0]] * 2
    functions.setitem(held, 1, values[1])
    functions.setitem(held, slice(2, 2), values)
    assert functions.elements(held) == [*values, *values]
    assert [type(element) for element in functions.elements(held)] == [
        type(value) for value in (*values, *values)
    ]
    copy = functions.new(held)
    functions.delitem(held, slice(None))
    assert functions.elements(copy) == [*values, *values]


@pytest.mark.parametrize("name", ARRAYS)
def test_more_elements_than_memory_holds(name: str) -> None:
    functions = Functions(name)
    for count in (2**62, 2**64 - 1):
        message(lambda: functions.new(count), MemoryError)  # noqa: B023


def test_element_of_the_wrong_type() -> None:
    held = INTS.new(2)
    assert message(lambda: INTS.setitem(held, 0, "x"), TypeError) == overload_text(
        "ArrayOfInt___setitem__"
    )
    assert message(lambda: INTS.setslice(held, 0, 1, ["x"]), TypeError) == overload_text(
        "ArrayOfInt___setslice__"
    )
    assert message(lambda: INTS.new(2, "x"), TypeError) == overload_text("new_ArrayOfInt")
    assert message(lambda: INTS.new(Functions("ArrayOfFloat").new(2)), TypeError) == overload_text(
        "new_ArrayOfInt"
    )
    text = (
        "invalid null reference in method 'new_ArrayOfInt', argument 1 of type "
        "'std::vector< int > const &'"
    )
    assert message(lambda: INTS.new(None), ValueError) == text


# Any iterable serves


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
    ids=repr,
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
    ids=repr,
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


def test_a_generator_that_fails_is_of_the_wrong_type() -> None:
    def fail() -> Iterator[int]:
        yield 1
        raise RuntimeError("no more")

    assert message(lambda: INTS.new(fail()), TypeError) == overload_text("new_ArrayOfInt")


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


# Iterators


def test_iterator_gives_the_elements_in_order() -> None:
    iterator = INTS.iterator(INTS.new([4, 5]))
    assert native.SwigPyIterator_value(iterator) == 4
    assert native.SwigPyIterator_next(iterator) == 4
    assert native.SwigPyIterator___next__(iterator) == 5
    for _ in range(2):
        with pytest.raises(StopIteration) as error:
            native.SwigPyIterator_next(iterator)
        assert error.value.value is None
    assert native.SwigPyIterator_previous(iterator) == 5
    assert native.SwigPyIterator_previous(iterator) == 4
    for _ in range(2):
        with pytest.raises(StopIteration):
            native.SwigPyIterator_previous(iterator)
    assert native.SwigPyIterator_value(iterator) == 4


@pytest.mark.parametrize("steps", range(-6, 7))
@pytest.mark.parametrize("start", range(5))
def test_moving_an_iterator(start: int, steps: int) -> None:
    held = INTS.new(range(4))
    target = start + steps

    def at_start() -> object:
        return native.SwigPyIterator_incr(INTS.iterator(held), start)

    moves: list[Callable[[object], object]] = [
        lambda it: native.SwigPyIterator_advance(it, steps),
        lambda it: native.SwigPyIterator___iadd__(it, steps),
        lambda it: native.SwigPyIterator___isub__(it, -steps),
        lambda it: native.SwigPyIterator___add__(it, steps),
        lambda it: native.SwigPyIterator___sub__(it, -steps),
        lambda it: (
            native.SwigPyIterator_incr(it, steps)
            if steps >= 0
            else native.SwigPyIterator_decr(it, -steps)
        ),
    ]
    for move in moves:
        iterator = at_start()
        if 0 <= target <= 4:
            moved = move(iterator)
            assert native.SwigPyIterator_distance(INTS.iterator(held), moved) == target
        else:
            with pytest.raises(StopIteration):
                move(iterator)


def test_moves_return_the_iterator_and_sums_a_new_one() -> None:
    iterator = INTS.iterator(INTS.new(range(4)))
    assert native.SwigPyIterator_incr(iterator) is iterator
    assert native.SwigPyIterator_decr(iterator) is iterator
    assert native.SwigPyIterator_advance(iterator, 1) is iterator
    assert native.SwigPyIterator___iadd__(iterator, 1) is iterator
    assert native.SwigPyIterator___isub__(iterator, 1) is iterator
    further = native.SwigPyIterator___add__(iterator, 2)
    assert native.SwigPyIterator_value(further) == 3
    assert native.SwigPyIterator_value(native.SwigPyIterator___sub__(further, 1)) == 2
    assert native.SwigPyIterator_value(native.SwigPyIterator_copy(further)) == 3
    assert native.SwigPyIterator_value(iterator) == 1


def test_comparing_iterators() -> None:
    held = INTS.new(range(3))
    one, other = INTS.iterator(held), native.SwigPyIterator_incr(INTS.iterator(held), 2)
    assert native.SwigPyIterator_distance(one, other) == 2
    assert native.SwigPyIterator___sub__(other, one) == 2
    assert native.SwigPyIterator___sub__(one, other) == -2
    assert native.SwigPyIterator_equal(one, other) is False
    assert native.SwigPyIterator___eq__(one, other) is False
    assert native.SwigPyIterator___ne__(one, other) is True
    same = native.SwigPyIterator_copy(one)
    assert native.SwigPyIterator_equal(one, same) is True
    assert native.SwigPyIterator___eq__(one, same) is True
    assert native.SwigPyIterator___ne__(one, same) is False
    assert native.SwigPyIterator_equal(one, INTS.iterator(INTS.new(range(3)))) is False


@pytest.mark.parametrize(
    "compare",
    [
        native.SwigPyIterator_distance,
        native.SwigPyIterator_equal,
        native.SwigPyIterator___eq__,
        native.SwigPyIterator___ne__,
        native.SwigPyIterator___sub__,
    ],
)
def test_iterators_of_different_kinds(compare: Callable[[object, object], object]) -> None:
    one, other = INTS.iterator(INTS.new(1)), Functions("ArrayOfDouble")
    text = message(lambda: compare(one, other.iterator(other.new(1))), ValueError)
    assert text == "bad iterator type"


@pytest.mark.parametrize("name", ARRAYS)
def test_an_iterator_keeps_its_array_alive(name: str) -> None:
    functions = Functions(name)
    held = functions.new(2)
    expected = functions.elements(held)
    iterator = functions.iterator(held)
    further = native.SwigPyIterator___add__(iterator, 1)
    del held, iterator
    gc.collect()
    assert native.SwigPyIterator_next(further) == expected[1]
    with pytest.raises(StopIteration):
        native.SwigPyIterator_next(further)


def test_an_array_may_change_under_its_iterator() -> None:
    held = INTS.new(range(4))
    iterator = native.SwigPyIterator_incr(INTS.iterator(held), 3)
    INTS.setitem(held, slice(0, 0), range(1000))
    assert native.SwigPyIterator_value(iterator) == 3
    INTS.delitem(held, slice(1, None))
    with pytest.raises(StopIteration):
        native.SwigPyIterator_value(iterator)
    assert native.SwigPyIterator_value(native.SwigPyIterator_decr(iterator, 3)) == 0
    native.delete_ArrayOfInt(held)
    text = message(lambda: native.SwigPyIterator_value(iterator), ValueError)
    assert text == "the array was deleted"


# Arrays of objects


@pytest.fixture
def runs(tmp_path: Path) -> list[object]:
    for name in ("a", "b"):
        (tmp_path / f"{name}.$TE").write_bytes(b"Run completed.\n")
    return [native.TabulonApi_get_run(str(tmp_path), name) for name in ("a", "b")]


def test_an_array_shares_the_objects(runs: list[object]) -> None:
    functions = Functions("ArrayOfRun")
    held = functions.new(runs)
    element = functions.getitem(held, 1)
    functions.delete(held)
    runs.clear()
    gc.collect()
    assert native.Run_get_name(element) == "b"


def test_none_is_a_null_element(runs: list[object]) -> None:
    functions = Functions("ArrayOfRun")
    held = functions.new([None, runs[0], None])
    functions.setitem(held, 1, None)
    functions.setitem(held, 2, runs[1])
    names = [element and native.Run_get_name(element) for element in functions.elements(held)]
    assert names == [None, None, "b"]
    again = functions.new(functions.elements(held))
    assert functions.getitem(again, 0) is None
    assert native.SwigPyIterator_value(functions.iterator(held)) is None


def test_an_object_of_another_class_is_no_element(runs: list[object]) -> None:
    groups = Functions("ArrayOfGroup")
    assert message(lambda: groups.new(runs), TypeError) == overload_text("new_ArrayOfGroup")
