"""Calls of the system that fail on demand: the shim of ``tests/faults/shim``, and what it may do.

The shim stands between the extension module and the system. While a flat function is watched, it
counts the calls of the kinds that a fault names, and has those fail that it is told to; what the
interpreter does in between is left alone.
"""

from __future__ import annotations

import ctypes
import errno
import os
import re
import subprocess
from collections.abc import Callable, Iterator
from contextlib import suppress
from dataclasses import dataclass
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native

#: Kinds of calls, as the shim numbers them.
ALLOCATE, OPEN, READ, WRITE, CLOSE, DIRECTORY, STATUS = (1 << kind for kind in range(7))
OUTPUT = OPEN | WRITE | CLOSE
EVERY = OUTPUT | READ | DIRECTORY | STATUS

FRAMES = 24
FOREVER = 2**31


@dataclass(frozen=True)
class Fault:
    """What fails, and how."""

    calls: int
    #: 0 for reads and writes of half as many bytes as there might be.
    error: int = 0
    #: Whether all later calls fail too, until the flat function ends.
    lasting: bool = False

    def is_stated_by(self, error: BaseException) -> bool:
        """Whether an exception is what the library promises for this fault."""
        if self.calls == ALLOCATE:
            return type(error) is MemoryError
        told = type(error) is RuntimeError and os.strerror(self.error) in str(error)
        return told and self.error != 0

    def is_stated_answer(self, name: str, result: object) -> bool:
        """Whether the result of a function stands for a failure: of all errors some make a no."""
        return "_contains_" in name and result is False and self.calls != ALLOCATE


FAULTS = {
    "allocation": Fault(ALLOCATE, errno.ENOMEM),
    "all allocations": Fault(ALLOCATE, errno.ENOMEM, lasting=True),
    "EINTR": Fault(EVERY, errno.EINTR),
    "EIO": Fault(EVERY, errno.EIO),
    "EIO on all": Fault(EVERY, errno.EIO, lasting=True),
    "ENOSPC": Fault(OUTPUT, errno.ENOSPC),
    "short": Fault(READ | WRITE),
    "all short": Fault(READ | WRITE, lasting=True),
}


def environment(shim: Path) -> dict[str, str]:
    """Return what an interpreter needs to run under the shim."""
    loaded, sanitizer = os.environ.get("LD_PRELOAD", ""), os.environ.get("ASAN_OPTIONS", "")
    return {
        "LD_PRELOAD": f"{shim} {loaded}".strip(),
        "PYTHONMALLOC": "malloc",  # so that each allocation of the interpreter is seen
        "ASAN_OPTIONS": f"{sanitizer}:verify_asan_link_order=0:detect_leaks=0",
    }


class Shim:
    """The functions of the shim that this process was started with."""

    def __init__(self, fault: Fault) -> None:
        self.fault = fault
        library = ctypes.PyDLL(os.environ["LD_PRELOAD"].split()[0])
        self._plan, self._count = library.faults_plan, library.faults_count
        self._frames, self._call = library.faults_frames, library.faults_call
        self._plan.argtypes = [ctypes.c_uint, ctypes.c_int, ctypes.c_long, ctypes.c_long]
        self._count.restype = ctypes.c_long
        self._call.argtypes = [ctypes.py_object, ctypes.py_object]
        self._call.restype = ctypes.py_object

    def call(
        self, function: Callable[..., Any], arguments: tuple[object, ...], failing: int
    ) -> Any:  # noqa: ANN401
        """Call a function in which one call of the system fails, counted from 1; none for 0."""
        last = FOREVER if failing and self.fault.lasting else failing
        self._plan(self.fault.calls, self.fault.error, failing, last)
        return self._call(function, arguments)

    def count(self) -> int:
        """Return how many calls of the system were counted in the last watched function."""
        return int(self._count())

    def place(self) -> str:
        """Return the names of the functions in which the last failure was, innermost first."""
        addresses = (ctypes.c_void_p * FRAMES)()
        known = [addresses[i] or 0 for i in range(self._frames(addresses, FRAMES))]
        return " < ".join(_names(known)) or "an unknown place"


def _names(addresses: list[int]) -> Iterator[str]:
    """Yield the names of functions of the extension module, where there is a tool to tell them."""
    path = native.__file__
    lines = [line for line in Path("/proc/self/maps").read_text().splitlines() if path in line]
    start, end = (int(lines[at].split()[0].split("-")[at], 16) for at in (0, -1))
    inside = [hex(address - start - 1) for address in addresses if start <= address < end]
    bare = {key: value for key, value in os.environ.items() if key != "LD_PRELOAD"}
    with suppress(OSError):
        told = subprocess.run(
            ["addr2line", "-Cfe", path, *inside],
            capture_output=True,
            text=True,
            env=bare,
            check=False,
        )
        yield from (re.sub(r"[(<].*", "", name) for name in told.stdout.splitlines()[::2])
