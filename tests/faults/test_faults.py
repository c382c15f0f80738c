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
    table_writing,
    writing,
)
from support.fault_session import Script
from support.faults import FAULTS, environment
from support.own_process import run_alone

#: In how many places of a step a call fails; "all" for every one.
PLACES = os.environ.get("TABULON_FAULT_PLACES", "12")
ALLOCATIONS = ("allocation", "all allocations")


def _is_met(script: Script, fault: str) -> bool:
    """Whether a script makes calls that the fault is about."""
    if fault in ALLOCATIONS:
        return True
    if fault == "ENOSPC":
        return script in (writing, table_writing)
    return script is not arrays and not (script is searching and "short" in fault)


def _fails_today(script: Script, fault: str) -> str:
    if fault in ALLOCATIONS and script is searching:
        return "a found run that memory lacks for is passed over"
    if fault in ALLOCATIONS and script is table_writing:
        return "a variable that memory lacks for stays behind, without its data"
    return ""


def _cases() -> list[object]:
    cases = []
    for name, script in SCRIPTS.items():
        for fault in filter(lambda fault: _is_met(script, fault), FAULTS):
            reason = _fails_today(script, fault)
            marks = [pytest.mark.xfail(reason=reason, strict=True)] if reason else []
            cases.append(pytest.param(name, fault, marks=marks))
    return cases


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
