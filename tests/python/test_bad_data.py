"""Damaged data files, and files that vanish or change, through the extension module."""

from __future__ import annotations

import re
from collections.abc import Callable
from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import Flat, error_of, get_run, get_variable, io_error, tables_error
from support.run_files import RunFiles
from support.scenarios import group_1d, group_2d

SPEED = (40.25, 10.25, -19.75, 30.25, 60.25)
#: The last row of the second variable over two axes.
SHEAR = (46.25, 16.25, -13.75, 36.25, 66.25)
PAST_END = "Data requested past end of file"
both_forms = pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])


class Data:
    """The data file of a run with one group, to be damaged."""

    def __init__(self, folder: Path, axes: int = 1, **changes: object) -> None:
        self.folder, self.axes = folder, axes
        self.files = (group_1d if axes == 1 else group_2d)(**changes)  # type: ignore[arg-type]
        RunFiles([self.files]).write(folder)
        self.path = folder / "run.$01"
        self.content = self.path.read_bytes()
        native.TabulonApi_clear_runs()
        name = self.files.variables[1].name
        self.variable = get_variable(get_run(folder), name, "float32", axes)

    def read(self) -> tuple[float, ...]:
        if self.axes == 1:
            return self.variable._get_data_native_array()
        return self.variable._get_data_at_index_native_array(2)

    def mean(self) -> float:
        return self.variable.get_mean() if self.axes == 1 else self.variable.get_mean_at_index(2)

    @property
    def group(self) -> str:
        return f"File path: {self.folder}/{self.files.name}"

    @property
    def series(self) -> str:
        return f"Series name: '{self.files.variables[1].name}'; {self.group}"

    def failed(self, inner: str) -> str:
        if self.axes == 1:
            return tables_error("Getting data for 1D variable failed", self.series, inner)
        return tables_error(
            "Getting data for 2D variable (specified independent variable) failed",
            f"Secondary independent variable value index: 2\n{self.series}",
            inner,
        )

    def bad_line(self, inner: str) -> str:
        return self.failed(tables_error("Error reading series data", self.group, inner))

    def short_line(self, point: int, found: int) -> str:
        return self.bad_line(
            tables_error(
                f"Failed to populate {self.axes}D ASCII series data container from transient data "
                "container",
                f"Point index = {point}; values expected = 3; values found = {found}",
            )
        )

    def past_end(self, point: int, offset: int, words: int) -> str:
        return self.failed(
            tables_error(
                "Error reading series data",
                f"Point index = {point}; {self.series}",
                io_error(
                    5008,
                    PAST_END,
                    f"word offset = {offset}; m_totalWordCount = {words}; path: {self.path}",
                ),
            )
        )


axes_1_and_2 = pytest.mark.parametrize("axes", [1, 2], ids=["1d", "2d"])


@axes_1_and_2
@both_forms
def test_file_of_no_bytes(text: bool, axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=text)
    data.path.write_bytes(b"")
    count = 15 if axes == 1 else 45
    expected = data.failed(
        tables_error(
            "Group data file empty when expecting to find data",
            f"expected {count} data points but data file was empty: File path: {data.path}",
        )
    )
    assert error_of(data.read) == expected
    assert error_of(data.read) == expected


@axes_1_and_2
@both_forms
def test_file_that_vanished_comes_back(text: bool, axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=text)
    data.path.unlink()
    expected = data.failed(io_error(5000, "The file does not exist", str(data.path)))
    assert error_of(data.read) == expected
    # The figures of the header need no data.
    assert data.mean() == pytest.approx(np.mean(SPEED if axes == 1 else SHEAR), rel=1e-7)
    data.path.write_bytes(data.content)
    assert data.read() == (SPEED if axes == 1 else SHEAR)


@axes_1_and_2
@both_forms
def test_directory_in_place_of_the_file(text: bool, axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=text)
    data.path.unlink()
    data.path.mkdir()
    # It has no bytes, but it is no empty file: what opens it says what it is.
    assert error_of(data.read) == data.failed(
        io_error(
            5007,
            "Stream has error flag(s)",
            "failbit: last operation on stream invalid - check file or directory exists, path does "
            "not contain illegal characters, and file is not locked by another process\n"
            f"Further information: Is a directory\nPath: {data.path}",
        )
    )
    data.path.rmdir()
    data.path.write_bytes(data.content)
    assert data.read() == (SPEED if axes == 1 else SHEAR)


