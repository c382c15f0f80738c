"""Smoke tests of an installed wheel: no source tree, no compiler, no test runner.

usage: python -I smoke.py [--without-extras]
"""

from __future__ import annotations

import json
import os
import subprocess
import sys
import tempfile
from collections.abc import Callable
from pathlib import Path

CHECKS: list[Callable[[], None]] = []
WITH_EXTRAS: list[Callable[[], None]] = []


def check(test: Callable[[], None]) -> Callable[[], None]:
    """Have a function run in each environment."""
    CHECKS.append(test)
    return test


def with_extras(test: Callable[[], None]) -> Callable[[], None]:
    """Have a function run where the extras are installed."""
    WITH_EXTRAS.append(test)
    return test


def command(*arguments: str) -> subprocess.CompletedProcess[str]:
    """Run the command line as it is installed."""
    program = Path(sys.executable).with_name("tabulon")
    return subprocess.run([program, *arguments], capture_output=True, text=True, check=False)


@check
def the_package_is_installed_and_not_a_source_tree() -> None:
    import numpy as np
    import tabulon as tb

    assert "site-packages" in tb.__file__
    assert tb.__version__.count(".") >= 2
    print(f"tabulon {tb.__version__}, NumPy {np.__version__}, CPython {sys.version.split()[0]}")


@check
def a_sample_run_reads() -> None:
    import tabulon as tb

    run = tb.open_run(tb.sample("idling_live"))
    speed = run["Rotor speed"]
    assert speed.values.shape == (601,)
    assert speed.unit == "rad/s"
    assert abs(float(speed.values.max()) - speed.max()) < 1e-6
    assert run["Blade 1 out-of-plane deflection"].shape == (601, 3)
    assert [len(group) for group in run.groups.values()] == [10, 4]


@check
def the_library_word_for_word_reads_and_writes() -> None:
    import numpy as np
    from tabulon import api

    with tempfile.TemporaryDirectory() as directory:
        time = api.IndependentVariable("Time", "s", 0.0, 0.1)
        group = api.output_group_1d(Path(directory) / "run.%01", "Out", time)
        values = np.arange(5, dtype=np.float32)
        group.add_variable_with_data("x", "m", values)
        api.write_output(group)
        read = api.get_run(directory, "run").get_variable_1d("x").get_data()
        assert np.array_equal(read, values)


@check
def the_extension_module_stands_alone() -> None:
    code = "import _TabulonAPI_Python as api; print(api.CompletionState_Errored)"
    done = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
    assert done.stdout == "3\n"


@check
def a_campaign_maps_without_pandas() -> None:
    import tabulon as tb

    runs = tb.open_campaign(tb.sample("power_curve").parent)
    assert [run.name for run in runs.map(lambda run: run.name)] == ["idling_live", "power_curve"]


@check
def types_are_shipped() -> None:
    import tabulon as tb

    folder = Path(tb.__file__).parent
    assert (folder / "py.typed").exists()
    assert (folder / "_tables.pyi").exists()
    assert (folder.parent / "_TabulonAPI_Python-stubs" / "__init__.pyi").exists()


def the_command_line_says_what_it_needs() -> None:
    done = command("--help")
    assert done.returncode == 2
    assert 'pip install "tabulon[cli]"' in done.stderr


@with_extras
def the_command_line_knows_the_sample() -> None:
    import tabulon as tb

    sample = os.fspath(tb.sample("power_curve"))
    done = command("info", sample, "--json")
    assert done.returncode == 0, done.stderr
    assert json.loads(done.stdout.splitlines()[0])["variable"] == "Electrical power"
    done = command("stats", sample, "Rotor speed", "--json")
    assert done.returncode == 0, done.stderr
    assert json.loads(done.stdout)["unit"] == "rad/s"


@with_extras
def the_command_line_plots_the_sample() -> None:
    import tabulon as tb

    with tempfile.TemporaryDirectory() as directory:
        picture = Path(directory) / "speed.png"
        sample = os.fspath(tb.sample("idling_live"))
        done = command("plot", sample, "Rotor speed", "--unit", "rpm", "-o", os.fspath(picture))
        assert done.returncode == 0, done.stderr
        assert picture.read_bytes().startswith(b"\x89PNG")


@with_extras
def pandas_and_xarray_take_a_run() -> None:
    import tabulon as tb

    run = tb.open_run(tb.sample("power_curve"))
    assert len(run.to_pandas("Rotor speed")) == 45
    assert run.groups[1].to_xarray().sizes["wind_speed"] == 45


def main() -> int:
    """Run the checks, and tell how they went."""
    checks = list(CHECKS)
    bare = "--without-extras" in sys.argv
    checks += [the_command_line_says_what_it_needs] if bare else WITH_EXTRAS
    failed = 0
    for test in checks:
        try:
            test()
        except Exception as error:  # each is told, and the next goes on
            failed += 1
            print(f"FAILED {test.__name__}: {type(error).__name__}: {error}")
    print(f"{len(checks) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
