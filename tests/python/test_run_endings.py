"""How a run ended, when, and after how long, through the extension module."""

from __future__ import annotations

import os
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from support.flat import Flat, error_of, get_run, io_error, run_script, tables_error
from support.run_files import RunFiles
from support.scenarios import group_1d

NORMALLY = native.CompletionState_CompletedNormally
PROGRESS = native.CompletionState_InProgress
TERMINATED = native.CompletionState_Terminated
ERRORED = native.CompletionState_Errored
ABORTED = native.CompletionState_Aborted
UNKNOWN = native.CompletionState_Unknown
#: The last write of the termination file: 2023-11-14 22:13:20 UTC.
ENDED = 1_700_000_000 * 10**9


@pytest.mark.parametrize(
    ("text", "state", "finished", "successful", "unsuccessful"),
    [
        ("Run completed in 5 s", NORMALLY, True, True, False),
        ("Run completed\nRun in progress", NORMALLY, False, True, False),
        ("*** ERROR Run completed", NORMALLY, True, True, False),
        ("Run in progress", PROGRESS, False, False, False),
        ("Run terminated unexpectedly", TERMINATED, True, False, True),
        ("*** ERROR 17", ERRORED, True, False, True),
        ("*** ERROR\nAborted by user", ABORTED, True, False, True),
        ("Aborted by user", UNKNOWN, True, False, False),
        ("run completed", UNKNOWN, True, False, False),
        ("", UNKNOWN, True, False, False),
    ],
)
def test_ending(
    text: str, state: int, finished: bool, successful: bool, unsuccessful: bool, tmp_path: Path
) -> None:
    RunFiles(termination=text).write(tmp_path)
    run = get_run(tmp_path)
    assert run.get_completion_state() == state
    told = (run.has_finished(), run.was_successful(), run.was_unsuccessful())
    assert told == (finished, successful, unsuccessful)


def started(folder: Path, nanoseconds_later: int) -> Flat:
    """Return a run whose verification file is that much younger than its termination file."""
    RunFiles().write(folder)
    for extension, time in ((".$TE", ENDED), (".$VE", ENDED + nanoseconds_later)):
        os.utime(folder / f"run{extension}", ns=(time, time))
    return get_run(folder)


@pytest.mark.parametrize(
    ("later", "duration"),
    [
        (-100 * 10**9, 100.0),
        (-100 * 10**9 + 100, 99.0),
        (-(10**9), 1.0),
        (-999_999_900, 0.0),
        (0, 0.0),
        (500_000_000, 0.0),
        (999_999_900, 0.0),
    ],
)
def test_duration_in_whole_seconds(later: int, duration: float, tmp_path: Path) -> None:
    seconds = started(tmp_path, later).get_execution_duration_seconds()
    assert (seconds, type(seconds)) == (duration, float)


def test_start_a_second_after_the_end(tmp_path: Path) -> None:
    assert error_of(started(tmp_path, 10**9).get_execution_duration_seconds) == tables_error(
        "Failed to calculate run execution time ($VE file had a more recent timestamp than $TE "
        "file)",
        f"Run: {tmp_path}/run",
    )


@pytest.mark.parametrize(
    ("zone", "expected"), [("UTC0", "2023-11-14 22:13:20"), ("XYZ-5:30", "2023-11-15 03:43:20")]
)
def test_timestamp_in_local_time(zone: str, expected: str, tmp_path: Path) -> None:
    started(tmp_path, 0)
    told = run_script("answer(get_run(sys.argv[1]).get_timestamp())", tmp_path, TZ=zone)
    assert told == expected


@pytest.mark.parametrize("kind", ["message", "verification"])
def test_side_file_that_does_not_end(kind: str, tmp_path: Path) -> None:
    RunFiles([]).write(tmp_path)
    path = tmp_path / f"run.${kind[0].upper()}E"
    for source in ("/dev/zero", tmp_path / "pipe"):
        path.unlink()
        path.symlink_to(source)
        if not path.exists():
            os.mkfifo(source)
        run = get_run(tmp_path)
        assert error_of(getattr(run, f"get_{kind}_file_content")) == io_error(
            5009, "Failed to read data", f"File path: {path}", "Operation not supported"
        )


def test_calculation_type_is_kept_for_good(tmp_path: Path) -> None:
    RunFiles([group_1d(content="CYCLES2")]).write(tmp_path)
    run = get_run(tmp_path)
    assert run.get_calculation_type() == native.CalculationType_RainflowCycleAnalysis
    RunFiles([group_1d(content="EQLD")]).write(tmp_path)
    os.utime(tmp_path / "run.$TE", ns=(ENDED, ENDED))
    again = get_run(tmp_path)
    group = Flat("Group", again.get_group("Summary"))
    assert group.get_calculation_short_name() == "EQLD"
    assert again.get_calculation_type() == native.CalculationType_RainflowCycleAnalysis
    RunFiles([group_1d(content="IDLING")]).write(tmp_path)
    os.utime(tmp_path / "run.$TE", ns=(ENDED + 10**9, ENDED + 10**9))
    assert run.get_calculation_type() == native.CalculationType_RainflowCycleAnalysis
    assert run.get_calculation_descriptive_name() == "Rainflow analysis"
    assert get_run(tmp_path).get_calculation_type() == native.CalculationType_IdlingSimulation
