"""Errors: their kinds, what they carry, and how they travel."""

from __future__ import annotations

import pickle

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
