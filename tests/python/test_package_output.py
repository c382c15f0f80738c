"""Output groups: what the package takes as data, and what is read back."""

from __future__ import annotations

from pathlib import Path
from typing import Any

import numpy as np
import pytest
from support.run_files import GroupFiles, IntervalAxis, RunFiles, ValueAxis, Variable
from tabulon import api

DTYPES = ["float32", "float64", "int32"]
SHAPE = (3, 4)
LABELS = [0.0, 20.5, 41.0]


def time() -> api.IndependentVariable:
    return api.IndependentVariable("Time", "s", 0.0, 0.5)


def stations() -> api.IndependentVariable:
    return api.IndependentVariable("Distance", "m", LABELS)


def group_1d(folder: Path, dtype: str = "float32", **options: Any) -> Any:  # noqa: ANN401
    return api.output_group_1d(folder / "out.%01", "Mine", time(), dtype=dtype, **options)


def group_2d(folder: Path, dtype: str = "float32", **options: Any) -> Any:  # noqa: ANN401
    path = folder / "out.%01"
    return api.output_group_2d(path, "Mine", time(), stations(), dtype=dtype, **options)


def table(dtype: str) -> np.ndarray[Any, Any]:
    return np.arange(12).reshape(SHAPE).astype(dtype) * 3 - 7


def odd_address(values: np.ndarray[Any, Any]) -> np.ndarray[Any, Any]:
    moved = np.frombuffer(b"x" + values.tobytes(), values.dtype, offset=1)
    assert not moved.flags.aligned
    return moved.reshape(values.shape)


FORMS_1D = {
    "array": np.asarray,
    "list": np.ndarray.tolist,
    "tuple": lambda values: tuple(values.tolist()),
    "generator": lambda values: (value for value in values.tolist()),
    "strided array": lambda values: np.repeat(values, 2)[::2],
    "array at an odd address": odd_address,
    "array of another byte order": lambda values: values.astype(values.dtype.newbyteorder(">")),
    "integers": lambda values: values.astype("int64"),
    "small integers": lambda values: values.astype("int8"),
}
FORMS_2D = FORMS_1D | {
    "generator": lambda values: (iter(row) for row in values.tolist()),
    "list of arrays": list,
    "strided array": lambda values: np.asfortranarray(values),
    "array at an odd address": odd_address,
}


def test_array_that_is_written_stays_as_it_is(tmp_path: Path) -> None:
    group = group_1d(tmp_path)
    data = api.ArrayOfFloat([1.0, 2.0])
    group.add_variable_with_data("Parts", "m", data)
    group.append_data("Parts", data)
    assert list(data) == [1.0, 2.0]
    api.write_output(group)
    read = api.get_run(tmp_path, "out").get_variable_1d("Parts")
    assert read.get_data().tolist() == [1.0, 2.0, 1.0, 2.0]


@pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])
@pytest.mark.parametrize("dtype", DTYPES)
@pytest.mark.parametrize("form", FORMS_1D)
def test_one_axis_data_in_any_form(form: str, dtype: str, text: bool, tmp_path: Path) -> None:
    values = table(dtype)[0]
    data_format = api.VariableDataFormat["ASCII" if text else "Binary"]
    group = group_1d(tmp_path, dtype, variable_data_format=data_format)
    group.add_variable_with_data("Whole", "W", FORMS_1D[form](values))
    group.add_variable("Parts", "rad/s")
    group.append_data("Parts", FORMS_1D[form](values[:1]))
    group.append_data("parts", FORMS_1D[form](values[1:]))
    assert api.write_output(group) is True
    run = api.get_run(tmp_path, "out")
    for name, unit in (("Whole", "W"), ("Parts", "rad/s")):
        variable = run.get_variable_1d(name)
        assert variable.get_siunit() == unit
        assert variable.get_data().dtype == dtype
        np.testing.assert_array_equal(variable.get_data(), values)


@pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])
@pytest.mark.parametrize("dtype", DTYPES)
@pytest.mark.parametrize("form", FORMS_2D)
def test_two_axis_data_in_any_form(form: str, dtype: str, text: bool, tmp_path: Path) -> None:
    values = table(dtype)
    data_format = api.VariableDataFormat["ASCII" if text else "Binary"]
    group = group_2d(tmp_path, dtype, variable_data_format=data_format)
    group.add_variable_with_data("Whole", "Nm", FORMS_2D[form](values))
    group.add_variable("Parts", "m")
    group.append_data("Parts", FORMS_2D[form](values[:, :1]))
    group.append_data("Parts", FORMS_2D[form](values[:, 1:]))
    assert api.write_output(group) is True
    run = api.get_run(tmp_path, "out")
    for name in ("Whole", "Parts"):
        found = run.get_variable_2d(name).get_data_for_all_independent_variable_values()
        assert found.dtype == dtype
        np.testing.assert_array_equal(found, values)


