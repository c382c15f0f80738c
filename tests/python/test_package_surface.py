"""What the package exports, and that its type stubs tell of what is there."""

from __future__ import annotations

import ast
import enum
import inspect
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from tabulon import api
from tabulon.api import _proxy

PROXIES = {
    name: cls
    for name, cls in vars(_proxy).items()
    if inspect.isclass(cls) and not name.startswith(("_", "SwigPy"))
}
ENUMERATORS = [
    name
    for name, value in vars(native).items()
    if isinstance(value, int) and name != "SHARED_PTR_DISOWN"
]
STUBS = Path(api.__file__).parent


@pytest.mark.parametrize("name", PROXIES)
def test_class_of_the_package_extends_the_generated_one(name: str) -> None:
    cls = getattr(api, name)
    assert cls is not PROXIES[name]
    assert issubclass(cls, PROXIES[name])
    assert inspect.getdoc(cls)


@pytest.mark.parametrize("name", ENUMERATORS)
def test_enumerator_is_an_integer_and_a_member(name: str) -> None:
    family, member = name.split("_", 1)
    assert type(getattr(api, name)) is int
    assert getattr(api, name) == getattr(native, name)
    assert getattr(api, family)[member] == getattr(native, name)


def test_enumerations_have_no_other_members() -> None:
    families = {name.split("_", 1)[0] for name in ENUMERATORS}
    classes = {
        name: cls
        for name, cls in vars(api).items()
        if inspect.isclass(cls) and issubclass(cls, enum.Enum)
    }
    assert set(classes) == families
    assert sum(len(cls) for cls in classes.values()) == len(ENUMERATORS)


def test_families_of_the_class_templates_have_a_common_base() -> None:
    for family in ("Variable1D", "Variable2D", "OutputGroup1D", "OutputGroup2D"):
        base = getattr(api, family)
        for element in ("Float32", "Float64", "Int32"):
            assert issubclass(getattr(api, f"{family}_{element}"), base)
    assert issubclass(api.Variable1D, api.Variable)
    assert issubclass(api.OutputGroup2D, api.OutputGroup)


def test_every_public_operation_is_documented() -> None:
    for name in PROXIES:
        cls = getattr(api, name)
        for operation, member in inspect.getmembers(cls, callable):
            if not operation.startswith("_"):
                assert inspect.getdoc(member), f"{name}.{operation}"


def stubbed(stub: Path) -> ast.Module:
    return ast.parse(stub.read_text())


def test_stub_of_the_extension_names_what_it_exports() -> None:
    names = set()
    # Installed it is a package of stubs; in a build tree it lies beside the module.
    places = ("_TabulonAPI_Python-stubs/__init__.pyi", "_TabulonAPI_Python.pyi")
    stub = next(path for place in places if (path := STUBS.parents[1] / place).exists())
    for node in stubbed(stub).body:
        if isinstance(node, ast.FunctionDef):
            names.add(node.name)
        elif isinstance(node, ast.AnnAssign):
            assert isinstance(node.target, ast.Name)
            names.add(node.target.id)
    assert names == {name for name in vars(native) if not name.startswith("__")}


def test_stub_of_the_generated_classes_names_their_operations() -> None:
    classes = {
        node.name: node
        for node in stubbed(STUBS / "_proxy.pyi").body
        if isinstance(node, ast.ClassDef)
    }

    def operations(name: str) -> set[str]:
        node = classes[name]
        found = {part.name for part in node.body if isinstance(part, ast.FunctionDef)}
        found |= {
            part.target.id
            for part in node.body
            if isinstance(part, ast.AnnAssign) and isinstance(part.target, ast.Name)
        }
        for base in node.bases:
            of = base.value if isinstance(base, ast.Subscript) else base
            if isinstance(of, ast.Name) and of.id in classes:
                found |= operations(of.id)
        return found

    housekeeping = {"thisown", "__init__", "__repr__", "__swig_destroy__", "__module__", "__doc__"}
    for name, cls in PROXIES.items():
        there = {
            member
            for base in cls.__mro__[:-1]
            for member in vars(base)
            if member not in ("__dict__", "__weakref__")
        }
        assert operations(name) - housekeeping == there - housekeeping, name
