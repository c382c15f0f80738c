"""Times the library against its peers and prints a table.

usage: python benchmarks/run.py [--quick] [--directory DIR] [part ...]
"""

from __future__ import annotations

import argparse
import gc
import os
import statistics
import subprocess
import sys
import tempfile
import time
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

import _TabulonAPI_Python as api
import files
import numpy as np

ROUNDS = 7
MIB = 1024.0 * 1024.0


@dataclass
class Sizes:
    """How large the files are."""

    points: int = 200_000
    variables: int = 300
    text_points: int = 100_000
    text_variables: int = 30
    groups: int = 100
    group_variables: int = 500
    directories: int = 1_000
    runs: int = 50_000
    append_points: int = 10_000_000

    @classmethod
    def quick(cls) -> Sizes:
        """Return sizes for a look at the rows."""
        return cls(2_000, 30, 1_000, 6, 5, 20, 20, 200, 100_000)


def seconds_of(call: Callable[[], object]) -> float:
    """Return the time of one call; what it returns is freed behind the clock."""
    gc.collect()
    start = time.perf_counter()
    result = call()
    elapsed = time.perf_counter() - start
    del result
    return elapsed


def side_by_side(ours: Callable[[], object], peer: Callable[[], object]) -> tuple[float, float]:
    """Return the median times of both, which take turns."""
    mine, theirs = [], []
    ours(), peer()
    for _ in range(ROUNDS):
        mine.append(seconds_of(ours))
        theirs.append(seconds_of(peer))
    return statistics.median(mine), statistics.median(theirs)


def each(call: Callable[[], object], repeat: int = 2_000) -> float:
    """Return the median time of a call that is too short for one reading."""
    readings = []
    for _ in range(ROUNDS):
        start = time.perf_counter()
        for _ in range(repeat):
            call()
        readings.append((time.perf_counter() - start) / repeat)
    return statistics.median(readings)


def report(job: str, ours: float, peer: float | None, limit: float, unit: str = "ms") -> None:
    """Print one row: a ratio against a peer, or a figure against a limit."""
    scale = {"ms": 1e3, "us": 1e6}.get(unit, 1.0)
    if peer is None:
        verdict = "ok" if ours * scale <= limit else "MISSED"
        print(f"{job:58} {ours * scale:10.2f} {unit:3} {'':13} <= {limit:g} {unit:5} {verdict}")
    else:
        ratio = ours / peer
        verdict = "ok" if ratio <= limit else "MISSED"
        print(
            f"{job:58} {ours * scale:10.2f} {unit:3} {peer * scale:9.2f} {unit:3}"
            f" {ratio:5.2f}x <= {limit:.2f}x {verdict}"
        )
    sys.stdout.flush()


def variable_1d(run: object, name: str) -> object:
    """Return a float variable of a run."""
    return api.Run__RUNPREFIX_get_variable_1d_float32(run, name)


def array_of(run: object, name: str) -> np.ndarray:
    """Return the values of a float variable."""
    return api.Variable1D_Float32__get_data_numpy_from_vector(variable_1d(run, name))


def fresh_array(directory: Path, name: str) -> np.ndarray:
    """Return the values of a variable of a run that the library does not know yet."""
    api.TabulonApi_clear_runs()
    return array_of(api.TabulonApi_get_run(str(directory), "bench"), name)


def bench_read(root: Path, sizes: Sizes) -> None:
    """Read a binary group: first variable, further variables, without buffer."""
    directory = root / "binary"
    path = files.write_binary_group(directory, "bench", sizes.points, sizes.variables)
    names = files.variable_names(sizes.variables)

    def peer() -> np.ndarray:
        return np.fromfile(path, "<f4").reshape(sizes.points, sizes.variables)[:, 7].copy()

    expected = peer()
    assert np.array_equal(fresh_array(directory, names[7]), expected)
    ours, theirs = side_by_side(lambda: fresh_array(directory, names[7]), peer)
    report("first variable of a binary group, buffered / np.fromfile", ours, theirs, 0.8)

    run = api.TabulonApi_get_run(str(directory), "bench")
    array_of(run, names[0])
    table = np.fromfile(path, "<f4").reshape(sizes.points, sizes.variables)
    columns = iter(range(10, sizes.variables - 1))
    ours, theirs = side_by_side(
        lambda: array_of(run, names[next(columns)]), lambda: table[:, next(columns)].copy()
    )
    report("each further variable / table[:, v].copy()", ours, theirs, 1.2)
    table = np.empty((0, 0), dtype=np.float32)
    del run

    api.TabulonApi_CacheSettings_set_buffered_read_enabled(False)
    assert np.array_equal(fresh_array(directory, names[7]), expected)
    ours, theirs = side_by_side(lambda: fresh_array(directory, names[7]), peer)
    report("one variable, buffered reading off / np.fromfile", ours, theirs, 0.5)
    api.TabulonApi_CacheSettings_set_buffered_read_enabled(True)
    api.TabulonApi_clear_runs()

    path.rename(path.with_suffix(".gone"))
    run = api.TabulonApi_get_run(str(directory), "bench")
    mean = api.Variable1D_Float32_get_mean(variable_1d(run, names[7]))
    holds = abs(mean - float(expected.mean(dtype=np.float64))) < 1.0
    print(
        f"{'statistics from the header, no data file present':58} {'holds' if holds else 'MISSED'}"
    )
    path.with_suffix(".gone").rename(path)


