"""Random data files, binary and text, with the values that are to be read from them."""

from __future__ import annotations

import struct
from dataclasses import dataclass
from random import Random
from typing import Any

import numpy as np
from numpy.typing import NDArray

from support.random_text import (
    blanks,
    number_of,
    random_real,
    random_whole,
    real_token,
    whole_token,
)
from support.run_files import WORDS, Word

#: FORMAT -> other spellings of it.
SPELLINGS: dict[Word, tuple[str, ...]] = {
    "R*4": ("R*4", "R4", "n/a"),
    "R*8": ("R*8", "R8"),
    "I*2": ("I*2", "I2"),
    "I*4": ("I*4", "I4"),
    "I*8": ("I*8", "I8"),
}
#: FORMAT -> type that values have as they are stored, and in which scripts get them.
STORED: dict[Word, str] = {
    "R*4": "float32",
    "R*8": "float64",
    "I*2": "int16",
    "I*4": "int32",
    "I*8": "int32",
}
SERVED: dict[Word, str] = {"R*4": "float32", "R*8": "float64", "I*4": "int32"}
FLOAT_WORDS = (0x7FC00001, 0xFFC12345, 0x7F800000, 0xFF800000, 0x00000001, 0x80000000, 0x7F7FFFFF)


@dataclass(frozen=True)
class Shape:
    """The numbers of points, of secondary values (None over one axis) and of variables."""

    #: As the header says; 0 leaves it to the length of the file.
    points: int
    secondary: int | None
    variables: int
    #: As the file has them.
    held: int

    @property
    def rows(self) -> int:
        return self.secondary or 1

    @property
    def words(self) -> int:
        return self.held * self.rows * self.variables

    @property
    def values_per_line(self) -> int:
        return self.rows if self.variables == 1 else self.variables


@dataclass(frozen=True)
class RandomData:
    """A data file, its lines in front of the data, and the values: [variable, secondary, point]."""

    content: bytes
    head_lines: int
    values: NDArray[Any]


def _arranged(flat: NDArray[Any], shape: Shape) -> NDArray[Any]:
    """Bring values in the order of a file, the variable fastest, into the order of the model."""
    return flat.reshape(shape.held, shape.rows, shape.variables).transpose(2, 1, 0).copy()


def _float32_word(rng: Random) -> float:
    if rng.random() < 0.1:
        return struct.unpack("<f", struct.pack("<I", rng.choice(FLOAT_WORDS)))[0]
    return float(np.float32(random_real(rng)))


def _float64_word(rng: Random) -> float:
    if rng.random() < 0.1:
        return rng.choice((np.nan, -np.nan, np.inf, -np.inf, 5e-324, -0.0, 1e300, -1e39))
    return random_real(rng, widest=200)


def _stored_words(rng: Random, word: Word, count: int) -> NDArray[Any]:
    stored = STORED[word]
    if stored.startswith("float"):
        draw = _float32_word if stored == "float32" else _float64_word
        return np.array([draw(rng) for _ in range(count)], stored)
    bits = 16 if stored == "int16" else 32
    return np.array([random_whole(rng, bits) for _ in range(count)], stored)


def converted(values: NDArray[Any], dtype: str) -> NDArray[Any]:
    """Convert as plain code does: what is too great becomes infinite, without a word."""
    with np.errstate(all="ignore"):
        return values.astype(dtype)


def binary_data(rng: Random, word: Word, dtype: str, shape: Shape) -> RandomData:
    words = _stored_words(rng, word, shape.words)
    content = words.astype(words.dtype.newbyteorder("<")).tobytes()
    if rng.random() < 0.2 and shape.points:
        content += rng.randbytes(rng.choice((1, 3, WORDS[word][1] * rng.randint(1, 9))))
    return RandomData(content, 0, _arranged(converted(words, dtype), shape))


def _token(rng: Random, word: Word, dtype: str) -> str:
    """Return a number as it may stand in a text file of a type that is read as another."""
    if dtype == "int32":
        return whole_token(rng, 32)
    if word.startswith("I") and rng.random() < 0.7:
        return whole_token(rng, 40)  # a text value is never held in the type that is stored
    return real_token(rng, widest=37 if dtype == "float32" else 200)


def text_data(rng: Random, word: Word, dtype: str, shape: Shape) -> RandomData:
    tokens = [_token(rng, word, dtype) for _ in range(shape.words)]
    step = shape.values_per_line
    width = rng.choice((0, 0, max(map(len, tokens), default=0)))
    lines = []
    for start in range(0, len(tokens), step):
        line = b"".join(blanks(rng) if not width else b" " for _ in range(1))
        for token in tokens[start : start + step]:
            line += token.rjust(width).encode() + (b" " if width else blanks(rng))
        lines.append(line if width or rng.random() < 0.5 else line.strip())
    if not width and rng.random() < 0.2:
        lines = [line + rng.choice((b"", b" 99 1e5", b" # the end", b" nan")) for line in lines]
    head = [rng.choice((b"made by a test", b"1 2 3", b" x")) for _ in range(rng.choice((0, 0, 2)))]
    end = rng.choice((b"\n", b"\r\n"))
    content = b"".join(line + end for line in (*head, *lines))
    if rng.random() < 0.2 and shape.points:
        content = content[: -len(end)] if rng.random() < 0.5 else content + b"more" + end
    numbers = np.array([number_of(token, dtype) for token in tokens], dtype)
    return RandomData(content, len(head), _arranged(numbers, shape))