@pytest.mark.parametrize("dtype", DTYPES)
def test_files_are_those_of_the_format(dtype: str, tmp_path: Path) -> None:
    group = group_2d(tmp_path, dtype, data_source="POWPROD", group_config="TRANSIENT")
    group.add_variable_with_data("Moment", "Nm", table(dtype))
    group.add_variable_with_data("Force", "N", table(dtype)[:, ::-1])
    api.write_output(group)
    expected = GroupFiles(
        "Mine",
        [
            Variable("Moment", "FL", table(dtype)),
            Variable("Force", "F", table(dtype)[:, ::-1]),
        ],
        IntervalAxis("Time", "T", 0.0, 0.5, SHAPE[1]),
        ValueAxis("Distance", "L", tuple(LABELS)),
        word={"float32": "R*4", "float64": "R*8", "int32": "I*4"}[dtype],  # type: ignore[arg-type]
    )
    assert tmp_path.joinpath("out.$01").read_bytes() == expected.data()
    termination = tmp_path.joinpath("out.$TE").read_text()
    assert termination == "User-generated output group 'out.%01'\n"


@pytest.mark.parametrize(
    ("shape", "expected"),
    [((12,), "(3, points)"), ((4, 3), "(3, points)"), ((3, 4, 1), "(3, points)")],
)
def test_wrong_shape_over_two_axes_says_what_was_expected(
    shape: tuple[int, ...], expected: str, tmp_path: Path
) -> None:
    group = group_2d(tmp_path)
    with pytest.raises(ValueError, match="data must be an array of shape") as raised:
        group.add_variable_with_data("Moment", "Nm", np.zeros(shape))
    assert str(raised.value) == f"data must be an array of shape {expected}, not {shape}"


@pytest.mark.parametrize("shape", [(), (3, 4), (1, 4)])
def test_wrong_shape_over_one_axis_says_what_was_expected(
    shape: tuple[int, ...], tmp_path: Path
) -> None:
    with pytest.raises(ValueError, match="data must be an array of shape") as raised:
        group_1d(tmp_path).add_variable_with_data("Power", "W", np.zeros(shape))
    assert str(raised.value) == f"data must be an array of shape (points,), not {shape}"


def test_secondary_interval_takes_any_number_of_rows(tmp_path: Path) -> None:
    heights = api.IndependentVariable("Height", "m", 1.0, 2.0)
    group = api.output_group_2d(tmp_path / "out.%01", "Mine", time(), heights)
    with pytest.raises(ValueError, match=r"shape \(secondary values, points\), not \(5,\)"):
        group.add_variable_with_data("Speed", "m/s", np.zeros(5))
    group.add_variable_with_data("Wind speed", "m/s", np.ones((5, 2)))
    api.write_output(group)
    found = api.get_run(tmp_path, "out").get_variable_2d("Wind speed")
    assert found.get_data_for_all_independent_variable_values().shape == (5, 2)
    heights = found.get_independent_variable("height")
    np.testing.assert_array_equal(heights.get_values_as_number(), [1.0, 3.0, 5.0, 7.0, 9.0])


@pytest.mark.parametrize(
    ("dtype", "data", "error"),
    [
        ("int32", np.array([1.5]), TypeError),
        ("int32", [1.5], TypeError),
        ("int32", np.array([2**31]), OverflowError),
        ("int32", np.array([-(2**31) - 1]), OverflowError),
        ("float32", np.array([1e300]), OverflowError),
        ("float32", np.array([1j]), TypeError),
        ("float32", np.array(["1"]), TypeError),
        ("float64", ["1"], TypeError),
        ("float64", np.array([None]), TypeError),
        ("float64", 5, TypeError),
    ],
)
def test_values_that_do_not_fit_are_refused(
    dtype: str, data: object, error: type[Exception], tmp_path: Path
) -> None:
    group = group_1d(tmp_path, dtype)
    with pytest.raises(error):
        group.add_variable_with_data("Power", "W", data)
    group.add_variable_with_data("Power", "W", [1])
    with pytest.raises(error):
        group.append_data("Power", data)


@pytest.mark.parametrize("value", [np.inf, -np.inf, np.nan, 3.4028234663852886e38])
def test_extreme_floats_pass(value: float, tmp_path: Path) -> None:
    group = group_1d(tmp_path)
    group.add_variable_with_data("Power", "W", np.array([value]))
    api.write_output(group)
    found = api.get_run(tmp_path, "out").get_variable_1d("Power").get_data()
    np.testing.assert_array_equal(found, np.array([value], dtype=np.float32))


def test_rows_are_checked_against_the_labels(tmp_path: Path) -> None:
    wind = api.IndependentVariable("Wind speed", "m/s", [4.0, 8.0])
    group = api.output_group_1d(tmp_path / "out.%01", "Curve", wind)
    with pytest.raises(RuntimeError, match="number of primary axis labels = 2"):
        group.add_variable_with_data("Power", "W", np.zeros(3))


