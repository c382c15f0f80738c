"""Values that xarray reads when it needs them."""

from __future__ import annotations

from typing import Any

import numpy as np
from numpy.typing import NDArray
from xarray.backends import BackendArray
from xarray.core import indexing

from tabulon._shapes import ReadVariable

__all__ = ["LazyValues"]


class LazyValues(BackendArray):
    """The values of a variable: only the rows and columns that are asked for are read."""

    def __init__(self, variable: ReadVariable) -> None:
        self.variable = variable
        self.shape = variable.shape
        self.dtype = variable.dtype

    def __getitem__(self, key: indexing.ExplicitIndexer) -> Any:  # noqa: ANN401 - as of xarray
        return indexing.explicit_indexing_adapter(
            key, self.shape, indexing.IndexingSupport.OUTER, self._read
        )

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        return "tabulon.LazyValues", self.variable.__dask_tokenize__()

    def _read(self, key: tuple[Any, ...]) -> NDArray[Any]:
        """Return values; of places that are listed along an axis, the range around them is read."""
        around, within = zip(*(_around(one) for one in key), strict=True)
        values = self.variable[around]
        for axis in reversed(range(len(key))):
            if within[axis] is not None:
                place = sum(1 for one in around[:axis] if isinstance(one, slice))
                values = np.take(values, within[axis], axis=place)
        return np.asarray(values)


def _around(key: Any) -> tuple[Any, NDArray[np.intp] | None]:  # noqa: ANN401 - as of xarray
    if not isinstance(key, np.ndarray):
        return key, None
    if not key.size:
        return slice(0, 0), key.astype(np.intp)
    first = int(key.min())
    return slice(first, int(key.max()) + 1), (key - first).astype(np.intp)
