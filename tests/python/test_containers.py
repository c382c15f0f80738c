"""The arrays and their slices, against a model that knows nothing of them."""

from __future__ import annotations

import gc
import itertools
import sys
from collections.abc import Iterator
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from support.arrays import INTS, Functions
from support.flat import message
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
    four = INTS.new(range(4))
    text = "attempt to assign sequence of size 1 to extended slice of size 2"
    assign = lambda: INTS.setitem(four, slice(None, None, 2), [1])  # noqa: E731
    assert message(assign, ValueError) == text
    assert INTS.elements(four) == [0, 1, 2, 3]


def test_elements_told_as_scripts_write_them() -> None:
    ten = INTS.new(range(50, 60))
    assert INTS.getitem(ten, -10) == 50
    for index in (-11, 10):
        assert message(lambda i=index: INTS.getitem(ten, i), IndexError) == "index out of range"
    assert INTS.elements(INTS.new(3)) == [0, 0, 0]
    strings = Functions("ArrayOfString")
    assert strings.elements(strings.new(2)) == ["", ""]


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


@pytest.mark.parametrize("index", [2**63, -(2**63) - 1, 2**70])
@pytest.mark.parametrize(
    ("operation", "arguments"),
    [
        ("getitem", ()),
        ("delitem", ()),
        ("setitem", (5,)),
        ("getslice", (1,)),
        ("delslice", (1,)),
        ("setslice", (1,)),
        ("setslice", (1, [5])),
    ],
)
def test_a_huge_index_does_not_fit(
    operation: str, arguments: tuple[object, ...], index: int
) -> None:
    held = INTS.new([1, 2])
    text = (
        f"in method 'ArrayOfInt___{operation}__', argument 2 of type "
        "'std::vector< int >::difference_type'"
    )
    call = lambda: getattr(INTS, operation)(held, index, *arguments)  # noqa: E731
    assert message(call, OverflowError) == text
    assert INTS.elements(held) == [1, 2]


@pytest.mark.parametrize(("name", "element"), ARRAYS.items())
def test_a_huge_index_does_not_fit_any_array(name: str, element: str) -> None:
    functions = Functions(name)
    text = (
        f"in method '{name}___getitem__', argument 2 of type "
        f"'std::vector< {element} >::difference_type'"
    )
    assert message(lambda: functions.getitem(functions.new(1), 2**63), OverflowError) == text


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
