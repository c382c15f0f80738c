"""The functions of the array classes, for tests."""

from __future__ import annotations

import _TabulonAPI_Python as native


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
