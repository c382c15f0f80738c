"""What a script holds outlives what it came from, in whatever order things go.

Each test runs in an interpreter of its own, since a use of freed memory may crash it.
"""

from __future__ import annotations

import json
from pathlib import Path

from support.flat import run_script
from support.memory import ENVIRONMENT

#: Makes runs of all kinds; `take` gives arrays with what they are to hold, and their parents.
START = """
import itertools
import numpy as np
from support.run_files import *
from support.scenarios import *

root = Path(sys.argv[1])
def write(folder, word, text):
    RunFiles([group_1d(word, text=text), group_2d(word, text=text, number=2)]).write(folder)
KINDS = list(itertools.product(("R*4", "R*8", "I*4"), (False, True)))
def folder_of(word, text):
    folder = root / f"{word[0]}{word[2]}{text}"
    if not folder.exists():
        write(folder, word, text)
    return folder
def fill(word):
    # Takes the memory that was given back, so that a stale view shows other values.
    for size in range(1, 60):
        np.full(size, -1, DTYPES[word]).tolist(), bytes(8 * size)
def take(word, text):
    run = get_run(folder_of(word, text))
    kind = DTYPES[word]
    one = get_variable(run, "Rotor speed", kind)
    two = get_variable(run, "Blade shear force", kind, 2)
    flat, deep = group_1d(word).variables[1].values, group_2d(word).variables[1].values
    arrays = [
        (one._get_data_numpy_from_vector(), flat),
        (two._get_data_at_index_numpy_from_vector(2), deep[2]),
        (two._get_data_at_value_numpy_from_vector(0.0), deep[0]),
        (get_axis(one)._get_values_as_number_numpy_from_vector(), TIME.numbers()),
        (get_axis(two, 0)._get_values_as_number_numpy_from_vector(), TIME.numbers()),
        (get_axis(two, 1)._get_values_as_number_numpy_from_vector(), STATIONS.labels),
    ]
    return run, one, two, arrays
def check(arrays, word):
    gc.collect()
    fill(word)
    for array, expected in arrays:
        assert array.tolist() == list(expected), (array, expected)
        array[0] += 1
        assert array[0] == expected[0] + 1
        array[0] -= 1
"""
#: What goes while the arrays are alive; `run`, `one` and `two` are at hand.
DROPS = {
    "the run": "del run",
    "the variables": "del one, two",
    "the cache": "native.TabulonApi_clear_runs()",
    "run and cache": "del run; native.TabulonApi_clear_runs()",
    "variables, run and cache": "del one, two, run; native.TabulonApi_clear_runs()",
    "cache, run and variables": (
        "native.TabulonApi_clear_runs(); del run; gc.collect(); del one, two"
    ),
    "the run object": "native.delete_Run(run.pointer); del run; native.TabulonApi_clear_runs()",
    "the variable objects": (
        "getattr(native, 'delete_' + one.family)(one.pointer)\n"
        "getattr(native, 'delete_' + two.family)(two.pointer)\n"
        "native.TabulonApi_clear_runs(); del run, one, two"
    ),
    "the data": (
        "assert run.unload_variable('Rotor speed') and run.unload_variable('Blade shear force')"
    ),
    "the data of groups": (
        "assert run.unload_variable_from_specific_group('Rotor speed', 'Summary')\n"
        "assert run.unload_variable_from_specific_group('Blade shear force', 'Blade loads')"
    ),
    "the data, then all": (
        "assert run.unload_variable('Rotor speed') and run.unload_variable('Blade shear force')\n"
        "del one, two, run; native.TabulonApi_clear_runs()"
    ),
    "all, with other settings": (
        "native.TabulonApi_CacheSettings_set_buffered_read_enabled(False)\n"
        "native.TabulonApi_CacheSettings_set_data_type_for_reading(2)\n"
        "native.TabulonApi_CacheSettings_set_run_caching_enabled(False)\n"
        "del one, two, run; gc.collect()\n"
        "native.TabulonApi_CacheSettings_set_run_caching_enabled(True)\n"
        "native.TabulonApi_CacheSettings_set_data_type_for_reading(0)\n"
        "native.TabulonApi_CacheSettings_set_buffered_read_enabled(True)"
    ),
    "the files": (
        "import shutil; shutil.rmtree(folder_of(word, text))\n"
        "native.TabulonApi_clear_runs(); del run"
    ),
    "a change of the files": (
        "(folder_of(word, text) / 'run.$TE').write_text('Run completed again.')\n"
        "again = get_run(folder_of(word, text))\n"
        "assert again._get_variable('Rotor speed'); del run, one, two, again"
    ),
}


