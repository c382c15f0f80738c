"""What the extension module relies on in SWIG's run time, or keeps from it."""

from __future__ import annotations

import gc
import subprocess
import sys
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from support.arrays import INTS
from support.flat import message, run_python
from support.small_runs import write_run


@pytest.mark.parametrize("other", [object(), 5, "x", None, native.new_ArrayOfInt, [], int])
def test_pointers_are_compared_with_pointers_only(other: object) -> None:
    pointer = INTS.new(3)
    assert (pointer == other) is False
    assert (pointer != other) is True
    assert (other == pointer) is False
    assert pointer.__eq__(other) is NotImplemented
    assert pointer.__ne__(other) is NotImplemented
    with pytest.raises(TypeError):
        _ = pointer < other


def test_pointers_to_one_object_are_equal(tmp_path: Path) -> None:
    pointer = INTS.new(3)
    assert pointer == pointer
    assert (pointer != pointer) is False
    assert pointer != INTS.new(3)
    assert pointer.__eq__(pointer) is True
    with pytest.raises(TypeError):
        _ = pointer < INTS.new(3)


def test_a_class_without_a_destructor_leaks_nothing_and_prints_nothing(tmp_path: Path) -> None:
    write_run(tmp_path)
    done = run_python(
        """
class Run: pass
class Array: pass
native.Run_swigregister(Run)
native.ArrayOfDouble_swigregister(Array)
run = native.TabulonApi_get_run(sys.argv[1], "run")
print(type(run).__name__, run.this.own())
del run
def memory():
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * 4096
held = native.ArrayOfDouble___getslice__(native.new_ArrayOfDouble(9), 0, 9)
print(type(held).__name__)
before = memory()
for _ in range(1000):
    native.ArrayOfDouble___getslice__(native.new_ArrayOfDouble(100_000), 0, 100_000)
print(memory() - before < 400_000_000)  # a sanitizer keeps some of what was freed
""",
        tmp_path,
    )
    assert done.stderr == ""
    assert done.stdout.splitlines() == ["Run True", "Array", "True"]


def test_deleting_through_a_pointer_that_two_classes_share(tmp_path: Path) -> None:
    """A second class for a type takes the place of the first, and both end well."""
    done = run_python(
        """
class First: __swig_destroy__ = native.delete_ArrayOfInt
class Second: pass
held = []
for cls in (First, Second):
    native.ArrayOfInt_swigregister(cls)
    held.append(native.ArrayOfInt___getslice__(native.new_ArrayOfInt(3), 0, 3))
print([type(one).__name__ for one in held])
del held
gc.collect()
"""
    )
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout == "['First', 'Second']\n"


def test_an_object_with_every_attribute_is_no_pointer() -> None:
    class Endless:
        def __getattr__(self, name: str) -> Endless:
            return Endless()

    text = "in method 'ArrayOfInt___len__', argument 1 of type 'std::vector< int > const *'"
    found = message(lambda: INTS.len(Endless()), TypeError)
    assert found.startswith(text.removesuffix(" const *'"))


@pytest.mark.skipif(sys.version_info >= (3, 13), reason="the module has another name there")
def test_a_sub_interpreter_is_refused_and_leaves_the_main_one_whole(tmp_path: Path) -> None:
    write_run(tmp_path)
    folder = str(Path(native.__file__).parent)
    code = f"""
import _xxsubinterpreters as interpreters, sys
sys.path.insert(0, {folder!r})
attempt = '''
import sys
sys.path.insert(0, {folder!r})
try:
    import _TabulonAPI_Python as native
    class Run: pass
    native.Run_swigregister(Run)
except ImportError as error:
    print("refused:", error)
'''
def try_there():
    there = interpreters.create()
    interpreters.run_string(there, attempt)
    interpreters.destroy(there)
sys.stdout.flush()
if sys.argv[2] == "first":
    try_there()
import _TabulonAPI_Python as native
class Run: __swig_destroy__ = native.delete_Run
native.Run_swigregister(Run)
try_there()
run = native.TabulonApi_get_run(sys.argv[1], "run")
print(native.Run_get_name(run), type(run) is Run)
try_there()
print(native.Group_get_name(native.Run_get_group(run, "1d float64")))
"""
    refused = "refused: _TabulonAPI_Python serves the main interpreter only, not a sub-interpreter"
    for when, count in (("first", 3), ("later", 2)):
        done = subprocess.run(
            [sys.executable, "-c", code, str(tmp_path), when],
            capture_output=True,
            text=True,
            check=False,
        )
        assert done.stderr == ""
        assert done.returncode == 0
        lines = done.stdout.splitlines()
        assert lines.count(refused) == count
        rest = [line for line in lines if line != refused]
        assert rest == ["run True", "1d float64"]
    gc.collect()
