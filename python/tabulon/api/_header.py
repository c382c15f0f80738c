"""What a group's header can answer without the data file."""

from functools import lru_cache
from pathlib import Path

# A header's statistics stand directly behind its axes and named parameters, one block for each
# value of the secondary independent variable. docs/format.md tells the format.
_LAST_LINES_OF_AXIS = (b"STEP", b"AXIVAL", b"AXITICK")
_BLOCK = (b"ULOADS", b"MAXTIME", b"MINTIME", b"MEAN")
_CONTINUED = (b"AXIVAL", b"AXITICK", b"ULOADS")


def count_statistics_blocks(path: str, axes: int) -> int:
    """Return how many complete blocks of statistics a header has.

    Parameters
    ----------
    path
        The header file.
    axes
        The number of independent variables of the group.

    Returns
    -------
    int
        The number of blocks: 0 for a header that has none, or that cannot be read.
    """
    try:
        status = Path(path).stat()
        return _count(path, axes, status.st_mtime_ns, status.st_size)
    except OSError:
        return 0


@lru_cache(maxsize=1024)
def _count(path: str, axes: int, _written: int, _size: int) -> int:
    with Path(path).open("rb") as file:
        header = _Header(file.readlines())
    header.skip_axes(axes)
    header.skip_named_parameters()
    count = 0
    while all(header.skip(label) for label in _BLOCK):
        count += 1
    return count


class _Header:
    """The lines of a header, and how far they have been read."""

    def __init__(self, lines: list[bytes]) -> None:
        self._lines = lines
        self._next = 0

    def skip(self, label: bytes) -> bool:
        """Go past the next line, with its continuation lines, if it has the label."""
        if self._label() != label:
            return False
        self._next += 1
        while label in _CONTINUED and self._line()[:1] in (b" ", b"\t"):
            self._next += 1
        return True

    def skip_axes(self, count: int) -> None:
        """Go past the axis blocks, whatever stands before and within them."""
        for _ in range(count):
            self._seek((b"AXISLAB",))
            self._seek(_LAST_LINES_OF_AXIS)
            self.skip(self._label())

    def skip_named_parameters(self) -> None:
        """Go past the named parameters: their count, and that many lines of any text."""
        if self._label() == b"NVARS":
            count = self._line().split()[1:2]
            self._next += 1 + (int(count[0]) if count and count[0].isdigit() else 0)

    def _seek(self, labels: tuple[bytes, ...]) -> None:
        while self._next < len(self._lines) and self._label() not in labels:
            self._next += 1

    def _line(self) -> bytes:
        return self._lines[self._next] if self._next < len(self._lines) else b""

    def _label(self) -> bytes:
        line = self._line()
        return b"" if line[:1] in (b" ", b"\t") else next(iter(line.split(None, 1)), b"")
