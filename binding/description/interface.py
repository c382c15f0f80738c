"""What the interface files export, as SWIG understood them."""

from __future__ import annotations

import re
import subprocess
import xml.etree.ElementTree as ET
from collections.abc import Iterator
from dataclasses import dataclass, field
from pathlib import Path
from tempfile import TemporaryDirectory

BINDING = Path(__file__).resolve().parents[1]


def spelled(encoded: str) -> str:
    """Return a type of SWIG's as C++, in the spelling of the module's error texts."""
    for prefix, suffix in (("q(const).", " const"), ("p.", " *"), ("r.", " &")):
        if encoded.startswith(prefix):
            return spelled(encoded.removeprefix(prefix)) + suffix
    return encoded.replace("<(", "< ").replace(")>", " >")


@dataclass(frozen=True)
class Parameter:
    """A parameter of a form; its type is encoded as SWIG does."""

    name: str
    type: str
    default: str | None


@dataclass(frozen=True)
class Form:
    """One way to call a function, without `self`."""

    parameters: tuple[Parameter, ...]
    result: str
    is_const: bool
    prototype: str
    leaves_out: bool
    """Whether it is another form without parameters that have a default."""


@dataclass
class Function:
    """A function of the module; one with several forms is overloaded."""

    flat_name: str
    name: str
    kind: str
    """`method`, `static`, `constructor` or `destructor`."""
    forms: list[Form] = field(default_factory=list)


@dataclass
class Class:
    """An exported class."""

    name: str
    native: str
    """Encoded."""
    base: str | None
    functions: dict[str, Function] = field(default_factory=dict)
    variables: list[str] = field(default_factory=list)

    @property
    def is_array(self) -> bool:
        """Whether it is one of the arrays."""
        return self.native.startswith("std::vector<")

    @property
    def has_constructor(self) -> bool:
        """Whether a script can make objects of it."""
        return f"new_{self.name}" in self.functions


@dataclass
class Interface:
    """All that is exported, in the order of the module."""

    classes: list[Class] = field(default_factory=list)
    constants: list[str] = field(default_factory=list)


def _attributes(node: ET.Element) -> dict[str, str]:
    found = node.find("attributelist")
    attributes = () if found is None else found.findall("attribute")
    return {attribute.get("name", ""): attribute.get("value", "") for attribute in attributes}


def _parameters(node: ET.Element) -> tuple[Parameter, ...]:
    parms = [_attributes(parm) for parm in node.findall("attributelist/parmlist/parm")]
    # What is extended with may ask for the script object, which no script gives.
    return tuple(
        Parameter(parm["name"], parm["type"], parm.get("value"))
        for parm in parms
        if parm["type"] != "p.p.PyObject"
    )


def _of_result(declarator: str) -> str:
    """Return what a declarator says of a result, which is what stands behind the parameters."""
    rest = declarator.removeprefix("q(const).")
    depth = 0
    for place, character in enumerate(rest):
        depth += {"(": 1, ")": -1}.get(character, 0)
        if character == ")" and depth == 0:
            return rest[place + 2 :]
    return ""


def _form(node: ET.Element, owner: Class) -> Form:
    attributes = _attributes(node)
    parameters = _parameters(node)
    is_const = "q(const)." in attributes.get("qualifier", "")
    name = re.sub(r"<\(.*", "", attributes["name"])
    types = ",".join(spelled(parameter.type) for parameter in parameters)
    prototype = f"{spelled(owner.native)}::{name}({types}){' const' if is_const else ''}"
    result = _of_result(attributes.get("decl", "")) + attributes.get("type", "void")
    return Form(parameters, result, is_const, prototype, "defaultargs" in attributes)


def _walk(
    node: ET.Element, owner: Class | None = None
) -> Iterator[tuple[ET.Element, Class | None]]:
    """Give each declaration with the class that it belongs to."""
    for child in node:
        attributes = _attributes(child)
        if child.tag == "class" and "python_proxy" in attributes:
            base = child.find("attributelist/baselist/base")
            found = Class(attributes["sym_name"], attributes["name"], None)
            found.base = None if base is None else base.get("name", "").split("::")[-1]
            yield child, found
            yield from _walk(child, found)
        else:
            yield child, owner
            yield from _walk(child, owner)


def _add_function(node: ET.Element, owner: Class) -> None:
    attributes = _attributes(node)
    kinds = {"constructor": "constructor", "destructor": "destructor"}
    kind = "static" if attributes.get("storage") == "static" else "method"
    kind = kinds.get(node.tag, kind)
    flat_name = re.sub(r"__SWIG_\d+$", "", attributes["wrap_name"].removeprefix("_wrap_"))
    function = owner.functions.setdefault(
        flat_name, Function(flat_name, attributes["sym_name"], kind)
    )
    function.forms.append(_form(node, owner))


def _described(tree: ET.Element) -> Interface:
    interface = Interface()
    for node, owner in _walk(tree):
        attributes = _attributes(node)
        if node.tag == "class" and owner and owner.name == attributes.get("sym_name"):
            interface.classes.append(owner)
        elif node.tag == "enum":
            prefix = attributes["sym_name"]
            items = (_attributes(item)["sym_name"] for item in node.iter("enumitem"))
            interface.constants += [f"{prefix}_{item}" for item in items]
        elif owner and node.tag in ("cdecl", "constructor", "destructor"):
            wrapper = attributes.get("wrap_name", "")
            if wrapper.startswith("Swig_var_"):
                owner.variables.append(attributes["sym_name"])
            elif wrapper:
                _add_function(node, owner)
    interface.classes = [exported for exported in interface.classes if exported.functions]
    return interface


def read_interface(swig: str) -> Interface:
    """Have SWIG read the interface files, and describe what they export."""
    with TemporaryDirectory() as folder:
        tree = Path(folder) / "tree.xml"
        subprocess.run(
            [
                *(swig, "-c++", "-python", "-interface", "_TabulonAPI_Python", "-outdir", folder),
                *("-o", str(Path(folder) / "wrap.cxx"), "-xmlout", str(tree)),
                str(BINDING / "tabulon.i"),
            ],
            check=True,
            capture_output=True,
        )
        return _described(ET.parse(tree).getroot())
