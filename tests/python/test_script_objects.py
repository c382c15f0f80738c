"""Script objects that hold objects of the library: their classes, and their end."""

from __future__ import annotations

import gc
from collections.abc import Callable
from pathlib import Path

import _TabulonAPI_Python as native
from support.flat import message, run_python
from support.small_runs import variable_1d, write_run


def test_results_are_instances_of_registered_classes(tmp_path: Path) -> None:
    write_run(tmp_path)
    done = run_python(
        """
class Variable:
    __swig_destroy__ = native.delete_Variable
class Variable1D(Variable):
    __swig_destroy__ = native.delete_Variable1D_Float32
class Array:
    __swig_destroy__ = native.delete_ArrayOfInt
    def __init__(self, *arguments):
        native.ArrayOfInt_swiginit(self, native.new_ArrayOfInt(*arguments))
native.Variable_swigregister(Variable)
native.Variable1D_Float32_swigregister(Variable1D)
native.ArrayOfInt_swigregister(Array)
run = native.TabulonApi_get_run(sys.argv[1], "run")
variable = native.Run__RUNPREFIX_get_variable_1d_float32(run, "x 1d float32")
print(type(variable).__name__, native.Variable_get_name(variable))
print(type(native.Run__get_variable(run, "x 1d float32")).__name__)
array = Array(range(4))
print(type(native.ArrayOfInt___getitem__(array, slice(2))).__name__)
print(native.ArrayOfInt___getitem__(array, 3))
data = native.Variable1D_Float32__get_data_numpy_from_vector(variable)
del run, variable, array
gc.collect()
print(data.tolist())
""",
        tmp_path,
    )
    assert done.stderr == ""
    assert done.stdout.splitlines() == [
        "Variable1D x 1d float32",
        "Variable",
        "Array",
        "3",
        "[1.0, 3.0, 2.0]",
    ]


def test_bare_objects_go_without_a_word(tmp_path: Path) -> None:
    write_run(tmp_path)
    done = run_python(
        """
run = native.TabulonApi_get_run(sys.argv[1], "run")
objects = [run, native.Run__get_variable(run, "x 1d float32"), native.new_ArrayOfString("ab")]
objects += [native.new_RunsIterator(sys.argv[1]), native.new_TabulonApi_CacheSettings()]
objects += [native.ArrayOfString_iterator(objects[2])]
objects += [native.new_IndependentVariable("a", "N", "b")]
del run
objects.clear()
gc.collect()
""",
        tmp_path,
    )
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")


def test_a_typed_variable_can_be_deleted_as_a_variable(make: Callable[[str], object]) -> None:
    variable = make("Variable1D_Float32")
    native.delete_Variable(variable)
    text = (
        "invalid null reference in method 'Variable1D_Float32_get_mean', "
        "argument 1 of type 'SumaraApi::Variable1D< float > *'"
    )
    assert message(lambda: native.Variable1D_Float32_get_mean(variable), ValueError) == text


def test_a_deleted_object_is_none_for_everybody(make: Callable[[str], object]) -> None:
    variable, axis = make("Variable2D_Int32"), make("IndependentVariable")
    native.delete_Variable2D_Int32(variable)
    native.delete_IndependentVariable(axis)
    null = "invalid null reference in method"
    assert message(lambda: native.Variable_get_name(variable), ValueError) == (
        f"{null} 'Variable_get_name', argument 1 of type 'SumaraApi::Variable const *'"
    )
    output = lambda: native.new_OutputGroup1D_Int32("a", "b", "c", "d", axis)  # noqa: E731
    assert message(output, ValueError) == (
        f"{null} 'new_OutputGroup1D_Int32', argument 5 of type 'SumaraApi::IndependentVariable &'"
    )
    held = native.new_ArrayOfVariable([variable])
    assert native.ArrayOfVariable___getitem__(held, 0) is None


def test_a_variable_outlives_its_run(tmp_path: Path) -> None:
    write_run(tmp_path)
    native.TabulonApi_clear_runs()
    variable = variable_1d(native.TabulonApi_get_run(str(tmp_path), "run"), "float32")
    native.TabulonApi_clear_runs()
    gc.collect()
    assert native.Variable_get_name(variable) == "x 1d float32"
    assert native.Variable1D_Float32__get_data_native_array(variable) == (1.0, 3.0, 2.0)


def test_registration_takes_classes_and_initialisation_pointers() -> None:
    assert (
        message(lambda: native.ArrayOfInt_swigregister(5), TypeError)
        == "swigregister expected a class"
    )
    text = "swiginit expected an instance and the result of its constructor"
    bare = native.new_ArrayOfInt()
    for arguments in ((object(), 5), (bare, bare), (None, None)):
        assert message(lambda a=arguments: native.ArrayOfInt_swiginit(*a), TypeError) == text


def test_arguments_are_checked_before_numpy_is_imported() -> None:
    done = run_python(
        "sys.modules['numpy'] = None\n"
        "try:\n"
        "    native.IndependentVariable__get_values_as_number_numpy_from_vector(5)\n"
        "except TypeError as error:\n"
        "    print(error)\n"
    )
    text = (
        "in method 'IndependentVariable__get_values_as_number_numpy_from_vector', "
        "argument 1 of type 'SumaraApi::IndependentVariable *'"
    )
    assert (done.returncode, done.stdout, done.stderr) == (0, f"{text}\n", "")
