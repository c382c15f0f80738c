"""How the types of the interface look to a script."""

from __future__ import annotations

import re
from collections.abc import Callable

_PLAIN = {
    "void": "None",
    "bool": "bool",
    "int": "int",
    "size_t": "int",
    "std::size_t": "int",
    "ptrdiff_t": "int",
    "float": "float",
    "double": "float",
    "std::string": "str",
    "PyObject": "Any",
    "SWIGPY_SLICEOBJECT": "slice",
}
_SCALARS = {"float": "np.float32", "double": "np.float64", "int": "np.int32"}


def _without_allocators(native: str) -> str:
    start = native.find(",std::allocator<(")
    if start < 0:
        return native
    end = start
    depth = 0
    for end in range(start, len(native)):
        depth += {"(": 1, ")": -1}.get(native[end], 0)
        if native[end] == ")" and depth == 0:
            break
    return _without_allocators(native[:start] + native[end + 2 :])


def bare(encoded: str) -> str:
    """Return a type without constness, pointers, references and allocators."""
    return _without_allocators(re.sub(r"^((q\(const\)|p|r)\.)+", "", encoded))


def element_of(native: str) -> str | None:
    """Return the element of a vector, else none."""
    found = re.fullmatch(r"std::vector<\((.*)\)>", native)
    return found[1] if found else None


def shared_of(native: str) -> str | None:
    """Return the class that a shared pointer points to, else none."""
    found = re.fullmatch(r"std::shared_ptr<\((.*)\)>", native)
    return found[1] if found else None


class ScriptTypes:
    """Types of parameters and results, by encoded types.

    Parameters
    ----------
    given
        How a class of this encoded name is called as a parameter; none for what is no class.
    received
        The same as a result.
    """

    def __init__(
        self, given: Callable[[str], str | None], received: Callable[[str], str | None]
    ) -> None:
        self._given = given
        self._received = received

    def parameter(self, encoded: str) -> str:
        """Return the type of a parameter."""
        return self._text(bare(encoded), self._given, lambda element: f"Iterable[{element}]")

    def result(self, encoded: str) -> str:
        """Return the type of a result."""
        native = bare(encoded)
        if encoded.startswith("p."):
            return self._received(native) or _PLAIN[native]
        return self._text(native, self._received, lambda element: f"tuple[{element}, ...]")

    def _text(
        self, native: str, name: Callable[[str], str | None], items: Callable[[str], str]
    ) -> str:
        found = re.fullmatch(r"std::vector<\((.*)\)>::(\w+)", native)
        if found:
            return "int" if found[2] != "value_type" else self._text(found[1], name, items)
        if native.startswith("Binding::ArrayView"):
            return f"NDArray[{_SCALARS[native[20:-2]]}]"
        element = element_of(native)
        if element:
            return items(self._text(element, name, items))
        native = shared_of(native) or native
        # Enumerations cross as integers.
        return _PLAIN.get(native) or name(native) or "int"
