#!/usr/bin/env python3
"""Writes the seed inputs of the fuzz targets: small files, all made of plain values.

    python3 tests/fuzz/make_corpus.py

The seeds are committed, so that a build needs no Python. What a target's input looks like is told
at the head of its source.
"""

from __future__ import annotations

import struct
from pathlib import Path

CORPUS = Path(__file__).parent / "corpus"
MARK = b"\n#####\n"

WORDS = {"R*4": "f", "R*8": "d", "I*2": "h", "I*4": "i", "I*8": "i"}

TIME = "AXISLAB\t'Time'\nAXIUNIT\tT\nAXIMETH\t2\nMIN \t0.0000000E+00\nSTEP\t5.0000000E-01\n"
RADIUS = "AXISLAB\t'Radius'\nAXIUNIT\tL\nAXIMETH\t3\nAXIVAL\t1.5000000 2.5000000 3.5000000\n"
STATION = "AXISLAB\t'Station'\nAXIUNIT\tN\nAXIMETH\t1\nAXITICK\t'root' 'mid span' 'tip'\n"
SPEED = "AXISLAB\t'Wind speed'\nAXIUNIT\tL/T\nAXIMETH\t2\nMIN \t4\nSTEP\t2\n"


def header(
    dims: tuple[int, ...],
    axes: str,
    *,
    word: str = "R*4",
    binary: bool = True,
    name: str = "Tower loads",
    data: str = "run.$01",
    head_records: int | None = None,
    tail: str = "",
) -> str:
    """Return a group header; the names of its variables are v0, v1 and so on."""
    variables = range(dims[0])
    return "".join(
        [
            f"FILE\t{data}\nACCESS\t{'D' if binary else 'S'}\nFORM\tF\nRECL\t4\nFORMAT\t{word}\n",
            "" if head_records is None else f"HEADREC\t{head_records}\n",
            f"CONTENT\t'POWPROD'\nCONFIG\t'TRANSIENT'\nNDIMENS\t{len(dims)}\n",
            "DIMENS\t" + "\t".join(map(str, dims)) + "\n",
            f"GENLAB\t'{name}'\n",
            "VARIAB\t" + " ".join(f"'v{i}'" for i in variables) + "\n",
            "VARUNIT\t" + " ".join(["FL", "'F L'", "A/T", "P"][i % 4] for i in variables) + "\n",
            axes,
            tail,
        ]
    )


def statistics(variables: int, blocks: int = 1) -> str:
    """Return statistics blocks; their figures need not be those of the data."""
    text = ""
    for block in range(blocks):
        rows = [
            "".join(f"   {row + column + block}.5000000E+00" for column in range(variables))
            for row in range(2 * variables)
        ]
        text += "ULOADS" + "\n".join(rows) + "\n"
        text += "MAXTIME" + " 1" * variables + "\nMINTIME" + " 0" * variables + "\n"
        text += "MEAN" + "  -2.5000000E-01" * variables + "\n"
    return text


def words(word: str, count: int) -> bytes:
    """Return a binary data file."""
    return struct.pack(f"<{count}{WORDS[word]}", *((7 * i) % 23 - 5 for i in range(count)))


def lines(rows: int, columns: int, width: int = 0, end: str = "\n") -> str:
    """Return a text data file; with a width all lines have one length."""
    values = [[(7 * (columns * r + c)) % 23 - 5 for c in range(columns)] for r in range(rows)]
    return "".join("".join(f" {v:{width}}" for v in row) + end for row in values)


def header_seeds() -> dict[str, bytes]:
    """Return headers of all kinds of axis, with all that is optional."""
    seeds = {
        "one_axis": header((2, 3), TIME),
        "double": header((2, 3), TIME, word="R*8", tail="NVARS\t2\nfirst = 1\n\n"),
        "two_axes": header((2, 3, 4), RADIUS + TIME, tail="NVARS\t0\n"),
        "labels": header((1, 3, 2), STATION + TIME, word="I*2"),
        "primary_labels": header((3, 3), STATION, word="I*4"),
        "primary_values": header((1, 3), RADIUS, word="I*8"),
        "intervals": header((2, 3, 4), SPEED + TIME, word="n/a"),
        "text": header((2, 3), TIME, binary=False, head_records=1),
        "statistics": header((2, 3), TIME, tail="NVARS\t0\n" + statistics(2)),
        "statistics_two_axes": header((1, 3, 4), RADIUS + TIME, tail=statistics(1, 3)),
        "wrapped": header((2, 3), TIME).replace("' '", "'\n\t'").replace("\t'Tower", "\n  'Tower"),
        "carriage_returns": header((2, 3), TIME).replace("\n", "\r\n"),
        "empty_lines": header((2, 3), TIME).replace("\nF", "\n\nF"),
        "no_end": header((2, 3), TIME, tail=statistics(2)).rstrip("\n"),
        "huge": header((2, 3), TIME).replace("2\t3", "2\t18446744073709551615"),
        "odd_names": header((2, 3), TIME).replace("'v0'", "'a''b'").replace("'v1'", "''"),
    }
    return {name: text.encode() for name, text in seeds.items()}


