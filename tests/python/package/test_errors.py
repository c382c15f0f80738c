"""Errors: their kinds, what they carry, and how they travel."""

from __future__ import annotations

import pickle
import subprocess
import sys

import pytest
import tabulon as tb

KINDS = {
    tb.TabulonError: RuntimeError,
    tb.RunNotFoundError: FileNotFoundError,
    tb.NameNotFoundError: KeyError,
    tb.AmbiguousNameError: KeyError,
    tb.DataError: ValueError,
}


@pytest.mark.parametrize("kind", KINDS)
def test_an_error_is_of_its_kinds(kind: type[tb.TabulonError]) -> None:
    assert issubclass(kind, tb.TabulonError)
    assert issubclass(kind, RuntimeError)
    assert issubclass(kind, KINDS[kind])


@pytest.mark.parametrize("kind", KINDS)
def test_an_error_is_pickled_with_code_and_path(kind: type[tb.TabulonError]) -> None:
    error = pickle.loads(pickle.dumps(kind("no 'x' there", code=25, path="run.$01")))
    assert type(error) is kind
    assert (str(error), error.code, error.path) == ("no 'x' there", 25, "run.$01")


@pytest.mark.parametrize("kind", KINDS)
def test_an_error_prints_without_quotes_and_needs_no_more(kind: type[tb.TabulonError]) -> None:
    error = kind("two 'words'")
    assert (str(error), error.code, error.path) == ("two 'words'", None, None)


def test_errors_go_to_the_workers_of_a_cluster() -> None:
    """Dask's `distributed` has `tblib` pickle all exceptions, in its own way."""
    pytest.importorskip("tblib")
    script = (
        "import pickle, tabulon as tb\n"
        "from tblib import pickling_support\n"
        "kinds = [tb.TabulonError, tb.RunNotFoundError, tb.NameNotFoundError]\n"
        "kinds += [tb.AmbiguousNameError, tb.DataError]\n"
        "errors = [kind('text', code=81, path='run.%01') for kind in kinds]\n"
        "pickling_support.install(*errors)\n"
        "for kind, error in zip(kinds, pickle.loads(pickle.dumps(errors))):\n"
        "    assert type(error) is kind, error\n"
        "    assert (str(error), error.code, error.path) == ('text', 81, 'run.%01'), kind\n"
    )
    done = subprocess.run(
        [sys.executable, "-c", script], capture_output=True, text=True, check=False
    )
    assert done.returncode == 0, done.stderr
