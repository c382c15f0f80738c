"""Damaged headers, through the functions of the extension module: an error that names its cause."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from support.damage import Header
from support.flat import (
    Flat,
    error_of,
    get_axis,
    get_run,
    io_error,
    run_script,
    tables_error,
)
from support.scenarios import CASES, WIND

NAME_RULE = (
    " must not be empty, must contain at least one non-whitespace character, "
    "and must not contain carriage return or line feed characters"
)
SPEED = (40.25, 10.25, -19.75, 30.25, 60.25)
LABELS = [
    *("FILE", "ACCESS", "FORM", "RECL", "FORMAT", "CONTENT", "CONFIG", "NDIMENS", "DIMENS"),
    *("GENLAB", "VARIAB", "VARUNIT", "AXISLAB", "AXIUNIT", "AXIMETH", "MIN", "STEP"),
]
#: Label -> the table text that says it is missing.
MISSING = {
    "FORMAT": "Header does not specify data format (FORMAT)",
    "CONTENT": "Header does not specify data source (CONTENT)",
    "CONFIG": "Header does not specify config (CONFIG)",
    "NDIMENS": "Header does not specify number of dimensions (NDIMENS)",
    "DIMENS": "Header does not specify data dimensions (DIMENS)",
    "GENLAB": "Header does not specify group name (GENLAB)",
    "VARIAB": "Header does not specify variables (VARIAB)",
    "VARUNIT": "Header does not specify variable quantity identifier (VARUNIT)",
    "AXISLAB": "Header does not specify axis name (AXISLAB)",
    "AXIUNIT": "Header does not specify axis quantity identifier (AXIUNIT)",
    "AXIMETH": "Header does not specify axis type (AXIMETH)",
    "MIN": "Header does not specify axis minimum value (MIN)",
    "STEP": "Header does not specify axis step value (STEP)",
    "AXIVAL": "Header does not specify axis discrete value intervals (AXIVAL)",
    "AXITICK": "Header does not specify axis discrete string intervals (AXITICK)",
}
COUNTS_DIFFER = (
    "Number of header variables (VARIAB) and quantity identifiers (VARUNIT) are not the same"
)
GROUP_NAME = "Group name (GENLAB)" + NAME_RULE
GROUP_SOURCE = "Group data source (CONTENT)" + NAME_RULE
FORMAT, AXIS_TYPE = "Data type invalid (FORMAT)", "Axis type invalid (AXIMETH)"
ACCESS = "Header does not specify access type (ACCESS)"
NDIMENS = "Number of dimensions invalid (NDIMENS)"
DIMENS = "Error populating vector from data dimensions (DIMENS)"
AXIS_SIZE = "Axis dimensions invalid (DIMENS)"


# Fields


@pytest.mark.parametrize("label", LABELS)
def test_missing_field(label: str, tmp_path: Path) -> None:
    header = Header(tmp_path).set(label)
    expected = header.not_found(label)
    if label in MISSING:
        expected = header.text(MISSING[label], expected)
    assert error_of(header.data) == expected


@pytest.mark.parametrize(("label", "axis"), [("AXIVAL", WIND), ("AXITICK", CASES)])
def test_missing_labels_of_an_axis(label: str, axis: object, tmp_path: Path) -> None:
    header = Header(tmp_path, primary=axis).set(label)
    assert error_of(header.data) == header.text(MISSING[label], header.not_found(label))


@pytest.mark.parametrize("label", LABELS)
def test_doubled_field_is_read_once(label: str, tmp_path: Path) -> None:
    header = Header(tmp_path)
    line = header.lines[header.place(label)]
    assert header.set(label, line, line).data() == SPEED
    other = {"GENLAB": "'Other'", "VARIAB": "'a' 'b' 'c'", "AXISLAB": "'Distance'"}.get(label, "1")
    if label not in ("FILE", "AXIMETH"):
        again = Header(tmp_path).set(label, line, f"{label}\t{other}")
        assert again.data() == SPEED


@pytest.mark.parametrize(
    ("label", "value", "message"),
    [
        ("ACCESS", "", ACCESS),
        ("ACCESS", "X", ACCESS),
        ("ACCESS", "DS", ACCESS),
        ("FORMAT", "", FORMAT),
        ("FORMAT", "R*3", FORMAT),
        ("FORMAT", "r*4", FORMAT),
        ("NDIMENS", "", NDIMENS),
        ("NDIMENS", "two", NDIMENS),
        ("NDIMENS", "1", NDIMENS),
        ("NDIMENS", "4", NDIMENS),
        ("NDIMENS", "-2", NDIMENS),
        ("NDIMENS", "9223372036854775808", NDIMENS),
        ("DIMENS", "many", DIMENS),
        ("DIMENS", "-1\t5", DIMENS),
        ("DIMENS", "99999999999999999999\t5", DIMENS),
        ("DIMENS", "3", AXIS_SIZE),
        ("DIMENS", "3\tmany", AXIS_SIZE),
        ("DIMENS", "3\t-1", AXIS_SIZE),
        ("VARIAB", "", COUNTS_DIFFER),
        ("VARIAB", "'Rotor speed'", COUNTS_DIFFER),
        ("VARIAB", "Rotor speed and more", COUNTS_DIFFER),
        ("VARUNIT", "", COUNTS_DIFFER),
        ("VARUNIT", "P A/T FL L", COUNTS_DIFFER),
        ("AXIMETH", "", AXIS_TYPE),
        ("AXIMETH", "0", AXIS_TYPE),
        ("AXIMETH", "4", AXIS_TYPE),
        ("AXIMETH", "two", AXIS_TYPE),
        ("MIN", "", MISSING["MIN"]),
        ("MIN", "low", MISSING["MIN"]),
        ("STEP", "", MISSING["STEP"]),
        ("STEP", "big", MISSING["STEP"]),
    ],
)
def test_bad_value(label: str, value: str, message: str, tmp_path: Path) -> None:
    header = Header(tmp_path).set(label, f"{label}\t{value}")
    assert error_of(header.data) == header.text(message)


def test_dimensions_without_a_value(tmp_path: Path) -> None:
    header = Header(tmp_path).set("DIMENS", "DIMENS\t")
    inner = "IO error 5015: String to populate from was empty."
    assert error_of(header.data) == header.text(DIMENS, inner)


@pytest.mark.parametrize(
    ("label", "message", "further"),
    [
        ("CONTENT", GROUP_SOURCE, "File path: {folder}/Summary"),
        ("GENLAB", GROUP_NAME, "File path: {folder}/"),
        ("AXISLAB", "Axis name" + NAME_RULE, ""),
        ("AXIUNIT", "Axis quantity code" + NAME_RULE, "Axis name: 'Time'"),
    ],
)
@pytest.mark.parametrize("value", ["", "''", "'"])
def test_empty_name(label: str, message: str, further: str, value: str, tmp_path: Path) -> None:
    header = Header(tmp_path).set(label, f"{label}\t{value}")
    assert error_of(header.data) == header.text(message, "", further.format(folder=tmp_path))


@pytest.mark.parametrize(
    ("label", "value"),
    [("FORM", ""), ("FORM", "U"), ("RECL", ""), ("RECL", "four"), ("CONFIG", ""), ("CONFIG", "''")],
)
def test_values_that_do_not_matter(label: str, value: str, tmp_path: Path) -> None:
    assert Header(tmp_path).set(label, f"{label}\t{value}").data() == SPEED


@pytest.mark.parametrize("value", ["R4", "n/a"])
def test_other_spellings_of_the_format(value: str, tmp_path: Path) -> None:
    assert Header(tmp_path).set("FORMAT", f"FORMAT\t{value}").data() == SPEED


@pytest.mark.parametrize(
    ("label", "value", "message"),
    [
        ("VARIAB", "'a' 'b' 'open end", "Header variables invalid (VARIAB)"),
        ("VARUNIT", "P A/T 'FL", "Header quantity identifier invalid (VARUNIT)"),
        ("VARIAB", "'a' 'b' '", "Header variables invalid (VARIAB)"),
    ],
)
def test_quote_without_end(label: str, value: str, message: str, tmp_path: Path) -> None:
    header = Header(tmp_path).set(label, f"{label}\t{value}")
    rest = value[value.rindex("'") :]
    assert error_of(header.data) == header.text(
        message,
        io_error(
            5021,
            "Closing delimeter for string being parsed was not found",
            f"string = {rest}; delimeter = '",
        ),
    )


def test_text_label_without_end(tmp_path: Path) -> None:
    header = Header(tmp_path, primary=CASES).set("AXITICK", "AXITICK\t'a' 'b")
    assert error_of(header.data) == header.text(
        "Axis discrete string intervals invalid (AXITICK)",
        io_error(
            5021,
            "Closing delimeter for string being parsed was not found",
            "string = 'b; delimeter = '",
        ),
    )


@pytest.mark.parametrize("label", ["AXIVAL", "AXITICK"])
def test_axis_without_labels(label: str, tmp_path: Path) -> None:
    header = Header(tmp_path, primary=CASES if label == "AXITICK" else WIND)
    expected = {
        "AXITICK": tables_error(
            "Labelled axis labels array must not be empty", "Axis name: 'Load case'"
        ),
        "AXIVAL": io_error(5015, "String to populate from was empty"),
    }
    assert error_of(header.set(label, f"{label}\t").data) == expected[label]


def test_header_of_no_lines(tmp_path: Path) -> None:
    header = Header(tmp_path)
    for content in (b"", b"\n", b"\n\n\n\n", b"no label of ours\n"):
        header.path.write_bytes(content)
        assert error_of(header.data) == header.not_found("FILE")


def test_header_that_ends_anywhere(tmp_path: Path) -> None:
    header = Header(tmp_path)
    content = header.path.read_bytes()
    for size in range(0, content.index(b"STEP\t") + len(b"STEP\t"), 3):
        header.path.write_bytes(content[:size])
        assert error_of(header.data).startswith(("Sumara Tables error: ", "IO error 5018: "))
    header.path.write_bytes(content[: content.index(b"ULOADS") - 1])
    assert header.data() == SPEED


def test_header_of_noise(tmp_path: Path) -> None:
    """Text where bytes are, and bytes where text is, neither crash nor hang."""
    script = """
