"""The stub of the module of classes that SWIG generates in front of the extension module."""

from __future__ import annotations

import re
from collections.abc import Iterator
from dataclasses import replace

from .functions import definitions
from .interface import Class, Function, Interface, Parameter
from .types import ScriptTypes, element_of

_HEAD = '''"""Types of the classes that SWIG generates. Made by scripts/describe-binding.

A family of classes has one generic base here, which is not there at run time. Results come as
instances of the classes that the package registers.
"""

# ruff: noqa: ANN401, N801, N802, N803

from collections.abc import Iterable, Iterator
from typing import Any, ClassVar, Generic, TypeVar, overload

import numpy as np
from numpy.typing import NDArray
from typing_extensions import Self

from tabulon.api import _group, _run, _variables

_Scalar = TypeVar("_Scalar", bound=np.generic)
_Element = TypeVar("_Element")

'''

#: The modules whose classes results are instances of.
_REGISTERED = {"Group": "_group", "Run": "_run", "IndependentVariable": "_variables"}
#: Families whose bases share what is the same in them.
_OUTPUT = ("OutputGroup1D", "OutputGroup2D")
_COMMON = "_OutputGroupOfVariables"

_EVERY_CLASS = """    @property
    def thisown(self) -> bool: ...
    @thisown.setter
    def thisown(self, v: bool, /) -> None: ...
    @staticmethod
    def __swig_destroy__(self: Any, /) -> None: ...
"""


def _registered(name: str) -> str:
    module = "_variables" if name.startswith("Variable") else _REGISTERED.get(name)
    return f"{module}.{name}" if module else name


def _method(function: Function, types: ScriptTypes) -> Iterator[str]:
    if function.kind == "destructor":
        return
    is_static = function.kind == "static"
    constructed = function.kind == "constructor"
    yield from definitions(
        function,
        "__init__" if constructed else function.name,
        types,
        "" if is_static else "self",
        "None" if constructed else None,
        ("@staticmethod",) if is_static else (),
        by_name=True,
    )


def _methods(exported: Class, types: ScriptTypes) -> list[str]:
    """Return the members of a class."""
    lines = [f"{variable}: ClassVar[str]" for variable in exported.variables]
    for function in exported.functions.values():
        lines += _method(function, types)
    if not exported.has_constructor:
        lines.append("def __init__(self, *args: Any, **kwargs: Any) -> None: ...")
    if exported.name == "SwigPyIterator":
        lines.append("def __iter__(self) -> Self: ...")
        # It is an iterator, and no number: what it is compared with or moved by is its own matter.
        lines = [
            line.replace("x: SwigPyIterator", "x: object") if "__eq__" in line or "__ne__" in line
            else f"{line}  # type: ignore[misc]" if "def __isub__" in line
            else line
            for line in lines
        ]  # fmt: skip
    return lines


def _is_slice(parameters: tuple[Parameter, ...]) -> bool:
    return bool(parameters) and parameters[0].name == "slice"


def _class(name: str, bases: str, lines: list[str]) -> str:
    body = "".join(f"    {line}\n" for line in lines) or "    ...\n"
    return f"class {name}{f'({bases})' if bases else ''}:\n{body}"


def _generic(members: list[str], others: list[str]) -> list[str]:
    """Return members that hold for a family, from those of two classes of it."""
    words = re.compile(r"np\.\w+|\w+|\W")

    def word(one: str, other: str) -> str:
        if one == other:
            return one
        return "_Scalar" if one.startswith("np.") else "_Element"

    return [
        "".join(map(word, words.findall(one), words.findall(other)))
        for one, other in zip(members, others, strict=True)
    ]


class _ProxyStub:
    def __init__(self, interface: Interface) -> None:
        names = {exported.native: exported.name for exported in interface.classes}
        self._classes = {exported.name: exported for exported in interface.classes}
        self._types = ScriptTypes(
            names.get, lambda native: _registered(names[native]) if native in names else None
        )

    def _arrays(self) -> Iterator[str]:
        """Give the arrays: of elements, which anything that converts may stand for."""
        arrays = [exported for exported in self._classes.values() if exported.is_array]
        sample = arrays[0]
        types = ScriptTypes(lambda _: None, lambda _: "Self")
        # As sequences have it: an index first.
        index_first = {
            name: replace(
                function, forms=sorted(function.forms, key=lambda form: _is_slice(form.parameters))
            )
            for name, function in sample.functions.items()
        }
        members = _methods(replace(sample, functions=index_first), types)
        for place, line in enumerate(members):
            line = line.replace("Iterable[int]", "Iterable[Any]")
            line = re.sub(r"\b(x|value): int", r"\1: Any", line)
            if line.startswith("def __getitem__"):
                line = line.replace("-> int", "-> _Element")
            elif line.startswith("def iterator"):
                line = line.replace("Self", "SwigPyIterator")
            members[place] = line
        members += [
            "def __iter__(self) -> Iterator[_Element]: ...",
            "def __copy__(self) -> Self: ...",
            "def __deepcopy__(self, memo: Any) -> Self: ...",
        ]
        yield _class("_ArrayOf", "Generic[_Element]", members) + _EVERY_CLASS
        for exported in arrays:
            element = self._types.result(element_of(exported.native) or "")
            yield _class(exported.name, f"_ArrayOf[{element}]", [])

    def _family(self, family: str) -> Iterator[str]:
        """Give the generic base of a family, and its classes."""
        members = [_methods(self._classes[f"{family}_{kind}"], self._types)
                   for kind in ("Float64", "Int32")]  # fmt: skip
        generic = _generic(*members)
        base = self._classes[f"{family}_Float64"].base or ""
        parameters = (
            "_Scalar, _Element" if any("_Scalar" in line for line in generic) else "_Element"
        )
        if family in _OUTPUT:
            base = _COMMON
            generic = [line for line in generic if "def add_variable(" not in line]
        yield _class(f"_{family}", f"{base}, Generic[{parameters}]", generic)
        for kind, element in (("Float32", "float"), ("Float64", "float"), ("Int32", "int")):
            scalar = f"np.{kind.lower()}, " if "_Scalar" in parameters else ""
            yield _class(f"{family}_{kind}", f"_{family}[{scalar}{element}]", [])

    def _common(self) -> str:
        sample = _methods(self._classes["OutputGroup1D_Float64"], self._types)
        lines = [line for line in sample if "def add_variable(" in line]
        return _class(_COMMON, "OutputGroup", lines)

    def text(self) -> Iterator[str]:
        yield from self._arrays()
        written = set()
        for exported in self._classes.values():
            family = exported.name.rpartition("_")[0]
            if exported.is_array:
                continue
            if f"{family}_Float64" in self._classes:
                if family == _OUTPUT[0] and family not in written:
                    yield self._common()
                if family not in written:
                    written.add(family)
                    yield from self._family(family)
            else:
                members = _methods(exported, self._types)
                yield _class(exported.name, exported.base or "", members) + _EVERY_CLASS


def proxy_stub(interface: Interface) -> str:
    """Return the stub of the generated classes."""
    lines = ["SHARED_PTR_DISOWN: int", "cvar: Any"]
    lines += [f"{constant}: int" for constant in interface.constants]
    return _HEAD + "\n".join(lines) + "\n\n" + "\n".join(_ProxyStub(interface).text())
