"""Random words, names and spellings of numbers, as they may stand in the files of a run."""

from __future__ import annotations

import math
import re
from fractions import Fraction
from random import Random

import numpy as np

#: Quantity code -> SI unit, as the library's table has it: byte for byte.
UNITS = {
    b"L": b"m",
    b"L/T": b"m/s",
    b"A/T": b"rad/s",
    b"MLL": b"kgm\xb2",
    b"FL": b"Nm",
    b"M/LLL": b"kg/m\xb3",
    b"1/T": b"1/s",
    b"N": b"Unitless",
    b"SPARE": b"Spare",
    b"Q": b"VAr",
    b"I": b"A",
    b"A": b"rad",
    b"T": b"s",
}
UNKNOWN_CODES = (b"none", b"l", b"m/s", b"no unit", b"kg m", b"\xb2")

WORDS = (
    *(b"Rotor", b"speed", b"Tower", b"Mx", b"(root)", b"1", b"0.5", b"a,b", b"50%", b"x_1"),
    *(b"Tower's", b'3"', b"#2", b"-", b"/", b"VARIAB", b"MEAN", b"$01", b"%07", b"D\xe9bit"),
    *("Gr\u00f6\u00dfe".encode(), "\u98a8".encode(), b"long" * 12, b"ULOADS", b";", b"=", b"\\"),
)
BLANKS = (b" ", b" ", b" ", b"\t", b"  ", b" \t ", b"\v", b"     ")
#: What a number looks like where a stream stops reading a whole number.
_WHOLE = re.compile(r"[+-]?\d+")


def text_of(content: bytes) -> str:
    """Return bytes of a file as a script sees them."""
    return content.decode("utf-8", "surrogateescape")


def unit_of(code: bytes) -> str:
    return text_of(UNITS.get(code, b""))


def other_case(rng: Random, name: str) -> str:
    """Return a name with some of its plain letters in the other case."""
    return "".join(c.swapcase() if c.isascii() and rng.random() < 0.5 else c for c in name)


class Words:
    """Names, each given once, whatever the case."""

    def __init__(self, rng: Random) -> None:
        self._rng = rng
        self._taken: set[bytes] = set()

    def name(self) -> bytes:
        while True:
            count = self._rng.choice((1, 1, 2, 3))
            name = b" ".join(self._rng.choice(WORDS) for _ in range(count))
            if self._taken and self._rng.random() < 0.3:
                name += b" %d" % len(self._taken)
            if name.lower() not in self._taken:
                self._taken.add(name.lower())
                return name

    def code(self) -> bytes:
        return self._rng.choice((*UNITS, *UNKNOWN_CODES))


def blanks(rng: Random) -> bytes:
    return rng.choice(BLANKS)


def spaced(rng: Random, words: bytes) -> bytes:
    """Return words with other white space between them; a reader makes it one blank again."""
    return b"".join(blanks(rng) if c == b" " else c for c in re.split(rb"( )", words))


def quoted(rng: Random, words: bytes, *, always: bool = False) -> bytes:
    """Return a value in quote marks, or without, if it does not need them to be read back."""
    if not always and words[:1] not in b"'\"" and words[-1:] not in b"'\"" and rng.random() < 0.2:
        return spaced(rng, words)
    mark = b"'" if always or rng.random() < 0.9 else b'"'
    return mark + spaced(rng, words) + mark


def item(rng: Random, words: bytes) -> bytes:
    """Return a name as it stands in a list of names."""
    needs_quotes = b" " in words or words[:1] == b"'"
    return quoted(rng, words, always=True) if needs_quotes or rng.random() < 0.8 else words


def _whole(rng: Random, value: int) -> str:
    return rng.choice((str, str, str, "{:+d}".format, "{:04d}".format))(value)


def _real(rng: Random, value: float) -> str:
    way = rng.choice(("r", ".7E", ".3e", ".15E", ".17g", "f", "+.6E", "point", "digits"))
    if way == "point":
        return f"{math.trunc(value) % 1000}."
    if way == "digits":  # more of them than any type holds
        return f"{rng.choice(('', '-'))}.{rng.getrandbits(90):027d}E{rng.randint(-8, 8):+03d}"
    if way == "r" or (way == "f" and abs(value) > 1e30):
        return repr(value)
    return format(value, way)


def random_whole(rng: Random, bits: int) -> int:
    """Return a number of so many bits; the ends and small ones are frequent."""
    ends = (-(1 << (bits - 1)), (1 << (bits - 1)) - 1, 0, -1, 1, 7)
    return rng.choice(
        (rng.choice(ends), rng.randint(-50, 50), rng.getrandbits(bits) - (1 << (bits - 1)))
    )


def random_real(rng: Random, *, widest: int = 37) -> float:
    """Return a finite number up to a power of ten; halves of floats are frequent."""
    kind = rng.randrange(6)
    if kind == 0:
        return float(rng.randint(-100, 100))
    if kind == 1:
        return rng.choice((0.0, -0.0, 0.1, -1.5, 1e-45, 3e-39, 1.17549435e-38, 16777217.0))
    if kind == 2:  # midway between two floats, or next to it
        float32 = np.float32(rng.uniform(-1000, 1000))
        above = np.nextafter(float32, np.float32(np.inf))
        middle = (float(float32) + float(above)) / 2
        return rng.choice(
            (middle, float(np.nextafter(middle, 0)), float(np.nextafter(middle, 1e9)))
        )
    return rng.uniform(-10, 10) * 10.0 ** rng.randint(-widest, widest - 1)


def whole_token(rng: Random, bits: int) -> str:
    return _whole(rng, random_whole(rng, bits))


def real_token(rng: Random, *, widest: int = 37) -> str:
    return _real(rng, random_real(rng, widest=widest))


def _nearest_float32(text: str) -> float:
    """Return the float nearest to a decimal number, rounded once."""
    wide = float(text)
    narrow = np.float32(wide)
    dropped = int(np.float64(wide).view(np.uint64)) & 0x1FFFFFFF
    if dropped != 0x10000000 and abs(wide) > 1.2e-38:
        return float(narrow)
    exact = Fraction(text)
    near = [np.nextafter(narrow, np.float32(way)) for way in (-np.inf, np.inf)] + [narrow]
    return float(
        min(near, key=lambda n: (abs(Fraction(float(n)) - exact), int(n.view(np.uint32)) & 1))
    )


def number_of(token: str, dtype: str) -> float:
    """Return what a stream reads from a token into a type."""
    if dtype == "int32":
        match = _WHOLE.match(token)
        assert match is not None
        return int(match.group())
    return float(token) if dtype == "float64" else _nearest_float32(token)
