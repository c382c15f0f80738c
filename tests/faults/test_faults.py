"""Calls of the system that fail are told, and leave nothing behind.

Each script runs through once; at each of its steps processes are split off in which one call of
the system fails, at another place in each. The step ends with what is stated for the fault, or is
right; the same step afterwards is right, and so is the rest of the script.
"""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from support.fault_scripts import (
    SCRIPTS,
    arrays,
    findings_of,
    searching,
    stateless,
    table_writing,
    writing,
)
from support.fault_session import Script
from support.faults import FAULTS, environment
from support.own_process import run_alone

#: In how many places of a step a call fails; "all" for every one.
PLACES = os.environ.get("TABULON_FAULT_PLACES", "12")


def _is_met(script: Script, fault: str) -> bool:
    """Whether a script makes calls that the fault is about."""
    if "allocation" in fault:
        return script is not stateless
    if fault == "ENOSPC":
        return script in (writing, table_writing)
    return script is not arrays and not (script is searching and "short" in fault)


def _cases() -> list[tuple[str, str]]:
    return [
        (name, fault)
        for name, script in SCRIPTS.items()
        for fault in FAULTS
        if _is_met(script, fault)
    ]


@pytest.mark.parametrize(("script", "fault"), _cases())
def test_a_failure_is_told_and_leaves_nothing_behind(
    script: str, fault: str, shim: Path, tmp_path: Path
) -> None:
    most = None if PLACES == "all" else int(PLACES)
    tried, findings = run_alone(
        findings_of, script, fault, tmp_path, most, environment=environment(shim)
    )
    print(f"{tried} failures")
    assert findings == []
    assert tried > 0
