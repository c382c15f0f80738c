"""Takes the files of a written output group apart, on its own: nothing here knows the library."""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import NDArray

#: FORMAT -> RECL, type of a word in a binary file.
WORDS = {b"R*4": (4, "<f4"), b"R*8": (8, "<f8"), b"I*4": (4, "<i4")}
METHODS = {b"1": b"AXITICK", b"2": b"MIN ", b"3": b"AXIVAL"}
_LIST = re.compile(rb"'(.*?)'(?= |$)|(\S+)")


@dataclass(frozen=True)
class WrittenAxis:
    """An axis block: name and quantity code, AXIMETH, and the tokens of what follows."""

    name: bytes
    code: bytes
    method: int
    tokens: list[bytes]


@dataclass(frozen=True)
class WrittenHeader:
    """A header, as its bytes say."""

    fields: dict[str, bytes]
    sizes: list[int]
    names: list[bytes]
    codes: list[bytes]
    #: In file order: the secondary axis first.
    axes: list[WrittenAxis]
    #: What stands behind the named parameters.
    rest: list[bytes]


class _Lines:
    """The lines of a header, one after the other."""

    def __init__(self, content: bytes) -> None:
        assert content.endswith(b"\n")
        assert b"\r" not in content
        self._lines = content[:-1].split(b"\n")

    def take(self, label: bytes) -> bytes:
        """Return the value of the next line, which must have this label and a tab behind it."""
        line = self._lines.pop(0)
        assert line.startswith(label + b"\t"), (label, line)
        return line[len(label) + 1 :]

    def take_quoted(self, label: bytes) -> bytes:
        value = self.take(label)
        assert value[:1] == value[-1:] == b"'", value
        assert len(value) > 1
        return value[1:-1]

    def rest(self) -> list[bytes]:
        return self._lines


def items(value: bytes) -> list[bytes]:
    """Split a list; what holds a blank stands in quotes."""
    return [quoted or bare for quoted, bare in _LIST.findall(value)]


def parse_header(content: bytes) -> WrittenHeader:
    """Take a header apart; each line must stand where it belongs."""
    lines = _Lines(content)
    fields = {
        label: lines.take(label.encode()) for label in ("FILE", "ACCESS", "FORM", "RECL", "FORMAT")
    }
    fields |= {label: lines.take_quoted(label.encode()) for label in ("CONTENT", "CONFIG")}
    fields["NDIMENS"] = lines.take(b"NDIMENS")
    sizes = [int(size) for size in lines.take(b"DIMENS").split(b"\t")]
    fields["GENLAB"] = lines.take_quoted(b"GENLAB")
    variab = lines.take(b"VARIAB")
    assert variab[:1] == variab[-1:] == b"'"
    names = variab[1:-1].split(b"' '")
    codes = items(lines.take(b"VARUNIT"))
    axes = [_axis(lines) for _ in range(len(sizes) - 1)]
    count = int(lines.take(b"NVARS"))
    return WrittenHeader(fields, sizes, names, codes, axes, lines.rest()[count:])


def _axis(lines: _Lines) -> WrittenAxis:
    name = lines.take_quoted(b"AXISLAB")
    (code,) = items(lines.take(b"AXIUNIT"))
    method = lines.take(b"AXIMETH")
    value = lines.take(METHODS[method])
    if method == b"2":
        tokens = [value, lines.take(b"STEP")]
    else:
        tokens = value[1:-1].split(b"' '") if method == b"1" else value.split(b" ")
    return WrittenAxis(name, code, int(method), tokens)


def binary_values(content: bytes, word: bytes, sizes: list[int]) -> NDArray[Any]:
    """Return the words of a data file: [variable, secondary, point]."""
    variables, *rows, points = sizes
    words = np.frombuffer(content, WORDS[word][1])
    return words.reshape(points, *(rows or [1]), variables).transpose(2, 1, 0)


def text_tokens(content: bytes, sizes: list[int]) -> list[list[list[bytes]]]:
    """Return the tokens of a data file: [variable][secondary][point].

    Each has the white space in front of it; a line must hold as many as belong there.
    """
    variables, *others, points = sizes
    rows = others[0] if others else 1
    assert content.endswith(b"\n") or not content
    lines = content[:-1].split(b"\n") if content else []
    per_line = rows if variables == 1 else variables
    assert len(lines) == points * rows * variables // per_line
    flat = []
    for line in lines:
        tokens = re.findall(rb" +[^ ]+", line)
        assert b"".join(tokens) == line
        assert len(tokens) == per_line
        flat += tokens
    table = [[[b""] * points for _ in range(rows)] for _ in range(variables)]
    for place, token in enumerate(flat):
        table[place % variables][place // variables % rows][place // (variables * rows)] = token
    return table
