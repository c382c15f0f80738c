"""Headers to be damaged, for tests."""

from __future__ import annotations

import re
from pathlib import Path

import _TabulonAPI_Python as native

from support.flat import Flat, get_run, get_variable, io_error, tables_error
from support.run_files import RunFiles
from support.scenarios import group_1d


class Header:
    """The header of a run with one group, to be damaged."""

    def __init__(self, folder: Path, **changes: object) -> None:
        self.folder = folder
        RunFiles([group_1d(**changes)]).write(folder)  # type: ignore[arg-type]
        self.path = folder / "run.%01"
        self.lines = self.path.read_bytes().decode().splitlines()

    def place(self, label: str) -> int:
        return next(i for i, line in enumerate(self.lines) if line.split()[0] == label)

    def set(self, label: str, *lines: str) -> Header:
        """Put lines in place of that of a label."""
        place = self.place(label)
        self.lines[place : place + 1] = lines
        self.write()
        return self

    def write(self) -> None:
        text = "".join(f"{line}\n" for line in self.lines)
        self.path.write_bytes(text.encode("utf-8", "surrogateescape"))

    def data(self, name: str = "Rotor speed") -> tuple[float, ...]:
        return self.variable(name)._get_data_native_array()

    def variable(self, name: str = "Rotor speed") -> Flat:
        native.TabulonApi_clear_runs()
        return get_variable(get_run(self.folder), name, "float32")

    def text(self, message: str, inner: str = "", further: str | None = None) -> str:
        where = f"File path: {self.path}" if further is None else further
        return tables_error(message, where, inner)

    def not_found(self, label: str) -> str:
        return io_error(
            5018,
            "Label was not found - end of file encountered",
            f"label sought = {label}; path: {self.path}",
        )


def stream_end(path: Path) -> str:
    """Return the text of a read past the end, less the word of the system on it."""
    return (
        "eofbit: unexpected end of file; failbit: last operation on stream invalid - check file or "
        "directory exists, path does not contain illegal characters, and file is not locked by "
        f"another process\nFurther information: *\nPath: {path}"
    )


def without_system_word(text: str) -> str:
    return re.sub(r"(another process\nFurther information: )[^\n]*", r"\1*", text)