PEAK = """
import sys
import _TabulonAPI_Python as api
import numpy as np
def kib(key):
    return next(int(l.split()[1]) for l in open('/proc/self/status') if l.startswith(key))
directory, buffered, names = sys.argv[1], sys.argv[2] == '1', sys.argv[3:]
api.TabulonApi_CacheSettings_set_buffered_read_enabled(buffered)
np.zeros(1)
run = api.TabulonApi_get_run(directory, 'bench')
api.Run__RUNPREFIX_get_variable_1d_float32(run, names[0])
before = kib('VmRSS')
kept = []
for name in names:
    v = api.Run__RUNPREFIX_get_variable_1d_float32(run, name)
    kept.append(api.Variable1D_Float32__get_data_numpy_from_vector(v))
print(kib('VmHWM') - before)
"""


def bench_memory(root: Path, sizes: Sizes) -> None:
    """Take the peak memory of the buffered and of the unbuffered road."""
    directory = root / "binary"
    path = files.write_binary_group(directory, "bench", sizes.points, sizes.variables)
    names = files.variable_names(sizes.variables)[:3]
    one_variable = 4.0 * sizes.points / MIB

    def peak(buffered: bool, wanted: list[str]) -> float:
        command = [sys.executable, "-c", PEAK, str(directory), "01"[buffered], *wanted]
        done = subprocess.run(command, check=True, capture_output=True, text=True)
        return int(done.stdout) / 1024.0

    file_size = path.stat().st_size / MIB
    limit = file_size + 3 * one_variable + 40.0
    report("peak memory, three variables, buffered", peak(True, names), None, limit, "MiB")
    limit = one_variable + 16.0
    report(
        "peak memory, one variable, buffered reading off",
        peak(False, names[:1]),
        None,
        limit,
        "MiB",
    )


def bench_text(root: Path, sizes: Sizes) -> None:
    """Read a text group: one variable and all, against NumPy and pandas."""
    import pandas as pd

    directory = root / "text"
    path = files.write_text_group(directory, "bench", sizes.text_points, sizes.text_variables)
    names = files.variable_names(sizes.text_variables)

    def with_pandas() -> object:
        return pd.read_csv(path, sep=r"\s+", header=None, dtype=np.float32)

    def all_variables() -> list[np.ndarray]:
        api.TabulonApi_clear_runs()
        run = api.TabulonApi_get_run(str(directory), "bench")
        return [array_of(run, name) for name in names]

    assert np.allclose(fresh_array(directory, names[3]), with_pandas()[3])
    ours, theirs = side_by_side(lambda: fresh_array(directory, names[3]), with_pandas)
    report("one variable of a text group / pandas.read_csv of all", ours, theirs, 0.2)
    ours, theirs = side_by_side(
        lambda: fresh_array(directory, names[3]), lambda: np.loadtxt(path, dtype=np.float32)
    )
    report("the same / np.loadtxt of all", ours, theirs, 0.2)
    ours, theirs = side_by_side(all_variables, with_pandas)
    report("all variables one after another / pandas.read_csv", ours, theirs, 1.5)


def bench_open(root: Path, sizes: Sizes) -> None:
    """Find one variable by name in a run of many groups."""
    directory = root / "groups"
    files.write_many_groups(directory, "bench", sizes.groups, sizes.group_variables)
    headers = sorted(directory.glob("bench.%*"))

    def find() -> object:
        api.TabulonApi_clear_runs()
        return variable_1d(api.TabulonApi_get_run(str(directory), "bench"), "wanted")

    def read() -> list[str]:
        texts = []
        for path in headers:
            with open(path) as file:  # noqa: PTH123 the plain road is the peer
                texts.append(file.read())
        return texts

    ours, theirs = side_by_side(find, read)
    report("finding one variable in all groups / open().read() of them", ours, theirs, 5.0)


def bench_getters(root: Path, sizes: Sizes) -> None:
    """Time calls on held objects."""
    directory = root / "held"
    files.write_many_groups(directory, "bench", 2, 3)
    run = api.TabulonApi_get_run(str(directory), "bench")
    variable = variable_1d(run, "wanted")
    api.Variable1D_Float32__get_data_numpy_from_vector(variable)
    report("Run_get_name of a held run", each(lambda: api.Run_get_name(run)), None, 1.0, "us")
    ours = each(lambda: api.Variable1D_Float32__get_data_numpy_from_vector(variable))
    report("a loaded variable as an array", ours, None, 5.0, "us")


