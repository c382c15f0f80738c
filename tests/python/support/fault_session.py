"""Scripts in which one call of the system after another fails, each in a process of its own.

A script is a function of a `Session`, and runs through in one process. In front of each of its
flat calls that process splits off others: one for each call of the system that is to fail there. In
such a process the flat call may fail with what is stated for the fault; made again it gives what it
gives without a fault, and so does the rest of the script.
"""

from __future__ import annotations

import gc
import os
import signal
import sys
import traceback
from collections.abc import Callable
from contextlib import suppress
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native
import numpy as np

from support.faults import Shim

#: No single process takes longer.
SECONDS = 60


#: What a script calls: a flat function by its name, or a function of the script's own.
Step = str | Callable[..., Any]


class Broken(Exception):  # noqa: N818
    """The library did not keep its word."""


def plain(value: object) -> Any:  # noqa: ANN401
    """Return what is to be the same each time, of what a flat function gives."""
    if isinstance(value, np.ndarray):
        return (str(value.dtype), value.shape, value.tobytes())
    if isinstance(value, (tuple, list)):
        return [plain(each) for each in value]
    if value is None or isinstance(value, (bool, int, float, str, bytes)):
        return value
    return type(value).__name__


def _found(step: Step) -> tuple[str, Callable[..., Any]]:
    """Return the name and the function of a step."""
    return (step, getattr(native, step)) if isinstance(step, str) else (step.__name__, step)


def _refusal(function: Callable[..., Any], arguments: tuple[object, ...]) -> str:
    try:
        result = function(*arguments)
    except RuntimeError as error:
        return str(error)
    raise Broken(f"no error, but {result!r}")


