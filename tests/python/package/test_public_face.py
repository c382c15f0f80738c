"""What the package offers, and what it costs to import."""

from __future__ import annotations

import doctest
import importlib
import inspect
import json
import os
import pkgutil
import subprocess
import sys
from pathlib import Path
from types import ModuleType

import pytest
import tabulon as tb
from support.memory import SANITIZED
from support.own_process import answer_of

OPTIONAL = ("pandas", "xarray", "dask", "matplotlib", "pyarrow", "h5netcdf", "h5py", "pint")
OPTIONAL = (*OPTIONAL, "typer", "rich", "tqdm", "_TabulonAPI_Python")


def modules() -> list[ModuleType]:
    """Return the modules of the package that people use."""
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


def test_import_needs_numpy_alone() -> None:
    code = "import json, sys, tabulon; print(json.dumps(sorted(sys.modules)))"
    loaded = answer_of(code)
    assert "numpy" in loaded
    assert not set(OPTIONAL) & set(loaded)


def test_subpackage_is_there_when_asked_for() -> None:
    code = "import json, tabulon; print(json.dumps(tabulon.api.__name__))"
    assert answer_of(code) == "tabulon.api"


def test_unknown_attribute_is_told() -> None:
    with pytest.raises(AttributeError, match="module 'tabulon' has no attribute 'get_run'"):
        _ = tb.get_run  # type: ignore[attr-defined]


@pytest.mark.skipif(SANITIZED, reason="the sanitizer takes time of its own")
def test_import_takes_little_more_than_that_of_numpy(tmp_path: Path) -> None:
    # of the processor, so that what else runs does not count
    code = "import time; a = time.process_time(); import {}; print(time.process_time() - a)"

    def seconds(module: str) -> float:
        folder = str(Path(tb.__file__).parents[1])
        start = f"import sys; sys.path.insert(0, {folder!r}); "
        command = [sys.executable, "-c", start + code.format(module)]
        # compiled once, as an installed package is
        compiled = {"PYTHONPYCACHEPREFIX": str(tmp_path), "PYTHONDONTWRITEBYTECODE": ""}
        environment = {**os.environ, **compiled}
        done = subprocess.run(command, check=True, capture_output=True, text=True, env=environment)
        return float(done.stdout)

    best = {module: seconds(module) for module in ("numpy", "tabulon")}
    for _ in range(20):
        for module, least in best.items():
            best[module] = min(least, seconds(module))
        if best["tabulon"] <= 1.3 * best["numpy"]:
            return
    pytest.fail(f"took {best['tabulon'] / best['numpy']:.2f} times the import of numpy")


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
