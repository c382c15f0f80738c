"""Lays out the lines of a random header: their order, white space, line ends and decoys.

A header is read forward: a label counts where its search comes to it first, so lines in between
may say anything. Only what is looked for on the next line suffers nothing in front of it.
"""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import dataclass
from random import Random

from support.random_text import blanks

#: Lines that no search stops at, wherever they stand.
REMARKS = (b"REMARK 'no end", b"MEANS 1 2", b"file other.$01", b"* ***", b"VARIABLE 'x'", b"0 1 2")
#: A label, and a line that says nothing anywhere behind it: what counts stood in front of it.
LATE = (
    (b"FILE", b"FILE\tother.$99"),
    (b"ACCESS", b"ACCESS\tX"),
    (b"FORM", b"FORM\tG"),
    (b"CONTENT", b"CONTENT\t'WIND'"),
    (b"CONTENT", b"HEADREC\t3"),
    (b"NDIMENS", b"NDIMENS\t7"),
    (b"DIMENS", b"DIMENS\t99\t99\t99"),
    (b"GENLAB", b"GENLAB\t'Another'"),
    (b"VARIAB", b"VARIAB\t'Another'"),
    (b"VARUNIT", b"VARUNIT\tL L L L L L"),
)
#: Lines that may stand in front of all others, since the search for them begins behind FILE.
EARLY = (b"ACCESS\tS", b"FORMAT\tI*2", b"GENLAB\t'Early'", b"ULOADS 1", b"AXIMETH\t9", b"MEAN 2")


@dataclass(frozen=True)
class Field:
    """A line of a label and its value, with the lines that continue it."""

    label: bytes
    rows: Sequence[bytes]
    #: The reader looks whether the next line continues this one: an empty line would stop it.
    continued: bool = True
    #: Is looked for on the line behind the field in front of it, and nowhere else.
    tied: bool = False

    def lines(self, rng: Random) -> list[bytes]:
        first, *others = self.rows
        head = self.label + blanks(rng) + first if self.label else first
        lines = [head, *(rng.choice((b" ", b"\t", b"   ")) + row for row in others)]
        if self.label and rng.random() < 0.1:
            lines[-1] += blanks(rng)
        return lines


def broken(rng: Random, items: Sequence[bytes]) -> list[bytes]:
    """Spread items over a line and, sometimes, lines that continue it."""
    rows = [b""]
    for each in items:
        # A line that begins with a bare word would be taken for the label of that name.
        may_break = each[:1] in b"'\"+-.0123456789"
        if may_break and rng.random() < 0.15:
            rows.append(each)
        else:
            rows[-1] += (blanks(rng) if rows[-1] else b"") + each
    return rows


def _gaps(fields: Sequence[Field], first: int = 0) -> list[int]:
    """Return the places where a line may be put in, from one on."""
    return [i for i in range(first, len(fields) + 1) if i == len(fields) or not fields[i].tied]


def with_variables(rng: Random, fields: list[Field], names: Field, codes: Field) -> list[Field]:
    """Put the lines of the variables where they usually stand, or anywhere."""
    if rng.random() < 0.5:
        place = next(i for i, field in enumerate(fields) if field.label == b"AXISLAB")
        return [*fields[:place], names, codes, *fields[place:]]
    laid = list(fields)
    place = rng.choice(_gaps(laid))
    laid.insert(place, names)
    laid.insert(rng.choice(_gaps(laid, place + 1)), codes)
    return laid


def with_decoys(rng: Random, fields: list[Field]) -> list[Field]:
    """Put lines in between that say nothing."""
    laid = list(fields)
    for _ in range(rng.choice((0, 0, 0, 1, 2, 4))):
        kind = rng.randrange(3)
        if kind == 0:
            line, place = rng.choice(REMARKS), rng.choice(_gaps(laid))
        elif kind == 1 and laid[0].label == b"FILE":
            line, place = rng.choice(EARLY), 0
        else:
            label, line = rng.choice(LATE)
            found = next(i for i, field in enumerate(laid) if field.label == label)
            place = rng.choice(_gaps(laid, found + 1))
        laid.insert(place, Field(b"", [line], continued=False))
    return laid


def header_bytes(rng: Random, fields: Sequence[Field]) -> bytes:
    """Return the content of a header."""
    ends = rng.choice(([b"\n"], [b"\n"], [b"\r\n"], [b"\n", b"\r\n"]))
    empty_lines = ends == [b"\n"] and rng.random() < 0.3
    lines: list[bytes] = []
    may_be_empty = empty_lines
    for field in fields:
        if may_be_empty and not field.tied and rng.random() < 0.2:
            lines += [b"\n"] * rng.choice((1, 1, 2))
        lines += [line + rng.choice(ends) for line in field.lines(rng)]
        may_be_empty = empty_lines and not field.continued
    if rng.random() < 0.15:
        lines[-1] = lines[-1].rstrip(b"\r\n")
    return b"".join(lines)