import random
folder = Path(sys.argv[1])
header = folder / "run.%01"
content = header.read_bytes()
outcomes = set()
for seed in range(150):
    rng = random.Random(seed)
    damaged = bytearray(content)
    for _ in range(rng.randint(1, 6)):
        place = rng.randrange(len(damaged))
        damaged[place : place + rng.choice((0, 1, 1, 30))] = rng.choice(
            (b"", b"\\0", b"\\xff", b"\\n", b"\\t", b"'", b"-", b"9" * 25, rng.randbytes(5)))
    header.write_bytes(damaged)
    native.TabulonApi_clear_runs()
    try:
        run = get_run(folder)
        for group in run._get_all_groups_native_array():
            for name in native.Group__get_variable_names_native_array(group):
                v = get_variable(run, name, "float32")
                v.get_mean()
                v._get_data_native_array()
                get_axis(v)._get_values_as_string_native_array()
        outcomes.add("read")
    except Exception as error:
        assert type(error) is RuntimeError, error
        outcomes.add(str(error).split(":")[0])
answer(sorted(outcomes))
"""
    Header(tmp_path)
    assert set(run_script(script, tmp_path)) == {"read", "Sumara Tables error", "IO error 5018"}


# Names


def test_names_that_are_not_utf8(tmp_path: Path) -> None:
    name, label = (os.fsdecode(text) for text in (b"d\xe9bit \xb2", b"sch\xf6n"))
    header = Header(tmp_path)
    header.set("VARIAB", f"VARIAB\t'a' '{name}' 'c'").set("GENLAB", f"GENLAB\t'{label}'")
    header.set("VARUNIT", "VARUNIT\tL MLL LLL").set("AXISLAB", f"AXISLAB\t'{label}'")
    assert header.data(name) == SPEED
    run = get_run(tmp_path)
    group = Flat("Group", run.get_group(label))
    assert group.get_name() == label
    assert group._get_variable_names_native_array() == ("a", name, "c")
    variable = Flat("Variable", run._get_variable_from_specific_output_group(name, label))
    assert variable.get_name() == name
    assert os.fsencode(variable.get_siunit()) == b"kgm\xb2"
    assert get_axis(group, label).get_name() == label
    assert error_of(lambda: group.get_variable(name + "!")) == tables_error(
        "The variable was not found",
        f"Group name: '{label}'; Variable name requested: '{name}!'",
    )
