"""Output that cannot be made or written: what the errors say, and what is left."""

from __future__ import annotations

import os
import struct
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from support.flat import error_of, io_error, run_script, tables_error
from support.output import output, radius, small, time, write

NAME_RULE = (
    " must not be empty, must contain at least one non-whitespace character, "
    "and must not contain carriage return or line feed characters"
)
DIRECTORY = (
    "Failed to create directory - check permissions, and ensure path does not contain illegal "
    "characters\nIf using an absolute path, check the volume or drive mapping is valid.\nIf using "
    "a UNC path, ensure the server name is correct and the server is available"
)


def test_group_without_variables_leaves_nothing(tmp_path: Path) -> None:
    group = output(tmp_path / "new" / "o.%07", "float32", time())
    assert error_of(lambda: write(group)) == tables_error(
        "Output group contains no variables and cannot be written",
        f"File path: {tmp_path}/new/Out put",
    )
    assert list(tmp_path.iterdir()) == []


def test_series_of_unequal_length(tmp_path: Path) -> None:
    group = small(tmp_path / "o.%07", 1, 2)
    group._add_variable_with_data_native_array("y", "m", [1])
    assert error_of(lambda: write(group)) == tables_error(
        "Asymmetric group cannot be serialised; only symmetric groups may be serialised",
        f"File path: {tmp_path}/Out put",
    )


def test_names_that_are_refused(tmp_path: Path) -> None:
    group = small(tmp_path / "o.%07")
    for name in ("", " \t", "a\nb"):
        assert error_of(lambda name=name: group.add_variable(name, "m")) == tables_error(
            "Variable name invalid",
            "",
            tables_error("Series name" + NAME_RULE, f"Series name: '{name}'"),
        )
        assert error_of(lambda name=name: group.add_variable("b", name)) == tables_error(
            "Variable unit invalid",
            "",
            tables_error("Series quantity code" + NAME_RULE, "Series name: 'b'"),
        )
        assert error_of(
            lambda name=name: output(tmp_path / "o.%07", "int32", time(), name=name)
        ) == tables_error("Group name (GENLAB)" + NAME_RULE, f"File path: {tmp_path}/{name}")
        assert error_of(
            lambda name=name: native.new_IndependentVariable(name, "m", 0.0, 1.0)
        ) == tables_error(
            "Independent variable name invalid", "", tables_error("Axis name" + NAME_RULE)
        )
    assert error_of(lambda: group.add_variable("X", "m")) == tables_error(
        "Adding series with the same name as an existing series (case insensitive) is not allowed",
        f"File path: {tmp_path}/Out put",
    )
    assert error_of(lambda: group._append_data_native_array("z", [1])) == tables_error(
        "The variable was not found",
        "Group name: 'Out put'; Variable name requested: 'z'",
        tables_error(
            "Requested series not found in current group", f"File path: {tmp_path}/Out put"
        ),
    )


EXTENSION = (
    "File extension invalid: The file name extension must be of the form %n, where n is a positive "
    "integer with an upper limit of 18446744073709551615"
)


@pytest.mark.parametrize("name", ["o", "o.txt", "o.%", "o.%1a", "o.%-1"])
def test_paths_that_are_no_header(name: str, tmp_path: Path) -> None:
    path = tmp_path / name
    assert error_of(lambda: output(path, "float32", time())) == tables_error(
        EXTENSION, f"File path: {path}"
    )


def test_data_that_does_not_fit_the_labels(tmp_path: Path) -> None:
    group = output(tmp_path / "o.%07", "float64", radius())
    group._add_variable_with_data_native_array("x", "m", [1, 2])
    where = f"Series name: 'x'; File path: {tmp_path}/Out put"
    message = (
        "Series data being appended must contain no more than one data point for each primary axis "
        "label"
    )
    counts = (
        "number of primary axis labels = 3; number of incoming data points = 2; "
        "number of resulting points = 4"
    )
    assert error_of(lambda: group._append_data_native_array("x", [3, 4])) == tables_error(
        message, f"{where}; {counts}"
    )
    assert error_of(lambda: group._append_data_native_array("x", [])) == tables_error(
        "Series input data empty", where
    )
    group._append_data_native_array("x", [3])
    assert write(group) is True
    assert tmp_path.joinpath("o.$07").read_bytes() == struct.pack("<3d", 1, 2, 3)


def test_file_where_a_folder_must_be(tmp_path: Path) -> None:
    tmp_path.joinpath("file").write_bytes(b"")
    folder = f"{tmp_path}/file/"
    assert error_of(lambda: write(small(f"{folder}o.%07"))) == io_error(
        5028,
        DIRECTORY,
        f"Directory: {folder}",
        f"filesystem error: cannot create directories: File exists [{folder}]",
    )


