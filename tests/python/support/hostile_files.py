"""Headers that ask for more than there is, and runs with damage anywhere in their files."""

from __future__ import annotations

import itertools
from collections.abc import Iterator
from pathlib import Path
from random import Random

from support.random_runs import random_run

#: Numbers at and beyond the ends of the types that could hold a size.
NUMBERS = (
    *("0", "-1", "65536", "1000000", "100000000", "2147483647", "2147483648", "4294967295"),
    *("4294967296", "1099511627776", "9007199254740993", "2305843009213693952"),
    *("4611686018427387904", "9223372036854775807", "9223372036854775808"),
    *("18446744073709551615", "18446744073709551616", "1" + "0" * 40, "1e9", "1E300", "1e999"),
)
FORMATS = ("R*4", "R*8", "I*4")
MOST_BYTES = 1024

Fields = dict[str, str]


def _axis(kind: int, name: str, size: int) -> Fields:
    values = {
        1: {f"AXITICK {name}": " ".join(f"'{label}'" for label in "abcd"[:size])},
        2: {f"MIN {name}": "0", f"STEP {name}": "1"},
        3: {f"AXIVAL {name}": " ".join(map(str, range(size)))},
    }[kind]
    head = {f"AXISLAB {name}": f"'{name}'", f"AXIUNIT {name}": "T", f"AXIMETH {name}": str(kind)}
    return head | values


def small_header(word: str, *, text: bool, primary: int, secondary: int | None) -> Fields:
    """Return label -> value of a group of one variable and three points that reads well."""
    head = {"FILE": "run.$01", "ACCESS": "S" if text else "D", "FORM": "F", "RECL": "4"}
    head |= {"FORMAT": word, "HEADREC": "0", "CONTENT": "'POWPROD'", "CONFIG": "''"}
    sizes = "1 3" if secondary is None else "1 2 3"
    head |= {"NDIMENS": "2" if secondary is None else "3", "DIMENS": sizes, "GENLAB": "'g'"}
    head |= {"VARIAB": "'a'", "VARUNIT": "L"}
    axes = {} if secondary is None else _axis(secondary, "Second", 2)
    head |= axes | _axis(primary, "Time", 3) | {"NVARS": "0"}
    for block in range(1 if secondary is None else 2):
        head |= {f"ULOADS {block}": "1\n 2", f"MAXTIME {block}": "0", f"MINTIME {block}": "1"}
        head |= {f"MEAN {block}": "1.5"}
    return head


def text_of(fields: Fields) -> str:
    """Return the text of a header; what stands behind a blank in a label only tells it apart."""
    return "".join(f"{label.split()[0]}\t{value}\n" for label, value in fields.items())


def small_headers() -> Iterator[Fields]:
    for text, primary, secondary in itertools.product((False, True), (1, 2, 3), (None, 1, 2, 3)):
        word = FORMATS[(primary + (secondary or 0)) % 3]
        yield small_header(word, text=text, primary=primary, secondary=secondary)


def _with_one_number(fields: Fields) -> Iterator[Fields]:
    """Yield the header with each of its numbers, one at a time, as great as can be."""
    for label, value in fields.items():
        tokens = value.split(" ")
        for place, token in enumerate(tokens):
            if not token.strip("\n").lstrip("-").replace(".", "").isdigit():
                continue
            for number in NUMBERS:
                changed = " ".join([*tokens[:place], number, *tokens[place + 1 :]])
                yield fields | {label: changed}


def _at_random(rng: Random, bases: list[Fields]) -> Fields:
    """Return a header with several great numbers at once, and lists as long as fit."""
    fields = dict(rng.choice(bases))
    for _ in range(rng.randint(1, 4)):
        label = rng.choice(("DIMENS", "DIMENS", "HEADREC", "NVARS", "NDIMENS", *fields))
        tokens = fields[label].split(" ")
        tokens[rng.randrange(len(tokens))] = rng.choice(NUMBERS)
        fields[label] = " ".join(tokens)
    room = MOST_BYTES - len(text_of(fields))
    count = rng.choice((0, 2, room // 6))
    if rng.random() < 0.5 and count > 0:  # as many names as codes
        fields["VARIAB"] = " ".join(["a", *(f"b{i}" for i in range(count))])[: room // 2]
        fields["VARUNIT"] = " ".join("L" for _ in fields["VARIAB"].split())[: room // 2]
    elif count > 0:
        label = rng.choice(list(fields))
        fields[label] = (fields[label] + " " + "7 " * count)[: max(room // 2, 8)]
    return fields


def hostile_headers(seed: int, count: int) -> list[str]:
    """Return headers of at most a kilobyte: the first reads well, half of them have one number."""
    bases, rng = list(small_headers()), Random(seed)
    with_one = [each for base in bases for each in _with_one_number(base)]
    chosen = rng.sample(with_one, min(count // 2, len(with_one)))
    chosen += [_at_random(rng, bases) for _ in range(count - len(chosen))]
    texts = [text_of(fields) for fields in (bases[0], *chosen)]
    return [text for text in texts if len(text) <= MOST_BYTES]


# Damage.


def _damaged(rng: Random, content: bytes) -> bytes:
    """Return a file with a few things wrong with it."""
    damaged = bytearray(content)
    for _ in range(rng.choice((1, 1, 2, 5))):
        if not damaged:
            break
        at = rng.randrange(len(damaged))
        way = rng.randrange(6)
        if way == 0:
            damaged[at] = rng.randrange(256)
        elif way == 1:
            del damaged[at:]
        elif way == 2:
            del damaged[at : at + rng.randint(1, 30)]
        elif way == 3:
            damaged[at:at] = damaged[: rng.randint(1, 60)]
        elif way == 4:
            damaged[at:at] = rng.choice((b"\n", b"\r\n", b"'", b" ", b"\0", b"-", b"99999999999"))
        else:
            end = damaged.find(b"\n", at)
            damaged[at : max(end, at)] = b""
    return bytes(damaged)


class DamagedRuns:
    """Runs one after the other in one folder, each with damage in its header or its data."""

    #: How often a run is damaged in turn, and how often of these in its header.
    _STEPS, _HEADERS = 20, 14

    def __init__(self, folder: Path, seed: int, kinds: int) -> None:
        self._folder, self._rng = folder, Random(seed)
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "run.$TE").write_bytes(b"Run completed.\n")
        groups = [group for run in range(kinds) for group in random_run(run).groups]
        self._groups = [group for group in groups if group.shape.words < 300]

    def write(self, count: int) -> str:
        """Write the run of a number, and return the name of a variable of it."""
        turn, step = divmod(count, self._STEPS)
        group = self._groups[turn % len(self._groups)]
        header, data = self._folder / "run.%01", self._folder / group.data_name
        # Writing takes longer than reading: only what changes is written.
        if step == 0:
            data.write_bytes(group.data)
        if step < self._HEADERS:
            header.write_bytes(_damaged(self._rng, group.header))
            return group.names[0]
        if step == self._HEADERS:
            header.write_bytes(group.header)
        data.write_bytes(_damaged(self._rng, group.data))
        return group.names[0]