@pytest.mark.parametrize("dimensions", ["1D", "2D"])
@pytest.mark.parametrize("dtype", DTYPES)
def test_class_follows_the_type(dimensions: str, dtype: str, tmp_path: Path) -> None:
    make = group_1d if dimensions == "1D" else group_2d
    cls = getattr(api, f"OutputGroup{dimensions}_{dtype.capitalize()}")
    assert type(make(tmp_path, dtype)) is cls
    assert type(make(tmp_path, np.dtype(dtype).type)) is cls


@pytest.mark.parametrize("dtype", ["int64", "float16", bool])
def test_other_types_are_refused(dtype: Any, tmp_path: Path) -> None:  # noqa: ANN401
    with pytest.raises(ValueError, match="dtype must be float32, float64, int32, not"):
        group_1d(tmp_path, dtype)


def test_constructor_takes_all_that_a_header_holds(tmp_path: Path) -> None:
    group = api.OutputGroup1D_Float64(
        group_path=tmp_path / "out.%07",
        group_name="Mine",
        data_source="UserDefined",
        group_config="LIST",
        independent_variable=time(),
        variable_data_format=api.VariableDataFormat_ASCII,
    )
    assert group.get_path() == str(tmp_path / "out.%07")
    assert group.get_data_file_path() == str(tmp_path / "out.$07")
    assert group.get_group_name() == "Mine"
    assert group.get_data_source() == "UserDefined"
    assert group.get_group_config() == "LIST"
    assert group.get_variable_data_format() is api.VariableDataFormat.ASCII
    assert group.get_file_format() is api.FileFormat.Tolvan
    group.add_variable_with_data("Power", "W", [1.0])
    api.write_output(group)
    run = api.get_run(tmp_path, "out")
    assert run.get_calculation_type() is api.CalculationType.UserDefined


def test_two_axis_constructor(tmp_path: Path) -> None:
    group = api.OutputGroup2D_Int32(
        tmp_path / "out.%01", "Mine", "UserDefined", "TABLE", time(), stations()
    )
    assert isinstance(group, api.OutputGroup2D)
    assert group.get_variable_data_format() is api.VariableDataFormat.Binary


def test_existing_output_can_be_kept(tmp_path: Path) -> None:
    RunFiles(name="out").write(tmp_path)
    group = group_1d(tmp_path)
    group.add_variable_with_data("Power", "W", [1.0])
    assert api.write_output(group)
    keep = api.OverwriteBehaviour.DoNotOverwriteExistingOutput
    assert api.write_output(group, keep) is False
    assert api.write_output(group) is True


def test_output_without_termination_file_is_no_run(tmp_path: Path) -> None:
    group = group_1d(tmp_path)
    group.add_variable_with_data("Power", "W", [1.0])
    group.set_tefile_creation(api.TEFileCreation.DoNotCreate)
    assert api.write_output(group)
    assert tmp_path.joinpath("out.%01").exists()
    with pytest.raises(RuntimeError, match="Run was not found"):
        api.get_run(tmp_path, "out")


def test_units_with_signs_find_their_quantity(tmp_path: Path) -> None:
    group = group_1d(tmp_path)
    group.add_variable_with_data("Acceleration", "m/s²", [1.0])
    group.add_variable("Volume", "m³")
    group.append_data("Volume", [2.0])
    api.write_output(group)
    run = api.get_run(tmp_path, "out")
    for name, code, unit in (("Acceleration", "L/TT", "m/s²"), ("Volume", "LLL", "m³")):
        assert run.get_variable(name).get_quantity_code() == code
        assert run.get_variable(name).get_siunit() == unit


@pytest.mark.parametrize(
    ("values", "kind", "texts"),
    [
        (([1, 2],), "LabelledValueAxis", None),
        ((np.array([1, 2]),), "LabelledValueAxis", None),
        ((np.array([1.0, 2.0], dtype=np.float32),), "LabelledValueAxis", None),
        ((["low", "high"],), "LabelledStringAxis", ("low", "high")),
        ((np.array(["low", "high"]),), "LabelledStringAxis", ("low", "high")),
        ((np.float32(0.5), np.int64(2)), "IntervalAxis", None),
    ],
)
def test_independent_variables_are_made_from_what_numpy_gives(
    values: tuple[Any, ...], kind: str, texts: tuple[str, ...] | None
) -> None:
    variable = api.IndependentVariable("Axis", "m", *values)
    assert variable.get_name() == "Axis"
    assert variable.get_siunit() == "m"
    assert variable.get_axis_type() is api.AxisTypeId[kind]
    if texts:
        assert variable.get_values_as_string() == texts
    elif kind == "LabelledValueAxis":
        assert variable.get_values_as_number().tolist() == [1.0, 2.0]
    else:
        assert variable.get_number_of_values() == 0
