"""What a test of random inputs says when one of them fails."""

from __future__ import annotations

import shutil
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path


@contextmanager
def files_of_seed(what: str, seed: int, folder: Path, count: str, test: str) -> Iterator[None]:
    """Remove the files of a seed, or keep them and tell how to see that seed alone.

    ``count`` is the environment variable that says how many there are in a run of ``test``.
    """
    try:
        yield
    except Exception as error:
        raise AssertionError(
            f"{what} of seed {seed}, with its files in '{folder}'; to see it alone:\n"
            f"TABULON_DIFFERENTIAL_SEED={seed} {count}=1 pytest {test}"
        ) from error
    shutil.rmtree(folder)
