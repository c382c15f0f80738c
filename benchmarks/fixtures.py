"""Files for the benchmarks, laid out by the format without the library."""

from __future__ import annotations

import os
import shutil
from pathlib import Path

import numpy as np


def write_run(directory: Path, name: str, text: str = "Run completed.\n") -> None:
    """Write the side files that make a run."""
    directory.mkdir(parents=True, exist_ok=True)
    (directory / f"{name}.$TE").write_text(text)
    (directory / f"{name}.$ME").write_text("No messages.\n")
    (directory / f"{name}.$VE").write_text("Input verified.\n")


def header_text(
    name: str, number: int, group: str, variables: list[str], points: int, *, access: str = "D"
) -> str:
    """Return the header of a group of floats over time."""
    lines = [
        f"FILE\t{name}.${number:02d}",
        f"ACCESS\t{access}",
        "FORM\tF",
        "RECL\t4",
        "FORMAT\tR*4",
        "CONTENT\t'POWPROD'",
        "CONFIG\t'TRANSIENT'",
        "NDIMENS\t2",
        f"DIMENS\t{len(variables)}\t{points}",
        f"GENLAB\t'{group}'",
        "VARIAB\t" + " ".join(f"'{variable}'" for variable in variables),
        "VARUNIT\t" + " ".join("FL" for _ in variables),
        "AXISLAB\t'Time'",
        "AXIUNIT\tT",
        "AXIMETH\t2",
        "MIN \t0.0000000E+00",
        "STEP\t5.0000000E-02",
        "NVARS\t0",
    ]
    return "\n".join(lines) + "\n"


def statistics_text(table: np.ndarray) -> str:
    """Return the statistics block of a table of shape (points, variables)."""

    def row(values: np.ndarray) -> str:
        return "".join(f"{'  ' if v < 0 else '   '}{v:.7E}" for v in values)

    rows = []
    for variable in range(table.shape[1]):
        rows.append(row(table[int(table[:, variable].argmax())]))
        rows.append(row(table[int(table[:, variable].argmin())]))
    times = " ".join("0" for _ in range(table.shape[1]))
    means = row(table.mean(axis=0, dtype=np.float64))
    body = "\n".join(rows)
    return f"ULOADS{body}\nMAXTIME {times}\nMINTIME {times}\nMEAN{means}\n"


def load_table(points: int, variables: int) -> np.ndarray:
    """Return believable loads, shape (points, variables)."""
    random = np.random.default_rng(7)
    table = random.standard_normal((points, variables), dtype=np.float32)
    table *= 1e5
    table += 1e6
    return table


def variable_names(count: int) -> list[str]:
    """Return names as long as those of real channels."""
    return [f"Blade 1 load channel {i:03d}" for i in range(count)]


def write_binary_group(
    directory: Path, name: str, points: int, variables: int, *, figures: bool = True
) -> Path:
    """Write a run with one binary group and return the path of its data file."""
    write_run(directory, name)
    table = load_table(points, variables)
    header = header_text(name, 1, "Loads", variable_names(variables), points)
    if figures:
        header += statistics_text(table)
    (directory / f"{name}.%01").write_text(header)
    path = directory / f"{name}.$01"
    table.tofile(path)
    return path


def write_text_group(directory: Path, name: str, points: int, variables: int) -> Path:
    """Write a run with one text group and return the path of its data file."""
    write_run(directory, name)
    header = header_text(name, 1, "Loads", variable_names(variables), points, access="S")
    (directory / f"{name}.%01").write_text(header)
    path = directory / f"{name}.$01"
    np.savetxt(path, load_table(points, variables), fmt="%15.7e")
    return path


def write_many_groups(directory: Path, name: str, groups: int, variables: int) -> None:
    """Write a run of many groups; the last one holds the variable `wanted`."""
    write_run(directory, name)
    for number in range(1, groups + 1):
        names = [f"Group {number} load channel {i:03d}" for i in range(variables)]
        if number == groups:
            names[-1] = "wanted"
        header = header_text(name, number, f"Group {number}", names, 2)
        (directory / f"{name}.%{number:02d}").write_text(header)
        (directory / f"{name}.${number:02d}").write_bytes(bytes(8 * variables))


def write_tree(root: Path, directories: int, runs: int) -> None:
    """Write a tree of runs with five files each; every tenth run has failed."""
    for d in range(directories):
        directory = root / f"case_{d:04d}"
        for r in range(runs // directories):
            name = f"run_{r:03d}"
            failed = r % 10 == 0
            write_run(directory, name, "*** ERROR\n" if failed else "Run completed.\n")
            (directory / f"{name}.%01").write_text(header_text(name, 1, "G", ["x"], 1))
            (directory / f"{name}.$01").write_bytes(bytes(4))


def write_two_axis_group(directory: Path, name: str, shape: tuple[int, int, int]) -> Path:
    """Write a run with one binary group of shape (points, secondary values, variables)."""
    points, secondary, variables = shape
    write_run(directory, name)
    header = header_text(name, 1, "Blade loads", variable_names(variables), points)
    header = header.replace("NDIMENS\t2", "NDIMENS\t3")
    header = header.replace(
        f"DIMENS\t{variables}\t{points}", f"DIMENS\t{variables}\t{secondary}\t{points}"
    )
    stations = " ".join(f"{2.5 * i:.7f}" for i in range(secondary))
    axis = f"AXISLAB\t'Distance along blade'\nAXIUNIT\tL\nAXIMETH\t3\nAXIVAL\t{stations}\n"
    header = header.replace("AXISLAB", axis + "AXISLAB", 1)
    (directory / f"{name}.%01").write_text(header)
    path = directory / f"{name}.$01"
    load_table(points, secondary * variables).tofile(path)
    return path


def copy_run(source: Path, target: Path) -> None:
    """Copy the directory of a run."""
    shutil.copytree(source, target)


def write_campaign(root: Path, runs: int, points: int, variables: int) -> None:
    """Write runs in directories of their own, with figures that differ from run to run."""
    table = load_table(points, variables)
    names = variable_names(variables)
    for i in range(runs):
        folder = root / f"case_{i:05d}"
        write_run(folder, "bench")
        values = table + np.float32(i)
        header = header_text("bench", 1, "Loads", names, points) + statistics_text(values)
        (folder / "bench.%01").write_text(header)
        values.tofile(folder / "bench.$01")


def write_linked_campaign(root: Path, runs: int, points: int, variables: int) -> None:
    """Write runs that share the bytes of one data file on disk."""
    first = root / "case_00000"
    write_binary_group(first, "bench", points, variables)
    for i in range(1, runs):
        folder = root / f"case_{i:05d}"
        folder.mkdir()
        for path in first.iterdir():
            os.link(path, folder / path.name)


def write_flat(directory: Path, runs: int) -> None:
    """Write many runs into one directory."""
    names = variable_names(1)
    table = load_table(2, 1)
    for i in range(runs):
        name = f"run_{i:05d}"
        write_run(directory, name)
        header = header_text(name, 1, "Loads", names, 2) + statistics_text(table)
        (directory / f"{name}.%01").write_text(header)
        table.tofile(directory / f"{name}.$01")
