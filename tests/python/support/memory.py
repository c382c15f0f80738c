"""How much memory this process takes, for tests that watch it."""

from __future__ import annotations

import ctypes
import gc
import os
import resource
from collections.abc import Callable
from itertools import pairwise
from pathlib import Path

MEGABYTE = 1024 * 1024
#: With the address sanitizer, memory that was given back rests a while, and all takes longer.
SANITIZED = "asan" in os.environ.get("LD_PRELOAD", "")
#: For interpreters of their own: of what the sanitizer keeps back, nearly nothing.
ENVIRONMENT = {
    "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "")
    + ":quarantine_size_mb=1:thread_local_quarantine_size_kb=16:malloc_context_size=2"
}


def _status(field: str) -> int:
    lines = Path("/proc/self/status").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith(f"{field}:")) * 1024


def resident() -> int:
    """Return the bytes in memory, after giving back what is not in use."""
    gc.collect()
    trim = getattr(ctypes.CDLL(None), "malloc_trim", None)
    if trim is not None:
        trim(0)
    return _status("VmRSS")


def most_resident() -> int:
    """Return the most bytes that were ever in memory."""
    return _status("VmHWM")


def limit_growth(size: int) -> None:
    """Refuse memory that goes so far beyond what the process has now."""
    if not SANITIZED:  # it reserves terabytes
        limit = _status("VmSize") + size
        resource.setrlimit(resource.RLIMIT_AS, (limit, limit))


def growth(step: Callable[[int], object], warm_up: int, rounds: int, stages: int = 4) -> int:
    """Return by how many bytes the process grows over rounds, after the first ones.

    The stage that grows least counts for all: what leaks does so in each, while allocators now and
    then take a piece that stays.
    """
    for count in range(warm_up):
        step(count)
    steps = []
    bounds = [warm_up + (rounds - warm_up) * stage // stages for stage in range(stages + 1)]
    for first, last in pairwise(bounds):
        before = resident()
        for count in range(first, last):
            step(count)
        steps.append(resident() - before)
    return stages * min(steps)