def bench_search(root: Path, sizes: Sizes) -> None:
    """Find the runs of a tree, against os.walk."""
    tree = root / "tree"
    files.write_tree(tree, sizes.directories, sizes.runs)
    errored = api.CompletionState_Errored

    def walk(read: bool) -> list[str]:
        found = []
        for directory, _, names in os.walk(tree):
            for name in names:
                if name.endswith(".$TE"):
                    path = os.path.join(directory, name)  # noqa: PTH118 as above
                    if read:
                        with open(path) as file:  # noqa: PTH123 as above
                            if "*** ERROR" not in file.read():
                                continue
                    found.append(path)
        return found

    def search() -> object:
        api.TabulonApi_clear_runs()
        return api.TabulonApi__get_runs_native_array(str(tree))

    assert len(search()) == len(walk(False))
    ours, theirs = side_by_side(search, lambda: walk(False))
    report("get_runs of a tree / os.walk", ours, theirs, 1.0)

    api.TabulonApi_SearchSettings_set_completion_state_filter(errored)
    assert len(search()) == len(walk(True))
    ours, theirs = side_by_side(search, lambda: walk(True))
    report("get_runs with a completion-state filter / os.walk and read", ours, theirs, 0.8)
    api.TabulonApi_SearchSettings_set_completion_state_filter(
        api.CompletionState_AllCompletionStates
    )

    def first() -> object:
        return api.RunsIterator_get_next_run(api.new_RunsIterator(str(tree)))

    report("first run from RunsIterator", each(first, 20), None, 5.0)
    api.TabulonApi_clear_runs()
    code = (
        "import sys, _TabulonAPI_Python as api\n"
        "def rss():\n"
        "    lines = open('/proc/self/status')\n"
        "    return next(int(l.split()[1]) for l in lines if l.startswith('VmRSS'))\n"
        "before = rss(); n = len(api.TabulonApi__get_runs_native_array(sys.argv[1]))\n"
        "print((rss() - before) / n)"
    )
    done = subprocess.run(
        [sys.executable, "-c", code, str(tree)], check=True, capture_output=True, text=True
    )
    report("memory for each cached run", float(done.stdout), None, 1.5, "KiB")


def bench_write(root: Path, sizes: Sizes) -> None:
    """Write output groups, against NumPy."""
    directory = root / "out"
    directory.mkdir(parents=True, exist_ok=True)

    def group_of(columns: list[np.ndarray], number: int, form: int) -> object:
        time_axis = api.new_IndependentVariable("Time", "s", 0.0, 0.05)
        path = str(directory / f"out.%{number:02d}")
        group = api.new_OutputGroup1D_Float32(
            path, "Out", "UserDefined", "TRANSIENT", time_axis, form
        )
        for i, column in enumerate(columns):
            api.OutputGroup1D_Float32__add_variable_with_data_native_array(
                group, f"v{i}", "Nm", column
            )
        return group

    columns = list(np.ascontiguousarray(files.load_table(sizes.points, sizes.variables).T))
    group = group_of(columns, 1, api.VariableDataFormat_Binary)
    peer_path = directory / "peer.bin"
    ours, theirs = side_by_side(
        lambda: api.TabulonApi_write_output(group),
        lambda: np.stack(columns, axis=1).astype("<f4").tofile(peer_path),
    )
    report("write_output, binary / np.stack(...).tofile", ours, theirs, 1.0)
    assert (directory / "out.$01").read_bytes() == peer_path.read_bytes()
    columns = []
    del group

    values = np.random.default_rng(3).standard_normal(sizes.append_points).astype(np.float32)
    time_axis = api.new_IndependentVariable("Time", "s", 0.0, 0.05)

    def append() -> object:
        path = str(directory / "append.%01")
        target = api.new_OutputGroup1D_Float32(path, "Out", "UserDefined", "TRANSIENT", time_axis)
        api.OutputGroup1D_Float32_add_variable(target, "v", "Nm")
        api.OutputGroup1D_Float32__append_data_native_array(target, "v", values)
        return target

    ours, theirs = side_by_side(append, values.copy)
    report("append_data from a float32 array / array.copy()", ours, theirs, 3.0)

    table = files.load_table(sizes.text_points, sizes.text_variables)
    group = group_of(list(np.ascontiguousarray(table.T)), 2, api.VariableDataFormat_ASCII)
    ours, theirs = side_by_side(
        lambda: api.TabulonApi_write_output(group),
        lambda: np.savetxt(directory / "peer.txt", table, fmt="%.7e"),
    )
    report("write_output, text / np.savetxt", ours, theirs, 0.1)


PARTS = {
    "read": bench_read,
    "memory": bench_memory,
    "text": bench_text,
    "open": bench_open,
    "getters": bench_getters,
    "search": bench_search,
    "write": bench_write,
}


def main() -> int:
    """Run the parts that were asked for."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("parts", nargs="*", choices=[[], *PARTS], metavar="part")
    parser.add_argument("--quick", action="store_true", help="small files")
    parser.add_argument(
        "--directory", type=Path, help="where to put the files; default a temporary one"
    )
    arguments = parser.parse_args()
    sizes = Sizes.quick() if arguments.quick else Sizes()
    print(f"{'job / peer':58} {'ours':>14} {'peer':>13} ratio    target")
    with tempfile.TemporaryDirectory(dir=arguments.directory) as root:
        for part in arguments.parts or PARTS:
            PARTS[part](Path(root), sizes)
    return 0


if __name__ == "__main__":
    sys.exit(main())