def script(body: str) -> str:
    indented = "".join(f"        {line}\n" for line in body.splitlines())
    return (
        f"{START}\ndone = 0\nfor word, text in KINDS:\n    def go():\n{indented}    go()\n"
        "    done += 1\nanswer(done)\n"
    )


def test_arrays_outlive(tmp_path: Path) -> None:
    code = (
        START
        + """
done = []
for name, drop in json.loads(sys.argv[2]).items():
    # A traceback shows what was dropped as the name of the file.
    body = "run, one, two, arrays = take(word, text)\\n" + drop + "\\ncheck(arrays, word)"
    steps = compile(body, name, "exec")
    for word, text in KINDS:
        exec(steps, globals() | {"word": word, "text": text})
    done.append(name)
answer(done)
"""
    )
    assert run_script(code, tmp_path, json.dumps(DROPS)) == list(DROPS)


def test_a_new_read_after_an_unload_has_its_own_memory(tmp_path: Path) -> None:
    body = """
run, one, two, arrays = take(word, text)
names = ("Rotor speed", "Blade shear force")
for name in names:
    assert run.unload_variable(name)
again = take(word, text)[3]
for (old, _), (new, expected) in zip(arrays[:3], again[:3]):
    assert not np.shares_memory(old, new)
    new[:] = 99
    assert old.tolist() == expected.tolist()
    assert set(new.tolist()) == {99}
# A variable that was held through the unload reads again, too.
assert one._get_data_native_array() == (99,) * 5
"""
    assert run_script(script(body), tmp_path) == 6


def test_unloads_while_arrays_are_alive_many_times(tmp_path: Path) -> None:
    body = """
held = []
for _ in range(20):
    run, one, two, arrays = take(word, text)
    held += arrays
    for name in ("Rotor speed", "Blade shear force"):
        assert run.unload_variable(name)
check(held, word)
"""
    assert run_script(script(body), tmp_path) == 6


def test_the_memory_goes_with_the_last_array(tmp_path: Path) -> None:
    code = """
import numpy as np
from support.run_files import *
from support.scenarios import *
size = 2_000_000
values = np.arange(size, dtype="float64")
def pages():
    return int(Path("/proc/self/statm").read_text().split()[1]) * 4096
folder = Path(sys.argv[1])
axis = native.new_IndependentVariable("Time", "s", 0.0, 1.0)
group = native.new_OutputGroup1D_Float64(str(folder / "run.%01"), "A", "POWPROD", "X", axis)
native.OutputGroup1D_Float64__add_variable_with_data_native_array(group, "x", "m", values)
native.OutputGroup1D_Float64__add_variable_with_data_native_array(group, "y", "m", values)
assert native.TabulonApi_write_output(group)
del group, axis
gc.collect()
def use():
    variable = get_variable(get_run(folder), "x", "float64")
    array = variable._get_data_numpy_from_vector()
    native.TabulonApi_clear_runs()
    del variable
    gc.collect()
    assert array[-1] == size - 1
    return array
use()
before = pages()
for _ in range(10):
    array = use()
held = pages() - before
del array
gc.collect()
answer([held, pages() - before])
"""
    held, left = run_script(code, tmp_path, **ENVIRONMENT)
    # Ten arrays take 160 MB; one stays, with the file of its group, and nothing after it.
    assert held < 100e6
    assert left < 48e6


