"""The same data in other formats: one variable, and all of them.

HDF5 datasets, TDMS channels and MDF signals are columns, each in one piece of its file. A run keeps
its values point by point, so that a simulator can write them as they come: one variable stands all
over the file, and the system maps each of its pages: that takes 5 to 15 ms for 240 MB, whatever
the program. The targets of one variable allow for that where the peer reads plain bytes.
"""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import fixtures
import numpy as np
from harness import Pair, Place, row

from rows.flat import array_of, fresh_array, fresh_run
from rows.reading import WIDE, table_of, wide

Reader = Callable[[Path, list[str]], list[np.ndarray]]


def write_h5(path: Path, columns: dict[str, np.ndarray]) -> None:
    """Write columns as HDF5 datasets."""
    import h5py

    with h5py.File(path, "w") as file:
        for name, values in columns.items():
            file[name] = values


def read_h5(path: Path, names: list[str]) -> list[np.ndarray]:
    """Read columns of an HDF5 file."""
    import h5py

    with h5py.File(path) as file:
        return [file[name][:] for name in names]


def write_tdms(path: Path, columns: dict[str, np.ndarray]) -> None:
    """Write columns as TDMS channels."""
    from nptdms import ChannelObject, TdmsWriter

    with TdmsWriter(str(path)) as writer:
        writer.write_segment([ChannelObject("Loads", name, v) for name, v in columns.items()])


def read_tdms(path: Path, names: list[str]) -> list[np.ndarray]:
    """Read channels of a TDMS file."""
    from nptdms import TdmsFile

    with TdmsFile.open(str(path)) as file:
        return [file["Loads"][name][:] for name in names]


def write_mdf(path: Path, columns: dict[str, np.ndarray]) -> None:
    """Write columns as MDF signals, uncompressed."""
    from asammdf import MDF, Signal

    time = np.arange(len(next(iter(columns.values())))) * 0.05
    with MDF() as file:
        file.append([Signal(v, time, name=name) for name, v in columns.items()])
        file.save(path, overwrite=True, compression=0)


def read_mdf(path: Path, names: list[str]) -> list[np.ndarray]:
    """Read signals of an MDF file."""
    from asammdf import MDF

    with MDF(path) as file:
        return [signal.samples for signal in file.select(names)]


FORMATS: dict[str, tuple[str, Callable[[Path, dict[str, np.ndarray]], None], Reader]] = {
    "h5py": (".h5", write_h5, read_h5),
    "npTDMS": (".tdms", write_tdms, read_tdms),
    "asammdf": (".mf4", write_mdf, read_mdf),
}


def same_data(place: Place, peer: str) -> tuple[Path, Path]:
    """Return the directory of the run, and a file of another format with its data."""
    directory, path, points = wide(place, 240)
    suffix, write, _ = FORMATS[peer]

    def fill(folder: Path) -> None:
        names = fixtures.variable_names(WIDE)
        turned = np.ascontiguousarray(table_of(path, points, WIDE).T)
        write(folder / f"bench{suffix}", dict(zip(names, turned, strict=True)))

    return directory, place.fixture(f"{peer}_{points}", fill) / f"bench{suffix}"


def compared(place: Place, peer: str, names: list[str]) -> Pair:
    """Read variables of the run, and of the other format."""
    directory, other = same_data(place, peer)
    read = FORMATS[peer][2]

    def ours() -> list[np.ndarray]:
        if len(names) == 1:
            return [fresh_array(directory, names[0])]
        run = fresh_run(directory)
        return [array_of(run, name) for name in names]

    return Pair(
        ours=ours,
        peer=lambda: read(other, names),
        equal=lambda mine, theirs: all(map(np.array_equal, mine, theirs)),
    )


def declare(peer: str, target_of_one: float) -> None:
    """Declare the rows against one format."""
    names = fixtures.variable_names(WIDE)

    @row("formats", f"one of 300 variables, 240 MB, {peer}", against=peer, target=target_of_one)
    def one(place: Place) -> Pair:
        return compared(place, peer, names[7:8])

    @row("formats", f"all 300 variables, 240 MB, {peer}", against=peer, target=1.0)
    def all_of_them(place: Place) -> Pair:
        return compared(place, peer, names)


declare("h5py", target_of_one=5.0)
declare("npTDMS", target_of_one=1.5)
declare("asammdf", target_of_one=0.5)
