"""Runs a function in an interpreter of its own, whose memory nothing else changes."""

from __future__ import annotations

import json
import os
import subprocess
import sys
from collections.abc import Callable
from importlib import import_module
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native

from support.memory import ENVIRONMENT

#: Long: machines are slow, and slower with sanitizers.
SECONDS = 600


def run_alone(function: Callable[..., Any], *arguments: object) -> Any:  # noqa: ANN401
    """Return what a function of a module gives for arguments that JSON can hold."""
    folders = [str(Path(native.__file__).parent), str(Path(__file__).parents[1])]
    start = f"import sys\nsys.path[:0] = {folders!r}\nfrom support.own_process import main\nmain()"
    done = subprocess.run(
        [sys.executable, "-X", "faulthandler", "-c", start, function.__module__, function.__name__],
        input=json.dumps(arguments, default=str),
        capture_output=True,
        text=True,
        errors="surrogateescape",
        timeout=SECONDS,
        env={**os.environ, **ENVIRONMENT},
        check=False,
    )
    assert done.returncode == 0, done.stderr[-3000:]
    assert done.stderr == ""
    return json.loads(done.stdout)


def main() -> None:
    """Run the function that the command line names."""
    module, function = sys.argv[1:]
    result = getattr(import_module(module), function)(*json.load(sys.stdin))
    json.dump(result, sys.stdout)
