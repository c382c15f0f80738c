"""What the package offers, and what it costs to import."""

from __future__ import annotations

import doctest
import importlib
import inspect
import json
import pkgutil
from types import ModuleType

import pytest
import tabulon as tb
from support.own_process import answer_of

OPTIONAL = ("pandas", "xarray", "dask", "matplotlib", "pyarrow", "h5netcdf", "h5py", "pint")
OPTIONAL = (*OPTIONAL, "typer", "rich", "tqdm", "_TabulonAPI_Python")


def modules() -> list[ModuleType]:
    """Return the modules of the package that people use."""
    for name in tb.__all__:
        getattr(tb, name)  # the module has it from now on
    found = [tb]
    for info in pkgutil.walk_packages(tb.__path__, "tabulon."):
        if not info.name.startswith(("tabulon.api", "tabulon.__main__")):
            found.append(importlib.import_module(info.name))
    return found


class EveryExample(doctest.DocTestFinder):
    """Finds examples where the things say that they are, whatever file they are written in."""

    def _from_module(self, module: ModuleType | None, thing: object) -> bool:
        in_class = "." in (getattr(thing, "__qualname__", None) or "")
        named = getattr(thing, "__module__", None)
        return in_class or not named or (module is not None and named == module.__name__)


EXAMPLES = [
    test
    for module in modules()
    for test in EveryExample(exclude_empty=True).find(module, module.__name__)
    if test.examples
]


@pytest.mark.parametrize("example", EXAMPLES, ids=lambda example: str(example.name))
def test_example_of_a_docstring(example: doctest.DocTest) -> None:
    report: list[str] = []
    result = doctest.DocTestRunner(optionflags=doctest.NORMALIZE_WHITESPACE).run(
        example, out=report.append, clear_globs=False
    )
    assert result.failed == 0, "".join(report)


def test_the_nouns_have_examples() -> None:
    told = [example.name for example in EXAMPLES]
    assert {"tabulon.open_run", "tabulon.Run", "tabulon.Variable.sel"} <= set(told)
    assert {"tabulon.Run.to_pandas", "tabulon.Run.write_group"} <= set(told)
    assert len(set(told)) == len(told) > 20


def test_names_are_listed_documented_and_of_the_package() -> None:
    assert sorted(tb.__all__) == list(tb.__all__)
    assert set(dir(tb)) == set(tb.__all__)
    for name in tb.__all__:
        thing = getattr(tb, name)
        if callable(thing):
            assert inspect.getdoc(thing), name
            assert thing.__module__ == "tabulon", name


def test_public_members_are_documented() -> None:
    for cls in (tb.Run, tb.Group, tb.Variable):
        for name, member in vars(cls).items():
            if not name.startswith("_") and (callable(member) or isinstance(member, property)):
                assert inspect.getdoc(member), f"{cls.__name__}.{name}"


def loaded_by(code: str) -> set[str]:
    """Return the modules that are there after some code, and were not in a bare interpreter."""
    bare = "import json, sys; before = set(sys.modules); "
    return set(answer_of(f"{bare}{code}; print(json.dumps(sorted(set(sys.modules) - before)))"))


def test_import_loads_nothing_until_a_name_is_asked_for() -> None:
    loaded = loaded_by("import tabulon; dir(tabulon), tabulon.__version__")
    assert {name for name in loaded if name.startswith("tabulon")} == {"tabulon"}
    assert "numpy" not in loaded


def test_runs_need_numpy_alone() -> None:
    loaded = loaded_by("import tabulon; tabulon.open_run, tabulon.sample, tabulon.DataError")
    assert "numpy" in loaded
    assert not {*OPTIONAL, "concurrent.futures", "tabulon._parallel", "tabulon.api"} & loaded


def test_campaigns_need_numpy_alone() -> None:
    loaded = loaded_by("import tabulon; tabulon.open_campaign")
    assert not {*OPTIONAL, "tabulon._catalogue", "tabulon._export", "tabulon._cli"} & loaded


def test_all_names_can_be_imported_at_once() -> None:
    code = "import json\nfrom tabulon import *\nprint(json.dumps(sorted(globals())))"
    assert set(tb.__all__) <= set(answer_of(code))


def test_a_name_is_the_same_for_all_threads() -> None:
    code = """
import json, threading
import tabulon
gate, found = threading.Barrier(8), []
def look(name):
    gate.wait()
    found.append((name, getattr(tabulon, name)))
names = ["open_campaign", "open_run", "Variable", "Results"] * 2
threads = [threading.Thread(target=look, args=[name]) for name in names]
[thread.start() for thread in threads]
[thread.join() for thread in threads]
assert len(found) == 8
print(json.dumps(all(getattr(tabulon, name) is thing for name, thing in found)))
"""
    assert answer_of(code) is True


def test_things_are_of_the_package_also_where_nobody_asked_for_their_names() -> None:
    code = """
import json, pickle, tabulon
run = tabulon.open_run(tabulon.sample("power_curve"))
try:
    run["Rotor sped"]
except KeyError as error:
    things = [run, run.groups[1], run["Rotor speed"], run.state, run.groups[1].rows, error]
told = [[type(thing).__module__, type(thing).__name__] for thing in things]
sent = [pickle.loads(pickle.dumps(thing)) == thing for thing in things[:-1]]
print(json.dumps([told, sent, pickle.dumps(tabulon.open_run, 0).decode()]))
"""
    told, sent, function = answer_of(code)
    names = ["Run", "Group", "Variable", "CompletionState", "Rows", "NameNotFoundError"]
    assert told == [["tabulon", name] for name in names]
    assert all(sent)
    assert "tabulon\nopen_run" in function


def test_subpackage_is_there_when_asked_for() -> None:
    code = "import json, tabulon; print(json.dumps(tabulon.api.__name__))"
    assert answer_of(code) == "tabulon.api"


def test_unknown_attribute_is_told() -> None:
    with pytest.raises(AttributeError, match="module 'tabulon' has no attribute 'get_run'"):
        _ = tb.get_run  # type: ignore[attr-defined]


@pytest.mark.parametrize(
    ("package", "extra", "job"),
    [
        ("pandas", "pandas", "run['Electrical power'].to_pandas()"),
        ("pandas", "pandas", "run.to_pandas(['Electrical power'])"),
        ("xarray", "xarray", "run['Electrical power'].to_xarray()"),
        ("matplotlib", "plot", "run['Electrical power'].plot()"),
        ("pint", "units", "run['Electrical power'].to('MW')"),
    ],
)
def test_a_package_that_is_missing_is_named_with_its_extra(
    package: str, extra: str, job: str
) -> None:
    code = f"""
import json, sys
sys.modules[{package!r}] = None
import tabulon
run = tabulon.open_run(tabulon.sample("power_curve"))
try:
    {job}
except ModuleNotFoundError as error:
    print(json.dumps(str(error)))
"""
    assert answer_of(code) == f'{package} is missing: pip install "tabulon[{extra}]"'


def test_vocabularies_print_as_names() -> None:
    assert str(tb.CompletionState.CompletedNormally) == "CompletedNormally"
    assert f"{tb.CalculationType.SteadyPowerCurve:>20}" == "    SteadyPowerCurve"
    assert tb.CompletionState.CompletedNormally == 1
    assert json.dumps(tb.CompletionState.Errored) == "3"
    assert tb.CompletionState is tb.api.CompletionState