class Session:
    """A script on its way: in the process that runs through, or in one that meets a fault."""

    def __init__(self, shim: Shim, most: int | None) -> None:
        self.shim = shim
        #: How many calls of the system fail within a flat call; None for all.
        self.most = most
        #: What each step gave without faults.
        self.right: list[Any] = []
        self.step = 0
        #: Whether faults are still ahead of this process.
        self.watches = False
        #: The call of the system that fails in this process; 0 in the one that runs through.
        self.failing = 0
        self.tried = 0
        self.findings: list[str] = []

    def __call__(self, step: Step, *arguments: object) -> Any:  # noqa: ANN401
        """Call a function that may be called any number of times."""
        name, function = _found(step)
        met, result = self._met(name, function, arguments)
        if met:
            result = function(*arguments)
        self.expect(name, result)
        return result

    def once(self, name: str, *arguments: object) -> Any:  # noqa: ANN401
        """Call a flat function that, once it did its work, must not be called again."""
        function = getattr(native, name)
        met, result = self._met(name, function, arguments)
        if met and result is NotImplemented:
            result = function(*arguments)
        self.expect(name, result)
        return result

    def refused(self, name: str, *arguments: object) -> None:
        """Call a flat function that refuses what is asked for, with what may fail before."""
        function = getattr(native, name)
        met, result = self._met(name, function, arguments, refuses=True)
        if met:
            result = _refusal(function, arguments)
        self.expect(name, result)

    def expect(self, name: str, value: object) -> None:
        """Compare with what the script gave without a fault."""
        found = plain(value)
        if self.step == len(self.right):
            self.right.append(found)
        elif self.right[self.step] != found:
            raise Broken(f"{name} gives {found!r:.300}, and not {self.right[self.step]!r:.300}")
        self.step += 1

    def _met(
        self,
        name: str,
        function: Callable[..., Any],
        arguments: tuple[object, ...],
        *,
        refuses: bool = False,
    ) -> tuple[bool, Any]:
        """Return whether this process met its fault now, and what the call gave."""
        if self.watches:
            # A refusal has few calls, and its words need memory at the very end.
            self._split(name, function, arguments, most=None if refuses else self.most)
            if self.failing:
                self.watches = False
                return True, self._fail(name, function, arguments)
        return False, _refusal(function, arguments) if refuses else function(*arguments)

    def _split(
        self,
        name: str,
        function: Callable[..., Any],
        arguments: tuple[object, ...],
        most: int | None,
    ) -> None:
        """Make a process for each call that is to fail; return in each, and in this at the end."""
        for failing in self._places(function, arguments, most):
            reading, writing = os.pipe()
            child = os.fork()
            if child == 0:
                os.close(reading)
                os.dup2(writing, sys.stderr.fileno())  # the last words of a crash
                os.close(writing)
                signal.alarm(SECONDS)
                self.failing = failing
                return
            self.tried += 1
            os.close(writing)
            with open(reading, "rb") as pipe:  # noqa: PTH123
                told = pipe.read().decode(errors="replace")
            _, status = os.waitpid(child, 0)
            if os.WIFSIGNALED(status):
                told += f"the process ended by {signal.Signals(os.WTERMSIG(status)).name}"
            elif status != 0 and not told:
                told = f"the process ended with {status >> 8}"
            if told:
                self.findings.append(f"{name}, call {failing}: {told}")

    def _places(
        self, function: Callable[..., Any], arguments: tuple[object, ...], most: int | None
    ) -> list[int]:
        """Return which calls of the system are to fail in a flat call, counted from 1."""
        reading, writing = os.pipe()
        child = os.fork()
        if child == 0:
            with suppress(Exception):
                self.shim.call(function, arguments, failing=0)
            os.write(writing, str(self.shim.count()).encode())
            os._exit(0)
        os.close(writing)
        with open(reading, "rb") as pipe:  # noqa: PTH123
            count = int(pipe.read())
        os.waitpid(child, 0)
        if most is None or count <= most:
            return list(range(1, count + 1))
        # The first and the last, and what lies evenly between them.
        return [1 + (count - 1) * i // (most - 1) for i in range(most)]

    def _fail(self, name: str, function: Callable[..., Any], arguments: tuple[object, ...]) -> Any:  # noqa: ANN401
        """Make the call that fails. Return what it gives, `NotImplemented` for a stated failure."""
        try:
            result = self.shim.call(function, arguments, self.failing)
        except BaseException as error:
            is_right = isinstance(error, RuntimeError) and str(error) == self.right[self.step]
            if is_right or self.shim.fault.is_stated_by(error):
                return NotImplemented
            raise Broken(f"{error!r:.500} at {self.shim.place()}") from None
        found = plain(result)
        if found != self.right[self.step] and not self.shim.fault.is_stated_answer(name, result):
            raise Broken(
                f"{name} gives {found!r:.300}, and not {self.right[self.step]!r:.300}, "
                f"after a failure at {self.shim.place()}"
            )
        return result

    # The process that meets a fault.

    def end(self, error: BaseException | None) -> None:
        """End a process that met its fault, and tell what it found."""
        if error is not None:
            known = isinstance(error, Broken)
            text = str(error) if known else "".join(traceback.format_exception(error)[-2:])
            where = self.shim.place()
            text += "" if where in text else f", after a failure at {where}"
            os.write(sys.stderr.fileno(), text.encode(errors="replace"))
        os._exit(0 if error is None else 1)


Script = Callable[[Session, Path], None]


def _run(session: Session, script: Script, folder: Path) -> None:
    session.step = 0
    native.TabulonApi_clear_runs()
    script(session, folder)
    native.TabulonApi_clear_runs()


def _open_files() -> int:
    return len(os.listdir("/proc/self/fd"))  # noqa: PTH208


def run_with_faults(session: Session, script: Script, folder: Path) -> None:
    """Run a script through, with faults in front of each of its steps."""
    gc.disable()  # so that each round allocates the same
    for _ in range(2):  # the second finds in place what stays for the process
        _run(session, script, folder)
    files = _open_files()
    session.watches = True
    try:
        _run(session, script, folder)
        if session.failing:
            if _open_files() != files:
                raise Broken("a file stays open")
            _run(session, script, folder)
    except BaseException as error:
        if not session.failing:
            raise
        session.end(error)
    if session.failing:
        session.end(None)
