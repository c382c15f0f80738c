"""What a script does with the variables that it holds, beside a model of what it must see."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass
from typing import Any, TypeVar

import _TabulonAPI_Python as native
from numpy.typing import NDArray
from tabulon import api

from support.cache_model import GroupCache, LibraryModel, Loaded, Refused, RunCache
from support.changing_run import SHAPES, STATIONS, ChangingRun, GroupShape
from support.flat import Flat, error_of

#: How many objects of each sort are held.
HELD = 8
WHOLE = "_get_data_for_all_independent_variable_values"
#: What scripts do with variables; some of it more often.
WORK = (
    *("get_an_array", "get_an_array", "get_an_array", "copy_all", "figures", "figures"),
    *("write", "rewrite", "rewrite", "unload", "unload", "release"),
)
ResultT = TypeVar("ResultT")


@dataclass
class HeldVariable:
    """A typed variable, with what its model knows of it."""

    flat: Flat
    run: RunCache
    group: GroupCache
    place: int

    @property
    def shape(self) -> GroupShape:
        return SHAPES[self.group.place]


@dataclass
class HeldArray:
    """An array over the library's memory, and the values that it must have."""

    array: NDArray[Any]
    loaded: Loaded


class DataWork:
    """Work with data and figures; each method asks the model and the library."""

    files: ChangingRun
    model: LibraryModel
    runs: list[tuple[Flat, RunCache]]
    variables: list[HeldVariable]
    arrays: list[HeldArray]

    @staticmethod
    def ask(predict: Callable[[], Any], call: Callable[[], ResultT]) -> tuple[Any, ResultT] | None:
        """Make a request. Return what the model expects and what came; None if it was refused."""
        expected, refusal = None, ""
        try:
            expected = predict()
        except Refused as error:
            refusal = error.words
        if not refusal:
            return expected, call()
        text = error_of(call)
        assert refusal in text, (refusal, text)
        return None

    def hold(self, held: list[Any], item: object) -> None:
        held.append(item)
        del held[: len(held) - HELD]

    def _get_an_array(self, held: HeldVariable, row: int, way: int) -> None:
        answer = self.ask(
            lambda: held.run.load(held.group, held.place, range(row, row + 1)),
            self._way_to_an_array(held, row, way),
        )
        if answer is not None:
            (loaded,), array = answer
            assert array.dtype == held.group.dtype
            assert array.tolist() == loaded.values.tolist()
            self.hold(self.arrays, HeldArray(array, loaded))

    @staticmethod
    def _way_to_an_array(held: HeldVariable, row: int, way: int) -> Callable[[], Any]:
        flat, package = held.flat, held.flat.pointer
        if not held.shape.two_axes:
            ways = [flat._get_data_numpy_from_vector, package.get_data]
        else:
            value = STATIONS[row]
            ways = [
                lambda: flat._get_data_at_index_numpy_from_vector(row),
                lambda: flat._get_data_at_value_numpy_from_vector(value),
                lambda: flat._get_data_at_value_numpy_from_vector(str(value)),
                lambda: package.get_data_at_index(row),
                lambda: package.get_data_at_value(value),
            ]
        return ways[way % len(ways)]

    def _copy_all(self, held: HeldVariable, _row: int, way: int) -> None:
        flat, package = held.flat, held.flat.pointer
        if held.shape.two_axes:
            call = (
                getattr(package, WHOLE[1:]) if way % 2 else getattr(flat, f"{WHOLE}_native_array")
            )
        else:
            call = package.get_data_as_tuple if way % 2 else flat._get_data_native_array
        rows = range(held.shape.rows)
        answer = self.ask(lambda: held.run.load(held.group, held.place, rows), call)
        if answer is not None:
            found = answer[1] if held.shape.two_axes else (answer[1],)
            assert [list(row) for row in found] == [row.values.tolist() for row in answer[0]]

    def _figures(self, held: HeldVariable, row: int, other: int) -> None:
        ending, where = ("_at_index", (row,)) if held.shape.two_axes else ("", ())
        flat, other = held.flat, other % len(held.shape.names)
        name = held.shape.names[other]
        answer = self.ask(
            lambda: held.run.figures(held.group, row),
            lambda: (
                getattr(flat, f"get_maximum{ending}")(*where),
                getattr(flat, f"get_minimum{ending}")(*where),
                getattr(flat, f"get_mean{ending}")(*where),
                getattr(flat, f"get_maximum_contemporaneous{ending}")(name, *where),
                getattr(flat, f"get_minimum_contemporaneous{ending}")(name, *where),
            ),
        )
        if answer is not None and answer[0] is not None:
            extremes, means = answer[0]
            high, low = extremes[2 * held.place], extremes[2 * held.place + 1]
            own = held.place
            assert answer[1] == (high[own], low[own], means[own], high[other], low[other])

    def _write(self, _held: HeldVariable, row: int, place: int) -> None:
        if self.arrays:
            held = self.arrays[(place + row) % len(self.arrays)]
            place %= len(held.array)
            held.array[place] = held.loaded.values[place] = -place - 1
            held.loaded.changed = True

    def _rewrite(self, held: HeldVariable, _row: int, _way: int) -> None:
        """Another program writes the data of the group anew; the run takes no note of it."""
        self.files.write_data(held.group.place)

    def _unload(self, held: HeldVariable, _row: int, _way: int) -> None:
        flat = next((flat for flat, run in self.runs if run is held.run), None)
        if flat is not None:
            names = (held.shape.names[held.place], held.shape.name)
            answer = self.ask(
                lambda: held.run.unload(*names),
                lambda: flat.unload_variable_from_specific_group(*names),
            )
            assert answer is None or answer[0] is answer[1]

    def _release(self, _held: HeldVariable, row: int, way: int) -> None:
        self.set_buffered(on=row == 0, by_package=way % 2 == 0)

    def set_buffered(self, *, on: bool, by_package: bool) -> None:
        self.model.set_buffered(value=on)
        flat = native.TabulonApi_CacheSettings_set_buffered_read_enabled
        (api.set_buffered_read_enabled if by_package else flat)(on)
