"""What the extension module publishes: names, constants and the link object."""

from __future__ import annotations

import re
import subprocess
import sys
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from surface_table import (
    ARRAY_OPERATIONS,
    ARRAYS,
    CONSTANTS,
    CONSTRUCTED,
    FUNCTIONS,
    OVERLOADS,
    REGISTRATION,
    VARIABLES,
)

PUBLISHED = [name for name in vars(native) if not name.startswith("__")]


def run_python(code: str) -> subprocess.CompletedProcess[str]:
    """Run code in an interpreter of its own, where nothing was imported yet."""
    folder = str(Path(native.__file__).parent)
    return subprocess.run(
        [sys.executable, "-c", f"import sys; sys.path.insert(0, {folder!r})\n{code}"],
        capture_output=True,
        text=True,
        check=False,
    )


def test_the_published_names_are_those_of_the_table() -> None:
    expected = {"SHARED_PTR_DISOWN", "cvar", *FUNCTIONS, *OVERLOADS, *REGISTRATION, *CONSTANTS}
    assert set(PUBLISHED) == expected


def test_functions_come_first_then_constants_in_their_order_then_the_link_object() -> None:
    functions = [name for name in PUBLISHED if callable(getattr(native, name))]
    assert functions[0] == "delete_SwigPyIterator"
    assert PUBLISHED[len(functions) :] == ["SHARED_PTR_DISOWN", *CONSTANTS, "cvar"]


@pytest.mark.parametrize("name", ARRAYS)
def test_arrays_have_just_their_operations(name: str) -> None:
    expected = {f"{name}_{operation}" for operation in ARRAY_OPERATIONS}
    expected |= {f"new_{name}", f"delete_{name}", f"{name}_swigregister", f"{name}_swiginit"}
    found = {published for published in PUBLISHED if published.startswith(f"{name}_")}
    assert found | {f"new_{name}", f"delete_{name}"} == expected


def test_only_constructed_classes_have_a_constructor() -> None:
    found = {name.removeprefix("new_") for name in PUBLISHED if name.startswith("new_")}
    assert found == {*CONSTRUCTED, *ARRAYS}


def test_the_module_has_no_docstring() -> None:
    assert native.__doc__ is None


@pytest.mark.parametrize(
    "name",
    [name for name in (*FUNCTIONS, *OVERLOADS) if not name.startswith("delete_")],
)
def test_functions_tell_their_contract(name: str) -> None:
    assert getattr(native, name).__doc__.strip()


@pytest.mark.parametrize(("name", "value"), CONSTANTS.items())
def test_constants(name: str, value: int) -> None:
    found = getattr(native, name)
    assert found == value
    assert type(found) is int


def test_one_number_means_different_things_in_different_families() -> None:
    assert native.CalculationType_Unknown == native.CompletionState_Unknown == -1
    assert native.CalculationType_AllPostProcessingCalculations == -2
    assert native.CompletionState_UnsuccessfulRunsOnly == -2


def test_output_of_users_stands_apart_from_all_calculations() -> None:
    calculations = [CONSTANTS[name] for name in CONSTANTS if name.startswith("CalculationType_")]
    assert native.CalculationType_UserDefined == 1000
    assert sorted(calculations)[-2:] == [41, 1000]
    assert not {0, 1, 2, 34, 36, 37, 39} & set(calculations)


def test_types_are_shared_with_other_modules_of_the_kind() -> None:
    capsule = sys.modules["swig_runtime_data4"].type_pointer_capsule
    assert type(capsule).__name__ == "PyCapsule"
    assert '"swig_runtime_data4.type_pointer_capsule"' in repr(capsule)


def test_housekeeping_constant() -> None:
    assert native.SHARED_PTR_DISOWN == 0


@pytest.mark.parametrize(("name", "value"), VARIABLES.items())
def test_link_object_reads(name: str, value: str) -> None:
    assert getattr(native.cvar, name) == value


@pytest.mark.parametrize("name", VARIABLES)
def test_link_object_is_read_only(name: str) -> None:
    before = getattr(native.cvar, name)
    with pytest.raises(AttributeError) as error:
        setattr(native.cvar, name, ".$XX")
    assert str(error.value) == f"Variable {name} is read-only."
    assert getattr(native.cvar, name) == before


def test_link_object_knows_no_other_name() -> None:
    with pytest.raises(AttributeError) as error:
        _ = native.cvar.Run_name
    assert str(error.value) == "Unknown C global variable 'Run_name'"
    with pytest.raises(AttributeError) as error:
        native.cvar.Run_name = "x"
    assert str(error.value) == "Unknown C global variable 'Run_name'"


def test_link_object_describes_itself() -> None:
    assert type(native.cvar).__name__ == "swigvarlink"
    assert type(native.cvar).__doc__ == "Swig var link object"
    assert repr(native.cvar) == "<Swig global variables>"
    assert str(native.cvar) == f"({', '.join(reversed(VARIABLES))})"


def test_loading_leaves_numpy_alone() -> None:
    done = run_python("import _TabulonAPI_Python; print('numpy' in sys.modules)")
    assert (done.returncode, done.stdout, done.stderr) == (0, "False\n", "")


def test_the_module_works_without_numpy() -> None:
    done = run_python(
        "sys.modules['numpy'] = None\n"
        "import _TabulonAPI_Python as native\n"
        "axis = native.new_IndependentVariable('Time', 'T', 0.0, 0.5)\n"
        "print(native.IndependentVariable_get_name(axis))\n"
    )
    assert (done.returncode, done.stdout, done.stderr) == (0, "Time\n", "")


def test_a_bridge_function_without_numpy_raises_import_error_and_prints_the_reason() -> None:
    done = run_python(
        "sys.modules['numpy'] = None\n"
        "import _TabulonAPI_Python as native\n"
        "axis = native.new_IndependentVariable('Time', 's', [1.0, 2.0])\n"
        "try:\n"
        "    native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)\n"
        "except ImportError as error:\n"
        "    print(error)\n"
    )
    assert (done.returncode, done.stdout) == (0, "numpy.core.multiarray failed to import\n")
    # The name is that of the module in the NumPy that was built against.
    reason = r"ModuleNotFoundError: No module named 'numpy\._?core'; 'numpy' is not a package\n"
    assert re.fullmatch(reason, done.stderr)