@pytest.mark.parametrize("name", ["o.%07", "o.$07"])
def test_folder_where_a_file_must_be(name: str, tmp_path: Path) -> None:
    tmp_path.joinpath(name).mkdir()
    assert error_of(lambda: write(small(tmp_path / "o.%07"))) == (
        f"ios_base::failbit set: {tmp_path}/{name}: Is a directory"
    )


@pytest.mark.parametrize("name", ["o.%07", "o.$07", "o.$TE"])
def test_pipe_where_a_file_must_be(name: str, tmp_path: Path) -> None:
    os.mkfifo(tmp_path / name)
    refusal = error_of(lambda: write(small(tmp_path / "o.%07")))
    assert "Operation not supported" in refusal
    assert f"{tmp_path}/{name}" in refusal
    assert tmp_path.joinpath(name).is_fifo()


@pytest.mark.parametrize("name", ["o.%07", "o.$07"])
def test_device_where_a_file_must_be(name: str, tmp_path: Path) -> None:
    tmp_path.joinpath(name).symlink_to("/dev/null")
    assert error_of(lambda: write(small(tmp_path / "o.%07"))) == (
        f"ios_base::failbit set: {tmp_path}/{name}: Operation not supported"
    )


def test_folder_where_the_termination_file_must_be(tmp_path: Path) -> None:
    ending = tmp_path / "o.$TE"
    ending.mkdir()
    assert error_of(lambda: write(small(tmp_path / "o.%07"))) == io_error(
        5007,
        "Stream has error flag(s)",
        "failbit: last operation on stream invalid - check file or directory exists, path does "
        "not contain illegal characters, and file is not locked by another process\n"
        f"Further information: Is a directory\nPath: {ending}",
    )
    # What was written before stays.
    assert {path.name for path in tmp_path.iterdir()} == {"o.%07", "o.$07", "o.$TE"}


def test_disk_that_is_full(tmp_path: Path) -> None:
    code = """
import resource, signal
signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
folder, told = Path(sys.argv[1]), []
for limit, text, name in ((10_000, 0, "o.$07"), (1000, 1, "o.$07"), (100, 1, "o.%07")):
    path = str(folder / "o.%07")
    axis = native.new_IndependentVariable("Time", "s", 0.0, 1.0)
    group = native.new_OutputGroup1D_Float32(path, "Out", "UserDefined", "X", axis, 1 - text)
    native.OutputGroup1D_Float32__add_variable_with_data_native_array(group, "x", "m", [1.0] * 3000)
    resource.setrlimit(resource.RLIMIT_FSIZE, (limit, resource.RLIM_INFINITY))
    try:
        native.TabulonApi_write_output(group)
        message = "written"
    except RuntimeError as error:
        message = str(error)
    resource.setrlimit(resource.RLIMIT_FSIZE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))
    left = (folder / name).read_bytes()
    native.TabulonApi_write_output(group)
    whole = (folder / name).read_bytes()
    told.append([message, len(left), whole.startswith(left), len((folder / "o.$07").read_bytes())])
answer(told)
"""
    reason = "File too large"
    assert run_script(code, tmp_path) == [
        # What there was room for stays, and is the beginning of the whole.
        [f"ios_base::badbit set: {tmp_path}/o.$07: {reason}", 10_000, True, 12_000],
        [f"ios_base::badbit set: {tmp_path}/o.$07: {reason}", 1000, True, 16 * 3000],
        [f"ios_base::badbit set: {tmp_path}/o.%07: {reason}", 100, True, 16 * 3000],
    ]


def test_folder_without_permission(tmp_path: Path) -> None:
    code = """
import os, shutil, tempfile
# The folders of the tests belong to whoever runs them, and the superuser may do all.
folder = Path(tempfile.mkdtemp())
try:
    (folder / "o.%07").write_bytes(b"")
    folder.chmod(0o555)
    (folder / "o.%07").chmod(0o444)
    if os.geteuid() == 0:
        os.seteuid(65534)
    told = []
    for name in ("o.%07", "new/o.%07"):
        try:
            write(small(folder / name))
        except RuntimeError as error:
            told.append(str(error).replace(str(folder), "FOLDER"))
    answer(told)
finally:
    os.seteuid(os.getuid())
    folder.chmod(0o755)
    shutil.rmtree(folder)
"""
    assert run_script("from support.output import *\n" + code) == [
        "ios_base::failbit set: FOLDER/o.%07: Permission denied",
        io_error(
            5028,
            DIRECTORY,
            "Directory: FOLDER/new/",
            "filesystem error: cannot create directories: Permission denied [FOLDER/new/]",
        ),
    ]
