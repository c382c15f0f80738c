"""How the extension module imports NumPy: which releases it takes, and what it says of others."""

from __future__ import annotations

import pytest
from support.flat import run_python

#: A NumPy of the test's own: its table has a function for each question of the import.
FAKE = """
import ctypes, types
made = []
def function(answer):
    made.append(ctypes.CFUNCTYPE(ctypes.c_uint)(lambda: answer))
    return ctypes.cast(made[-1], ctypes.c_void_p).value
def capsule(abi, api, order):
    table = (ctypes.c_void_p * 220)()
    table[0], table[211], table[210] = function(abi), function(api), function(order)
    made.append(table)
    new = ctypes.pythonapi.PyCapsule_New
    new.restype = ctypes.py_object
    new.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
    return new(ctypes.addressof(table), None, None)
def fake(folder, **attributes):
    package = types.ModuleType("numpy")
    package.__path__ = []
    core = types.ModuleType("core")
    core.__path__ = []
    inner = types.ModuleType("inner")
    vars(inner).update(attributes)
    sys.modules.update({"numpy": package, f"numpy.{folder}": core,
                        f"numpy.{folder}._multiarray_umath": inner})
def ask():
    axis = native.new_IndependentVariable("Time", "s", [1.0, 2.0])
    try:
        return native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)
    except ImportError as error:
        print(error)
"""
LITTLE, BIG, UNKNOWN = 1, 2, 0
PAGE = "https://numpy.org/devdocs/user/troubleshooting-importerror.html#c-api-incompatibility"


def refused(code: str) -> str:
    """Return what is printed to standard error when NumPy is refused."""
    done = run_python(f"{FAKE}{code}\nask()")
    assert (done.returncode, done.stdout) == (0, "numpy.core.multiarray failed to import\n")
    return done.stderr


@pytest.mark.parametrize("folder", ["core", "_core"])
@pytest.mark.parametrize(
    ("table", "text"),
    [
        (
            (0x1000008, 0xE, LITTLE),
            "module compiled against ABI version 0x1000009 but this version of numpy is 0x1000008",
        ),
        (
            (0x2000001, 0x12, LITTLE),
            "module compiled against ABI version 0x1000009 but this version of numpy is 0x2000001",
        ),
        (
            (0x1000009, 0xC, LITTLE),
            "module compiled against API version 0xd but this version of numpy is 0xc . Check the "
            "section C-API incompatibility at the Troubleshooting ImportError section at "
            f"{PAGE} for indications on how to solve this problem .",
        ),
        ((0x1000009, 0xD, UNKNOWN), "FATAL: module compiled as unknown endian"),
        (
            (0x2000000, 0x12, BIG),
            "FATAL: module compiled as little endian, but detected different endianness at runtime",
        ),
    ],
)
def test_tables_that_are_refused(folder: str, table: tuple[int, int, int], text: str) -> None:
    code = f"fake({folder!r}, _ARRAY_API=capsule(*{table}))"
    assert refused(code) == f"RuntimeError: {text}\n"


def test_a_core_without_a_table() -> None:
    found = refused("fake('core')")
    assert found == "AttributeError: module 'inner' has no attribute '_ARRAY_API'\n"
    found = refused("fake('core', _ARRAY_API=5)")
    assert found == "RuntimeError: _ARRAY_API is not PyCapsule object\n"


def test_numpy_that_is_missing() -> None:
    found = refused("sys.modules['numpy'] = None")
    text = "No module named 'numpy.core'; 'numpy' is not a package"
    assert found == f"ModuleNotFoundError: {text}\n"


def test_a_refused_numpy_leaves_the_one_of_before() -> None:
    done = run_python(
        f"""
import numpy
first = native.new_IndependentVariable("Time", "s", [1.0, 2.0])
values = native.IndependentVariable__get_values_as_number_numpy_from_vector
print(values(first).tolist())
real = dict(sys.modules)
{FAKE}
fake("core", _ARRAY_API=capsule(7, 7, 7))
sys.modules.pop("numpy._core", None)
sys.modules.pop("numpy._core._multiarray_umath", None)
ask()
sys.modules.update(real)
print(values(first).tolist())
"""
    )
    assert done.stdout.splitlines() == [
        "[1.0, 2.0]",
        "numpy.core.multiarray failed to import",
        "[1.0, 2.0]",
    ]
    assert done.returncode == 0
