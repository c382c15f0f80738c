"""Runs a function in an interpreter of its own, whose memory nothing else changes."""

from __future__ import annotations

import json
import os
import subprocess
import sys
from collections.abc import Callable, Mapping
from importlib import import_module
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native

from support.memory import ENVIRONMENT

#: Long: machines are slow, and slower with sanitizers.
SECONDS = 600


def answer_of(
    code: str, *arguments: object, given: str = "", environment: Mapping[str, str] = ENVIRONMENT
) -> Any:  # noqa: ANN401
    """Return what code prints as JSON in an interpreter of its own.

    A crash of that interpreter is a failure here, and not the end of all tests.
    """
    folders = [str(Path(native.__file__).parent), str(Path(__file__).parents[1])]
    start = f"import sys\nsys.path[:0] = {folders!r}\n"
    done = subprocess.run(
        [sys.executable, "-X", "faulthandler", "-c", start + code, *map(str, arguments)],
        input=given,
        capture_output=True,
        text=True,
        errors="surrogateescape",
        timeout=SECONDS,
        env={**os.environ, **environment},
        check=False,
    )
    assert done.returncode == 0, done.stderr[-3000:]
    assert done.stderr == ""
    return json.loads(done.stdout)


def run_alone(
    function: Callable[..., Any],
    *arguments: object,
    environment: Mapping[str, str] = ENVIRONMENT,
) -> Any:  # noqa: ANN401
    """Return what a function of a module gives for arguments that JSON can hold."""
    return answer_of(
        "from support.own_process import main\nmain()",
        function.__module__,
        function.__name__,
        given=json.dumps(arguments, default=str),
        environment=environment,
    )


def main() -> None:
    """Run the function that the command line names."""
    module, function = sys.argv[1:]
    result = getattr(import_module(module), function)(*json.load(sys.stdin))
    json.dump(result, sys.stdout)