def text_data_seeds() -> dict[str, bytes]:
    """Return setups and text files."""
    uniform = lines(4, 3, width=4)
    seeds = {
        "one_axis": "1 1 0 3 4\n" + lines(4, 3),
        "uniform": "1 2 0 3 4\n" + uniform,
        "two_axes": "2 1 0 2 3 4\n" + lines(12, 2),
        "two_axes_uniform": "4 4 0 2 3 2\n" + lines(6, 2, width=3),
        "two_axes_one_variable": "3 3 0 1 3 4\n" + lines(4, 3),
        "header_records": "1 5 2 3 4\nResults\nof a run\n" + lines(4, 3),
        "carriage_returns": "1 1 0 3 4\n" + lines(4, 3, width=4, end="\r\n"),
        "no_end": "1 1 0 3 4\n" + uniform.rstrip("\n"),
        "empty_lines": "1 1 0 3 4\n" + lines(4, 3).replace("\n", "\n\n"),
        "short_line": "1 1 0 3 4\n" + lines(2, 3) + " 1 2\n" + lines(1, 3),
        "words": "1 1 0 3 2\n1 2 3 and more\n4 x 6\n",
        "only_looks_uniform": "1 1 0 2 3\n10 11\n2 3\n040 041\n",
        "huge": "1 1 0 2 9223372036854775808\n" + lines(4, 2),
        "empty": "1 1 0 2 4\n",
        "line_feed": "1 1 0 2 4\n\n",
        "numbers": "2 2 0 4 2\n1e308 -1e-320 1e999 .5\n+7. 1E+05 0x10 nan\n",
    }
    return {name: text.encode() for name, text in seeds.items()}


def run_seeds() -> dict[str, bytes]:
    """Return headers with their data."""
    two_axes = header((2, 3, 4), RADIUS + TIME)
    text = header((2, 4), TIME, binary=False)
    seeds: dict[str, list[bytes]] = {
        f"one_axis_{word[0]}{word[2]}": [
            header((2, 4), TIME, word=word, tail=statistics(2)).encode(),
            words(word, 8),
        ]
        for word in WORDS
    }
    seeds |= {
        "two_axes": [two_axes.encode(), words("R*4", 24)],
        "labels": [header((2, 3, 2), STATION + TIME).encode(), words("R*4", 12)],
        "intervals": [header((1, 3, 2), SPEED + TIME, word="R*8").encode(), words("R*8", 6)],
        "primary_labels": [header((2, 3), STATION).encode(), words("R*4", 6)],
        "text": [text.encode(), lines(4, 2).encode()],
        "text_two_axes": [
            header((1, 3, 4), RADIUS + TIME, binary=False, tail=statistics(1, 3)).encode(),
            lines(4, 3, width=4).encode(),
        ],
        "too_short": [two_axes.encode(), words("R*4", 20)],
        "empty_data": [header((2, 0), TIME).encode(), b""],
        "two_groups": [
            header((2, 3), TIME).encode(),
            words("R*4", 6),
            header((2, 4), TIME, binary=False, name="Other", data="run.$02").encode(),
            lines(4, 2).encode(),
        ],
        "one_name_twice": [header((1, 3), TIME).encode(), words("R*4", 3)] * 2,
    }
    return {name: MARK.join(pieces) for name, pieces in seeds.items()}


def token_seeds() -> dict[str, bytes]:
    """Return operations and the file on which they run."""
    forward = ["s MEAN", "sc VARIAB", "tc' VARIAB", "wcr' ULOADS", "p", "l", "k LAST", "s LAST"]
    careful = ["soq HEADREC", "wcoq ULOADS", "toqr FILE", "srk MEAN", "scj NOTES", "R", "lq", "lq"]
    end = ["k MEAN", "k NONE", "so NONE", "sq NONE", "s", "l", "l", "lq", "s MEAN", "scr MEAN"]
    text = header((2, 3), TIME, tail=statistics(2)) + "NOTES a  b\n\tc\td\n e\nLAST 1"
    files = {
        "header": text,
        "crlf": text.replace("\n", "\r\n"),
        "quotes": "VARIAB '' 'a''b' ' ' a' 'b\n 'c \td'\nMEAN \"1\" '2'\n",
        "open_quote": "VARIAB 'a b\n c' 'd\nMEAN 1 2\n",
        "empty": "FILE x\n\n\n \t\nMEAN 1\n\n\tno\n",
    }
    ways = {"forward": forward, "careful": careful, "end": end}
    return {
        f"{way}_{name}": ("\n".join(ways[way]) + "\n--\n" + content).encode()
        for way in ways
        for name, content in files.items()
    }


