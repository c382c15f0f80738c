"""What all tests of the package and of the extension module share."""

from __future__ import annotations

import os
import signal
import sys
from collections.abc import Callable, Iterator
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from hypothesis import settings
from support.small_runs import maker, write_run

# Runners differ in speed, and keep their examples to themselves. One commit gives one result: new
# examples are for who asks for them.
ANEW = bool(os.environ.get("TABULON_DRAW_ANEW"))
settings.register_profile("tests", deadline=None, database=None, derandomize=not ANEW)
settings.load_profile("tests")

# A shell that runs the tests in the background has interrupts ignored, here and in what is started.
if signal.getsignal(signal.SIGINT) is signal.SIG_IGN:
    signal.signal(signal.SIGINT, signal.default_int_handler)

DEFAULTS = {
    ("CacheSettings", "set_buffered_read_enabled"): True,
    ("CacheSettings", "set_run_caching_enabled"): True,
    ("CacheSettings", "set_data_type_for_reading"): 0,
    ("SearchSettings", "set_calculation_type_filter"): -5,
    ("SearchSettings", "set_include_unsupported_calculations"): True,
    ("SearchSettings", "set_completion_state_filter"): -3,
    ("SearchSettings", "set_run_name_case_sensitivity"): 0,
}


def reset_process_state() -> None:
    """Empty the run cache, and put all settings at their defaults."""
    native.TabulonApi_clear_runs()
    # The package remembers what it sets, so it is told too where it is in use.
    package = sys.modules.get("tabulon.api")
    for (family, name), value in DEFAULTS.items():
        flat = getattr(native, f"TabulonApi_{family}_{name}")
        getattr(package, name, flat)(value)


@pytest.fixture(autouse=True)
def fresh_process_state() -> Iterator[None]:
    reset_process_state()
    yield
    reset_process_state()


@pytest.fixture(scope="session")
def kept_folder(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Give a folder with a run that nobody changes."""
    folder = tmp_path_factory.mktemp("kept")
    write_run(folder)
    return folder


@pytest.fixture
def make(kept_folder: Path) -> Callable[[str], object]:
    """Make a fresh object of a class."""
    return maker(kept_folder)