def test_objects_outlive_their_parents(tmp_path: Path) -> None:
    body = """
run, one, two, arrays = take(word, text)
group = get_group(run, "Blade loads")
variable = Flat("Variable", group.get_variable("Blade moment"))
typed = get_variable(run, "Blade moment", DTYPES[word], 2)
axis = get_axis(group, 1)
folder = f"{folder_of(word, text)}/"
del run, one, two, arrays
native.TabulonApi_clear_runs()
gc.collect()
fill(word)
assert group.get_name() == "Blade loads"
assert group._get_variable_names_native_array()[0] == "Blade moment"
assert group.get_variable("blade MOMENT")
assert group.get_data_point_count() == 5
assert group.get_time_domain_simulation_length() == 2.5
lost = tables_error(
    "Group request cannot be fulfilled because the run it belongs to was unloaded. Reload the run "
    "and try again", f"Group path: {folder}run.%02")
for name in ("get_variable_2d_{}", "get_variable_1d_{}"):
    ask = getattr(group, "_GROUPPREFIX_" + name.format(DTYPES[word]))
    assert error_of(lambda: ask("Blade moment")) == lost
for name in ("get_all_variables_2d_{}", "get_all_variables_1d_{}"):
    ask = getattr(group, "_GROUPPREFIX_" + name.format(DTYPES[word]) + "_native_array")
    assert error_of(ask) == lost
del group
gc.collect()
fill(word)
assert axis._get_values_as_number_native_array() == STATIONS.labels
assert axis.get_number_of_values() == 3
assert variable.get_parent_group_name() == "Blade loads"
assert variable.get_parent_group_header_file_full_path() == folder + "run.%02"
assert typed.get_maximum_at_index(0) == group_2d(word).variables[0].values[0].max()
assert typed._get_data_at_index_native_array(1) == tuple(group_2d(word).variables[0].values[1])
"""
    assert run_script(script(body), tmp_path) == 6


def test_iterators_and_searches_outlive_each_other(tmp_path: Path) -> None:
    code = (
        START
        + """
for name in ("a", "b", "c"):
    RunFiles([group_1d()], name).write(root)
first = native.new_RunsIterator(str(root))
held = [Flat("Run", native.RunsIterator_get_next_run(first))]
second = native.new_RunsIteratorRegex(str(root), ".*")
native.delete_RunsIterator(first)
del first
gc.collect()
held += [Flat("Run", native.RunsIterator_get_next_run(second)) for _ in range(3)]
del second
gc.collect()
native.TabulonApi_clear_runs()
names = [run.get_name() for run in held]
data = [get_variable(run, "Rotor speed", "float32")._get_data_native_array() for run in held]
answer([sorted(names[1:]), len(set(data))])
"""
    )
    assert run_script(code, tmp_path) == [["a", "b", "c"], 1]


def test_output_axis_values_stay_while_more_is_written(tmp_path: Path) -> None:
    code = (
        START
        + """
axis = native.new_IndependentVariable("Time", "s", 1.0, 0.5)
group = native.new_OutputGroup1D_Float32(str(root / "o.%01"), "A", "UserDefined", "X", axis)
add = native.OutputGroup1D_Float32__append_data_native_array
native.OutputGroup1D_Float32_add_variable(group, "x", "m")
owner = Flat("IndependentVariable", axis)
held = []
for count in range(1, 40):
    add(group, "x", [float(count)] * 50)
    assert native.TabulonApi_write_output(group)
    array = owner._get_values_as_number_numpy_from_vector()
    assert len(array) == 50 * count, (len(array), count)
    held.append(array)
native.delete_OutputGroup1D_Float32(group)
native.delete_IndependentVariable(axis)
del group, axis, owner
gc.collect()
fill("R*8")
for array in held:
    assert (array == 1.0 + 0.5 * np.arange(len(array))).all()
answer(len(held))
"""
    )
    assert run_script(code, tmp_path) == 39
