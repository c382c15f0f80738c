"""The module of tables beside other threads, signals, the flat module and its own stub."""

from __future__ import annotations

import os
import signal
import subprocess
import sys
import threading
import time
from importlib.metadata import version
from pathlib import Path

import numpy as np
import pytest

tables = pytest.importorskip("tabulon._tables")

ROOT = Path(__file__).parents[2]
RUNS = ROOT / "examples" / "runs"
STUB = ROOT / "python" / "tabulon" / "_tables.pyi"

HEADER = (
    "FILE\trun.$01\nACCESS\tD\nFORM\tF\nRECL\t4\nFORMAT\tR*4\nCONTENT\t'POWPROD'\n"
    "CONFIG\t'TRANSIENT'\nNDIMENS\t2\nDIMENS\t2\t{rows}\nGENLAB\t'Long'\n"
    "VARIAB\t'a' 'b'\nVARUNIT\tL L\nAXISLAB\t'Time'\nAXIUNIT\tT\nAXIMETH\t2\nMIN \t0\nSTEP\t1\n"
)


@pytest.fixture
def long_table(tmp_path: Path) -> tables.GroupTable:
    """Return a group that takes seconds to go through, and no place on the disk."""
    rows = 1_000_000_000
    (tmp_path / "run.%01").write_text(HEADER.format(rows=rows))
    with (tmp_path / "run.$01").open("wb") as file:
        file.truncate(rows * 2 * 4)
    return tables.GroupTable.open(tmp_path / "run.%01")


def time_to_interrupt(table: tables.GroupTable) -> float:
    sent = []

    def interrupt() -> None:
        sent.append(time.monotonic())
        os.kill(os.getpid(), signal.SIGINT)

    timer = threading.Timer(0.2, interrupt)
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        table.reduce(tables.Selection([0, 1]))
    took = time.monotonic() - sent[0]
    timer.join()
    return took


def test_ctrl_c_ends_a_long_call(long_table: tables.GroupTable) -> None:
    # The least of some: a busy machine keeps a process waiting.
    assert min(time_to_interrupt(long_table) for _ in range(3)) < 0.3


def test_other_threads_run_while_a_call_reads(long_table: tables.GroupTable) -> None:
    turns = 0
    done = threading.Event()

    def read() -> None:
        long_table.reduce(tables.Selection([0, 1], count=20_000_000))
        done.set()

    thread = threading.Thread(target=read)
    thread.start()
    while not done.wait(0.001):
        turns += 1
    thread.join()
    assert turns > 5


def test_threads_share_a_table() -> None:
    table = tables.GroupTable.open(RUNS / "powprod_12ms.%01")
    selection = tables.Selection(range(len(table.variables)))
    expected = table.read(selection)
    found: list[np.ndarray] = []
    threads = [
        threading.Thread(target=lambda: found.append(table.read(selection))) for _ in range(8)
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(found) == 8
    for values in found:
        np.testing.assert_array_equal(values, expected)


def test_arrays_outlive_what_they_came_from() -> None:
    figures = tables.GroupTable.open(RUNS / "powprod_12ms.%01").reduce(tables.Selection([0]))
    mean, kept = figures.mean, float(figures.mean[0])
    del figures
    assert float(mean[0]) == kept
    mean[0] = 17  # an array of its own


def test_names_that_are_no_utf8_come_as_in_the_flat_module(tmp_path: Path) -> None:
    header = tmp_path / "run.%01"
    header.write_bytes(HEADER.format(rows=1).encode().replace(b"'a'", b"'\xb0C \xc3\xbc'"))
    assert tables.GroupTable.open(header).variables[0].name == "\udcb0C ü"


def test_neither_module_imports_the_other() -> None:
    code = (
        "import sys, importlib.util as u\n"
        f"spec = u.spec_from_file_location('tabulon._tables', {tables.__file__!r})\n"
        "module = u.module_from_spec(spec); spec.loader.exec_module(module)\n"
        "assert '_TabulonAPI_Python' not in sys.modules\n"
        "assert 'numpy' not in sys.modules\n"
    )
    subprocess.run([sys.executable, "-c", code], check=True)
    code = "import sys, _TabulonAPI_Python\nassert 'tabulon._tables' not in sys.modules\n"
    subprocess.run([sys.executable, "-c", code], check=True)


def test_the_stub_is_that_of_the_module(tmp_path: Path) -> None:
    pytest.importorskip("nanobind")
    if version("nanobind") != "3.1.0":
        pytest.skip("another release words stubs differently")
    package = tmp_path / "tabulon"
    package.mkdir()
    (package / "__init__.py").touch()
    (package / Path(tables.__file__).name).symlink_to(tables.__file__)
    made = tmp_path / "_tables.pyi"
    command = [sys.executable, "-m", "nanobind.stubgen", "-q", "-i", tmp_path]
    subprocess.run([*command, "-m", "tabulon._tables", "-o", made], check=True)
    assert made.read_text() == STUB.read_text(), (
        f"nanobind.stubgen makes another stub than {STUB.relative_to(ROOT)}"
    )


def test_a_mapping_keeps_no_signal_from_a_script() -> None:
    assert signal.getsignal(signal.SIGURG) == signal.SIG_DFL
