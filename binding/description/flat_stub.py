"""The stub of the extension module."""

from __future__ import annotations

from collections.abc import Iterator

from .functions import definitions
from .interface import Class, Interface
from .types import ScriptTypes

_HEAD = '''"""Types of the extension module. Made by scripts/describe-binding.

Objects are typed by the classes that SWIG generates. Without the package they come as bare pointer
objects, which only the functions of this module take.
"""

# ruff: noqa: ANN401, N802, N803

from collections.abc import Iterable
from typing import Any, Protocol, overload

import numpy as np
from numpy.typing import NDArray
from tabulon.api import _proxy

'''


def _link_object(interface: Interface) -> Iterator[str]:
    yield "class _Variables(Protocol):"
    for exported in interface.classes:
        for variable in exported.variables:
            yield "    @property"
            yield f"    def {exported.name}_{variable}(self) -> str: ..."
    yield "cvar: _Variables"


def _functions(exported: Class, types: ScriptTypes) -> Iterator[str]:
    itself = f"self: _proxy.{exported.name}"
    for function in exported.functions.values():
        has_self = function.kind in ("method", "destructor")
        result = "Any" if function.kind == "constructor" else None
        yield from definitions(
            function, function.flat_name, types, itself if has_self else "", result
        )
    yield f"def {exported.name}_swigregister(cls: type, /) -> None: ..."
    if exported.has_constructor:
        yield f"def {exported.name}_swiginit(instance: object, pointer: Any, /) -> None: ..."


def flat_stub(interface: Interface) -> str:
    """Return the stub of the extension module."""
    names = {exported.native: f"_proxy.{exported.name}" for exported in interface.classes}
    types = ScriptTypes(names.get, names.get)
    lines = ["SHARED_PTR_DISOWN: int"]
    lines += [f"{constant}: int" for constant in interface.constants]
    lines += _link_object(interface)
    for exported in interface.classes:
        lines += _functions(exported, types)
    return _HEAD + "\n".join(lines) + "\n"