def number_seeds() -> dict[str, bytes]:
    """Return numbers, plain and odd ones."""
    seeds = {
        "plain": "1 -2 +3 4.5 6e7 -8.25E-01",
        "limits": "32767 32768 2147483647 -2147483649 99999999999999999999",
        "reals": "3.4028236e38 1e39 1.7976931348623159e308 1e309 4.9e-324 1e-46 -1e-400",
        "midway": "16777217 9007199254740993 1.00000005960464477539062500000001",
        "rounded_once": "0.5000000298023224 -0.5000000298023224",
        "powers": "1e22 1e23 8.5e22 123e-22 123e-23 9007199254740992e22 9007199254740993e22",
        "digits": "123456789012345678901234567890.123456789012345678901234567890",
        "no_numbers": "- + . e5 1e 1e+ nan inf 0x10 1,5 --1 1e5e5",
        "joined": "1.5.5-7e+3+2;9",
        "white": " \t\v\f\r\n7\r\n",
    }
    return {name: text.encode() for name, text in seeds.items()}


def slice_seeds() -> dict[str, bytes]:
    """Return sizes and figures of slices: a figure is a kind, 7 for a byte, and its value."""
    figures = [(1, 2, 5), (1, 20, 25), (1, 5, 2), (2, 0, 9), (-1, 10, -1), (-3, 9, 0), (0, 1, 2)]
    slices = b"".join(
        b"".join(b"\x07" + struct.pack("b", value) for value in figure) for figure in figures
    )
    extreme = b"\x01\x00\x02\x00\x01\x00" + b"\x02\x00\x01\x00\x02\x00"
    return {
        "ten": bytes([10, 5]) + slices,
        "none": bytes([0, 0]) + slices,
        "one": bytes([1, 1]) + slices,
        "extreme": bytes([10, 3]) + extreme,
    }


def damaged_run_seeds() -> dict[str, bytes]:
    """Return bytes that make runs: valid ones, and some with damage behind them.

    One byte each: reading type, groups less one; then for each group word, binary or text,
    variables, one or two axes, the axes, header records of a text file, the values.
    """
    interval, values, labels = bytes([3, 0, 4, 1]), bytes([2, 1]), bytes([3, 2])
    some = bytes((11 * i) % 251 for i in range(96))
    valid = {
        "float": bytes([0, 0, 0, 1, 1, 0]) + interval + some[:8],
        "double": bytes([0, 0, 1, 1, 1, 1]) + values + interval + some[:16],
        "short_as_double": bytes([2, 0, 2, 1, 1, 1]) + labels + interval + some[:16],
        "int": bytes([0, 0, 3, 1, 2, 0]) + labels + some[:8],
        "long_as_float": bytes([1, 0, 4, 1, 0, 1]) + interval + labels + some[:12],
        "text": bytes([0, 0, 0, 0, 1, 0]) + interval + b"\x01" + some[:6],
        "text_two_axes": bytes([2, 0, 0, 0, 0, 1]) + values + interval + b"\x00" + some[:10],
        "two_groups": bytes([2, 1]) + (bytes([1, 1, 1, 0]) + interval + some[:8]) * 2,
    }
    damaged = {
        f"damaged_{kind}": bytes([0, 0, 0, 1, 1, 1])
        + values
        + interval
        + some[:24]
        + b"".join(bytes([0, file, kind, 30 * file + 17, 0, 6, 3]) for file in range(4))
        for kind in range(10)
    }
    return valid | damaged


def table_seeds() -> dict[str, bytes]:
    """Return groups of one header and its data."""
    return {name: run for name, run in run_seeds().items() if run.count(MARK) == 1}


SEEDS = {
    "header": header_seeds,
    "text_data": text_data_seeds,
    "run": run_seeds,
    "tokens": token_seeds,
    "numbers": number_seeds,
    "slices": slice_seeds,
    "damaged_run": damaged_run_seeds,
    "tables": table_seeds,
}


def main() -> None:
    """Write all seeds; files that are no seed any more stay."""
    for target, make in SEEDS.items():
        folder = CORPUS / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in make().items():
            (folder / name).write_bytes(content)


if __name__ == "__main__":
    main()
