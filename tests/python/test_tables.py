"""The module of tables on the bundled runs: what it tells is what the library tells."""

import pickle
from pathlib import Path

import numpy as np
import pytest
import tabulon.api

tables = pytest.importorskip("tabulon._tables")

RUNS = Path(__file__).parents[2] / "examples" / "runs"


def headers() -> list[Path]:
    return sorted(RUNS.rglob("*.%[0-9]*"))


@pytest.mark.parametrize("header", headers(), ids=lambda path: path.name)
def test_values_are_those_of_the_library(header: Path) -> None:
    table = tables.GroupTable.open(header)
    run = tabulon.api.get_run(str(header.parent), header.stem)
    group = run.get_group(table.name)
    assert [variable.name for variable in table.variables] == list(group.get_variable_names())
    rows = table.rows()
    selection = tables.Selection(range(len(table.variables)), count=rows.found)
    values = table.read(selection, table.dtype)
    if rows.found != rows.expected:
        with pytest.raises(tables.TableError, match="Point index") as caught:
            table.read(tables.Selection([0]))
        assert caught.value.code == 25
        assert caught.value.found == f"{rows.found} rows"
        return
    for place, variable in enumerate(table.variables):
        if len(table.axes) == 1:
            own = group.get_variable_1d(variable.name).get_data()
            np.testing.assert_array_equal(values[place], own)
            continue
        size = table.axes[1].count
        wanted = group.get_variable_2d(variable.name)
        for index in range(size):
            own = wanted.get_data_at_index(index)
            np.testing.assert_array_equal(values[place * size + index], own)


def test_an_error_says_where_and_what_and_pickles(tmp_path: Path) -> None:
    text = (RUNS / "powprod_12ms.%01").read_text().replace("R*4", "R*3")
    header = tmp_path / "broken.%01"
    header.write_text(text)
    with pytest.raises(tables.TableError) as caught:
        tables.GroupTable.open(header)
    error = caught.value
    assert (error.code, error.path, error.field, error.found) == (127, str(header), "FORMAT", "R*3")
    assert str(error) == error.text == error.args[0]
    again = pickle.loads(pickle.dumps(error))
    assert type(again) is tables.TableError
    assert again.args == error.args


def test_a_target_of_another_type_or_layout_is_refused() -> None:
    table = tables.GroupTable.open(RUNS / "powprod_12ms.%01")
    selection = tables.Selection([0, 1])
    columns, rows = table.shape_of(selection)
    out = np.zeros((columns, rows))
    table.read_into(selection, out)
    np.testing.assert_array_equal(out, table.read(selection))
    for wrong in (np.zeros((columns, rows), np.int16), np.zeros(rows), [[0.0] * rows] * columns):
        with pytest.raises(TypeError):
            table.read_into(selection, wrong)
    for wrong in (np.zeros((rows, columns)), np.zeros((rows, columns)).T, np.zeros((3, rows))):
        with pytest.raises(ValueError, match="out"):
            table.read_into(selection, wrong)
        assert not wrong.any()
    out.flags.writeable = False
    with pytest.raises(TypeError):
        table.read_into(selection, out)