@pytest.mark.parametrize("cut", [1, 4, 5, 8, 59])
def test_binary_file_too_short(cut: int, tmp_path: Path) -> None:
    data = Data(tmp_path)
    data.path.write_bytes(data.content[:-cut])
    words = (60 - cut) // 4
    # Words 1, 4, 7, ... are those of the second of three variables.
    missing = next(point for point in range(6) if 3 * point + 1 >= words)
    if missing == 5:
        assert data.read() == SPEED
    else:
        assert error_of(data.read) == data.past_end(missing, 3 * missing + 1, words)


@pytest.mark.parametrize("cut", [8, 44, 179])
def test_binary_table_too_short(cut: int, tmp_path: Path) -> None:
    data = Data(tmp_path, 2)
    data.path.write_bytes(data.content[:-cut])
    words = (180 - cut) // 4
    missing = next(point for point in range(5) if 9 * point + 7 >= words)
    assert error_of(data.read) == data.past_end(missing, 9 * missing + 7, words)


@axes_1_and_2
@pytest.mark.parametrize("more", [b"\0", b"ab", b"abcd", b"1 2 3\n" * 50])
@both_forms
def test_file_too_long(text: bool, more: bytes, axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=text)
    data.path.write_bytes(data.content + more)
    assert data.read() == (SPEED if axes == 1 else SHEAR)


@axes_1_and_2
def test_text_file_of_too_few_lines(axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=True)
    lines = data.content.splitlines(keepends=True)
    data.path.write_bytes(b"".join(lines[:-1]))
    text = re.sub(r"another process\nFurther information: [^\n]*", "...", error_of(data.read))
    assert text == data.bad_line(
        io_error(
            5009,
            "Failed to read data",
            f"line number = {len(lines) - 1}; path: {data.path}",
            io_error(
                5008,
                PAST_END,
                "eofbit: unexpected end of file; failbit: last operation on stream invalid - check "
                "file or directory exists, path does not contain illegal characters, and file is "
                f"not locked by ...\nPath: {data.path}",
            ),
        )
    )


@axes_1_and_2
@pytest.mark.parametrize("point", [0, 2, 4])
def test_short_line(point: int, axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=True)
    lines = data.content.splitlines(keepends=True)
    line = point if axes == 1 else 3 * point + 1
    for short, found in ((b"1.5 2.5\n", 2), (b"1.5 two 3.5\n", 1)):
        data.path.write_bytes(b"".join([*lines[:line], short, *lines[line + 1 :]]))
        assert error_of(data.read) == data.short_line(point, found)


@axes_1_and_2
def test_line_without_a_number(axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=True)
    data.path.write_bytes(b"nothing here\n" + data.content)
    assert error_of(data.read) == data.bad_line(
        tables_error(
            f"Transient data container for {axes}D ASCII series was empty following read from file",
            "Point index = 0",
        )
    )


@axes_1_and_2
def test_empty_lines(axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=True)
    first, rest = data.content.split(b"\n", 1)
    data.path.write_bytes(first + b"\n\n\n" + rest)
    assert error_of(data.read) == data.bad_line(io_error(5015, "String to populate from was empty"))
    # One empty line is passed over.
    again = Data(tmp_path, axes, text=True)
    again.path.write_bytes(first + b"\n\n" + rest)
    assert again.read() == (SPEED if axes == 1 else SHEAR)


@axes_1_and_2
@both_forms
def test_failed_read_leaves_the_run_usable(text: bool, axes: int, tmp_path: Path) -> None:
    data = Data(tmp_path, axes, text=text)
    data.path.write_bytes(data.content[:1])
    for _ in range(2):
        error_of(data.read)
    data.path.write_bytes(data.content)
    native.TabulonApi_clear_runs()
    name = data.files.variables[1].name
    data.variable = get_variable(get_run(tmp_path), name, "float32", axes)
    assert data.read() == (SPEED if axes == 1 else SHEAR)


# Between header and data


