"""The iterator of the arrays."""

from __future__ import annotations

import gc
from collections.abc import Callable

import _TabulonAPI_Python as native
import pytest
from support.arrays import INTS, Functions
from support.flat import message
from surface_table import ARRAYS


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
