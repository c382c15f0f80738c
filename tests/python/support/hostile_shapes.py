"""Files of any size in shapes that tempt a reader to look at their bytes more than once."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass, field
from pathlib import Path

from support.hostile_files import Fields, small_header, text_of


@dataclass
class Files:
    """The files of a run of one group; the header reads well where it is left as it is."""

    fields: Fields = field(
        default_factory=lambda: small_header("R*4", text=True, primary=2, secondary=None)
    )
    front: str = ""
    behind: str = ""
    data: bytes = b"1\n2\n3\n"
    ending: bytes = b"Run completed.\n"

    def write(self, folder: Path) -> None:
        header = self.front + text_of(self.fields) + self.behind
        (folder / "run.%01").write_bytes(header.encode())
        (folder / "run.$01").write_bytes(self.data)
        (folder / "run.$TE").write_bytes(self.ending)


Shape = Callable[[int], Files]


def _front(unit: str) -> Shape:
    return lambda size: Files(front=unit * (size // len(unit)) + "\n")


def _value(label: str, unit: str, before: str = "", after: str = "") -> Shape:
    """Return a shape whose value of a label is as long as the file."""

    def shape(size: int) -> Files:
        files = Files()
        files.fields[label] = before + unit * (size // len(unit)) + after
        return files

    return shape


def _numbered(size: int, text: str) -> str:
    """Return items that differ from each other, of so many bytes together."""
    count = size // len(text.format(100_000))
    return "".join(text.format(100_000 + i) for i in range(count))


def _variables(name: str) -> Shape:
    """Return a shape of as many variables as fit."""

    def shape(size: int) -> Files:
        files = Files()
        names = _numbered(size, name)
        count = len(names.split("' '" if "'" in name else None))
        files.fields |= {"VARIAB": names, "VARUNIT": "L " * count, "DIMENS": f"{count} 3"}
        files.data = b""
        return files

    return shape


def _labels(method: int, unit: str, *, secondary: bool = False) -> Shape:
    """Return a shape of an axis of as many labels as fit."""

    def shape(size: int) -> Files:
        place = method if secondary else None
        fields = small_header("R*4", text=True, primary=method, secondary=place)
        labels = _numbered(size, unit)
        count = len(labels.split())
        label = {1: "AXITICK", 3: "AXIVAL"}[method]
        fields[f"{label} {'Second' if secondary else 'Time'}"] = labels
        fields["DIMENS"] = f"1 {count} 3" if secondary else f"1 {count}"
        row = b"5 " * count + b"\n" if secondary else b"5\n" * count
        return Files(fields, data=row * (3 if secondary else 1))

    return shape


def _blocks_of_figures(size: int) -> Files:
    fields = small_header("R*4", text=True, primary=2, secondary=2)
    count = size // 40
    fields["DIMENS"] = f"1 {count} 3"
    kept = {k: v for k, v in fields.items() if k.split()[0] not in ("ULOADS", "MEAN")}
    kept = {k: v for k, v in kept.items() if not k.startswith(("MAX", "MINTIME"))}
    block = "ULOADS 1\n 2\nMAXTIME 0\nMINTIME 1\nMEAN 1.5\n"
    return Files(kept, behind=block * count, data=b"7 " * count)


def _wide_figures(size: int) -> Files:
    """A block of figures: twice as many rows as variables, each of as many numbers."""
    count = max(int((size / 4) ** 0.5), 1)
    row = " 1" * count
    fields = Files().fields | {
        "DIMENS": f"{count} 3",
        "VARIAB": " ".join(["a", *(f"b{i}" for i in range(1, count))]),
        "VARUNIT": "L " * count,
        "ULOADS 0": "\n".join([row] * (2 * count)),
        **{f"{label} 0": row for label in ("MAXTIME", "MINTIME", "MEAN")},
    }
    return Files(fields, data=b"")


def _named_parameters(claimed: int) -> Shape:
    def shape(size: int) -> Files:
        files = Files()
        count = size // 4
        files.fields["NVARS"] = f"{claimed * count}" + "\na=1" * count
        return files

    return shape


def _data(unit: bytes, points: int, before: bytes = b"", after: bytes = b"") -> Shape:
    """Return a shape of a data file; of so many points, or of one for each unit."""

    def shape(size: int) -> Files:
        count = size // len(unit)
        files = Files(data=before + unit * count + after)
        files.fields["DIMENS"] = f"1 {points or count}"
        return files

    return shape


def _head_records(size: int) -> Files:
    files = Files(data=b"x\n" * (size // 2) + b"1\n2\n3\n")
    files.fields["HEADREC"] = str(size // 2)
    return files


def _wide_rows(size: int) -> Files:
    count = size // 6
    files = Files(small_header("R*4", text=True, primary=2, secondary=2))
    files.fields["DIMENS"] = f"1 {count} 3"
    files.data = (b"1 " * count + b"\n") * 3
    return files


def _binary(size: int) -> Files:
    files = Files(small_header("R*4", text=False, primary=2, secondary=None))
    files.fields["DIMENS"] = f"1 {size // 4}"
    files.data = bytes(size)
    return files


SHAPES: dict[str, Shape] = {
    "one word before the first label": _front("x"),
    "one line of words": _front("x y "),
    "lines of other labels": _front("REMARK 1\n"),
    "lines of labels that are nearly right": _front("FILES 1\n"),
    "empty lines": _front("\n"),
    "blanks": _front(" "),
    "lines of blanks": _front("REMARK\n \n"),
    "carriage returns": _front("\r"),
    "zero bytes": _front("\0"),
    "early continuation lines": _front("x\n y\n"),
    "a field again and again": _front("VARUNIT L\n"),
    "a field again and again behind": lambda size: Files(behind="VARIAB 'a'\n" * (size // 11)),
    "one file name": _value("FILE", "x"),
    "a name of blanks": _value("GENLAB", " ", "'a", "b'"),
    "a name of words": _value("GENLAB", "ab "),
    "a name of lines": _value("GENLAB", "\n a"),
    "sizes in lines": _value("DIMENS", "\n 1"),
    "digits of a size": _value("DIMENS", "0", "1 ", "3"),
    "digits of a start": _value("MIN Time", "0", "1."),
    "digits of an exponent": _value("STEP Time", "0", "1E", "1"),
    "no closing quote": _value("VARIAB", "a ", "'"),
    "quotes that open": _value("VARIAB", "'a "),
    "quotes that close nothing": _value("VARIAB", "a' "),
    "quotes in words": _value("VARIAB", "'a'b "),
    "nothing but quotes": _value("VARIAB", "'"),
    "quotes apart": _value("VARIAB", "' "),
    "names in lines": _value("VARIAB", "\n 'a'"),
    "a name over lines": _value("VARIAB", "\n a", "'", "'"),
    "variables": _variables("b{} "),
    "variables in quotes": _variables("'b {}' "),
    "variables of one name": _value("VARIAB", "a "),
    "texts of an axis": _labels(1, "'a{}' "),
    "one text of an axis": _labels(1, "'a' "),
    "numbers of an axis": _labels(3, "{} "),
    "texts of a second axis": _labels(1, "'a{}' ", secondary=True),
    "one number of a second axis": _labels(3, "7 ", secondary=True),
    "named parameters": _named_parameters(1),
    "too few named parameters": _named_parameters(2),
    "blocks of figures": _blocks_of_figures,
    "a wide block of figures": _wide_figures,
    "rows of figures": _value("ULOADS 0", "\n 1"),
    "a row of figures": _value("ULOADS 0", "1 "),
    "points": _data(b"1.5\n", 0),
    "points of equal lines": _data(b"1.2345678E+01\r\n", 0),
    "a line of data": _data(b"1 ", 1),
    "a line of words among data": _data(b"x ", 2, b"1\n", b"\n2\n"),
    "empty lines in data": _data(b"\n", 2, b"1\n", b"2\n"),
    "lines of blanks in data": _data(b" \n", 2, b"1\n", b"2\n"),
    "blanks in data": _data(b" ", 2, b"1\n", b"2\n"),
    "digits of a number": _data(b"1", 1),
    "zeros of a number": _data(b"0", 1, b"0.", b"1"),
    "zeros of an exponent": _data(b"0", 1, b"1E", b"1"),
    "lines in front of data": _head_records,
    "wide rows": _wide_rows,
    "words of a binary file": _binary,
    "blanks behind the ending": lambda size: Files(ending=b"Run completed." + b" " * size),
    "words of the ending": lambda size: Files(ending=b"Run comp" * (size // 8)),
    "stars of the ending": lambda size: Files(ending=b"*** ERRO" * (size // 8)),
}