@both_forms
def test_header_may_go_once_it_was_read(text: bool, tmp_path: Path) -> None:
    data = Data(tmp_path, text=text)
    header = tmp_path / "run.%01"
    header.unlink()
    assert data.read() == SPEED
    assert error_of(data.mean) == tables_error(
        "Getting variable mean value failed",
        data.series,
        tables_error(
            "Failed to open file",
            f"File path: {header}",
            io_error(5000, "The file does not exist", str(header)),
        ),
    )


def test_a_header_that_vanished_before_it_was_read(tmp_path: Path) -> None:
    RunFiles([group_1d(), group_2d(number=2)]).write(tmp_path)
    run = get_run(tmp_path)
    get_variable(run, "Rotor speed", "float32")
    tmp_path.joinpath("run.%01").unlink()
    # The list of headers was made at the first look; what was read stays.
    assert get_variable(run, "Tower moment", "float32")._get_data_native_array()[0] == -99.75
    native.TabulonApi_clear_runs()
    again = get_run(tmp_path)
    assert again.contains_variable_1d("Rotor speed") is False
    assert again.contains_variable_2d("Blade moment") is True


@pytest.mark.parametrize("change", ["header", "data"])
def test_a_rewritten_run_is_read_anew(change: str, tmp_path: Path) -> None:
    data = Data(tmp_path)
    assert data.read() == SPEED
    if change == "data":
        data.path.write_bytes(bytes(len(data.content)))
        expected: tuple[float, ...] = (0.0,) * 5
    else:
        header = tmp_path / "run.%01"
        header.write_bytes(header.read_bytes().replace(b"DIMENS\t3\t5", b"DIMENS\t3\t2"))
        expected = SPEED[:2]
    # The run asks nothing but its termination file.
    assert get_variable(get_run(tmp_path), "Rotor speed", "float32")._get_data_native_array() == (
        SPEED
    )
    ending = tmp_path / "run.$TE"
    ending.write_bytes(b"Run completed again.\n")
    new = get_variable(get_run(tmp_path), "Rotor speed", "float32")
    assert new._get_data_native_array() == expected
    assert data.read() == SPEED


def test_termination_file_that_vanished(tmp_path: Path) -> None:
    data = Data(tmp_path)
    run = get_run(tmp_path)
    ending = tmp_path / "run.$TE"
    ending.unlink()
    context = f"File path: {ending}"
    missing = "run termination file (.$TE) missing or invalid"
    ask: Callable[[], object] = lambda: get_run(tmp_path)  # noqa: E731
    assert error_of(ask) == tables_error(
        f"Run that was previouly cached no longer exists on disk - {missing}", context
    )
    assert error_of(ask) == tables_error(f"Run was not found - {missing}", context)
    assert error_of(lambda: run._get_variable("Tower moment")) == (
        f"filesystem error: last_write_time: No such file or directory [{tmp_path}/run.$TE]"
    )
    assert data.read() == SPEED
    assert run.get_name() == "run"


def test_side_files_that_are_missing(tmp_path: Path) -> None:
    RunFiles([group_1d()], message=None, verification=None).write(tmp_path)
    run = get_run(tmp_path)
    for ask, extension, what in (
        (run.get_message_file_content, "$ME", "run message file"),
        (run.get_verification_file_content, "$VE", "run verification file"),
        (
            run.get_execution_duration_seconds,
            "$VE",
            "Attempting to get run execution duration",
        ),
    ):
        path = f"File path: {tmp_path}/run.{extension}"
        assert error_of(ask) == io_error(5022, "File not found", path, what)


def test_data_file_named_outside_the_folder_of_the_header(tmp_path: Path) -> None:
    """The name of FILE is put behind the folder of the header as it stands."""
    data = Data(tmp_path)
    header = tmp_path / "run.%01"
    header.write_bytes(header.read_bytes().replace(b"FILE\trun.$01", b"FILE\t'a folder/x.$01'"))
    variable = get_variable(_anew(tmp_path), "Rotor speed", "float32")
    path = tmp_path / "a folder" / "x.$01"
    assert error_of(variable._get_data_native_array) == data.failed(
        io_error(5000, "The file does not exist", str(path))
    )
    path.parent.mkdir()
    path.write_bytes(data.content)
    assert variable._get_data_native_array() == SPEED


def _anew(folder: Path) -> Flat:
    native.TabulonApi_clear_runs()
    return get_run(folder)
